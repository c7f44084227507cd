#include "core/board/BoardOps.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace isolith {

namespace {

constexpr float kBoxStart = 1e9f;

// Unlinks `item` from the list at `head`; true when it was found.
template <typename R>
bool Unlink(R*& head, R* item) {
  for (R** link = &head; *link; link = &(*link)->next) {
    if (*link == item) {
      *link = item->next;
      item->next = nullptr;
      return true;
    }
  }
  return false;
}

void Extend(float x, float y, float& xmin, float& ymin, float& xmax, float& ymax) {
  if (x < xmin) xmin = x;
  if (y < ymin) ymin = y;
  if (x > xmax) xmax = x;
  if (y > ymax) ymax = y;
}

void ScalePolygons(TPolygon* list, float f) {
  for (; list; list = list->next)
    for (TXY* p = list->first; p; p = p->next) {
      p->x = p->x * f;
      p->y = p->y * f;
    }
}

void ShiftPolygons(TPolygon* list, float dx, float dy) {
  for (; list; list = list->next)
    for (TXY* p = list->first; p; p = p->next) {
      p->x = p->x + dx;
      p->y = p->y + dy;
    }
}

void ShiftPads(TPad* p, float dx, float dy) {
  for (; p; p = p->next) {
    p->x = p->x + dx;
    p->y = p->y + dy;
  }
}

void ShiftTracks(TTrack* t, float dx, float dy) {
  for (; t; t = t->next) {
    t->x1 = t->x1 + dx;
    t->y1 = t->y1 + dy;
    t->x2 = t->x2 + dx;
    t->y2 = t->y2 + dy;
  }
}

void ShiftDrills(TDrill* d, float dx, float dy) {
  for (; d; d = d->next) {
    d->x = d->x + dx;
    d->y = d->y + dy;
  }
}

// Squared distance of a point from the card's zero.
double FromZero(float x, float y) {
  return double(x) * x + double(y) * y;
}

bool HasCopper(const Board& b, int layer) {
  return b.Pads[layer] || b.Tracks[layer];
}

// Aligns a layer that has tracks but no pads: a track of layer 0 with the same extent as one of
// this layer fixes the offset between them.
void AlignByTracks(Board& b, int layer) {
  const TTrack* ref = nullptr;
  float refX = 0, refY = 0;
  double best = 0;
  for (const TTrack* t = b.Tracks[0]; t; t = t->next) {
    for (int end = 0; end < 2; ++end) {
      float x = end ? t->x2 : t->x1, y = end ? t->y2 : t->y1;
      double d = FromZero(x, y);
      if (!ref || d < best) {
        ref = t;
        refX = x;
        refY = y;
        best = d;
      }
    }
  }
  if (!ref) return;
  float extentX = std::fabs(ref->x2 - ref->x1), extentY = std::fabs(ref->y2 - ref->y1);
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
    if (std::fabs(std::fabs(t->x2 - t->x1) - extentX) < 0.01 &&
        std::fabs(std::fabs(t->y2 - t->y1) - extentY) < 0.01) {
      bool second = FromZero(t->x2, t->y2) < FromZero(t->x1, t->y1);
      float x = second ? t->x2 : t->x1, y = second ? t->y2 : t->y1;
      ShiftTracks(b.Tracks[layer], refX - x, refY - y);
      return;
    }
  }
}

}  // namespace

bool SamePoint(double x1, double y1, double x2, double y2) {
  return std::fabs(x1 - x2) < 0.001 && std::fabs(y1 - y2) < 0.001;
}

void ResetApertureTables(Board& b) {
  for (int l = 0; l < 5; ++l)
    for (int i = 0; i < kApertures; ++i) {
      b.PadShape[l][i] = kShapeCircle;
      b.PadSizeX[l][i] = 1.27f;
      b.PadSizeY[l][i] = 1.27f;
      b.TrackWidth[l][i] = 0.635f;
    }
  for (int i = 0; i < kApertures; ++i) {
    b.DrillDiameter[i] = 0.635f;
    b.ApertureFlags[i] = 0;
  }
}

Board::Board() {
  ResetApertureTables(*this);
}

Board::~Board() {
  for (auto& p : Pads) FreeChain(p);
  for (auto& t : Tracks) FreeChain(t);
  for (auto& c : Contours) FreeChain(c);
  for (auto& h : Hatches) FreeChain(h);
  FreeChain(Drills);
  FreeChain(Cutouts);
  FreeChain(ImportPads);
  FreeChain(ImportTracks);
  FreeChain(ImportDrills);
}

