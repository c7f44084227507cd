// The layer walk: passes and sequences, nearest-start selection, the closed-contour entry, the
// drill order, cut paths, the done marks, and what a failed write leaves behind.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <vector>

#include "OutputWorld.h"
#include "WalkTestSupport.h"
#include "output/driver/LayerWalk.h"

namespace isolith::test {
namespace {

std::vector<std::string> Moves(const std::string& text) {
  return IsoMoves(text);
}

std::string WriteIso(OutputWorld& w, int sequence, bool optim = true, int layer = 0) {
  const std::string path = w.Path("walk.iso");
  EXPECT_TRUE(
      ExportLayerWalk(w.context, 9, path, layer, true, true, true, 0, 0, sequence, optim, optim));
  return ReadFile(path);
}

TEST(LayerWalk, ClosedContourIsEnteredAtItsNearestVertexAndGoesRound) {
  OutputWorld w;
  w.AddTriangle();
  // Clockwise as stored: the walk turns it before anything is chosen.
  AddPath(w.board.Contours[0], {{40, 40}, {40, 30}, {30, 30}, {30, 40}, {40, 40}});
  EXPECT_EQ(Moves(WriteIso(w, 0)),
            (std::vector<std::string>{"G00 X10 Y10", "G01 X20", "G01 X15 Y20", "G01 X10 Y10",
                                      "G00 X30 Y30", "G01 X40", "G01 Y40", "G01 X30", "G01 Y30"}));
  // Contours leave with a positive turning sum whatever the milling direction.
  EXPECT_EQ(w.board.Contours[0]->next->first->next->x, 30);
}

TEST(LayerWalk, OpenContourStartsAtItsFirstVertexAndListOrderWithoutOptimisation) {
  OutputWorld w;
  w.AddTriangle();
  AddPath(w.board.Contours[0], {{40, 40}, {30, 40}, {30, 30}, {40, 30}});
  AddPath(w.board.Contours[0], {{11, 11}, {12, 11}});
  EXPECT_EQ(Moves(WriteIso(w, 0)),
            (std::vector<std::string>{"G00 X10 Y10", "G01 X20", "G01 X15 Y20", "G01 X10 Y10",
                                      "G00 X11 Y11", "G01 X12", "G00 X40 Y40", "G01 X30", "G01 Y30",
                                      "G01 X40"}));
  EXPECT_EQ(Moves(WriteIso(w, 0, false)),
            (std::vector<std::string>{"G00 X10 Y10", "G01 X20", "G01 X15 Y20", "G01 X10 Y10",
                                      "G00 X40 Y40", "G01 X30", "G01 Y30", "G01 X40", "G00 X11 Y11",
                                      "G01 X12"}));
}

TEST(LayerWalk, HatchesFirstAtMillingDepthAndAHatchTakenByItsEndStaysTurned) {
  OutputWorld w;
  w.AddTriangle();
  w.settings.HatchingTool = 0;  // the same tool: no change between hatches and contours
  w.settings.HatchingDepth = 0.3f;
  w.settings.HatchingSpeed = 120;
  AddPath(w.board.Hatches[0], {{10, 12}, {20, 12}});
  TPolygon* far = AddPath(w.board.Hatches[0], {{50, 50}, {21, 12}});
  const std::string text = WriteIso(w, 0);
  EXPECT_EQ(Moves(text),
            (std::vector<std::string>{"G00 X10 Y12", "G01 X20", "G00 X21", "G01 X50 Y50",
                                      "G00 X10 Y10", "G01 X20", "G01 X15 Y20", "G01 X10 Y10"}));
  // One tool change only (the header's file name may hold a "T" of its own).
  ASSERT_NE(text.find("M06"), std::string::npos);
  EXPECT_EQ(text.find("M06"), text.rfind("M06"));
  EXPECT_EQ(text.find("Z-0.3"), std::string::npos);
  EXPECT_EQ(far->first->x, 21);
}

// Drills: tool by tool, each tool's holes by distance from the list's first drill.
void AddDrillJob(OutputWorld& w) {
  w.board.DrillDiameter[1] = 0.8f;
  w.board.DrillDiameter[2] = 1.0f;
  w.board.DrillDiameter[3] = 2.5f;  // no row: never drilled
  w.drills.rows[0] = {0.8f, 1};
  w.drills.rows[1] = {1.0f, 2};
  for (int t : {1, 2}) {
    ResetTool(w.tools[t]);
    w.tools[t].Diameter = t == 1 ? 0.8f : 1.0f;
  }
  w.settings.DrillingDepth = 2;
  AddDrill(w.board, 0, 0, 2);
  AddDrill(w.board, 10, 0, 1);
  AddDrill(w.board, 20, 0, 1);
  AddDrill(w.board, -12, 0, 1);
  AddDrill(w.board, 5, 5, 3);
}

TEST(LayerWalk, DrillsByToolAndDistanceFromTheFirstDrill) {
  OutputWorld w;
  AddDrillJob(w);
  const std::string text = WriteIso(w, 1);
  EXPECT_EQ(Moves(text), (std::vector<std::string>{"G00 X10", "G00 X-12", "G00 X20"}));
  // The second tool's only hole is at (0, 0), where a tool change leaves the pen: no rapid.
  EXPECT_NE(text.find("T3 M06\r\nM03 S8000\r\nG00 F1200\r\nG00 Z0.5\r\nG01 F150 Z-2\r\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.find("X5"), std::string::npos);
  EXPECT_EQ(Moves(WriteIso(w, 1, false)),
            (std::vector<std::string>{"G00 X10", "G00 X20", "G00 X-12"}));
  for (TDrill* d = w.board.Drills; d; d = d->next) EXPECT_FALSE(TestFlags(*d, kVisited));
}

TEST(LayerWalk, CentreHolesComeFirstWithTheCrossSpots) {
  OutputWorld w;
  AddDrillJob(w);
  w.settings.PlottingTool = 2;
  w.board.CentreHole1X = 1, w.board.CentreHole1Y = 1;
  w.board.CentreHole2X = 9, w.board.CentreHole2Y = 6;
  const std::vector<std::string> moves = Moves(WriteIso(w, 1));
  ASSERT_GE(moves.size(), 4u);
  EXPECT_EQ(std::vector<std::string>(moves.begin(), moves.begin() + 4),
            (std::vector<std::string>{"G00 X1 Y1", "G00 X9 Y6", "G00 Y1", "G00 X1 Y6"}));
}

TEST(LayerWalk, SequencesChooseThePassOfDrillsAndContours) {
  OutputWorld w;
  AddDrillJob(w);
  w.AddTriangle();
  auto firstMove = [&](int sequence) { return Moves(WriteIso(w, sequence)).front(); };
  EXPECT_EQ(firstMove(0), "G00 X10 Y10");
  EXPECT_EQ(firstMove(1), "G00 X10");
  EXPECT_EQ(firstMove(2), "G00 X10 Y10");
  EXPECT_EQ(firstMove(3), "G00 X10");
  EXPECT_EQ(firstMove(99), "G00 X10");
  EXPECT_EQ(Moves(WriteIso(w, 0)).size(), 4u);
  EXPECT_EQ(Moves(WriteIso(w, 2)).size(), 7u);
}

TEST(LayerWalk, CutPathsLastAndOnlyWithTheCardContourChoice) {
  OutputWorld w;
  w.AddTriangle();
  ResetTool(w.tools[4]);
  w.tools[4].Diameter = 2;
  w.settings.CuttingTool = 4;
  w.settings.CuttingDepth = 1.6f;
  TCutout* cutout = new TCutout;
  w.board.Cutouts = cutout;
  AddPath(cutout->paths, {{0, 0}, {50, 0}});
  AddPath(cutout->paths, {{50, 1}, {50, 30}});
  std::string text = WriteIso(w, 0);
  EXPECT_NE(text.find("T5 M06"), std::string::npos);
  const std::vector<std::string> moves = Moves(text);
  EXPECT_EQ(std::vector<std::string>(moves.end() - 3, moves.end()),
            (std::vector<std::string>{"G01 X50", "G00 Y1", "G01 Y30"}));
  w.choices.cardContour = false;
  text = WriteIso(w, 0);
  EXPECT_EQ(text.find("T5 M06"), std::string::npos);
}

TEST(LayerWalk, AFailedWriteLeavesThePreviousFileAndNoTemporaryFile) {
  OutputWorld w;
  w.AddTriangle();
  const std::string path = w.Path("job.iso");
  WriteFile(path, "previous job\r\n");

  // The disk fills up during the walk: writes beyond 100 bytes fail.
  signal(SIGXFSZ, SIG_IGN);
  rlimit saved{};
  getrlimit(RLIMIT_FSIZE, &saved);
  rlimit small = saved;
  small.rlim_cur = 100;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool written =
      ExportLayerWalk(w.context, 9, path, 0, true, true, true, 0, 0, 0, true, true);
  setrlimit(RLIMIT_FSIZE, &saved);
  EXPECT_FALSE(written);
  EXPECT_EQ(ReadFile(path), "previous job\r\n");
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(w.folder)) {
    (void)entry;
    ++files;
  }
  EXPECT_EQ(files, 1);

  // A target that cannot be created at all.
  EXPECT_FALSE(
      ExportLayerWalk(w.context, 9, "/dev/full/job.iso", 0, true, true, true, 0, 0, 0, true, true));
  // The same walk on a healthy disk replaces the file.
  EXPECT_TRUE(ExportLayerWalk(w.context, 9, path, 0, true, true, true, 0, 0, 0, true, true));
  EXPECT_EQ(ReadFile(path).rfind("( Isolith", 0), 0u);
}

TEST(LayerWalk, FormatsWithoutWordsAndCancelledNamesWriteNothing) {
  OutputWorld w;
  w.AddTriangle();
  EXPECT_FALSE(
      ExportLayerWalk(w.context, 3, w.Path("a.hpg"), 0, true, true, true, 0, 0, 0, true, true));
  EXPECT_FALSE(
      ExportLayerWalk(w.context, 33, w.Path("a.ppr"), 0, true, true, true, 0, 0, 0, true, true));
  // An empty name asks; Cancel ends the walk.
  w.platform.files.push_back("");
  EXPECT_FALSE(ExportLayerWalk(w.context, 9, "", 0, true, true, true, 0, 0, 0, true, true));
  ASSERT_EQ(w.platform.fileRequests.size(), 1u);
  EXPECT_EQ(w.platform.fileRequests[0].filters[0].description,
            "ISO G-Code for CNC-Mill Process  (*.ISO)");
  EXPECT_TRUE(std::filesystem::is_empty(w.folder));
}

}  // namespace
}  // namespace isolith::test
