#include "toolpath/geometry/Segments.h"

#include <gtest/gtest.h>

#include <cmath>

#include "toolpath/geometry/Scalars.h"

namespace isolith {
namespace {

TEST(Segments, NearPointsIsASquareTestWithTheBoundIncluded) {
  EXPECT_TRUE(NearPoints(0, 0, 0.01f, 0.01f, 0.01f));
  EXPECT_TRUE(NearPoints(0.01f, -0.01f, 0, 0, kNearTolerance));
  EXPECT_FALSE(NearPoints(0, 0, 0.0101f, 0, 0.01f));
  EXPECT_FALSE(NearPoints(0, 0, 0, -0.0101f, 0.01f));
  EXPECT_TRUE(NearPoints(5, 5, 5.001f, 5, kFineTolerance));
  EXPECT_FALSE(NearPoints(5, 5, 5.0011f, 5, kFineTolerance));
}

TEST(Segments, DistanceAndAngles) {
  EXPECT_EQ(Distance(0, 0, 3, 4), 5);
  EXPECT_EQ(SegmentAngle(1, 1, 1, 1), 0);  // coincident points
  EXPECT_EQ(SegmentAngle(1, 1, 1, 3), HalfPi);
  EXPECT_EQ(SegmentAngle(1, 3, 1, 1), -HalfPi);
  EXPECT_EQ(SegmentAngle(0, 0, 5, 0), 0);
  EXPECT_EQ(SegmentAngle(5, 0, 0, 0), Pi);  // due west is +Pi, never -Pi
  EXPECT_FLOAT_EQ(SegmentAngle(0, 0, 1, 1), QuarterPi);
  EXPECT_FLOAT_EQ(SegmentAngle(0, 0, -1, 1), 3 * QuarterPi);
  EXPECT_FLOAT_EQ(SegmentAngle(0, 0, -1, -1), -3 * QuarterPi);
  EXPECT_FLOAT_EQ(SegmentAngle(0, 0, 1, -1), -QuarterPi);
  EXPECT_FLOAT_EQ(SegmentAngle(0, 0, 1, 1, 2), std::atan(2.0f));

  EXPECT_FLOAT_EQ(TurnAngle(0, 0, 1, 0, 1, 1), HalfPi);    // left turn
  EXPECT_FLOAT_EQ(TurnAngle(0, 0, 1, 0, 1, -1), -HalfPi);  // right turn
  EXPECT_EQ(TurnAngle(0, 0, 1, 0, 0, 0), Pi);              // folding back
  EXPECT_FLOAT_EQ(TurnAngle(0, 1, 0, 0, -1, -1), -QuarterPi);

  float length = 0, angle = 0;
  PolarOfSegment(0, 0, 0, -2, length, angle);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(angle, -HalfPi);
  float x = 0, y = 0;
  PolarPoint(1, 1, 2, HalfPi, x, y);
  EXPECT_NEAR(x, 1, 1e-6);
  EXPECT_EQ(y, 3);
}

TEST(Segments, IntersectSegmentsCodes) {
  float x = 0, y = 0;
  EXPECT_EQ(IntersectSegments(0, 0, 2, 2, 0, 2, 2, 0, x, y, 0.01f), kOnBoth);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 1);
  // Second vertical, crossing point outside it.
  EXPECT_EQ(IntersectSegments(0, 0, 2, 0, 1, 1, 1, 5, x, y, 0.01f), kOnFirstOnly);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 0);
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 5, -1, 5, 1, x, y, 0.01f), kOnSecondOnly);
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 5, 1, 5, 2, x, y, 0.01f), kOnNeither);
  EXPECT_EQ(x, 5);
  EXPECT_EQ(y, 0);
  // First vertical: the point is computed on the second line.
  EXPECT_EQ(IntersectSegments(1, -1, 1, 1, 0, 0, 2, 2, x, y, 0.01f), kOnBoth);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 1);
}

TEST(Segments, IntersectSegmentsToleranceIsStrict) {
  float x = 0, y = 0;
  // An end 0.005 short of the crossing still counts within 0.01, not within 0.001.
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 1.005f, -1, 1.005f, 1, x, y, 0.01f), kOnBoth);
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 1.005f, -1, 1.005f, 1, x, y, 0.001f), kOnSecondOnly);
  // Exactly at the tolerance (all values exact in binary) is outside: the comparisons are strict.
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 1.25f, -1, 1.25f, 1, x, y, 0.25f), kOnSecondOnly);
  EXPECT_EQ(IntersectSegments(0, 0, 1, 0, 1.125f, -1, 1.125f, 1, x, y, 0.25f), kOnBoth);
}

