// The commands that wait for a click: what each wants under the mouse, how a click outside the
// board is treated, and whether the command stays pending after its click.
#pragma once

#include <span>

namespace isolith {

// What a pending command wants the click to land on.
enum class PickTarget {
  Item,            // a pad, drill, centering hole or track end (the "O&rigin" button)
  Pad,             // a pad
  PadOrDrill,      // a pad, or a drill on the drill layer
  Track,           // a track
  TrackNet,        // a track, standing for its net
  Drill,           // a drill
  Cutout,          // a card contour
  PointOnCutout,   // a point on a card contour
  Point,           // a free point of the card
  Contour,         // a contour path
  ContourPoints,   // two points of contours, one click each
  ContourSegment,  // a segment of a contour
  Rectangle,       // a rectangle dragged with the mouse
};

// How a pick command behaves after its click.
enum class AfterClick {
  Ends,      // the action clears PendingCommand
  Stays,     // PendingCommand stays for the next click
  WithStay,  // raised again when the dialog's "stay" choice is in force
};

struct PendingInfo {
  int id;
  PickTarget target;
  AfterClick after;
};

// Every id that PendingCommand may hold, in id order.
std::span<const PendingInfo> PendingCommandTable();
// The row of a pending id, nullptr for an id that never waits for a click.
const PendingInfo* FindPending(int id);

// A rectangle pick (hatch zone, the three zone commands, zoom in): a press outside the board
// beeps. Every other pick is an item pick: a click outside the board ends it with ResetHover.
bool IsRectanglePick(int id);
bool IsItemPick(int id);

}  // namespace isolith
