#include <gtest/gtest.h>

#include <cmath>

#include "GerberTestSupport.h"
#include "import/GerberApertures.h"

namespace isolith::test {
namespace {

constexpr uint8_t kAll = kApertureShapeGiven | kApertureSizeGiven | kApertureHoleGiven;

std::string Mm(std::string_view body) {
  return "%MOMM*%\n" + std::string(body);
}

TEST(GerberApertures, StandardAperturesWithSizesAndHoles) {
  Board b;
  ReadText(b, Mm("%ADD10C,0.8X0.3*%\n%ADD11R,1.0X2.0X0.5*%\n%ADD12O,1.5X0.7*%\n"
                 "%ADD13P,1.0X8X22.5*%\n%ADD14C,0,6*%\nD10*X0Y0D03*"));
  EXPECT_EQ(b.PadShape[0][0], kShapeCircle);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 0.8f);
  EXPECT_FLOAT_EQ(b.PadSizeY[0][0], 0.8f);
  EXPECT_FLOAT_EQ(b.TrackWidth[0][0], 0.8f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[0], 0.3f);
  EXPECT_EQ(b.ApertureFlags[0], kAll);
  EXPECT_EQ(CountOf(b.ImportDrills), 1);

  EXPECT_EQ(b.PadShape[0][1], kShapeRectangle);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][1], 1.0f);
  EXPECT_FLOAT_EQ(b.PadSizeY[0][1], 2.0f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[1], 0.5f);
  EXPECT_EQ(b.ApertureFlags[1], kAll);

  EXPECT_EQ(b.PadShape[0][2], kShapeObround);
  EXPECT_FLOAT_EQ(b.PadSizeY[0][2], 0.7f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[2], 0);

  // A polygon's side count stands where a hole would, and is read as one.
  EXPECT_EQ(b.PadShape[0][3], kShapeOctagon);
  EXPECT_FLOAT_EQ(b.DrillDiameter[3], 8);

  EXPECT_FLOAT_EQ(b.PadSizeX[0][4], 0.6f);  // decimal comma

  // The first definition emptied the pad tables of every layer and the drill table; track
  // widths stay.
  EXPECT_FLOAT_EQ(b.PadSizeX[2][50], 0);
  EXPECT_FLOAT_EQ(b.DrillDiameter[50], 0);
  EXPECT_FLOAT_EQ(b.TrackWidth[2][50], 0.635f);
  EXPECT_EQ(b.ApertureFlags[50], 0);
}

TEST(GerberApertures, OtherLayersKeepTheHoleAndTheOtherTables) {
  Board b;
  ReadText(b, Mm("%ADD10C,0.8X0.3*%\n%ADD11R,1.0X2.0X0.5*%\nD10*X0Y0D03*"), 1);
  EXPECT_FLOAT_EQ(b.PadSizeX[1][0], 0.8f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[0], 0.635f);
  EXPECT_EQ(b.ApertureFlags[0], kApertureShapeGiven | kApertureSizeGiven);
  EXPECT_FLOAT_EQ(b.PadSizeY[1][1], 2.0f);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][5], 1.27f);
  EXPECT_FLOAT_EQ(b.PadSizeX[1][5], 0);
  EXPECT_EQ(CountOf(b.ImportDrills), 0);
}

TEST(GerberApertures, DefinitionNumbersAndScales) {
  TImportFormat f = GerberFormat();
  f.AperScaleIn = 2;
  f.DrillScaleIn = 0.5f;
  Board b;
  ReadText(b, Mm("%ADD300C,1X0.4*%\n%ADD9C,5*%\n%ADD70C*%\n"), 0, f);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 2);  // 300 modulo 100
  EXPECT_FLOAT_EQ(b.TrackWidth[0][0], 2);
  EXPECT_FLOAT_EQ(b.DrillDiameter[0], 0.2f);
  EXPECT_EQ(b.ApertureFlags[10], 0);  // D70: nothing after the letter

  Board inches;  // without MO the sizes are inches
  ReadText(inches, "%ADD10C,0.05*%\n");
  EXPECT_FLOAT_EQ(inches.PadSizeX[0][0], 1.27f);
}

