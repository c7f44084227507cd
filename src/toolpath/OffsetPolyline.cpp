#include "toolpath/OffsetPolyline.h"

#include <cmath>
#include <vector>

#include "toolpath/geometry/Angles.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

inline double W(float v) {
  return static_cast<double>(v);
}
inline float F(double v) {
  return static_cast<float>(v);
}

// Vertex marks of the offset: 0x80 a cut (a self-crossing), 0x01 an end made by a cut.
constexpr uint8_t kCutMark = 0x80;
constexpr uint8_t kCutEnd = 0x01;

// A bad input cannot make the result grow without bound: an arc has at most this many points,
// and the crossing search stops splitting after this many new vertices.
constexpr int kMaxArcPoints = 4096;
constexpr long kMaxSplits = 200000;

struct Pt {
  float x = 0, y = 0;
};

using Chain = std::vector<Pt>;

bool Near(float x1, float y1, float x2, float y2) {
  return NearPoints(x1, y1, x2, y2, kFineTolerance);
}

// Builder of the result chain of one offset.
class ChainBuilder {
 public:
  explicit ChainBuilder(TPolygon& polygon) : polygon_(polygon) {}
  void Add(float x, float y) { AppendPoint(polygon_, tail_, x, y); }
  void Add(const Pt& p) { Add(p.x, p.y); }
  TXY* Last() const { return tail_; }

 private:
  TPolygon& polygon_;
  TXY* tail_ = nullptr;
};

// Step a: the first point, each point more than `simplify` from the last one kept, and the very
// last point in any case.
Chain Thin(const TXY* first, float simplify) {
  Chain out;
  out.push_back({first->x, first->y});
  const TXY* p = first->next;
  for (; p && p->next; p = p->next) {
    if (Distance(p->x, p->y, out.back().x, out.back().y) > simplify) out.push_back({p->x, p->y});
  }
  if (p) out.push_back({p->x, p->y});
  return out;
}

// Step b: a point across which the heading changes by less than a tenth of a degree goes.
Chain Straighten(const Chain& in) {
  Chain out;
  if (in.empty()) return out;
  out.push_back(in.front());
  for (size_t k = 1; k + 1 < in.size(); ++k) {
    const Pt& a = out.back();
    const float t = TurnAngle(a.x, a.y, in[k].x, in[k].y, in[k + 1].x, in[k + 1].y);
    if (AbsF(t) < TenthDegree) continue;
    out.push_back(in[k]);
  }
  if (in.size() > 1) out.push_back(in.back());
  return out;
}

// Step d: the offset chain, corner by corner.
class Offsetter {
 public:
  Offsetter(const Chain& src, bool leftSide, float d, float arcAngle, float arcStep)
      : src_(src), leftSide_(leftSide), d_(d), arcAngle_(arcAngle), arcStep_(arcStep) {
    const float side = leftSide ? HalfPi : -HalfPi;
    for (size_t i = 0; i + 1 < src.size(); ++i) {
      const float a = SegmentAngle(src[i].x, src[i].y, src[i + 1].x, src[i + 1].y, 1);
      heading_.push_back(a);
      const float oa = F(W(a) + side);
      offsetAngle_.push_back(oa);
      Pt s, e;
      PolarPoint(src[i].x, src[i].y, d, oa, s.x, s.y);
      PolarPoint(src[i + 1].x, src[i + 1].y, d, oa, e.x, e.y);
      start_.push_back(s);
      end_.push_back(e);
    }
  }

  void Build(TPolygon& out, bool closed) {
    ChainBuilder chain(out);
    const size_t segments = heading_.size();
    chain.Add(start_[0]);
    for (size_t i = 1; i < segments; ++i) Corner(chain, i - 1, i, src_[i]);
    if (closed) {
      Corner(chain, segments - 1, 0, src_.back());
      out.first->x = chain.Last()->x;
      out.first->y = chain.Last()->y;
    } else {
      chain.Add(end_[segments - 1]);
    }
  }

 private:
  void Corner(ChainBuilder& chain, size_t p, size_t c, const Pt& vertex) {
    float t = F(W(heading_[c]) - heading_[p]);
    NormalizeAngle(t);
    float x = 0, y = 0;
    if ((t > 0) == leftSide_) {
      const int code =
          IntersectSegments(start_[p].x, start_[p].y, end_[p].x, end_[p].y, start_[c].x,
                            start_[c].y, end_[c].x, end_[c].y, x, y, kFineTolerance);
      if (code == kParallel) {
        chain.Add(end_[p]);
      } else if (code == kOnBoth) {
        chain.Add(x, y);
      } else {
        chain.Add(end_[p]);
        chain.Add(start_[c]);
      }
    } else if (AbsF(t) >= arcAngle_) {
      chain.Add(end_[p]);
      Arc(chain, vertex, offsetAngle_[p], offsetAngle_[c], t);
      chain.Add(start_[c]);
    } else {
      const int code =
          IntersectSegments(start_[p].x, start_[p].y, end_[p].x, end_[p].y, start_[c].x,
                            start_[c].y, end_[c].x, end_[c].y, x, y, kFineTolerance);
      if (code == kParallel) {
        chain.Add(end_[p]);
      } else {
        chain.Add(x, y);
      }
    }
  }

