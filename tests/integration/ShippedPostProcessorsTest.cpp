// The shipped post-processors on real boards: each sample board's job is written in ISO and with
// every shipped post-processor, and each file goes to what reads it on the machine: LinuxCNC's
// own interpreter (rs274) for the LinuxCNC and Mach files, whose feed moves must be the ISO
// file's, GRBL 1.1's rules for the GRBL file, one command a line for Marlin.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliJob.h"
#include "commands/Application.h"
#include "commands/OutputCommands.h"
#include "commands/ToolpathCommands.h"
#include "integration/GrblRules.h"
#include "integration/IsoMoves.h"
#include "integration/SampleBoards.h"
#include "output/formats/FileTypes.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::ReadAll;
using test::TempFolder;

// One feed move: an arc or a straight line to (x, y, z) at feed f in mm/min.
struct FeedMove {
  bool arc;
  double x, y, z, f;
};

// The feed moves of a G-code file as the words say them (modal motion, feed and axes).
std::vector<FeedMove> GcodeFeedMoves(const std::string& program) {
  std::vector<FeedMove> moves;
  double at[3] = {0, 0, 0}, f = 0;
  int motion = 0;
  test::ForEachBlock(program, [&](std::istringstream& words) {
    std::string word;
    bool moved = false;
    while (words >> word) {
      const double value = std::strtod(word.c_str() + 1, nullptr);
      const std::size_t axis = std::string("XYZ").find(word[0]);
      if (word[0] == 'G' && value <= 3) motion = static_cast<int>(value);
      if (word[0] == 'F') f = value;
      if (axis != std::string::npos) at[axis] = value, moved = true;
    }
    if (moved && motion > 0) moves.push_back({motion > 1, at[0], at[1], at[2], f});
  });
  return moves;
}

// The feed moves of rs274's canonical calls.
std::vector<FeedMove> CanonicalFeedMoves(const std::string& canon) {
  static const std::regex call(R"(SET_FEED_RATE\(([-\d.]+)\)|(STRAIGHT|ARC)_FEED\(([^)]*)\))");
  std::vector<FeedMove> moves;
  double f = 0;
  for (std::sregex_iterator it(canon.begin(), canon.end(), call), end; it != end; ++it) {
    if ((*it)[1].matched) {
      f = std::stod((*it)[1]);
      continue;
    }
    std::vector<double> args;
    std::istringstream list((*it)[3].str());
    for (std::string arg; std::getline(list, arg, ',');) args.push_back(std::stod(arg));
    // ARC_FEED(end X, end Y, centre X, centre Y, turn, end Z, ...)
    const bool arc = (*it)[2] == "ARC";
    moves.push_back({arc, args[0], args[1], args[arc ? 5 : 2], f});
  }
  return moves;
}

// The first difference between two lists of feed moves, empty when there is none. Points are
// equal within the ISO file's last decimal, feeds within the post-processor's.
std::string FirstDifference(const std::vector<FeedMove>& want, const std::vector<FeedMove>& got) {
  if (want.size() != got.size())
    return std::to_string(got.size()) + " feed moves instead of " + std::to_string(want.size());
  for (std::size_t i = 0; i < want.size(); ++i) {
    const FeedMove &a = want[i], &b = got[i];
    if (a.arc != b.arc || std::fabs(a.x - b.x) > 0.006 || std::fabs(a.y - b.y) > 0.006 ||
        std::fabs(a.z - b.z) > 0.006 || std::fabs(a.f - b.f) > 0.06) {
      std::ostringstream s;
      s << "move " << i << ": (" << b.x << ", " << b.y << ", " << b.z << ") F" << b.f
        << " instead of (" << a.x << ", " << a.y << ", " << a.z << ") F" << a.f;
      return s.str();
    }
  }
  return {};
}

// Writes every sample board's job into `folder`: "<board>.iso" and "<board>.<post>" for each
// shipped post-processor. Returns the boards written.
std::vector<std::string> WriteSampleJobs(const std::string& folder) {
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", folder + "Isolith.too");
  const std::string programFolder = std::string(ISOLITH_SOURCE_DIR) + "/data/";
  std::vector<std::string> boards;
  for (const fs::path& layer : test::TopCopperLayers()) {
    const std::string board = folder + layer.parent_path().filename().string() + ".";
    test::FakePlatform platform;
    Application app(platform, programFolder, folder);
    InitSettings(app);
    std::vector<LoadedFile> loaded;
    JobArguments job;
    job.layerFiles = {layer.string()};
    if (!LoadJob(app, job, loaded) || !CalculateContoursOnAllLayers(app)) continue;
    app.board.ActiveLayer = 0;
    app.settings.MachineFormat = kFormatIso;
    if (!MillJob(app, board + "iso")) continue;
    app.settings.MachineFormat = kFormatUser;
    for (const TShippedPostProcessor& post : ShippedPostProcessors(programFolder))
      if (LoadShippedPostProcessor(app.postProcessor, post, app.settings.SpeedUnit))
        MillJob(app, board + post.name);
    boards.push_back(board);
  }
  return boards;
}

