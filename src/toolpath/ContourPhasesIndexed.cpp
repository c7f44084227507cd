#include "toolpath/ContourPhasesIndexed.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "toolpath/ContourDraft.h"
#include "toolpath/ContourIndex.h"
#include "toolpath/ContourPredicates.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

using contour::SegmentBox;

constexpr float kTol = kNearTolerance;
// Point look-ups are made this much wider than the 0.01 of NearPoints.
constexpr double kPointReach = 0.02;

std::vector<TSeg*> Items(TSeg* list) {
  std::vector<TSeg*> items;
  for (TSeg* s = list; s; s = s->next) items.push_back(s);
  return items;
}

IndexBox PointBox(float x, float y) {
  return {x, y, x, y};
}

// A grid over both ends of every segment.
BoxGrid EndGrid(const std::vector<TSeg*>& items) {
  IndexRegion region;
  for (const TSeg* s : items) {
    region.Add(PointBox(s->x1, s->y1));
    region.Add(PointBox(s->x2, s->y2));
  }
  BoxGrid grid(region.Box(), 2 * items.size());
  for (size_t i = 0; i < items.size(); ++i) {
    grid.Insert(static_cast<int>(i), PointBox(items[i]->x1, items[i]->y1));
    grid.Insert(static_cast<int>(i), PointBox(items[i]->x2, items[i]->y2));
  }
  return grid;
}

}  // namespace

void IntersectionPhaseIndexed(TSeg* list, ContourStats* stats) {
  if (!list) return;
  std::vector<TSeg*> segs = Items(list);
  ListOrder order(segs.size());
  // The box each segment is registered with; it always holds the segment's widened box.
  std::vector<IndexBox> registered;
  IndexRegion region;
  for (const TSeg* s : segs) {
    registered.push_back(SegmentBox(*s, kTol));
    region.Add(registered.back());
  }
  BoxGrid grid(region.Box(), segs.size());
  for (size_t i = 0; i < segs.size(); ++i) grid.Insert(static_cast<int>(i), registered[i]);

  // After a split of `parent`: its new piece joins the order and the grid, and the parent
  // stays registered round its new box.
  auto split = [&](int parent) {
    const int id = order.InsertBehind(parent);
    segs.push_back(segs[parent]->next);
    registered.push_back(SegmentBox(*segs[id], kTol));
    grid.Insert(id, registered[id]);
    const IndexBox now = SegmentBox(*segs[parent], kTol);
    if (!Contains(registered[parent], now)) {
      registered[parent] = Union(registered[parent], now);
      grid.Insert(parent, now);
    }
  };

  long long pairs = 0;
  // The candidates of a walk with their labels, to be met in list order.
  std::vector<std::pair<uint64_t, int>> candidates;
  for (int a = 0; a >= 0; a = order.Next(a)) {
    TSeg* A = segs[a];
    IndexBox boxA = SegmentBox(*A, kTol);
    IndexBox query = boxA;
    // Everything after A whose box may meet A's: A's box only shrinks along the walk, and a
    // segment not met yet has not changed since it was registered.
    auto gather = [&](int after) {
      const uint64_t done = order.Label(a), seen = order.Label(after);
      grid.Query(query, [&](int id) {
        const uint64_t l = order.Label(id);
        if (l < done) return false;  // walked already, and never met again
        if (l > seen && Meet(query, registered[id])) candidates.emplace_back(l, id);
        return true;
      });
      std::sort(candidates.begin(), candidates.end());
    };
    candidates.clear();
    gather(a);
    size_t next = 0;
    while (next < candidates.size()) {
      int b = candidates[next++].second;
      bool escaped = false;
      // B, then the pieces cut from it, which stand directly behind it and come next.
      for (;;) {
        ++pairs;
        TSeg* B = segs[b];
        bool cutB = false;
        if (contour::Overlap(boxA, SegmentBox(*B, kTol))) {
          float x, y;
          if (IntersectSegments(A->x1, A->y1, A->x2, A->y2, B->x1, B->y1, B->x2, B->y2, x, y,
                                kTol) == kOnBoth) {
            // After a split, A's box is taken again from its ends, without the margin.
            if (contour::SplitAt(A, x, y)) {
              split(a);
              boxA = SegmentBox(*A, 0);
              escaped = escaped || !Contains(query, boxA);
            }
            if (contour::SplitAt(B, x, y)) {
              split(b);
              cutB = true;
            }
          }
        }
        if (!cutB) break;
        b = order.Next(b);
      }
      if (escaped) {
        // Rounding took A's box out of the box it was looked up with: look up the rest of the
        // walk again in a box holding both.
        query = IsFinite(boxA) ? Union(query, boxA) : boxA;
        candidates.erase(candidates.begin(), candidates.begin() + static_cast<long>(next));
        next = 0;
        for (auto& c : candidates) c.first = order.Label(c.second);  // relabelled meanwhile
        gather(b);
        candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
      }
    }
  }
  if (stats) {
    stats->pairsTested += pairs;
    stats->relabels += static_cast<long long>(order.Relabels());
  }
}