TEST(Segments, ParallelAndCollinearSegments) {
  float x = 7, y = 7;
  // Vertical pairs are parallel whatever their distance, collinear or not.
  EXPECT_EQ(IntersectSegments(0, 0, 0, 1, 5, 0, 5, 1, x, y, 0.01f), kParallel);
  EXPECT_EQ(IntersectSegments(0, 0, 0, 1, 0, 0.5f, 0, 2, x, y, 0.01f), kParallel);
  EXPECT_EQ(IntersectSegments(0, 0, 0, 1, 0.001f, 0, 0.001f, 1, x, y, 0.01f), kParallel);
  // Equal slopes with a different offset.
  EXPECT_EQ(IntersectSegments(0, 0, 1, 1, 0, 1, 1, 2, x, y, 0.01f), kParallel);
  EXPECT_EQ(IntersectSegments(0, 0, 4, 0, 0, 0.001f, 4, 0.001f, x, y, 0.01f), kParallel);
  EXPECT_EQ(x, 7);  // untouched when parallel

  // Collinear sloped segments meet at the first point of the first segment, which always lies
  // on the first segment: the code tells whether it lies on the second too.
  EXPECT_EQ(IntersectSegments(0, 0, 2, 2, 1, 1, 3, 3, x, y, 0.01f), kOnFirstOnly);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
  EXPECT_EQ(IntersectSegments(1, 1, 3, 3, 0, 0, 2, 2, x, y, 0.01f), kOnBoth);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 1);
  EXPECT_EQ(IntersectSegments(0, 0, 2, 0, -1, 0, 1, 0, x, y, 0.01f), kOnBoth);
  EXPECT_EQ(IntersectSegments(0, 0, 2, 0, 1, 0, 3, 0, x, y, 0.01f), kOnFirstOnly);
  EXPECT_EQ(x, 0);

  // The lines alone.
  EXPECT_EQ(IntersectLines(0, 0, 0, 1, 5, 0, 5, 1, x, y), 0);
  EXPECT_EQ(IntersectLines(0, 0, 1, 1, 0, 1, 1, 2, x, y), 0);
  EXPECT_EQ(IntersectLines(2, 2, 3, 3, 5, 5, 9, 9, x, y), 1);
  EXPECT_EQ(x, 2);
  EXPECT_EQ(y, 2);
  EXPECT_EQ(IntersectLines(0, 0, 1, 0, 5, 1, 5, 2, x, y), 1);
  EXPECT_EQ(x, 5);
  EXPECT_EQ(y, 0);
}

TEST(Segments, PointSegmentDistanceIgnoresTheEnds) {
  EXPECT_FLOAT_EQ(PointSegmentDistance(1, 1, 0, 0, 2, 0), 1);
  EXPECT_FLOAT_EQ(PointSegmentDistance(1, -1, 0, 0, 2, 0), 1);  // probe points away: still found
  EXPECT_NEAR(PointSegmentDistance(1, 1, 0, 0, 0, 2), 1, 1e-5);
  EXPECT_NEAR(PointSegmentDistance(0, 2, 0, 0, 2, 2), std::sqrt(2.0f), 1e-5);
  // Beyond an end: no foot, however near the end.
  EXPECT_EQ(PointSegmentDistance(2.01f, 0.5f, 0, 0, 2, 0), kNoFoot);
  EXPECT_EQ(PointSegmentDistance(2.01f, 0, 0, 0, 2, 0), kNoFoot);
  EXPECT_EQ(PointSegmentDistance(-0.5f, -3, 0, 0, 0, 2), kNoFoot);
  // Within the 0.001 of the foot test it still counts.
  EXPECT_NEAR(PointSegmentDistance(2.0005f, 0.5f, 0, 0, 2, 0), 0.5f, 1e-5);
  // A degenerate segment points along +X: only a point on its own column and level meets it.
  EXPECT_EQ(PointSegmentDistance(1, 3, 1, 1, 1, 1), kNoFoot);
  EXPECT_EQ(PointSegmentDistance(1, 1, 1, 1, 1, 1), 0);

  EXPECT_FLOAT_EQ(PointLineDistance(5, 1, 0, 0, 2, 0), 1);
  EXPECT_NEAR(PointLineDistance(3, -4, 0, 0, 0, 1), 3, 1e-5);
}

TEST(Segments, PerpendicularAndProjection) {
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  PerpendicularThrough(1, 2, 0, x1, y1, x2, y2);
  EXPECT_EQ(x1, 1 - kProbeLength);
  EXPECT_NEAR(y1, 2, 0.01);
  EXPECT_EQ(x2, 1 + kProbeLength);
  EXPECT_EQ(y2, 2);

  float fx = 0, fy = 0;
  EXPECT_TRUE(ProjectOnSegment(1, 5, 0, 0, 2, 0, fx, fy));
  EXPECT_NEAR(fx, 1, 1e-3);
  EXPECT_EQ(fy, 0);
  EXPECT_TRUE(ProjectOnSegment(1, -5, 0, 0, 2, 0, fx, fy));
  EXPECT_FALSE(ProjectOnSegment(3, 5, 0, 0, 2, 0, fx, fy));
  // A degenerate segment and its perpendicular are both vertical: no crossing, the foot is P.
  EXPECT_TRUE(ProjectOnSegment(5, 6, 1, 1, 1, 1, fx, fy));
  EXPECT_EQ(fx, 5);
  EXPECT_EQ(fy, 6);
}

TEST(Segments, BoxOverlapIncludesTouching) {
  EXPECT_TRUE(IntervalsOverlap(0, 1, 1, 2));
  EXPECT_TRUE(IntervalsOverlap(1, 2, 0, 1));
  EXPECT_TRUE(IntervalsOverlap(0, 10, 2, 3));
  EXPECT_TRUE(IntervalsOverlap(2, 3, 0, 10));
  EXPECT_FALSE(IntervalsOverlap(0, 1, 1.001f, 2));
  EXPECT_TRUE(BoxesOverlap(0, 0, 1, 1, 1, 1, 2, 2));
  EXPECT_FALSE(BoxesOverlap(0, 0, 1, 1, 0.5f, 2, 0.7f, 3));  // X overlaps, Y does not
}

}  // namespace
}  // namespace isolith
