// The copper layers of the real sample boards, for the benchmarks: found through each board's
// manifest and read through the program's Gerber load flow.
//
// The sample boards are installed by `bash scripts/fetch-fixtures.sh <build>/fixtures` (ctest
// does it before the tests).
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/Application.h"
#include "commands/ImportSteps.h"
#include "core/board/BoardOps.h"
#include "core/platform/ConsolePlatform.h"

namespace isolith::bench {

namespace fs = std::filesystem;

inline const fs::path kBoards =
    fs::path(ISOLITH_BINARY_DIR) / "fixtures/node_modules/@tracespace/fixtures/boards";

// The string value of `key` in a flat JSON object's text, empty when absent.
inline std::string JsonValue(const std::string& object, const std::string& key) {
  const size_t k = object.find("\"" + key + "\"");
  if (k == std::string::npos) return {};
  const size_t open = object.find('"', object.find(':', k) + 1);
  const size_t close = object.find('"', open + 1);
  return open == std::string::npos || close == std::string::npos
             ? std::string()
             : object.substr(open + 1, close - open - 1);
}

// The copper layer files of every board, as each board's manifest names them.
inline std::vector<fs::path> CopperLayers() {
  std::vector<fs::path> layers;
  std::error_code ec;
  for (const auto& board : fs::directory_iterator(kBoards, ec)) {
    std::ifstream in(board.path() / "manifest.json");
    std::stringstream text;
    text << in.rdbuf();
    const std::string manifest = text.str();
    for (size_t open = manifest.find('{', 1); open != std::string::npos;
         open = manifest.find('{', open + 1)) {
      const std::string object = manifest.substr(open, manifest.find('}', open) - open);
      if (JsonValue(object, "type") == "copper")
        layers.push_back(board.path() / JsonValue(object, "name"));
    }
  }
  return layers;
}

// One layer read through the program's Gerber load flow, as layer 0 of its own job.
struct Layer {
  std::FILE* quiet = std::fopen("/dev/null", "w");
  ConsolePlatform platform{quiet ? quiet : stderr};
  Application app{platform};
  std::string name;
  long long draftSegments = 0;

  ~Layer() {
    if (quiet) std::fclose(quiet);
  }
};

inline std::unique_ptr<Layer> LoadLayer(const fs::path& path) {
  auto layer = std::make_unique<Layer>();
  layer->name = path.filename().string();
  ResetJob(layer->app.board);
  ImportContext context = MakeImportContext(layer->app);
  layer->app.settings.LayerImportFormat = kFormatGerber;
  if (OpenGerberFile(context, path.string(), 0) != LoadResult::Loaded) return nullptr;
  return layer;
}

inline void NoSampleBoards() {
  std::fprintf(stderr,
               "No sample boards under %s: run scripts/fetch-fixtures.sh %s/fixtures first.\n",
               kBoards.string().c_str(), ISOLITH_BINARY_DIR);
}

}  // namespace isolith::bench
