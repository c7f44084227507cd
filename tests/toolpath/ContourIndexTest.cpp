// The indexed contour calculation against the full scans it replaces: the same paths, vertex for
// vertex and bit for bit, on boards made to stress the order of the tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <list>
#include <random>
#include <set>
#include <vector>

#include "core/board/BoardOps.h"
#include "toolpath/ContourIndex.h"
#include "toolpath/Contours.h"
#include "toolpath/RandomBoards.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {
namespace {

using Builder = std::function<void(Board&)>;

void Pad(Board& b, float x, float y, uint8_t code, uint8_t flags = 0) {
  TPad* tail = LastPad(b.Pads[0]);
  AppendTo(b.Pads[0], tail, new TPad{code, flags, x, y, nullptr});
}

void Track(Board& b, float x1, float y1, float x2, float y2, uint8_t code, uint8_t flags = 0) {
  TTrack* tail = LastTrack(b.Tracks[0]);
  AppendTo(b.Tracks[0], tail, new TTrack{code, flags, x1, y1, x2, y2, nullptr});
}

void Aperture(Board& b, uint8_t code, uint8_t shape, float w, float h) {
  b.PadShape[0][code] = shape;
  b.PadSizeX[0][code] = w;
  b.PadSizeY[0][code] = h;
}

ContourSettings Settings(float distance, int passes = 1, int padPasses = 0, bool fast = false) {
  ContourSettings s;
  s.distance = distance;
  s.passes = passes;
  s.padPasses = padPasses;
  s.fast = fast;
  return s;
}

uint32_t Bits(float v) {
  return std::bit_cast<uint32_t>(v);
}

::testing::AssertionResult SamePaths(const TPolygon* ref, const TPolygon* idx) {
  for (int n = 0; ref || idx; ++n, ref = ref->next, idx = idx->next) {
    if (!ref || !idx) return ::testing::AssertionFailure() << "path count differs at " << n;
    if (ref->flags != idx->flags) return ::testing::AssertionFailure() << "path " << n << " flags";
    const TXY* p = ref->first;
    const TXY* q = idx->first;
    for (int k = 0; p || q; ++k, p = p->next, q = q->next) {
      if (!p || !q) return ::testing::AssertionFailure() << "path " << n << " length, at " << k;
      if (Bits(p->x) != Bits(q->x) || Bits(p->y) != Bits(q->y) || p->flags != q->flags)
        return ::testing::AssertionFailure()
               << "path " << n << " vertex " << k << ": (" << p->x << ", " << p->y << ") against ("
               << q->x << ", " << q->y << ")";
    }
  }
  return ::testing::AssertionSuccess();
}

// Calculates layer 0 of two boards built alike, by the full scans and through the index, and
// expects the same paths. Returns the number of paths.
int ExpectSameContours(const Builder& build, ContourSettings s, ContourStats* stats = nullptr) {
  Board ref, idx;
  build(ref);
  build(idx);
  ContourSettings rs = s, is = s;
  rs.indexed = false;
  is.indexed = true;
  CalculateContours(ref, 0, rs, nullptr);
  CalculateContours(idx, 0, is, nullptr, stats);
  EXPECT_TRUE(SamePaths(ref.Contours[0], idx.Contours[0]));
  return CountOf(ref.Contours[0]);
}

// ---- The index itself ---------------------------------------------------------------------

TEST(ContourIndex, GridHandsOutEveryBoxThatMeetsTheQueryAndForgetsRemovedOnes) {
  std::mt19937 rng(7);
  auto u = [&](double lo, double hi) { return float(lo + (hi - lo) * (rng() / 4294967296.0)); };
  auto box = [&](double size) {
    const float x = u(-20, 120), y = u(-20, 120);
    return IndexBox{x, y, x + u(0, size), y + u(0, size)};
  };
  BoxGrid grid({0, 0, 100, 100}, 400);
  std::vector<std::vector<IndexBox>> boxes;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (int i = 0; i < 400; ++i) {
    // Mostly small, some long, a few far outside the region, one not a number.
    IndexBox b = i % 10 == 0 ? box(90) : i % 37 == 0 ? IndexBox{5e6f, 5e6f, 6e6f, 6e6f} : box(3);
    if (i == 123) b.x2 = nan;
    boxes.push_back({b});
    grid.Insert(i, b);
  }
  // A second registration adds a box to an item.
  boxes[5].push_back({90, 90, 91, 91});
  grid.Insert(5, boxes[5].back());
  std::set<int> removed = {3, 50, 51, 399};
  for (int id : removed) grid.Remove(id);
  for (int q = 0; q < 300; ++q) {
    const IndexBox query = q == 0 ? IndexBox{nan, 0, 1, 1} : box(q % 3 == 0 ? 40 : 2);
    std::vector<int> seen;
    grid.Query(query, [&](int id) {
      seen.push_back(id);
      return true;
    });
    std::sort(seen.begin(), seen.end());
    EXPECT_TRUE(std::adjacent_find(seen.begin(), seen.end()) == seen.end()) << "query " << q;
    for (int i = 0; i < 400; ++i) {
      const bool live = !removed.count(i);
      bool must = !IsFinite(query);
      for (const IndexBox& b : boxes[i]) must = must || !IsFinite(b) || Meet(query, b);
      must = must && live;
      const bool got = std::binary_search(seen.begin(), seen.end(), i);
      if (must) {
        EXPECT_TRUE(got) << "query " << q << " missed item " << i;
      }
      if (!live) {
        EXPECT_FALSE(got) << "query " << q << " gave removed item " << i;
      }
    }
  }
  // A visitor that answers false removes the item for later queries.
  grid.Query({-1e9f, -1e9f, 1e9f, 1e9f}, [](int id) { return id != 7; });
  bool seven = false;
  grid.Query({-1e9f, -1e9f, 1e9f, 1e9f}, [&](int id) {
    seven = seven || id == 7;
    return true;
  });
  EXPECT_FALSE(seven);
}

TEST(ContourIndex, ListOrderKeepsLabelsGrowingThroughRelabelling) {
  ListOrder order(3);
  std::list<int> model = {0, 1, 2};
  std::mt19937 rng(11);
  for (int i = 0; i < 2000; ++i) {
    // Mostly behind the same few items, so that the room between labels runs out.
    const int parent = rng() % 4 == 0 ? static_cast<int>(rng() % order.Size()) : i % 2;
    const int id = order.InsertBehind(parent);
    model.insert(std::next(std::find(model.begin(), model.end(), parent)), id);
  }
  EXPECT_GT(order.Relabels(), 0u);
  std::vector<int> walked;
  for (int id = 0; id >= 0; id = order.Next(id)) {
    if (!walked.empty()) {
      EXPECT_TRUE(order.Before(walked.back(), id));
    }
    walked.push_back(id);
  }
  EXPECT_EQ(walked, std::vector<int>(model.begin(), model.end()));

  // A place of a long list cut over and over, always behind the same item or behind the newest
  // piece: the labels are spread locally, never across the whole list each time room runs out.
  for (bool behindNewest : {false, true}) {
    ListOrder storm(100000);
    int parent = 50000;
    for (int i = 0; i < 20000; ++i) {
      const int id = storm.InsertBehind(parent);
      if (behindNewest) parent = id;
    }
    for (int id = 0; storm.Next(id) >= 0; id = storm.Next(id)) {
      ASSERT_TRUE(storm.Before(id, storm.Next(id)));
    }
    EXPECT_LT(storm.RelabelledItems(), 20000u * 50) << behindNewest;
  }
}

// ---- Hand-made boards ---------------------------------------------------------------------

void Apertures(Board& b) {
  Aperture(b, 10, kShapeCircle, 1.6f, 1.6f);
  Aperture(b, 11, kShapeRectangle, 1.2f, 2.0f);
  Aperture(b, 12, kShapeObround, 2.6f, 1.2f);
  Aperture(b, 13, kShapeObround, 1.0f, 2.4f);
  Aperture(b, 14, kShapeOctagon, 1.8f, 1.8f);
  b.TrackWidth[0][20] = 0.4f;
  b.TrackWidth[0][21] = 0.25f;
}

void CrossingBoard(Board& b) {
  Apertures(b);
  // A lattice of tracks crossing each other, diagonals at odd angles across it, and a row of
  // pads of every shape, overlapping their neighbours, some of them thermal.
  for (int i = 0; i < 6; ++i) {
    Track(b, 2, 3 + 2.1f * i, 16, 3 + 2.1f * i, 20);
    Track(b, 3 + 2.3f * i, 2, 3 + 2.3f * i, 16, 21);
  }
  Track(b, 2, 2, 16, 15, 20);
  Track(b, 2, 15.5f, 15, 2.5f, 21);
  Track(b, 1, 9, 17, 10.3f, 20);
  for (int i = 0; i < 10; ++i)
    Pad(b, 4 + 1.3f * i, 18, static_cast<uint8_t>(10 + i % 5), i % 3 == 1 ? kPadThermal : 0);
  Track(b, 4, 18, 15.7f, 18, 21);
}

TEST(ContourIndex, CrossingTracksAndPadsInARowGiveTheSamePaths) {
  ContourStats stats;
  EXPECT_GT(ExpectSameContours(CrossingBoard, Settings(0.25f), &stats), 3);
  // The index narrows the pairs far below every pair of the list.
  EXPECT_LT(stats.pairsTested, stats.draftSegments * stats.draftSegments / 20);
  EXPECT_GT(ExpectSameContours(CrossingBoard, Settings(0.3f, 1, 0, true)), 3);
  EXPECT_GT(ExpectSameContours(CrossingBoard, Settings(0.2f, 2, 1)), 6);
  EXPECT_GT(ExpectSameContours(CrossingBoard, Settings(0.2f, 2, 2, true)), 6);
  // Each pad again, the same, with another aperture at its place, and thermal.
  auto copies = [](Board& b) {
    CrossingBoard(b);
    std::vector<TPad> pads;
    for (const TPad* p = b.Pads[0]; p; p = p->next) pads.push_back(*p);
    for (const TPad& p : pads) {
      Pad(b, p.x, p.y, p.code);
      Pad(b, p.x, p.y, p.code == 13 ? 12 : 13);
      Pad(b, p.x, p.y, p.code, kPadThermal);
    }
  };
  EXPECT_GT(ExpectSameContours(copies, Settings(0.25f)), 3);
}

TEST(ContourIndex, LongTrackCutManyTimesRelabelsAndKeepsThePaths) {
  auto build = [](Board& b) {
    Apertures(b);
    Track(b, 1, 10, 200, 10, 20);
    for (int i = 0; i < 120; ++i) Track(b, 2 + 1.6f * i, 8, 2.3f + 1.6f * i, 12, 21);
  };
  ContourStats stats;
  ExpectSameContours(build, Settings(0.25f), &stats);
  EXPECT_GT(stats.relabels, 0);
  ExpectSameContours(build, Settings(0.25f, 1, 0, true));
}

// Obround pads near the card's axes reject through the third point of their test anywhere
// along the same row (or column); thermal pads beside them leave open arcs.
void AxisBoard(Board& b) {
  Apertures(b);
  Pad(b, 1.2f, 10, 12);  // wide, near the Y axis
  Pad(b, 10, 1.3f, 13);  // tall, near the X axis
  Pad(b, 0.6f, 4, 10, kPadThermal);
  Pad(b, 4, 0.7f, 11, kPadThermal);
  Pad(b, 2.5f, 2.5f, 14, kPadThermal);
  // Far along the row and the column of the obround pads.
  Pad(b, 30, 10, 10);
  Pad(b, 10, 30, 10);
  Track(b, 25, 10.2f, 40, 10.2f, 20);
  Track(b, 9.8f, 25, 9.8f, 40, 20);
}

TEST(ContourIndex, ObroundAndThermalPadsNearTheAxesGiveTheSamePaths) {
  EXPECT_GT(ExpectSameContours(AxisBoard, Settings(0.25f)), 4);
  EXPECT_GT(ExpectSameContours(AxisBoard, Settings(0.25f, 1, 0, true)), 4);
  EXPECT_GT(ExpectSameContours(AxisBoard, Settings(0.2f, 2, 1)), 8);
  // The far pad on the row is indeed cut open by the obround pad near the axis.
  Board b;
  AxisBoard(b);
  auto s = Settings(0.25f);
  CalculateContours(b, 0, s, nullptr);
  bool openFar = false;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) {
    const TXY* last = LastPoint(*p);
    if (p->first->x > 28 && p->first->x < 32 && std::abs(p->first->y - 10) < 2)
      openFar = openFar || !NearPoints(p->first->x, p->first->y, last->x, last->y, 0.01f);
  }
  EXPECT_TRUE(openFar);
}

