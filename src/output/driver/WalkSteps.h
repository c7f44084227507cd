// Small steps that both walks share.
#pragma once

#include <utility>
#include <vector>

#include "core/board/Board.h"
#include "output/driver/PenMachine.h"
#include "params/Settings.h"

namespace isolith {

// The centering holes: hole 1, hole 2 and, when the two differ on both axes, the spots at
// (x2, y1) and (x1, y2), each a plunge to `PlottingDepth` with no circle, with the plotting tool
// selected into `slot`.
void WalkCentreHoles(PenMachine& pen, const Board& board, const Settings& settings, int slot);

// The spots of those holes in that order.
std::vector<std::pair<float, float>> CentreSpots(const Board& board);

// Squared distance between two board points, in double.
inline double Distance2(double x0, double y0, double x1, double y1) {
  const double dx = x1 - x0, dy = y1 - y0;
  return dx * dx + dy * dy;
}

}  // namespace isolith