// Marlin runs the first command of a line and reads the rest as its parameters.
int LinesOfManyCommands(const std::string& program) {
  static const std::regex command(R"((^|\s)[GM]\d)");
  std::istringstream lines(program);
  int many = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::string words = line.substr(0, line.find(';'));
    many += std::distance(std::sregex_iterator(words.begin(), words.end(), command),
                          std::sregex_iterator()) > 1;
  }
  return many;
}

TEST(ShippedPostProcessorFiles, EverySampleBoardRunsOnItsController) {
  TempFolder folder;
  const std::vector<std::string> boards = WriteSampleJobs(folder.path());
  ASSERT_EQ(boards.size(), 8u) << "sample boards missing from " << ISOLITH_FIXTURES;
  for (const std::string& board : boards) {
    const std::string grbl = ReadAll(board + "grbl"), marlin = ReadAll(board + "marlin");
    ASSERT_FALSE(grbl.empty() || marlin.empty()) << board;
    for (const test::GrblFault& fault : test::GrblFaults(grbl))
      ADD_FAILURE() << board << "grbl line " << fault.line << ": GRBL error " << fault.error;
    EXPECT_EQ(LinesOfManyCommands(marlin), 0) << board << "marlin";
    EXPECT_EQ(FirstDifference(GcodeFeedMoves(ReadAll(board + "iso")), GcodeFeedMoves(grbl)), "")
        << board << "grbl";
  }

  const std::string rs274 = std::string(ISOLITH_RS274) + "/rs274";
  if (!fs::exists(rs274))
    GTEST_SKIP() << "GRBL and Marlin files checked; LinuxCNC's interpreter rs274 is absent ("
                 << ReadAll(std::string(ISOLITH_RS274) + "/absent.txt")
                 << "), so the LinuxCNC and Mach files were not run: install linuxcnc-uspace";
  // Every tool of the library, so that each tool change finds its tool.
  const std::string table = folder.path() + "tool.tbl";
  std::ofstream(table) << [] {
    std::string lines;
    for (int t = 1; t <= 50; ++t)
      lines += "T" + std::to_string(t) + " P" + std::to_string(t) + " D1 Z0 ;\n";
    return lines;
  }();
  for (const std::string& board : boards) {
    const std::vector<FeedMove> iso = GcodeFeedMoves(ReadAll(board + "iso"));
    ASSERT_GT(iso.size(), 10u) << board;
    for (const char* post : {"linuxcnc", "mach"}) {
      SCOPED_TRACE(board + post);
      const std::string canon = board + "canon", messages = board + "messages";
      const std::string command = rs274 + " -t " + table + " -g " + board + post + " " + canon +
                                  " </dev/null >" + messages + " 2>&1";
      EXPECT_EQ(std::system(command.c_str()), 0) << ReadAll(messages);
      const std::string calls = ReadAll(canon);
      EXPECT_NE(calls.find("PROGRAM_END()"), std::string::npos) << "the run stopped early";
      EXPECT_EQ(FirstDifference(iso, CanonicalFeedMoves(calls)), "");
    }
  }
}

// The checker itself knows the faults it is there to find.
TEST(GrblRules, FindGrblsOwnErrors) {
  const struct {
    const char* program;
    std::vector<int> errors;
  } cases[] = {
      {"G21 G90 G94 G17\nG0 X1 Y2\nG1 F100 Z-0.1\nG2 X1 Y2 I-1 J0\nM3 S1000\nG4 P2\nM2\n", {}},
      {"(MSG,Change tool)\nM0\n", {}},
      {"G0 G1 X1\n", {test::kGrblModalGroup}},
      {"G00 G90 G94 G71\n", {test::kGrblUnsupported}},
      {"T1 M06\n", {test::kGrblUnsupported}},
      {"G1 X1\nG1 F10 X2\n", {test::kGrblNoFeedRate}},
      {"G0 X1 X2\n", {test::kGrblRepeatedWord}},
      {"G4\nG1 F10 I1 X2\n", {test::kGrblMissingValue, test::kGrblUnusedWords}},
      {"G2 F10 X1 Y1\nF-5\nQ1\n",
       {test::kGrblMissingValue, test::kGrblNegative, test::kGrblUnsupported}},
  };
  for (const auto& c : cases) {
    std::vector<int> found;
    for (const test::GrblFault& fault : test::GrblFaults(c.program)) found.push_back(fault.error);
    EXPECT_EQ(found, c.errors) << c.program;
  }
}

}  // namespace
}  // namespace isolith
