#include <gtest/gtest.h>

#include <cmath>

#include "core/board/BoardOps.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/Contours.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {
namespace {

TPad* Pad(Board& b, float x, float y, uint8_t code, uint8_t flags = 0) {
  TPad* tail = LastPad(b.Pads[0]);
  TPad* p = new TPad{code, flags, x, y, nullptr};
  AppendTo(b.Pads[0], tail, p);
  return p;
}

TTrack* Track(Board& b, float x1, float y1, float x2, float y2, uint8_t code, uint8_t flags = 0) {
  TTrack* tail = LastTrack(b.Tracks[0]);
  TTrack* t = new TTrack{code, flags, x1, y1, x2, y2, nullptr};
  AppendTo(b.Tracks[0], tail, t);
  return t;
}

bool Closed(const TPolygon& p) {
  const TXY* l = LastPoint(p);
  return NearPoints(p.first->x, p.first->y, l->x, l->y, 0.01f);
}

ContourSettings Settings(float distance, int passes = 1, int padPasses = 0) {
  ContourSettings s;
  s.distance = distance;
  s.passes = passes;
  s.padPasses = padPasses;
  return s;
}

TEST(Contours, LoneRoundPadGivesOneRegularPolygonStartingOnTheAxis) {
  Board b;
  b.PadSizeX[0][10] = b.PadSizeY[0][10] = 1.6f;
  Pad(b, 20, 20, 10);
  auto s = Settings(0.2f);
  CalculateContours(b, 0, s, nullptr);
  ASSERT_NE(b.Contours[0], nullptr);
  const TPolygon& p = *b.Contours[0];
  EXPECT_EQ(p.next, nullptr);
  EXPECT_EQ(CountPoints(p), 33);  // 32 chords, the last vertex repeating the first
  EXPECT_TRUE(Closed(p));
  EXPECT_NEAR(p.first->x, 20.9f, 1e-5);  // (offset + w) / 2 right of the centre
  EXPECT_NEAR(p.first->y, 20.0f, 1e-5);
  EXPECT_EQ(p.flags, kPolygonMark);  // the last pass is marked
}

TEST(Contours, TwoOverlappingPadsGiveOneClosedPathRoundBoth) {
  Board b;
  b.PadSizeX[0][10] = b.PadSizeY[0][10] = 2.0f;
  Pad(b, 10, 10, 10);
  Pad(b, 11.5f, 10, 10);
  auto s = Settings(0.3f);
  CalculateContours(b, 0, s, nullptr);
  ASSERT_NE(b.Contours[0], nullptr);
  const TPolygon& p = *b.Contours[0];
  EXPECT_EQ(p.next, nullptr);
  EXPECT_TRUE(Closed(p));
  // Every vertex keeps half the offset outside both pads: none lies inside either ring.
  for (const TXY* v = p.first; v; v = v->next) {
    EXPECT_GT(Distance(v->x, v->y, 10, 10), 1.14f);
    EXPECT_GT(Distance(v->x, v->y, 11.5f, 10), 1.14f);
  }
  // The path starts at its sharpest corner: where the two rings meet, x = 10.75.
  EXPECT_NEAR(p.first->x, 10.75f, 0.05f);
}

TEST(Contours, ThermalPadLeavesFourOpenArcs) {
  Board b;
  b.PadSizeX[0][10] = b.PadSizeY[0][10] = 2.0f;
  Pad(b, 10, 10, 10, kPadThermal);
  auto s = Settings(0.3f);
  CalculateContours(b, 0, s, nullptr);
  int n = 0;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) {
    ++n;
    EXPECT_FALSE(Closed(*p));
    EXPECT_EQ(CountPoints(*p), 5);  // four chords between two bridges
  }
  EXPECT_EQ(n, 4);
}

TEST(Contours, ExtraPassesGrowOnlyThePadRings) {
  Board b;
  b.PadSizeX[0][10] = b.PadSizeY[0][10] = 1.6f;
  b.TrackWidth[0][11] = 0.4f;
  Pad(b, 10, 10, 10);
  Pad(b, 30, 10, 10);
  Track(b, 10, 10, 30, 10, 11);
  auto s = Settings(0.2f, 2, 1);
  float po, to;
  PassOffsets(s, 2, po, to);
  EXPECT_FLOAT_EQ(po, static_cast<float>(2.34 * 0.2f));
  EXPECT_FLOAT_EQ(to, static_cast<float>(1.67 * 0.2f));
  CalculateContours(b, 0, s, nullptr);
  int marked = 0, total = 0;
  float highest = 0;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) {
    ++total;
    if (p->flags & kPolygonMark) {
      ++marked;
      // In the third pass the track's side, where it crosses x = 20, stays at the second
      // pass's distance.
      for (const TXY* v = p->first; v && v->next; v = v->next) {
        const TXY* w = v->next;
        if ((v->x < 20) != (w->x < 20))
          highest = std::max(highest, v->y + (w->y - v->y) * (20 - v->x) / (w->x - v->x));
      }
    }
  }
  EXPECT_EQ(total, 3);
  EXPECT_EQ(marked, 1);
  EXPECT_NEAR(highest, 10 + (to + 0.4f) / 2, 1e-4);
}

