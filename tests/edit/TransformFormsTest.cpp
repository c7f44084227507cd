#include "edit/TransformForms.h"

#include <gtest/gtest.h>

#include "core/board/BoardOps.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

void Pad(Board& b, int layer, float x, float y) {
  TPad* tail = nullptr;
  AppendTo(b.Pads[layer], tail, new TPad{1, 0, x, y, nullptr});
}

// A board with content from (10, 10) to (40.5, 30.25) on a 100 by 70 card.
void SmallBoard(Board& b) {
  Pad(b, 0, 10, 10);
  Pad(b, 0, 40.5f, 30.25f);
}

TEST(TransformForms, SizeRefusesInOrderAndAppliesNothingUntilAllPass) {
  test::FakePlatform fake;
  Board b;
  SmallBoard(b);
  b.ViewRight = 20;  // zoomed in

  TDialogSize form(b, "mm", '.');
  EXPECT_EQ(form.width, "100");
  EXPECT_EQ(form.height, "70");
  EXPECT_EQ(form.margin, "2.54");
  EXPECT_EQ(form.thickness, "1");
  EXPECT_TRUE(form.reframe);
  EXPECT_TRUE(form.MarginEnabled());
  EXPECT_FALSE(form.SizeEnabled());

  // The thickness comes first, even when another field is wrong too.
  form.thickness = "10.5";
  form.margin = "101";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogSize::kThickness);
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].title, "Error");
  EXPECT_EQ(fake.messages[0].text,
            "Thickness :  10.5 mm\n\nInvalid value.\n\n  ---> Minimum value: 0.01\n"
            "  ---> Maximum value: 10");
  // The slack of 0.001 at both ends.
  form.thickness = "10.0009";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogSize::kMargin);
  EXPECT_EQ(fake.LastMessage(),
            "Margin :  101 mm\n\nInvalid value.\n\n  ---> Minimum value: 0\n"
            "  ---> Maximum value: 100");
  // A bad expression gives the evaluator's words.
  form.margin = "2*(3";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(fake.LastMessage(), "Expected '')'' closing bracket.");
  EXPECT_EQ(b.CardWidth, 100);
  EXPECT_EQ(b.CardThickness, 1);
  EXPECT_EQ(b.Pads[0]->x, 10);

  // Reframed with the margin typed; the thickness stored and the view reset.
  form.margin = "5";
  form.thickness = "1.6";
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogSize::kNoField);
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 5);
  EXPECT_FLOAT_EQ(b.CardWidth, 40.5f);
  EXPECT_FLOAT_EQ(b.CardHeight, 30.25f);
  EXPECT_FLOAT_EQ(b.CardThickness, 1.6f);
  EXPECT_FLOAT_EQ(b.ViewRight, b.CardWidth);
}

TEST(TransformForms, SizeWithoutReframeKeepsTheContentOnTheCard) {
  test::FakePlatform fake;
  fake.decimalSeparator = ',';
  Board b;
  SmallBoard(b);
  TDialogSize form(b, "\"", ',');
  form.reframe = false;
  EXPECT_TRUE(form.SizeEnabled());
  EXPECT_DOUBLE_EQ(form.MinWidth(), 40.5);
  EXPECT_DOUBLE_EQ(form.MinHeight(), 30.25);
  // The margin is not looked at when the box is off.
  form.margin = "-3";
  form.width = "40,4";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogSize::kWidth);
  EXPECT_EQ(fake.LastMessage(),
            "Width :  40,4 \"\n\nInvalid value.\n\n  ---> Minimum value: 40,5\n"
            "  ---> Maximum value: 1000");
  form.width = "40.5";
  form.height = "1000.01";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogSize::kHeight);
  EXPECT_EQ(b.CardWidth, 100);
  form.height = "2*25";
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_FLOAT_EQ(b.CardWidth, 40.5f);
  EXPECT_EQ(b.CardHeight, 50);
  EXPECT_EQ(b.Pads[0]->x, 10);  // nothing moved

  // An empty job may take any size.
  Board empty;
  TDialogSize none(empty, "mm", '.');
  EXPECT_EQ(none.MinWidth(), 0);
  none.reframe = false;
  none.width = "0";
  EXPECT_TRUE(none.Accept(fake));
  EXPECT_EQ(empty.CardWidth, 0);
}

TEST(TransformForms, ThicknessQuestionOffersTheDepths) {
  test::FakePlatform fake;
  Settings s;
  s.LengthUnitLabel = "mm";
  s.DrillingDepth = 1.6f;
  s.CuttingDepth = 1.6f;
  // Within 0.001 of both: no question.
  EXPECT_FALSE(OfferThicknessAsDepths(fake, s, 1.6005f, '.'));
  EXPECT_TRUE(fake.questions.empty());

  s.CuttingDepth = 1.8f;
  fake.answers = {Answer::No};
  EXPECT_FALSE(OfferThicknessAsDepths(fake, s, 1.6f, ','));
  ASSERT_EQ(fake.questions.size(), 1u);
  EXPECT_EQ(fake.questions[0].title, "Warning");
  EXPECT_EQ(fake.questions[0].text,
            "Your selected tools use a depth of\n1,6 mm for drilling and 1,8 mm for cutting.\n\n"
            "Do you wish to change these values to 1,6 mm?");
  EXPECT_FLOAT_EQ(s.CuttingDepth, 1.8f);

  fake.answers = {Answer::Yes};
  EXPECT_TRUE(OfferThicknessAsDepths(fake, s, 2.5f, '.'));
  EXPECT_EQ(s.DrillingDepth, 2.5f);
  EXPECT_EQ(s.CuttingDepth, 2.5f);
  EXPECT_EQ(s.MillingDepth, 0.25f);  // the other depths are left alone
}

