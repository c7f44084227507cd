#include "toolpath/HatchPhasesIndexed.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "toolpath/ContourIndex.h"
#include "toolpath/ContourPredicates.h"
#include "toolpath/HatchPredicates.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {

namespace {

// Every keep-out edge in polygon and vertex order (the last vertex of a polygon is not joined to
// its first), registered with the box the crossing walk compares, in a grid.
class EdgeIndex {
 public:
  explicit EdgeIndex(const TPolygon* keepOut) {
    IndexRegion region;
    for (const TPolygon* p = keepOut; p; p = p->next)
      for (const TXY* a = p->first; a && a->next; a = a->next) {
        starts_.push_back(a);
        boxes_.push_back(hatch::EdgeBox(*a, *a->next));
        region.Add(boxes_.back());
      }
    grid_ = BoxGrid(region.Box(), boxes_.size());
    for (size_t i = 0; i < boxes_.size(); ++i) grid_.Insert(static_cast<int>(i), boxes_[i]);
  }

  // The edges whose box may meet `query`, in polygon and vertex order.
  const std::vector<int>& Candidates(const IndexBox& query) {
    found_.clear();
    grid_.Query(query, [&](int id) {
      found_.push_back(id);
      return true;
    });
    std::sort(found_.begin(), found_.end());
    return found_;
  }

  const TXY& Start(int id) const { return *starts_[id]; }
  const IndexBox& Box(int id) const { return boxes_[id]; }

 private:
  std::vector<const TXY*> starts_;
  std::vector<IndexBox> boxes_;
  BoxGrid grid_{IndexBox{}, 0};
  std::vector<int> found_;
};

}  // namespace

void CrossingPhaseIndexed(TSeg* list, const TPolygon* keepOut, HatchStats* stats) {
  EdgeIndex edges(keepOut);
  long long tests = 0;
  for (TSeg* s = list; s; s = s->next) {
    // The first range holds every later one: a split point lies strictly inside the piece.
    const IndexBox query = hatch::PieceQuery(*s);
    IndexBox range = query;
    for (int id : edges.Candidates(query)) {
      const IndexBox& edge = edges.Box(id);
      if (!contour::Overlap(query, edge)) continue;
      ++tests;
      const TXY& a = edges.Start(id);
      hatch::CrossEdge(s, range, a, *a.next, edge);
    }
  }
  if (stats) stats->edgeTests += tests;
}

TSeg* ClassificationPhaseIndexed(TSeg* list, const TPolygon* keepOut, float pitch, float cardWidth,
                                 HatchStats* stats) {
  std::vector<const TPolygon*> shapes;
  std::vector<hatch::ContainmentReach> reach;
  IndexRegion region, gapRegion;
  size_t gaps = 0;
  for (const TPolygon* p = keepOut; p; p = p->next) {
    shapes.push_back(p);
    reach.push_back(hatch::ReachOf(*p));
    region.Add(reach.back().box);
    if (reach.back().open) {
      gapRegion.Add({reach.back().below.x1, 0, reach.back().below.x2, 0});
      ++gaps;
    }
  }
  BoxGrid grid(region.Box(), shapes.size());
  // The columns below the gaps of chains that are not closed, by X alone.
  BoxGrid below(gapRegion.Box(), gaps);
  for (size_t i = 0; i < shapes.size(); ++i) {
    const hatch::ContainmentReach& r = reach[i];
    grid.Insert(static_cast<int>(i), r.box);
    if (r.open) below.Insert(static_cast<int>(i), {r.below.x1, 0, r.below.x2, 0});
  }

  long long tests = 0;
  // A large shape (a contour around a pour, the card's) is asked about most points of the
  // layer: its columns are built at its first question.
  constexpr int kColumnsFrom = 32;
  std::vector<std::unique_ptr<ContainmentColumns>> columns(shapes.size());
  std::vector<bool> large;
  for (const TPolygon* shape : shapes) large.push_back(CountPoints(*shape) >= kColumnsFrom);
  auto contains = [&](int id, float x, float y) {
    const TPolygon& shape = *shapes[id];
    if (!columns[id]) {
      if (!large[id]) return ContainsPoint(shape, x, y);
      columns[id] = std::make_unique<ContainmentColumns>(shape);
    }
    return columns[id]->Contains(x, y);
  };
  // Whether the point lies in a shape or on its edge: ListContainsPoint not negative.
  auto inside = [&](float x, float y) {
    const IndexBox point{x, y, x, y};
    bool hit = false;
    grid.Query(point, [&](int id) {
      const IndexBox& box = reach[id].box;
      if (!hit && (!IsFinite(box) || Meet(box, point))) {
        ++tests;
        hit = contains(id, x, y) >= 0;
      }
      return true;
    });
    if (gaps == 0) return hit;
    below.Query({x, 0, x, 0}, [&](int id) {
      // A point in the shape's box was asked above already.
      if (!hit && Meet(reach[id].below, point) && !Meet(reach[id].box, point)) {
        ++tests;
        hit = contains(id, x, y) >= 0;
      }
      return true;
    });
    return hit;
  };
  TSeg** link = &list;
  while (*link) {
    TSeg* s = *link;
    if (hatch::PieceRemoved(*s, inside)) {
      *link = s->next;
      delete s;
    } else {
      hatch::PullBack(*s, pitch, cardWidth);
      link = &s->next;
    }
  }
  if (stats) stats->shapeTests += tests;
  return list;
}

void LinkPhaseIndexed(TSeg* list, const TPolygon* keepOut, float pitch, HatchStats* stats) {
  std::vector<TSeg*> pieces;
  IndexRegion region;
  for (TSeg* s = list; s; s = s->next) {
    pieces.push_back(s);
    region.Add({s->x1, s->y1, s->x1, s->y1});
  }
  // The first ends, where a link can arrive.
  BoxGrid starts(region.Box(), pieces.size());
  for (size_t i = 0; i < pieces.size(); ++i)
    starts.Insert(static_cast<int>(i),
                  {pieces[i]->x1, pieces[i]->y1, pieces[i]->x1, pieces[i]->y1});
  EdgeIndex edges(keepOut);
  long long tests = 0;
  std::vector<int> later;
  // The links go in behind their pieces; the walk steps over them, so it walks the pieces.
  for (size_t i = 0; i < pieces.size(); ++i) {
    TSeg* s = pieces[i];
    later.clear();
    starts.Query(hatch::LinkTargetQuery(*s, pitch), [&](int id) {
      if (static_cast<size_t>(id) > i) later.push_back(id);
      // A piece at or before this one is never a target again.
      return static_cast<size_t>(id) > i;
    });
    std::sort(later.begin(), later.end());
    TSeg* t = nullptr;
    float bestDistance = hatch::LinkLimit(pitch);
    for (int id : later) hatch::ConsiderLinkTarget(*s, pieces[id], pitch, t, bestDistance);
    if (!t) continue;
    bool crosses = false;
    for (int id : edges.Candidates(hatch::SegmentBox(t->x1, t->y1, s->x2, s->y2, 0, 0))) {
      ++tests;
      const TXY& a = edges.Start(id);
      if ((crosses = hatch::LinkCrossesEdge(t->x1, t->y1, s->x2, s->y2, a, *a.next))) break;
    }
    if (!crosses) InsertBehind(s, s->x2, s->y2, t->x1, t->y1);
  }
  if (stats) stats->edgeTests += tests;
}

}  // namespace isolith
