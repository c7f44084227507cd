#include "cli/CliMain.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/CliInfo.h"
#include "core/board/Board.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

namespace fs = std::filesystem;

struct CliRun {
  int status;
  std::string out;
  std::string err;
};

CliRun Cli(const std::string& programFolder, std::vector<std::string> args) {
  std::ostringstream out, err;
  const int status = CliMain(args, programFolder, out, err);
  return {status, out.str(), err.str()};
}

TEST(Cli, UsageErrorsTouchNothing) {
  TempFolder program, config;
  const std::string ini = config.path() + "Isolith.ini";
  const std::vector<std::vector<std::string>> bad = {
      {"--config", config.path()},                                       // no command
      {"--config", config.path(), "frobnicate"},                         // unknown command
      {"--config", config.path(), "--verbose", "settings"},              // unknown option
      {"--config", config.path(), "--set", "NoSuchKey=1", "settings"},   // unknown key
      {"--config", config.path(), "--set", "MillingSpeed", "settings"},  // no "="
      {"--config", config.path(), "--set", "PadSizeX1=2", "settings"},   // aperture key
      {"--config", config.path(), "settings", "extra"},                  // stray word
      {"--config"},                                                      // folder missing
      {"--config", config.path(), "export", "a.gbr", "-o", "b.gbr"},     // no format
      {"--config", config.path(), "export", "--format", "dxf", "a.gbr", "-o", "b"},
      {"--config", config.path(), "export", "--format", "gerber", "a.gbr"},  // no output
  };
  for (const auto& args : bad) {
    const CliRun r = Cli(program.path(), args);
    EXPECT_EQ(r.status, kCliUsage) << args.back();
    EXPECT_TRUE(r.out.empty());
    // One line, naming the program.
    EXPECT_EQ(r.err.rfind("isolith-cli: ", 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    EXPECT_FALSE(fs::exists(ini)) << args.back();
    EXPECT_FALSE(fs::exists(program.path() + "Isolith.ini"));
  }

  const CliRun version = Cli(program.path(), {"--version"});
  EXPECT_EQ(version.status, kCliOk);
  EXPECT_EQ(version.out.rfind("isolith-cli ", 0), 0u);
  EXPECT_FALSE(fs::exists(program.path() + "Isolith.ini"));
  EXPECT_EQ(Cli(program.path(), {"--help"}).status, kCliOk);
}

// "export" writes the first layer back as a board file, which reads in again.
TEST(Cli, ExportWritesTheLayerAsGerberOrExcellon) {
  TempFolder program, config;
  const std::string board = std::string(ISOLITH_TEST_DATA) + "/two-pads.gbr";
  const std::string gerber = config.path() + "back.grb", drills = config.path() + "back.drl";
  for (const auto& [format, path] : {std::pair{"gerber", gerber}, {"excellon", drills}}) {
    const CliRun r = Cli(program.path(), {"--config", config.path(), "export", "--format", format,
                                          board, "-o", path});
    EXPECT_EQ(r.status, kCliOk) << r.err;
  }
  EXPECT_EQ(ReadAll(drills).rfind("M48\r\nM90\r\nM72,LZ\r\nINCH\r\n", 0), 0u);
  const CliRun info = Cli(program.path(), {"--config", config.path(), "info", "--json", gerber,
                                           "--drills", drills, "--drill-zeros", "auto"});
  ASSERT_EQ(info.status, kCliOk) << info.err;
  const nlohmann::json job = nlohmann::json::parse(info.out);
  EXPECT_EQ(job["layers"][0]["pads"], 2);
  EXPECT_EQ(job["drills"], 2);
  EXPECT_EQ(job["drillOverlap"], 100);
  // A folder that is not there: status 1.
  const CliRun bad = Cli(program.path(), {"--config", config.path(), "export", "--format", "gerber",
                                          board, "-o", config.path() + "no/x.grb"});
  EXPECT_EQ(bad.status, kCliFailed);
}

TEST(Cli, SettingsRoundTripAndOverridesStayOut) {
  TempFolder program, config;
  const std::string ini = config.path() + "Isolith.ini";

  // A first run in an empty folder creates the file, and prints exactly what it holds.
  const CliRun first = Cli(program.path(), {"--config", config.path(), "settings"});
  ASSERT_EQ(first.status, kCliOk) << first.err;
  const std::string written = ReadAll(ini);
  ASSERT_FALSE(written.empty());
  EXPECT_EQ(first.out, written);
  EXPECT_NE(written.find("MillingSpeed=600\r\n"), std::string::npos);

  // The first run already read its own file back (the "TopBarStyle" key feeds ZapSound, and a
  // drilling tool of "0" reads as tool 1), so a second run prints the very same bytes.
  EXPECT_NE(written.find("\r\nZapSound=0\r\n"), std::string::npos);
  const CliRun second = Cli(program.path(), {"--config=" + config.path(), "settings"});
  ASSERT_EQ(second.status, kCliOk);
  const std::string settled = ReadAll(ini);
  EXPECT_EQ(second.out, first.out);
  EXPECT_EQ(settled, written);
  const CliRun third = Cli(program.path(), {"--config", config.path(), "settings"});
  ASSERT_EQ(third.status, kCliOk);
  EXPECT_EQ(third.out, settled);
  EXPECT_EQ(ReadAll(ini), settled);

  // An override is read as the file reads it (a speed of 0 is clamped to 6), shows in the
  // output, and never reaches the file.
  const CliRun set = Cli(program.path(), {"--config", config.path(), "--set", "MillingSpeed=0",
                                          "--set=showgrid=No", "settings"});
  ASSERT_EQ(set.status, kCliOk) << set.err;
  EXPECT_NE(set.out.find("\nMillingSpeed=6\r\n"), std::string::npos);
  EXPECT_NE(set.out.find("\nShowGrid=No\r\n"), std::string::npos);
  EXPECT_EQ(ReadAll(ini), settled);

  // "info" runs the same start-up and writes the same file.
  const CliRun info =
      Cli(program.path(), {"--config", config.path(), "--set", "MillingSpeed=9", "info"});
  ASSERT_EQ(info.status, kCliOk);
  EXPECT_EQ(ReadAll(ini), settled);
}

TEST(Cli, FirstRunReadsAToolLibraryThatIsThere) {
  TempFolder program, config;
  std::ofstream(config.path() + "Isolith.too") << "[Tool #1]\r\nNumber=1\r\nDiameter=0.8\r\n";
  const CliRun r = Cli(program.path(), {"--config", config.path(), "info", "--json"});
  ASSERT_EQ(r.status, kCliOk) << r.err;
  EXPECT_TRUE(fs::exists(config.path() + "Isolith.ini"));
  EXPECT_EQ(ReadAll(config.path() + "Isolith.too"), "[Tool #1]\r\nNumber=1\r\nDiameter=0.8\r\n");
}

TEST(Cli, InfoOfAnEmptyJob) {
  TempFolder program, config;
  const CliRun text = Cli(program.path(), {"--config", config.path(), "info"});
  ASSERT_EQ(text.status, kCliOk);
  EXPECT_EQ(text.out, "Card: 100 x 70 mm, thickness 1 mm\nOrigin: 0, 0\nDrills: 0\nCutouts: 0\n");

  const CliRun json = Cli(program.path(), {"--config", config.path(), "info", "--json"});
  ASSERT_EQ(json.status, kCliOk);
  const nlohmann::json j = nlohmann::json::parse(json.out);
  EXPECT_EQ(j["card"]["width"], 100.0);
  EXPECT_EQ(j["card"]["height"], 70.0);
  EXPECT_EQ(j["card"]["thickness"], 1.0);
  EXPECT_EQ(j["origin"]["x"], 0.0);
  EXPECT_TRUE(j["layers"].is_array());
  EXPECT_TRUE(j["layers"].empty());
  EXPECT_EQ(j["drills"], 0);
  EXPECT_EQ(j["cutouts"], 0);
}

TEST(Cli, InfoCountsEachLayer) {
  Board b;
  b.CardWidth = 55.1f;
  b.OriginX = 2.54f;
  b.LayerName[0] = "TOP\xff.GBR";  // not UTF-8: the JSON still comes out
  b.Pads[0] = new TPad{10, 0, 5, 5, new TPad{10, 0, 9, 9, nullptr}};
  b.Tracks[1] = new TTrack{11, 0, 0, 0, 1, 1, nullptr};
  b.Hatches[1] = new TPolygon;
  b.Drills = new TDrill{1, 0, 5, 5, nullptr};
  const nlohmann::json j = JobInfoJson(b);
  EXPECT_EQ(j["card"]["width"], 55.1);  // the float's shortest text, not its double expansion
  EXPECT_EQ(j["origin"]["x"], 2.54);
  ASSERT_EQ(j["layers"].size(), 2u);
  EXPECT_EQ(j["layers"][0]["index"], 0);
  EXPECT_EQ(j["layers"][0]["pads"], 2);
  EXPECT_EQ(j["layers"][0]["tracks"], 0);
  EXPECT_EQ(j["layers"][0]["overlap"], 0);
  EXPECT_EQ(j["layers"][1]["index"], 1);
  EXPECT_EQ(j["layers"][1]["tracks"], 1);
  EXPECT_EQ(j["layers"][1]["hatches"], 1);
  EXPECT_EQ(j["layers"][1]["contours"], 0);
  EXPECT_EQ(j["drills"], 1);
  EXPECT_NO_THROW(j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
  EXPECT_NE(JobInfoText(b).find("Layer 1 \"\": 0 pads, 1 tracks, 0 contours, 1 hatches"),
            std::string::npos);
}

// --modern reads this run's files the modern way and leaves the settings file as it was.
TEST(Cli, ModernReadsARegionAsCopperForThisRunOnly) {
  TempFolder program, config;
  const std::string file = config.path() + "pour.gbr";
  std::ofstream(file) << "%FSLAX34Y34*%%MOMM*%%ADD10C,1.0*%D10*X0Y0D03*X100000Y100000D03*"
                         "G36*X0Y0D02*X100000Y0D01*Y100000D01*X0D01*Y0D01*G37*M02*";
  auto tracks = [&](std::vector<std::string> words) {
    std::vector<std::string> args = {"--config",        config.path(), "--set",
                                     "DetectCutOut=No", "info",        "--json"};
    args.insert(args.end(), words.begin(), words.end());
    const CliRun r = Cli(program.path(), args);
    EXPECT_EQ(r.status, kCliOk) << r.err;
    return int(nlohmann::json::parse(r.out)["layers"][0]["tracks"]);
  };
  EXPECT_EQ(tracks({file}), 4);  // the outline, drawn with the pen of the moment
  EXPECT_GT(tracks({"--modern", file}), 100);
  EXPECT_NE(ReadAll(config.path() + "Isolith.ini").find("ModernImport=No"), std::string::npos);
}

}  // namespace
}  // namespace isolith
