// The Excellon and Gerber files of a layer, byte for byte.
#include "output/export/BoardExport.h"

#include <gtest/gtest.h>

#include <string>

#include "OutputWorld.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

TEST(BoardExport, DCodesRunInFourGroupsAndRepeatEveryTwentyFour) {
  const int cases[][2] = {{0, 10},  {9, 19},  {10, 70}, {11, 71}, {12, 20},
                          {21, 29}, {22, 72}, {23, 73}, {24, 10}, {35, 71}};
  for (const auto& [index, code] : cases) EXPECT_EQ(DCodeOf(index), code) << index;
}

TEST(BoardExport, ExcellonNumbersToolsByCodeAndWritesSixDigitTenThousandths) {
  Board b;
  b.DrillDiameter[5] = 0.8f;
  b.DrillDiameter[0] = 0;  // no diameter: its tool has no size line
  test::AddPad(b, 0, 25.4f, -25.4f)->code = 5;
  test::AddPad(b, 0, 0.5f, 300.f)->code = 0;
  test::AddPad(b, 0, 1.f, 2.f)->code = 5;
  test::AddPad(b, 1, 9.f, 9.f);  // another layer
  EXPECT_EQ(ExcellonText(b),
            "M48\nM90\nM72,LZ\nINCH\nT06C0.031\n%\n"
            "T01\nX000197Y118110\n"
            "T06\nX010000Y-10000\nX000394Y000787\n"
            "T00M30\n");
  b.ActiveLayer = 2;
  EXPECT_EQ(ExcellonText(b), "M48\nM90\nM72,LZ\nINCH\n%\nT00M30\n");

  test::TempFolder folder;
  const std::string path = folder.path() + "board.drl";
  ASSERT_TRUE(WriteExcellon(b, path));
  EXPECT_EQ(test::ReadAll(path), "M48\r\nM90\r\nM72,LZ\r\nINCH\r\n%\r\nT00M30\r\n");
  EXPECT_FALSE(WriteExcellon(b, folder.path() + "missing/board.drl"));
}

TEST(BoardExport, GerberListsTrackThenPadAperturesAndDrawsTracksPadsAndCardContours) {
  Board b;
  b.ActiveLayer = 1;
  b.TrackWidth[1][3] = 0.254f;
  b.PadShape[1][2] = kShapeRectangle, b.PadSizeX[1][2] = 2.54f, b.PadSizeY[1][2] = 1.27f;
  b.PadShape[1][1] = kShapeCircle, b.PadSizeX[1][1] = 1.27f, b.PadSizeY[1][1] = 1.27f;
  b.DrillDiameter[1] = 0.635f;
  auto track = [&b](float x1, float y1, float x2, float y2) {
    TTrack* t = new TTrack{3, 0, x1, y1, x2, y2};
    TTrack* tail = nullptr;
    AppendTo(b.Tracks[1], tail, t);
  };
  track(0, 0, 25.4f, 0);  // starts at the origin: no move first
  track(25.4f, 0, 25.4f, 2.54f);
  track(-2.54f, 1, 3, 1);
  test::AddPad(b, 1, 5, 6)->code = 2;
  test::AddPad(b, 1, 7, 8)->code = 1;
  TCutout* card = new TCutout;
  test::AddPath(card->outline, {{0, 0}, {10, 0}, {10, 10}});
  b.Cutouts = card;
  const std::string head = "G04*\n%FSLAX53Y53*%\n%MOIN*%\n";
  const std::string apertures =
      "%ADD10C,0.0100\n%ADD11C,0.0500X0.0250*%\n%ADD12R,0.1000X0.0500X0.0250*%\n";
  const std::string modes = "G04*\nG70*\nG90*\nG01*\n";
  const std::string tracks =
      "G54D10*\nX01000.000Y00000.000D01*\nX01000.000Y00100.000D01*\n"
      "X-0100.000Y00039.370D02*\nX00118.110Y00039.370D01*\n";
  const std::string pads = "G54D11*\nX00275.591Y00314.961D03*\nG54D12*\nX00196.850Y00236.220D03*\n";
  // Drawn with the aperture of track code 0, which this layer does not use: entry 0.
  const std::string outline =
      "G54D10*\nX00000.000Y00000.000D02*\nX00393.701Y00000.000D01*\n"
      "X00393.701Y00393.701D01*\n";
  EXPECT_EQ(GerberText(b, 1), head + apertures + modes + tracks + pads + outline + "M02*\n");
  // The drill layer has neither items nor card contours; the cutout layer only the latter.
  EXPECT_EQ(GerberText(b, kDrillLayer), head + modes + "M02*\n");
  EXPECT_EQ(GerberText(b, kCutoutLayer), head + modes + outline + "M02*\n");
}

}  // namespace
}  // namespace isolith
