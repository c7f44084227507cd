#include "toolpath/Hatches.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/ContourPhasesIndexed.h"
#include "toolpath/Contours.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

constexpr float kTol = kNearTolerance;

struct Box {
  float x1, y1, x2, y2;
};

// The ordered box of a segment, widened by `mx` on the X axis and `my` on the Y axis.
Box SegmentBox(float x1, float y1, float x2, float y2, float mx, float my) {
  Box b{x1, y1, x2, y2};
  OrderBox(b.x1, b.y1, b.x2, b.y2);
  b.x1 = static_cast<float>(double(b.x1) - mx);
  b.y1 = static_cast<float>(double(b.y1) - my);
  b.x2 = static_cast<float>(double(b.x2) + mx);
  b.y2 = static_cast<float>(double(b.y2) + my);
  return b;
}

bool Overlap(const Box& a, const Box& b) {
  return BoxesOverlap(a.x1, a.y1, a.x2, a.y2, b.x1, b.y1, b.x2, b.y2);
}

// The candidate search of the keep-out edges: every edge whose box, widened by `margin`,
// overlaps `query`, in polygon order and then vertex order; the last vertex of a polygon is not
// joined to its first. `visit(a, b, edgeBox)` returns false to end the walk. A spatial index
// may replace this walk as long as it hands over the same edges in the same order.
template <typename Visit>
void ForEachCandidateEdge(const TPolygon* keepOut, const Box& query, float margin, Visit visit) {
  for (const TPolygon* p = keepOut; p; p = p->next)
    for (const TXY* a = p->first; a && a->next; a = a->next) {
      const TXY* b = a->next;
      const Box edge = SegmentBox(a->x, a->y, b->x, b->y, margin, margin);
      if (Overlap(query, edge) && !visit(*a, *b, edge)) return;
    }
}

// Splits a scan piece at (x, y) unless the point is near one of its ends: the far piece goes
// directly behind it. True when it was split.
bool SplitAt(TSeg* s, float x, float y) {
  if (NearPoints(x, y, s->x1, s->y1, kTol) || NearPoints(x, y, s->x2, s->y2, kTol)) return false;
  InsertBehind(s, x, y, s->x2, s->y2);
  s->x2 = x;
  s->y2 = y;
  return true;
}

// The test of one piece: too short, or its middle, or else its point at three quarters, inside
// a keep-out shape or on its edge. A piece whose first quarter alone lies in a shape survives.
bool PieceRemoved(const TSeg& s, const TPolygon* keepOut) {
  if (std::fabs(double(s.x2) - s.x1) <= 0.2) return true;
  float m = static_cast<float>((double(s.x1) + s.x2) * 0.5);
  if (ListContainsPoint(keepOut, m, s.y1) >= 0) return true;
  m = static_cast<float>((double(m) + s.x2) * 0.5);
  return ListContainsPoint(keepOut, m, s.y1) >= 0;
}

// Pulls each end of a piece back by half a pitch, so that the cutter stays as far from the
// shape that cut the line as the lines stay from each other. The card's edges are not a shape:
// an end at or beyond them stays where it is, whatever the zone.
void PullBack(TSeg& s, float pitch, float cardWidth) {
  const double half = double(pitch) / 2;
  const bool rightwards = s.x1 < s.x2;
  float& left = rightwards ? s.x1 : s.x2;
  float& right = rightwards ? s.x2 : s.x1;
  if (left > 0) left = static_cast<float>(left + half);
  if (right < cardWidth) right = static_cast<float>(right - half);
}

// The candidate search of a link: among the later pieces whose first end lies one pitch above
// the piece's end, the one whose first end is nearest in X, strictly under 2.01 pitches; the
// earlier wins a tie. Null when there is none.
TSeg* FindLinkTarget(const TSeg& s, TSeg* later, float pitch) {
  TSeg* best = nullptr;
  float bestDistance = static_cast<float>(2.01 * pitch);
  for (TSeg* t = later; t; t = t->next) {
    if (!(std::fabs(double(t->y1) - s.y2 - pitch) < 0.01)) continue;
    const double d = std::fabs(double(t->x1) - s.x2);
    if (d < bestDistance) {
      best = t;
      bestDistance = static_cast<float>(d);
    }
  }
  return best;
}

