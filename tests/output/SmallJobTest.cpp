// A small job in every written format against a hand-checked file: an open engraving path with
// a step along X only, then a tool change and one hole bored wider than its drill. CR LF, the
// number forms, skipped axes, the tool change and the circle (as an arc, and as a polygon where
// the format has no arc) are all in it.
#include <gtest/gtest.h>

#include "OutputWorld.h"
#include "output/driver/LayerWalk.h"

namespace isolith::test {
namespace {

struct SmallJob {
  int format;
  const char* expected;  // file in the test data folder
  bool arcs;
};

void BuildSmallJob(OutputWorld& w) {
  AddPath(w.board.Contours[0], {{12.5f, 10}, {30, 10}, {30, 25.25f}});
  w.board.DrillDiameter[1] = 1.2f;
  AddDrill(w.board, 40, 30, 1);
  w.drills.rows[0] = {1.2f, 1};
  ResetTool(w.tools[1]);
  SetToolName(w.tools[1], "Drill 0.8: hard");
  w.tools[1].Diameter = 0.8f;
  w.tools[1].RotationSpeed = 0;
  w.tools[1].AbsDrillSpeed = 30;
  w.settings.DrillingTool = 1;
  w.settings.DrillingDepth = 1.5f;
  w.settings.BoringSpeed = 90;
  w.settings.BoringDrills = true;
  w.settings.BoringThreshold = 1;
  w.settings.BoringDir = -1;
}

class SmallJobFiles : public ::testing::TestWithParam<SmallJob> {};

TEST_P(SmallJobFiles, MatchHandCheckedFile) {
  const SmallJob job = GetParam();
  OutputWorld w;
  BuildSmallJob(w);
  w.settings.ExportArcs = job.arcs;
  const std::string path = w.Path("job.out");
  ASSERT_TRUE(
      ExportLayerWalk(w.context, job.format, path, 0, true, true, true, 0, 0, 2, true, true));
  std::string expected = ReadFile(std::string(ISOLITH_TEST_DATA) + "/" + job.expected);
  // The files name the output path, which differs from run to run.
  for (std::size_t at; (at = expected.find("<path>")) != std::string::npos;)
    expected.replace(at, 6, path);
  EXPECT_EQ(ReadFile(path), expected) << job.expected;
}

INSTANTIATE_TEST_SUITE_P(
    Formats, SmallJobFiles,
    ::testing::Values(SmallJob{2, "small.plt", true}, SmallJob{4, "small.dxf", true},
                      SmallJob{5, "small.ncp", true}, SmallJob{9, "small.iso", true},
                      SmallJob{9, "small-polygon.iso", false}, SmallJob{11, "small.num", true},
                      SmallJob{19, "small.cm3", true}, SmallJob{20, "small.egx", true},
                      SmallJob{21, "small.sml", true}, SmallJob{22, "small.cbr", true}),
    [](const auto& info) {
      std::string name = info.param.expected;
      for (char& c : name)
        if (c == '.' || c == '-') c = '_';
      return name;
    });

}  // namespace
}  // namespace isolith::test
