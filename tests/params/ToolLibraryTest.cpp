#include "params/ToolLibrary.h"

#include <gtest/gtest.h>

#include <cmath>

namespace isolith {
namespace {

TToolData Tool(float diameter, int profile = kProfileCylindrical, float angleDegrees = 0,
               float minDiameter = 0) {
  TToolData t;
  ResetTool(t);
  t.Diameter = diameter;
  t.Profile = profile;
  t.ConicalAngle = static_cast<float>(angleDegrees * kDegreesToRadians);
  t.ConicalMinDiam = minDiameter;
  return t;
}

TEST(ToolLibrary, ResetGivesAUsableToolFromADiameterAlone) {
  TToolData t;
  t.Diameter = 3;
  t.Color = 77;
  ResetTool(t);
  EXPECT_EQ(t.Diameter, 0);
  EXPECT_EQ(t.Color, 0u);
  EXPECT_TRUE(t.AutoSensor);
  EXPECT_EQ(t.AbsPlotSpeed, 60);
  EXPECT_EQ(t.RotationSpeed, 8000);
  EXPECT_EQ(t.RelDrillSpeed, 50);
  EXPECT_EQ(t.NumberOfTeeth, 1);
}

TEST(ToolLibrary, NormaliseAppliesTheTableRules) {
  ToolTable tools{};
  tools[0] = Tool(1, kProfileCylindrical, 60, 0.5f);    // angle and minimum go
  tools[1] = Tool(1, kProfileHemispherical, 60, 0.5f);  // angle goes, minimum stays
  tools[2] = Tool(1, kProfilePyramidal, 60, 0.5f);      // both stay
  tools[3] = Tool(1);
  tools[3].RelDrillSpeed = 0;  // neither plunge speed: 50 %
  tools[4] = Tool(1);
  tools[4].AbsDrillSpeed = 120;  // absolute wins
  tools[5].Color = 5;            // empty slot: reset
  NormaliseTools(tools);
  EXPECT_EQ(tools[0].ConicalAngle, 0);
  EXPECT_EQ(tools[0].ConicalMinDiam, 0);
  EXPECT_EQ(tools[1].ConicalAngle, 0);
  EXPECT_EQ(tools[1].ConicalMinDiam, 0.5f);
  EXPECT_NE(tools[2].ConicalAngle, 0);
  EXPECT_EQ(tools[2].ConicalMinDiam, 0.5f);
  EXPECT_EQ(tools[3].RelDrillSpeed, 50);
  EXPECT_EQ(tools[4].RelDrillSpeed, 0);
  EXPECT_EQ(tools[5].Color, 0u);
  EXPECT_EQ(tools[5].RotationSpeed, 8000);
}

TEST(ToolLibrary, PlungeSpeedsAreLockedUpToTheFirstGap) {
  ToolTable tools{};
  tools[0] = Tool(1);
  tools[1] = Tool(2);
  tools[1].AbsDrillSpeed = 200;
  tools[1].RelDrillSpeed = 0;
  tools[3] = Tool(3);  // behind the gap at slot 2
  LockPlungeSpeeds(tools);
  EXPECT_EQ(tools[0].AbsDrillSpeed, 60);
  EXPECT_EQ(tools[0].RelDrillSpeed, 0);
  EXPECT_EQ(tools[1].AbsDrillSpeed, 200);
  EXPECT_EQ(tools[3].AbsDrillSpeed, 0);
  EXPECT_EQ(tools[3].RelDrillSpeed, 50);

  EXPECT_EQ(ToolPlungeSpeed(tools[1], 600), 200);
  EXPECT_EQ(ToolPlungeSpeed(tools[3], 600), 300);
  EXPECT_EQ(ToolPlungeSpeed(tools[3], 65536 + 100), 50);  // the feed is a 16-bit value
  EXPECT_EQ(ToolPlungeSpeed(tools[3], 333), 166);
}

TEST(ToolLibrary, CutWidthAtDepthByProfile) {
  TToolData cylinder = Tool(2);
  EXPECT_EQ(ToolCutWidth(cylinder, 0), 0);
  EXPECT_EQ(ToolCutWidth(cylinder, -1), 0);
  EXPECT_EQ(ToolCutWidth(cylinder, 0.3f), 2);

  TToolData vbit = Tool(3.175f, kProfileConical, 90, 0.1f);
  EXPECT_NEAR(ToolCutWidth(vbit, 0.25f), 0.6, 1e-5);
  EXPECT_NEAR(ToolCutWidth(vbit, 5), 3.175, 1e-6);  // never wider than the tool

  // A minimum not below the diameter is dropped from the record at the first width.
  TToolData odd = Tool(1, kProfileConical, 90, 1);
  EXPECT_NEAR(ToolCutWidth(odd, 0.2f), 0.4, 1e-5);
  EXPECT_EQ(odd.ConicalMinDiam, 0);
  TToolData pyramid = Tool(2, kProfilePyramidal, 90, 3);
  EXPECT_NEAR(ToolCutWidth(pyramid, 0.5f), 1, 1e-5);
  EXPECT_EQ(pyramid.ConicalMinDiam, 0);
  pyramid.ConicalMinDiam = 1.5f;
  EXPECT_NEAR(ToolCutWidth(pyramid, 0.5f), 1.5, 1e-6);

  TToolData ball = Tool(2, kProfileHemispherical);
  EXPECT_NEAR(ToolCutWidth(ball, 0.5f), 2 * std::sqrt(1 - 0.25), 1e-5);
  EXPECT_EQ(ToolCutWidth(ball, 1.01f), 2);  // deeper than the radius: full diameter

  TToolData arcade = Tool(2, kProfileArcade, 0, 0.1f);
  EXPECT_NEAR(ToolCutWidth(arcade, 0.6f), 2 - 2 * std::sqrt(1 - 0.36), 1e-5);
  EXPECT_NEAR(ToolCutWidth(arcade, 0.01f), 0.1, 1e-6);
  EXPECT_EQ(ToolCutWidth(arcade, 1.5f), 2);

  ToolTable tools{};
  tools[4] = Tool(1.5f);
  EXPECT_EQ(ToolCutWidthByIndex(tools, -1, 0.2f, 0.33f), 0.33f);
  EXPECT_EQ(ToolCutWidthByIndex(tools, 4, 0.2f, 0.33f), 1.5f);
}

TEST(ToolLibrary, LabelsAndDrillingFaults) {
  ToolTable tools{};
  tools[0] = Tool(0.8f);
  SetToolName(tools[0], "Drill");
  tools[0].NumberOfTeeth = 2;
  tools[11] = Tool(3.175f, kProfileConical, 45);
  SetToolName(tools[11], "V-bit");

  std::string label;
  FormatToolLabel(label, tools[0]);
  EXPECT_EQ(label, "Drill   \xC3\xB8 0.8   2 flutes");
  EXPECT_EQ(ToolChoiceLabel(tools, 0), "  1 > Drill   \xC3\xB8 0.8   cylindrical");
  EXPECT_EQ(ToolChoiceLabel(tools, 11, ','), "12 > V-bit   \xC3\xB8 3,175   conical 45\xC2\xB0");
  EXPECT_EQ(ToolHeaderLabel(tools, 1), "2 > Undefined");
  tools[0].NumberOfTeeth = 1;
  label.clear();
  FormatToolLabel(label, tools[0]);
  EXPECT_EQ(label, "Drill   \xC3\xB8 0.8   1 flute");

  EXPECT_EQ(DrillingToolFault(tools, -1), nullptr);
  EXPECT_EQ(DrillingToolFault(tools, 0), nullptr);
  EXPECT_STREQ(DrillingToolFault(tools, 1), "This tool was not defined in the tool library.");
  EXPECT_STREQ(DrillingToolFault(tools, 11), "Selected tool profile is not cylindrical.");

  // Names hold 47 bytes and are never cut inside a character.
  SetToolName(tools[1], std::string(46, 'a') + "\xC3\xB8" + "zz");
  EXPECT_EQ(ToolName(tools[1]), std::string(46, 'a'));
}

}  // namespace
}  // namespace isolith
