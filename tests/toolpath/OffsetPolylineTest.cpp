#include "toolpath/OffsetPolyline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "OutlineTestBoards.h"

namespace isolith {
namespace {

using test::MakePolygon;
using test::Points;
using test::XY;

struct PathList {
  TPolygon* head = nullptr;
  ~PathList() { FreeChain(head); }
  int Count() const { return CountOf(head); }
};

PathList Offset(const std::vector<XY>& outline, float d, bool leftSide = false,
                float minLength = kCutMinLength) {
  std::unique_ptr<TPolygon> source(MakePolygon(outline));
  return {OffsetPolyline(source->first, leftSide, d, kCutArcAngle, kCutArcStep, kCutSimplify,
                         minLength)};
}

void ExpectPoints(const TPolygon& p, const std::vector<XY>& expected) {
  const auto got = Points(p);
  ASSERT_EQ(got.size(), expected.size());
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_NEAR(got[i].x, expected[i].x, 1e-4) << "vertex " << i;
    EXPECT_NEAR(got[i].y, expected[i].y, 1e-4) << "vertex " << i;
  }
}

// True distance from a point to a closed outline.
double DistanceToOutline(const std::vector<XY>& outline, double x, double y) {
  double best = 1e30;
  for (size_t i = 0; i + 1 < outline.size(); ++i) {
    const double ax = outline[i].x, ay = outline[i].y;
    const double dx = outline[i + 1].x - ax, dy = outline[i + 1].y - ay;
    double t = ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy);
    t = std::fmax(0, std::fmin(1, t));
    best = std::fmin(best, std::hypot(x - ax - t * dx, y - ay - t * dy));
  }
  return best;
}

TEST(OffsetPolyline, RectangleGetsMitredCornersOnEitherSide) {
  // Counter-clockwise: the right side is outside. A turn of exactly 90 degrees stays under the
  // arc angle, so the corners are mitred.
  const std::vector<XY> ccw{{10, 10}, {30, 10}, {30, 20}, {10, 20}, {10, 10}};
  PathList outside = Offset(ccw, 1);
  ASSERT_EQ(outside.Count(), 1);
  ExpectPoints(*outside.head, {{9, 9}, {31, 9}, {31, 21}, {9, 21}, {9, 9}});
  EXPECT_GT(TurnSum(outside.head->first), 0);

  // Clockwise: the right side is inside.
  const std::vector<XY> cw{{10, 10}, {10, 20}, {30, 20}, {30, 10}, {10, 10}};
  PathList inside = Offset(cw, 1);
  ASSERT_EQ(inside.Count(), 1);
  ExpectPoints(*inside.head, {{11, 11}, {11, 19}, {29, 19}, {29, 11}, {11, 11}});

  // Left of the counter-clockwise outline is inside too.
  PathList left = Offset(ccw, 1, true);
  ASSERT_EQ(left.Count(), 1);
  ExpectPoints(*left.head, {{11, 11}, {29, 11}, {29, 19}, {11, 19}, {11, 11}});
}

TEST(OffsetPolyline, ConcaveOutlineMeetsAtTheInnerCorner) {
  const std::vector<XY> l{{0, 0}, {20, 0}, {20, 10}, {10, 10}, {10, 20}, {0, 20}, {0, 0}};
  PathList outside = Offset(l, 1);
  ASSERT_EQ(outside.Count(), 1);
  ExpectPoints(*outside.head,
               {{-1, -1}, {21, -1}, {21, 11}, {11, 11}, {11, 21}, {-1, 21}, {-1, -1}});
}

