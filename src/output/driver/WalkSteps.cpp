#include "output/driver/WalkSteps.h"

#include <cmath>

namespace isolith {

std::vector<std::pair<float, float>> CentreSpots(const Board& board) {
  std::vector<std::pair<float, float>> spots;
  if (!IsSet(board.CentreHole1X)) return spots;
  const float x1 = board.CentreHole1X, y1 = board.CentreHole1Y;
  spots.emplace_back(x1, y1);
  if (!IsSet(board.CentreHole2X)) return spots;
  const float x2 = board.CentreHole2X, y2 = board.CentreHole2Y;
  spots.emplace_back(x2, y2);
  if (std::fabs(double(x1) - x2) >= 0.001 && std::fabs(double(y1) - y2) >= 0.001) {
    spots.emplace_back(x2, y1);
    spots.emplace_back(x1, y2);
  }
  return spots;
}

void WalkCentreHoles(PenMachine& pen, const Board& board, const Settings& settings, int slot) {
  for (const auto& [x, y] : CentreSpots(board)) {
    SelectTool(pen, slot, settings.PlottingTool);
    SetToolSpeeds(pen, settings.BoringSpeed);
    RapidTo(pen, x, y, settings.PlottingDepth);
    CircleAt(pen, 0);
  }
}

}  // namespace isolith
