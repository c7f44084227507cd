#include "toolpath/geometry/Polylines.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "toolpath/geometry/Angles.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

inline double W(float v) {
  return static_cast<double>(v);
}

// Point against one edge of the ray test: 0 on the edge, 1 when the upward ray crosses it,
// -1 when it does not.
int TestEdge(float x0, float y0, float x1, float y1, float px, float py) {
  if ((x0 < px) != (x1 < px)) {
    const float yv = static_cast<float>((W(y1) - y0) * (W(px) - x0) / (W(x1) - x0) + y0);
    if (std::fabs(W(py) - yv) < kNearTolerance) return 0;
    return py < yv ? 1 : -1;
  }
  // Not crossing the column: only a vertical edge through the point can still touch it.
  if (std::fabs(W(px) - x0) < kNearTolerance && std::fabs(W(px) - x1) < kNearTolerance &&
      ((y0 < py) != (y1 < py) || std::fabs(W(py) - y0) < kNearTolerance)) {
    return 0;
  }
  return -1;
}

}  // namespace

int CountPoints(const TPolygon& polygon) {
  return CountOf(polygon.first);
}

TXY* AppendPoint(TPolygon& polygon, float x, float y) {
  TXY* tail = LastPoint(polygon);
  return AppendPoint(polygon, tail, x, y);
}

TXY* AppendPoint(TPolygon& polygon, TXY*& tail, float x, float y) {
  TXY* point = new TXY;
  point->x = x;
  point->y = y;
  AppendTo(polygon.first, tail, point);
  return point;
}

TXY* LastPoint(const TPolygon& polygon) {
  return LastOf(polygon.first);
}

TXY* PreviousPoint(const TPolygon& polygon, const TXY* point) {
  for (TXY* p = polygon.first; p && p->next; p = p->next) {
    if (p->next == point) return p;
  }
  return nullptr;
}

void ReversePolygon(TPolygon& polygon) {
  std::vector<TXY*> points;
  for (TXY* p = polygon.first; p; p = p->next) points.push_back(p);
  for (size_t i = 0, j = points.size(); i + 1 < j; ++i) {
    --j;
    SwapF(points[i]->x, points[j]->x);
    SwapF(points[i]->y, points[j]->y);
  }
}

void FreePoints(TPolygon& polygon) {
  FreeChain(polygon.first);
  polygon.first = nullptr;
}

float TurnSum(const TXY* firstPoint) {
  if (!firstPoint || !firstPoint->next) return 0;
  float sum = 0;
  const TXY* previous = firstPoint->next;
  float heading = SegmentAngle(firstPoint->x, firstPoint->y, previous->x, previous->y, 1);
  for (const TXY* p = previous->next; p; previous = p, p = p->next) {
    const float next = SegmentAngle(previous->x, previous->y, p->x, p->y, 1);
    if (p->x != previous->x || p->y != previous->y) {
      float change = static_cast<float>(W(next) - heading);
      // A leg that folds straight back has no turning direction of its own.
      if (std::fabs(change) != Pi) {
        NormalizeAngle(change);
        sum = static_cast<float>(W(sum) + change);
      }
    }
    // Taken at a repeated vertex too, where the heading of the empty leg is 0.
    heading = next;
  }
  return sum;
}

int ContainsPoint(const TPolygon& polygon, float x, float y) {
  const TXY* first = polygon.first;
  if (!first) return -1;
  bool inside = false;
  const TXY* p = first;
  for (; p->next; p = p->next) {
    const int r = TestEdge(p->x, p->y, p->next->x, p->next->y, x, y);
    if (r == 0) return 0;
    if (r > 0) inside = !inside;
  }
  if (!NearPoints(p->x, p->y, first->x, first->y, kNearTolerance)) {
    const int r = TestEdge(p->x, p->y, first->x, first->y, x, y);
    if (r == 0) return 0;
    if (r > 0) inside = !inside;
  }
  return inside ? 1 : -1;
}

int ListContainsPoint(const TPolygon* list, float x, float y) {
  for (; list; list = list->next) {
    const int r = ContainsPoint(*list, x, y);
    if (r >= 0) return r;
  }
  return -1;
}

