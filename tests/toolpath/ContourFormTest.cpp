#include "toolpath/ContourForm.h"

#include <gtest/gtest.h>

#include "support/FakePlatform.h"

namespace isolith {
namespace {

// A table whose slot 2 (tool number 3) is a cylindrical 0.4 mm cutter.
ToolTable CylindricalTool() {
  ToolTable tools{};
  tools[2].Diameter = 0.4f;
  tools[2].Profile = kProfileCylindrical;
  SetToolName(tools[2], "Engraver");
  return tools;
}

TEST(ContourForm, DistanceFollowsTheContourTool) {
  ToolTable tools = CylindricalTool();
  Settings s;
  s.MillingMargin = 0.1f;
  EXPECT_FLOAT_EQ(ContourDistance(s, tools), 0.25f);  // no tool: no margin either
  s.MillingTool = 2;
  EXPECT_FLOAT_EQ(ContourDistance(s, tools), 0.5f);
  EXPECT_TRUE(ContourToolReady(s, tools));
  s.MillingTool = 5;  // an empty slot is no tool
  EXPECT_FALSE(ContourToolReady(s, tools));
}

TEST(ContourForm, ShowsTheToolOrUndefined) {
  ToolTable tools = CylindricalTool();
  Settings s;
  s.MillingTool = -1;
  s.MillingDepth = 0.2f;
  s.MillingNb1 = 2;
  s.MillingNb2 = 1;
  bool allLayers = true;
  TDialogContour none(s, tools, allLayers, ',');
  EXPECT_EQ(none.toolLabel, "Undefined");
  EXPECT_FALSE(none.distance.has_value());
  EXPECT_FLOAT_EQ(none.depth, 0.2f);
  EXPECT_EQ(none.passes, "2");
  EXPECT_EQ(none.padPasses, "1");
  EXPECT_TRUE(none.allLayers);

  s.MillingTool = 2;
  TDialogContour one(s, tools, allLayers, ',');
  EXPECT_EQ(one.toolLabel.rfind("3 > Engraver", 0), 0u) << one.toolLabel;
  EXPECT_NE(one.toolLabel.find("0,4"), std::string::npos) << one.toolLabel;
  ASSERT_TRUE(one.distance.has_value());
  EXPECT_FLOAT_EQ(*one.distance, 0.4f);
}

TEST(ContourForm, CountsAreWholeNumbersInRangeAndWrittenOnlyWhenAllAreGood) {
  ToolTable tools = CylindricalTool();
  Settings s;
  s.MillingNb1 = 2;
  s.MillingNb2 = 1;
  bool allLayers = false;
  test::FakePlatform fake;

  TDialogContour form(s, tools, allLayers, '.');
  form.allLayers = true;
  form.fast = true;
  form.passes = "0";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogContour::kPasses);
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].title, "Error");
  EXPECT_NE(fake.messages[0].text.find("Number"), std::string::npos);

  form.passes = "1.5";  // not whole
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogContour::kPasses);

  form.passes = "2*5";  // an expression stands for a number; 10 is the most
  form.padPasses = "11";
  EXPECT_FALSE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogContour::kPadPasses);
  // Nothing was written by the refusals.
  EXPECT_EQ(s.MillingNb1, 2);
  EXPECT_EQ(s.MillingNb2, 1);
  EXPECT_FALSE(s.FastCalcul);
  EXPECT_FALSE(allLayers);

  form.padPasses = "0";
  EXPECT_TRUE(form.Accept(fake));
  EXPECT_EQ(form.focus, TDialogContour::kNoField);
  EXPECT_EQ(s.MillingNb1, 10);
  EXPECT_EQ(s.MillingNb2, 0);
  EXPECT_TRUE(s.FastCalcul);
  EXPECT_TRUE(allLayers);
}

}  // namespace
}  // namespace isolith
