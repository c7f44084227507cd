#include "toolpath/ContourPredicates.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith::contour {

namespace {

constexpr float kTol = kNearTolerance;

// A track whose tests reach this far rejects a point it has no foot for: PointSegmentDistance
// answers kNoFoot then.
constexpr double kBoundlessRadius = 1.0e8;

// The rounding of the tests is a few units in the last place of the coordinates involved; the
// margin is far above that.
double ReachMargin(double magnitude) {
  return 0.05 + 1.0e-5 * magnitude;
}

double Magnitude(std::initializer_list<double> values) {
  double m = 0;
  for (double v : values) m = std::max(m, std::abs(v));
  return m;
}

}  // namespace

IndexBox SegmentBox(const TSeg& s, float margin) {
  IndexBox b{s.x1, s.y1, s.x2, s.y2};
  OrderBox(b.x1, b.y1, b.x2, b.y2);
  b.x1 = static_cast<float>(double(b.x1) - margin);
  b.y1 = static_cast<float>(double(b.y1) - margin);
  b.x2 = static_cast<float>(double(b.x2) + margin);
  b.y2 = static_cast<float>(double(b.y2) + margin);
  return b;
}

bool Overlap(const IndexBox& a, const IndexBox& b) {
  return BoxesOverlap(a.x1, a.y1, a.x2, a.y2, b.x1, b.y1, b.x2, b.y2);
}

bool SplitAt(TSeg* s, float x, float y) {
  if (NearPoints(x, y, s->x1, s->y1, kTol) || NearPoints(x, y, s->x2, s->y2, kTol)) return false;
  InsertBehind(s, x, y, s->x2, s->y2);
  s->x2 = x;
  s->y2 = y;
  return true;
}

void Midpoint(const TSeg& s, float& mx, float& my) {
  mx = static_cast<float>((double(s.x1) + s.x2) * 0.5);
  my = static_cast<float>((double(s.y1) + s.y2) * 0.5);
}

// --- Removal tests -------------------------------------------------------------------------

bool TrackRejects(const Board& b, int layer, const TTrack& t, const TSeg& s, float mx, float my,
                  float trackOffset, bool fast) {
  const float w = b.TrackWidth[layer][t.code];
  const float R = static_cast<float>((double(trackOffset) + w) * 0.5 - 0.001);
  const float px[2] = {s.x1, s.x2}, py[2] = {s.y1, s.y2};
  if (!fast) {
    const float r = static_cast<float>(0.98 * R);
    if (PointSegmentDistance(mx, my, t.x1, t.y1, t.x2, t.y2) < r) return true;
    for (int i = 0; i < 2; ++i)
      if (PointSegmentDistance(px[i], py[i], t.x1, t.y1, t.x2, t.y2) < r ||
          Distance(px[i], py[i], t.x1, t.y1) < r || Distance(px[i], py[i], t.x2, t.y2) < r)
        return true;
    return false;
  }
  const float r = static_cast<float>(0.9 * R);
  float bx1 = t.x1, by1 = t.y1, bx2 = t.x2, by2 = t.y2;
  OrderBox(bx1, by1, bx2, by2);
  const double grow = 5.0 * w + 0.01;
  auto inBox = [&](float x, float y) {
    return x >= bx1 - grow && x <= bx2 + grow && y >= by1 - grow && y <= by2 + grow;
  };
  if (inBox(mx, my) && PointSegmentDistance(mx, my, t.x1, t.y1, t.x2, t.y2) < R) return true;
  for (int i = 0; i < 2; ++i)
    if (inBox(px[i], py[i]) &&
        (PointSegmentDistance(px[i], py[i], t.x1, t.y1, t.x2, t.y2) < R ||
         Distance(px[i], py[i], t.x1, t.y1) < r || Distance(px[i], py[i], t.x2, t.y2) < r))
      return true;
  return false;
}

