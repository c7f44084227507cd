// Centering holes: four reference holes outside the circuit, at the corners of a rectangle round
// the card, drilled with the centering tool so that the two sides of a board can be registered.
// The model keeps two opposite corners; the holes are numbered as on a numeric keypad: 1 at
// (x1, y1), 3 at (x2, y1), 7 at (x1, y2), 9 at (x2, y2).
//
// The user places them by hand. "&Add centering holes..." first makes room round the card and
// starts the placing mode; the first click sets hole 1, and the second hole is then either given
// as a distance in TDialogManuPlot or clicked too. Once both stand the board is fitted round
// everything. The same command removes the holes again.
#pragma once

#include <functional>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"

namespace isolith {

// The command id, and the pending id of the placing mode.
inline constexpr int kCentringCommand = 12104;
// The holes are rounded to this pitch when room is made, and the board is fitted with it.
inline constexpr double kCentringPitch = 2.54;
// A hole this close to the origin on both axes takes the origin with it when removed.
inline constexpr double kCentringOriginTolerance = 0.05;

// Hole `number` (1, 3, 7 or 9) into (x, y); true when the hole exists, that is when both its
// coordinates are greater than -0.1. Other numbers give false and leave (x, y) alone.
bool CenteringHole(const Board& b, int number, float& x, float& y);

// The diameter a hole is drawn and picked with: the cutting width of `PlottingTool` at
// `PlottingDepth`, 1 mm when no tool is chosen.
float CenteringHoleDiameter(const Settings& settings, ToolTable& tools);

// The nearest point of the grid, whose points lie on the multiples of `step` from the origin.
// A step of 0 or less (Ctrl held) leaves the point as it is.
void SnapToGrid(const Board& b, float step, float& x, float& y);

// The steps of the commands that belong to other parts of the program; toolpath code reaches
// neither the editing commands nor the program object.
struct CentringSteps {
  // The program's ResetHover; the board's ClearHover when empty.
  std::function<void()> resetHover;
  // The card reframing of the board transforms with its margin of 2.54 mm (ReframeBoard). When
  // empty the board is not fitted; the view is reset all the same.
  std::function<void()> reframe;
  // The program's repaint; the platform's when empty.
  std::function<void(RepaintLevel)> repaint;
};

struct CentringContext {
  Board& board;
  Platform& platform;
  const Settings& settings;
  CentringSteps steps;
};

// What a step of the centering holes led to.
enum class CentringResult {
  Refused,    // the beep: layer 0 has no pads or tracks
  Ignored,    // a click while no placing mode runs: nothing happens
  Placing,    // the placing mode runs (PendingCommand is 12104): the next click is for the view
  Fitted,     // both holes stand and the board was fitted round them
  Cancelled,  // the dialog was cancelled: hole 1 stands, no hole 2, the board is not fitted
  Removed,    // the holes were removed and the board fitted
};

// Room round the card before placing: the smaller margin on each axis, rounded to the nearest
// multiple of 2.54, is compared with a quarter of the card; when either falls short everything
// moves on all layers by the larger of that margin and the quarter less the margin, and the card
// becomes the content's box with equal margins on both sides. False when nothing moved.
bool MakeCentringRoom(Board& b);

// "&Add centering holes...": refused with the beep when layer 0 has neither pads nor tracks.
// Otherwise ResetHover, then: without holes the room is made, the view reset and the placing
// mode begins (Placing); with holes they are removed, an origin standing on one of them going
// back to (0, 0), and the board is fitted (Removed).
CentringResult AddCenteringHoles(CentringContext& c);

// A click at card point (x, y) in the placing mode; `gridStep` is the grid's step, 0 with Ctrl
// held. Without hole 1 the point (snapped) becomes hole 1 and the mode ends; the reflection of
// hole 1 through the card's centre (snapped) is shown as hole 9 and TDialogManuPlot asks for the
// distance of hole 9 from hole 1: OK sets it and fits the board, "Plot manually" starts the
// placing mode again for hole 9, Cancel keeps hole 1 alone. With hole 1 the point becomes hole 9
// and the board is fitted. Ignored when the placing mode is not running.
CentringResult PlaceCenteringHole(CentringContext& c, float x, float y, float gridStep);

}  // namespace isolith