void RemovePad(Board& b, int layer, TPad* pad) {
  if (!pad) return;
  if (b.HoverPad == pad) b.HoverPad = nullptr;
  if (b.RefPad == pad) b.RefPad = nullptr;
  if (layer >= 0 && layer < 5) Unlink(b.Pads[layer], pad);
  delete pad;
}

void RemoveTrack(Board& b, int layer, TTrack* track) {
  if (!track) return;
  if (b.HoverTrack == track) b.HoverTrack = nullptr;
  if (layer >= 0 && layer < 5) Unlink(b.Tracks[layer], track);
  delete track;
}

void RemoveDrill(Board& b, TDrill* drill) {
  if (!drill) return;
  if (b.HoverDrill == drill) b.HoverDrill = nullptr;
  Unlink(b.Drills, drill);
  delete drill;
}

int RemoveTracksWhere(Board& b, int layer, const std::function<bool(const TTrack&)>& condition) {
  if (layer < 0 || layer >= 5) return 0;
  int removed = 0;
  for (TTrack** link = &b.Tracks[layer]; *link;) {
    TTrack* t = *link;
    if (!condition(*t)) {
      link = &t->next;
      continue;
    }
    *link = t->next;
    if (b.HoverTrack == t) b.HoverTrack = nullptr;
    delete t;
    ++removed;
  }
  return removed;
}

bool RemoveTracksAt(Board& b, float x1, float y1, float x2, float y2, bool allLayers,
                    const TTrack* except) {
  bool removed = false;
  for (int l = 0; l < kCircuitLayers; ++l) {
    if (!allLayers && l != b.ActiveLayer) continue;
    removed |= RemoveTracksWhere(b, l, [&](const TTrack& t) {
                 const bool joins =
                     (SamePoint(t.x1, t.y1, x1, y1) && SamePoint(t.x2, t.y2, x2, y2)) ||
                     (SamePoint(t.x1, t.y1, x2, y2) && SamePoint(t.x2, t.y2, x1, y1));
                 return joins && &t != except;
               }) > 0;
  }
  return removed;
}

void FreePads(Board& b, TPad* head) {
  for (TPad* p = head; p; p = p->next) {
    if (b.HoverPad == p) b.HoverPad = nullptr;
    if (b.RefPad == p) b.RefPad = nullptr;
  }
  FreeChain(head);
}

void FreeTracks(Board& b, TTrack* head) {
  for (TTrack* t = head; t; t = t->next)
    if (b.HoverTrack == t) b.HoverTrack = nullptr;
  FreeChain(head);
}

void FreeDrills(Board& b, TDrill* head) {
  for (TDrill* d = head; d; d = d->next)
    if (b.HoverDrill == d) b.HoverDrill = nullptr;
  FreeChain(head);
}

void FreePolygons(TPolygon* head) {
  FreeChain(head);
}

void FreeCutouts(Board& b, TCutout* head) {
  for (TCutout* c = head; c; c = c->next)
    if (b.HoverCutout == c) b.HoverCutout = nullptr;
  FreeChain(head);
}

void FreeContours(Board& b, bool allLayers) {
  for (int l = 0; l < kCircuitLayers; ++l) {
    if (!allLayers && l != b.ActiveLayer) continue;
    if (!b.Contours[l]) continue;
    for (TPolygon* p = b.Contours[l]; p; p = p->next)
      if (b.HoverContour == p) {
        b.HoverContour = nullptr;
        b.HoverContourSegment = nullptr;
        b.HoverContourVertex = nullptr;
      }
    FreePolygons(b.Contours[l]);
    FreePolygons(b.Hatches[l]);
    b.Contours[l] = nullptr;
    b.Hatches[l] = nullptr;
  }
}

void ClearHover(Board& b) {
  b.HoverPad = nullptr;
  b.HoverTrack = nullptr;
  b.HoverDrill = nullptr;
  b.HoverContour = nullptr;
  b.HoverContourSegment = nullptr;
  b.HoverContourVertex = nullptr;
  b.HoverCutout = nullptr;
  b.HoverCentreHole = 0;
  b.PendingCommand = 0;
}

void ResetJob(Board& b) {
  // The old job's records are freed rather than abandoned: nothing else points into them once
  // the hover and reference names are cleared.
  ClearHover(b);
  b.RefPad = nullptr;
  for (auto& name : b.LayerName) name.clear();
  b.ActiveLayer = 0;
  b.LayerCount = 0;
  for (auto& p : b.Pads) FreeChain(std::exchange(p, nullptr));
  for (auto& t : b.Tracks) FreeChain(std::exchange(t, nullptr));
  for (auto& c : b.Contours) FreeChain(std::exchange(c, nullptr));
  for (auto& h : b.Hatches) FreeChain(std::exchange(h, nullptr));
  FreeChain(std::exchange(b.Drills, nullptr));
  FreeChain(std::exchange(b.Cutouts, nullptr));
  b.CardWidth = 100;
  b.CardHeight = 70;
  b.CardThickness = 1;
  b.OriginX = 0;
  b.OriginY = 0;
  ResetView(b);
  b.Dragging = false;
  b.Drag = {};
}