TEST(GerberApertures, MacroSizesFromTheirFirstPrimitive) {
  Board b;
  ReadText(b, Mm("%AMOC8*5,1,8,0,0,1.08239X$1,22.5*%\n%ADD12OC8,1.2*%\n"
                 "%AMBOX*4,1,4,-1,-0.5,1,-0.5,1,0.5,-1,0.5,-1,-0.5,0*%\n%ADD13BOX*%\n"
                 "%AMLINE*21,1,2.0,1.0,0,0,0*%\n%ADD14LINE*%\n"
                 "%AMDOT*1,1,1.5,0,0*%\n%ADD15DOT,0.7X0.2*%\n"
                 "%AMNOTE*0 drawn by hand*%\n%ADD16NOTE*%\n"
                 "%ADD17NONE,1*%\n"));
  EXPECT_EQ(b.PadShape[0][2], kShapeOctagon);
  EXPECT_NEAR(b.PadSizeX[0][2], 1.08239 * 1.2, 1e-5);
  EXPECT_NEAR(b.PadSizeY[0][2], 1.08239 * 1.2, 1e-5);
  EXPECT_EQ(b.ApertureFlags[2], kApertureShapeGiven | kApertureSizeGiven);

  // An outline: the farthest corner, times 1.414, as an octagon round it.
  EXPECT_EQ(b.PadShape[0][3], kShapeOctagon);
  EXPECT_NEAR(b.PadSizeX[0][3], std::sqrt(1.25) * 1.414, 1e-5);

  EXPECT_EQ(b.PadShape[0][4], kShapeRectangle);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][4], 2.0f);
  EXPECT_FLOAT_EQ(b.PadSizeY[0][4], 1.0f);

  // A circle macro leaves the size to the AD line, unscaled, and its hole goes in directly.
  EXPECT_EQ(b.PadShape[0][5], kShapeCircle);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][5], 0.7f);
  EXPECT_FLOAT_EQ(b.DrillDiameter[5], 0.2f);
  EXPECT_EQ(b.ApertureFlags[5], kApertureShapeGiven | kApertureSizeGiven);

  // A comment as first line: shape 0, and no size at all.
  EXPECT_EQ(b.ApertureFlags[6], kApertureShapeGiven | kApertureSizeGiven);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][6], 0);

  EXPECT_EQ(b.ApertureFlags[7], 0);  // no such macro: undefined
}

TEST(GerberApertures, MacroOddities) {
  TImportFormat f = GerberFormat();
  f.AperScaleIn = 2;
  f.ScaleIn = 3;
  Board scaled;  // the body takes ScaleIn and unit, the AD line AperScaleIn
  ReadText(scaled, Mm("%AMLINE*21,1,2.0,1.0,0,0,0*%\n%ADD10LINE*%\n"), 0, f);
  EXPECT_FLOAT_EQ(scaled.PadSizeX[0][0], 12);

  Board stop;  // an outline stops at the first corner on the X axis
  ReadText(stop, Mm("%AMTRI*4,1,3,5,0,1,1,-1,-1,5,0,0*%\n%ADD10TRI*%\n"));
  EXPECT_EQ(stop.PadShape[0][0], kShapeOctagon);
  EXPECT_EQ(stop.ApertureFlags[0], kApertureShapeGiven);

  Board prefix;  // names are matched against the start of the AD text, first entry first
  ReadText(prefix, Mm("%AMOC*5,1,8,0,0,1*%\n%AMOC8*5,1,8,0,0,2*%\n%ADD10OC8*%\n"));
  EXPECT_FLOAT_EQ(prefix.PadSizeX[0][0], 1);

  Board eaten;  // the block after AM is the macro's body, whatever it holds
  ReadText(eaten, Mm("%AMFOO*X0Y0D03*X10000Y0D03*"));
  EXPECT_EQ(CountOf(eaten.ImportPads), 1);

  GerberReader r;  // with every entry in use the last one is taken again
  for (int i = 0; i < kMacroEntries + 5; ++i) {
    std::string block = "AM" + std::to_string(i);
    r.len = static_cast<int>(block.size());
    block.copy(r.line, block.size());
    r.pos = 0;
    OpenMacro(r);
  }
  EXPECT_EQ(r.macroOpen, kMacroEntries - 1);
  EXPECT_EQ(r.macros[kMacroEntries - 1].name, "104");
}

TEST(GerberApertures, ListingCommentsDefineApertures) {
  Board b;
  ReadText(b,
           "G04 DCODE:10 SIZE:0.060 SHAPE:SQUARE*\n"
           "G04 DCODE 11 SIZE 0.010 SHAPE OCTAGON*\n"
           "G04 DCODE:12 SHAPE:ROUND X1000*\n"
           "D03*");
  EXPECT_EQ(b.PadShape[0][0], kShapeRectangle);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 1.524f);
  EXPECT_FLOAT_EQ(b.TrackWidth[0][0], 1.524f);
  EXPECT_EQ(b.ApertureFlags[0], kApertureShapeGiven | kApertureSizeGiven);
  EXPECT_FLOAT_EQ(b.DrillDiameter[0], 0);  // emptied, and never raised by a size
  EXPECT_EQ(b.PadShape[0][1], kShapeOctagon);
  EXPECT_FLOAT_EQ(b.PadSizeY[0][1], 0.254f);
  EXPECT_EQ(b.ApertureFlags[2], kApertureShapeGiven);
  // The rest of the comment is code: X1000 moved the pen.
  ASSERT_EQ(CountOf(b.ImportPads), 1);
  EXPECT_FLOAT_EQ(b.ImportPads->x, 25.4f);
}

}  // namespace
}  // namespace isolith::test
