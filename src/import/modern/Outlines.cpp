#include "import/modern/Outlines.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace isolith {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr int kMaxChords = 720;

// The angle one chord may span so that it stays within `tolerance` of a circle of `radius`.
double ChordStep(double radius, double tolerance) {
  if (radius <= tolerance) return kTurn / 8;
  return std::max(2 * std::acos(1 - tolerance / radius), kTurn / kMaxChords);
}

}  // namespace

std::vector<OutlinePoint> ArcChords(OutlinePoint from, OutlinePoint to, OutlinePoint centre,
                                    bool clockwise, bool full, double tolerance) {
  const double r0 = std::hypot(from.x - centre.x, from.y - centre.y);
  const double r1 = std::hypot(to.x - centre.x, to.y - centre.y);
  const double a0 = std::atan2(from.y - centre.y, from.x - centre.x);
  double sweep = std::atan2(to.y - centre.y, to.x - centre.x) - a0;
  if (clockwise) {
    while (sweep > 0) sweep -= kTurn;
    if (full && std::fabs(sweep) < 1e-9) sweep = -kTurn;
  } else {
    while (sweep < 0) sweep += kTurn;
    if (full && std::fabs(sweep) < 1e-9) sweep = kTurn;
  }
  const double step = ChordStep(std::max(r0, r1), tolerance);
  const int n = std::clamp(int(std::ceil(std::fabs(sweep) / step)), 1, kMaxChords);
  std::vector<OutlinePoint> points;
  for (int i = 1; i < n; ++i) {
    const double t = double(i) / n;
    // The radius runs from one end's to the other's: files round their centres.
    const double r = r0 + (r1 - r0) * t;
    const double a = a0 + sweep * t;
    points.push_back({centre.x + r * std::cos(a), centre.y + r * std::sin(a)});
  }
  points.push_back(to);
  return points;
}

Outline CircleOutline(OutlinePoint centre, double diameter, double tolerance) {
  const double r = diameter / 2;
  const int n = std::clamp(int(std::ceil(kTurn / ChordStep(r, tolerance))), 8, kMaxChords);
  Outline o;
  for (int i = 0; i < n; ++i) {
    const double a = kTurn * i / n;
    o.push_back({centre.x + r * std::cos(a), centre.y + r * std::sin(a)});
  }
  return o;
}

Outline StrokeOutline(OutlinePoint a, OutlinePoint b, double width, double tolerance) {
  const double r = width / 2;
  const double dir = std::atan2(b.y - a.y, b.x - a.x);
  const int n = std::clamp(int(std::ceil(kTurn / 2 / ChordStep(r, tolerance))), 2, kMaxChords);
  Outline o;
  // Half a turn round each end, from one side of the stroke to the other.
  for (int side = 0; side < 2; ++side) {
    const OutlinePoint end = side == 0 ? b : a;
    const double start = dir - kTurn / 4 + side * kTurn / 2;
    for (int i = 0; i <= n; ++i) {
      const double t = start + kTurn / 2 * i / n;
      o.push_back({end.x + r * std::cos(t), end.y + r * std::sin(t)});
    }
  }
  return o;
}

Outline RectangleOutline(OutlinePoint c, double w, double h) {
  return {{c.x - w / 2, c.y - h / 2},
          {c.x + w / 2, c.y - h / 2},
          {c.x + w / 2, c.y + h / 2},
          {c.x - w / 2, c.y + h / 2}};
}

Outline ObroundOutline(OutlinePoint c, double w, double h, double tolerance) {
  if (w > h) {
    const double half = (w - h) / 2;
    return StrokeOutline({c.x - half, c.y}, {c.x + half, c.y}, h, tolerance);
  }
  const double half = (h - w) / 2;
  return StrokeOutline({c.x, c.y - half}, {c.x, c.y + half}, w, tolerance);
}

bool InsideOutlines(const std::vector<Outline>& outlines, OutlinePoint p) {
  bool inside = false;
  for (const Outline& o : outlines) {
    const size_t n = o.size();
    for (size_t i = 0, j = n - 1; i < n; j = i++) {
      const OutlinePoint& a = o[i];
      const OutlinePoint& b = o[j];
      if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
        inside = !inside;
    }
  }
  return inside;
}

}  // namespace isolith
