#include <gtest/gtest.h>

#include "import/Dialects.h"
#include "import/RecentFiles.h"
#include "import/TDialogImport.h"
#include "support/FakePlatform.h"

namespace isolith::test {
namespace {

TEST(Dialects, FilterRowsAreWrittenAsTheProgramAlwaysWroteThem) {
  std::string buffer;
  AddFilter(buffer, "All files", "*", "", "", "");
  AddFilter(buffer, "Ares Gerber File", "top", "bot", "xyz", "");
  EXPECT_EQ(buffer,
            "All files  (*.*)|*.*|"
            "Ares Gerber File  (*.TOP / *.BOT / *.XYZ)|*.top;*.bot;*.xyz|");

  Settings s;
  s.ImportFormat[kRowProtel].Extension = {"PHX", "ab"};
  const auto layer = LayerFilters(s, false);
  ASSERT_EQ(layer.size(), 10u);
  EXPECT_EQ(layer[1].description, "Gerber Scientific Intruments Flasher  (*.GRB / *.GBR)");
  EXPECT_EQ(layer[1].patterns, "*.grb;*.gbr");
  EXPECT_EQ(layer[5].description, "Osmond Gerber File  (*.GRB / *.GBR)");
  EXPECT_EQ(layer[8].patterns, "*.gtl;*.gbl;*.PHX;*.ab");
  EXPECT_EQ(layer[9].description, "WinTypon-5 File  (*.WT5)");

  const auto drills = LayerFilters(s, true);
  ASSERT_EQ(drills.size(), 3u);
  EXPECT_EQ(drills[1].description, "Excellon-Automation, no trailing zeros  (*.EXL / *.DRL)");
  EXPECT_EQ(drills[2].patterns, "*.drl;*.exl");
}

TEST(Dialects, FilterRowsAndFormatsMapBothWays) {
  EXPECT_EQ(FilterRowOfFormat(kFormatGerber, false), 2);
  EXPECT_EQ(FilterRowOfFormat(kFormatAres, false), 3);
  EXPECT_EQ(FilterRowOfFormat(kFormatWinTypon, false), 10);
  EXPECT_EQ(FilterRowOfFormat(0, false), 1);
  EXPECT_EQ(FilterRowOfFormat(kFormatExcellon1, false), 1);
  EXPECT_EQ(FilterRowOfFormat(kFormatExcellon2, true), 3);
  EXPECT_EQ(FilterRowOfFormat(kFormatGerber, true), 1);
  for (int row = 2; row <= 10; ++row)
    EXPECT_EQ(FilterRowOfFormat(FormatOfFilterRow(row, false), false), row);
  EXPECT_EQ(FormatOfFilterRow(1, false), 0);
  EXPECT_EQ(FormatOfFilterRow(1, true), kFormatExcellon1);
  EXPECT_EQ(FormatOfFilterRow(3, true), kFormatExcellon2);
  // "All files" and unknown ids read as Gerber.
  EXPECT_EQ(ReaderRow(0), kRowGerber);
  EXPECT_EQ(ReaderRow(77), kRowGerber);
  EXPECT_EQ(ReaderRow(kFormatOrcad), kRowOrcad);
  EXPECT_STREQ(Dialect(kRowWizard).upperName, "PCB-WIZARD");
}

TEST(Dialects, PathsSplitIntoFolderNameAndExtension) {
  auto p = SplitImportPath("/home/me/Boards.v2/top.layer.GBRX");
  EXPECT_EQ(p.folder, "/home/me/Boards.v2/");
  EXPECT_EQ(p.name, "top.layer.GBRX");
  EXPECT_EQ(p.extension, "BRX");  // the last three characters after the final point
  EXPECT_EQ(SplitImportPath("/a.b/plain").extension, "");
  EXPECT_EQ(SplitImportPath("x.gb").extension, "gb");
  EXPECT_EQ(SplitImportPath("x.gb").folder, "");
}

TEST(Dialects, ExtensionHistorySpillsIntoTheNextRow) {
  Settings s;
  s.ImportFormat[kRowAres].Extension = {"AA1", "AA2"};
  s.ImportFormat[kRowEagle].Extension = {"EE1", "EE2"};
  RememberExtension(s, kRowAres, "xyz");
  EXPECT_EQ(s.ImportFormat[kRowAres].Extension[0], "XYZ");
  EXPECT_EQ(s.ImportFormat[kRowAres].Extension[1], "AA1");
  EXPECT_EQ(s.ImportFormat[kRowEagle].Extension[0], "AA2");
  EXPECT_EQ(s.ImportFormat[kRowEagle].Extension[1], "EE2");

  RememberExtension(s, kRowAres, "Top");  // a default extension is not remembered
  RememberExtension(s, kRowAres, "");
  EXPECT_EQ(s.ImportFormat[kRowAres].Extension[0], "XYZ");
  RememberExtension(s, kRowOsmond, "grb");  // Osmond's fixed pair is cmp and sol
  EXPECT_EQ(s.ImportFormat[kRowOsmond].Extension[0], "GRB");
  RememberExtension(s, kRowOsmond, "SOL");
  EXPECT_EQ(s.ImportFormat[kRowOsmond].Extension[0], "GRB");

  s.ImportFormat[kRowExcellon].Extension = {"E1", "E2"};  // the last row has no neighbour
  RememberExtension(s, kRowExcellon, "nc");
  EXPECT_EQ(s.ImportFormat[kRowExcellon].Extension[0], "NC");
  EXPECT_EQ(s.ImportFormat[kRowExcellon].Extension[1], "E1");
  RememberExtension(s, kRowExcellon, "DRL");
  EXPECT_EQ(s.ImportFormat[kRowExcellon].Extension[0], "NC");
}

TEST(RecentFiles, NewestFirstOneEntryPerPath) {
  Settings s;
  AddRecentFile(s, "/b/", "one.gbr", 0);
  AddRecentFile(s, "/b/", "two.cmp", kFormatEagle);
  EXPECT_EQ(s.RecentFormat[1], kFormatGerber);      // "All files" is kept as Gerber
  AddRecentFile(s, "/B/", "ONE.GBR", kFormatAres);  // the same path in another case
  EXPECT_EQ(RecentFileCount(s), 2);
  EXPECT_EQ(s.RecentName[0], "ONE.GBR");
  EXPECT_EQ(s.RecentFormat[0], kFormatAres);
  EXPECT_EQ(s.RecentName[1], "two.cmp");
  EXPECT_EQ(RecentMenuText(s, 1), "&2 - two.cmp");
  EXPECT_EQ(RecentMenuText(s, 2), "");

  for (int i = 0; i < 6; ++i) AddRecentFile(s, "/c/", "f" + std::to_string(i), 19);
  EXPECT_EQ(RecentFileCount(s), kRecentFiles);
  EXPECT_EQ(s.RecentName[0], "f5");
  EXPECT_EQ(s.RecentName[4], "f1");  // the oldest fell off
}

TEST(ImportScales, TheDialogEditsOneRow) {
  EXPECT_EQ(ImportScalesRow(12421), kRowGerber);
  EXPECT_EQ(ImportScalesRow(12430), kRowExcellon);
  EXPECT_EQ(ImportScalesRow(12431), -1);

  Settings s;
  s.ImportFormat[kRowAres].FlipXY = 0x80 | 2;
  TDialogImport ares(s, kRowAres, "Isolith", ',');
  EXPECT_EQ(ares.title, "Isolith ARES");
  EXPECT_EQ(ares.scaleIn, "1");
  EXPECT_TRUE(ares.hasApertures);
  EXPECT_TRUE(ares.flipY);
  EXPECT_FALSE(ares.flipX);

  FakePlatform platform;
  platform.decimalSeparator = ',';
  ares.scaleIn = "2*3";
  ares.aperScaleIn = "0,5";
  ares.drillScaleIn = "2000";  // out of range: refused, nothing written
  ares.swapXY = true;
  EXPECT_FALSE(ares.Accept(platform));
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, "Error");
  EXPECT_EQ(platform.messages[0].text.substr(0, 16), "Drills :  2000 \n");
  EXPECT_FLOAT_EQ(s.ImportFormat[kRowAres].ScaleIn, 1);

