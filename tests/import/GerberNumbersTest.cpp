#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "GerberTestSupport.h"
#include "import/GerberBlocks.h"
#include "import/GerberNumbers.h"

namespace isolith::test {
namespace {

std::string BlockOf(std::string_view bytes, bool* atEnd = nullptr) {
  GerberReader r;
  std::stringbuf in{std::string(bytes)};
  ReadBlock(r, in);
  if (atEnd) *atEnd = r.atEnd;
  return std::string(r.line, r.len);
}

TEST(GerberBlocks, KeepsOnlyPlotterTextOfOneBlock) {
  EXPECT_EQ(BlockOf("x+10 y\t20\r\nD03"), "X10Y20");
  EXPECT_EQ(BlockOf("G04 a*b"), "G04A");
  EXPECT_EQ(BlockOf("X1\xE9\xFF"
                    "2*"),
            "X12");
  EXPECT_EQ(BlockOf("%*"), "");  // the closing "%" of a parameter is no block
  EXPECT_EQ(BlockOf("%%*"), "%%");

  bool atEnd = false;
  EXPECT_EQ(BlockOf("D03", &atEnd), "D03");  // the last block needs no terminator
  EXPECT_TRUE(atEnd);
  EXPECT_EQ(BlockOf("D03*", &atEnd), "D03");
  EXPECT_FALSE(atEnd);

  std::string longBlock(300, 'N');
  longBlock += "D03*";
  EXPECT_EQ(BlockOf(longBlock), std::string(kBlockBytes, 'N'));
}

TEST(GerberBlocks, BytesBeyondTheBlockLimitAreLost) {
  Board b;
  ReadText(b, std::string(243, 'N') + "X1000Y1000D03*");  // 256 bytes in all
  EXPECT_EQ(CountOf(b.ImportPads), 1);
  Board c;
  ReadText(c, std::string(244, 'N') + "X1000Y1000D03*");
  EXPECT_EQ(CountOf(c.ImportPads), 0);
}

float ParsedValue(std::string_view block, NumberAxis axis, GerberReader r = {}) {
  r.len = static_cast<int>(block.size());
  block.copy(r.line, block.size());
  r.pos = 0;
  ReadNumber(r, axis);
  return r.value;
}

TEST(GerberNumbers, ParserTakesAtMostFifteenNumberCharacters) {
  GerberReader r;
  const std::string block = "X1234567890123456789Y";
  r.len = static_cast<int>(block.size());
  block.copy(r.line, block.size());
  ReadNumber(r, NumberAxis::None);
  EXPECT_EQ(r.pos, 15);
  EXPECT_FLOAT_EQ(r.value, 123456789012345.0f);
  EXPECT_EQ(r.intValue, 0);  // 1000 or more

  EXPECT_FLOAT_EQ(ParsedValue("D0123", NumberAxis::None), 123);
  EXPECT_FLOAT_EQ(ParsedValue("X-12.5", NumberAxis::None), -12.5f);
  EXPECT_FLOAT_EQ(ParsedValue("X--5", NumberAxis::None), 0);
  EXPECT_FLOAT_EQ(ParsedValue("X.", NumberAxis::None), 0);
  EXPECT_FLOAT_EQ(ParsedValue("X1-2", NumberAxis::None), 1);
  EXPECT_FLOAT_EQ(ParsedValue("X", NumberAxis::None), 0);

  GerberReader none;
  none.len = 2;
  none.line[0] = 'D';
  none.line[1] = 'Q';
  ReadNumber(none, NumberAxis::None);
  EXPECT_EQ(none.pos, 0);  // nothing taken: the position stays on the letter
}

TEST(GerberNumbers, CoordinatesAreScaledEvenWithADecimalPoint) {
  EXPECT_FLOAT_EQ(ParsedValue("X1000", NumberAxis::X), 25.4f);
  EXPECT_FLOAT_EQ(ParsedValue("Y1.5", NumberAxis::Y), 1.5f * 0.0254f);
  GerberReader trailing;
  trailing.trailing = true;
  trailing.xScale = 0.0001f;
  EXPECT_FLOAT_EQ(ParsedValue("X12", NumberAxis::X, trailing), 1.2f);     // 120000 / 10
  EXPECT_FLOAT_EQ(ParsedValue("X-12", NumberAxis::X, trailing), -0.12f);  // "-12000" / 10
  EXPECT_FLOAT_EQ(ParsedValue("X1.5", NumberAxis::X, trailing), 0.00015f);
  EXPECT_FLOAT_EQ(ParsedValue("X12", NumberAxis::None, trailing), 12);  // not a coordinate
}

TEST(GerberNumbers, PlotterWheelNumbering) {
  const std::pair<int, int> cases[] = {{9, -1},  {10, 0},   {19, 9},   {70, 10},   {71, 11},
                                       {20, 12}, {29, 21},  {72, 22},  {73, 23},   {30, 24},
                                       {69, 63}, {74, 64},  {99, 89},  {100, 100}, {123, 123},
                                       {0, -1},  {-10, -1}, {300, 300}};
  for (auto [file, index] : cases) EXPECT_EQ(MapAperture(file), index) << file;
}

TEST(GerberNumbers, FormatAndUnitsDecideTheScale) {
  Board b;
  ReadText(b, "X1000Y2000D03*");  // no FS and no MO: inches, three decimals
  ASSERT_EQ(CountOf(b.ImportPads), 1);
  EXPECT_FLOAT_EQ(b.ImportPads->x, 25.4f);
  EXPECT_FLOAT_EQ(b.ImportPads->y, 50.8f);

  Board fs;  // only the second digit counts; "L" and the integer digits are ignored
  ReadText(fs, "%FSLAX34Y25*%\n%MOMM*%\nX10000Y200000D03*");
  EXPECT_FLOAT_EQ(fs.ImportPads->x, 1.0f);
  EXPECT_FLOAT_EQ(fs.ImportPads->y, 2.0f);

  Board g71;
  ReadText(g71, "G71*\nX1000Y1000D03*G70*X1000Y1000D03*");
  auto pads = Items(g71.ImportPads);
  ASSERT_EQ(pads.size(), 2u);
  EXPECT_FLOAT_EQ(pads[0]->x, 1.0f);
  EXPECT_FLOAT_EQ(pads[1]->x, 25.4f);

  Board osmond;  // its FS digits do not match its numbers and are ignored
  ReadText(osmond, "%FSLAX24Y24*%\nX1000Y1000D03*", 0, GerberFormat(kOsmondFormat));
  EXPECT_FLOAT_EQ(osmond.ImportPads->x, 25.4f);

  TImportFormat scaled = GerberFormat();
  scaled.ScaleIn = 2;
  Board twice;
  ReadText(twice, "%MOMM*%\nX1000Y500D03*", 0, scaled);
  EXPECT_FLOAT_EQ(twice.ImportPads->x, 2.0f);
  EXPECT_FLOAT_EQ(twice.ImportPads->y, 1.0f);

  Board trailing;
  ReadText(trailing, "%FSTAX24Y24*%\n%MOMM*%\nX12Y5D03*");
  EXPECT_FLOAT_EQ(trailing.ImportPads->x, 1.2f);
  EXPECT_FLOAT_EQ(trailing.ImportPads->y, 5.0f);

  Board moin;
  ReadText(moin, "%MOMM*%\n%MOIN*%\nX1000Y1000D03*");
  EXPECT_FLOAT_EQ(moin.ImportPads->x, 25.4f);

  Board glued;  // a parameter glued to the closing "%" of the one before is not seen
  ReadText(glued, "%MOMM*%%MOIN*%\nX1000Y1000D03*");
  EXPECT_FLOAT_EQ(glued.ImportPads->x, 1.0f);
}

TEST(GerberNumbers, AbsoluteAndIncrementalCoordinates) {
  Board b;
  ReadText(b, "%FSLIX24Y24*%\n%MOMM*%\nX10000Y0D02*X10000D01*X10000Y10000D01*");
  auto tracks = Items(b.ImportTracks);
  ASSERT_EQ(tracks.size(), 2u);
  EXPECT_FLOAT_EQ(tracks[0]->x1, 1);
  EXPECT_FLOAT_EQ(tracks[0]->x2, 2);
  EXPECT_FLOAT_EQ(tracks[1]->x2, 3);
  EXPECT_FLOAT_EQ(tracks[1]->y2, 1);

  Board g91;  // G90 and G91 change nothing: only the FS statement does
  ReadText(g91, "%MOMM*%\nG91*X1000Y0D02*X2000D01*");
  ASSERT_EQ(CountOf(g91.ImportTracks), 1);
  EXPECT_FLOAT_EQ(g91.ImportTracks->x2, 2);

  Board back;
  ReadText(back, "%FSLIX24Y24*%\n%FSLAX24Y24*%\n%MOMM*%\nX10000Y0D02*X10000D01*");
  EXPECT_EQ(CountOf(back.ImportTracks), 0);  // absolute again: the pen did not move
}

}  // namespace
}  // namespace isolith::test
