#include "toolpath/Hatches.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/ContourPhasesIndexed.h"
#include "toolpath/ContourPredicates.h"
#include "toolpath/Contours.h"
#include "toolpath/HatchPhasesIndexed.h"
#include "toolpath/HatchPredicates.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

using hatch::SegmentBox;

// The candidate search of the keep-out edges: every edge whose box, widened by `margin`,
// overlaps `query`, in polygon order and then vertex order; the last vertex of a polygon is not
// joined to its first. `visit(a, b, edgeBox)` returns false to end the walk. The indexed phases
// hand over the same edges in the same order.
template <typename Visit>
void ForEachCandidateEdge(const TPolygon* keepOut, const IndexBox& query, float margin,
                          Visit visit) {
  for (const TPolygon* p = keepOut; p; p = p->next)
    for (const TXY* a = p->first; a && a->next; a = a->next) {
      const TXY* b = a->next;
      const IndexBox edge = SegmentBox(a->x, a->y, b->x, b->y, margin, margin);
      if (contour::Overlap(query, edge) && !visit(*a, *b, edge)) return;
    }
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
    const IndexBox query = hatch::PieceQuery(*s);
    IndexBox range = query;
    ForEachCandidateEdge(keepOut, query, kNearTolerance,
                         [&](const TXY& a, const TXY& b, const IndexBox& edge) {
                           hatch::CrossEdge(s, range, a, b, edge);
                           return true;
                         });
  }
}

TSeg* ClassificationPhase(TSeg* list, const TPolygon* keepOut, float pitch, float cardWidth) {
  TSeg** link = &list;
  while (*link) {
    TSeg* s = *link;
    if (hatch::PieceRemoved(
            *s, [&](float x, float y) { return ListContainsPoint(keepOut, x, y) >= 0; })) {
      *link = s->next;
      delete s;
    } else {
      hatch::PullBack(*s, pitch, cardWidth);
      link = &s->next;
    }
  }
  return list;
}

void LinkPhase(TSeg* list, const TPolygon* keepOut, float pitch) {
  for (TSeg* s = list; s; s = s->next) {
    TSeg* t = nullptr;
    float bestDistance = hatch::LinkLimit(pitch);
    for (TSeg* later = s->next; later; later = later->next)
      hatch::ConsiderLinkTarget(*s, later, pitch, t, bestDistance);
    if (!t) continue;
    bool crosses = false;
    ForEachCandidateEdge(keepOut, SegmentBox(t->x1, t->y1, s->x2, s->y2, 0, 0), 0,
                         [&](const TXY& a, const TXY& b, const IndexBox&) {
                           crosses = hatch::LinkCrossesEdge(t->x1, t->y1, s->x2, s->y2, a, b);
                           return !crosses;
                         });
    if (crosses) continue;
    // The walk steps over the new link.
    s = InsertBehind(s, s->x2, s->y2, t->x1, t->y1);
  }
}

void CalculateHatches(Board& b, int layer, const HatchSettings& s, const HatchSession& session,
                      Platform* platform, HatchStats* stats) {
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
  if (s.indexed) {
    CrossingPhaseIndexed(list, keepOut, stats);
  } else {
    CrossingPhase(list, keepOut);
  }
  if (!status("Removing bad segments...")) return stopped();
  list = s.indexed ? ClassificationPhaseIndexed(list, keepOut, s.pitch, b.CardWidth, stats)
                   : ClassificationPhase(list, keepOut, s.pitch, b.CardWidth);
  if (s.link) {
    if (!status("Calculating hatch links...")) return stopped();
    if (s.indexed) {
      LinkPhaseIndexed(list, keepOut, s.pitch, stats);
    } else {
      LinkPhase(list, keepOut, s.pitch);
    }
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
