// Places of the sample boards where the contour rules themselves leave a path open or a midpoint
// inside copper, rebuilt from the items there with the apertures and positions that the reader
// gives them. The results are the rules' own and must stay: the 0.01 tolerance of the splits,
// and the midpoint of a piece measured against the side of a track but never against its ends.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "core/board/BoardOps.h"
#include "toolpath/Contours.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {
namespace {

constexpr float kDistance = 0.207107f;  // the cutting width of the sample boards' runs

void Pad(Board& b, float x, float y, uint8_t code) {
  TPad* tail = LastPad(b.Pads[0]);
  AppendTo(b.Pads[0], tail, new TPad{code, 0, x, y, nullptr});
}

void Track(Board& b, float x1, float y1, float x2, float y2, uint8_t code) {
  TTrack* tail = LastTrack(b.Tracks[0]);
  AppendTo(b.Tracks[0], tail, new TTrack{code, 0, x1, y1, x2, y2, nullptr});
}

// Calculates the board by the full scans and through the index; both give the same paths,
// bit for bit, which stay in `b`.
template <class Build>
void Calculate(Board& b, Build build) {
  Board other;
  build(b);
  build(other);
  ContourSettings s, t;
  s.distance = t.distance = kDistance;
  s.indexed = false;
  t.indexed = true;
  CalculateContours(b, 0, s, nullptr);
  CalculateContours(other, 0, t, nullptr);
  const TPolygon* p = b.Contours[0];
  const TPolygon* q = other.Contours[0];
  for (; p && q; p = p->next, q = q->next) {
    const TXY* u = p->first;
    const TXY* v = q->first;
    for (; u && v; u = u->next, v = v->next) {
      EXPECT_EQ(std::bit_cast<uint32_t>(u->x), std::bit_cast<uint32_t>(v->x));
      EXPECT_EQ(std::bit_cast<uint32_t>(u->y), std::bit_cast<uint32_t>(v->y));
    }
    EXPECT_TRUE(!u && !v);
  }
  EXPECT_TRUE(!p && !q);
}

// Whether some leg of the contours passes within 0.005 of the point.
bool Milled(const Board& b, float x, float y) {
  for (const TPolygon* p = b.Contours[0]; p; p = p->next)
    for (const TXY* v = p->first; v && v->next; v = v->next) {
      const double dx = double(v->next->x) - v->x, dy = double(v->next->y) - v->y;
      const double len2 = dx * dx + dy * dy;
      double t = len2 > 0 ? ((x - v->x) * dx + (y - v->y) * dy) / len2 : 0;
      t = std::fmin(1, std::fmax(0, t));
      if (std::hypot(v->x + t * dx - x, v->y + t * dy - y) <= 0.005) return true;
    }
  return false;
}

// Whether a path begins or ends at the point.
bool PathEndsAt(const Board& b, float x, float y) {
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) {
    const TXY* last = LastPoint(*p);
    if (NearPoints(p->first->x, p->first->y, x, y, 0.001f) ||
        NearPoints(last->x, last->y, x, y, 0.001f))
      return true;
  }
  return false;
}

