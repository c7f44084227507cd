#include <gtest/gtest.h>

#include <random>

#include "core/board/BoardOps.h"

namespace isolith {
namespace {

TPad* AddPad(Board& b, int layer, float x, float y, uint8_t code = 10) {
  TPad* p = new TPad{code, 0, x, y, nullptr};
  TPad* tail = LastPad(b.Pads[layer]);
  AppendTo(b.Pads[layer], tail, p);
  return p;
}

TTrack* AddTrack(Board& b, int layer, float x1, float y1, float x2, float y2) {
  TTrack* t = new TTrack{10, 0, x1, y1, x2, y2, nullptr};
  TTrack* tail = LastTrack(b.Tracks[layer]);
  AppendTo(b.Tracks[layer], tail, t);
  return t;
}

TDrill* AddDrill(Board& b, float x, float y) {
  TDrill* d = new TDrill{1, 0, x, y, nullptr};
  TDrill* tail = LastOf(b.Drills);
  AppendTo(b.Drills, tail, d);
  return d;
}

TEST(BoardModel, SamePointIsStrictlyBelowOneThousandth) {
  EXPECT_TRUE(SamePoint(0, 0, 0.0009f, 0.0009f));
  EXPECT_FALSE(SamePoint(0, 0, 0.001f, 0));
  EXPECT_FALSE(SamePoint(10, 10, 10.001f, 10));
  EXPECT_TRUE(SamePoint(10, 10, 10.0009f, 9.9991f));
}

TEST(BoardModel, StartValuesAndLastApertureEntry) {
  Board b;
  EXPECT_EQ(b.PadShape[3][99], kShapeCircle);
  EXPECT_FLOAT_EQ(b.PadSizeX[3][99], 1.27f);
  EXPECT_FLOAT_EQ(b.TrackWidth[3][99], 0.635f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[99], 0.635f);
  b.PadSizeX[3][99] = 2.5f;
  AddPad(b, 3, 1, 1, 99);
  EXPECT_FLOAT_EQ(b.PadSizeX[3][b.Pads[3]->code], 2.5f);
}

TEST(BoardModel, RemovalClearsNamesThatPointAtTheRecord) {
  Board b;
  TPad* a = AddPad(b, 0, 1, 1);
  TPad* c = AddPad(b, 0, 2, 2);
  TPad* d = AddPad(b, 0, 3, 3);
  b.RefPad = c;
  b.HoverPad = c;
  RemovePad(b, 0, c);
  EXPECT_EQ(b.RefPad, nullptr);
  EXPECT_EQ(b.HoverPad, nullptr);
  ASSERT_EQ(b.Pads[0], a);
  EXPECT_EQ(a->next, d);
  RemovePad(b, 0, nullptr);  // does nothing
  EXPECT_EQ(CountOf(b.Pads[0]), 2);

  TDrill* x = AddDrill(b, 5, 5);
  b.HoverDrill = x;
  RemoveDrill(b, x);
  EXPECT_EQ(b.Drills, nullptr);
  EXPECT_EQ(b.HoverDrill, nullptr);
}

TEST(BoardModel, RemoveTracksAtMatchesEitherDirectionAndSkipsTheException) {
  Board b;
  TTrack* keep = AddTrack(b, 0, 0, 0, 5, 5);
  AddTrack(b, 0, 5, 5, 0, 0);
  AddTrack(b, 0, 0.0005f, 0, 5, 5);
  AddTrack(b, 1, 0, 0, 5, 5);
  AddTrack(b, 0, 0, 0, 5, 6);
  EXPECT_TRUE(RemoveTracksAt(b, 0, 0, 5, 5, false, keep));
  EXPECT_EQ(CountOf(b.Tracks[0]), 2);  // the exception and the one to (5, 6)
  EXPECT_EQ(b.Tracks[0], keep);
  EXPECT_EQ(CountOf(b.Tracks[1]), 1);  // another layer, not asked for
  EXPECT_TRUE(RemoveTracksAt(b, 0, 0, 5, 5, true, nullptr));
  EXPECT_EQ(CountOf(b.Tracks[1]), 0);
  EXPECT_FALSE(RemoveTracksAt(b, 0, 0, 5, 5, true, nullptr));
}

TEST(BoardModel, FreeContoursKeepsHatchesOfALayerWithoutContours) {
  Board b;
  b.Hatches[0] = new TPolygon;
  b.Contours[1] = new TPolygon;
  b.Hatches[1] = new TPolygon;
  FreeContours(b, true);
  EXPECT_NE(b.Hatches[0], nullptr);
  EXPECT_EQ(b.Contours[1], nullptr);
  EXPECT_EQ(b.Hatches[1], nullptr);
}

TEST(BoardModel, BoundingBoxCountsCentresAndEndsOnly) {
  Board b;
  float x0, y0, x1, y1;
  BoundingBox(nullptr, nullptr, nullptr, nullptr, x0, y0, x1, y1, false);
  EXPECT_EQ(x0, 1e9f);
  EXPECT_EQ(x1, -1e9f);
  b.PadSizeX[0][10] = 50;  // sizes never enlarge the box
  AddPad(b, 0, 10, 20);
  AddTrack(b, 0, 5, 25, 30, 22);
  BoundingBox(b.Pads[0], b.Tracks[0], nullptr, nullptr, x0, y0, x1, y1, false);
  EXPECT_EQ(x0, 5);
  EXPECT_EQ(y0, 20);
  EXPECT_EQ(x1, 30);
  EXPECT_EQ(y1, 25);
  // The centering holes extend the full box: the first corner low, the second high.
  b.CentreHole1X = 1;
  b.CentreHole1Y = 2;
  b.CentreHole2X = 40;
  b.CentreHole2Y = -1;  // not set
  FullBoundingBox(b, x0, y0, x1, y1);
  EXPECT_EQ(x0, 1);
  EXPECT_EQ(y0, 2);
  EXPECT_EQ(x1, 30);
}

TEST(BoardModel, ScaleByOneLeavesTheCardAndScaleMovesTables) {
  Board b;
  AddPad(b, 0, 10, 20);
  b.CardWidth = 123;
  ScaleLists(b, b.Pads[0], nullptr, nullptr, nullptr, 1.0f, true, true, true, true, true);
  EXPECT_EQ(b.CardWidth, 123);
  ScaleLists(b, b.Pads[0], nullptr, nullptr, nullptr, 2.0f, true, true, false, false, true);
  EXPECT_EQ(b.Pads[0]->x, 20);
  EXPECT_EQ(b.CardWidth, 246);
  EXPECT_FLOAT_EQ(b.PadSizeX[2][5], 2.54f);
  EXPECT_FLOAT_EQ(b.TrackWidth[2][5], 0.635f);
}

TEST(BoardModel, ShiftMovesLayerListsAndAnOriginAwayFromZero) {
  Board b;
  AddPad(b, 0, 1, 1);
  AddPad(b, 1, 1, 1);
  AddDrill(b, 1, 1);
  b.ActiveLayer = 1;
  ShiftLists(b, 2, 3, false, true);
  EXPECT_EQ(b.Pads[1]->x, 3);
  EXPECT_EQ(b.Pads[0]->x, 1);
  EXPECT_EQ(b.Drills->x, 1);  // drills follow layer 0 and 4 only
  EXPECT_EQ(b.OriginX, 0);    // an origin at zero stays at zero
  b.OriginX = 0.2f;
  b.CentreHole1X = 4;
  ShiftLists(b, 1, 1, true, true);
  EXPECT_FLOAT_EQ(b.OriginX, 1.2f);
  EXPECT_FLOAT_EQ(b.OriginY, 1.0f);
  EXPECT_EQ(b.Drills->x, 2);
  EXPECT_EQ(b.CentreHole1X, 5);
  EXPECT_EQ(b.CentreHole1Y, -1);  // an unset corner stays unset
}

TEST(BoardModel, PadOverlapCountsCoincidentPairs) {
  Board b;
  EXPECT_EQ(PadOverlap(b, 1), 0);  // layer 0 without pads
  for (int i = 0; i < 4; ++i) AddPad(b, 0, float(i), 0);
  AddPad(b, 1, 0, 0);
  AddPad(b, 1, 1, 0);
  AddPad(b, 1, 9, 9);
  EXPECT_EQ(PadOverlap(b, 0), 0);
  EXPECT_EQ(PadOverlap(b, 1), 66);  // 2 of the smaller list's 3
  AddDrill(b, 0, 0.0005f);
  EXPECT_EQ(PadOverlap(b, 4), 100);
  EXPECT_EQ(PadOverlap(b, 5), 0);
  // More pairs than items of the smaller list: the larger count is the base.
  Board c;
  AddPad(c, 0, 0, 0);
  AddPad(c, 0, 0, 0);
  AddPad(c, 0, 0, 0);
  AddPad(c, 2, 0, 0);
  AddPad(c, 2, 0, 0);
  EXPECT_EQ(PadOverlap(c, 2), 200);  // 6 pairs over 3

  // The sweep counts the pairs the plain double loop counts: random points on a coarse grid
  // (repeats), spaced by about the tolerance (near misses and near hits), and spread wide.
  std::mt19937 random(5);
  for (int round = 0; round < 40; ++round) {
    std::vector<std::pair<double, double>> a, q;
    const double step = round % 3 == 0 ? 0.0009 : round % 3 == 1 ? 0.001 : 0.25;
    for (auto* list : {&a, &q})
      for (int i = 0, n = 1 + static_cast<int>(random() % 60); i < n; ++i)
        list->emplace_back(static_cast<float>(step * (random() % 7)),
                           static_cast<float>(step * (random() % 7)));
    int plain = 0;
    for (const auto& [ax, ay] : a)
      for (const auto& [qx, qy] : q) plain += SamePoint(ax, ay, qx, qy);
    EXPECT_EQ(CountSamePoints(a, q), plain) << "round " << round;
  }
}

TEST(BoardModel, AlignLayerByPadsDrillsAndTracks) {
  Board b;
  AddPad(b, 0, 10, 10);
  AddPad(b, 0, 20, 15);
  AddPad(b, 1, 0, 0);
  AddPad(b, 1, 10, 5);
  AddTrack(b, 1, 0, 0, 10, 5);
  EXPECT_EQ(AlignLayer(b, 1), 1);
  EXPECT_EQ(b.Pads[1]->x, 10);
  EXPECT_EQ(b.Tracks[1]->y2, 15);
  EXPECT_EQ(PadOverlap(b, 1), 100);
  AddDrill(b, -3, -4);
  AlignLayer(b, 4);
  EXPECT_EQ(b.Drills->x, 10);
  EXPECT_EQ(b.Drills->y, 10);
  EXPECT_EQ(AlignLayer(b, 0), 0);
  EXPECT_EQ(AlignLayer(b, 5), 0);

  // Tracks only: the layer-0 track nearest to zero has an extent of 4 by 3; the same extent on
  // layer 2 fixes the shift, its own end nearest to zero landing on the layer-0 end.
  Board t;
  AddTrack(t, 0, 50, 50, 60, 50);
  AddTrack(t, 0, 5, 6, 9, 9);
  AddTrack(t, 2, 100, 100, 110, 100);
  AddTrack(t, 2, 24, 23, 20, 20);
  AlignLayer(t, 2);
  EXPECT_EQ(t.Tracks[2]->next->x2, 5);
  EXPECT_EQ(t.Tracks[2]->next->y2, 6);
  EXPECT_EQ(t.Tracks[2]->x1, 85);
}

TEST(BoardModel, CompactLayersMovesDownAndCarriesLayerOneApertures) {
  Board b;
  AddPad(b, 2, 1, 1);
  b.LayerName[1] = "ONE";
  b.LayerName[2] = "TWO";
  b.PadSizeX[1][0] = 7;
  b.PadSizeX[1][5] = 8;
  CompactLayers(b);
  EXPECT_NE(b.Pads[0], nullptr);
  EXPECT_EQ(b.Pads[1], nullptr);
  EXPECT_EQ(b.Pads[2], nullptr);
  // The kept oddity: the name and apertures 1..99 always come from layer 1.
  EXPECT_EQ(b.LayerName[0], "");
  EXPECT_EQ(b.LayerName[2], "TWO");
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 1.27f);  // entry 0 is never copied
  EXPECT_FLOAT_EQ(b.PadSizeX[0][5], 8);
}

TEST(BoardModel, CardFromContentKeepsMarginsOfAnInchTenth) {
  Board b;
  AddPad(b, 0, 1, 10);
  AddPad(b, 0, 50, 30);
  SetCardFromContent(b, 1.8f);
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 2.54f);
  EXPECT_FLOAT_EQ(b.OriginX, 1.54f);
  EXPECT_EQ(b.OriginY, 0);
  EXPECT_FLOAT_EQ(b.CardWidth, 51.54f + 2.54f);
  EXPECT_FLOAT_EQ(b.CardHeight, 40);
  EXPECT_FLOAT_EQ(b.CardThickness, 1.8f);
}

TEST(BoardModel, ResetJobEmptiesTheJob) {
  Board b;
  b.RefPad = AddPad(b, 0, 1, 1);
  AddDrill(b, 1, 1);
  b.CardWidth = 10;
  b.LayerName[0] = "X.GBR";
  b.ActiveLayer = 4;
  EXPECT_EQ(CountLayers(b), 2);
  ResetJob(b);
  EXPECT_EQ(b.Pads[0], nullptr);
  EXPECT_EQ(b.Drills, nullptr);
  EXPECT_EQ(b.RefPad, nullptr);
  EXPECT_EQ(b.CardWidth, 100);
  EXPECT_EQ(b.CardHeight, 70);
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_EQ(b.LayerName[0], "");
  EXPECT_EQ(CountLayers(b), 0);
}

}  // namespace
}  // namespace isolith
