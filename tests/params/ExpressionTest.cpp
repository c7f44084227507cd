#include "params/Expression.h"

#include <gtest/gtest.h>

#include "params/FieldChecks.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

float Value(std::string_view text, char separator = '.') {
  ExprResult r = EvaluateExpression(text, separator);
  EXPECT_EQ(r.errorPosition, 0) << text << ": " << r.errorText;
  return r.value;
}

std::string Error(std::string_view text) {
  ExprResult r = EvaluateExpression(text, '.');
  EXPECT_NE(r.errorPosition, 0) << text;
  return r.errorText;
}

TEST(Expression, ReadsLeftToRightWithProductsFirst) {
  EXPECT_FLOAT_EQ(Value("2*(3+4)"), 14);
  EXPECT_FLOAT_EQ(Value("2+3*4"), 14);
  EXPECT_FLOAT_EQ(Value("2*3+4"), 10);
  EXPECT_FLOAT_EQ(Value("10-2-3"), 5);
  EXPECT_FLOAT_EQ(Value("2-3*4-5"), -15);
  EXPECT_FLOAT_EQ(Value("1-2+3"), 2);
  EXPECT_FLOAT_EQ(Value("8/2/2"), 2);
  EXPECT_FLOAT_EQ(Value("(3+4)*2"), 14);
  EXPECT_FLOAT_EQ(Value("-5"), -5);
  EXPECT_FLOAT_EQ(Value("3+-2"), 1);
  EXPECT_FLOAT_EQ(Value("  1.5  "), 1.5f);
  EXPECT_FLOAT_EQ(Value(""), 0);
  EXPECT_FLOAT_EQ(Value("   "), 0);
  EXPECT_FLOAT_EQ(Value("pi"), 3.14159274f);
}

TEST(Expression, KeepsItsQuirks) {
  // A sign after "*" is no sign: an empty operand (0), then minus 3.
  EXPECT_FLOAT_EQ(Value("2*-3"), -3);
  // An error at the very first character reads as a silent 0.
  ExprResult r = EvaluateExpression("*3", '.');
  EXPECT_EQ(r.errorPosition, 0);
  EXPECT_EQ(r.value, 0);
  EXPECT_EQ(r.errorText, "");
  EXPECT_FLOAT_EQ(Value("+3"), 0);
  // So "2/-4" divides by the empty operand.
  EXPECT_EQ(Error("2/-4"), "Division by zero.");
}

TEST(Expression, TakesPointAndCommaForTheSeparator) {
  EXPECT_FLOAT_EQ(Value("1,5"), 1.5f);
  EXPECT_FLOAT_EQ(Value("1,5", ','), 1.5f);
  EXPECT_FLOAT_EQ(Value("1.5*2", ','), 3);
  EXPECT_FLOAT_EQ(Value(".5"), 0.5f);
  EXPECT_EQ(Error("1.2.3"), "Syntax error.");
}

TEST(Expression, Functions) {
  EXPECT_FLOAT_EQ(Value("ABS(-2)"), 2);
  EXPECT_FLOAT_EQ(Value("sin(30)"), 0.5f);
  EXPECT_NEAR(Value("COS(60)"), 0.5f, 1e-6);
  EXPECT_FLOAT_EQ(Value("COS(90)"), 0);
  EXPECT_FLOAT_EQ(Value("TG(45)"), 1);
  EXPECT_FLOAT_EQ(Value("ATG(1)"), 45);
  EXPECT_FLOAT_EQ(Value("ATGR(1)"), 0.785398185f);
  EXPECT_NEAR(Value("SINR(PI/2)"), 1, 1e-6);
  EXPECT_FLOAT_EQ(Value("CUBE(3)"), 27);
  EXPECT_FLOAT_EQ(Value("SQR(3)"), 9);
  EXPECT_FLOAT_EQ(Value("SQRT(16)"), 4);
  EXPECT_FLOAT_EQ(Value("INT(-2.7)"), -2);
  EXPECT_NEAR(Value("FRAC(-2.75)"), -0.75f, 1e-6);
  EXPECT_FLOAT_EQ(Value("LOG(1000)"), 3);
  EXPECT_FLOAT_EQ(Value("2*SQRT(4)+1"), 5);
  EXPECT_FLOAT_EQ(Value("RAND(0)"), 0);
  for (int i = 0; i < 20; ++i) {
    float r = Value("RAND(5000)");
    EXPECT_GE(r, 0);
    EXPECT_LT(r, 1000);
    EXPECT_EQ(r, static_cast<int>(r));
  }
}

