// The machine files of real boards: `isolith-cli mill` on each sample board writes a DXF that a
// DXF reader of its own opens, holding the milled lines.
#include <gtest/gtest.h>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliMain.h"
#include "integration/IsoMoves.h"
#include "integration/SampleLayers.h"
#include "integration/SvgGroups.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

using test::TopCopperLayers;

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

// The milled paths of a machine file are the contours of the job: every cutting move of the ISO
// file runs along a contour (to the file's two decimals), and every contour vertex is cut. The
// contours themselves are measured against the copper by the clearance test (clearance and
// isolation on every sample layer), so what holds for them holds for the machine file.
TEST(MillOutput, EverySampleBoardMillsToAnIsoFileThatCutsItsContours) {
  const std::vector<fs::path> layers = TopCopperLayers();
  ASSERT_EQ(layers.size(), 8u);
  TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  // No card contour and no copper planes: every contour is cut, nothing else.
  const std::vector<std::string> common = {"--config",        config.path(), "--set",
                                           "DetectCutOut=No", "--set",       "DetectGndPlanes=No"};
  for (const fs::path& layer : layers) {
    SCOPED_TRACE(layer.filename().string());
    const std::string iso = config.path() + "board.iso", svg = config.path() + "board.svg";
    std::vector<std::string> mill = common, render = common;
    mill.insert(mill.end(), {"--set", "MachineFormat=ISO", "mill", layer.string(), "-o", iso});
    render.insert(render.end(), {"render", "--contours", layer.string(), "-o", svg});
    std::ostringstream out, err;
    ASSERT_EQ(CliMain(mill, program.path(), out, err), kCliOk) << err.str();
    ASSERT_EQ(CliMain(render, program.path(), out, err), kCliOk) << err.str();

    // The contour vertices, on the grid of the file's two decimals.
    auto key = [](double x, double y) {
      return std::make_pair(std::llround(x * 100), std::llround(y * 100));
    };
    std::map<std::pair<long long, long long>, bool> vertices;  // vertex -> cut
    auto groups = test::ReadSvgGroups(test::ReadAll(svg));
    for (const test::SvgPath& c : groups["contours0"])
      for (const test::SvgPt& p : c) vertices[key(p.x, p.y)] = false;
    ASSERT_FALSE(vertices.empty());

    int strays = 0, cuts = 0;
    for (const test::CutPath& path : test::IsoCuttingPaths(test::ReadAll(iso)))
      for (const test::CutPoint& p : path) {
        ++cuts;
        // Within a unit of the last decimal: the file rounds the float with "%.2f".
        const auto [kx, ky] = key(p.x, p.y);
        bool found = false;
        for (long long dx = -1; dx <= 1; ++dx)
          for (long long dy = -1; dy <= 1; ++dy)
            if (auto it = vertices.find({kx + dx, ky + dy}); it != vertices.end()) {
              it->second = true;
              found = true;
            }
        strays += found ? 0 : 1;
      }
    EXPECT_GT(cuts, 0);
    EXPECT_EQ(strays, 0) << "of " << cuts << " cutting points lie on no contour";
    const auto uncut =
        std::count_if(vertices.begin(), vertices.end(), [](const auto& v) { return !v.second; });
    EXPECT_EQ(uncut, 0) << "of " << vertices.size() << " contour vertices are never cut";
  }
}

}  // namespace
}  // namespace isolith
