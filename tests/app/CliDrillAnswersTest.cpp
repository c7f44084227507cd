// The "Excellon import" answers of the command line: --drill-zeros, --drill-units and
// --drill-coordinates stand in for the person at the dialog, for one run only.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/CliMain.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  Folder() {
    std::string pattern = (fs::temp_directory_path() / "isolith-drills-XXXXXX").string();
    path_ = mkdtemp(pattern.data()) ? pattern + "/" : std::string();
  }
  ~Folder() {
    std::error_code ec;
    fs::remove_all(path_, ec);
  }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ + name, std::ios::binary) << text;
    return path_ + name;
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// Five pads on a 2.4-inch grid; the holes below are the same five points. Their numbers have
// four and five digits, so the two ways of reading them differ in more than a factor of ten.
constexpr const char* kCopper =
    "%FSLAX24Y24*%\n%MOIN*%\n%ADD10C,0.0600*%\nD10*\n"
    "X5000Y5000D03*\nX20000Y5000D03*\nX5000Y12500D03*\nX20000Y12500D03*\nX12500Y9000D03*\nM02*\n";
constexpr const char* kHolesTZ =
    "M48\nINCH,TZ\nT01C0.0350\n%\nT01\n"
    "X5000Y5000\nX20000Y5000\nX5000Y12500\nX20000Y12500\nX12500Y9000\nM30\n";
// The same holes in millimetres with decimal points.
constexpr const char* kHolesMetric =
    "M48\nMETRIC,TZ\nT1C0.889\n%\nT1\n"
    "X12.7Y12.7\nX50.8Y12.7\nX12.7Y31.75\nX50.8Y31.75\nX31.75Y22.86\nM30\n";
// The same holes as increments from one to the next.
constexpr const char* kHolesIncremental =
    "M48\nT01C0.0350\n%\nT01\n"
    "X5000Y5000\nX15000Y0\nX-15000Y7500\nX15000Y0\nX-7500Y-3500\nM30\n";

struct DrillRun {
  int status;
  std::string err;
  int drills = -1;
  int overlap = -1;
};

DrillRun Info(const Folder& program, const Folder& config, const std::string& layer,
              const std::string& drills, std::vector<std::string> answers) {
  std::vector<std::string> args = {"--config", config.path(), "info", "--json",
                                   layer,      "--drills",    drills};
  args.insert(args.end(), answers.begin(), answers.end());
  std::ostringstream out, err;
  DrillRun r{CliMain(args, program.path(), out, err), err.str()};
  if (r.status == kCliOk) {
    const nlohmann::json j = nlohmann::json::parse(out.str());
    r.drills = j["drills"];
    r.overlap = j["drillOverlap"];
  }
  return r;
}