TSeg* RemovalPhaseIndexed(const Board& b, int layer, TSeg* list, float padOffset, float trackOffset,
                          bool fast, ContourStats* stats, int threads) {
  struct Element {
    const TTrack* track;
    const TPad* pad;
  };
  std::vector<Element> elements;
  IndexRegion region;
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
    if (IsExcluded(t->flags)) continue;
    elements.push_back({t, nullptr});
    region.Add({std::min(t->x1, t->x2), std::min(t->y1, t->y2), std::max(t->x1, t->x2),
                std::max(t->y1, t->y2)});
  }
  // A pad the same as one already taken rejects the same segments: thousands of copies of one
  // flash cost one element.
  std::set<std::tuple<uint32_t, uint32_t, uint8_t, uint8_t>> padsTaken;
  for (const TPad* p = b.Pads[layer]; p; p = p->next) {
    if (IsExcluded(p->flags)) continue;
    if (!padsTaken
             .emplace(std::bit_cast<uint32_t>(p->x), std::bit_cast<uint32_t>(p->y), p->code,
                      p->flags)
             .second)
      continue;
    elements.push_back({nullptr, p});
    region.Add(PointBox(p->x, p->y));
  }
  // Tracks are registered in pieces about a cell long, so that a long diagonal one is not met
  // all over its box.
  const double piece = std::sqrt(std::max(region.Area(), 0.0) /
                                 static_cast<double>(std::max<size_t>(elements.size(), 1)));
  BoxGrid grid(region.Box(), elements.size());
  std::vector<int> everywhere;
  // The reach boxes of element i are reach[first[i]] .. reach[first[i + 1] - 1].
  std::vector<IndexBox> reach;
  std::vector<size_t> first;
  for (size_t i = 0; i < elements.size(); ++i) {
    const Element& e = elements[i];
    first.push_back(reach.size());
    contour::Reach kind;
    if (e.track) {
      kind = contour::TrackReach(b, layer, *e.track, trackOffset, piece, reach);
    } else {
      reach.emplace_back();
      kind = contour::PadReach(b, layer, *e.pad, padOffset, reach.back());
    }
    // A box that is not finite bounds nothing (an element with an end at infinity still
    // rejects round its other end): such an element is tested everywhere.
    if (kind == contour::Reach::kBoxes &&
        !std::all_of(reach.begin() + static_cast<long>(first.back()), reach.end(),
                     [](const IndexBox& box) { return IsFinite(box); }))
      kind = contour::Reach::kEverywhere;
    if (kind != contour::Reach::kBoxes) reach.resize(first.back());
    if (kind == contour::Reach::kEverywhere) everywhere.push_back(static_cast<int>(i));
    for (size_t k = first.back(); k < reach.size(); ++k) grid.Insert(static_cast<int>(i), reach[k]);
  }
  first.push_back(reach.size());
  auto within = [&](int id, const IndexBox& box) {
    for (size_t k = first[id]; k < first[id + 1]; ++k)
      if (Meet(reach[k], box)) return true;
    return false;
  };

  // Whether each segment of pieces[from .. to) falls, asked through `index`: a grid of one's own
  // per thread, since a query marks the items it has handed out.
  const std::vector<TSeg*> pieces = Items(list);
  std::vector<uint8_t> falls(pieces.size(), 0);
  auto judge = [&](BoxGrid& index, size_t from, size_t to, long long& tests) {
    auto rejects = [&](int id, const TSeg& s, float mx, float my) {
      ++tests;
      const Element& e = elements[id];
      return e.track ? contour::TrackRejects(b, layer, *e.track, s, mx, my, trackOffset, fast)
                     : contour::PadRejects(b, layer, *e.pad, s, mx, my, padOffset);
    };
    for (size_t k = from; k < to; ++k) {
      const TSeg& s = *pieces[k];
      float mx, my;
      contour::Midpoint(s, mx, my);
      bool rejected = false;
      for (int id : everywhere)
        if (rejects(id, s, mx, my)) {
          rejected = true;
          break;
        }
      if (!rejected) {
        // The tested points lie in the box of the segment's ends (the midpoint too). A segment
        // with a coordinate that is not finite may still be rejected through another of its
        // points: it meets every element.
        const IndexBox box = SegmentBox(s, 0);
        const bool bounded = IsFinite(box);
        index.Query(box, [&](int id) {
          if (!rejected && (!bounded || within(id, box)) && rejects(id, s, mx, my)) rejected = true;
          return true;
        });
      }
      falls[k] = rejected;
    }
  };
  // Below this many segments a thread costs more than it saves.
  constexpr size_t kSharedFrom = 20000;
  long long tests = 0, helperTests = 0;
  const size_t half = threads > 1 && pieces.size() >= kSharedFrom ? pieces.size() / 2 : 0;
  std::thread helper;
  std::optional<BoxGrid> copy;
  if (half > 0) {
    copy.emplace(grid);
    try {
      helper = std::thread(judge, std::ref(*copy), half, pieces.size(), std::ref(helperTests));
    } catch (const std::system_error&) {
      // No thread to be had: this one judges the second half too.
    }
  }
  judge(grid, 0, helper.joinable() ? half : pieces.size(), tests);
  if (helper.joinable()) helper.join();
  tests += helperTests;
  TSeg** link = &list;
  for (size_t k = 0; k < pieces.size(); ++k) {
    if (falls[k]) {
      *link = pieces[k]->next;
      delete pieces[k];
    } else {
      link = &pieces[k]->next;
    }
  }
  if (stats) stats->elementTests += tests;
  return list;
}

