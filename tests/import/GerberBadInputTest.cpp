#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "GerberTestSupport.h"

namespace isolith::test {
namespace {

std::string RandomBytes(size_t n, uint32_t seed) {
  std::string s(n, '\0');
  for (char& c : s) {
    seed = seed * 1664525u + 1013904223u;
    c = static_cast<char>(seed >> 24);
  }
  return s;
}

// Whatever was read is usable: finite coordinates and codes inside the tables.
void ExpectSane(const Board& b, const std::string& what) {
  for (const TPad* p : Items(b.ImportPads)) {
    ASSERT_TRUE(std::isfinite(p->x) && std::isfinite(p->y)) << what;
    ASSERT_LT(p->code, kApertures) << what;
  }
  for (const TTrack* t : Items(b.ImportTracks)) {
    ASSERT_TRUE(std::isfinite(t->x1) && std::isfinite(t->y1) && std::isfinite(t->x2) &&
                std::isfinite(t->y2))
        << what;
    ASSERT_LT(t->code, kApertures) << what;
  }
  for (int l = 0; l < kCircuitLayers; ++l)
    for (int i = 0; i < kApertures; ++i)
      ASSERT_TRUE(std::isfinite(b.PadSizeX[l][i]) && std::isfinite(b.PadSizeY[l][i]) &&
                  std::isfinite(b.TrackWidth[l][i]))
          << what;
  for (float d : b.DrillDiameter) ASSERT_TRUE(std::isfinite(d)) << what;
}

TEST(GerberBadInput, AnyBytesAreReadToTheEnd) {
  const std::string digits(500, '9');
  const std::string inputs[] = {
      "",
      "*",
      "%",
      "%%%%%%",
      std::string(1000, '\0'),
      std::string(100000, 'X'),
      std::string(100000, '%'),
      std::string(100000, '*'),
      std::string(100000, '\n'),
      "X" + digits + "Y-" + digits + "D03*",
      "%FSLIX29Y29*%\n%MOIN*%\n" + std::string(2000, '\0') + "X" + digits + "D01*X" + digits +
          "D01*X" + digits + "D01*",
      "%ADD" + digits + "C,1*%\nD" + digits + "*D03*",
      "%ADD10C," + digits + "X" + digits + "X" + digits + "*%\nD03*",
      "%ADD10R,-1X-2X-3*%\n%ADD11C,,,,,,*%\n%ADD12,*%\n%ADD13*%\n%ADD*%\n%AD*%\n",
      "%AMFOO",
      "%AMFOO*",
      "%AMFOO*%\n%AMBAR*4," + digits + "," + digits + "*%\n%ADD10FOO*%\n%ADD11BAR,9e9*%",
      "%AM" + std::string(100000, 'A') + "*4,1,1000000," + std::string(3000, ',') + "*%",
      "%AMX*4,1,9" + std::string(50000, '-') + "*%\n%ADD10X," + digits + "*%",
      "%FS*%%FSX*%\n%FSLAX*%\n%FSLAX2*%\n%MO*%\n%MOI*%",
      "D",
      "G",
      "G04DCODE",
      "G04DCODE:",
      "G04DCODE:10SIZE:",
      "G04DCODE:10SIZE:" + digits + "SHAPE:",
      "G04DCODE" + digits + "SHAPEOCT",
      "%ADD10",
      "%ADD10C",
      "%ADD10C,",
      "X1000Y1000D03" + std::string(100000, 'N') + "*",
      RandomBytes(200000, 1),
      RandomBytes(200000, 2),
      RandomBytes(50000, 3),
  };
  for (const std::string& input : inputs) {
    Board b;
    ReadText(b, input);
    ExpectSane(b, input.substr(0, 40));
    Board second;
    ReadText(second, input, 2, GerberFormat(kOsmondFormat));
    ExpectSane(second, input.substr(0, 40));
  }
}

TEST(GerberBadInput, HugeNumbersStayNumbers) {
  Board b;
  // Fifteen characters make the number; the other digits are skipped like any letter.
  ReadText(b, "X" + std::string(200, '9') + "Y1D03*X" + std::string(500, '9') + "D03*");
  ASSERT_EQ(CountOf(b.ImportPads), 1);  // the second D03 lies beyond the block's 256 bytes
  EXPECT_FLOAT_EQ(b.ImportPads->x, 999999999999999.0f * 0.0254f);

  Board line;  // a line of 100 000 characters keeps its first 256
  ReadText(line, "X1000Y1000D03" + std::string(100000, 'N') + "*X2000D03*");
  EXPECT_EQ(CountOf(line.ImportPads), 2);
}

TEST(GerberBadInput, TenThousandApertureDefinitions) {
  std::string text = "%MOMM*%\n";
  for (int n = 10; n < 10010; ++n)
    text += "%ADD" + std::to_string(n) + "C," + std::to_string(n % 7 + 1) + "*%\n";
  text += "D10*X0Y0D03*";
  Board b;
  ReadText(b, text);
  ExpectSane(b, "many definitions");
  ASSERT_EQ(CountOf(b.ImportPads), 1);
  // The last definition that lands on entry 0 wins: 10000 maps to itself, modulo 100 is 0.
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 10000 % 7 + 1);
}

}  // namespace
}  // namespace isolith::test
