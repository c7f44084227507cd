#include "output/driver/WalkSteps.h"

#include <cmath>

namespace isolith {

void WalkCentreHoles(PenMachine& pen, const Board& board, const Settings& settings, int slot) {
  if (!IsSet(board.CentreHole1X)) return;
  auto spot = [&](float x, float y) {
    SelectTool(pen, slot, settings.PlottingTool);
    SetToolSpeeds(pen, settings.BoringSpeed);
    RapidTo(pen, x, y, settings.PlottingDepth);
    CircleAt(pen, 0);
  };
  const float x1 = board.CentreHole1X, y1 = board.CentreHole1Y;
  spot(x1, y1);
  if (!IsSet(board.CentreHole2X)) return;
  const float x2 = board.CentreHole2X, y2 = board.CentreHole2Y;
  spot(x2, y2);
  if (std::fabs(double(x1) - x2) >= 0.001 && std::fabs(double(y1) - y2) >= 0.001) {
    spot(x2, y1);
    spot(x1, y2);
  }
}

}  // namespace isolith
