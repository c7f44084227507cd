#include "toolpath/TrackNets.h"

#include <gtest/gtest.h>

#include <random>

#include "OutlineTestBoards.h"

namespace isolith {
namespace {

using test::AddPad;
using test::AddTrack;
using test::CountMarkedTracks;

// Track half-width 0.5 and pad size 0.5 on layer 0: a reach of exactly 1 between them.
void UnitApertures(Board& b) {
  for (int l = 0; l < kCircuitLayers; ++l) {
    b.TrackWidth[l][0] = 1.0f;
    b.PadSizeX[l][0] = 1.0f;
    b.PadSizeY[l][0] = 3.0f;  // the smaller side counts
  }
}

TEST(TrackNets, PadAndTrackContactsKeepTheirBounds) {
  Board b;
  UnitApertures(b);
  EXPECT_FLOAT_EQ(PadTraceSize(b, 0, TPad{}), 0.5f);
  TPad pad;  // at (0, 0)
  TTrack firstEndOnReach{0, 0, 1, 0, 3, 0};
  TTrack secondEndOnReach{0, 0, 3, 0, 1, 0};
  // From the pad: the first end counts up to the reach, the second only below it.
  EXPECT_TRUE(PadReachesTrack(pad, 0.5f, firstEndOnReach, 0.5f));
  EXPECT_FALSE(PadReachesTrack(pad, 0.5f, secondEndOnReach, 0.5f));
  // From the track both ends count up to the reach.
  EXPECT_TRUE(TrackReachesPad(secondEndOnReach, 0.5f, pad, 0.5f));
  // The foot on the track's middle counts.
  TTrack passing{0, 0, -5, 1, 5, 1};
  EXPECT_TRUE(PadReachesTrack(pad, 0.5f, passing, 0.5f));
  EXPECT_TRUE(TrackReachesPad(passing, 0.5f, pad, 0.5f));

  // So the net of a pad depends on where the walk starts.
  AddPad(b, 0, 0, 0);
  TTrack* t = AddTrack(b, 0, 3, 0, 1, 0);
  TracePad(b, 0, b.Pads[0]);
  EXPECT_FALSE(TestFlags(*t, kVisited));
  ClearNetMarks(b);
  TraceTrack(b, 0, true, t);
  EXPECT_TRUE(TestFlags(*b.Pads[0], kVisited));
}

TEST(TrackNets, TracksMeetOnlyWhenTheyReallyTouchWithoutPads) {
  Board b;
  b.TrackWidth[0][0] = 0.5f;
  TTrack* a = AddTrack(b, 0, 0, 0, 10, 0);
  TTrack* parallel = AddTrack(b, 0, 0, 0.3f, 10, 0.3f);         // outlines overlap, axes 0.3 apart
  TTrack* crossing = AddTrack(b, 0, 5, -2, 5, 0.1f);            // crosses a's axis in its middle
  TTrack* beyond = AddTrack(b, 0, 10.005f, -1, 10.005f, 0.1f);  // 0.005 past a's end

  TraceTrack(b, 0, false, a);
  EXPECT_FALSE(TestFlags(*parallel, kVisited));
  EXPECT_TRUE(TestFlags(*crossing, kVisited));
  EXPECT_TRUE(TestFlags(*beyond, kVisited));  // within min(0.01, h) of the axis end

  ClearTrackMarks(b, 0);
  TraceTrack(b, 0, true, a);
  EXPECT_TRUE(TestFlags(*parallel, kVisited));  // full widths: the outlines touch

  // Disabled tracks and planes are followed like any other; the plane walk stops at disabled.
  ClearTrackMarks(b, 0);
  SetFlags(*crossing, kTrackDisabled);
  SetFlags(*beyond, kTrackCopperPlane);
  TraceTrack(b, 0, false, a);
  EXPECT_TRUE(TestFlags(*crossing, kVisited));
  EXPECT_TRUE(TestFlags(*beyond, kVisited));
  ClearTrackMarks(b, 0);
  TraceCopperTrack(b, 0, a);
  EXPECT_FALSE(TestFlags(*crossing, kVisited));
  EXPECT_TRUE(TestFlags(*parallel, kVisited));
}

TEST(TrackNets, ThroughPadsTheNetCrossesLayers) {
  Board b;
  TTrack* top = AddTrack(b, 0, 0, 0, 10, 0);
  TPad* via = AddPad(b, 1, 10, 0);
  TTrack* bottom = AddTrack(b, 1, 10, 0, 10, 10);
  TTrack* elsewhere = AddTrack(b, 1, 50, 50, 60, 50);

  TraceTrack(b, 0, true, top);
  EXPECT_TRUE(TestFlags(*via, kVisited));
  EXPECT_TRUE(TestFlags(*bottom, kVisited));
  EXPECT_FALSE(TestFlags(*elsewhere, kVisited));

  ClearNetMarks(b);
  TraceTrack(b, 0, false, top);
  EXPECT_FALSE(TestFlags(*via, kVisited));
  EXPECT_FALSE(TestFlags(*bottom, kVisited));
}

// A net as long as a filled area can make: the walk keeps its own stack.
TEST(TrackNets, HundredThousandTrackNetIsTracedWhole) {
  constexpr int kTracks = 100000;
  Board b;
  b.TrackWidth[0][0] = 0.05f;
  TTrack* tail = nullptr;
  // Listed from the far end, so that each step of the walk goes one deeper.
  for (int i = kTracks - 1; i >= 0; --i) {
    TTrack* t = new TTrack;
    t->x1 = i * 0.01f, t->y1 = (i % 2) * 0.01f;
    t->x2 = (i + 1) * 0.01f, t->y2 = ((i + 1) % 2) * 0.01f;
    AppendTo(b.Tracks[0], tail, t);
  }
  TTrack* start = tail;  // the track at x = 0

  TraceTrack(b, 0, false, start);
  EXPECT_EQ(CountMarkedTracks(b, 0), kTracks);
  ClearTrackMarks(b, 0);
  TraceTrack(b, 0, true, start);
  EXPECT_EQ(CountMarkedTracks(b, 0), kTracks);
  ClearTrackMarks(b, 0);

  AddPad(b, 0, 0, 0);
  TraceTracksFedByPads(b, 0);
  EXPECT_EQ(CountMarkedTracks(b, 0), kTracks);
  ClearNetMarks(b);
  TracePad(b, 0, b.Pads[0]);
  EXPECT_EQ(CountMarkedTracks(b, 0), kTracks);
}

// The narrowed search must mark exactly what the full scan marks.
TEST(TrackNets, IndexedSearchMarksWhatTheFullScanMarks) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<float> coordinate(0, 40);
  std::uniform_real_distribution<float> step(-3, 3);
  std::uniform_int_distribution<int> code(0, 3);
  Board b;
  for (int l = 0; l < 2; ++l) {
    b.TrackWidth[l][0] = 0.2f, b.TrackWidth[l][1] = 0.6f, b.TrackWidth[l][2] = 0.02f;
    b.TrackWidth[l][3] = 1.5f;
    b.PadSizeX[l][1] = 2.0f, b.PadSizeY[l][1] = 1.0f;
    for (int i = 0; i < 400; ++i) {
      const float x = coordinate(random), y = coordinate(random);
      AddTrack(b, l, x, y, x + step(random), i % 7 == 0 ? y : y + step(random),
               static_cast<uint8_t>(code(random)));
    }
    for (int i = 0; i < 40; ++i) {
      TPad* p = AddPad(b, l, coordinate(random), coordinate(random), i % 2);
      if (i % 5 == 0) SetFlags(*p, kPadDisabled);
    }
  }
  auto marks = [&b]() {
    std::vector<bool> m;
    for (int l = 0; l < 2; ++l) {
      for (TTrack* t = b.Tracks[l]; t; t = t->next) m.push_back(TestFlags(*t, kVisited));
      for (TPad* p = b.Pads[l]; p; p = p->next) m.push_back(TestFlags(*p, kVisited));
    }
    ClearNetMarks(b);
    return m;
  };
  int seed = 0;
  for (TTrack* t = b.Tracks[0]; t && seed < 60; t = t->next, ++seed) {
    for (bool throughPads : {false, true}) {
      TraceTrack(b, 0, throughPads, t, NetSearch::Scan);
      const auto scan = marks();
      TraceTrack(b, 0, throughPads, t, NetSearch::Indexed);
      EXPECT_EQ(marks(), scan) << "track " << seed << " through pads " << throughPads;
    }
  }
  for (TPad* p = b.Pads[1]; p; p = p->next) {
    TracePad(b, 1, p, NetSearch::Scan);
    const auto scan = marks();
    TracePad(b, 1, p, NetSearch::Indexed);
    EXPECT_EQ(marks(), scan);
  }
  TraceTracksFedByPads(b, 1, NetSearch::Scan);
  const auto scan = marks();
  TraceTracksFedByPads(b, 1, NetSearch::Indexed);
  EXPECT_EQ(marks(), scan);
}

}  // namespace
}  // namespace isolith