TEST(Contours, ShortTracksVanishAndEngravedTracksChain) {
  Board b;
  b.TrackWidth[0][11] = 1.0f;
  Track(b, 5, 5, 5.05f, 5, 11);  // shorter than a tenth of its width
  Track(b, 10, 10, 20, 10, 11, kTrackEngraved);
  Track(b, 20.005f, 10, 20, 20, 11, kTrackEngraved);
  Track(b, 40, 40, 50, 40, 11, kTrackEngraved);
  auto s = Settings(0.2f);
  CalculateContours(b, 0, s, nullptr);
  EXPECT_EQ(CountOf(b.Tracks[0]), 3);  // the dot is gone from the layer for good
  ASSERT_NE(b.Contours[0], nullptr);
  const TPolygon& a = *b.Contours[0];
  EXPECT_EQ(a.flags, 0);
  EXPECT_EQ(CountPoints(a), 3);
  ASSERT_NE(a.next, nullptr);
  EXPECT_EQ(CountPoints(*a.next), 2);
  EXPECT_EQ(a.next->next, nullptr);
}

TEST(Contours, NothingToDoLeavesNoContours) {
  Board b;
  Pad(b, 10, 10, 10, kPadDisabled);
  auto s = Settings(0.2f, 0, -3);
  CalculateContours(b, 0, s, nullptr);
  EXPECT_EQ(b.Contours[0], nullptr);
  EXPECT_EQ(s.passes, 1);  // counts are clamped for the caller to keep
  EXPECT_EQ(s.padPasses, 0);
  auto tiny = Settings(0.005f);
  b.Pads[0]->flags = 0;
  CalculateContours(b, 0, tiny, nullptr);
  EXPECT_EQ(b.Contours[0], nullptr);
}

TEST(Contours, StartMovesToTheSharpestCornerOnlyPastTheFirstInnerVertex) {
  auto path = [](std::initializer_list<std::pair<float, float>> pts) {
    auto* p = new TPolygon;
    for (auto [x, y] : pts) AppendPoint(*p, x, y);
    return p;
  };
  // The sharpest turn (the spike at (2, 5)) is the third vertex: the path starts there, keeps
  // its direction, and ends on a copy of it.
  TPolygon* a = path({{0, 0}, {2, 0}, {2, 5}, {2.5f, 0}, {4, 0}, {4, 1}, {0, 1}, {0, 0}});
  // The same spike on the first inner vertex leaves the path as it was (and, above all, whole).
  TPolygon* b = path({{2, 0}, {2, 5}, {2.5f, 0}, {4, 0}, {4, 1}, {0, 1}, {0, 0}, {2, 0}});
  a->next = b;
  MoveStartToSharpestCorner(a);
  EXPECT_EQ(a->first->x, 2);
  EXPECT_EQ(a->first->y, 5);
  EXPECT_EQ(CountPoints(*a), 8);
  EXPECT_EQ(LastPoint(*a)->y, 5);
  EXPECT_EQ(a->first->next->x, 2.5f);
  EXPECT_EQ(b->first->x, 2);
  EXPECT_EQ(b->first->y, 0);
  EXPECT_EQ(CountPoints(*b), 8);
  FreePolygons(a);
}

TEST(ContourDraft, ShapesAndThermalGaps) {
  Board b;
  b.PadShape[0][1] = kShapeRectangle;
  b.PadSizeX[0][1] = 2;
  b.PadSizeY[0][1] = 1;
  TPad rect{1, 0, 0, 0, nullptr};
  TSeg* d = BuildPadDraft(b, 0, rect, 0.2f);
  EXPECT_EQ(CountOf(d), 4);
  EXPECT_FLOAT_EQ(d->x1, 1.1f);
  EXPECT_FLOAT_EQ(d->y1, 0.6f);
  FreeChain(d);
  rect.flags = kPadThermal;
  d = BuildPadDraft(b, 0, rect, 0.2f);
  EXPECT_EQ(CountOf(d), 8);
  FreeChain(d);
  for (uint8_t shape : {kShapeObround, kShapeOctagon}) {
    b.PadShape[0][1] = shape;
    rect.flags = 0;
    d = BuildPadDraft(b, 0, rect, 0.2f);
    // A closed loop: every segment starts where the one before ended.
    for (TSeg* s = d; s && s->next; s = s->next) {
      EXPECT_NEAR(s->x2, s->next->x1, 1e-5);
      EXPECT_NEAR(s->y2, s->next->y1, 1e-5);
    }
    FreeChain(d);
  }
  b.PadSizeY[0][1] = 0;  // a pad of size zero has no draft
  EXPECT_EQ(BuildPadDraft(b, 0, rect, 0.2f), nullptr);
  b.PadShape[0][1] = 7;
  b.PadSizeY[0][1] = 1;
  EXPECT_EQ(BuildPadDraft(b, 0, rect, 0.2f), nullptr);
}

TEST(ContourDraft, TrackCapsSitOnTheGlobalGrid) {
  Board b;
  b.TrackWidth[0][1] = 0.4f;
  TTrack t{1, 0, 0, 0, 10, 0, nullptr};
  TSeg* d = BuildTrackDraft(b, 0, t, 0.2f, false);
  // Side, 7 cap chords (the first cap point repeats the corner), side, 7, closing chord.
  EXPECT_EQ(CountOf(d), 1 + 7 + 1 + 1 + 7 + 1);
  FreeChain(d);
  d = BuildTrackDraft(b, 0, t, 0.2f, true);
  EXPECT_EQ(CountOf(d), 1 + 3 + 1 + 1 + 3 + 1);
  FreeChain(d);
  t.flags = kTrackEngraved;
  EXPECT_EQ(BuildTrackDraft(b, 0, t, 0.2f, false), nullptr);
}

}  // namespace
}  // namespace isolith
