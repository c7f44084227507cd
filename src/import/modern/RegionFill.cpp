#include "import/modern/RegionFill.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace isolith {

namespace {

using Interval = std::pair<double, double>;

struct Box {
  double xmin = std::numeric_limits<double>::max(), ymin = xmin;
  double xmax = -xmin, ymax = -xmin;
  void Add(const std::vector<Outline>& outlines) {
    for (const Outline& o : outlines)
      for (const OutlinePoint& p : o) {
        xmin = std::min(xmin, p.x);
        xmax = std::max(xmax, p.x);
        ymin = std::min(ymin, p.y);
        ymax = std::max(ymax, p.y);
      }
  }
  bool Meets(const Box& b) const {
    return xmin <= b.xmax && b.xmin <= xmax && ymin <= b.ymax && b.ymin <= ymax;
  }
};

struct Edge {
  OutlinePoint p, q;
};

void AddEdges(const std::vector<Outline>& outlines, std::vector<Edge>& edges) {
  for (const Outline& o : outlines)
    for (size_t i = 0; i < o.size(); ++i) edges.push_back({o[i], o[(i + 1) % o.size()]});
}

// The stretches of the line at `y` inside the even-odd set of `edges`.
std::vector<Interval> InsideAt(const std::vector<Edge>& edges, double y) {
  std::vector<double> xs;
  for (const Edge& e : edges)
    if ((e.p.y > y) != (e.q.y > y))
      xs.push_back(e.p.x + (y - e.p.y) / (e.q.y - e.p.y) * (e.q.x - e.p.x));
  std::sort(xs.begin(), xs.end());
  std::vector<Interval> inside;
  for (size_t i = 0; i + 1 < xs.size(); i += 2) inside.push_back({xs[i], xs[i + 1]});
  return inside;
}

void Subtract(std::vector<Interval>& from, Interval cut) {
  std::vector<Interval> out;
  for (const Interval& i : from) {
    if (cut.second <= i.first || cut.first >= i.second) {
      out.push_back(i);
      continue;
    }
    if (i.first < cut.first) out.push_back({i.first, cut.first});
    if (cut.second < i.second) out.push_back({cut.second, i.second});
  }
  from.swap(out);
}

// Where the line at `y` comes nearer than `r` to the edge: the stroke of the edge with a round
// pen of radius r is convex, so its crossing with the line runs between the extreme crossings of
// its boundary, which lies on the two end circles and the two sides.
bool NearEdge(const Edge& e, double y, double r, Interval& near) {
  double lo = std::numeric_limits<double>::max(), hi = -lo;
  auto take = [&](double x) {
    lo = std::min(lo, x);
    hi = std::max(hi, x);
  };
  for (const OutlinePoint& end : {e.p, e.q}) {
    const double dy = y - end.y;
    if (std::fabs(dy) > r) continue;
    const double dx = std::sqrt(r * r - dy * dy);
    take(end.x - dx);
    take(end.x + dx);
  }
  const double len = std::hypot(e.q.x - e.p.x, e.q.y - e.p.y);
  if (len > 0) {
    const double nx = -(e.q.y - e.p.y) / len * r, ny = (e.q.x - e.p.x) / len * r;
    for (int side : {-1, 1}) {
      const OutlinePoint a{e.p.x + side * nx, e.p.y + side * ny};
      const OutlinePoint b{e.q.x + side * nx, e.q.y + side * ny};
      if ((a.y > y) != (b.y > y)) take(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x));
    }
  }
  near = {lo, hi};
  return lo <= hi;
}

// The parameters at which the edge from p to q crosses the edges of `cut`.
void Crossings(OutlinePoint p, OutlinePoint q, const std::vector<Edge>& cut,
               std::vector<double>& ts) {
  const double dx = q.x - p.x, dy = q.y - p.y;
  for (const Edge& e : cut) {
    const double ex = e.q.x - e.p.x, ey = e.q.y - e.p.y;
    const double den = dx * ey - dy * ex;
    if (std::fabs(den) < 1e-15) continue;
    const double t = ((e.p.x - p.x) * ey - (e.p.y - p.y) * ex) / den;
    const double u = ((e.p.x - p.x) * dy - (e.p.y - p.y) * dx) / den;
    if (t > 0 && t < 1 && u >= 0 && u <= 1) ts.push_back(t);
  }
}

}  // namespace

