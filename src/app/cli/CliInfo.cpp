#include "cli/CliInfo.h"

#include <charconv>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

// The shortest text that reads back as the same float.
std::string FloatText(float value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

// The stored float as the double its shortest text names, so that 0.1f shows as 0.1.
double FloatValue(float value) {
  const std::string text = FloatText(value);
  double d = 0;
  std::from_chars(text.data(), text.data() + text.size(), d);
  return d;
}

bool InUse(const Board& b, int layer) {
  return b.Pads[layer] != nullptr || b.Tracks[layer] != nullptr;
}

}  // namespace

std::string JobInfoText(const Board& b) {
  std::string out;
  out += "Card: " + FloatText(b.CardWidth) + " x " + FloatText(b.CardHeight) + " mm, thickness " +
         FloatText(b.CardThickness) + " mm\n";
  out += "Origin: " + FloatText(b.OriginX) + ", " + FloatText(b.OriginY) + "\n";
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!InUse(b, layer)) continue;
    out += "Layer " + std::to_string(layer) + " \"" + b.LayerName[layer] +
           "\": " + std::to_string(CountOf(b.Pads[layer])) + " pads, " +
           std::to_string(CountOf(b.Tracks[layer])) + " tracks, " +
           std::to_string(CountOf(b.Contours[layer])) + " contours, " +
           std::to_string(CountOf(b.Hatches[layer])) + " hatches, overlap " +
           std::to_string(PadOverlap(b, layer)) + "%\n";
  }
  out += "Drills: " + std::to_string(CountOf(b.Drills)) + "\n";
  out += "Cutouts: " + std::to_string(CountOf(b.Cutouts)) + "\n";
  return out;
}

nlohmann::json JobInfoJson(const Board& b, const std::vector<LoadedFile>& loaded) {
  auto contourTaken = [&](int layer) {
    for (const LoadedFile& f : loaded)
      if (f.layer == layer && f.cardContour) return true;
    return false;
  };
  nlohmann::json files = nlohmann::json::array();
  for (const LoadedFile& f : loaded)
    files.push_back({{"file", f.path}, {"layer", f.layer}, {"cardContour", f.cardContour}});
  nlohmann::json layers = nlohmann::json::array();
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!InUse(b, layer)) continue;
    layers.push_back({{"index", layer},
                      {"name", b.LayerName[layer]},
                      {"pads", CountOf(b.Pads[layer])},
                      {"tracks", CountOf(b.Tracks[layer])},
                      {"contours", CountOf(b.Contours[layer])},
                      {"hatches", CountOf(b.Hatches[layer])},
                      {"overlap", PadOverlap(b, layer)},
                      {"cardContour", contourTaken(layer)}});
  }
  return {{"card",
           {{"width", FloatValue(b.CardWidth)},
            {"height", FloatValue(b.CardHeight)},
            {"thickness", FloatValue(b.CardThickness)}}},
          {"origin", {{"x", FloatValue(b.OriginX)}, {"y", FloatValue(b.OriginY)}}},
          {"layers", layers},
          {"drills", CountOf(b.Drills)},
          {"drillOverlap", PadOverlap(b, kDrillLayer)},
          {"cutouts", CountOf(b.Cutouts)},
          {"files", files}};
}

}  // namespace isolith
