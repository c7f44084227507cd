// The direction of the paths before output. The milling direction setting turns the contours of
// the active layer; the walks then turn every contour to a non-negative turning sum right after
// the header, and that second turn is the one that counts.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// A contour of `layer` is reversed when "its turning sum is negative" differs from
// "`millingDir` is negative".
void OrientContours(Board& board, int layer, int millingDir);

// Every contour of the four circuit layers with a negative turning sum is reversed.
void TurnContoursPositive(Board& board);

// Clears the done mark (0x80) of every path of a list.
void ClearDoneMarks(TPolygon* list);
// Clears the done mark of every drill.
void ClearDoneMarks(TDrill* list);

}  // namespace isolith