  // Points round the vertex from the angle of the previous end towards that of the current
  // start, a step at a time, stopping a tenth of a step short of the end angle.
  void Arc(ChainBuilder& chain, const Pt& v, float from, float to, float t) {
    if (!(arcStep_ > 0) || !std::isfinite(arcStep_)) return;
    const double slack = W(arcStep_) * 0.1;
    int count = 0;
    if (!(t > 0)) {
      AngleBelow(from, to);
      for (float a = F(W(from) - arcStep_); W(a) > W(to) + slack && count < kMaxArcPoints;
           a = F(W(a) - arcStep_), ++count) {
        AddPolar(chain, v, a);
      }
    } else {
      AngleAbove(from, to);
      for (float a = F(W(from) + arcStep_); W(a) < W(to) - slack && count < kMaxArcPoints;
           a = F(W(a) + arcStep_), ++count) {
        AddPolar(chain, v, a);
      }
    }
  }

  void AddPolar(ChainBuilder& chain, const Pt& v, float a) {
    Pt p;
    PolarPoint(v.x, v.y, d_, a, p.x, p.y);
    chain.Add(p);
  }

  const Chain& src_;
  bool leftSide_;
  float d_, arcAngle_, arcStep_;
  std::vector<float> heading_, offsetAngle_;
  std::vector<Pt> start_, end_;
};

// Step e: a vertex as good as on the next one goes.
void DropNearVertices(TPolygon& polygon) {
  TXY* previous = nullptr;
  TXY* p = polygon.first;
  while (p && p->next) {
    TXY* next = p->next;
    if (Near(p->x, p->y, next->x, next->y)) {
      if (previous) {
        previous->next = next;
      } else {
        polygon.first = next;
      }
      delete p;
    } else {
      previous = p;
    }
    p = next;
  }
}

// The quick test of the crossing search on one axis: an end of the second range strictly inside
// the first, or the first within the second.
bool RangesMeet(float a1, float a2, float b1, float b2) {
  OrderF(a1, a2);
  OrderF(b1, b2);
  return (a1 < b1 && b1 < a2) || (a1 < b2 && b2 < a2) || (b1 <= a1 && a2 <= b2);
}

// Splits the segment that starts at `s` at (x, y): a new cut vertex, or the mark on the end the
// point is as good as on.
bool SplitAt(TXY* s, float x, float y) {
  if (Near(x, y, s->x, s->y)) {
    SetFlags(*s, kCutMark);
    return false;
  }
  if (Near(x, y, s->next->x, s->next->y)) {
    SetFlags(*s->next, kCutMark);
    return false;
  }
  TXY* v = new TXY;
  v->x = x;
  v->y = y;
  v->flags = kCutMark | kCutEnd;
  v->next = s->next;
  s->next = v;
  return true;
}

// Step f: every crossing of two segments that share no vertex becomes a cut on both.
void MarkSelfCrossings(TPolygon& polygon) {
  long splits = 0;
  for (TXY* p = polygon.first; p && p->next; p = p->next) {
    for (TXY* q = p->next->next; q && q->next; q = q->next) {
      TXY* p2 = p->next;
      TXY* q2 = q->next;
      if (!RangesMeet(p->x, p2->x, q->x, q2->x) || !RangesMeet(p->y, p2->y, q->y, q2->y)) {
        continue;
      }
      float x = 0, y = 0;
      if (IntersectSegments(p->x, p->y, p2->x, p2->y, q->x, q->y, q2->x, q2->y, x, y,
                            kFineTolerance) != kOnBoth) {
        continue;
      }
      if (splits >= kMaxSplits) return;
      if (SplitAt(p, x, y)) ++splits;
      if (SplitAt(q, x, y)) ++splits;
    }
  }
}

