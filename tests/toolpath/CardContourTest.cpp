#include "toolpath/CardContour.h"

#include <gtest/gtest.h>

#include "OutlineTestBoards.h"
#include "support/FakePlatform.h"
#include "toolpath/CuttingTabs.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

using test::AddPad;
using test::AddRectangle;
using test::AddTrack;
using test::CountMarkedTracks;
using test::FakePlatform;
using test::Points;
using test::XY;

struct CardWorld {
  Board board;
  FakePlatform platform;
  Settings settings;
  ToolTable tools{};
  CutContext context{board, platform, settings, tools, true};

  void UseCylindricalTool(float diameter) {
    ResetTool(tools[4]);
    tools[4].Diameter = diameter;
    settings.CuttingTool = 4;
  }
};

void ExpectFirstPoint(const TPolygon* p, float x, float y) {
  ASSERT_NE(p, nullptr);
  ASSERT_NE(p->first, nullptr);
  EXPECT_NEAR(p->first->x, x, 1e-4);
  EXPECT_NEAR(p->first->y, y, 1e-4);
}

TEST(CardContour, RectangleOfFourTracksBecomesTheCutout) {
  CardWorld w;
  AddRectangle(w.board, 0, 10, 5, 40, 25);
  AddPad(w.board, 0, 20, 15);
  TTrack* copper = AddTrack(w.board, 0, 20, 15, 30, 15);
  EXPECT_TRUE(DetectCardContour(w.context, 0));
  ASSERT_EQ(w.platform.questions.size(), 1u);
  EXPECT_EQ(w.platform.questions[0].text,
            "Please confirm that the highlighted track net\ndefines a card contour path.");
  EXPECT_EQ(w.board.Tracks[0], copper);  // only the edge was taken
  EXPECT_EQ(copper->next, nullptr);
  EXPECT_EQ(CountMarkedTracks(w.board, 0), 0);

  ASSERT_NE(w.board.Cutouts, nullptr);
  const TCutout& c = *w.board.Cutouts;
  EXPECT_EQ(c.side, 0);
  // Starts at the corner nearest to the origin, turned counter-clockwise for an outside path.
  const auto outline = Points(*c.outline);
  ASSERT_EQ(outline.size(), 5u);
  ExpectFirstPoint(c.outline, 10, 5);
  EXPECT_GT(TurnSum(c.outline->first), 0);
  // No cutting tool chosen: offset by half of 3.17 mm.
  ASSERT_EQ(CountOf(c.paths), 1);
  ExpectFirstPoint(c.paths, 10 - 1.585f, 5 - 1.585f);
  EXPECT_EQ(CountPoints(*c.paths), 5);
}

TEST(CardContour, DetectionNeedsFourTracksOfOneNet) {
  CardWorld w;
  // The last corner misses by 0.02: the trace does not reach all four.
  AddTrack(w.board, 0, 40, 25, 10, 25);
  AddTrack(w.board, 0, 10, 25, 10, 5);
  AddTrack(w.board, 0, 10, 5, 40, 5);
  AddTrack(w.board, 0, 40.02f, 5, 40.02f, 25);
  EXPECT_FALSE(DetectCardContour(w.context, 0));
  EXPECT_EQ(CountOf(w.board.Tracks[0]), 4);
  EXPECT_EQ(CountMarkedTracks(w.board, 0), 0);
  EXPECT_TRUE(w.platform.questions.empty());

  CardWorld single;  // one vertical track is both leftmost and rightmost
  AddTrack(single.board, 0, 0, 0, 0, 10);
  AddTrack(single.board, 0, 0, 10, 10, 10);
  AddTrack(single.board, 0, 10, 0, 0, 0);
  EXPECT_FALSE(DetectCardContour(single.context, 0));
  EXPECT_EQ(single.board.Cutouts, nullptr);
}

TEST(CardContour, NetTakingAsksAndRemovesTwinsButNotBranches) {
  CardWorld w;
  AddTrack(w.board, 0, 40, 25, 50, 25);  // a branch off the edge, listed before it
  AddRectangle(w.board, 0, 10, 5, 40, 25);
  w.platform.answers = {Answer::No};
  EXPECT_TRUE(DetectCardContour(w.context, 0));
  EXPECT_EQ(w.board.Cutouts, nullptr);
  EXPECT_EQ(CountOf(w.board.Tracks[0]), 5);

  // Without confirmation (started to run by itself) nothing is asked. Where the edge forks,
  // the track listed last is followed: here the edge itself.
  w.context.confirm = false;
  SetFlags(*AddTrack(w.board, 2, 10, 5, 40, 5), kTrackDisabled);  // a twin on another layer
  for (int l = 0; l < kCircuitLayers; ++l) w.board.Contours[l] = new TPolygon;
  EXPECT_TRUE(DetectCardContour(w.context, 0));
  EXPECT_EQ(w.platform.questions.size(), 1u);
  ASSERT_NE(w.board.Cutouts, nullptr);
  EXPECT_EQ(CountOf(w.board.Tracks[0]), 1);  // the branch stays on its layer
  EXPECT_EQ(w.board.Tracks[2], nullptr);
  // The edge was taken for copper so far: all contours go.
  for (int l = 0; l < kCircuitLayers; ++l) EXPECT_EQ(w.board.Contours[l], nullptr);
}

