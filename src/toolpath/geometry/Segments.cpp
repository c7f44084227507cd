#include "toolpath/geometry/Segments.h"

#include <cmath>

#include "toolpath/geometry/Angles.h"
#include "toolpath/geometry/Scalars.h"

namespace isolith {

namespace {

// Widening on purpose: every expression below is evaluated in double and rounded to float only
// where a value is stored or handed on, as the calculators' tie-breaks expect.
inline double W(float v) {
  return static_cast<double>(v);
}
inline float F(double v) {
  return static_cast<float>(v);
}

// The point (its coordinate on one axis) lies strictly inside the interval widened by the
// tolerance on each side, the interval's ends taken in either order.
bool WithinOnAxis(float a, float b, float low, float high) {
  return (a < high && low < b) || (b < high && low < a);
}

// Steps 1 to 4 of the intersection: the crossing of the two lines, or false when parallel.
// Collinear sloped lines give the first point.
bool CrossLines(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                float& x, float& y) {
  const bool vertical1 = x1 == x2;
  const bool vertical2 = x3 == x4;
  float m1 = 0;
  float m2 = 0;
  if (!vertical1) m1 = F((W(y2) - y1) / (W(x2) - x1));
  if (!vertical2) m2 = F((W(y4) - y3) / (W(x4) - x3));
  if (vertical1 && vertical2) return false;
  if (vertical1) {
    x = x1;
    y = F((W(x1) - x3) * m2 + y3);
  } else if (vertical2) {
    x = x3;
    y = F((W(x3) - x1) * m1 + y1);
  } else {
    const float d = F((W(y3) - y1) - (W(x3) - x1) * m2);
    if (m1 == m2) {
      if (d != 0) return false;
      x = x1;
      y = y1;
    } else {
      const float u = F(d / (W(m1) - m2));
      y = F(W(m1) * u + y1);
      x = F(W(x1) + u);
    }
  }
  return true;
}

// The far end of the probe from P perpendicular to the segment.
void PerpendicularProbe(float px, float py, float x1, float y1, float x2, float y2, float& ex,
                        float& ey) {
  PolarPoint(px, py, kProbeLength, F(W(SegmentAngle(x1, y1, x2, y2, 1)) + HalfPi), ex, ey);
}

}  // namespace

float Distance(float x1, float y1, float x2, float y2) {
  const double dx = W(x2) - x1;
  const double dy = W(y2) - y1;
  return F(std::sqrt(dx * dx + dy * dy));
}

bool NearPoints(float x1, float y1, float x2, float y2, float tol) {
  return std::fabs(W(x1) - x2) <= tol && std::fabs(W(y1) - y2) <= tol;
}

float SegmentAngle(float x1, float y1, float x2, float y2, float k) {
  if (x1 == x2) {
    if (y2 > y1) return HalfPi;
    if (y2 == y1) return 0;
    return -HalfPi;
  }
  const double t = std::atan(std::fabs(W(k) * (W(y2) - y1)) / std::fabs(W(x2) - x1));
  double a = x2 > x1 ? t : Pi - t;
  if (y2 < y1) a = -a;
  return F(a);
}

float TurnAngle(float x1, float y1, float x2, float y2, float x3, float y3) {
  float a = F(W(SegmentAngle(x2, y2, x3, y3, 1)) - SegmentAngle(x1, y1, x2, y2, 1));
  NormalizeAngle(a);
  return a;
}

void PolarPoint(float cx, float cy, float r, float a, float& x, float& y) {
  x = F(cx + W(r) * std::cos(W(a)));
  y = F(cy + W(r) * std::sin(W(a)));
}

void PolarOfSegment(float x1, float y1, float x2, float y2, float& length, float& angle) {
  length = Distance(x1, y1, x2, y2);
  angle = SegmentAngle(x1, y1, x2, y2, 1);
}

int IntersectSegments(float x1, float y1, float x2, float y2, float x3, float y3, float x4,
                      float y4, float& x, float& y, float tol) {
  if (!CrossLines(x1, y1, x2, y2, x3, y3, x4, y4, x, y)) return kParallel;
  const float xl = F(W(x) - tol);
  const float xh = F(W(x) + tol);
  const float yl = F(W(y) - tol);
  const float yh = F(W(y) + tol);
  const bool onFirst = WithinOnAxis(x1, x2, xl, xh) && WithinOnAxis(y1, y2, yl, yh);
  const bool onSecond = WithinOnAxis(x3, x4, xl, xh) && WithinOnAxis(y3, y4, yl, yh);
  if (onFirst && onSecond) return kOnBoth;
  if (onFirst) return kOnFirstOnly;
  if (onSecond) return kOnSecondOnly;
  return kOnNeither;
}

int IntersectLines(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                   float& x, float& y) {
  return CrossLines(x1, y1, x2, y2, x3, y3, x4, y4, x, y) ? 1 : 0;
}

float PointSegmentDistance(float px, float py, float x1, float y1, float x2, float y2) {
  float ex = 0, ey = 0;
  PerpendicularProbe(px, py, x1, y1, x2, y2, ex, ey);
  float fx = 0, fy = 0;
  // The probe runs one way only, so a foot on the segment "before" P counts too (code 2).
  const int code = IntersectSegments(x1, y1, x2, y2, px, py, ex, ey, fx, fy, kFineTolerance);
  if (code == kOnBoth || code == kOnFirstOnly) return Distance(px, py, fx, fy);
  return kNoFoot;
}

float PointLineDistance(float px, float py, float x1, float y1, float x2, float y2) {
  float ex = 0, ey = 0;
  PerpendicularProbe(px, py, x1, y1, x2, y2, ex, ey);
  float fx = 0, fy = 0;
  if (IntersectLines(x1, y1, x2, y2, px, py, ex, ey, fx, fy) == 0) return kNoFoot;
  return Distance(px, py, fx, fy);
}

void PerpendicularThrough(float px, float py, float a, float& x1, float& y1, float& x2, float& y2) {
  PolarPoint(px, py, kProbeLength, F(W(a) - Pi), x1, y1);
  PolarPoint(px, py, kProbeLength, a, x2, y2);
}

bool ProjectOnSegment(float px, float py, float x1, float y1, float x2, float y2, float& fx,
                      float& fy) {
  float qx1 = 0, qy1 = 0, qx2 = 0, qy2 = 0;
  PerpendicularThrough(px, py, F(W(SegmentAngle(x1, y1, x2, y2, 1)) + HalfPi), qx1, qy1, qx2, qy2);
  const int code = IntersectSegments(x1, y1, x2, y2, qx1, qy1, qx2, qy2, fx, fy, kFineTolerance);
  if (code == kParallel) {
    fx = px;
    fy = py;
    return true;
  }
  return code == kOnBoth || code == kOnFirstOnly;
}

bool IntervalsOverlap(float a1, float a2, float b1, float b2) {
  return (b1 <= a1 && a1 <= b2) || (b1 <= a2 && a2 <= b2) || (a1 <= b1 && b2 <= a2) ||
         (b1 <= a1 && a2 <= b2);
}

bool BoxesOverlap(float ax1, float ay1, float ax2, float ay2, float bx1, float by1, float bx2,
                  float by2) {
  return IntervalsOverlap(ax1, ax2, bx1, bx2) && IntervalsOverlap(ay1, ay2, by1, by2);
}

}  // namespace isolith
