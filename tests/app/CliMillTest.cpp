// isolith-cli mill: a small hand-written board milled to a machine file, and the writes that
// cannot succeed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/CliMain.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

namespace fs = std::filesystem;

struct MillRun {
  int status;
  std::string err;
};

// A configuration with one 0.2 mm end mill, chosen for contours and drills.
class CliMill : public ::testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(config.path() + "Isolith.too")
        << "[Tool #1]\r\nNumber=1\r\nName=End mill 0.2 mm\r\nDiameter=0.2\r\n"
           "Profile=Cylindrical\r\nRotationSpeed=20000\r\nAbsDrillSpeed=60\r\n";
  }

  MillRun Mill(const std::string& out, std::vector<std::string> sets = {"MachineFormat=ISO"},
               const std::vector<std::string>& millWords = {}) {
    std::vector<std::string> args{"--config", config.path(), "--set", "MillingTool=1"};
    for (const std::string& s : sets) args.insert(args.end(), {"--set", s});
    args.insert(args.end(), {"mill", std::string(ISOLITH_TEST_DATA) + "/two-pads.gbr", "-o", out});
    args.insert(args.end(), millWords.begin(), millWords.end());
    std::ostringstream output, err;
    const int status = CliMain(args, program.path(), output, err);
    EXPECT_TRUE(output.str().empty());
    return {status, err.str()};
  }

  TempFolder program, config, work;
};

TEST_F(CliMill, WritesTheJobInTheFormatOfTheSettings) {
  const std::string iso = work.path() + "board.iso";
  const MillRun run = Mill(iso);
  ASSERT_EQ(run.status, kCliOk) << run.err;
  const std::string text = ReadAll(iso);
  EXPECT_EQ(text.rfind("( Isolith 3 - 25/09/2008 / ISO-Mill Output )\r\n", 0), 0u) << text;
  EXPECT_NE(text.find("\r\nT1 M06\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nG01 F600 "), std::string::npos);
  const std::string end = "\r\nM02\r\n%\r\n";
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
  // The format chosen for the run stays out of the settings file.
  EXPECT_NE(ReadAll(config.path() + "Isolith.ini").find("\r\nMachineFormat=ISO\r\n"),
            std::string::npos);

  // The plotter, as its name is spelled in the settings: one line, the pen being the row of
  // "Final output" (engraving is the sixth).
  const std::string plt = work.path() + "board.plt";
  ASSERT_EQ(Mill(plt, {"MachineFormat=PLT"}).status, kCliOk);
  const std::string hpgl = ReadAll(plt);
  EXPECT_EQ(hpgl.rfind("IN;PA;PU;SP6;", 0), 0u) << hpgl;
  EXPECT_EQ(hpgl.find("\r\n"), hpgl.size() - 2);
  EXPECT_EQ(ReadAll(config.path() + "Isolith.ini").find("MachineFormat=PLT"), std::string::npos);
}

// --post: a shipped post-processor for one run; neither the settings nor "Isolith.ppf" keep it.
TEST_F(CliMill, PostWritesWithAShippedPostProcessorForThisRunOnly) {
  fs::copy(fs::path(ISOLITH_SOURCE_DIR) / "data/postprocessors", program.path() + "postprocessors");
  const struct {
    std::string post, sequence;
    int status;
    std::string inFile, inErr;
  } cases[] = {
      {"GRBL", "Yes", kCliOk, "\r\n(MSG,Change to tool 1, zero Z, then resume)\r\nM0\r\n", ""},
      {"linuxcnc", "Yes", kCliOk, "\r\nT1 M6\r\nG43 H1\r\nM3 S20000\r\nG4 P3\r\n", ""},
      {"haas", "Yes", kCliFailed, "",
       "no post-processor 'haas' in " + program.path() +
           "postprocessors (one of grbl, linuxcnc, mach, marlin)"},
      {"grbl", "No", kCliFailed, "", "--post needs MachineSetSeq=Yes"},
  };
  for (const auto& c : cases) {
    const std::string out = work.path() + "board." + c.post;
    const MillRun run =
        Mill(out, {"MachineFormat=ISO", "MachineSetSeq=" + c.sequence}, {"--post", c.post});
    EXPECT_EQ(run.status, c.status) << c.post << ": " << run.err;
    EXPECT_NE(run.err.find(c.inErr), std::string::npos) << run.err;
    EXPECT_NE(ReadAll(out).find(c.inFile), std::string::npos) << ReadAll(out);
    EXPECT_NE(ReadAll(config.path() + "Isolith.ini").find("\r\nMachineFormat=ISO\r\n"),
              std::string::npos);
    EXPECT_FALSE(fs::exists(config.path() + "Isolith.ppf"));
  }
}

