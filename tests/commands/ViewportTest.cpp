#include "commands/Viewport.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/board/BoardOps.h"

namespace isolith {
namespace {

TEST(Viewport, MappingRoundsAsTheScreenDoes) {
  Board b;
  Viewport v;
  v.PixelSize = 0.1f;
  v.BoardRect = {10, 20, 1010, 720};
  // X adds a half pixel and truncates toward zero; Y truncates first, then from the bottom.
  const struct {
    double world;
    int x, y;
  } rows[] = {{0.04, 10, 720}, {1.27, 23, 708}, {-0.26, 8, 722}, {-0.04, 10, 720}};
  for (const auto& r : rows) {
    EXPECT_EQ(WorldToScreenX(v, b, r.world), r.x) << r.world;
    EXPECT_EQ(WorldToScreenY(v, b, r.world), r.y) << r.world;
  }
  EXPECT_NEAR(ScreenToWorldX(v, b, 110), 10.0, 1e-5);
  EXPECT_NEAR(ScreenToWorldY(v, b, 620), 10.0, 1e-5);
}

TEST(Viewport, FitClampsSnapsKeepsMarginsAndCentres) {
  const struct {
    const char* what;
    float cardW, cardH;
    ViewBox box;
    int clientW, clientH;
    bool zoomed;
    float pixelSize;
    PixelRect rect;
  } rows[] = {
      // The whole card: margins all round, the width fills, the height is centred.
      {"whole card", 100, 70, {0, 0, 100, 70}, 808, 600, false, 0.125f, {4, 20, 804, 580}},
      {"95 % snaps back", 100, 70, {1, 1, 97, 68}, 808, 600, false, 0.125f, {4, 20, 804, 580}},
      {"card of 10 m", 10000, 7000, {0, 0, 10000, 7000}, 808, 600, false, 12.5f, {4, 20, 804, 580}},
      // A zoomed corner keeps the margins of the card edges it meets (left and bottom).
      {"zoomed corner", 100, 70, {0, 0, 50, 35}, 808, 600, true, 50.0f / 804, {4, 16, 808, 580}},
      {"swapped box", 100, 70, {50, 35, 0, 0}, 808, 600, true, 50.0f / 804, {4, 16, 808, 580}},
      {"clamped box", 100, 70, {-10, -10, 50, 35}, 808, 600, true, 50.0f / 804, {4, 16, 808, 580}},
      // The height fills and the width is centred.
      {"card of 0.01 mm",
       0.01f,
       0.01f,
       {0, 0, 0.01f, 0.01f},
       808,
       600,
       false,
       0.01f / 592,
       {108, 4, 700, 596}},
      {"client of one pixel", 100, 70, {0, 0, 100, 70}, 1, 1, false, 100, {0, 0, 1, 1}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.what);
    Board b;
    b.CardWidth = r.cardW;
    b.CardHeight = r.cardH;
    b.ViewLeft = r.box.left;
    b.ViewBottom = r.box.bottom;
    b.ViewRight = r.box.right;
    b.ViewTop = r.box.top;
    b.ZoomDepth = 2;
    Viewport v;
    v.ClientRect = {0, 0, r.clientW, r.clientH};
    FitView(v, b, true);
    EXPECT_EQ(v.Zoomed, r.zoomed);
    EXPECT_EQ(b.ZoomDepth, r.zoomed ? 2 : 0);
    EXPECT_FLOAT_EQ(v.PixelSize, r.pixelSize);
    EXPECT_EQ(v.BoardRect.left, r.rect.left);
    EXPECT_EQ(v.BoardRect.top, r.rect.top);
    EXPECT_EQ(v.BoardRect.right, r.rect.right);
    EXPECT_EQ(v.BoardRect.bottom, r.rect.bottom);
    // The box is what the pixels show, and a second fit changes nothing.
    EXPECT_NEAR(b.ViewRight - b.ViewLeft, (r.rect.right - r.rect.left) * v.PixelSize, 1e-3);
    const ViewBox before{b.ViewLeft, b.ViewBottom, b.ViewRight, b.ViewTop};
    FitView(v, b, true);
    EXPECT_EQ(v.BoardRect.top, r.rect.top);
    EXPECT_FLOAT_EQ(b.ViewTop, before.top);
  }
}

TEST(Viewport, ZoomHistoryKeepsFiveAndStepsAreRefusedAtTheirLimits) {
  Board b;
  b.CardWidth = 1000;
  b.CardHeight = 700;
  ResetView(b);
  Viewport v;
  v.ClientRect = {0, 0, 808, 600};
  FitView(v, b, true);
  EXPECT_EQ(ZoomStepOut(b), ZoomStep::Refused);  // the whole card already
  EXPECT_EQ(ZoomOut(b), false);
  EXPECT_EQ(ZoomStepIn(v, b, -1, 300), ZoomStep::Outside);
  EXPECT_EQ(b.ZoomDepth, 0);

  std::vector<float> widths;
  for (int step = 0; step < 6; ++step) {
    widths.push_back(b.ViewRight - b.ViewLeft);
    ASSERT_EQ(ZoomStepIn(v, b, 404, 300), ZoomStep::Done) << step;
    FitView(v, b, true);
  }
  EXPECT_EQ(b.ZoomDepth, 5);
  EXPECT_NEAR(b.ViewRight - b.ViewLeft, widths[5] / 2, 1);
  // The sixth box was not kept: Zoom out comes back to the fifth one pushed.
  EXPECT_TRUE(ZoomOut(b));
  EXPECT_FLOAT_EQ(b.ViewRight - b.ViewLeft, widths[4]);
  EXPECT_EQ(b.ZoomDepth, 4);
  FitView(v, b, true);
  // Down to 12.7 mm the steps in stop with the beep.
  while (ZoomStepIn(v, b, 404, 300) == ZoomStep::Done) FitView(v, b, true);
  EXPECT_LE(std::min(b.ViewRight - b.ViewLeft, b.ViewTop - b.ViewBottom), kMinimumZoom);
  // A step out grows to the right only, and forgets the history.
  const float left = b.ViewLeft, width = b.ViewRight - b.ViewLeft;
  EXPECT_EQ(ZoomStepOut(b), ZoomStep::Done);
  EXPECT_FLOAT_EQ(b.ViewLeft, left);
  EXPECT_NEAR(b.ViewRight - b.ViewLeft, width * 1.5, 1e-3);
  EXPECT_EQ(b.ZoomDepth, 0);
  EXPECT_TRUE(ZoomOut(b));  // an empty history: the whole card
  EXPECT_FLOAT_EQ(b.ViewRight, 1000);
}

TEST(Viewport, GridStepStaysBetweenFiveAndFiftyWholePixels) {
  const struct {
    float pixelSize, step;
  } rows[] = {{0.05f, 2.54f}, {0.125f, 2.54f}, {0.01f, 0.3175f}, {0.002f, 0.079375f},
              {0.6f, 5.08f},  {1.0f, 5.08f},   {10.0f, 81.28f},  {0.0f, 2.54f}};
  for (const auto& r : rows) EXPECT_FLOAT_EQ(GridStepFor(r.pixelSize), r.step) << r.pixelSize;
}

TEST(Viewport, GridLeavesOutTheOriginRowsOnTheCardEdges) {
  Board b;
  Viewport v;
  v.ClientRect = {0, 0, 808, 600};
  FitView(v, b, true);  // 100 by 70 at 0.125 mm per pixel
  const float step = GridStepFor(v.PixelSize);
  std::vector<ScreenPoint> points = GridPoints(v, b, step);
  EXPECT_EQ(points.size(), 39u * 27u);
  for (const ScreenPoint& p : points) {
    EXPECT_NE(p.x, v.BoardRect.left);
    EXPECT_NE(p.y, v.BoardRect.bottom);
  }
  b.OriginX = b.OriginY = 10;
  points = GridPoints(v, b, step);
  const ScreenPoint origin{WorldToScreenX(v, b, 10), WorldToScreenY(v, b, 10)};
  EXPECT_TRUE(std::any_of(points.begin(), points.end(),
                          [&](ScreenPoint p) { return p.x == origin.x && p.y == origin.y; }));
}

TEST(Viewport, PositionReadOut) {
  Board b;
  b.OriginX = 2;
  b.OriginY = 1;
  Settings s;
  EXPECT_EQ(PositionText(b, s, 12.5, 6.25), "X 10.50   Y 5.25");
  EXPECT_EQ(PositionText(b, s, -0.5, 6.25), "");
  s.LengthUnit = kLengthInch;
  EXPECT_EQ(PositionText(b, s, 12.5, 6.25), "X 0.41   Y 0.21");
}

}  // namespace
}  // namespace isolith