  ares.drillScaleIn = "0,0005";  // within the tolerance of the field check
  EXPECT_TRUE(ares.Accept(platform));
  EXPECT_FLOAT_EQ(s.ImportFormat[kRowAres].ScaleIn, 6);
  EXPECT_FLOAT_EQ(s.ImportFormat[kRowAres].AperScaleIn, 0.5f);
  EXPECT_FLOAT_EQ(s.ImportFormat[kRowAres].DrillScaleIn, 0.0005f);
  EXPECT_EQ(s.ImportFormat[kRowAres].FlipXY, 0x80 | 4 | 2);

  TDialogImport excellon(s, kRowExcellon, "Isolith", '.');
  EXPECT_EQ(excellon.title, "Isolith EXCELLON");
  EXPECT_EQ(excellon.scaleIn, "0.1");
  EXPECT_FALSE(excellon.hasApertures);
  excellon.aperScaleIn = "nonsense";  // absent for drills: never checked
  EXPECT_TRUE(excellon.Accept(platform));

  // The modern reading and its arc tolerance are the program's, whichever row shows them.
  EXPECT_FALSE(excellon.modernImport);
  EXPECT_EQ(excellon.arcTolerance, "0.01");
  excellon.modernImport = true;
  excellon.arcTolerance = "5";  // above 1 mm: refused, nothing written
  EXPECT_FALSE(excellon.Accept(platform));
  EXPECT_EQ(excellon.focus, TDialogImport::kArcTolerance);
  EXPECT_FALSE(s.ModernImport);
  excellon.arcTolerance = "0.002";
  EXPECT_TRUE(excellon.Accept(platform));
  EXPECT_TRUE(s.ModernImport);
  EXPECT_FLOAT_EQ(s.ArcTolerance, 0.002f);
}

}  // namespace
}  // namespace isolith::test
