#include <gtest/gtest.h>

#include "GerberTestSupport.h"

namespace isolith::test {
namespace {

constexpr const char* kMm = "%FSLAX24Y24*%\n%MOMM*%\n";  // coordinates in 1/10000 mm

std::string Mm(std::string_view body) {
  return kMm + std::string(body);
}

TEST(GerberDrawing, MovesDrawsAndFlashesWithModalCodes) {
  Board b;
  ReadText(b, Mm("X100Y100D02*X200Y100*"));
  EXPECT_EQ(CountOf(b.ImportTracks), 0);  // mode 2 only moves

  Board first;  // the file's first block: there is no previous position yet
  ReadText(first, "X100Y100D01*X200Y100*");
  ASSERT_EQ(CountOf(first.ImportTracks), 1);
  EXPECT_FLOAT_EQ(first.ImportTracks->x1, 2.54f);

  Board header;  // any block before it, a parameter too, leaves the pen at (0, 0)
  ReadText(header, Mm("X10000Y0D01*"));
  ASSERT_EQ(CountOf(header.ImportTracks), 1);
  EXPECT_FLOAT_EQ(header.ImportTracks->x1, 0);

  Board modal;  // D01 stays in force; a block without coordinates draws nothing
  ReadText(modal, Mm("X0Y0D02*X10000Y0D01*Y10000*D01*X0*"));
  auto t = Items(modal.ImportTracks);
  ASSERT_EQ(t.size(), 3u);
  EXPECT_FLOAT_EQ(t[0]->x1, 0);
  EXPECT_FLOAT_EQ(t[0]->x2, 1);
  EXPECT_FLOAT_EQ(t[1]->y2, 1);
  EXPECT_FLOAT_EQ(t[2]->x2, 0);
  EXPECT_FLOAT_EQ(t[2]->y2, 1);

  Board flash;  // a flash returns the mode to 2; the block after it only moves
  ReadText(flash, Mm("X0Y0D03*X10000Y0*X20000Y0D01*"));
  EXPECT_EQ(CountOf(flash.ImportPads), 1);
  ASSERT_EQ(CountOf(flash.ImportTracks), 1);
  EXPECT_FLOAT_EQ(flash.ImportTracks->x1, 1);

  Board m02;  // the file ends at its end, not at M02
  ReadText(m02, Mm("X0Y0D03*M02*X10000Y0D03*"));
  EXPECT_EQ(CountOf(m02.ImportPads), 2);

  Board g54;  // G00 and G54 set the mode to 2; G01, G36, G37, G75 change nothing
  ReadText(g54, Mm("X0Y0D01*G54D11*X10000D01*G00X20000*G01G36G37G75X30000D01*X40000*"));
  auto regions = Items(g54.ImportTracks);
  ASSERT_EQ(regions.size(), 3u);  // 0->1, then a move to 2, then 2->3 and 3->4
  EXPECT_EQ(regions[0]->code, 1);
  EXPECT_FLOAT_EQ(regions[1]->x1, 2);
  EXPECT_FLOAT_EQ(regions[2]->x2, 4);
}

TEST(GerberDrawing, ArcsMoveWithoutDrawingUnlessACentreOffsetIsMissing) {
  Board b;
  ReadText(b, Mm("X0Y0D02*G75*G03X10000Y10000I10000J0D01*X20000Y10000D01*"));
  auto t = Items(b.ImportTracks);
  ASSERT_EQ(t.size(), 1u);  // the arc made none; the pen stands at its end
  EXPECT_FLOAT_EQ(t[0]->x1, 1);
  EXPECT_FLOAT_EQ(t[0]->y1, 1);

  Board half;  // only I given: read as a straight draw
  ReadText(half, Mm("X0Y0D02*G02X10000Y10000I5000D01*"));
  EXPECT_EQ(CountOf(half.ImportTracks), 1);

  Board later;  // G and the offsets belong to one block
  ReadText(later, Mm("X0Y0D02*G03I1J1*X10000D01*"));
  EXPECT_EQ(CountOf(later.ImportTracks), 1);
}

TEST(GerberDrawing, ApertureSelectionThroughTheWheelNumbering) {
  Board b;
  ReadText(b, Mm("D10*X0Y0D03*D70*D03*D20*D03*D0123*D03*D300*D03*D256*D03*D9*D03*D1000*D03*"));
  std::vector<int> codes;
  for (const TPad* p : Items(b.ImportPads)) codes.push_back(p->code);
  // D300 passes the 8-bit register first (44), D256 wraps to 0; D9 and D1000 select nothing.
  EXPECT_EQ(codes, (std::vector<int>{0, 10, 12, 23, 44, 0, 0, 0}));

  Board none;  // before any selection the aperture is 0
  ReadText(none, Mm("X0Y0D03*"));
  EXPECT_EQ(none.ImportPads->code, 0);
}

TEST(GerberDrawing, FlashesGiveDrillsOnTheFirstLayerOnly) {
  Board b;  // default tables: every aperture has a 0.635 hole
  ReadText(b, Mm("X0Y0D03*X10000Y0D03*"));
  EXPECT_EQ(CountOf(b.ImportDrills), 2);
  EXPECT_FLOAT_EQ(LastOf(b.ImportDrills)->x, 1);

  Board second;
  ReadText(second, Mm("X0Y0D03*"), 1);
  EXPECT_EQ(CountOf(second.ImportPads), 1);
  EXPECT_EQ(CountOf(second.ImportDrills), 0);

  Board holeless;
  ReadText(holeless, Mm("%ADD10C,1*%\nD10*X0Y0D03*"));
  EXPECT_EQ(CountOf(holeless.ImportDrills), 0);
}

TEST(GerberDrawing, CommentsAreScannedAsCodes) {
  Board b;  // some layout programs put real codes after G04
  ReadText(b, Mm("X0Y0D02*G04 X10000*D03*"));
  ASSERT_EQ(CountOf(b.ImportPads), 1);
  EXPECT_FLOAT_EQ(b.ImportPads->x, 1);

  Board words;  // ... and so the letters of plain words act too: "BY" sets Y to 0
  ReadText(words, Mm("X10000Y10000D02*G04 MADE BY HAND*D03*"));
  ASSERT_EQ(CountOf(words.ImportPads), 1);
  EXPECT_FLOAT_EQ(words.ImportPads->x, 1);
  EXPECT_FLOAT_EQ(words.ImportPads->y, 0);

  Board g04;  // G04 also ends a draw mode
  ReadText(g04, Mm("X0Y0D01*G04*X10000*"));
  EXPECT_EQ(CountOf(g04.ImportTracks), 0);
}

TEST(GerberDrawing, StopImportEndsTheRead) {
  Board b;
  b.StopImport = true;
  ReadText(b, Mm("X0Y0D03*"));
  EXPECT_EQ(CountOf(b.ImportPads), 0);
}

}  // namespace
}  // namespace isolith::test