TEST_F(CliMill, FailsWithoutAFileWhenNothingCanBeWritten) {
  // A folder that does not exist.
  const std::string lost = work.path() + "no-such-folder/board.iso";
  EXPECT_EQ(Mill(lost).status, kCliFailed);
  EXPECT_FALSE(fs::exists(work.path() + "no-such-folder"));

  // A device is refused rather than replaced by the file.
  EXPECT_EQ(Mill("/dev/full").status, kCliFailed);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));

  // A format that is not a machine format, and no contour tool: said on the error stream.
  const std::string iso = work.path() + "board.iso";
  const MillRun job = Mill(iso, {"MachineFormat=TVN"});
  EXPECT_EQ(job.status, kCliFailed);
  EXPECT_NE(job.err.find("MachineFormat TVN is not a machine format"), std::string::npos);
  const MillRun noTool = Mill(iso, {"MillingTool=0"});
  EXPECT_EQ(noTool.status, kCliFailed);
  EXPECT_EQ(noTool.err.rfind("isolith-cli: ", 0), 0u) << noTool.err;
  EXPECT_FALSE(fs::exists(iso));

  // Without -o nothing is read.
  std::ostringstream out, err;
  EXPECT_EQ(CliMain({"--config", config.path(), "mill", "board.gbr"}, program.path(), out, err),
            kCliUsage);
  EXPECT_NE(err.str().find("mill needs -o OUT"), std::string::npos);
}

// Every refusal says on the error stream what stopped the run and what to change.
TEST_F(CliMill, EveryRefusalSaysWhy) {
  const std::string iso = work.path() + "board.iso";
  const struct {
    std::vector<std::string> sets;
    std::vector<std::string> said;
  } cases[] = {
      {{"MillingTool=0"},
       {"no contours could be calculated: no contour tool is chosen", "\"Active tools\"",
        "MillingTool", config.path() + "Isolith.too"}},
      {{"MillingTool=7"},
       {"the contour tool (MillingTool, tool #7) has no diameter", "\"Tool library\""}},
      {{"MachineFormat=ISO", "MachineSetSeq=Yes", "MultiSequence1=1", "MultiSequence8=1"},
       {"the machine file was not written: \"Final output\": Section #1 and Section #8 both "
        "choose"}},
  };
  for (const auto& c : cases) {
    const MillRun run = Mill(iso, c.sets);
    EXPECT_EQ(run.status, kCliFailed) << c.sets.back();
    for (const std::string& words : c.said)
      EXPECT_NE(run.err.find(words), std::string::npos) << words << "\n" << run.err;
    EXPECT_FALSE(fs::exists(iso));
  }
}

// A first run with an empty configuration folder: the starter library beside the program is
// copied there, and the example board mills with it; a drill file alone is a job too.
TEST(CliFirstRun, EmptyConfigurationFolderGetsTheStarterLibrary) {
  TempFolder program, config, work;
  fs::copy_file(std::string(ISOLITH_SOURCE_DIR) + "/data/Isolith.too",
                program.path() + "Isolith.too");
  const std::string board = std::string(ISOLITH_SOURCE_DIR) + "/examples/blinky/blinky";
  const std::string iso = work.path() + "blinky.iso";
  const struct {
    std::vector<std::string> job;
    std::string output;  // the file written, or standard output when empty
    std::string expected;
  } runs[] = {
      {{"mill", board + ".gtl", "-o", iso}, iso, "\r\nG01 "},
      {{"mill", "--drills", board + ".drl", "-o", iso + ".drills"}, iso + ".drills", "M02"},
      {{"info", "--drills", board + ".drl"}, "", "Drills: 1"},
  };
  for (const auto& run : runs) {
    std::vector<std::string> args{"--config", config.path(), "--set", "MachineFormat=ISO"};
    args.insert(args.end(), run.job.begin(), run.job.end());
    std::ostringstream out, err;
    ASSERT_EQ(CliMain(args, program.path(), out, err), kCliOk) << run.job[0] << err.str();
    const std::string said = run.output.empty() ? out.str() : ReadAll(run.output);
    EXPECT_NE(said.find(run.expected), std::string::npos) << said;
  }
  EXPECT_EQ(ReadAll(config.path() + "Isolith.too"), ReadAll(program.path() + "Isolith.too"));
}

}  // namespace
}  // namespace isolith
