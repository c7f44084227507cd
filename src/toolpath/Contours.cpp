#include "toolpath/Contours.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"
#include "core/platform/Platform.h"
#include "toolpath/ContourDraft.h"
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

Box SegmentBox(const TSeg& s, float margin) {
  Box b{s.x1, s.y1, s.x2, s.y2};
  OrderBox(b.x1, b.y1, b.x2, b.y2);
  b.x1 = static_cast<float>(double(b.x1) - margin);
  b.y1 = static_cast<float>(double(b.y1) - margin);
  b.x2 = static_cast<float>(double(b.x2) + margin);
  b.y2 = static_cast<float>(double(b.y2) + margin);
  return b;
}

bool Overlap(const Box& a, const Box& b) {
  return BoxesOverlap(a.x1, a.y1, a.x2, a.y2, b.x1, b.y1, b.x2, b.y2);
}

// Splits `s` at (x, y) unless the point is near one of its ends: the far piece goes directly
// behind it. True when it was split.
bool SplitAt(TSeg* s, float x, float y) {
  if (NearPoints(x, y, s->x1, s->y1, kTol) || NearPoints(x, y, s->x2, s->y2, kTol)) return false;
  InsertBehind(s, x, y, s->x2, s->y2);
  s->x2 = x;
  s->y2 = y;
  return true;
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

bool SegmentRejected(const Board& b, int layer, const TSeg& s, float padOffset, float trackOffset,
                     bool fast) {
  const float mx = static_cast<float>((double(s.x1) + s.x2) * 0.5);
  const float my = static_cast<float>((double(s.y1) + s.y2) * 0.5);
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
    Box boxA = SegmentBox(*a, kTol);
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
      bool same = (NearPoints(a->x1, a->y1, b->x1, b->y1, kTol) &&
                   NearPoints(a->x2, a->y2, b->x2, b->y2, kTol)) ||
                  (NearPoints(a->x1, a->y1, b->x2, b->y2, kTol) &&
                   NearPoints(a->x2, a->y2, b->x1, b->y1, kTol));
      if (same) {
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
        TXY* start = poly->first;
        if (NearPoints(s->x1, s->y1, last->x, last->y, kTol)) {
          AppendPoint(*poly, last, s->x2, s->y2);
        } else if (NearPoints(s->x2, s->y2, last->x, last->y, kTol)) {
          AppendPoint(*poly, last, s->x1, s->y1);
        } else if (NearPoints(s->x2, s->y2, start->x, start->y, kTol)) {
          poly->first = NewPoint(s->x1, s->y1, start);
        } else if (NearPoints(s->x1, s->y1, start->x, start->y, kTol)) {
          poly->first = NewPoint(s->x2, s->y2, start);
        } else {
          continue;
        }
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

void CalculateContours(Board& b, int layer, ContourSettings& s, Platform* platform) {
  if (s.passes < 1) s.passes = 1;
  if (s.padPasses < 0) s.padPasses = 0;
  if (s.distance < 0.01 || !IsCircuitLayer(layer) || (!b.Pads[layer] && !b.Tracks[layer])) return;
  FreePolygons(std::exchange(b.Contours[layer], nullptr));
  FreePolygons(std::exchange(b.Hatches[layer], nullptr));
  auto status = [&](const char* text) {
    if (platform) platform->SetStatus(text);
  };

  TPolygon* all = nullptr;
  TPolygon* allTail = nullptr;
  const int total = s.passes + s.padPasses;
  for (int p = 0; p < total; ++p) {
    float padOffset, trackOffset;
    PassOffsets(s, p, padOffset, trackOffset);
    status("Building draft contours...");
    TSeg* list = BuildDraftContours(b, layer, padOffset, trackOffset, s.fast);
    status("Calculating intersections...");
    IntersectionPhase(list);
    status("Removing bad segments...");
    list = RemovalPhase(b, layer, list, padOffset, trackOffset, s.fast);
    status("Final build-up...");
    list = RemoveDuplicateSegments(list);
    TPolygon* pass = RemoveEmptyContours(ChainSegments(list));
    pass = BridgeChains(pass, trackOffset);
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
