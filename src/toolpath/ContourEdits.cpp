#include "toolpath/ContourEdits.h"

#include <algorithm>
#include <cmath>

#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

// Ends of a path that count as one point for the join.
constexpr float kSameEnd = 0.01f;
// Ends within this on both axes make a path closed for the picks.
constexpr float kClosedEnds = 0.1f;

bool SegmentBoxHolds(const TXY& a, const TXY& b, float x, float y, float radius) {
  return x >= std::min(a.x, b.x) - radius && x <= std::max(a.x, b.x) + radius &&
         y >= std::min(a.y, b.y) - radius && y <= std::max(a.y, b.y) + radius;
}

// Open paths whose ends are not near within the join's tolerance take part in the join.
bool OpenFor(const TPolygon& p, float tolerance) {
  const TXY* last = LastPoint(p);
  return p.first && !NearPoints(p.first->x, p.first->y, last->x, last->y, tolerance);
}

TPolygon* OwnerOfEnd(TPolygon* list, const TXY* end, bool& isFirst) {
  for (TPolygon* p = list; p; p = p->next) {
    if (!p->first) continue;
    if (p->first == end) {
      isFirst = true;
      return p;
    }
    if (LastPoint(*p) == end) {
      isFirst = false;
      return p;
    }
  }
  return nullptr;
}

void Unlink(TPolygon*& list, TPolygon* polygon) {
  TPolygon** link = &list;
  while (*link && *link != polygon) link = &(*link)->next;
  if (*link) *link = polygon->next;
  polygon->next = nullptr;
}

}  // namespace

float PickRadius(float pixels, float pixelsPerMm) {
  return pixelsPerMm > 0 ? pixels / pixelsPerMm : 0;
}

bool IsOpenPath(const TPolygon& polygon) {
  if (!polygon.first) return false;
  const TXY* last = LastPoint(polygon);
  return std::fabs(polygon.first->x - last->x) > kClosedEnds ||
         std::fabs(polygon.first->y - last->y) > kClosedEnds;
}

TXY* PickContourSegment(TPolygon* list, float x, float y, float radius, TPolygon** owner) {
  TXY* best = nullptr;
  TPolygon* bestOwner = nullptr;
  double bestDistance = radius;
  for (TPolygon* p = list; p; p = p->next) {
    for (TXY* a = p->first; a && a->next; a = a->next) {
      const TXY& b = *a->next;
      if (!SegmentBoxHolds(*a, b, x, y, radius)) continue;
      const double d = PointLineDistance(x, y, a->x, a->y, b.x, b.y);
      if (d < bestDistance) {
        bestDistance = d;
        best = a;
        bestOwner = p;
      }
    }
  }
  if (owner) *owner = bestOwner;
  return best;
}

TPolygon* PickContour(TPolygon* list, float x, float y, float radius) {
  TPolygon* owner = nullptr;
  PickContourSegment(list, x, y, radius, &owner);
  return owner;
}

TXY* PickOpenEnd(TPolygon* list, float x, float y, float radius) {
  TXY* best = nullptr;
  double bestDistance = radius;
  for (TPolygon* p = list; p; p = p->next) {
    if (!IsOpenPath(*p)) continue;
    for (TXY* end : {p->first, LastPoint(*p)}) {
      const double d = Distance(x, y, end->x, end->y);
      if (d < bestDistance) {
        bestDistance = d;
        best = end;
      }
    }
  }
  return best;
}

bool DeleteContour(TPolygon*& list, TPolygon* polygon) {
  TPolygon** link = &list;
  while (*link && *link != polygon) link = &(*link)->next;
  if (!polygon || !*link) return false;
  *link = polygon->next;
  delete polygon;
  return true;
}

bool DeleteContourSegment(TPolygon*& list, TXY* start) {
  if (!start || !start->next) return false;
  TPolygon* owner = nullptr;
  for (TPolygon* p = list; p && !owner; p = p->next)
    for (TXY* v = p->first; v; v = v->next)
      if (v == start) {
        owner = p;
        break;
      }
  if (!owner) return false;
  if (owner->first == start) {
    // The path starts one vertex later.
    owner->first = start->next;
    delete start;
    if (CountPoints(*owner) < 2) DeleteContour(list, owner);
  } else if (!start->next->next) {
    // The last segment: its last vertex goes.
    delete start->next;
    start->next = nullptr;
  } else {
    // The path is cut: S ends it, the rest becomes a path of its own right behind it.
    auto* rest = new TPolygon;
    rest->first = start->next;
    start->next = nullptr;
    rest->next = owner->next;
    owner->next = rest;
  }
  return true;
}

TPolygon* AddFreeSegment(TPolygon*& list, float x1, float y1, float x2, float y2) {
  auto* p = new TPolygon;
  AppendPoint(*p, x1, y1);
  AppendPoint(*p, x2, y2);
  TPolygon* tail = nullptr;
  AppendTo(list, tail, p);
  return p;
}

TPolygon* ExtendPathAtEnd(TPolygon* list, TXY* end, float x, float y) {
  if (!end) return nullptr;
  bool isFirst = false;
  TPolygon* p = OwnerOfEnd(list, end, isFirst);
  if (!p) return nullptr;
  if (isFirst) {
    p->first = new TXY{x, y, 0, p->first};
  } else {
    end->next = new TXY{x, y, 0, nullptr};
  }
  return p;
}

bool JoinContourEnds(TPolygon*& list, float tolerance,
                     const std::function<void(TPolygon&)>& joined) {
  bool any = false;
  TPolygon* a = list;
  while (a) {
    if (!OpenFor(*a, tolerance)) {
      a = a->next;
      continue;
    }
    TPolygon* best = nullptr;
    int bestPair = -1;
    float bestDistance = tolerance;
    TXY* aEnds[2] = {a->first, LastPoint(*a)};
    for (TPolygon* b = list; b; b = b->next) {
      if (b == a || !OpenFor(*b, tolerance)) continue;
      TXY* bEnds[2] = {b->first, LastPoint(*b)};
      for (int pair = 0; pair < 4; ++pair) {
        const TXY* ea = aEnds[pair / 2];
        const TXY* eb = bEnds[pair % 2];
        const float d = Distance(ea->x, ea->y, eb->x, eb->y);
        if (d < bestDistance) {
          bestDistance = d;
          best = b;
          bestPair = pair;
        }
      }
    }
    if (!best) {
      a = a->next;
      continue;
    }
    // A ends where B starts.
    if (bestPair / 2 == 0) ReversePolygon(*a);
    if (bestPair % 2 == 1) ReversePolygon(*best);
    TXY* aLast = LastPoint(*a);
    TXY* bFirst = best->first;
    if (NearPoints(aLast->x, aLast->y, bFirst->x, bFirst->y, kSameEnd)) {
      aLast->next = bFirst->next;
      bFirst->next = nullptr;
      // B's first vertex goes with B.
    } else {
      aLast->next = bFirst;
      best->first = nullptr;
    }
    Unlink(list, best);
    delete best;
    any = true;
    if (joined) joined(*a);
    a = list;
  }
  return any;
}

}  // namespace isolith
