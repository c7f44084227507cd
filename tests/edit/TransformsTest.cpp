#include <gtest/gtest.h>

#include "core/board/BoardOps.h"
#include "edit/Transforms.h"

namespace isolith {
namespace {

void Pad(Board& b, int layer, float x, float y) {
  TPad* tail = nullptr;
  AppendTo(b.Pads[layer], tail, new TPad{1, 0, x, y, nullptr});
}

void Drill(Board& b, float x, float y) {
  TDrill* tail = nullptr;
  AppendTo(b.Drills, tail, new TDrill{1, 0, x, y, nullptr});
}

TEST(Transforms, FlipOfAnUpperLayerLeavesTheOthers) {
  Board b;
  b.CardWidth = 50;
  Pad(b, 0, 10, 10);
  Pad(b, 1, 10, 10);
  Pad(b, 2, 10, 10);
  Drill(b, 10, 10);
  b.ActiveLayer = 1;
  FlipBoard(b, true, false);
  EXPECT_EQ(b.Pads[1]->x, 40);
  EXPECT_EQ(b.Pads[0]->x, 10);
  EXPECT_EQ(b.Pads[2]->x, 10);
  EXPECT_EQ(b.Drills->x, 10);
  // On layer 0 the drills follow, and the origin is mirrored as well.
  b.ActiveLayer = 0;
  FlipBoard(b, false, true);
  EXPECT_EQ(b.Pads[0]->y, 60);
  EXPECT_EQ(b.Drills->y, 60);
  EXPECT_EQ(b.OriginY, 70);
}

TEST(Transforms, ReframeKeepsACenteringHoleInsideTheMargin) {
  Board b;
  Pad(b, 0, 20, 30);
  Pad(b, 0, 40, 50);
  b.CentreHole1X = 5;
  b.CentreHole1Y = 10;
  b.CentreHole2X = 60;
  b.CentreHole2Y = 55;
  ASSERT_TRUE(ReframeBoard(b));
  EXPECT_FLOAT_EQ(b.CentreHole1X, 2.54f);
  EXPECT_FLOAT_EQ(b.CentreHole1Y, 2.54f);
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 17.54f);
  EXPECT_FLOAT_EQ(b.CardWidth, 55 + 5.08f);
  EXPECT_FLOAT_EQ(b.CardHeight, 45 + 5.08f);
  Board empty;
  EXPECT_FALSE(ReframeBoard(empty));
  EXPECT_EQ(empty.CardWidth, 100);
}

TEST(Transforms, QuarterTurnKeepsTheBoardOnTheCard) {
  Board b;
  b.CardWidth = 60;
  b.CardHeight = 40;
  Pad(b, 0, 10, 5);
  Pad(b, 0, 30, 25);
  b.PadSizeX[0][1] = 3;
  b.PadSizeY[0][1] = 1;
  RotatePlus(b);
  EXPECT_EQ(b.CardWidth, 40);
  EXPECT_EQ(b.CardHeight, 60);
  // The content's box keeps its lower-left corner, axes exchanged.
  float x0, y0, x1, y1;
  FullBoundingBox(b, x0, y0, x1, y1);
  EXPECT_FLOAT_EQ(x0, 5);
  EXPECT_FLOAT_EQ(y0, 10);
  EXPECT_FLOAT_EQ(x1, 25);
  EXPECT_FLOAT_EQ(y1, 30);
  EXPECT_EQ(b.PadSizeX[0][1], 1);
  EXPECT_EQ(b.PadSizeY[0][1], 3);
  EXPECT_EQ(b.OriginX, 0);  // a zero origin stays at zero
  EXPECT_EQ(b.OriginY, 0);
  // A turn and its opposite give the board back.
  RotateMinus(b);
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 10);
  EXPECT_FLOAT_EQ(b.Pads[0]->y, 5);
}

TEST(Transforms, NonZeroOriginTurnsWithTheBoard) {
  Board b;
  b.CardWidth = 60;
  b.CardHeight = 40;
  Pad(b, 0, 10, 5);
  Pad(b, 0, 30, 25);
  b.OriginX = 10;
  b.OriginY = 5;  // on the first pad
  RotatePlus(b);
  EXPECT_FLOAT_EQ(b.OriginX, b.Pads[0]->x);
  EXPECT_FLOAT_EQ(b.OriginY, b.Pads[0]->y);
}

TEST(Transforms, ScaleMultipliesTablesAndCardByTheFourthPower) {
  Board b;
  Pad(b, 0, 10, 10);
  Drill(b, 4, 4);
  b.Contours[2] = new TPolygon;
  ScaleBoard(b, 2, ScaleChoice{});
  EXPECT_EQ(b.Pads[0]->x, 20);
  EXPECT_EQ(b.Drills->x, 8);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][1], 1.27f * 16);
  EXPECT_FLOAT_EQ(b.DrillDiameter[3], 0.635f * 16);
  EXPECT_EQ(b.CardWidth, 1600);
  EXPECT_EQ(b.Contours[2], nullptr);
  ScaleChoice sizesOnly{false, true, false, false};
  ScaleBoard(b, 0.5f, sizesOnly);
  EXPECT_EQ(b.Pads[0]->x, 20);
  EXPECT_EQ(b.CardWidth, 1600);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][1], 1.27f);
}

TEST(Transforms, NegativeShiftOnTheCutoutLayerMovesTheCircuitAway) {
  Board b;
  Pad(b, 0, 20, 20);
  auto* c = new TCutout;
  c->outline = new TPolygon;
  c->outline->first = new TXY{10, 10, 0, nullptr};
  b.Cutouts = c;
  b.ActiveLayer = kCutoutLayer;
  ShiftBoard(b, -5, 0, false, 1.5f);
  EXPECT_EQ(b.Pads[0]->x, 25);
  EXPECT_EQ(c->outline->first->x, 10);
  EXPECT_EQ(b.CardThickness, 1.5f);
}

TEST(Transforms, AdjustOnReferenceMovesTheLayerAndShrinksTheCard) {
  Board b;
  Pad(b, 0, 10, 10);
  Pad(b, 1, 12, 13);
  Pad(b, 1, 30, 30);
  b.CardWidth = 40;
  b.CardHeight = 40;
  b.RefPad = b.Pads[0];
  b.ActiveLayer = 1;
  EXPECT_FALSE(AdjustOnReference(b));  // nothing hovered
  b.HoverPad = b.Pads[1];
  ASSERT_TRUE(AdjustOnReference(b));
  EXPECT_EQ(b.Pads[1]->x, 10);
  EXPECT_EQ(b.Pads[1]->next->y, 27);
  EXPECT_EQ(b.CardWidth, 38);
  EXPECT_EQ(b.CardHeight, 37);
}

TEST(Transforms, PadAperturesTurnOnlyOnCircuitLayersUnlessCtrl) {
  Board b;
  b.PadSizeX[3][7] = 2;
  b.ActiveLayer = kDrillLayer;
  EXPECT_FALSE(RotatePadApertures(b, false));
  EXPECT_EQ(b.PadSizeX[3][7], 2);
  EXPECT_TRUE(RotatePadApertures(b, true));
  EXPECT_FLOAT_EQ(b.PadSizeX[3][7], 1.27f);
  EXPECT_EQ(b.PadSizeY[3][7], 2);
}

}  // namespace
}  // namespace isolith
