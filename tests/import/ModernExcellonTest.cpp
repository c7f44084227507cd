// The modern reading of drill files: what the header says of its numbers, and the holes read
// with it.
#include <gtest/gtest.h>

#include <sstream>

#include "import/modern/ModernExcellon.h"

namespace isolith {
namespace {

TEST(ModernExcellon, TheHeaderSaysHowItsNumbersRead) {
  struct Case {
    const char* file;
    bool metric, leadingKept;
    int integers, decimals;
    double x, y;   // mm, the first hole
    double tool1;  // mm
  };
  const Case cases[] = {
      {"M48\nINCH,TZ\nT1C0.035\n%\nT1\nX16910Y10810\nM30\n", false, false, 2, 4, 42.9514, 27.4574,
       0.889},
      {"M48\nINCH,LZ\n;FILE_FORMAT=2:4\nT1F00S00C0.0280\n%\nT01\nX03185Y028071\n", false, true, 2,
       4, 80.899, 71.30034, 0.7112},
      {"M48\nMETRIC,TZ\nT1C0.300\n%\nG90\nG05\nT1\nX41.7Y-51.7\n", true, false, 3, 3, 41.7, -51.7,
       0.3},
      {"M48\nMETRIC,LZ,000.000\nT1C1.0\n%\nT1\nX012345Y001\n", true, true, 3, 3, 12.345, 1, 1},
      // Co-ordinates carry over; a slot is drilled at its start; a routed path is no hole.
      {"M48\nMETRIC\nT1C1.0\n%\nT1\nY2.0\nX1.0G85X5.0\nG00X9Y9\nM15\nG01X8Y8\nM16\n", true, false,
       3, 3, 0, 2, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const DrillHeaderWords h = ReadDrillHeaderWords(c.file);
    const std::vector<DrillNumbers> readings = DrillReadings(h);
    ASSERT_FALSE(readings.empty());
    const DrillNumbers& n = readings.front();
    EXPECT_EQ(n.metric, c.metric);
    EXPECT_EQ(n.leadingKept, c.leadingKept);
    EXPECT_EQ(n.integers, c.integers);
    EXPECT_EQ(n.decimals, c.decimals);
    const DrillContent content = ReadDrillContent(c.file, n);
    ASSERT_FALSE(content.holes.empty());
    EXPECT_NEAR(content.holes[0].x, c.x, 1e-6);
    EXPECT_NEAR(content.holes[0].y, c.y, 1e-6);
    EXPECT_NEAR(content.diameter[1], c.tool1, 1e-9);
  }
  const DrillContent slots = ReadDrillContent(cases[4].file, DrillReadings({}).front());
  EXPECT_EQ(slots.holes.size(), 2u);
}

// A header that says nothing: every unit, zero rule and digit count is tried, and the reading
// whose holes meet the copper of the first layer stands, wherever that layer's load moved it.
TEST(ModernExcellon, ASilentHeaderTakesTheReadingThatMeetsThePads) {
  EXPECT_EQ(DrillReadings({}).size(), 16u);
  Board b;
  b.PadShape[0][0] = kShapeCircle;
  b.PadSizeX[0][0] = b.PadSizeY[0][0] = 1.5f;
  TPad* tail = nullptr;
  // Pads at 0.7003 and 1.1403 inch, as a file of trailing zeros in 2.4 inch writes "X7003",
  // then moved 3 mm right and 1 mm up by the load.
  const std::pair<double, double> at[] = {{7003, 2682}, {11403, 4082}, {9000, 3000}};
  for (const auto& [x, y] : at) {
    TPad* p = new TPad;
    p->x = float(x / 10000 * 25.4 + 3);
    p->y = float(y / 10000 * 25.4 + 1);
    AppendTo(b.Pads[0], tail, p);
  }
  std::istringstream file("%\nM48\nM72\nT01C0.0197\n%\nT01\nX7003Y2682\nX11403Y4082\nX9000Y3000\n");
  ASSERT_EQ(ReadModernExcellon(file, 1.0f, b), 3);
  std::vector<DrillHole> holes;
  for (const TDrill* d = b.ImportDrills; d; d = d->next) holes.push_back({d->x, d->y, d->code});
  EXPECT_DOUBLE_EQ(HolesOnCopper(b, 0, holes, 0, 0), 1.0);
  EXPECT_NEAR(b.ImportDrills->x, 7003 / 10000.0 * 25.4 + 3, 1e-4);
  EXPECT_NEAR(b.DrillDiameter[1], 0.0197 * 25.4, 1e-5);
  EXPECT_EQ(b.ApertureFlags[1], 4);
}

}  // namespace
}  // namespace isolith
