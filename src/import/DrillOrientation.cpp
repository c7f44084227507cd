#include "import/DrillOrientation.h"

#include "core/board/BoardOps.h"
#include "edit/Transforms.h"

namespace isolith {

namespace {
constexpr int kQuarterTurns = 4;
}  // namespace

int SearchDrillOrientation(Board& b) {
  int best = -1;
  for (int turn = 0; turn < kQuarterTurns; ++turn) {
    RotateBoard(b, true, false, -1, false);
    AlignLayer(b, kDrillLayer);
    int overlap = PadOverlap(b, kDrillLayer);
    if (overlap > best) best = overlap;
  }
  // Back where it started; turn on to the first orientation that did best.
  int overlap = -1;
  for (int turn = 0; turn < kQuarterTurns && overlap != best; ++turn) {
    RotateBoard(b, true, false, -1, false);
    AlignLayer(b, kDrillLayer);
    overlap = PadOverlap(b, kDrillLayer);
  }
  return overlap;
}

}  // namespace isolith
