#include "toolpath/geometry/Polylines.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "toolpath/geometry/Scalars.h"

namespace isolith {
namespace {

using Points = std::initializer_list<std::pair<float, float>>;

void Fill(TPolygon& polygon, Points points) {
  TXY* tail = nullptr;
  for (auto [x, y] : points) AppendPoint(polygon, tail, x, y);
}

float Turns(Points points) {
  TPolygon polygon;
  Fill(polygon, points);
  return TurnSum(polygon.first);
}

TEST(Polylines, BuildWalkReverseAndFree) {
  TPolygon polygon;
  EXPECT_EQ(LastPoint(polygon), nullptr);
  EXPECT_EQ(CountPoints(polygon), 0);
  TXY* a = AppendPoint(polygon, 1, 2);
  TXY* b = AppendPoint(polygon, 3, 4);
  TXY* c = AppendPoint(polygon, 5, 6);
  b->flags = 0x01;
  EXPECT_EQ(CountPoints(polygon), 3);
  EXPECT_EQ(LastPoint(polygon), c);
  EXPECT_EQ(PreviousPoint(polygon, c), b);
  EXPECT_EQ(PreviousPoint(polygon, a), nullptr);

  ReversePolygon(polygon);  // odd count: the middle stays
  EXPECT_EQ(polygon.first, a);
  EXPECT_EQ(a->x, 5);
  EXPECT_EQ(a->y, 6);
  EXPECT_EQ(b->x, 3);
  EXPECT_EQ(c->x, 1);
  EXPECT_EQ(c->y, 2);
  EXPECT_EQ(b->flags, 0x01);  // flags do not move with the coordinates

  TXY* d = AppendPoint(polygon, 7, 8);
  d->flags = 0x80;
  ReversePolygon(polygon);  // even count
  EXPECT_EQ(a->x, 7);
  EXPECT_EQ(b->x, 1);
  EXPECT_EQ(c->x, 3);
  EXPECT_EQ(d->x, 5);
  EXPECT_EQ(d->flags, 0x80);
  EXPECT_EQ(a->flags, 0);

  FreePoints(polygon);
  EXPECT_EQ(polygon.first, nullptr);
  ReversePolygon(polygon);
}

TEST(Polylines, TurnSumSignAndSkippedTurns) {
  EXPECT_EQ(Turns({}), 0);
  EXPECT_EQ(Turns({{0, 0}}), 0);
  EXPECT_EQ(Turns({{0, 0}, {1, 1}}), 0);
  // A closed square: three quarter turns, the closing turn at the first point not counted.
  EXPECT_FLOAT_EQ(Turns({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}), 3 * HalfPi);
  EXPECT_FLOAT_EQ(Turns({{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}}), -3 * HalfPi);
  // Legs folding straight back turn neither way.
  EXPECT_EQ(Turns({{0, 0}, {2, 0}, {1, 0}}), 0);
  EXPECT_EQ(Turns({{0, 0}, {0, 1}, {0, 0}}), 0);
  EXPECT_FLOAT_EQ(Turns({{0, 0}, {2, 0}, {1, 0}, {1, 1}}), -HalfPi);
  // A repeated vertex is skipped, and the empty leg leaves a heading of 0 behind it.
  EXPECT_FLOAT_EQ(Turns({{0, 0}, {1, 0}, {1, 0}, {1, 1}}), HalfPi);
  EXPECT_EQ(Turns({{0, 0}, {0, 1}, {0, 1}, {-1, 1}}), 0);
}

TEST(Polylines, ContainsPointWithBoundaryTolerance) {
  TPolygon square;  // open: the closing edge is added
  Fill(square, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  EXPECT_EQ(ContainsPoint(square, 5, 5), 1);
  EXPECT_EQ(ContainsPoint(square, 15, 5), -1);
  EXPECT_EQ(ContainsPoint(square, 5, -3), -1);
  EXPECT_EQ(ContainsPoint(square, 10, 5), 0);  // exactly on a vertical edge
  EXPECT_EQ(ContainsPoint(square, 0, 5), 0);   // on the closing edge
  EXPECT_EQ(ContainsPoint(square, 10.005f, 5), 0);
  EXPECT_EQ(ContainsPoint(square, 10.02f, 5), -1);
  EXPECT_EQ(ContainsPoint(square, 9.98f, 5), 1);
  EXPECT_EQ(ContainsPoint(square, 5, 0), 0);
  EXPECT_EQ(ContainsPoint(square, 5, 9.995f), 0);
  EXPECT_EQ(ContainsPoint(square, 5, 10.02f), -1);
  // Corners: an edge counts only where it crosses the point's column, or as a vertical edge
  // through the point near its start; so the lower-left corner of this square reads outside,
  // and so does a point just outside the end of a vertical edge.
  EXPECT_EQ(ContainsPoint(square, 10, 0), 0);
  EXPECT_EQ(ContainsPoint(square, 0, 0), -1);
  EXPECT_EQ(ContainsPoint(square, 10.005f, -0.005f), 0);
  EXPECT_EQ(ContainsPoint(square, 10.005f, 10.005f), -1);

  TPolygon closed;  // the same square closed by a last point near the first
  Fill(closed, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0.005f, 0.005f}});
  EXPECT_EQ(ContainsPoint(closed, 5, 5), 1);
  EXPECT_EQ(ContainsPoint(closed, -1, 5), -1);

  TPolygon triangle;
  Fill(triangle, {{0, 0}, {10, 0}, {0, 10}});
  EXPECT_EQ(ContainsPoint(triangle, 4, 4), 1);
  EXPECT_EQ(ContainsPoint(triangle, 5, 5), 0);
  EXPECT_EQ(ContainsPoint(triangle, 6, 6), -1);

  TPolygon empty;
  EXPECT_EQ(ContainsPoint(empty, 0, 0), -1);
}

TEST(Polylines, ListContainsPointStopsAtTheFirstAnswer) {
  TPolygon* big = new TPolygon;
  Fill(*big, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  TPolygon* small = new TPolygon;
  Fill(*small, {{5, 5}, {8, 5}, {8, 8}, {5, 8}});
  big->next = small;
  EXPECT_EQ(ListContainsPoint(big, 5, 6), 1);  // inside the big one, found first
  EXPECT_EQ(ListContainsPoint(big, 20, 6), -1);
  EXPECT_EQ(ListContainsPoint(big, 10, 6), 0);
  big->next = nullptr;
  small->next = big;
  EXPECT_EQ(ListContainsPoint(small, 5, 6), 0);  // the small one's edge comes first now
  EXPECT_EQ(ListContainsPoint(nullptr, 0, 0), -1);
  delete small;
  delete big;
}

TEST(Polylines, RemoveDegenerateSegmentsKeepsOrder) {
  TSeg* head = nullptr;
  TSeg* tail = nullptr;
  for (auto [x2, y2] : Points{{0.01f, 0.01f}, {5, 0}, {1.005f, 0}, {0, 0.02f}, {0, -0.01f}}) {
    TSeg* s = new TSeg;
    s->x1 = x2 < 1 ? 0 : 1;
    s->x2 = x2;
    s->y2 = y2;
    AppendTo(head, tail, s);
  }
  head = RemoveDegenerateSegments(head);
  ASSERT_EQ(CountOf(head), 2);
  EXPECT_EQ(head->x2, 5);
  EXPECT_EQ(head->next->y2, 0.02f);
  FreeChain(head);
  EXPECT_EQ(RemoveDegenerateSegments(nullptr), nullptr);
}

}  // namespace
}  // namespace isolith
