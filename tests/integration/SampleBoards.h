// The sample boards of the integration suites, installed into the build folder by the tests.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace isolith::test {

// The copper layers of the sample boards, or only the top one of each board, in the order of
// their paths.
inline std::vector<std::filesystem::path> SampleCopperLayers(bool topOnly) {
  namespace fs = std::filesystem;
  std::vector<fs::path> layers;
  for (const auto& board : fs::directory_iterator(ISOLITH_FIXTURES)) {
    std::ifstream in(board.path() / "manifest.json");
    const nlohmann::json manifest = nlohmann::json::parse(in, nullptr, false);
    if (manifest.is_discarded()) continue;
    for (const auto& layer : manifest["layers"])
      if (layer["type"] == "copper" && (!topOnly || layer["side"] == "top")) {
        layers.push_back(board.path() / layer["name"].get<std::string>());
        if (topOnly) break;
      }
  }
  std::sort(layers.begin(), layers.end());
  return layers;
}

inline std::vector<std::filesystem::path> TopCopperLayers() {
  return SampleCopperLayers(true);
}

}  // namespace isolith::test
