// The top copper layer of each pinned sample board, in name order.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace isolith::test {

inline std::vector<std::filesystem::path> TopCopperLayers() {
  std::vector<std::filesystem::path> layers;
  for (const auto& board : std::filesystem::directory_iterator(ISOLITH_FIXTURES)) {
    std::ifstream in(board.path() / "manifest.json");
    const nlohmann::json manifest = nlohmann::json::parse(in, nullptr, false);
    if (manifest.is_discarded()) continue;
    for (const auto& layer : manifest["layers"])
      if (layer["type"] == "copper" && layer["side"] == "top") {
        layers.push_back(board.path() / layer["name"].get<std::string>());
        break;
      }
  }
  std::sort(layers.begin(), layers.end());
  return layers;
}

}  // namespace isolith::test