// Step g: the chain cut at every marked vertex into a list of pieces; the cut vertex ends one
// piece and, copied, starts the next, and both carry the cut-end bit.
TPolygon* CutAtMarks(TPolygon& polygon) {
  if (!polygon.first) return nullptr;
  ClearFlags(*polygon.first, kCutMark);
  ClearFlags(*LastPoint(polygon), kCutMark);
  TPolygon* head = new TPolygon;
  TPolygon* piece = head;
  TXY* p = polygon.first;
  polygon.first = nullptr;
  TXY* tail = nullptr;
  while (p) {
    TXY* next = p->next;
    p->next = nullptr;
    AppendTo(piece->first, tail, p);
    if (TestFlags(*p, kCutMark) && next) {
      SetFlags(*p, kCutEnd);
      TPolygon* following = new TPolygon;
      TXY* copy = new TXY;
      copy->x = p->x;
      copy->y = p->y;
      copy->flags = p->flags;
      following->first = copy;
      tail = copy;
      piece->next = following;
      piece = following;
    }
    p = next;
  }
  return head;
}

// Unlinks and frees one piece of a list.
void RemovePiece(TPolygon*& head, TPolygon* piece) {
  if (head == piece) {
    head = piece->next;
  } else {
    for (TPolygon* q = head; q; q = q->next) {
      if (q->next == piece) {
        q->next = piece->next;
        break;
      }
    }
  }
  piece->next = nullptr;
  delete piece;
}

bool NearSource(const Chain& src, float x, float y, float reach) {
  for (size_t k = 0; k + 1 < src.size(); ++k) {
    if (Distance(x, y, src[k].x, src[k].y) < reach) return true;
  }
  for (size_t k = 0; k + 1 < src.size(); ++k) {
    if (PointSegmentDistance(x, y, src[k].x, src[k].y, src[k + 1].x, src[k + 1].y) < reach) {
      return true;
    }
  }
  return false;
}

bool SegmentMidNearSource(const Chain& src, const TXY& a, const TXY& b, float reach) {
  return NearSource(src, F((W(a.x) + b.x) * 0.5), F((W(a.y) + b.y) * 0.5), reach);
}

// Step h: pieces of fewer than two points go, and so do the loops that pass closer to the source
// than the offset allows, judged by the middle of their first and last segments.
void RemoveLoops(TPolygon*& head, const Chain& src, float d) {
  const float t0 = MinF(F(W(d) * 0.99), F(W(d) - 0.001));
  const float reach = F(W(t0) / 2);
  for (TPolygon* p = head; p;) {
    TPolygon* next = p->next;
    if (CountPoints(*p) < 2) RemovePiece(head, p);
    p = next;
  }
  for (TPolygon* p = head; p;) {
    TPolygon* next = p->next;
    const TXY* a = p->first;
    const TXY* last = LastPoint(*p);
    const TXY* beforeLast = PreviousPoint(*p, last);
    bool loop = SegmentMidNearSource(src, *a, *a->next, reach);
    if (!loop && beforeLast != a) loop = SegmentMidNearSource(src, *beforeLast, *last, reach);
    if (loop) RemovePiece(head, p);
    p = next;
  }
}

float ChainLength(const TPolygon& polygon) {
  float length = 0;
  for (const TXY* p = polygon.first; p && p->next; p = p->next) {
    length = F(W(length) + Distance(p->x, p->y, p->next->x, p->next->y));
  }
  return length;
}

// Step i: a small closed loop hanging between two pieces at their joint goes.
void RemoveSmallRings(TPolygon*& head, float d) {
  if (!head) return;
  TPolygon* previous = head;
  for (TPolygon* p = head->next; p && p->next;) {
    TPolygon* next = p->next;
    const TXY* first = p->first;
    const TXY* last = LastPoint(*p);
    const TXY* previousEnd = LastPoint(*previous);
    const bool closed = Near(first->x, first->y, last->x, last->y);
    const bool touches = Near(previousEnd->x, previousEnd->y, first->x, first->y) &&
                         Near(last->x, last->y, next->first->x, next->first->y);
    if (closed && touches && ChainLength(*p) < d) {
      RemovePiece(head, p);
    } else {
      previous = p;
    }
    p = next;
  }
}

// Step j: each piece takes in the first piece that starts where it ends.
void JoinPieces(TPolygon*& head) {
  for (TPolygon* p = head; p;) {
    const TXY* end = LastPoint(*p);
    TPolygon* q = head;
    for (; q; q = q->next) {
      if (Near(q->first->x, q->first->y, end->x, end->y)) break;
    }
    if (q && q != p) {
      LastPoint(*p)->next = q->first;
      q->first = nullptr;
      RemovePiece(head, q);
      continue;
    }
    p = p->next;
  }
}

