// The indexed hatch calculation against the full scans it replaces: the same hatch paths, vertex
// for vertex and bit for bit, on seeded random boards with coincident items and bad coordinates.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

#include "core/board/BoardOps.h"
#include "toolpath/Contours.h"
#include "toolpath/HatchPredicates.h"
#include "toolpath/Hatches.h"
#include "toolpath/RandomBoards.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

// The first difference of two path lists, empty when they are the same bit for bit.
std::string Difference(const TPolygon* ref, const TPolygon* idx) {
  for (int n = 0; ref || idx; ++n, ref = ref->next, idx = idx->next) {
    if (!ref || !idx) return "path count differs at " + std::to_string(n);
    const TXY* p = ref->first;
    const TXY* q = idx->first;
    for (int k = 0; p || q; ++k, p = p->next, q = q->next)
      if (!p || !q || std::bit_cast<uint32_t>(p->x) != std::bit_cast<uint32_t>(q->x) ||
          std::bit_cast<uint32_t>(p->y) != std::bit_cast<uint32_t>(q->y))
        return "path " + std::to_string(n) + " vertex " + std::to_string(k);
  }
  return {};
}

// A random board of layer 0 on a 20 x 20 card, with exact and near copies of some pads and
// tracks, and with `bad` a track through a coordinate that is no number, one at infinity and a
// pad far off the card.
void HatchBoard(Board& b, uint32_t seed, bool bad) {
  test::RandomBoard(b, seed, seed % 3 == 0);
  b.CardWidth = b.CardHeight = 20;
  std::vector<TPad> pads;
  for (const TPad* p = b.Pads[0]; p; p = p->next) pads.push_back(*p);
  for (size_t i = 0; i < pads.size(); i += 3) {
    test::AddRandomPad(b, pads[i].x, pads[i].y, pads[i].code, pads[i].flags);
    test::AddRandomPad(b, pads[i].x + 0.005f, pads[i].y - 0.004f, pads[i].code);
  }
  if (const TTrack* t = b.Tracks[0]) test::AddRandomTrack(b, t->x1, t->y1, t->x2, t->y2, t->code);
  if (bad) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    test::AddRandomTrack(b, nan, 5, 8, 5, 20);
    test::AddRandomTrack(b, 3, 3, std::numeric_limits<float>::infinity(), 4, 21);
    test::AddRandomPad(b, 2.0e7f, 3.0e7f, 10);
  }
}

TEST(HatchIndex, RandomBoardsGiveTheSameHatches) {
  const HatchRect zones[] = {{0, 0, 20, 20}, {-3, 2.5f, 24, 17}, {12, 15, 4.5f, 1}};
  for (uint32_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Board ref, idx;
    for (Board* b : {&ref, &idx}) {
      HatchBoard(*b, seed, seed % 7 == 0);
      ContourSettings c;
      CalculateContours(*b, 0, c, nullptr);
      if (!b->Contours[0]) b->Contours[0] = new TPolygon;  // hatches want contours
    }
    HatchSettings s;
    s.pitch = 0.1f + 0.05f * static_cast<float>(seed % 5);
    s.keepOut = seed % 4 == 0 ? 0.25f : 0.2f + 0.01f * static_cast<float>(seed % 9);
    s.link = seed % 5 != 3;
    s.fast = seed % 6 == 1;
    HatchSession session;
    session.rectangle = zones[seed % 3];
    // Every fourth board adds a second zone to the first, as the selected zone mode does.
    session.zone = seed % 4 == 2 ? kHatchSelectedZone : kHatchWholeBoard;
    HatchStats stats;
    for (int round = 0; round < (session.zone == kHatchSelectedZone ? 2 : 1); ++round) {
      s.indexed = false;
      CalculateHatches(ref, 0, s, session, nullptr);
      s.indexed = true;
      CalculateHatches(idx, 0, s, session, nullptr, &stats);
      session.rectangle = {1, 1, 9, 9};
    }
    EXPECT_GT(CountOf(ref.Hatches[0]), 3);
    EXPECT_EQ(Difference(ref.Hatches[0], idx.Hatches[0]), "");
  }
}

TEST(HatchIndex, ContainmentReachAndColumnsAgreeWithTheRayTest) {
  // A closed square, one whose chain ends 0.006 short of its start (not closed for the ray
  // test, so points far below its gap count), a sliver, one with a vertex at infinity, and a
  // ring of 200 vertices with long edges across it, left open the same way.
  struct Case {
    std::vector<std::pair<float, float>> vertices;
    bool open;
  };
  const float inf = std::numeric_limits<float>::infinity();
  std::vector<Case> cases = {
      {{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, false},
      {{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0.006f, 0}}, true},
      {{{1e6f, 1e6f}, {1e6f + 3, 1e6f}, {1e6f, 1e6f + 0.001f}}, false},
      {{{0, 0}, {inf, 0}, {0, 4}}, false},
  };
  Case ring{{}, true};
  for (int i = 0; i < 200; ++i) {
    const double a = i * 0.0314, r = i % 7 == 0 ? 0.5 : 3;
    ring.vertices.push_back(
        {static_cast<float>(r * std::cos(a)), static_cast<float>(r * std::sin(a))});
  }
  ring.vertices.push_back({ring.vertices[0].first + 0.004f, ring.vertices[0].second});
  cases.push_back(ring);
  for (const Case& c : cases) {
    TPolygon p;
    for (auto [x, y] : c.vertices) AppendPoint(p, x, y);
    const hatch::ContainmentReach reach = hatch::ReachOf(p);
    const ContainmentColumns columns(p);
    EXPECT_EQ(reach.open, c.open);
    const float x0 = c.vertices[0].first, y0 = c.vertices[0].second;
    int hits = 0;
    for (int i = -300; i <= 300; ++i)
      for (int j = -300; j <= 300; ++j) {
        const float x = x0 + 0.003f + 0.0173f * static_cast<float>(i);
        const float y = y0 + 0.0171f * static_cast<float>(j) + (j < -250 ? -1000.0f : 0.0f);
        const int r = ContainsPoint(p, x, y);
        ASSERT_EQ(columns.Contains(x, y), r) << x << ", " << y;
        if (r < 0) continue;
        ++hits;
        if (!IsFinite(reach.box)) continue;  // handed to every question
        const IndexBox point{x, y, x, y};
        EXPECT_TRUE(Meet(reach.box, point) || (reach.open && Meet(reach.below, point)))
            << x << ", " << y;
      }
    EXPECT_GT(hits, 0);
    FreePoints(p);
  }
}

}  // namespace
}  // namespace isolith
