#include "commands/CommandLine.h"

#include <gtest/gtest.h>

#include <set>

namespace isolith {
namespace {

struct Files {
  std::set<std::string> present;
  bool operator()(const std::string& path) const { return present.count(path) != 0; }
};

TEST(CommandLine, FileByExtensionAndOptionWords) {
  Settings s;
  Files none;
  // Case is ignored in the test but kept in the name; a single missing file is kept for the
  // reader to report.
  CommandLineOptions o = ParseCommandLine({"/home/me/Board.Cmp"}, s, none);
  EXPECT_EQ(o.StartFile, "/home/me/Board.Cmp");
  EXPECT_EQ(s.LayerImportFormat, kFormatEagle);

  const std::pair<const char*, int> cases[] = {
      {"a.gbr", kFormatGerber}, {"a.GRB", kFormatGerber},  {"a.bot", kFormatAres},
      {"a.sol", kFormatEagle},  {"a.art", kFormatPads},    {"a.gb1", kFormatWizard},
      {"a.gtl", kFormatProtel}, {"a.wt5", kFormatWinTypon}};
  for (const auto& [word, format] : cases) {
    Settings t;
    t.LayerImportFormat = 0;
    ParseCommandLine({word}, t, none);
    EXPECT_EQ(t.LayerImportFormat, format) << word;
  }

  // Option words in any case; an unknown extension leaves no start file.
  Settings u;
  o = ParseCommandLine({"debug", "NoSplash", "AUTOSTART", "automill", "snapshot", "notes.txt"}, u,
                       none);
  EXPECT_TRUE(o.DebugMode && o.NoSplash && o.AutoStart && o.AutoMill && o.Snapshot);
  EXPECT_TRUE(o.StartFile.empty());
  EXPECT_EQ(u.LayerImportFormat, kFormatGerber);
  EXPECT_EQ(u.DrillImportFormat, kFormatExcellon1);
  o = ParseCommandLine({"GBR"}, u, none);  // too short to carry an extension
  EXPECT_TRUE(o.StartFile.empty());
}

TEST(CommandLine, DrillFileTakesTheLayerFormatSeenSoFar) {
  Files both{{"top.top", "holes.drl"}};
  Settings s;
  CommandLineOptions o = ParseCommandLine({"top.top", "holes.drl"}, s, both);
  EXPECT_EQ(o.StartFile, "holes.drl");
  EXPECT_EQ(s.LayerImportFormat, kFormatAres);
  EXPECT_EQ(s.DrillImportFormat, kFormatAres);

  // Alone, it sets 0: the words never choose an Excellon kind.
  Settings t;
  o = ParseCommandLine({"holes.EXL"}, t, Files{});
  EXPECT_EQ(o.StartFile, "holes.EXL");
  EXPECT_EQ(t.DrillImportFormat, 0);
  EXPECT_EQ(t.LayerImportFormat, kFormatGerber);
}

TEST(CommandLine, UserExtensionsAndMissingFiles) {
  Settings s;
  s.ImportFormat[kRowProtel].Extension[1] = "ph1";
  s.ImportFormat[kRowOrcad].Extension[0] = "orx";  // Orcad and Osmond are not tested
  s.ImportFormat[kRowOsmond].Extension[0] = "osx";
  s.ImportFormat[kRowExcellon].Extension[0] = "tap";
  s.ImportFormat[kRowGerber].Extension[0] = "";
  Files all{{"b.PH1", "b.orx", "b.osx", "b.tap"}};
  EXPECT_EQ(FormatOfCommandLineFile("b.PH1", s), kFormatProtel);
  EXPECT_EQ(FormatOfCommandLineFile("b.orx", s), 0);
  EXPECT_EQ(FormatOfCommandLineFile("b.osx", s), 0);
  EXPECT_EQ(FormatOfCommandLineFile("b.tap", s), kFormatExcellon1);
  EXPECT_EQ(FormatOfCommandLineFile("b.", s), 0);  // an empty user extension matches nothing

  CommandLineOptions o = ParseCommandLine({"b.PH1"}, s, all);
  EXPECT_EQ(o.StartFile, "b.PH1");
  EXPECT_EQ(s.LayerImportFormat, kFormatProtel);
  o = ParseCommandLine({"b.orx"}, s, all);
  EXPECT_TRUE(o.StartFile.empty());

  // With more than one word a missing file is dropped without a word.
  o = ParseCommandLine({"gone.gbr", "NOSPLASH"}, s, all);
  EXPECT_TRUE(o.StartFile.empty());
  EXPECT_TRUE(o.NoSplash);
  // The last file named wins.
  o = ParseCommandLine({"b.PH1", "b.tap"}, s, all);
  EXPECT_EQ(o.StartFile, "b.tap");
  EXPECT_EQ(s.DrillImportFormat, kFormatProtel);
}

}  // namespace
}  // namespace isolith