void ResetView(Board& b) {
  b.ViewLeft = 0;
  b.ViewBottom = 0;
  b.ViewRight = b.CardWidth;
  b.ViewTop = b.CardHeight;
  b.ZoomHistory = {};
  b.ZoomDepth = 0;
}

void LayerBoundingBox(const Board& b, int layer, float& xmin, float& ymin, float& xmax,
                      float& ymax) {
  if (IsCircuitLayer(layer))
    BoundingBox(b.Pads[layer], b.Tracks[layer], nullptr, nullptr, xmin, ymin, xmax, ymax, false);
  else if (layer == kDrillLayer)
    BoundingBox(nullptr, nullptr, b.Drills, nullptr, xmin, ymin, xmax, ymax, false);
  else
    BoundingBox(nullptr, nullptr, nullptr, b.Cutouts, xmin, ymin, xmax, ymax, false);
}

TPad* LastPad(TPad* head) {
  return LastOf(head);
}
TTrack* LastTrack(TTrack* head) {
  return LastOf(head);
}
TPolygon* LastPolygon(TPolygon* head) {
  return LastOf(head);
}

bool LayerHasContent(const Board& b, int layer) {
  if (IsCircuitLayer(layer)) return HasCopper(b, layer);
  if (layer == kDrillLayer) return b.Drills != nullptr;
  if (layer == kCutoutLayer) return b.Cutouts != nullptr;
  return false;
}

int CountLayers(const Board& b) {
  int n = 0;
  for (int l = 0; l < kLayers; ++l) n += LayerHasContent(b, l) ? 1 : 0;
  return n;
}

void BoundingBox(const TPad* pads, const TTrack* tracks, const TDrill* drills,
                 const TCutout* cutouts, float& xmin, float& ymin, float& xmax, float& ymax,
                 bool accumulate) {
  if (!accumulate) {
    xmin = ymin = kBoxStart;
    xmax = ymax = -kBoxStart;
  }
  for (; pads; pads = pads->next) Extend(pads->x, pads->y, xmin, ymin, xmax, ymax);
  for (; tracks; tracks = tracks->next) {
    Extend(tracks->x1, tracks->y1, xmin, ymin, xmax, ymax);
    Extend(tracks->x2, tracks->y2, xmin, ymin, xmax, ymax);
  }
  for (; drills; drills = drills->next) Extend(drills->x, drills->y, xmin, ymin, xmax, ymax);
  for (; cutouts; cutouts = cutouts->next)
    if (cutouts->outline)
      for (const TXY* p = cutouts->outline->first; p; p = p->next)
        Extend(p->x, p->y, xmin, ymin, xmax, ymax);
}

namespace {
void ContentBox(const Board& b, float& xmin, float& ymin, float& xmax, float& ymax) {
  BoundingBox(nullptr, nullptr, b.Drills, b.Cutouts, xmin, ymin, xmax, ymax, false);
  for (int l = 0; l < kCircuitLayers; ++l)
    BoundingBox(b.Pads[l], b.Tracks[l], nullptr, nullptr, xmin, ymin, xmax, ymax, true);
}
}  // namespace

void FullBoundingBox(const Board& b, float& xmin, float& ymin, float& xmax, float& ymax) {
  ContentBox(b, xmin, ymin, xmax, ymax);
  if (IsSet(b.CentreHole1X) && IsSet(b.CentreHole1Y)) {
    xmin = std::min(xmin, b.CentreHole1X);
    ymin = std::min(ymin, b.CentreHole1Y);
    if (IsSet(b.CentreHole2X) && IsSet(b.CentreHole2Y)) {
      xmax = std::max(xmax, b.CentreHole2X);
      ymax = std::max(ymax, b.CentreHole2Y);
    }
  }
}