// The test of a link: whether the step from (x1, y1) to (x2, y2) crosses a keep-out edge.
bool LinkCrossesKeepOut(float x1, float y1, float x2, float y2, const TPolygon* keepOut) {
  bool crosses = false;
  ForEachCandidateEdge(
      keepOut, SegmentBox(x1, y1, x2, y2, 0, 0), 0, [&](const TXY& a, const TXY& b, const Box&) {
        float x, y;
        crosses = IntersectSegments(x1, y1, x2, y2, a.x, a.y, b.x, b.y, x, y, kTol) == kOnBoth;
        return !crosses;
      });
  return crosses;
}

// The keep-out polygon of one draft (consumed): its first start, then every end.
TPolygon* PolygonOfDraft(TSeg* draft) {
  TPolygon* p = nullptr;
  if (CountOf(draft) >= 3) {
    p = new TPolygon;
    TXY* tail = nullptr;
    AppendPoint(*p, tail, draft->x1, draft->y1);
    for (const TSeg* s = draft; s; s = s->next) AppendPoint(*p, tail, s->x2, s->y2);
  }
  FreeChain(draft);
  return p;
}

HatchRect Ordered(HatchRect r) {
  OrderBox(r.xmin, r.ymin, r.xmax, r.ymax);
  return r;
}

bool ValidTool(int index) {
  return index >= 0 && index < kToolSlots;
}

}  // namespace

float HatchPitch(const Settings& settings, ToolTable& tools) {
  if (!ValidTool(settings.HatchingTool)) return 0;
  const float width = ToolCutWidth(tools[settings.HatchingTool], settings.HatchingDepth);
  return static_cast<float>(double(width) / 2 + settings.HatchingMargin);
}

float HatchKeepOutOffset(const Settings& settings, ToolTable& tools) {
  if (!ValidTool(settings.HatchingTool)) return 0.25f;
  const float width = ToolCutWidth(tools[settings.HatchingTool], settings.MillingDepth);
  return static_cast<float>(double(width) + settings.MillingMargin);
}

HatchSettings HatchSettingsFrom(const Settings& settings, ToolTable& tools) {
  HatchSettings s;
  s.pitch = HatchPitch(settings, tools);
  s.keepOut = HatchKeepOutOffset(settings, tools);
  s.link = settings.HatchingLink;
  s.fast = settings.FastCalcul;
  return s;
}

HatchRect ZoneRectangle(const Board& b, int zone) {
  const HatchRect card{0, 0, b.CardWidth, b.CardHeight};
  if (zone != kHatchCardContour) return card;
  HatchRect r;
  BoundingBox(nullptr, nullptr, nullptr, b.Cutouts, r.xmin, r.ymin, r.xmax, r.ymax, false);
  if (!(double(r.xmax) - r.xmin > 0) || !(double(r.ymax) - r.ymin > 0)) return card;
  return r;
}

TPolygon* BuildKeepOut(const Board& b, int layer, float offset, bool fast) {
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  auto add = [&](TSeg* draft) {
    if (TPolygon* p = PolygonOfDraft(draft)) AppendTo(head, tail, p);
  };
  for (const TPad* p = b.Pads[layer]; p; p = p->next)
    if (!IsExcluded(p->flags)) add(BuildPadDraft(b, layer, *p, offset));
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next)
    if (!IsExcluded(t->flags)) add(BuildTrackDraft(b, layer, *t, offset, fast));
  return head;
}

TSeg* BuildScanLines(const HatchRect& zone, float pitch) {
  if (!(pitch > 0)) return nullptr;
  const HatchRect z = Ordered(zone);
  SegmentBuilder out;
  bool rightwards = true;
  for (float y = z.ymin; y <= double(z.ymax) + 0.001; y += pitch) {
    if (rightwards) {
      out.Add(z.xmin, y, z.xmax, y);
    } else {
      out.Add(z.xmax, y, z.xmin, y);
    }
    rightwards = !rightwards;
    if (y + pitch == y) break;  // beyond the float's reach: the line would never move up
  }
  return out.Release();
}