double RegionFillWidth(double w, double h) {
  const double least = std::min(w, h);
  if (least >= 1.5) return 0.15;
  if (least >= 0.6) return 0.1;
  return 0.05;
}

std::vector<FillStroke> FillRegion(const std::vector<Outline>& region,
                                   const std::vector<const std::vector<Outline>*>& cleared) {
  std::vector<FillStroke> strokes;
  Box box;
  box.Add(region);
  if (box.xmin > box.xmax) return strokes;

  // Only the cleared areas that reach the region matter.
  std::vector<std::vector<Edge>> cuts;
  for (const std::vector<Outline>* c : cleared) {
    Box cb;
    cb.Add(*c);
    if (!cb.Meets(box)) continue;
    cuts.emplace_back();
    AddEdges(*c, cuts.back());
  }
  std::vector<Edge> edges;
  AddEdges(region, edges);

  // The outline, where no cleared area covers it.
  for (const Edge& e : edges) {
    std::vector<double> ts = {0, 1};
    for (const std::vector<Edge>& cut : cuts) Crossings(e.p, e.q, cut, ts);
    std::sort(ts.begin(), ts.end());
    for (size_t i = 0; i + 1 < ts.size(); ++i) {
      if (ts[i + 1] - ts[i] < 1e-9) continue;
      const double tm = (ts[i] + ts[i + 1]) / 2;
      const OutlinePoint m{e.p.x + (e.q.x - e.p.x) * tm, e.p.y + (e.q.y - e.p.y) * tm};
      bool covered = false;
      for (const std::vector<Edge>& cut : cuts) {
        const std::vector<Interval> in = InsideAt(cut, m.y);
        for (const Interval& iv : in) covered = covered || (m.x > iv.first && m.x < iv.second);
      }
      if (covered) continue;
      const auto at = [&](double t) {
        return OutlinePoint{e.p.x + (e.q.x - e.p.x) * t, e.p.y + (e.q.y - e.p.y) * t};
      };
      strokes.push_back({at(ts[i]), at(ts[i + 1]), kRegionOutlineWidth});
    }
  }

  // The fill: on each scan line, the places where a pen of the fill width stays inside.
  const double width = RegionFillWidth(box.xmax - box.xmin, box.ymax - box.ymin);
  const double r = width / 2, spacing = width / 3;
  const double first = box.ymin + r, last = box.ymax - r;
  if (last < first) return strokes;
  const int lines = int(std::ceil((last - first) / spacing)) + 1;
  const double step = lines > 1 ? (last - first) / (lines - 1) : 0;

  // The edges near each line, found once.
  std::vector<Edge> all = edges;
  for (const std::vector<Edge>& cut : cuts) all.insert(all.end(), cut.begin(), cut.end());
  std::vector<std::vector<int>> nearLine(static_cast<size_t>(lines));
  for (size_t i = 0; i < all.size(); ++i) {
    const double lo = std::min(all[i].p.y, all[i].q.y) - r;
    const double hi = std::max(all[i].p.y, all[i].q.y) + r;
    const int k0 = std::max(0, int(std::floor((lo - first) / (step > 0 ? step : 1))));
    const int k1 = std::min(lines - 1, int(std::ceil((hi - first) / (step > 0 ? step : 1))));
    for (int k = k0; k <= k1; ++k) nearLine[size_t(k)].push_back(int(i));
  }

  std::vector<Interval> below;
  double yBelow = 0;
  for (int k = 0; k < lines; ++k) {
    const double y = first + step * k;
    std::vector<Interval> fill = InsideAt(edges, y);
    for (const std::vector<Edge>& cut : cuts)
      for (const Interval& iv : InsideAt(cut, y)) Subtract(fill, iv);
    for (int i : nearLine[size_t(k)]) {
      Interval near;
      if (NearEdge(all[size_t(i)], y, r, near)) Subtract(fill, near);
    }
    for (const Interval& iv : fill) {
      strokes.push_back({{iv.first, y}, {iv.second, y}, width});
      for (const Interval& b : below) {
        const double lo = std::max(b.first, iv.first), hi = std::min(b.second, iv.second);
        if (lo > hi) continue;
        const double x = (lo + hi) / 2;
        strokes.push_back({{x, yBelow}, {x, y}, width});
        break;
      }
    }
    below.swap(fill);
    yBelow = y;
  }
  return strokes;
}

}  // namespace isolith
