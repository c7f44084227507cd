#include "toolpath/HatchPredicates.h"

#include <algorithm>
#include <limits>

#include "toolpath/ContourPredicates.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith::hatch {

namespace {

constexpr float kTol = kNearTolerance;

}  // namespace

IndexBox SegmentBox(float x1, float y1, float x2, float y2, float mx, float my) {
  IndexBox b{x1, y1, x2, y2};
  OrderBox(b.x1, b.y1, b.x2, b.y2);
  b.x1 = static_cast<float>(double(b.x1) - mx);
  b.y1 = static_cast<float>(double(b.y1) - my);
  b.x2 = static_cast<float>(double(b.x2) + mx);
  b.y2 = static_cast<float>(double(b.y2) + my);
  return b;
}

IndexBox EdgeBox(const TXY& a, const TXY& b) {
  return SegmentBox(a.x, a.y, b.x, b.y, kTol, kTol);
}

IndexBox PieceQuery(const TSeg& s) {
  return SegmentBox(s.x1, s.y1, s.x2, s.y2, kTol, 0);
}

void CrossEdge(TSeg* s, IndexBox& range, const TXY& a, const TXY& b, const IndexBox& edge) {
  if (!contour::Overlap(range, edge)) return;
  float x, y;
  if (IntersectSegments(s->x1, s->y1, s->x2, s->y2, a.x, a.y, b.x, b.y, x, y, kTol) != kOnBoth)
    return;
  if (contour::SplitAt(s, x, y)) range = SegmentBox(s->x1, s->y1, s->x2, s->y2, 0, 0);
}

ContainmentReach ReachOf(const TPolygon& polygon) {
  ContainmentReach result;
  const TXY* first = polygon.first;
  if (!first) return result;
  IndexBox box{first->x, first->y, first->x, first->y};
  double magnitude = 0;
  const TXY* last = first;
  for (const TXY* p = first; p; last = p, p = p->next) {
    if (!std::isfinite(p->x) || !std::isfinite(p->y)) {
      const float nan = std::numeric_limits<float>::quiet_NaN();
      result.box = {nan, nan, nan, nan};
      return result;
    }
    box = Union(box, {p->x, p->y, p->x, p->y});
    magnitude = std::max({magnitude, std::fabs(double(p->x)), std::fabs(double(p->y))});
  }
  // The boundary test's 0.01, with room for the rounding of its interpolation.
  const double margin = 0.02 + 1.0e-6 * magnitude;
  result.box = Grown(box, margin);
  if (NearPoints(last->x, last->y, first->x, first->y, kTol) && last->x != first->x) {
    // Below the chain every edge that spans the point's column is crossed, and those of a
    // closed loop are even in number: the parity is that of the missing closing edge alone.
    result.open = true;
    result.below =
        Grown({std::min(last->x, first->x), box.y1, std::max(last->x, first->x), box.y1}, margin);
    result.below.y1 = -std::numeric_limits<float>::infinity();
  }
  return result;
}

void PullBack(TSeg& s, float pitch, float cardWidth) {
  const double half = double(pitch) / 2;
  const bool rightwards = s.x1 < s.x2;
  float& left = rightwards ? s.x1 : s.x2;
  float& right = rightwards ? s.x2 : s.x1;
  if (left > 0) left = static_cast<float>(left + half);
  if (right < cardWidth) right = static_cast<float>(right - half);
}

float LinkLimit(float pitch) {
  return static_cast<float>(2.01 * pitch);
}

void ConsiderLinkTarget(const TSeg& s, TSeg* t, float pitch, TSeg*& best, float& bestDistance) {
  if (!(std::fabs(double(t->y1) - s.y2 - pitch) < 0.01)) return;
  const double d = std::fabs(double(t->x1) - s.x2);
  if (d < bestDistance) {
    best = t;
    bestDistance = static_cast<float>(d);
  }
}

IndexBox LinkTargetQuery(const TSeg& s, float pitch) {
  // Wider than the tests by far more than their rounding.
  const double reach = double(LinkLimit(pitch)) + 0.001;
  const double above = double(s.y2) + pitch;
  return Outward(s.x2 - reach, above - 0.011, s.x2 + reach, above + 0.011);
}

bool LinkCrossesEdge(float x1, float y1, float x2, float y2, const TXY& a, const TXY& b) {
  if (!contour::Overlap(SegmentBox(x1, y1, x2, y2, 0, 0), SegmentBox(a.x, a.y, b.x, b.y, 0, 0)))
    return false;
  float x, y;
  return IntersectSegments(x1, y1, x2, y2, a.x, a.y, b.x, b.y, x, y, kTol) == kOnBoth;
}

}  // namespace isolith::hatch