TEST(ContourIndex, CoordinatesThatAreNotNumbersOrHugeGiveTheSamePaths) {
  auto build = [](Board& b) {
    Apertures(b);
    CrossingBoard(b);
    Track(b, std::numeric_limits<float>::quiet_NaN(), 5, 8, 5, 20);
    Track(b, 3, 3, std::numeric_limits<float>::infinity(), 4, 21);
    Pad(b, 2.0e7f, 3.0e7f, 10);
    Track(b, 2.0e7f, 3.0e7f, 2.0e7f + 5, 3.0e7f, 20);
  };
  ExpectSameContours(build, Settings(0.25f));
}

// ---- Random boards ------------------------------------------------------------------------

TEST(ContourIndex, RandomBoardsGiveTheSamePaths) {
  for (uint32_t seed = 1; seed <= 24; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const bool snap = seed % 3 == 0;
    const float distances[] = {0.2f, 0.3f, 0.45f};
    ContourSettings s =
        Settings(distances[seed % 3], 1 + seed % 2, seed % 4 == 1 ? 1 : 0, seed % 5 == 2);
    ExpectSameContours([&](Board& b) { test::RandomBoard(b, seed, snap); }, s);
  }
}

TEST(ContourIndex, TwoThreadsGiveThePathsOfOne) {
  // Random boards side by side, enough segments for the removal tests to be shared.
  auto build = [](Board& b) {
    for (int n = 0; n < 100; ++n) {
      TPad* lastPad = LastPad(b.Pads[0]);
      TTrack* lastTrack = LastTrack(b.Tracks[0]);
      test::RandomBoard(b, 7 + n % 5, n % 3 == 0);  // its apertures replace the earlier ones
      const float dx = 21.0f * static_cast<float>(n % 10), dy = 21.0f * static_cast<float>(n / 10);
      for (TPad* p = lastPad ? lastPad->next : b.Pads[0]; p; p = p->next) p->x += dx, p->y += dy;
      for (TTrack* t = lastTrack ? lastTrack->next : b.Tracks[0]; t; t = t->next)
        t->x1 += dx, t->x2 += dx, t->y1 += dy, t->y2 += dy;
    }
  };
  Board one, two;
  build(one);
  build(two);
  ContourSettings s = Settings(0.3f, 2);
  ContourStats stats;
  s.threads = 1;
  CalculateContours(one, 0, s, nullptr, &stats);
  s.threads = 2;
  CalculateContours(two, 0, s, nullptr);
  EXPECT_GT(stats.draftSegments, 2 * 20000);
  EXPECT_GT(CountOf(one.Contours[0]), 100);
  EXPECT_TRUE(SamePaths(one.Contours[0], two.Contours[0]));
}

}  // namespace
}  // namespace isolith
