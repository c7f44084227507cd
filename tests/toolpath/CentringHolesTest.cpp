#include "toolpath/CentringHoles.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/board/BoardOps.h"
#include "support/FakePlatform.h"
#include "toolpath/TDialogManuPlot.h"

namespace isolith {
namespace {

using test::FakePlatform;

constexpr float kGrid = 2.54f;
constexpr double kSlack = 1e-4;

void Pad(Board& b, int layer, float x, float y) {
  TPad* tail = LastOf(b.Pads[layer]);
  AppendTo(b.Pads[layer], tail, new TPad{1, 0, x, y, nullptr});
}

// A board, the scripted platform and the program's steps, which only record that they ran and
// the pending command they found.
struct HoleWorld {
  Board board;
  FakePlatform platform;
  Settings settings;
  std::vector<std::string> steps;
  CentringContext context{board, platform, settings, {}};

  HoleWorld(float width, float height) {
    board.CardWidth = width;
    board.CardHeight = height;
    settings.LengthUnitLabel = "mm";
    context.steps.resetHover = [this] {
      steps.push_back("hover " + std::to_string(board.PendingCommand));
      ClearHover(board);
    };
    context.steps.reframe = [this] { steps.push_back("reframe"); };
  }

  void Dialog(std::function<bool(TDialogManuPlot&)> run) {
    platform.dialogs["TDialogManuPlot"] = [run](DialogForm& f) {
      return run(static_cast<TDialogManuPlot&>(f));
    };
  }
};

void ExpectHoles(const Board& b, double x1, double y1, double x2, double y2) {
  EXPECT_NEAR(b.CentreHole1X, x1, kSlack);
  EXPECT_NEAR(b.CentreHole1Y, y1, kSlack);
  EXPECT_NEAR(b.CentreHole2X, x2, kSlack);
  EXPECT_NEAR(b.CentreHole2Y, y2, kSlack);
}

TEST(CentringHoles, HolesAreNumberedAsOnAKeypadAndSnapFromTheOrigin) {
  Board b;
  b.CentreHole1X = 5, b.CentreHole1Y = 6, b.CentreHole2X = 95, b.CentreHole2Y = 76;
  float x = 0, y = 0;
  ASSERT_TRUE(CenteringHole(b, 3, x, y));
  EXPECT_EQ(std::pair(x, y), std::pair(95.0f, 6.0f));
  ASSERT_TRUE(CenteringHole(b, 7, x, y));
  EXPECT_EQ(std::pair(x, y), std::pair(5.0f, 76.0f));
  EXPECT_FALSE(CenteringHole(b, 5, x, y));
  // Without the second corner only hole 1 exists; a coordinate of exactly -0.1 is not a hole.
  b.CentreHole2X = -1;
  EXPECT_TRUE(CenteringHole(b, 1, x, y));
  EXPECT_FALSE(CenteringHole(b, 9, x, y));
  b.CentreHole1X = -0.1f;
  EXPECT_FALSE(CenteringHole(b, 1, x, y));

  // The grid's points are multiples of the step from the origin.
  b.OriginX = 1, b.OriginY = 2;
  x = 10.3f, y = 9.9f;
  SnapToGrid(b, kGrid, x, y);
  EXPECT_NEAR(x, 11.16, kSlack);
  EXPECT_NEAR(y, 9.62, kSlack);
}

TEST(CentringHoles, RoomIsMadeOnlyWhenARoundedMarginFallsShortOfAQuarter) {
  // Margins of 30 and 25 mm on a 100 x 80 card: nothing moves, and the placing mode begins
  // with the view on the whole card.
  HoleWorld w(100, 80);
  Pad(w.board, 0, 30, 25);
  Pad(w.board, 0, 70, 55);
  w.board.ViewLeft = 40;
  EXPECT_EQ(AddCenteringHoles(w.context), CentringResult::Placing);
  EXPECT_EQ(w.board.Pads[0]->x, 30);
  EXPECT_EQ(w.board.Pads[0]->y, 25);
  EXPECT_EQ(w.board.CardWidth, 100);
  EXPECT_EQ(w.board.CardHeight, 80);
  EXPECT_EQ(w.board.ViewLeft, 0);
  EXPECT_EQ(w.board.PendingCommand, kCentringCommand);
  EXPECT_EQ(w.steps, std::vector<std::string>{"hover 0"});
  EXPECT_GT(w.platform.repaints, 0);

  // 24.2 mm rounds up to 25.4, a full quarter of 100: still nothing moves. 24 mm rounds down
  // to 22.86 and falls short.
  Board b;
  b.CardWidth = 100, b.CardHeight = 80;
  Pad(b, 0, 24.2f, 40);
  Pad(b, 0, 75, 40);
  EXPECT_FALSE(MakeCentringRoom(b));
  b.Pads[0]->x = 24;
  EXPECT_TRUE(MakeCentringRoom(b));

  // A margin of 1 mm rounds to 0: the card moves by a quarter of its width, and the other axis,
  // whose margin is wide enough, by that margin rounded. The card then holds the content in its
  // middle.
  Board c;
  c.CardWidth = 100, c.CardHeight = 80;
  Pad(c, 0, 1, 40);
  Pad(c, 1, 60, 50);
  c.OriginX = 5, c.OriginY = 5;
  ASSERT_TRUE(MakeCentringRoom(c));
  EXPECT_NEAR(c.Pads[0]->x, 26, kSlack);
  EXPECT_NEAR(c.Pads[0]->y, 70.48, kSlack);
  EXPECT_NEAR(c.Pads[1]->x, 85, kSlack);
  EXPECT_NEAR(c.OriginX, 30, kSlack);
  EXPECT_NEAR(c.CardWidth, 111, kSlack);
  EXPECT_NEAR(c.CardHeight, 150.96, kSlack);
}

TEST(CentringHoles, RefusedWhenTheFirstLayerHasNoCopper) {
  HoleWorld w(100, 80);
  Pad(w.board, 1, 50, 40);
  w.board.PendingCommand = 12013;
  EXPECT_EQ(AddCenteringHoles(w.context), CentringResult::Refused);
  EXPECT_EQ(w.platform.beeps, 1);
  EXPECT_TRUE(w.steps.empty());
  EXPECT_EQ(w.board.PendingCommand, 12013);
  EXPECT_EQ(w.board.Pads[1]->x, 50);
}

TEST(CentringHoles, FirstClickProposesTheOppositeCornerAndOkFits) {
  HoleWorld w(100, 80);
  Pad(w.board, 0, 30, 25);
  Pad(w.board, 0, 70, 55);
  ASSERT_EQ(AddCenteringHoles(w.context), CentringResult::Placing);
  w.steps.clear();

  // Hole 1 snaps to (10.16, 10.16); its reflection (89.84, 69.84) snaps to (88.9, 68.58), which
  // stands in the model while the dialog is open.
  int seen = 0;
  w.Dialog([&](TDialogManuPlot& f) {
    ++seen;
    EXPECT_EQ(f.title, "Centering holes");
    EXPECT_EQ(f.xText, "78.74");
    EXPECT_EQ(f.yText, "58.42");
    EXPECT_NEAR(f.minX, -10.16, kSlack);
    EXPECT_NEAR(f.maxX, 89.84, kSlack);
    EXPECT_NEAR(f.minY, -10.16, kSlack);
    EXPECT_NEAR(f.maxY, 69.84, kSlack);
    EXPECT_EQ(f.unit, "mm");
    ExpectHoles(w.board, 10.16, 10.16, 88.9, 68.58);
    EXPECT_EQ(w.board.PendingCommand, 0);
    return true;
  });
  EXPECT_EQ(PlaceCenteringHole(w.context, 10.3f, 9.9f, kGrid), CentringResult::Fitted);
  EXPECT_EQ(seen, 1);
  ExpectHoles(w.board, 10.16, 10.16, 88.9, 68.58);
  // Fitted, then ResetHover with nothing pending, so that it does not reframe a second time.
  EXPECT_EQ(w.steps, (std::vector<std::string>{"reframe", "hover 0"}));
  // The mode has ended: a further click does nothing.
  EXPECT_EQ(PlaceCenteringHole(w.context, 50, 50, kGrid), CentringResult::Ignored);

  // With Ctrl held nothing snaps, and a typed distance sets the second hole.
  HoleWorld v(100, 80);
  Pad(v.board, 0, 50, 40);
  AddCenteringHoles(v.context);
  v.platform.decimalSeparator = ',';
  v.Dialog([&](TDialogManuPlot& f) {
    EXPECT_EQ(f.xText, "79,4");
    EXPECT_EQ(f.yText, "60,2");
    f.xText = "60";
    f.yText = "30,5";
    return true;
  });
  EXPECT_EQ(PlaceCenteringHole(v.context, 10.3f, 9.9f, 0), CentringResult::Fitted);
  ExpectHoles(v.board, 10.3, 9.9, 70.3, 40.4);
}

TEST(CentringHoles, DistanceFieldsAreCheckedAgainstTheCard) {
  FakePlatform p;
  TDialogManuPlot f(TDialogManuPlot::kCentringTitle, 80, 60, -10, 90, -10, 70, "mm", '.');
  f.xText = "90.0009";
  f.yText = "-10";
  ASSERT_TRUE(f.Accept(p));
  EXPECT_NEAR(f.x, 90.0009, kSlack);
  EXPECT_EQ(f.y, -10);
  f.xText = "90.002";
  f.yText = "5";
  EXPECT_FALSE(f.Accept(p));
  EXPECT_EQ(f.focus, TDialogManuPlot::kX);
  ASSERT_EQ(p.messages.size(), 1u);
  EXPECT_EQ(p.messages[0].title, "Error");
  EXPECT_NE(p.messages[0].text.find("Position :  90.002 mm"), std::string::npos);
  // A refused Y keeps both values as they were.
  f.xText = "1";
  f.yText = "70.5";
  EXPECT_FALSE(f.Accept(p));
  EXPECT_EQ(f.focus, TDialogManuPlot::kY);
  EXPECT_EQ(f.y, -10);
  EXPECT_NEAR(f.x, 90.0009, kSlack);
}

TEST(CentringHoles, CancelKeepsTheFirstHoleAloneAndTheCommandThenRemovesIt) {
  HoleWorld w(100, 80);
  Pad(w.board, 0, 50, 40);
  AddCenteringHoles(w.context);
  w.steps.clear();
  w.Dialog([](TDialogManuPlot&) { return false; });
  EXPECT_EQ(PlaceCenteringHole(w.context, 10, 10, 0), CentringResult::Cancelled);
  ExpectHoles(w.board, 10, 10, -1, -1);
  EXPECT_EQ(w.board.PendingCommand, 0);
  EXPECT_TRUE(w.steps.empty());

  EXPECT_EQ(AddCenteringHoles(w.context), CentringResult::Removed);
  ExpectHoles(w.board, -1, -1, -1, -1);
  EXPECT_EQ(w.steps, (std::vector<std::string>{"hover 0", "reframe", "hover 0"}));
}

TEST(CentringHoles, PlotManuallyTakesTheSecondHoleByClick) {
  HoleWorld w(100, 80);
  Pad(w.board, 0, 50, 40);
  AddCenteringHoles(w.context);
  w.steps.clear();
  w.Dialog([](TDialogManuPlot& f) {
    f.PlotManually();
    return false;
  });
  EXPECT_EQ(PlaceCenteringHole(w.context, 10, 10, 0), CentringResult::Placing);
  EXPECT_EQ(w.board.PendingCommand, kCentringCommand);
  ExpectHoles(w.board, 10, 10, -1, -1);
  EXPECT_TRUE(w.steps.empty());

  EXPECT_EQ(PlaceCenteringHole(w.context, 91, 72.5f, kGrid), CentringResult::Fitted);
  ExpectHoles(w.board, 10, 10, 91.44, 73.66);
  EXPECT_EQ(w.board.PendingCommand, 0);
  EXPECT_EQ(w.steps, (std::vector<std::string>{"reframe", "hover 0"}));
  EXPECT_EQ(w.platform.dialogsRun.size(), 1u);
}

TEST(CentringHoles, RemovingHolesPutsAnOriginStandingOnOneBackAtZero) {
  auto removeWithOrigin = [](float ox, float oy) {
    HoleWorld w(100, 80);
    Pad(w.board, 0, 50, 40);
    w.board.CentreHole1X = 5, w.board.CentreHole1Y = 5;
    w.board.CentreHole2X = 95, w.board.CentreHole2Y = 75;
    w.board.OriginX = ox, w.board.OriginY = oy;
    EXPECT_EQ(AddCenteringHoles(w.context), CentringResult::Removed);
    ExpectHoles(w.board, -1, -1, -1, -1);
    EXPECT_EQ(w.steps.size(), 3u);
    return std::pair{w.board.OriginX, w.board.OriginY};
  };
  // On hole 3, (95, 5), within 0.05 on both axes.
  EXPECT_EQ(removeWithOrigin(95.03f, 5.02f), (std::pair{0.0f, 0.0f}));
  EXPECT_EQ(removeWithOrigin(5, 75), (std::pair{0.0f, 0.0f}));
  // Just beside a hole, or elsewhere, the origin stays.
  EXPECT_EQ(removeWithOrigin(95.07f, 5), (std::pair{95.07f, 5.0f}));
  EXPECT_EQ(removeWithOrigin(50, 40), (std::pair{50.0f, 40.0f}));
}

}  // namespace
}  // namespace isolith