TEST(OffsetPolyline, SharpCornersGetArcsInTenDegreeSteps) {
  const std::vector<XY> triangle{{0, 0}, {20, 0}, {0, 10}, {0, 0}};
  auto arcRound = [](const std::vector<XY>& points) {
    std::vector<XY> arc;
    for (const XY& p : points) {
      if (std::fabs(std::hypot(p.x - 20.0, p.y) - 1.0) < 1e-4) arc.push_back(p);
    }
    return arc;
  };
  // Round the sharp corner at (20, 0): the two offset ends and the arc from -90 to 63.4
  // degrees, a point every 10 degrees up to 60.
  PathList full = Offset(triangle, 1, false, 0);
  ASSERT_EQ(full.Count(), 1);
  const auto arc = arcRound(Points(*full.head));
  ASSERT_EQ(arc.size(), 17u);
  // Thinned to 0.1 mm, the offset end 3.4 degrees past the last arc point goes.
  PathList outside = Offset(triangle, 1);
  ASSERT_EQ(outside.Count(), 1);
  const auto points = Points(*outside.head);
  EXPECT_EQ(arcRound(points).size(), 16u);
  for (size_t i = 1; i + 2 < arc.size(); ++i) {
    const double a = std::atan2(arc[i].y, arc[i].x - 20.0) * 180 / M_PI;
    EXPECT_NEAR(a, -90.0 + 10.0 * static_cast<double>(i), 1e-3);
  }
  for (const XY& p : points) EXPECT_GT(DistanceToOutline(triangle, p.x, p.y), 0.999);
}

TEST(OffsetPolyline, OpenAndNearlyClosedChains) {
  PathList open = Offset({{0, 0}, {10, 0}, {10, 10}}, 1);
  ASSERT_EQ(open.Count(), 1);
  ExpectPoints(*open.head, {{0, -1}, {11, -1}, {11, 10}});

  // Ends no further apart than the offset: taken as closed, the ring closes on the mitre.
  PathList gap = Offset({{0, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0.5f}}, 1);
  ASSERT_EQ(gap.Count(), 1);
  ExpectPoints(*gap.head, {{-1, -1}, {21, -1}, {21, 11}, {-1, 11}, {-1, -1}});

  // Two points after straightening: both moved sideways and returned at once.
  PathList up = Offset({{0, 0}, {0, 5}, {0, 10}}, 1);
  ASSERT_EQ(up.Count(), 1);
  ExpectPoints(*up.head, {{1, 0}, {1, 10}});
}

TEST(OffsetPolyline, NothingWorthOffsetting) {
  EXPECT_EQ(Offset({{0, 0}, {20, 0}, {20, 10}}, 0.04f).Count(), 0);
  EXPECT_EQ(Offset({{5, 5}}, 1).Count(), 0);
  EXPECT_EQ(Offset({{0, 0}, {0.5f, 0}, {0.5f, 0.5f}, {0, 0}}, 1).Count(), 0);
  // The box's top is the last point above the lowest met so far: a chain that only goes down
  // has no height, and a vertical one no width either.
  EXPECT_EQ(Offset({{0, 10}, {0, 5}, {0, 0}}, 1).Count(), 0);
}

TEST(OffsetPolyline, LoopsOfANarrowNotchAreCutOut) {
  // A notch 2 mm wide, narrower than the tool: outside, the path passes over it.
  const std::vector<XY> notched{{0, 0}, {20, 0}, {20, 20}, {11, 20}, {11, 5},
                                {9, 5}, {9, 20}, {0, 20},  {0, 0}};
  const float d = 1.585f;
  PathList outside = Offset(notched, d);
  ASSERT_EQ(outside.Count(), 1);
  const auto points = Points(*outside.head);
  EXPECT_NEAR(points.front().x, points.back().x, 1e-3);
  EXPECT_NEAR(points.front().y, points.back().y, 1e-3);
  for (const XY& p : points) EXPECT_GT(DistanceToOutline(notched, p.x, p.y), d - 0.01);
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const double mx = (points[i].x + points[i + 1].x) / 2, my = (points[i].y + points[i + 1].y) / 2;
    EXPECT_GT(DistanceToOutline(notched, mx, my), d - 0.01) << "segment " << i;
  }
  EXPECT_EQ(points.front().x, -d);
  EXPECT_EQ(points.front().y, -d);
}

}  // namespace
}  // namespace isolith