bool PadRejects(const Board& b, int layer, const TPad& p, const TSeg& s, float mx, float my,
                float o) {
  const uint8_t shape = b.PadShape[layer][p.code];
  const float w = b.PadSizeX[layer][p.code], h = b.PadSizeY[layer][p.code];
  const float x = p.x, y = p.y;
  const float tx[2] = {mx, s.x1}, ty[2] = {my, s.y1};
  auto nearer = [](float ax, float ay, float cx, float cy, float R) {
    return Distance(ax, ay, cx, cy) < R;
  };
  switch (shape) {
    case kShapeCircle:
    case kShapeOctagon: {
      const double k = shape == kShapeCircle ? 0.49 : 0.441;
      const float R = static_cast<float>((double(o) + w) * k - 0.01);
      return nearer(mx, my, x, y, R) || nearer(s.x1, s.y1, x, y, R) || nearer(s.x2, s.y2, x, y, R);
    }
    case kShapeRectangle: {
      const float a = static_cast<float>((double(o) + w) * 0.5 - 0.01);
      const float bb = static_cast<float>((double(o) + h) * 0.5 - 0.01);
      auto inside = [&](float px, float py) {
        return px > double(x) - a && px < double(x) + a && py > double(y) - bb &&
               py < double(y) + bb;
      };
      return inside(mx, my) || inside(s.x1, s.y1) || inside(s.x2, s.y2);
    }
    case kShapeObround: {
      // The third tested point takes the half-length of the straight part in place of P2's
      // coordinate along the long axis: the removal has always been done this way.
      const bool wide = w > h;
      const float R = static_cast<float>((double(o) + (wide ? h : w)) * 0.49 - 0.01);
      const float c = static_cast<float>((wide ? double(w) - h : double(h) - w) * 0.5);
      float px[3] = {tx[0], tx[1], wide ? c : s.x2};
      float py[3] = {ty[0], ty[1], wide ? s.y2 : c};
      float c1x = wide ? static_cast<float>(double(x) - c) : x;
      float c1y = wide ? y : static_cast<float>(double(y) - c);
      float c2x = wide ? static_cast<float>(double(x) + c) : x;
      float c2y = wide ? y : static_cast<float>(double(y) + c);
      for (int i = 0; i < 3; ++i) {
        bool inStraight = wide ? (px[i] > double(x) - c && px[i] < double(x) + c &&
                                  py[i] > double(y) - R && py[i] < double(y) + R)
                               : (py[i] > double(y) - c && py[i] < double(y) + c &&
                                  px[i] > double(x) - R && px[i] < double(x) + R);
        if (inStraight) return true;
      }
      for (int i = 0; i < 3; ++i)
        if (nearer(px[i], py[i], c1x, c1y, R)) return true;
      for (int i = 0; i < 3; ++i)
        if (nearer(px[i], py[i], c2x, c2y, R)) return true;
      return false;
    }
    default:
      return false;
  }
}

// --- Reach of the removal tests ------------------------------------------------------------

Reach TrackReach(const Board& b, int layer, const TTrack& t, float trackOffset, double piece,
                 std::vector<IndexBox>& boxes) {
  // Every rejection is a distance below R (or below r, which is smaller) from the track's
  // centre line or ends, the foot of a distance lying on the track within 0.001.
  const float w = b.TrackWidth[layer][t.code];
  const double R = static_cast<float>((double(trackOffset) + w) * 0.5 - 0.001);
  if (!(R > 0)) return Reach::kNone;
  if (R >= kBoundlessRadius) return Reach::kEverywhere;
  const double dx = double(t.x2) - t.x1, dy = double(t.y2) - t.y1;
  const double grow = R + kFineTolerance + ReachMargin(Magnitude({t.x1, t.y1, t.x2, t.y2, R}));
  // Pieces along the track: every point near the track is near one of them.
  double count = piece > 0 ? std::ceil(std::max(std::abs(dx), std::abs(dy)) / piece) : 1;
  if (!(count >= 1)) count = 1;
  const int n = static_cast<int>(std::min(count, 4096.0));
  for (int i = 0; i < n; ++i) {
    const double u0 = double(i) / n, u1 = double(i + 1) / n;
    double ax = t.x1 + dx * u0, ay = t.y1 + dy * u0;
    double bx = i + 1 == n ? double(t.x2) : t.x1 + dx * u1;
    double by = i + 1 == n ? double(t.y2) : t.y1 + dy * u1;
    if (bx < ax) std::swap(ax, bx);
    if (by < ay) std::swap(ay, by);
    boxes.push_back(Grown({static_cast<float>(ax), static_cast<float>(ay), static_cast<float>(bx),
                           static_cast<float>(by)},
                          grow));
  }
  return Reach::kBoxes;
}

