#include "toolpath/geometry/Angles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "toolpath/geometry/Scalars.h"

namespace isolith {
namespace {

TEST(Scalars, ConstantsAreTheStatedFloats) {
  EXPECT_EQ(Pi, static_cast<float>(3.14159265358979));
  EXPECT_EQ(HalfPi, Pi / 2);
  EXPECT_EQ(TwoPi, Pi * 2);
  EXPECT_EQ(kNearTolerance, 0.01f);
}

TEST(Scalars, MinMaxSwapAndOrder) {
  EXPECT_EQ(MinF(2, -3), -3);
  EXPECT_EQ(MaxF(2, -3), 2);
  EXPECT_EQ(AbsF(-1.5f), 1.5f);
  float x1 = 5, y1 = 1, x2 = 2, y2 = 4;
  OrderBox(x1, y1, x2, y2);  // each axis on its own
  EXPECT_EQ(x1, 2);
  EXPECT_EQ(x2, 5);
  EXPECT_EQ(y1, 1);
  EXPECT_EQ(y2, 4);
}

TEST(Angles, NormalizeIntoHalfOpenRange) {
  float a = -Pi;
  NormalizeAngle(a);
  EXPECT_EQ(a, Pi);  // -Pi is outside (-Pi, Pi]
  a = Pi;
  NormalizeAngle(a);
  EXPECT_EQ(a, Pi);
  a = 7;
  NormalizeAngle(a);
  EXPECT_EQ(a, static_cast<float>(7.0 - TwoPi));
  a = -10;  // two turns, each rounded to float when stored
  NormalizeAngle(a);
  float expected = static_cast<float>(-10.0 + TwoPi);
  expected = static_cast<float>(expected + static_cast<double>(TwoPi));
  EXPECT_EQ(a, expected);
}

TEST(Angles, WildValuesDoNotHang) {
  float a = std::numeric_limits<float>::quiet_NaN();
  NormalizeAngle(a);
  EXPECT_TRUE(std::isnan(a));
  a = std::numeric_limits<float>::infinity();
  NormalizeAngle(a);
  a = 1e30f;
  NormalizeAngle(a);
  float b = -1e30f;
  AngleAbove(1e30f, b);
  AngleBelow(-1e30f, b);
  a = 1000;
  NormalizeAngle(a);
  EXPECT_GT(a, -Pi);
  EXPECT_LE(a, Pi);
}

TEST(Angles, AboveAndBelowKeepATenthOfADegree) {
  float b = 0;
  AngleAbove(0, b);  // b not above a by more than a tenth of a degree: one turn up
  EXPECT_EQ(b, TwoPi);
  b = 0.0017f;
  AngleAbove(0, b);
  EXPECT_EQ(b, static_cast<float>(0.0017f + static_cast<double>(TwoPi)));
  b = 0.002f;
  AngleAbove(0, b);
  EXPECT_EQ(b, 0.002f);
  b = -20;
  AngleAbove(0, b);
  EXPECT_GT(b, 0.0017f);
  EXPECT_LT(b, TwoPi + 0.0018f);

  b = 0;
  AngleBelow(0, b);
  EXPECT_EQ(b, -TwoPi);
  b = -0.002f;
  AngleBelow(0, b);
  EXPECT_EQ(b, -0.002f);

  b = 0;
  AngleBeyond(0, b, -1);
  EXPECT_EQ(b, -TwoPi);
  b = 0;
  AngleBeyond(0, b, 0);  // zero direction goes up
  EXPECT_EQ(b, TwoPi);
}

}  // namespace
}  // namespace isolith