TEST(TransformForms, OriginPointLimitsAreTheCard) {
  test::FakePlatform fake;
  Board b;
  b.OriginX = 12.5f;
  b.OriginY = 3;
  b.ViewRight = 20;
  TDialogOriginPoint form(b, "mm", '.');
  EXPECT_EQ(form.FormName(), "TDialogManuPlot");
  EXPECT_EQ(form.title, "Origin point");
  EXPECT_EQ(form.xText, "12.5");
  EXPECT_EQ(form.yText, "3");
  form.xText = "100.0005";  // inside the slack
  form.yText = "-1";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(fake.LastMessage(),
            "Position :  -1 mm\n\nInvalid value.\n\n  ---> Minimum value: 0\n"
            "  ---> Maximum value: 70");
  EXPECT_EQ(b.OriginX, 12.5f);
  EXPECT_EQ(b.ViewRight, 20);
  form.yText = "70";
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_FLOAT_EQ(b.OriginX, 100.0005f);
  EXPECT_EQ(b.OriginY, 70);
  EXPECT_EQ(b.ViewRight, 100);
}

TEST(TransformForms, ScaleFieldsAreTied) {
  Board b;
  b.CardWidth = 80;
  b.CardHeight = 50;
  TDialogScale form(b, "mm", ',');
  EXPECT_EQ(form.scale, "1");
  EXPECT_EQ(form.width, "80");
  EXPECT_EQ(form.height, "50");
  EXPECT_FALSE(form.drillDiametersEnabled);  // no drills
  EXPECT_TRUE(form.choice.drillDiameters);

  form.scale = "1,5";
  form.ScaleEdited();
  EXPECT_EQ(form.width, "120");
  EXPECT_EQ(form.height, "75");

  form.width = "100";
  form.WidthEdited();
  EXPECT_EQ(form.scale, "1,25");
  EXPECT_EQ(form.height, "62,5");

  form.height = "30";
  form.HeightEdited();
  EXPECT_EQ(form.scale, "0,6");
  EXPECT_EQ(form.width, "48");

  // Six decimals in the scale, three in the sizes.
  form.width = "100/3";
  form.WidthEdited();
  EXPECT_EQ(form.scale, "0,416667");
  EXPECT_EQ(form.height, "20,833");

  // A text that is no number leaves the others as they are.
  form.scale = "2x";
  form.ScaleEdited();
  EXPECT_EQ(form.width, "100/3");
  EXPECT_EQ(form.height, "20,833");

  form.choice.coordinates = false;
  EXPECT_FALSE(form.SizeEnabled());

  // A card side of 0 gives no scale.
  Board flat;
  flat.CardHeight = 0;
  TDialogScale zero(flat, "mm", '.');
  zero.height = "10";
  zero.HeightEdited();
  EXPECT_EQ(zero.scale, "1");
}

TEST(TransformForms, ScaleAcceptChecksOnlyWithABoxOn) {
  test::FakePlatform fake;
  Board b;
  Pad(b, 0, 10, 10);
  b.Drills = new TDrill{1, 0, 5, 5, nullptr};
  TDialogScale form(b, "mm", '.');
  EXPECT_TRUE(form.drillDiametersEnabled);
  form.scale = "1000.002";  // beyond the slack
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogScale::kScale);
  EXPECT_EQ(fake.LastMessage(),
            "Scale :  1000.002 \n\nInvalid value.\n\n  ---> Minimum value: 0.001\n"
            "  ---> Maximum value: 1000");
  EXPECT_EQ(b.Pads[0]->x, 10);

  // No box on: OK closes without a check and changes nothing.
  form.choice = ScaleChoice{false, false, false, false};
  EXPECT_TRUE(form.Accept(fake));
  EXPECT_EQ(b.Pads[0]->x, 10);
  EXPECT_EQ(b.CardWidth, 100);

  // Track thicknesses alone: the positions and the card stay, the track table grows by the
  // fourth power.
  form.choice.trackThicknesses = true;
  form.scale = "2";
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_EQ(b.Pads[0]->x, 10);
  EXPECT_EQ(b.CardWidth, 100);
  EXPECT_FLOAT_EQ(b.TrackWidth[2][5], 0.635f * 16);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][1], 1.27f);

  form.choice = ScaleChoice{};
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_EQ(b.Pads[0]->x, 20);
  EXPECT_EQ(b.Drills->x, 10);
  EXPECT_EQ(b.CardWidth, 1600);
}

TEST(TransformForms, ShiftTakesAnyNumber) {
  test::FakePlatform fake;
  Board b;
  Pad(b, 0, 10, 10);
  Pad(b, 1, 10, 10);
  b.ActiveLayer = 1;
  TDialogShift form(b, 1.5f, "mm", '.');
  EXPECT_EQ(form.dx, "0");
  EXPECT_EQ(form.dy, "0");
  EXPECT_FALSE(form.allLayers);
  form.dx = "-1000000";
  form.dy = "1/0";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogShift::kDy);
  EXPECT_EQ(fake.LastMessage(), "Division by zero.");
  EXPECT_EQ(b.Pads[1]->x, 10);

  form.dx = "5";
  form.dy = "-2*2";
  ASSERT_TRUE(form.Accept(fake));
  EXPECT_EQ(b.Pads[0]->x, 10);  // only the active layer moved
  EXPECT_EQ(b.Pads[1]->x, 15);
  EXPECT_EQ(b.Pads[1]->y, 6);
  EXPECT_EQ(b.CardThickness, 1.5f);
  // The card is fitted round the content.
  EXPECT_FLOAT_EQ(b.CardWidth, 25);
}

}  // namespace
}  // namespace isolith