// core.GTL: a square pad 0.198 mm above a track, a little less than the cutting width. The top
// of the track's draft crosses the pad's left side 0.009 mm above its corner: within the
// tolerance, so the side is not split there, its end lies inside the track's grown copper and
// the removal drops the whole side. The right side is split higher up by the track that leaves
// the pad, and loses its lower piece the same way. Moved up by 0.011 mm, the crossing is far
// enough from the corner and both sides stay.
TEST(ContourSampleCases, ACrossingWithinTheToleranceOfACornerDropsTheWholeSide) {
  auto build = [](float lift) {
    return [lift](Board& b) {
      b.PadShape[0][10] = kShapeRectangle;
      b.PadSizeX[0][10] = 1.09982f;
      b.PadSizeY[0][10] = 1.00076f;
      b.TrackWidth[0][21] = 0.2032f;
      Pad(b, 15.087599f, 30.873697f, 10);
      Track(b, 17.652998f, 31.064198f, 15.326359f, 31.064198f, 21);
      Track(b, 16.154398f, 30.073597f + lift, 13.436599f, 30.073597f + lift, 21);
    };
  };
  Board tight;
  Calculate(tight, build(0));
  EXPECT_FALSE(Milled(tight, 14.43414f, 30.87f)) << "left side";
  EXPECT_FALSE(Milled(tight, 15.74106f, 30.5f)) << "lower right side";
  EXPECT_TRUE(Milled(tight, 15.74106f, 31.35f)) << "upper right side";
  EXPECT_TRUE(PathEndsAt(tight, 14.43414f, 31.47763f));

  Board loose;
  Calculate(loose, build(0.011f));
  EXPECT_TRUE(Milled(loose, 14.43414f, 30.87f));
  EXPECT_TRUE(Milled(loose, 15.74106f, 30.5f));
}

// arduino-uno.cmp, the letter R drawn in 0.127 mm strokes: the right side of the leg crosses a
// cap chord of the bowl's lower stroke and, 0.0064 mm further on, the side of the bowl's
// diagonal. The first crossing splits the side; the second lies within the tolerance of that
// split and does not, so the piece from the leg's end runs on into the diagonal's grown copper
// and is dropped whole, leaving the outline open at the foot of the leg.
TEST(ContourSampleCases, TwoCrossingsWithinTheToleranceDropThePieceBeforeThem) {
  Board b;
  Calculate(b, [](Board& board) {
    board.TrackWidth[0][28] = 0.127f;
    Track(board, 128.153152f, 18.691858f, 127.772148f, 19.072859f, 28);
    Track(board, 127.962646f, 19.072859f, 127.391151f, 19.072859f, 28);
    Track(board, 128.153152f, 19.263359f, 127.962646f, 19.072859f, 28);
  });
  EXPECT_FALSE(Milled(b, 128.187f, 18.894f));
  EXPECT_TRUE(PathEndsAt(b, 128.27127f, 18.80998f));
  // The outline goes on from the crossing along the diagonal's side.
  EXPECT_TRUE(PathEndsAt(b, 128.10364f, 18.97761f));
  EXPECT_TRUE(Milled(b, 128.1875f, 19.0614f));
}

// freeduino.cmp: a short stroke ends 0.2 mm left of a long one that it crosses. The long
// stroke's left side cuts across the round end of the short one; split where it enters and
// leaves the end's draft, the piece between has its ends outside the end's removal radius and
// its midpoint 0.017 mm from the end itself, inside the copper: the removal measures that
// midpoint against the short stroke's centre line only, where it has no foot.
TEST(ContourSampleCases, AMidpointBeyondATrackEndIsNotMeasuredAgainstIt) {
  Board b;
  Calculate(b, [](Board& board) {
    board.TrackWidth[0][0] = 0.2286f;
    Track(board, 8.343899f, 51.292755f, 8.343899f, 52.288437f, 0);
    Track(board, 8.542019f, 51.892197f, 8.143239f, 51.892197f, 0);
  });
  const float ex = 8.143239f, ey = 51.892197f, copper = 0.2286f / 2;
  int inside = 0;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next)
    for (const TXY* v = p->first; v && v->next; v = v->next) {
      const float mx = (v->x + v->next->x) / 2, my = (v->y + v->next->y) / 2;
      if (Distance(mx, my, ex, ey) >= copper) continue;
      ++inside;
      EXPECT_LT(mx, ex) << "beyond the end";
      EXPECT_GT(Distance(v->x, v->y, ex, ey), 0.2f);
      EXPECT_GT(Distance(v->next->x, v->next->y, ex, ey), 0.2f);
    }
  EXPECT_EQ(inside, 1);
}

}  // namespace
}  // namespace isolith