TEST(Expression, SaysWhatIsWrongAndWhere) {
  EXPECT_EQ(Error("LN(2)"), "Negative or null logarithm.");
  EXPECT_EQ(Error("LN(0)"), "Negative or null logarithm.");
  EXPECT_EQ(Error("LOG(0)"), "Negative or null logarithm.");
  EXPECT_EQ(Error("SQRT(-1)"), "Negative square root.");
  EXPECT_EQ(Error("TG(90)"), "Overflow");
  EXPECT_EQ(Error("EXP(89)"), "Overflow");
  EXPECT_EQ(Error("HCOS(100)"), "Overflow");
  EXPECT_EQ(Error("1/0"), "Division by zero.");
  EXPECT_EQ(Error("foo(1)"), "FOO(...) :  Unknown function.");
  EXPECT_EQ(Error("1+()"), "Undefined expression.");
  EXPECT_EQ(Error("(1)(2)"), "Missing operator.");
  EXPECT_EQ(Error("1+2)"), "Unexpected '')'' closing bracket.");
  EXPECT_EQ(Error("(1+2"), "Expected '')'' closing bracket.");
  EXPECT_EQ(Error("2x"), "Syntax error.");
  EXPECT_EQ(Error("x"), "Syntax error.");
  EXPECT_EQ(Error("2+*3"), "Syntax error.");
  EXPECT_EQ(Error("2 + 3"), "Syntax error.");
  EXPECT_EQ(EvaluateExpression("2+*3", '.').errorPosition, 2);
  EXPECT_EQ(EvaluateExpression("(1+2", '.').errorPosition, 4);
}

TEST(Expression, VariablesAndBounds) {
  const ExprVariable vars[] = {{'x', 2.5}, {'Y', 4}};
  EXPECT_FLOAT_EQ(EvaluateExpression("X*y", '.', vars).value, 10);
  // Deep nesting and huge numbers are refused, not crashed on.
  std::string deep(5000, '(');
  deep += "1" + std::string(5000, ')');
  EXPECT_NE(EvaluateExpression(deep, '.').errorPosition, 0);
  EXPECT_EQ(Error(std::string(400, '9') + "*1"), "Overflow");
  EXPECT_EQ(Error("1" + std::string(60, '0') + "*1"), "Overflow");
}

TEST(Expression, WholeNumbers) {
  EXPECT_EQ(EvaluateInt("6*7", '.').value, 42);
  IntExprResult r = EvaluateInt("2.5", '.');
  EXPECT_NE(r.errorPosition, 0);
  EXPECT_EQ(r.errorText, "Invalid value.");
  EXPECT_NE(EvaluateInt("99999999999", '.').errorPosition, 0);
}

TEST(FieldChecks, RefusesOutOfRangeInTheSameWords) {
  test::FakePlatform platform;
  float value = 7;
  EXPECT_TRUE(CheckFloatField(platform, "Depth", "100.0005", "mm", value, 0.01, 100));
  EXPECT_FLOAT_EQ(value, 100.0005f);
  value = 7;
  EXPECT_FALSE(CheckFloatField(platform, "Depth", "200", "mm", value, 0.01, 100));
  EXPECT_EQ(value, 7);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, "Error");
  EXPECT_EQ(platform.messages[0].text,
            "Depth :  200 mm\n\nInvalid value.\n\n  ---> Minimum value: 0.01\n  ---> "
            "Maximum value: 100");

  EXPECT_FALSE(CheckFloatField(platform, "Depth", "LN(2)", "mm", value, 0.01, 100));
  EXPECT_EQ(platform.LastMessage(), "Negative or null logarithm.");
  EXPECT_EQ(value, 7);

  // Equal limits: no range test. A blank field with a default takes it untested.
  EXPECT_FALSE(CheckFloatField(platform, "Margin", "-1e", "mm", value, 0, 0));
  EXPECT_TRUE(CheckFloatField(platform, "Margin", "-5000", "mm", value, 0, 0));
  EXPECT_TRUE(CheckFloatFieldOr(platform, "Angle", " ", "", value, 90, 1, 180));
  EXPECT_EQ(value, 90);

  platform.decimalSeparator = ',';
  EXPECT_FALSE(CheckFloatField(platform, "Margin", "-0,5", "mm", value, -0.25, 0.25));
  EXPECT_NE(platform.LastMessage().find("Minimum value: -0,25\n  ---> Maximum value: 0,25"),
            std::string::npos);

  int count = 3;
  EXPECT_FALSE(CheckIntField(platform, "Rotate", "2000000", "rpm", count, 0, 1000000));
  EXPECT_EQ(platform.LastMessage(),
            "Rotate :  2000000 rpm\n\nInvalid value.\n\n  ---> Minimum value: 0\n  ---> "
            "Maximum value: 1000000");
  EXPECT_FALSE(CheckIntField(platform, "Rotate", "10,5", "rpm", count, 0, 1000000));
  EXPECT_EQ(count, 3);
  EXPECT_TRUE(CheckIntFieldOr(platform, "Rotate", "", "rpm", count, 8000, 0, 1000000));
  EXPECT_EQ(count, 8000);
}

TEST(FieldChecks, FormatsFieldsWithoutTrailingZeros) {
  EXPECT_EQ(FormatFieldFloat(0.25, 3, '.'), "0.25");
  EXPECT_EQ(FormatFieldFloat(100, 3, ','), "100");
  EXPECT_EQ(FormatFieldFloat(1.23456789, 6, ','), "1,234568");
  EXPECT_EQ(FormatFieldFloat(-0.0001, 3, '.'), "0");
}

}  // namespace
}  // namespace isolith