void CrossingPhase(TSeg* list, const TPolygon* keepOut) {
  for (TSeg* s = list; s; s = s->next) {
    // The piece's X range with a margin, until a split takes it again from the bare ends. The
    // candidates are asked for with the first range, which holds every later one.
    Box range = SegmentBox(s->x1, s->y1, s->x2, s->y2, kTol, 0);
    ForEachCandidateEdge(keepOut, range, kTol, [&](const TXY& a, const TXY& b, const Box& edge) {
      if (!Overlap(range, edge)) return true;
      float x, y;
      if (IntersectSegments(s->x1, s->y1, s->x2, s->y2, a.x, a.y, b.x, b.y, x, y, kTol) != kOnBoth)
        return true;
      if (SplitAt(s, x, y)) range = SegmentBox(s->x1, s->y1, s->x2, s->y2, 0, 0);
      return true;
    });
  }
}

TSeg* ClassificationPhase(TSeg* list, const TPolygon* keepOut, float pitch, float cardWidth) {
  TSeg** link = &list;
  while (*link) {
    TSeg* s = *link;
    if (PieceRemoved(*s, keepOut)) {
      *link = s->next;
      delete s;
    } else {
      PullBack(*s, pitch, cardWidth);
      link = &s->next;
    }
  }
  return list;
}

void LinkPhase(TSeg* list, const TPolygon* keepOut, float pitch) {
  for (TSeg* s = list; s; s = s->next) {
    const TSeg* t = FindLinkTarget(*s, s->next, pitch);
    if (!t || LinkCrossesKeepOut(t->x1, t->y1, s->x2, s->y2, keepOut)) continue;
    // The walk steps over the new link.
    s = InsertBehind(s, s->x2, s->y2, t->x1, t->y1);
  }
}

void CalculateHatches(Board& b, int layer, const HatchSettings& s, const HatchSession& session,
                      Platform* platform) {
  const HatchRect zone = Ordered(session.rectangle);
  if (!IsCircuitLayer(layer) || s.pitch < 0.01 || !b.Contours[layer]) return;
  if (session.zone != kHatchSelectedZone) FreePolygons(std::exchange(b.Hatches[layer], nullptr));
  // Each phase is announced and the window given a turn; a stop asked for leaves the layer's
  // hatches as they stood before this zone.
  auto status = [platform](const char* text) { return AnnouncePhase(platform, text); };

  TSeg* list = nullptr;
  TPolygon* keepOut = nullptr;
  auto stopped = [&] {
    FreeChain(list);
    FreePolygons(keepOut);
  };
  if (!status("Building draft hatches...")) return stopped();
  list = BuildScanLines(zone, s.pitch);
  if (!status("Calculating intersections...")) return stopped();
  keepOut = BuildKeepOut(b, layer, s.keepOut, s.fast);
  CrossingPhase(list, keepOut);
  if (!status("Removing bad segments...")) return stopped();
  list = ClassificationPhase(list, keepOut, s.pitch, b.CardWidth);
  if (s.link) {
    if (!status("Calculating hatch links...")) return stopped();
    LinkPhase(list, keepOut, s.pitch);
  }
  FreePolygons(std::exchange(keepOut, nullptr));
  if (!status("Final build-up...")) return stopped();
  if (TPolygon* paths = ChainSegmentsIndexed(list)) {
    TPolygon* tail = LastPolygon(b.Hatches[layer]);
    AppendTo(b.Hatches[layer], tail, paths);
  }
}

void CalculateHatchesOnLayers(Board& b, const HatchSettings& s, const HatchSession& session,
                              Platform* platform) {
  const int active = b.ActiveLayer;
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!(session.allLayers || layer == active) || !b.Contours[layer]) continue;
    if (platform && platform->StopRequested()) break;
    b.ActiveLayer = layer;
    if (platform) platform->Repaint(RepaintLevel::View);
    CalculateHatches(b, layer, s, session, platform);
  }
  b.ActiveLayer = active;
  if (platform) platform->Repaint(RepaintLevel::View);
}

void HatchSelectedZone(Board& b, HatchSession& session, const HatchSettings& s,
                       const HatchRect& dragged, Platform* platform) {
  session.zone = kHatchSelectedZone;
  session.rectangle = dragged;
  CalculateHatchesOnLayers(b, s, session, platform);
}

void DeleteHatches(Board& b, bool allLayers) {
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    if (allLayers || layer == b.ActiveLayer) FreePolygons(std::exchange(b.Hatches[layer], nullptr));
}

}  // namespace isolith
