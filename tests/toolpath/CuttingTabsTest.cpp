#include "toolpath/CuttingTabs.h"

#include <gtest/gtest.h>

#include "OutlineTestBoards.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::FakePlatform;
using test::MakePolygon;
using test::Points;
using test::XY;

struct TabWorld {
  Board board;
  FakePlatform platform;
  Settings settings;
  ToolTable tools{};
  CutContext context{board, platform, settings, tools, true};

  // One cut-out whose single path is the given chain.
  TCutout& Cutout(const std::vector<XY>& path) {
    TCutout* c = new TCutout;
    c->outline = MakePolygon(path);
    c->paths = MakePolygon(path);
    TCutout* tail = nullptr;
    AppendTo(board.Cutouts, tail, c);
    return *c;
  }
};

const std::vector<XY> kRing{{0, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}};

// Feet are found with probes 20000 mm long, good to about 0.002 mm.
constexpr double kFootSlack = 2e-3;

void ExpectPath(const TPolygon* p, const std::vector<XY>& expected) {
  ASSERT_NE(p, nullptr);
  const auto got = Points(*p);
  ASSERT_EQ(got.size(), expected.size());
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_NEAR(got[i].x, expected[i].x, kFootSlack) << "vertex " << i;
    EXPECT_NEAR(got[i].y, expected[i].y, kFootSlack) << "vertex " << i;
  }
}

TEST(CuttingTabs, FootAndMarker) {
  TabWorld w;
  w.Cutout(kRing);
  TabFoot foot;
  ASSERT_TRUE(FindTabFoot(w.board, 10, 0.5f, 2, foot));
  EXPECT_EQ(foot.segment, w.board.Cutouts->paths->first);
  EXPECT_NEAR(foot.x, 10, kFootSlack);
  EXPECT_NEAR(foot.y, 0, kFootSlack);
  // Nearer to the right edge than to the bottom one.
  ASSERT_TRUE(FindTabFoot(w.board, 19.5f, 0.8f, 2, foot));
  EXPECT_NEAR(foot.x, 20, kFootSlack);
  EXPECT_NEAR(foot.y, 0.8f, kFootSlack);
  EXPECT_FALSE(FindTabFoot(w.board, 10, 5, 2, foot));
  float mx = 0, my = 0;
  TabMarker(w.board, 10, 5, 2, mx, my);
  EXPECT_EQ(mx, -w.board.CardWidth);
  EXPECT_EQ(my, -w.board.CardHeight);
}

TEST(CuttingTabs, TabSplitsThePathAndAllowsForTheTool) {
  TabWorld w;
  TCutout& c = w.Cutout(kRing);
  w.settings.CuttingTabs = 2;
  ASSERT_TRUE(AddCuttingTab(w.context, 10, 0.5f));
  ASSERT_EQ(CountOf(c.paths), 2);
  ExpectPath(c.paths, {{0, 0}, {9, 0}});
  ExpectPath(c.paths->next, {{11, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}});

  // With a cutting tool the gap grows by its width at the cutting depth.
  TabWorld tool;
  TCutout& t = tool.Cutout(kRing);
  ResetTool(tool.tools[0]);
  tool.tools[0].Diameter = 2;
  tool.settings.CuttingTool = 0;
  EXPECT_FLOAT_EQ(TabHalfGap(tool.settings, tool.tools), 2);
  ASSERT_TRUE(AddCuttingTab(tool.context, 10, 10.5f));
  ExpectPath(t.paths, {{0, 0}, {20, 0}, {20, 10}, {12, 10}});
  ExpectPath(t.paths->next, {{8, 10}, {0, 10}, {0, 0}});
}

TEST(CuttingTabs, TabsNearTheEndsOfAPath) {
  // Near the start of a ring: both pieces stay, in the order of cutting.
  TabWorld w;
  TCutout& c = w.Cutout(kRing);
  TabFoot foot;
  ASSERT_TRUE(FindTabFoot(w.board, 2.5f, 0, 2, foot));
  CutTab(c, foot, 1);
  ExpectPath(c.paths, {{0, 0}, {1.5f, 0}});
  ExpectPath(c.paths->next, {{3.5f, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}});

  // Closer to the start than the gap: the first part goes altogether.
  TabWorld start;
  TCutout& s = start.Cutout(kRing);
  ASSERT_TRUE(FindTabFoot(start.board, 0.5f, 0, 2, foot));
  CutTab(s, foot, 1);
  ASSERT_EQ(CountOf(s.paths), 1);
  ExpectPath(s.paths, {{1.5f, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}});

  // On the very end of an open path the part behind the foot is deleted.
  TabWorld end;
  TCutout& e = end.Cutout({{0, 0}, {20, 0}});
  ASSERT_TRUE(FindTabFoot(end.board, 20, 0.5f, 2, foot));
  CutTab(e, foot, 1);
  ASSERT_EQ(CountOf(e.paths), 1);
  ExpectPath(e.paths, {{0, 0}, {19, 0}});

  // Just before a corner the second part loses its short first leg and then the whole half gap
  // along the next one: the gap grows there.
  TabWorld corner;
  TCutout& k = corner.Cutout(kRing);
  ASSERT_TRUE(FindTabFoot(corner.board, 19.5f, -0.5f, 2, foot));
  CutTab(k, foot, 1.5f);
  ExpectPath(k.paths, {{0, 0}, {18, 0}});
  ExpectPath(k.paths->next, {{20, 1.5f}, {20, 10}, {0, 10}, {0, 0}});
}

TEST(CuttingTabs, RefusalsAndTheTabDialog) {
  TabWorld w;
  EXPECT_FALSE(BeginCuttingTabs(w.context));
  EXPECT_EQ(w.platform.beeps, 1);

  // A path outside the card's lower-left corner: a marker with both coordinates negative.
  TCutout& c = w.Cutout({{-1, -1}, {20, -1}, {20, 10}, {-1, 10}, {-1, -1}});
  EXPECT_FALSE(AddCuttingTab(w.context, -0.5f, -1.2f));
  EXPECT_FALSE(AddCuttingTab(w.context, 10, 5));  // no foot near
  EXPECT_EQ(w.platform.beeps, 3);
  EXPECT_EQ(CountOf(c.paths), 1);

  w.platform.dialogs["TDialogTabs"] = [](DialogForm& form) {
    auto& tabs = static_cast<TDialogTabs&>(form);
    EXPECT_EQ(tabs.width, "2");
    tabs.width = "0.5";
    return true;
  };
  EXPECT_FALSE(BeginCuttingTabs(w.context));
  EXPECT_EQ(w.board.ActiveLayer, kCutoutLayer);
  ASSERT_EQ(w.platform.messages.size(), 1u);
  EXPECT_EQ(w.platform.messages[0].title, "Error");
  EXPECT_EQ(w.settings.CuttingTabs, 2.0f);

  w.platform.dialogs["TDialogTabs"] = [](DialogForm& form) {
    static_cast<TDialogTabs&>(form).width = "2*1.5";
    return true;
  };
  EXPECT_TRUE(BeginCuttingTabs(w.context));
  EXPECT_EQ(w.settings.CuttingTabs, 3.0f);
}

}  // namespace
}  // namespace isolith
