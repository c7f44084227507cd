#include "toolpath/ContourEdits.h"

#include <gtest/gtest.h>

#include <string>

#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

TPolygon* Path(std::initializer_list<std::pair<float, float>> points) {
  auto* p = new TPolygon;
  for (auto [x, y] : points) AppendPoint(*p, x, y);
  return p;
}

TPolygon* List(std::initializer_list<TPolygon*> paths) {
  TPolygon* head = nullptr;
  TPolygon* tail = nullptr;
  for (TPolygon* p : paths) AppendTo(head, tail, p);
  return head;
}

// "x,y x,y | x,y ..." for the whole list.
std::string Text(const TPolygon* list) {
  std::string out;
  for (const TPolygon* p = list; p; p = p->next) {
    if (!out.empty()) out += " | ";
    for (const TXY* v = p->first; v; v = v->next) {
      char buffer[40];
      std::snprintf(buffer, sizeof buffer, "%s%g,%g", v == p->first ? "" : " ", v->x, v->y);
      out += buffer;
    }
  }
  return out;
}

TEST(ContourEdits, DeleteSegmentInItsThreeCasesThenJoin) {
  struct Case {
    int segment;  // index of the segment's first vertex in the first path
    const char* after;
  };
  const Case cases[] = {
      {0, "10,0 10,10 0,10 0,0"},        // first vertex: the path starts one later
      {3, "0,0 10,0 10,10 0,10"},        // last segment: its last vertex goes
      {1, "0,0 10,0 | 10,10 0,10 0,0"},  // middle: cut in two, the rest right behind
  };
  for (const Case& c : cases) {
    TPolygon* list =
        List({Path({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}), Path({{50, 50}, {60, 50}})});
    TXY* s = list->first;
    for (int i = 0; i < c.segment; ++i) s = s->next;
    ASSERT_TRUE(DeleteContourSegment(list, s));
    EXPECT_EQ(Text(list), std::string(c.after) + " | 50,50 60,50") << c.segment;
    FreeChain(list);
  }
  // The only segment of a two-vertex path takes the path with it; a stranger is refused.
  TPolygon* list = List({Path({{0, 0}, {1, 0}})});
  TXY stranger;
  EXPECT_FALSE(DeleteContourSegment(list, &stranger));
  EXPECT_TRUE(DeleteContourSegment(list, list->first));
  EXPECT_EQ(list, nullptr);

  // The middle segment of a closed loop: the two parts share the loop's start, so the nearest
  // pair of ends (distance 0) joins them there, and the path left is open by the short
  // segment, its ends within the join distance.
  list = List({Path({{0, 0}, {10, 0}, {10.2f, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}})});
  ASSERT_TRUE(DeleteContourSegment(list, list->first->next));
  EXPECT_TRUE(JoinContourEnds(list, 0.5f));
  EXPECT_EQ(Text(list), "10,0 0,0 0,10 20,10 20,0 10.2,0");
  EXPECT_FALSE(JoinContourEnds(list, 0.5f));
  FreeChain(list);
}

TEST(ContourEdits, JoinTurnsPathsAndDropsTheSharedEnd) {
  // A's first end meets B's first end: A is turned; the shared point appears once. The far C
  // and the closed D take no part.
  TPolygon* list = List({Path({{5, 0}, {9, 0}}), Path({{5, 0.005f}, {5, 5}}),
                         Path({{40, 40}, {45, 40}}), Path({{0, 20}, {2, 20}, {2, 22}, {0, 20}})});
  std::vector<int> grown;
  EXPECT_TRUE(JoinContourEnds(list, 0.3f, [&](TPolygon& p) { grown.push_back(CountPoints(p)); }));
  EXPECT_EQ(Text(list), "9,0 5,0 5,5 | 40,40 45,40 | 0,20 2,20 2,22 0,20");
  EXPECT_EQ(grown, std::vector<int>{3});
  EXPECT_FALSE(JoinContourEnds(list, 0.3f));
  FreeChain(list);

  // Ends apart by less than the tolerance but more than 0.01: a connecting segment.
  list = List({Path({{0, 0}, {5, 0}}), Path({{8, 8}, {5.2f, 0}})});
  EXPECT_TRUE(JoinContourEnds(list, 0.5f));
  EXPECT_EQ(Text(list), "0,0 5,0 5.2,0 8,8");
  FreeChain(list);
}

TEST(ContourEdits, PicksAddAndDeletePaths) {
  TPolygon* list = List({Path({{0, 0}, {10, 0}}), Path({{0, 2}, {10, 2}}),
                         Path({{20, 0}, {30, 0}, {30, 10}, {20, 0.05f}})});
  const float r5 = PickRadius(5, 10);  // 10 pixels per mm: 0.5 mm
  EXPECT_FLOAT_EQ(r5, 0.5f);
  EXPECT_EQ(PickRadius(5, 0), 0);
  EXPECT_EQ(PickContour(list, 5, 0.4f, r5), list);
  EXPECT_EQ(PickContour(list, 5, 1.7f, r5), list->next);
  EXPECT_EQ(PickContour(list, 5, 1, r5), nullptr);
  TPolygon* owner = nullptr;
  EXPECT_EQ(PickContourSegment(list, 30.2f, 5, r5, &owner), list->next->next->first->next);
  EXPECT_EQ(owner, list->next->next);
  // Open ends only: the loop whose ends lie within 0.1 offers none.
  EXPECT_FALSE(IsOpenPath(*list->next->next));
  EXPECT_EQ(PickOpenEnd(list, 20, 0.1f, 1.2f), nullptr);
  EXPECT_EQ(PickOpenEnd(list, 10, 1, 1.2f), LastPoint(*list));  // a tie: the first path wins

  // A free segment from (10,0) region: its two loose ends become open ends in their turn.
  TPolygon* added = AddFreeSegment(list, 50, 50, 55, 50);
  EXPECT_EQ(LastOf(list), added);
  EXPECT_EQ(PickOpenEnd(list, 55, 50.5f, 1.2f), LastPoint(*added));
  // Extending at a first end puts the point in front; at a last end behind.
  EXPECT_EQ(ExtendPathAtEnd(list, list->first, -1, 0), list);
  EXPECT_EQ(ExtendPathAtEnd(list, LastPoint(*list), 11, 0), list);
  EXPECT_EQ(Text(list).substr(0, 17), "-1,0 0,0 10,0 11,");
  TXY loose;
  EXPECT_EQ(ExtendPathAtEnd(list, &loose, 1, 1), nullptr);

  EXPECT_TRUE(DeleteContour(list, list->next));
  EXPECT_FALSE(DeleteContour(list, nullptr));
  EXPECT_EQ(CountOf(list), 3);
  FreeChain(list);
  TPolygon* empty = nullptr;
  EXPECT_EQ(PickContour(empty, 0, 0, 1), nullptr);
  EXPECT_FALSE(JoinContourEnds(empty, 1));
}

}  // namespace
}  // namespace isolith