TEST(CardContour, DetectionAfterLoadTakesTheOutlineAndPathOffsetByTheToolRadius) {
  CardWorld w;
  w.UseCylindricalTool(2.0f);
  w.board.ActiveLayer = 1;
  AddRectangle(w.board, 1, 0, 0, 50, 30);
  DetectAfterLoad(w.context, 1, 0);
  ASSERT_NE(w.board.Cutouts, nullptr);
  EXPECT_EQ(w.board.Tracks[1], nullptr);
  EXPECT_EQ(w.board.ActiveLayer, 0);  // the layer held nothing else
  const auto path = Points(*w.board.Cutouts->paths);
  const std::vector<XY> expected{{-1, -1}, {51, -1}, {51, 31}, {-1, 31}, {-1, -1}};
  ASSERT_EQ(path.size(), expected.size());
  for (size_t i = 0; i < path.size(); ++i) {
    EXPECT_NEAR(path[i].x, expected[i].x, 1e-4);
    EXPECT_NEAR(path[i].y, expected[i].y, 1e-4);
  }

  CardWorld off;
  off.settings.DetectCutOut = false;
  AddRectangle(off.board, 0, 0, 0, 50, 30);
  DetectAfterLoad(off.context, 0, 0);
  EXPECT_EQ(off.board.Cutouts, nullptr);
  // Copper-plane detection ran: no pad feeds the rectangle.
  EXPECT_TRUE(TestFlags(*off.board.Tracks[0], kTrackCopperPlane));
}

TEST(CardContour, CutPathSideOrientationAndRecalculation) {
  CardWorld w;
  AddRectangle(w.board, 0, 10, 10, 30, 20);
  w.context.confirm = false;
  ASSERT_TRUE(DetectCardContour(w.context, 0));
  TCutout& c = *w.board.Cutouts;

  // Inside: the outline runs clockwise, the path inside it.
  w.platform.dialogs["TDialogCut"] = [](DialogForm& form) {
    auto& cut = static_cast<TDialogCut&>(form);
    EXPECT_EQ(cut.side, 0);
    EXPECT_EQ(cut.depth, 1.0f);
    cut.side = 1;
    return true;
  };
  ASSERT_TRUE(CalculateCutPath(w.context, c, true));
  EXPECT_EQ(c.side, 1);
  EXPECT_LT(TurnSum(c.outline->first), 0);
  ExpectFirstPoint(c.paths, 10 + 1.585f, 10 + 1.585f);
  EXPECT_LT(TurnSum(c.paths->first), 0);

  // Cancel changes nothing.
  w.platform.dialogs["TDialogCut"] = [](DialogForm&) { return false; };
  TPolygon* before = c.paths;
  EXPECT_FALSE(CalculateCutPath(w.context, c, true));
  EXPECT_EQ(c.paths, before);

  // A recalculation drops the tabs.
  TabFoot foot;
  ASSERT_TRUE(FindTabFoot(w.board, 20, 12, 2, foot));
  CutTab(c, foot, 1);
  EXPECT_EQ(CountOf(c.paths), 2);
  CalculateCutPath(w.context, c, false);
  EXPECT_EQ(CountOf(c.paths), 1);

  // Before output: an inside path with CuttingDir -1 stays clockwise, with 1 it is turned.
  OrientCutPaths(w.board, -1);
  EXPECT_LT(TurnSum(c.paths->first), 0);
  OrientCutPaths(w.board, 1);
  EXPECT_GT(TurnSum(c.paths->first), 0);
  c.side = 0;
  OrientCutPaths(w.board, 1);
  EXPECT_LT(TurnSum(c.paths->first), 0);
}

TEST(CardContour, ChangeToolSideNeedsACutout) {
  CardWorld w;
  EXPECT_EQ(ChangeToolSide(w.context), ToolSideStep::Refused);
  EXPECT_EQ(w.platform.beeps, 1);
  EXPECT_EQ(w.board.ActiveLayer, 0);

  w.context.confirm = false;
  AddRectangle(w.board, 0, 10, 10, 30, 20);
  DetectCardContour(w.context, 0);
  EXPECT_EQ(ChangeToolSide(w.context), ToolSideStep::Done);
  EXPECT_EQ(w.board.ActiveLayer, kCutoutLayer);
  EXPECT_EQ(w.platform.dialogsRun.back(), "TDialogCut");

  AddRectangle(w.board, 0, 50, 10, 70, 20);
  DetectCardContour(w.context, 0);
  EXPECT_EQ(ChangeToolSide(w.context), ToolSideStep::PickCutout);
}

}  // namespace
}  // namespace isolith
