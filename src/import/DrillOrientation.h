// Fitting a drill layer to the board: a drill file often comes out of its program turned
// against the copper, so the board is turned a quarter at a time until the drills meet the pads.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// The orientation search: four quarter turns of the board but the drills ("Rotate 90°"), each
// followed by `AlignLayer(4)`, noting the best `PadOverlap(4)`; then up to four more turns until a
// turn meets that best again. Returns the overlap of the orientation it stops at.
int SearchDrillOrientation(Board& board);

}  // namespace isolith