ContainmentColumns::ContainmentColumns(const TPolygon& polygon) {
  const TXY* first = polygon.first;
  if (!first) return;
  const TXY* p = first;
  for (; p->next; p = p->next) edges_.push_back({p->x, p->y, p->next->x, p->next->y});
  if (!NearPoints(p->x, p->y, first->x, first->y, kNearTolerance))
    edges_.push_back({p->x, p->y, first->x, first->y});

  // An edge can count for a point whose X lies within its X range widened by the boundary's
  // 0.01; twice that leaves room for rounding.
  constexpr double kReach = 2 * kNearTolerance;
  double low = 0, high = 0, spans = 0;
  bool any = false;
  for (const Edge& e : edges_) {
    if (!std::isfinite(e.x0) || !std::isfinite(e.x1)) continue;
    const double a = std::min(e.x0, e.x1) - kReach, b = std::max(e.x0, e.x1) + kReach;
    low = any ? std::min(low, a) : a;
    high = any ? std::max(high, b) : b;
    spans += b - a;
    any = true;
  }
  const double n = std::max<double>(1, static_cast<double>(edges_.size()));
  const double width = std::max((high - low) / n, spans / (4 * n));
  left_ = low;
  if (width > 0) {
    inverse_ = 1 / width;
    columns_ = static_cast<int>(std::min(n, std::ceil((high - low) * inverse_) + 1));
  }
  std::vector<uint32_t> count(static_cast<size_t>(columns_) + 1, 0);
  auto range = [&](const Edge& e) {
    return std::pair{Column(std::min(e.x0, e.x1) - kReach), Column(std::max(e.x0, e.x1) + kReach)};
  };
  for (uint32_t i = 0; i < edges_.size(); ++i) {
    const Edge& e = edges_[i];
    if (!std::isfinite(e.x0) || !std::isfinite(e.x1)) {
      everywhere_.push_back(i);
      continue;
    }
    const auto [from, to] = range(e);
    for (int c = from; c <= to; ++c) ++count[c + 1];
  }
  for (int c = 0; c < columns_; ++c) count[c + 1] += count[c];
  start_ = count;
  items_.resize(count.back());
  for (uint32_t i = 0; i < edges_.size(); ++i) {
    const Edge& e = edges_[i];
    if (!std::isfinite(e.x0) || !std::isfinite(e.x1)) continue;
    const auto [from, to] = range(e);
    for (int c = from; c <= to; ++c) items_[count[c]++] = i;
  }
}

int ContainmentColumns::Column(double x) const {
  // Not decreasing in x, so an edge registered over [a, b] is in the column of every x between.
  const double c = std::floor((x - left_) * inverse_);
  if (!(c > 0)) return 0;
  return c >= columns_ - 1 ? columns_ - 1 : static_cast<int>(c);
}

int ContainmentColumns::Contains(float x, float y) const {
  if (edges_.empty()) return -1;
  // ContainsPoint answers 0 when any edge does, else by the parity of the crossings; the order
  // of the edges changes neither.
  bool inside = false;
  auto test = [&](uint32_t i) {
    const Edge& e = edges_[i];
    const int r = TestEdge(e.x0, e.y0, e.x1, e.y1, x, y);
    if (r > 0) inside = !inside;
    return r != 0;
  };
  for (uint32_t i : everywhere_)
    if (!test(i)) return 0;
  // A point whose X is not a number crosses no edge and touches none.
  if (std::isnan(x)) return inside ? 1 : -1;
  const int c = Column(x);
  for (uint32_t k = start_[c]; k < start_[c + 1]; ++k)
    if (!test(items_[k])) return 0;
  return inside ? 1 : -1;
}

TSeg* RemoveDegenerateSegments(TSeg* list) {
  TSeg* head = list;
  TSeg* previous = nullptr;
  TSeg* s = list;
  while (s) {
    TSeg* next = s->next;
    if (NearPoints(s->x1, s->y1, s->x2, s->y2, kNearTolerance)) {
      if (previous) {
        previous->next = next;
      } else {
        head = next;
      }
      delete s;
    } else {
      previous = s;
    }
    s = next;
  }
  return head;
}

}  // namespace isolith