Reach PadReach(const Board& b, int layer, const TPad& p, float o, IndexBox& box) {
  const uint8_t shape = b.PadShape[layer][p.code];
  const float w = b.PadSizeX[layer][p.code], h = b.PadSizeY[layer][p.code];
  const double x = p.x, y = p.y;
  // Half-sizes of the box round the centre within which a tested point can be rejected.
  double rx = 0, ry = 0;
  switch (shape) {
    case kShapeCircle:
    case kShapeOctagon: {
      const double k = shape == kShapeCircle ? 0.49 : 0.441;
      rx = ry = static_cast<float>((double(o) + w) * k - 0.01);
      break;
    }
    case kShapeRectangle:
      rx = static_cast<float>((double(o) + w) * 0.5 - 0.01);
      ry = static_cast<float>((double(o) + h) * 0.5 - 0.01);
      break;
    case kShapeObround: {
      const bool wide = w > h;
      const double R = static_cast<float>((double(o) + (wide ? h : w)) * 0.49 - 0.01);
      const double c = static_cast<float>((wide ? double(w) - h : double(h) - w) * 0.5);
      if (!(R > 0) || !(c >= 0)) return Reach::kNone;
      rx = wide ? c + R : R;
      ry = wide ? R : c + R;
      // The third point stands at c on the long axis, whatever the segment.
      const double margin = ReachMargin(Magnitude({x, y, c, R}));
      if (std::abs(c - (wide ? x : y)) <= c + R + margin) return Reach::kEverywhere;
      break;
    }
    default:
      return Reach::kNone;
  }
  if (!(rx > 0) || !(ry > 0)) return Reach::kNone;
  const double margin = ReachMargin(Magnitude({x, y, rx, ry}));
  box = {static_cast<float>(x - rx - margin), static_cast<float>(y - ry - margin),
         static_cast<float>(x + rx + margin), static_cast<float>(y + ry + margin)};
  return Reach::kBoxes;
}

// --- Final build-up ------------------------------------------------------------------------

bool SameEnds(const TSeg& a, const TSeg& b) {
  return (NearPoints(a.x1, a.y1, b.x1, b.y1, kTol) && NearPoints(a.x2, a.y2, b.x2, b.y2, kTol)) ||
         (NearPoints(a.x1, a.y1, b.x2, b.y2, kTol) && NearPoints(a.x2, a.y2, b.x1, b.y1, kTol));
}

int ChainFit(const TSeg& s, const TXY& start, const TXY& end) {
  if (NearPoints(s.x1, s.y1, end.x, end.y, kTol)) return 1;
  if (NearPoints(s.x2, s.y2, end.x, end.y, kTol)) return 2;
  if (NearPoints(s.x2, s.y2, start.x, start.y, kTol)) return 3;
  if (NearPoints(s.x1, s.y1, start.x, start.y, kTol)) return 4;
  return 0;
}

void ExtendChain(TPolygon& poly, TXY*& last, const TSeg& s, int fit) {
  switch (fit) {
    case 1:
      AppendPoint(poly, last, s.x2, s.y2);
      break;
    case 2:
      AppendPoint(poly, last, s.x1, s.y1);
      break;
    case 3:
      poly.first = new TXY{s.x1, s.y1, 0, poly.first};
      break;
    default:
      poly.first = new TXY{s.x2, s.y2, 0, poly.first};
      break;
  }
}

}  // namespace isolith::contour
