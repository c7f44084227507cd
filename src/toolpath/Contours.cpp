#include "toolpath/Contours.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"
#include "core/platform/Platform.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/ContourPhasesIndexed.h"
#include "toolpath/ContourPredicates.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

constexpr float kTol = kNearTolerance;

using contour::Overlap;
using contour::PadRejects;
using contour::SegmentBox;
using contour::SplitAt;
using contour::TrackRejects;

bool SegmentRejected(const Board& b, int layer, const TSeg& s, float padOffset, float trackOffset,
                     bool fast) {
  float mx, my;
  contour::Midpoint(s, mx, my);
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next)
    if (!IsExcluded(t->flags) && TrackRejects(b, layer, *t, s, mx, my, trackOffset, fast))
      return true;
  for (const TPad* p = b.Pads[layer]; p; p = p->next)
    if (!IsExcluded(p->flags) && PadRejects(b, layer, *p, s, mx, my, padOffset)) return true;
  return false;
}

// --- Chaining helpers ----------------------------------------------------------------------

TXY* NewPoint(float x, float y, TXY* next = nullptr) {
  return new TXY{x, y, 0, next};
}

bool NearClosed(const TPolygon& p, float tol) {
  const TXY* last = LastPoint(p);
  return p.first && last && NearPoints(p.first->x, p.first->y, last->x, last->y, tol);
}

}  // namespace

void PassOffsets(const ContourSettings& s, int p, float& padOffset, float& trackOffset) {
  padOffset = static_cast<float>((0.67 * p + 1.0) * s.distance);
  trackOffset =
      p < s.passes ? padOffset : static_cast<float>((0.67 * (s.passes - 1) + 1.0) * s.distance);
}

void IntersectionPhase(TSeg* list) {
  for (TSeg* a = list; a; a = a->next) {
    IndexBox boxA = SegmentBox(*a, kTol);
    for (TSeg* b = a->next; b; b = b->next) {
      if (!Overlap(boxA, SegmentBox(*b, kTol))) continue;
      float x, y;
      if (IntersectSegments(a->x1, a->y1, a->x2, a->y2, b->x1, b->y1, b->x2, b->y2, x, y, kTol) !=
          kOnBoth)
        continue;
      // After a split, A's box is taken again from its ends, without the margin.
      if (SplitAt(a, x, y)) boxA = SegmentBox(*a, 0);
      SplitAt(b, x, y);
    }
  }
}

TSeg* RemovalPhase(const Board& b, int layer, TSeg* list, float padOffset, float trackOffset,
                   bool fast) {
  TSeg** link = &list;
  while (*link) {
    TSeg* s = *link;
    if (SegmentRejected(b, layer, *s, padOffset, trackOffset, fast)) {
      *link = s->next;
      delete s;
    } else {
      link = &s->next;
    }
  }
  return list;
}

TSeg* RemoveDuplicateSegments(TSeg* list) {
  for (TSeg* a = list; a; a = a->next) {
    TSeg* prev = a;
    while (TSeg* b = prev->next) {
      if (contour::SameEnds(*a, *b)) {
        prev->next = b->next;
        delete b;
      } else {
        prev = b;
      }
    }
  }
  return list;
}

TPolygon* ChainSegments(TSeg* list) {
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  while (list) {
    TSeg* first = list;
    list = first->next;
    auto* poly = new TPolygon;
    AppendTo(head, tail, poly);
    TXY* last = nullptr;
    AppendPoint(*poly, last, first->x1, first->y1);
    AppendPoint(*poly, last, first->x2, first->y2);
    delete first;
    bool found = true;
    while (found) {
      found = false;
      for (TSeg** link = &list; *link; link = &(*link)->next) {
        TSeg* s = *link;
        const int fit = contour::ChainFit(*s, *poly->first, *last);
        if (fit == 0) continue;
        contour::ExtendChain(*poly, last, *s, fit);
        *link = s->next;
        delete s;
        found = true;
        break;
      }
    }
  }
  return head;
}

TPolygon* RemoveEmptyContours(TPolygon* list) {
  TPolygon** link = &list;
  while (*link) {
    TPolygon* p = *link;
    if (!p->first || !p->first->next) {
      *link = p->next;
      delete p;
    } else {
      link = &p->next;
    }
  }
  return list;
}

TPolygon* BridgeChains(TPolygon* list, float trackOffset) {
  const float t = trackOffset;
  const float reach = static_cast<float>(0.5 * t);
  bool joined = true;
  while (joined) {
    joined = false;
    for (TPolygon* a = list; a && !joined; a = a->next) {
      if (NearClosed(*a, t)) continue;
      for (TPolygon* b = list; b; b = b->next) {
        if (b == a || NearClosed(*b, t)) continue;
        TXY* last = LastPoint(*a);
        if (!NearPoints(last->x, last->y, b->first->x, b->first->y, reach)) continue;
        last->next = std::exchange(b->first, nullptr);
        list = RemoveEmptyContours(list);
        joined = true;
        break;
      }
    }
  }
  return list;
}