void ScaleLists(Board& b, TPad* pads, TTrack* tracks, TDrill* drills, TCutout* cutouts,
                float factor, bool lists, bool padTables, bool trackTables, bool drillTable,
                bool card) {
  if (factor == 1.0f) return;
  const float f = factor;
  if (lists) {
    for (TPad* p = pads; p; p = p->next) {
      p->x = p->x * f;
      p->y = p->y * f;
    }
    for (TTrack* t = tracks; t; t = t->next) {
      t->x1 = t->x1 * f;
      t->y1 = t->y1 * f;
      t->x2 = t->x2 * f;
      t->y2 = t->y2 * f;
    }
    for (TDrill* d = drills; d; d = d->next) {
      d->x = d->x * f;
      d->y = d->y * f;
    }
    for (TCutout* c = cutouts; c; c = c->next) {
      ScalePolygons(c->outline, f);
      ScalePolygons(c->paths, f);
    }
  }
  for (int l = 0; l < 5; ++l)
    for (int i = 0; i < kApertures; ++i) {
      if (padTables) {
        b.PadSizeX[l][i] = b.PadSizeX[l][i] * f;
        b.PadSizeY[l][i] = b.PadSizeY[l][i] * f;
      }
      if (trackTables) b.TrackWidth[l][i] = b.TrackWidth[l][i] * f;
    }
  if (drillTable)
    for (float& d : b.DrillDiameter) d = d * f;
  if (card) {
    b.CardWidth = b.CardWidth * f;
    b.CardHeight = b.CardHeight * f;
    b.OriginX = b.OriginX * f;
    b.OriginY = b.OriginY * f;
    b.ViewLeft = b.ViewLeft * f;
    b.ViewBottom = b.ViewBottom * f;
    b.ViewRight = b.ViewRight * f;
    b.ViewTop = b.ViewTop * f;
  }
}

void ShiftLists(Board& b, float dx, float dy, bool all, bool withOrigin) {
  for (int l = 0; l < kCircuitLayers; ++l) {
    if (!all && l != b.ActiveLayer) continue;
    ShiftPads(b.Pads[l], dx, dy);
    ShiftTracks(b.Tracks[l], dx, dy);
    ShiftPolygons(b.Contours[l], dx, dy);
    ShiftPolygons(b.Hatches[l], dx, dy);
  }
  if (all || b.ActiveLayer == 0 || b.ActiveLayer == kDrillLayer) ShiftDrills(b.Drills, dx, dy);
  if (all || b.ActiveLayer == 0 || b.ActiveLayer == kCutoutLayer)
    for (TCutout* c = b.Cutouts; c; c = c->next) {
      ShiftPolygons(c->outline, dx, dy);
      ShiftPolygons(c->paths, dx, dy);
    }
  if (all || b.ActiveLayer == 0) {
    if (IsSet(b.CentreHole1X)) b.CentreHole1X = b.CentreHole1X + dx;
    if (IsSet(b.CentreHole1Y)) b.CentreHole1Y = b.CentreHole1Y + dy;
    if (IsSet(b.CentreHole2X)) b.CentreHole2X = b.CentreHole2X + dx;
    if (IsSet(b.CentreHole2Y)) b.CentreHole2Y = b.CentreHole2Y + dy;
  }
  // An origin at zero stays at zero.
  if (withOrigin && (std::fabs(b.OriginX) > 0.1 || std::fabs(b.OriginY) > 0.1)) {
    b.OriginX = b.OriginX + dx;
    b.OriginY = b.OriginY + dy;
  }
}

// The pairs (p, q) of `a` x `b` that are the same point (SamePoint), counted by a sweep along x
// with the points of `b` in the window counted by their y rank: n log n however the points lie.
int CountSamePoints(std::vector<std::pair<double, double>> a,
                    std::vector<std::pair<double, double>> b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  std::vector<double> ys(b.size());
  for (size_t i = 0; i < b.size(); ++i) ys[i] = b[i].second;
  std::sort(ys.begin(), ys.end());
  // The y rank of each point of b (equal values share the first rank).
  std::vector<int> rank(b.size());
  for (size_t i = 0; i < b.size(); ++i)
    rank[i] = static_cast<int>(std::lower_bound(ys.begin(), ys.end(), b[i].second) - ys.begin());
  std::vector<int> tree(ys.size() + 1, 0);  // counts by y rank, a Fenwick tree
  const auto add = [&tree](int r, int v) {
    for (++r; r < static_cast<int>(tree.size()); r += r & -r) tree[r] += v;
  };
  const auto below = [&tree](int r) {  // points of rank < r
    int sum = 0;
    for (; r > 0; r -= r & -r) sum += tree[r];
    return sum;
  };
  const auto near = [](double u, double v) { return std::fabs(u - v) < 0.001; };
  size_t lo = 0, hi = 0;
  int count = 0;
  for (const auto& point : a) {
    const double px = point.first, py = point.second;  // plain names: lambdas below capture py
    while (hi < b.size() && (b[hi].first < px || near(px, b[hi].first))) add(rank[hi++], 1);
    while (lo < hi && !near(px, b[lo].first) && b[lo].first < px) add(rank[lo++], -1);
    // Ranks whose y is within the tolerance of py form one run of the sorted ys.
    const auto first = std::partition_point(ys.begin(), ys.end(),
                                            [&](double y) { return y < py && !near(py, y); });
    const auto last = std::partition_point(first, ys.end(), [&](double y) { return near(py, y); });
    count +=
        below(static_cast<int>(last - ys.begin())) - below(static_cast<int>(first - ys.begin()));
  }
  return count;
}

