// The machine files of real boards: `isolith-cli mill` on each sample board writes a DXF that a
// DXF reader of its own opens, holding the milled lines.
#include <gtest/gtest.h>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/CliMain.h"
#include "commands/Application.h"
#include "commands/Commands.h"
#include "commands/EditCommands.h"
#include "commands/ImportSteps.h"
#include "commands/OutputCommands.h"
#include "commands/ToolpathCommands.h"
#include "core/board/BoardOps.h"
#include "integration/IsoMoves.h"
#include "integration/SampleBoards.h"
#include "integration/SvgGroups.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"
#include "toolpath/ContourEdits.h"
#include "toolpath/Hatches.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

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

// One sample layer read into a job of its own, the card outline and copper planes left
// undetected.
struct SampleJob {
  test::FakePlatform platform;
  Application app;
  SampleJob(const TempFolder& program, const TempFolder& config)
      : app(platform, program.path(), config.path()) {
    InitSettings(app);
    app.settings.DetectCutOut = false;
    app.settings.DetectGndPlanes = false;
  }
  LoadResult Open(const fs::path& layer) {
    ImportContext context = MakeImportContext(app);
    return OpenGerberFile(context, layer.string(), 0);
  }
};

// A path that the contour engine left open on a sample board is closed by hand with "Add
// selected contour segments" (a caught end, then a click on the other end, which the snap
// takes exactly), and the milled ISO file then cuts the closing segment.
TEST(MillOutput, AnOpenContourClosedByHandIsCutClosed) {
  TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  bool closedOne = false;
  for (const fs::path& layer : TopCopperLayers()) {
    SampleJob job(program, config);
    Application& app = job.app;
    ASSERT_EQ(job.Open(layer), LoadResult::Loaded);
    ASSERT_TRUE(CalculateContoursOnAllLayers(app));
    Board& b = app.board;
    b.ActiveLayer = 0;
    // An open path whose ends lie further apart than the join distance, so it stays open.
    TPolygon* open = nullptr;
    for (TPolygon* p = b.Contours[0]; p && !open; p = p->next)
      if (IsOpenPath(*p) && CountPoints(*p) > 2 &&
          Distance(p->first->x, p->first->y, LastPoint(*p)->x, LastPoint(*p)->y) >
              ContourJoinTolerance(app) + 0.1f)
        open = p;
    if (!open) continue;
    SCOPED_TRACE(layer.filename().string());
    const TXY from = *LastPoint(*open), to = *open->first;

    constexpr float kScale = 100;  // pixels per mm: the picks reach 0.12 and 0.04 mm
    RequestRepaint(app);
    ASSERT_TRUE(RunCommand(app, cmd::AddContourSegments));
    ASSERT_TRUE(ContourClickAction(app, cmd::AddContourSegments, from.x, from.y, kScale, false));
    ASSERT_EQ(b.PendingCommand, cmd::AddContourSegmentsSecond);
    ASSERT_TRUE(ContourClickAction(app, b.PendingCommand, to.x + 0.02f, to.y, kScale, false));
    ASSERT_EQ(b.PendingCommand, cmd::AddContourSegments);
    ASSERT_FALSE(IsOpenPath(*open));
    EXPECT_EQ(LastPoint(*open)->x, to.x);  // snapped exactly onto the first vertex
    EXPECT_EQ(LastPoint(*open)->y, to.y);

    const std::string iso = config.path() + "closed.iso";
    ASSERT_TRUE(MillJob(app, iso));
    bool cut = false;
    auto near = [](const test::CutPoint& p, const TXY& v) {
      return std::fabs(p.x - v.x) < 0.011 && std::fabs(p.y - v.y) < 0.011;
    };
    for (const test::CutPath& path : test::IsoCuttingPaths(test::ReadAll(iso)))
      for (size_t i = 1; i < path.size(); ++i)
        if ((near(path[i - 1], from) && near(path[i], to)) ||
            (near(path[i - 1], to) && near(path[i], from)))
          cut = true;
    EXPECT_TRUE(cut) << "the closing segment is not milled";
    closedOne = true;
    break;
  }
  EXPECT_TRUE(closedOne) << "no sample board has an open contour";
}

TEST(MillOutput, IndexedHatchesOfTheSampleLayersAreTheFullScans) {
  // With the library's hatching tool, the keep-out of real boards holds chains whose ends stop
  // just short of their starts, which the indexed classification must find from below too.
  TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  int compared = 0;
  for (const fs::path& layer : TopCopperLayers()) {
    SampleJob job(program, config);
    Application& app = job.app;
    app.settings.HatchingTool = 0;
    ASSERT_EQ(job.Open(layer), LoadResult::Loaded);
    Board& b = app.board;
    // The full scans are quadratic: the larger boards would take minutes.
    if (CountOf(b.Pads[0]) + CountOf(b.Tracks[0]) > 2000) continue;
    SCOPED_TRACE(layer.filename().string());
    ASSERT_TRUE(CalculateContoursOnAllLayers(app));
    HatchSettings s = HatchSettingsFrom(app.settings, app.tools);
    HatchSession session;
    session.rectangle = ZoneRectangle(b, kHatchWholeBoard);
    std::vector<std::string> hatches;
    for (bool indexed : {false, true}) {
      s.indexed = indexed;
      FreePolygons(std::exchange(b.Hatches[0], nullptr));
      CalculateHatches(b, 0, s, session, nullptr);
      std::string dump;
      for (const TPolygon* p = b.Hatches[0]; p; p = p->next, dump += ';')
        for (const TXY* v = p->first; v; v = v->next)
          dump += std::to_string(std::bit_cast<uint32_t>(v->x)) + ',' +
                  std::to_string(std::bit_cast<uint32_t>(v->y)) + ' ';
      hatches.push_back(dump);
    }
    EXPECT_FALSE(hatches[0].empty());
    EXPECT_TRUE(hatches[0] == hatches[1]);
    ++compared;
  }
  EXPECT_GE(compared, 3);
}

}  // namespace
}  // namespace isolith
