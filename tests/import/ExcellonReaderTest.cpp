#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "core/board/BoardOps.h"
#include "import/ExcellonReader.h"

namespace isolith {
namespace {

// The default drill dialect: co-ordinates and sizes in file units times 0.1 * 2.54.
constexpr double kScale = double(float(0.1f * 2.54));

std::vector<TDrill> Read(Board& b, const std::string& text, int format = 17, bool relative = false,
                         bool metric = false) {
  std::istringstream in(text);
  ExcellonFormat f;
  f.format = format;
  f.relative = relative;
  f.metric = metric;
  ReadExcellon(in, f, b);
  std::vector<TDrill> out;
  for (const TDrill* d = b.ImportDrills; d; d = d->next) out.push_back(*d);
  return out;
}

TEST(ExcellonReader, ToolSizesBelongToTheLineThatNamesTheTool) {
  Board b;
  b.DrillDiameter[2] = 0;
  auto d = Read(b,
                "M48\nINCH,LZ\nT01C0.8\nC0.5\nT2F200S65C.035\nT3C0,5\n%\nT01\nX012345Y006789\n"
                "T2\nX1Y1\n");
  EXPECT_NEAR(b.DrillDiameter[1], 0.8 * kScale * 10, 1e-5);
  EXPECT_EQ(b.ApertureFlags[1], 4);
  // The tool's other words do not close its line; a comma is a decimal point in a size.
  EXPECT_NEAR(b.DrillDiameter[2], 0.035 * kScale * 10, 1e-6);
  EXPECT_NEAR(b.DrillDiameter[3], 0.5 * kScale * 10, 1e-6);
  ASSERT_EQ(d.size(), 2u);
  EXPECT_EQ(d[0].code, 1);
  EXPECT_EQ(d[0].flags, 0);
  EXPECT_NEAR(d[0].x, 12345 * kScale * 0.001, 1e-5);
  EXPECT_NEAR(d[0].y, 6789 * kScale * 0.001, 1e-5);
  EXPECT_EQ(d[1].code, 2);
}

TEST(ExcellonReader, FirstKindIsLeftJustifiedInSixDigitsSecondKindAsWritten) {
  Board b;
  auto d = Read(b, "X12Y34\nX-12Y1.5\n", 17);
  ASSERT_EQ(d.size(), 2u);
  EXPECT_NEAR(d[0].x, 120000 * kScale * 0.001, 1e-4);
  EXPECT_NEAR(d[0].y, 340000 * kScale * 0.001, 1e-4);
  EXPECT_NEAR(d[1].x, -120000 * kScale * 0.001, 1e-4);
  EXPECT_NEAR(d[1].y, 1.5 * kScale * 0.001, 1e-7);  // "1.5" + zeros, cut to "1.5000"

  Board c;
  d = Read(c, "X12Y34\n", 18);
  ASSERT_EQ(d.size(), 1u);
  EXPECT_NEAR(d[0].x, 12 * kScale * 0.001, 1e-7);
  EXPECT_NEAR(d[0].y, 34 * kScale * 0.001, 1e-7);
}

TEST(ExcellonReader, ToolNumbersAndHolesWithoutSize) {
  Board b;
  for (float& v : b.DrillDiameter) v = 0;
  b.DrillDiameter[0] = 0.635f;
  auto d = Read(b, "T1C0.035\nX1Y1\nT1\nX2Y2\nT105\nX3Y3\nT0\nX4Y4\n");
  // A drill before any tool word has code 0, whose size stands.
  Board c;
  auto e = Read(c, "X1Y1\n");
  ASSERT_EQ(e.size(), 1u);
  EXPECT_EQ(e[0].code, 0);
  EXPECT_FLOAT_EQ(c.DrillDiameter[0], 0.635f);

  ASSERT_EQ(d.size(), 4u);
  EXPECT_EQ(d[0].code, 1);
  EXPECT_EQ(d[1].code, 1);  // the header's entry is reused
  EXPECT_NEAR(b.DrillDiameter[1], 0.035 * kScale * 10, 1e-6);
  EXPECT_EQ(d[2].code, 5);                    // modulo 100
  EXPECT_FLOAT_EQ(b.DrillDiameter[5], 0.8f);  // a tool without a size is drilled at 0.8
  EXPECT_EQ(d[3].code, 5);                    // T0 keeps the tool
}

TEST(ExcellonReader, IncrementsRepeatAndAddUpOnBothAxes) {
  Board b;
  const double step = 1000 * kScale * 0.001;
  auto d = Read(b, "G91\nX1000Y1000\nX1000\nY0\n", 18);
  ASSERT_EQ(d.size(), 3u);
  EXPECT_NEAR(d[0].x, step, 1e-6);
  EXPECT_NEAR(d[1].x, 2 * step, 1e-6);
  EXPECT_NEAR(d[1].y, 2 * step, 1e-6);  // Y not given: added all the same
  EXPECT_NEAR(d[2].x, 4 * step, 1e-6);
  EXPECT_NEAR(d[2].y, 2 * step, 1e-6);

  // Header words anywhere in a line switch the mode; G90 and "ABS" switch it back.
  Board c;
  d = Read(c, "ICI,REL\nX1000Y0\nX1000Y0\nG90\nX1000Y0\nG91\nX1000Y0\nFMAT,ABS\nX5Y0\n", 18);
  ASSERT_EQ(d.size(), 5u);
  EXPECT_NEAR(d[1].x, 2 * step, 1e-6);
  EXPECT_NEAR(d[2].x, step, 1e-6);
  EXPECT_NEAR(d[3].x, 2 * step, 1e-6);
  EXPECT_NEAR(d[4].x, 5 * kScale * 0.001, 1e-7);

  Board e;
  d = Read(e, "X1000Y1000\nX1000\n", 18, true);  // relative from the dialog
  ASSERT_EQ(d.size(), 2u);
  EXPECT_NEAR(d[1].y, 2 * step, 1e-6);
}

TEST(ExcellonReader, MetricWordsChangeTheScale) {
  Board b;
  auto d = Read(b, "METRIC,TZ,T3C1.0\nT1C0.8\nX10000Y0\nM72\nT2C0.8\nM71\nM71\nT4C0.8\n", 18);
  EXPECT_NEAR(b.DrillDiameter[1], 0.8, 1e-5);                // 0.8 * 0.1 * 10
  EXPECT_FLOAT_EQ(b.DrillDiameter[3], 0.635f);               // the rest of the "MET" line
  EXPECT_NEAR(b.DrillDiameter[2], 0.8 * kScale * 10, 1e-5);  // back to inches
  EXPECT_NEAR(b.DrillDiameter[4], 0.8, 1e-5);                // a second M71 changes nothing
  ASSERT_EQ(d.size(), 1u);
  EXPECT_NEAR(d[0].x, 1.0, 1e-5);

  Board c;
  // Metric from the dialog only says which words switch: the scale starts as it always does,
  // "MET" then changes nothing and "M72" turns to inches.
  Read(c, "METRIC\nT1C0.8\nM72\nT2C0.8\n", 18, false, true);
  EXPECT_NEAR(c.DrillDiameter[1], 0.8 * kScale * 10, 1e-5);
  EXPECT_NEAR(c.DrillDiameter[2], 0.8 * kScale * 2.54 * 10, 1e-4);
}

TEST(ExcellonReader, LinesCommentsAndLettersThatDoNotCount) {
  Board b;
  auto d = Read(b, "x1000y2000\n(X5Y5)X3000Y3000\nX4000$Y1\nXY7000\n%\nM30\nX9000Y9000", 18);
  ASSERT_EQ(d.size(), 4u);  // the last line has no line feed and is not read
  EXPECT_NEAR(d[0].y, 2000 * kScale * 0.001, 1e-6);
  EXPECT_NEAR(d[1].x, 3000 * kScale * 0.001, 1e-6);
  EXPECT_NEAR(d[2].x, 4000 * kScale * 0.001, 1e-6);
  EXPECT_NEAR(d[2].y, 3000 * kScale * 0.001, 1e-6);  // after "$" nothing counts
  EXPECT_NEAR(d[3].x, 4000 * kScale * 0.001, 1e-6);  // "X" not followed by a number
  EXPECT_NEAR(d[3].y, 7000 * kScale * 0.001, 1e-6);

  // Blanks, carriage returns, "+" and bytes of the upper half are not part of a line.
  Board c;
  d = Read(c,
           "X 1\xE9"
           "2+3\r\n",
           18);
  ASSERT_EQ(d.size(), 1u);
  EXPECT_NEAR(d[0].x, 123 * kScale * 0.001, 1e-7);

  Board e;
  e.StopImport = true;
  EXPECT_TRUE(Read(e, "X1Y1\n").empty());
}

}  // namespace
}  // namespace isolith