int PadOverlap(const Board& b, int layer) {
  if (layer <= 0 || layer >= kCutoutLayer || !b.Pads[0]) return 0;
  std::vector<std::pair<double, double>> base, other;
  for (const TPad* p = b.Pads[0]; p; p = p->next) base.emplace_back(p->x, p->y);
  if (layer == kDrillLayer) {
    for (const TDrill* d = b.Drills; d; d = d->next) other.emplace_back(d->x, d->y);
  } else {
    for (const TPad* q = b.Pads[layer]; q; q = q->next) other.emplace_back(q->x, q->y);
  }
  const int n0 = static_cast<int>(base.size()), n1 = static_cast<int>(other.size());
  const int c = CountSamePoints(std::move(base), std::move(other));
  int m = std::min(n0, n1);
  if (c > m) m = std::max(n0, n1);
  return m == 0 ? 0 : c * 100 / m;
}

int AlignLayer(Board& b, int layer) {
  if (layer <= 0 || layer >= kCutoutLayer) return 0;
  float x0, y0, x1, y1, ax, ay, bx, by;
  if (layer == kDrillLayer) {
    if (b.Drills && b.Pads[0]) {
      BoundingBox(b.Pads[0], nullptr, nullptr, nullptr, x0, y0, x1, y1, false);
      BoundingBox(nullptr, nullptr, b.Drills, nullptr, ax, ay, bx, by, false);
      ShiftDrills(b.Drills, x0 - ax, y0 - ay);
    }
  } else if (b.Pads[layer]) {
    if (b.Pads[0]) {
      BoundingBox(b.Pads[0], nullptr, nullptr, nullptr, x0, y0, x1, y1, false);
      BoundingBox(b.Pads[layer], nullptr, nullptr, nullptr, ax, ay, bx, by, false);
      ShiftPads(b.Pads[layer], x0 - ax, y0 - ay);
      ShiftTracks(b.Tracks[layer], x0 - ax, y0 - ay);
    }
  } else if (b.Tracks[layer] && b.Tracks[0]) {
    AlignByTracks(b, layer);
  }
  return 1;
}

void CompactLayers(Board& b) {
  int l = 0;
  while (l < kCircuitLayers - 1) {
    if (!HasCopper(b, l) && HasCopper(b, l + 1)) {
      b.Pads[l] = std::exchange(b.Pads[l + 1], nullptr);
      b.Tracks[l] = std::exchange(b.Tracks[l + 1], nullptr);
      // Whichever pair moves, the name and the apertures 1..99 travel from layer 1 to layer 0.
      b.LayerName[0] = b.LayerName[1];
      b.LayerName[1].clear();
      for (int i = 1; i < kApertures; ++i) {
        b.PadShape[0][i] = b.PadShape[1][i];
        b.PadSizeX[0][i] = b.PadSizeX[1][i];
        b.PadSizeY[0][i] = b.PadSizeY[1][i];
        b.TrackWidth[0][i] = b.TrackWidth[1][i];
      }
      l = 0;
    } else {
      ++l;
    }
  }
}

void SetCardFromContent(Board& b, float thickness) {
  float xmin, ymin, xmax, ymax;
  ContentBox(b, xmin, ymin, xmax, ymax);
  if (xmin <= xmax) {
    if (xmin < 2.54) {
      float shift = static_cast<float>(2.54 - xmin);
      ShiftLists(b, shift, 0, false, false);
      b.OriginX = shift;
      xmax = xmax + shift;
      xmin = xmin + shift;
    }
    if (ymin < 2.54) {
      float shift = static_cast<float>(2.54 - ymin);
      ShiftLists(b, 0, shift, false, false);
      b.OriginY = shift;
      ymax = ymax + shift;
      ymin = ymin + shift;
    }
    b.CardWidth = xmax + xmin;
    b.CardHeight = ymax + ymin;
  }
  b.CardThickness = thickness;
}

}  // namespace isolith
