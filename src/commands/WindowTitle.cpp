#include "commands/WindowTitle.h"

#include "commands/Application.h"

namespace isolith {

std::string WindowTitle(const Board& b) {
  std::string title = kProgramName;
  const int layer = b.ActiveLayer;
  if (layer >= 0 && layer < kLayers && !b.LayerName[layer].empty())
    title += "  -  " + b.LayerName[layer];
  if (b.LayerCount != 0) {
    title += "   (";
    if (layer == kDrillLayer) {
      title += "Drills";
    } else if (layer == kCutoutLayer) {
      title += "Card contour";
    } else {
      int circuits = 0;
      for (int l = 0; l < kCircuitLayers; ++l)
        if (b.Pads[l] != nullptr || b.Tracks[l] != nullptr) ++circuits;
      title += "Layer " + std::to_string(layer + 1) + "/" + std::to_string(circuits);
    }
    title += ")";
  }
  return title;
}

}  // namespace isolith