TSeg* RemoveDuplicateSegmentsIndexed(TSeg* list) {
  // A segment stays when no earlier segment that stayed has the same ends: the full scan's
  // outcome, since each of its walks starts from a segment that stayed.
  std::vector<TSeg*> items = Items(list);
  IndexRegion region;
  for (const TSeg* s : items) {
    region.Add(PointBox(s->x1, s->y1));
    region.Add(PointBox(s->x2, s->y2));
  }
  BoxGrid kept(region.Box(), 2 * items.size());
  TSeg** link = &list;
  for (size_t i = 0; i < items.size(); ++i) {
    TSeg* s = items[i];
    bool same = false;
    // Any earlier segment with the same ends has one of them near S's first end.
    kept.Query(Grown(PointBox(s->x1, s->y1), kPointReach), [&](int id) {
      same = same || contour::SameEnds(*items[id], *s);
      return true;
    });
    if (same) {
      *link = s->next;
      delete s;
      continue;
    }
    kept.Insert(static_cast<int>(i), PointBox(s->x1, s->y1));
    kept.Insert(static_cast<int>(i), PointBox(s->x2, s->y2));
    link = &s->next;
  }
  return list;
}

TPolygon* ChainSegmentsIndexed(TSeg* list) {
  std::vector<TSeg*> items = Items(list);
  BoxGrid remaining = EndGrid(items);
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  size_t first = 0;
  auto consume = [&](size_t i) {
    remaining.Remove(static_cast<int>(i));
    delete std::exchange(items[i], nullptr);
  };
  for (;;) {
    while (first < items.size() && !items[first]) ++first;
    if (first == items.size()) break;
    auto* poly = new TPolygon;
    AppendTo(head, tail, poly);
    TXY* last = nullptr;
    AppendPoint(*poly, last, items[first]->x1, items[first]->y1);
    AppendPoint(*poly, last, items[first]->x2, items[first]->y2);
    consume(first);
    for (;;) {
      // The first remaining segment in list order that fits either end of the chain.
      int best = -1, bestFit = 0;
      auto consider = [&](int id) {
        if (best >= 0 && id > best) return true;
        const int fit = contour::ChainFit(*items[id], *poly->first, *last);
        if (fit) best = id, bestFit = fit;
        return true;
      };
      remaining.Query(Grown(PointBox(last->x, last->y), kPointReach), consider);
      remaining.Query(Grown(PointBox(poly->first->x, poly->first->y), kPointReach), consider);
      if (best < 0) break;
      contour::ExtendChain(*poly, last, *items[best], bestFit);
      consume(static_cast<size_t>(best));
    }
  }
  return head;
}