// Step k: a closed result that the joining made start elsewhere is turned back to start at the
// vertex nearest to where it started.
void RestoreStart(TPolygon& ring, float sx, float sy) {
  TXY* first = ring.first;
  TXY* last = LastPoint(ring);
  if (NearPoints(first->x, first->y, sx, sy, kCloseTolerance)) return;
  if (!NearPoints(first->x, first->y, last->x, last->y, kCloseTolerance)) return;
  TXY* nearest = first;
  float best = Distance(first->x, first->y, sx, sy);
  for (TXY* p = first->next; p; p = p->next) {
    const float dist = Distance(p->x, p->y, sx, sy);
    if (dist < best) {
      best = dist;
      nearest = p;
    }
  }
  if (nearest == first) return;
  // The last vertex stands for the first, which goes; the ring then closes on a copy of the new
  // start.
  TXY* before = PreviousPoint(ring, nearest);
  TXY* second = first->next;
  delete first;
  if (before == first) before = nullptr;
  TXY* copy = new TXY;
  copy->x = nearest->x;
  copy->y = nearest->y;
  copy->flags = nearest->flags;
  ring.first = nearest;
  if (before) {
    last->next = second;
    before->next = copy;
  } else {
    last->next = copy;
  }
}

// Step l: a vertex within `minLength` of the one kept before it goes.
void ThinResult(TPolygon& polygon, float minLength) {
  TXY* kept = polygon.first;
  while (kept && kept->next) {
    TXY* p = kept->next;
    if (Distance(p->x, p->y, kept->x, kept->y) <= minLength) {
      kept->next = p->next;
      delete p;
    } else {
      kept = p;
    }
  }
}

TPolygon* TwoPointAnswer(const Chain& src, bool leftSide, float d) {
  const float side = leftSide ? HalfPi : -HalfPi;
  const float a = F(W(SegmentAngle(src[0].x, src[0].y, src[1].x, src[1].y, 1)) + side);
  TPolygon* polygon = new TPolygon;
  ChainBuilder chain(*polygon);
  for (const Pt& p : src) {
    Pt q;
    PolarPoint(p.x, p.y, d, a, q.x, q.y);
    chain.Add(q);
  }
  return polygon;
}

TPolygon* Attempt(const TXY* first, bool leftSide, float d, float arcAngle, float arcStep,
                  float simplify, float minLength, bool closed) {
  const Chain src = Straighten(Thin(first, simplify));
  if (src.size() < 2) return nullptr;
  if (src.size() == 2) return TwoPointAnswer(src, leftSide, d);

  TPolygon work;
  Offsetter(src, leftSide, d, arcAngle, arcStep).Build(work, closed);
  DropNearVertices(work);
  MarkSelfCrossings(work);
  TPolygon* pieces = CutAtMarks(work);
  RemoveLoops(pieces, src, d);
  RemoveSmallRings(pieces, d);
  if (!pieces) return nullptr;

  const float sx = pieces->first->x;
  const float sy = pieces->first->y;
  JoinPieces(pieces);
  RestoreStart(*pieces, sx, sy);
  if (minLength != 0) {
    for (TPolygon* p = pieces; p; p = p->next) ThinResult(*p, minLength);
  }
  for (TXY* p = pieces->first; p; p = p->next) ClearFlags(*p, kCutMark);
  return pieces;
}

}  // namespace

TPolygon* OffsetPolyline(const TXY* first, bool leftSide, float offset, float arcAngle,
                         float arcStep, float simplify, float minLength) {
  const float d = offset;
  if (d < kCloseTolerance || CountOf(first) < 2) return nullptr;

  // Whether the chain is worth trying at all. The top of the box is taken, as it always has
  // been, from the last point lying above the lowest point met so far.
  float xmin = 1.0e9f, xmax = -1.0e9f, ymin = 1.0e9f, ymax = -1.0e9f;
  const TXY* last = first;
  for (const TXY* p = first; p; p = p->next) {
    if (p->x < xmin) xmin = p->x;
    if (p->x > xmax) xmax = p->x;
    if (p->y < ymin) {
      ymin = p->y;
    } else if (p->y > ymin) {
      ymax = p->y;
    }
    last = p;
  }
  if (W(xmax) - xmin < d && W(ymax) - ymin < d) return nullptr;

  const bool closed = Distance(first->x, first->y, last->x, last->y) <= d;
  float simplifyNow = simplify;
  for (int attempt = 0; attempt < 3; ++attempt) {
    if (attempt > 0) {
      if (simplifyNow == 0) break;
      simplifyNow = F(W(simplifyNow) * 3);
    }
    TPolygon* result =
        Attempt(first, leftSide, d, arcAngle, arcStep, simplifyNow, minLength, closed);
    if (result) return result;
  }
  return nullptr;
}

}  // namespace isolith
