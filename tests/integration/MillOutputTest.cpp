// The machine files of real boards: `isolith-cli mill` on each sample board writes a DXF that a
// DXF reader of its own opens, holding the milled lines.
#include <gtest/gtest.h>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliMain.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

// The top copper layer of each sample board.
std::vector<fs::path> TopCopperLayers() {
  std::vector<fs::path> layers;
  for (const auto& board : fs::directory_iterator(ISOLITH_FIXTURES)) {
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

// What a DXF reader finds in a file.
class DxfCount : public DL_CreationAdapter {
 public:
  int lines = 0, circles = 0, points = 0, layers = 0, oddLayer = 0, notFinite = 0;
  void addLayer(const DL_LayerData&) override { ++layers; }
  void addLine(const DL_LineData& d) override {
    ++lines;
    if (attributes.getLayer() != "PLAN_1") ++oddLayer;
    for (double v : {d.x1, d.y1, d.x2, d.y2}) notFinite += std::isfinite(v) ? 0 : 1;
  }
  void addCircle(const DL_CircleData&) override { ++circles; }
  void addPoint(const DL_PointData&) override { ++points; }
};

TEST(MillOutput, EverySampleBoardMillsToADxfThatADxfReaderOpens) {
  const std::vector<fs::path> layers = TopCopperLayers();
  ASSERT_EQ(layers.size(), 8u) << "sample boards missing from " << ISOLITH_FIXTURES;
  TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  for (const fs::path& layer : layers) {
    SCOPED_TRACE(layer.filename().string());
    const std::string dxf = config.path() + "board.dxf";
    std::ostringstream out, err;
    ASSERT_EQ(CliMain({"--config", config.path(), "--set", "MachineFormat=DXF", "mill",
                       layer.string(), "-o", dxf},
                      program.path(), out, err),
              kCliOk)
        << err.str();
    DxfCount found;
    DL_Dxf reader;
    ASSERT_TRUE(reader.in(dxf, &found));
    EXPECT_EQ(found.layers, 3);  // FOREGROUND, BACKGROUND and PLAN_1
    EXPECT_GT(found.lines, 100);
    EXPECT_EQ(found.oddLayer, 0);
    EXPECT_EQ(found.notFinite, 0);
  }
}

}  // namespace
}  // namespace isolith