TPolygon* BridgeChainsIndexed(TPolygon* list, float trackOffset) {
  const float t = trackOffset;
  const float reach = static_cast<float>(0.5 * t);
  std::vector<TPolygon*> polys;
  std::vector<TXY*> lasts;
  IndexRegion region;
  for (TPolygon* p = list; p; p = p->next) {
    polys.push_back(p);
    lasts.push_back(LastPoint(*p));
    if (p->first) region.Add(PointBox(p->first->x, p->first->y));
  }
  // The first vertices, where a chain can be joined on.
  BoxGrid starts(region.Box(), polys.size());
  for (size_t i = 0; i < polys.size(); ++i)
    if (polys[i]->first)
      starts.Insert(static_cast<int>(i), PointBox(polys[i]->first->x, polys[i]->first->y));
  auto nearClosed = [&](size_t i) {
    const TXY* first = polys[i]->first;
    return first && NearPoints(first->x, first->y, lasts[i]->x, lasts[i]->y, t);
  };
  bool joined = false;
  for (size_t a = 0; a < polys.size(); ++a) {
    // The full scan starts over after each join, but the chains before A still find nothing:
    // a join only takes a chain away or closes A. So it goes on with A itself.
    while (polys[a] && polys[a]->first && !nearClosed(a)) {
      const TXY* last = lasts[a];
      int best = -1;
      starts.Query(Grown(PointBox(last->x, last->y), double(reach) + kPointReach), [&](int id) {
        const size_t b = static_cast<size_t>(id);
        if (b == a || (best >= 0 && id > best) || nearClosed(b)) return true;
        const TXY* first = polys[b]->first;
        if (NearPoints(last->x, last->y, first->x, first->y, reach)) best = id;
        return true;
      });
      if (best < 0) break;
      lasts[a]->next = std::exchange(polys[best]->first, nullptr);
      lasts[a] = lasts[best];
      starts.Remove(best);
      delete std::exchange(polys[best], nullptr);
      joined = true;
    }
  }
  // The list as it stands, without the chains taken; the full scan's cleaning after a join
  // also drops paths of a single vertex.
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  for (TPolygon* p : polys) {
    if (!p) continue;
    p->next = nullptr;
    AppendTo(head, tail, p);
  }
  return joined ? RemoveEmptyContours(head) : head;
}

}  // namespace isolith