TEST(CliDrillAnswers, ZeroSuppressionForThisRunOnly) {
  Folder program, config, files;
  const std::string layer = files.Write("board.gbr", kCopper);
  const std::string holes = files.Write("board.drl", kHolesTZ);
  const std::string ini = config.path() + "Isolith.ini";

  // The stored format, "no trailing zeros", stretches the four-digit numbers: no hole meets.
  DrillRun r = Info(program, config, layer, holes, {});
  ASSERT_EQ(r.status, kCliOk) << r.err;
  EXPECT_EQ(r.drills, 5);
  EXPECT_LT(r.overlap, 50);
  const std::string stored = ReadAll(ini);
  ASSERT_NE(stored.find("\nDrillImportFormat=Excellon-1\r\n"), std::string::npos);

  // Read as written, every hole meets its pad, whether the answer is given or read from ",TZ";
  // the settings file never learns of it.
  for (const char* answer : {"trailing", "auto"}) {
    r = Info(program, config, layer, holes, {"--drill-zeros", answer});
    ASSERT_EQ(r.status, kCliOk) << r.err;
    EXPECT_EQ(r.overlap, 100) << answer;
    EXPECT_EQ(ReadAll(ini), stored) << answer;
  }
  // The later answer wins; "leading" is the stored format's reading again.
  r = Info(program, config, layer, holes,
           {"--drill-zeros", "trailing", "--drill-zeros", "leading"});
  EXPECT_LT(r.overlap, 50);

  // A stored "basic co-ordinates" reads the file right by itself, and stays stored after a run
  // answered "leading" (also when --set had already overridden it).
  Folder other;
  std::ostringstream out, err;
  ASSERT_EQ(CliMain({"--config", other.path(), "settings"}, program.path(), out, err), kCliOk);
  std::string text = ReadAll(other.path() + "Isolith.ini");
  const std::string from = "DrillImportFormat=Excellon-1";
  text.replace(text.find(from), from.size(), "DrillImportFormat=Excellon-2");
  other.Write("Isolith.ini", text);
  EXPECT_EQ(Info(program, other, layer, holes, {}).overlap, 100);
  const std::string stored2 = ReadAll(other.path() + "Isolith.ini");
  r = Info(program, other, layer, holes, {"--drill-zeros", "leading", "--drill-units", "inch"});
  EXPECT_LT(r.overlap, 50);
  EXPECT_EQ(ReadAll(other.path() + "Isolith.ini"), stored2);
  std::vector<std::string> args = {
      "--config", other.path(),    "--set",  "DrillImportFormat=Excellon-2",
      "info",     "--json",        layer,    "--drills",
      holes,      "--drill-zeros", "leading"};
  std::ostringstream out2, err2;
  ASSERT_EQ(CliMain(args, program.path(), out2, err2), kCliOk);
  EXPECT_LT(int(nlohmann::json::parse(out2.str())["drillOverlap"]), 50);
  EXPECT_EQ(ReadAll(other.path() + "Isolith.ini"), stored2);
}

TEST(CliDrillAnswers, UnitsAndCoordinates) {
  Folder program, config, files;
  const std::string layer = files.Write("board.gbr", kCopper);
  const std::string metric = files.Write("metric.drl", kHolesMetric);

  // From the imperial answer the reader follows the file's own METRIC word: "auto" answers so.
  for (std::vector<std::string> answers : {std::vector<std::string>{},
                                           {"--drill-units", "auto", "--drill-zeros", "auto"},
                                           {"--drill-units", "inch"}}) {
    const DrillRun r = Info(program, config, layer, metric, answers);
    ASSERT_EQ(r.status, kCliOk) << r.err;
    EXPECT_EQ(r.overlap, 100);
  }
  // The metric answer leaves the reader at its starting inch scale and makes it pass over the
  // METRIC word: the holes come out 2.54 times too far apart, which no power of ten mends; only
  // the corner hole that the alignment puts on the corner pad meets.
  DrillRun r = Info(program, config, layer, metric, {"--drill-units", "metric"});
  ASSERT_EQ(r.status, kCliOk) << r.err;
  EXPECT_EQ(r.overlap, 20);
  EXPECT_NE(ReadAll(config.path() + "Isolith.ini").find("\nExlMetric=No\r\n"), std::string::npos);

  // Increments add up only with the incremental answer.
  const std::string steps = files.Write("steps.drl", kHolesIncremental);
  r = Info(program, config, layer, steps, {"--drill-zeros", "trailing"});
  EXPECT_LT(r.overlap, 50);
  r = Info(program, config, layer, steps,
           {"--drill-zeros", "trailing", "--drill-coordinates", "incremental"});
  EXPECT_EQ(r.overlap, 100);
  EXPECT_NE(ReadAll(config.path() + "Isolith.ini").find("\nExlRelative=No\r\n"), std::string::npos);
}

TEST(CliDrillAnswers, WrongAnswersAreUsageErrors) {
  Folder program, config;
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--drill-zeros", "none"},
                                                {"--drill-units", "mm"},
                                                {"--drill-coordinates", "auto"},
                                                {"--drill-zeros"}}) {
    std::vector<std::string> args = {"--config", config.path(), "info",
                                     "a.gbr",    "--drills",    "a.drl"};
    args.insert(args.end(), words.begin(), words.end());
    std::ostringstream out, err;
    EXPECT_EQ(CliMain(args, program.path(), out, err), kCliUsage) << words[0];
    EXPECT_EQ(err.str().rfind("isolith-cli: " + words[0], 0), 0u) << err.str();
    EXPECT_FALSE(fs::exists(config.path() + "Isolith.ini"));
  }
}

}  // namespace
}  // namespace isolith
