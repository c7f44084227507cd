// Fitting a drill layer to the board: a drill file often comes out of its program turned
// against the copper, so the board is turned a quarter at a time until the drills meet the pads.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// A quarter turn of the whole board but the drills ("Rotate 90°" of the board): every circuit
// layer, the cut-outs, the origin and the centering holes swap X and Y and mirror in X; the
// content keeps its lower-left corner; the card and the pad size tables turn with it.
void TurnBoardWithoutDrills(Board& board);

// The orientation search: four quarter turns, each followed by `AlignLayer(4)`, noting the best
// `PadOverlap(4)`; then up to four more turns until a turn meets that best again. Returns the
// overlap of the orientation it stops at.
int SearchDrillOrientation(Board& board);

// Moves everything so that the content sits 2.54 mm from the card's lower-left corner and sizes
// the card round it with the same margin; resets the view. False for an empty job.
bool ReframeJob(Board& board);

}  // namespace isolith
