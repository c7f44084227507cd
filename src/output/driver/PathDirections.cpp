#include "output/driver/PathDirections.h"

#include "toolpath/geometry/Polylines.h"

namespace isolith {

void OrientContours(Board& board, int layer, int millingDir) {
  if (!IsCircuitLayer(layer)) return;
  for (TPolygon* p = board.Contours[layer]; p; p = p->next)
    if ((TurnSum(p->first) < 0) != (millingDir < 0)) ReversePolygon(*p);
}

void TurnContoursPositive(Board& board) {
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    for (TPolygon* p = board.Contours[layer]; p; p = p->next)
      if (TurnSum(p->first) < 0) ReversePolygon(*p);
}

void ClearDoneMarks(TPolygon* list) {
  for (; list; list = list->next) ClearFlags(*list, kVisited);
}

void ClearDoneMarks(TDrill* list) {
  for (; list; list = list->next) ClearFlags(*list, kVisited);
}

}  // namespace isolith
