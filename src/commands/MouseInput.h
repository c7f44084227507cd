// The mouse on the board: the state of its buttons and of a rubber rectangle, and what each
// event does to the job. The view turns its events into these calls (pixel positions in its
// client) and draws what they leave: the hover item, the rectangle and the hint box.
#pragma once

#include <cstdint>
#include <string>

#include "commands/Application.h"

namespace isolith {

struct MouseState {
  bool LeftDown = false;
  bool RightDown = false;
  int LastClickX = 0, LastClickY = 0;
  int DragStartX = 0, DragStartY = 0, DragEndX = 0, DragEndY = 0;
  int32_t DragActive = 0;      // 1 while a rubber rectangle is drawn
  float GrabX = 0, GrabY = 0;  // the card position grabbed for panning
  bool Panning = false;        // the hand cursor
};

// A move to (px, py): with no button held, the pick of the pending command; with the left
// button held, panning (no command pending and a zoom kept) or the rubber rectangle. True when
// the picture changed (the view repaints).
bool MouseMoved(Application& app, MouseState& m, int px, int py, bool leftHeld);

// The left button pressed: the start of a rectangle and the grab recorded, then the click
// action of PendingCommand. A rectangle command starts its rectangle inside the board, and beeps
// outside it; a pick outside the board ends (ResetHover). `gridSnap` is off with Ctrl held.
void LeftPressed(Application& app, MouseState& m, int px, int py, bool ctrl);

// The left button released: the rectangle of the pending command is taken (the hatch zone, a
// zone disabled, re-enabled or deleted, on every circuit layer with Ctrl, or the zoom box).
void LeftReleased(Application& app, MouseState& m, int px, int py, bool ctrl);

// The right button pressed. A rectangle being drawn is cancelled; the second point of a new
// contour segment takes the right button as its own; otherwise the pending command is cleared
// and true is returned when the context menu of the hover item should open (outside the board
// the beep; with no hover item no menu).
bool RightPressed(Application& app, MouseState& m, int px, int py);

// A double click: the left one zooms in at the mouse as the wheel does, the right one shows the
// whole card.
void DoubleClicked(Application& app, MouseState& m, int px, int py, bool left);

// A rectangle is drawn while `DragActive` is 1 and the board's `Dragging` is set: any key clears
// the latter (the window's key handler), and the rectangle is then dropped.

// The shapes the board's cursor takes.
enum class BoardCursor {
  Arrow,          // nothing pending, or the mouse outside the board
  ZoomOnWhite,    // zoom in pending, on a white board background: a dark magnifier
  ZoomOnColour,   // zoom in pending on any other background: a light magnifier
  OpenHand,       // a zoomed view with nothing under the mouse: it can be dragged
  ClosedHand,     // the view being dragged
  PickItem,       // a pending command that takes the pad, track, drill or path clicked
  PickPoint,      // a pending command that takes a point of the card
  PickRectangle,  // a pending command that takes a dragged rectangle
};

// The cursor at (px, py), after the hover test of a move: the drag first, then the pending
// command, the arrow outside the board, the open hand over nothing in a zoomed view.
BoardCursor CursorAt(const Application& app, const MouseState& m, int px, int py);

// The rubber rectangle to draw, with its colour (0x00BBGGRR, as the command's own colour shows
// on the card); false when none is drawn.
bool RubberRectangle(const Application& app, const MouseState& m, PixelRect& rect,
                     uint32_t& colour);

}  // namespace isolith
