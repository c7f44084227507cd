// The real boards of the pinned sample set, loaded through isolith-cli as a script would: every
// copper layer comes in whole, and every plated drill file meets the pads of its board.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliJob.h"
#include "cli/CliMain.h"
#include "commands/Application.h"
#include "import/modern/ModernExcellon.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

namespace fs = std::filesystem;

const fs::path kBoards = ISOLITH_FIXTURES;

// One run of `isolith-cli info --json`, in a fresh program and settings folder of its own.
struct InfoRun {
  int status = -1;
  std::string err;
  nlohmann::json job;
};

InfoRun Info(std::vector<std::string> words) {
  TempFolder program, config;
  std::vector<std::string> args = {"--config", config.path()};
  args.insert(args.end(), words.begin(), words.end());
  std::ostringstream out, err;
  InfoRun run;
  run.status = CliMain(args, program.path(), out, err);
  run.err = err.str();
  if (run.status == kCliOk) run.job = nlohmann::json::parse(out.str(), nullptr, false);
  return run;
}

// ---- The test's own count of what a Gerber file holds -------------------------------------
//
// It follows the counting rules of the program's reader, which is a token scanner rather than
// a Gerber interpreter:
// - a block ends at a line feed or "*"; blanks, control bytes, upper-half bytes and "+" are
//   dropped, a block keeps at most 256 bytes, letters count in either case, and "%" alone is
//   an empty block, which does nothing at all;
// - in a block, X, Y, I, J, D and G each read the number that follows (up to 15 characters of
//   digits, "." and "-"; none reads as 0), also inside G04 comments; "%" reads a parameter and
//   ends the block: "%FS" with "T" pads coordinates to six digits and with "I" makes them
//   increments, "%AM" makes the next non-empty block a macro body that is not scanned;
// - D01, D02, D03 set the mode (the digit must end the number); G00, G54 and G04 set the mode
//   to D02, G02 and G03 mark the block as an arc;
// - after each non-empty block: in mode D03 a flash, and the mode returns to D02; in mode D01 a
//   straight draw, unless the position has not moved, no position was known yet, or the block
//   is an arc (G02 or G03 in that very block, with both I and J); then the position is noted.
// Positions are compared as the numbers written, not scaled: the boards do not change their
// unit or format in the middle of a file, where the two would differ.
struct GerberCount {
  int flashes = 0;
  int draws = 0;
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The number after `pos`; `pos` ends on its last character.
std::string NumberText(const std::string& block, size_t& pos) {
  std::string text;
  while (pos + 1 < block.size() && text.size() < 15 &&
         (IsDigit(block[pos + 1]) || block[pos + 1] == '.' || block[pos + 1] == '-'))
    text += block[++pos];
  return text;
}

double NumberValue(const std::string& text) {
  std::string number;
  size_t i = 0;
  if (i < text.size() && text[i] == '-') number += text[i++];
  bool point = false;
  for (; i < text.size() && (IsDigit(text[i]) || (text[i] == '.' && !point)); ++i) {
    point = point || text[i] == '.';
    number += text[i];
  }
  return number.empty() || number == "-" || number == "." || number == "-."
             ? 0.0
             : std::atof(number.c_str());
}

// A D or G number as the reader sees it: its whole part, or 0 from 1000 upwards.
int CodeValue(const std::string& text) {
  const double v = NumberValue(text);
  return v >= 1000 ? 0 : std::atoi(text.c_str());
}

std::vector<std::string> GerberBlocks(const std::string& bytes) {
  std::vector<std::string> blocks(1);
  for (char ch : bytes) {
    auto c = static_cast<unsigned char>(ch);
    if (c == '\n' || c == '*') {
      blocks.emplace_back();
      continue;
    }
    if (c <= ' ' || c >= 0x80 || c == '+' || blocks.back().size() >= 256) continue;
    blocks.back() += static_cast<char>(std::toupper(c));
  }
  return blocks;
}

GerberCount CountGerber(const fs::path& file) {
  constexpr double kNone = -12021962.0;
  GerberCount count;
  double x = 0, y = 0, px = kNone, py = kNone;
  int mode = 2;
  bool incremental = false, trailing = false, macroBody = false;
  for (std::string block : GerberBlocks(ReadAll(file))) {
    if (block == "%") block.clear();
    if (block.empty()) continue;
    bool arc = false, i = false, j = false;
    if (macroBody) {
      macroBody = false;
    } else {
      for (size_t pos = 0; pos < block.size(); ++pos) {
        const char c = block[pos];
        if (c == 'X' || c == 'Y' || c == 'I' || c == 'J') {
          std::string text = NumberText(block, pos);
          double v = NumberValue(text);
          if (trailing && text.find('.') == std::string::npos) {
            while (text.size() < 6) text += '0';
            v = NumberValue(text);
          }
          if (c == 'X') x = incremental ? x + v : v;
          if (c == 'Y') y = incremental ? y + v : v;
          if (c == 'I') i = true;
          if (c == 'J') j = true;
        } else if (c == 'D') {
          const int d = CodeValue(NumberText(block, pos));
          if (IsDigit(block[pos]) && d >= 1 && d <= 3) mode = d;
        } else if (c == 'G') {
          const int g = CodeValue(NumberText(block, pos));
          if (g == 0 || g == 54 || g == 4) mode = 2;
          if (g == 2 || g == 3) arc = true;
        } else if (c == '%') {
          const std::string rest = block.substr(pos + 1);
          if (rest.rfind("FS", 0) == 0) {
            for (char f : rest.substr(2)) {
              if (f == 'A') incremental = false;
              if (f == 'I') incremental = true;
              if (f == 'T') trailing = true;
            }
          }
          if (rest.rfind("AM", 0) == 0) macroBody = true;
          break;
        }
      }
    }
    if (mode == 1) {
      const bool still = px == x && py == y;
      const bool unknown = px == kNone && py == kNone;
      if (!still && !unknown && !(arc && i && j)) ++count.draws;
    } else if (mode == 3) {
      ++count.flashes;
      mode = 2;
    }
    px = x;
    py = y;
  }
  return count;
}

// The holes of a drill file as the program's reader counts them: every complete line (one that
// ends in a line feed) where an X or Y is followed by a digit, "." or "-", before any "$" and
// outside "( )". Lines with "MET" are header lines that the reader drops once it turns to
// millimetres; no hole line of the boards holds those letters.
int CountHoles(const fs::path& file) {
  std::istringstream in(ReadAll(file));
  std::string line;
  int holes = 0;
  while (std::getline(in, line)) {
    if (in.eof()) break;  // a last line without its line feed is not read
    std::string clean;
    for (char ch : line) {
      auto c = static_cast<unsigned char>(ch);
      if (c > ' ' && c < 0x80 && c != '+' && clean.size() < 256)
        clean += static_cast<char>(std::toupper(c));
    }
    if (clean.find("MET") != std::string::npos) continue;
    bool hole = false, comment = false;
    for (size_t k = 0; k + 1 < clean.size() && clean[k] != '$'; ++k) {
      if (clean[k] == '(') comment = true;
      if (clean[k] == ')') comment = false;
      const char next = clean[k + 1];
      if (!comment && (clean[k] == 'X' || clean[k] == 'Y') &&
          (IsDigit(next) || next == '.' || next == '-'))
        hole = true;
    }
    holes += hole;
  }
  return holes;
}

// ---- The boards --------------------------------------------------------------------------

struct Manifest {
  std::vector<std::string> copper;
  std::vector<std::string> drills;
};

Manifest ReadManifest(const std::string& board) {
  Manifest m;
  const nlohmann::json j =
      nlohmann::json::parse(ReadAll(kBoards / board / "manifest.json"), nullptr, false);
  if (!j.is_object() || !j.contains("layers")) return m;
  for (const auto& layer : j["layers"]) {
    const std::string type = layer.value("type", "");
    if (type == "copper") m.copper.push_back(layer.value("name", ""));
    if (type == "drill") m.drills.push_back(layer.value("name", ""));
  }
  return m;
}

// How each drill file of the boards is loaded: with the copper layer whose pads its holes meet
// once the load has aligned the lower-left corners of the two (the load moves the holes so that
// their smallest X and Y are those of the pads), and with the answers a person gives in the
// "Excellon import" dialog after reading the file's header.
struct DrillCase {
  const char* board;
  const char* drills;
  const char* copper;
  std::vector<std::string> answers;
  const char* why;
  bool plated = true;
};

const std::vector<std::string> kHeaderAnswers = {"--drill-zeros", "auto", "--drill-units", "auto"};

const std::vector<DrillCase>& DrillCases() {
  static const std::vector<DrillCase> cases = {
      {"8bit-mixtape",
       "mixtape.txt",
       "mixtape.gbl",
       {"--drill-zeros", "trailing", "--drill-units", "auto"},
       "the header says only M72, and the numbers are written without leading zeros "
       "(X7003Y2682, X11403Y4082): a person answers \"trailing\". The top layer's "
       "surface-mount pads reach further left and down than any hole, so aligning the corners "
       "puts the holes off the top pads; the bottom layer holds only the through-hole pads"},
      {"arduino-uno", "arduino-uno.drd", "arduino-uno.cmp", kHeaderAnswers, "\"INCH,TZ\""},
      {"bus-pirate", "BusPirate-v3.6a-SSOP.drd", "BusPirate-v3.6a-SSOP.cmp", kHeaderAnswers,
       "\"INCH,TZ\""},
      {"clockblock", "clockblock.drl", "clockblock-B_Cu.gbr", kHeaderAnswers,
       "\"INCH,TZ\" with every digit written; the top layer's surface-mount pads reach beyond "
       "the holes, as on 8bit-mixtape"},
      {"clockblock", "clockblock-NPTH.drl", "clockblock-B_Cu.gbr", kHeaderAnswers,
       "the file holds only the unplated holes (mounting holes and pegs): no pad of any layer "
       "stands at them, so there is nothing for them to meet",
       false},
      {"core", "core.TXT", "core.GTL", kHeaderAnswers,
       "\"INCH,TZ\"; the bottom layer's surface-mount pads reach beyond the holes"},
      {"freeduino", "freeduino.drd", "freeduino.cmp", kHeaderAnswers, "\"INCH,TZ\""},
      {"mchck", "mchck.drl", "mchck-B_Cu.pho", kHeaderAnswers,
       "\"METRIC,TZ\" with decimal points, which the reader follows from the inch answer; the "
       "top layer's surface-mount pads reach beyond the holes. The holes are given to 0.001 mm "
       "and the pads to 0.0001 inch, so about a third of them lie more than the 0.001 mm of a "
       "same point off their pads"},
      {"usbvil", "pic18f14k50.txt", "pic18f14k50.gbl", kHeaderAnswers,
       "\"INCH,LZ\". Every hole meets a top pad too, but one point holds two top pads, so the "
       "coincidences outnumber the holes and the overlap counts against all 86 top pads (47)"},
  };
  return cases;
}

std::vector<std::string> BoardNames() {
  std::set<std::string> names;
  for (const DrillCase& c : DrillCases()) names.insert(c.board);
  return {names.begin(), names.end()};
}

bool BoardsInstalled() {
  return fs::is_directory(kBoards);
}

constexpr const char* kNotInstalled =
    "the sample boards are not installed: ctest installs them first (fixture_boards), or run "
    "scripts/fetch-fixtures.sh BUILD/fixtures";

// The set of boards is the one the table knows: a new board or drill file in the pinned set
// needs its answers and layer written down here.
TEST(FixtureBoards, TheTableCoversEveryBoardAndDrillFile) {
  ASSERT_TRUE(BoardsInstalled()) << kNotInstalled;
  std::set<std::string> onDisk;
  for (const auto& entry : fs::directory_iterator(kBoards))
    if (entry.is_directory()) onDisk.insert(entry.path().filename().string());
  const std::vector<std::string> names = BoardNames();
  EXPECT_EQ(onDisk, std::set<std::string>(names.begin(), names.end()));
  for (const std::string& board : names) {
    const Manifest m = ReadManifest(board);
    EXPECT_GE(m.copper.size(), 2u) << board;
    ASSERT_FALSE(m.drills.empty()) << board;
    for (const std::string& drills : m.drills) {
      int cases = 0;
      for (const DrillCase& c : DrillCases()) {
        if (board != c.board || drills != c.drills) continue;
        ++cases;
        EXPECT_NE(std::find(m.copper.begin(), m.copper.end(), c.copper), m.copper.end())
            << board << ": " << c.copper;
      }
      EXPECT_EQ(cases, 1) << board << ": " << drills;
    }
  }
}

class FixtureBoard : public testing::TestWithParam<std::string> {};

// Every copper layer loads, and holds exactly the flashes and straight draws of its file. The
// card-contour detection that follows a load (on by default) takes the board outline's tracks
// off the layer into a cut-out: with it the layer has fewer tracks, never other pads; without
// the detections the counts are the file's.
TEST_P(FixtureBoard, CopperLayersHoldEveryFlashAndDraw) {
  ASSERT_TRUE(BoardsInstalled()) << kNotInstalled;
  const std::string board = GetParam();
  const Manifest m = ReadManifest(board);
  ASSERT_FALSE(m.copper.empty()) << board;
  for (const std::string& name : m.copper) {
    SCOPED_TRACE(board + "/" + name);
    const fs::path file = kBoards / board / name;
    const GerberCount count = CountGerber(file);
    ASSERT_GT(count.flashes, 0);
    ASSERT_GT(count.draws, 0);

    const InfoRun plain = Info({"--set", "DetectCutOut=No", "--set", "DetectGndPlanes=No", "info",
                                "--json", file.string()});
    ASSERT_EQ(plain.status, kCliOk) << plain.err;
    ASSERT_EQ(plain.job["layers"].size(), 1u);
    const nlohmann::json& layer = plain.job["layers"][0];
    EXPECT_EQ(layer["index"], 0);
    EXPECT_EQ(layer["pads"], count.flashes);
    EXPECT_EQ(layer["tracks"], count.draws);
    EXPECT_EQ(plain.job["cutouts"], 0);

    const InfoRun usual = Info({"info", "--json", file.string()});
    ASSERT_EQ(usual.status, kCliOk) << usual.err;
    const nlohmann::json& same = usual.job["layers"][0];
    EXPECT_EQ(same["pads"], count.flashes);
    if (same["cardContour"] == true) {
      EXPECT_LT(int(same["tracks"]), count.draws);
      EXPECT_GE(int(usual.job["cutouts"]), 1);
    } else {
      EXPECT_EQ(same["tracks"], count.draws);
    }
  }
}

// Every drill file loads with all its holes; a plated one meets at least half the pads it can
// (the overlap the load itself aims at before it turns the board).
TEST_P(FixtureBoard, DrillFilesMeetTheirPads) {
  ASSERT_TRUE(BoardsInstalled()) << kNotInstalled;
  const std::string board = GetParam();
  for (const DrillCase& c : DrillCases()) {
    if (board != c.board) continue;
    SCOPED_TRACE(board + "/" + c.drills + " on " + c.copper + ": " + c.why);
    const fs::path drills = kBoards / board / c.drills;
    std::vector<std::string> words = {"info", "--json", (kBoards / board / c.copper).string(),
                                      "--drills", drills.string()};
    words.insert(words.end(), c.answers.begin(), c.answers.end());
    const InfoRun run = Info(words);
    ASSERT_EQ(run.status, kCliOk) << run.err;
    ASSERT_EQ(run.job["files"].size(), 2u);
    EXPECT_EQ(run.job["files"][1]["layer"], 4);
    EXPECT_EQ(run.job["drills"], CountHoles(drills));
    if (c.plated) {
      EXPECT_GE(int(run.job["drillOverlap"]), 50);
    }
  }
}

// With the modern reading the drill files need no answers: each reads by its own header (or,
// where that is silent, the reading that fits the pads best) in the frame of its copper, and
// nearly every plated hole stands on a pad.
TEST_P(FixtureBoard, ModernDrillFilesLandOnTheirPads) {
  ASSERT_TRUE(BoardsInstalled()) << kNotInstalled;
  const std::string board = GetParam();
  for (const DrillCase& c : DrillCases()) {
    if (board != c.board || !c.plated) continue;
    SCOPED_TRACE(board + "/" + c.drills + " on " + c.copper);
    TempFolder program, config;
    test::FakePlatform platform;
    Application app(platform, program.path(), config.path());
    InitSettings(app);
    JobArguments job;
    job.modern = true;
    job.layerFiles = {(kBoards / board / c.copper).string()};
    job.drillFile = (kBoards / board / c.drills).string();
    std::vector<LoadedFile> loaded;
    ASSERT_TRUE(LoadJob(app, job, loaded));
    // The files do not say which holes are plated; the boards' 3.2 mm mounting holes stand in
    // bare board, and are left out.
    std::vector<DrillHole> holes;
    int all = 0;
    for (const TDrill* d = app.board.Drills; d; d = d->next, ++all)
      if (app.board.DrillDiameter[d->code] < 3.0f) holes.push_back({d->x, d->y, d->code});
    EXPECT_EQ(all, CountHoles(kBoards / board / c.drills));
    const double share = HolesOnCopper(app.board, 0, holes, 0, 0);
    EXPECT_GE(share, 0.95);
  }
}

INSTANTIATE_TEST_SUITE_P(Boards, FixtureBoard, testing::ValuesIn(BoardNames()),
                         [](const testing::TestParamInfo<std::string>& info) {
                           std::string name;
                           for (char c : info.param)
                             name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                           return name;
                         });

}  // namespace
}  // namespace isolith