void MoveStartToSharpestCorner(TPolygon* list) {
  for (TPolygon* p = list; p; p = p->next) {
    TXY* first = p->first;
    TXY* last = LastPoint(*p);
    if (!first || !first->next || !NearPoints(first->x, first->y, last->x, last->y, kTol)) continue;
    TXY* corner = nullptr;
    TXY* cornerPrev = nullptr;
    float greatest = 0;
    TXY* prev = first;
    for (TXY* v = first->next; v && v->next; prev = v, v = v->next) {
      float turn = AbsF(TurnAngle(prev->x, prev->y, v->x, v->y, v->next->x, v->next->y));
      if (turn > greatest) {
        greatest = turn;
        corner = v;
        cornerPrev = prev;
      }
    }
    // A corner on the first inner vertex stays where it is: its predecessor is the vertex that
    // the move frees.
    if (!corner || corner == first->next) continue;
    TXY* beforeLast = PreviousPoint(*p, last);
    TXY* second = first->next;
    const double joint = double(AbsF(TurnAngle(beforeLast->x, beforeLast->y, last->x, last->y,
                                               second->x, second->y))) +
                         OneDegree;
    if (!(joint < greatest)) continue;
    // The corner starts the path, a copy of it ends it, and the old first vertex goes.
    cornerPrev->next = NewPoint(corner->x, corner->y);
    last->next = second;
    p->first = corner;
    delete first;
  }
}

TPolygon* EngravedTrackPaths(const Board& b, int layer) {
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  TXY* lastPoint = nullptr;
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
    if (!TestFlags(*t, kTrackEngraved) || IsExcluded(t->flags)) continue;
    if (!tail || Distance(lastPoint->x, lastPoint->y, t->x1, t->y1) >= 0.01) {
      auto* poly = new TPolygon;
      AppendTo(head, tail, poly);
      lastPoint = nullptr;
      AppendPoint(*poly, lastPoint, t->x1, t->y1);
    }
    AppendPoint(*tail, lastPoint, t->x2, t->y2);
  }
  return head;
}

void CalculateContours(Board& b, int layer, ContourSettings& s, Platform* platform,
                       ContourStats* stats) {
  if (s.passes < 1) s.passes = 1;
  if (s.padPasses < 0) s.padPasses = 0;
  if (s.distance < 0.01 || !IsCircuitLayer(layer) || (!b.Pads[layer] && !b.Tracks[layer])) return;
  FreePolygons(std::exchange(b.Contours[layer], nullptr));
  FreePolygons(std::exchange(b.Hatches[layer], nullptr));
  // Each phase is announced, the window given a turn, and a stop asked for ends the work with
  // no contours at all: a half-built set would mill as if it were whole.
  auto status = [platform](const char* text) { return AnnouncePhase(platform, text); };

  TPolygon* all = nullptr;
  TPolygon* allTail = nullptr;
  const int total = s.passes + s.padPasses;
  for (int p = 0; p < total; ++p) {
    float padOffset, trackOffset;
    PassOffsets(s, p, padOffset, trackOffset);
    TSeg* list = nullptr;
    auto stopped = [&] {
      FreeChain(list);
      FreePolygons(all);
    };
    if (!status("Building draft contours...")) return stopped();
    list = BuildDraftContours(b, layer, padOffset, trackOffset, s.fast);
    if (stats) stats->draftSegments += CountOf(list);
    if (!status("Calculating intersections...")) return stopped();
    if (s.indexed)
      IntersectionPhaseIndexed(list, stats);
    else
      IntersectionPhase(list);
    if (!status("Removing bad segments...")) return stopped();
    list = s.indexed ? RemovalPhaseIndexed(b, layer, list, padOffset, trackOffset, s.fast, stats,
                                           s.threads)
                     : RemovalPhase(b, layer, list, padOffset, trackOffset, s.fast);
    if (!status("Final build-up...")) return stopped();
    list = s.indexed ? RemoveDuplicateSegmentsIndexed(list) : RemoveDuplicateSegments(list);
    TPolygon* pass =
        RemoveEmptyContours(s.indexed ? ChainSegmentsIndexed(list) : ChainSegments(list));
    pass = s.indexed ? BridgeChainsIndexed(pass, trackOffset) : BridgeChains(pass, trackOffset);
    MoveStartToSharpestCorner(pass);
    for (TPolygon* q = all; q; q = q->next) ClearFlags(*q, kPolygonMark);
    for (TPolygon* q = pass; q; q = q->next) SetFlags(*q, kPolygonMark);
    if (pass) {
      AppendTo(all, allTail, pass);
      allTail = LastPolygon(pass);
    }
  }
  if (TPolygon* engraved = EngravedTrackPaths(b, layer)) AppendTo(all, allTail, engraved);
  b.Contours[layer] = all;
}

}  // namespace isolith
