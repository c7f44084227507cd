#include "params/ToolFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace isolith {
namespace {

namespace fs = std::filesystem;

// A fresh folder per test, removed afterwards.
class ToolFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("isolith-tools-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override {
    fs::permissions(dir_, fs::perms::owner_all, fs::perm_options::add);
    fs::remove_all(dir_);
  }
  std::string Dir() const { return dir_.string() + "/"; }
  void Put(const std::string& text) {
    std::ofstream(dir_ / "Isolith.too", std::ios::binary) << text;
  }
  std::string Get() const {
    std::ifstream in(dir_ / "Isolith.too", std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }

  fs::path dir_;
};

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

TEST_F(ToolFileTest, StarterLibraryReadsAndWritesBackUnchanged) {
  const std::string starter = Slurp(std::string(ISOLITH_SOURCE_DIR) + "/data/Isolith.too");
  ASSERT_FALSE(starter.empty());
  ToolTable tools{};  // as at start-up
  ReadToolsText(tools, starter);
  EXPECT_EQ(FormatTools(tools, true), starter);
  // Start-up also locks the plunge speeds; the starter already has them all locked.
  LockPlungeSpeeds(tools);
  EXPECT_EQ(FormatTools(tools, true), starter);

  // It holds an engraving V-bit, end mills, a card cutter and drills.
  int vbits = 0, mills = 0, cutters = 0, drills = 0;
  for (const TToolData& t : tools) {
    std::string name = ToolName(t);
    if (t.Diameter == 0) continue;
    if (t.Profile == kProfileConical && t.ConicalAngle > 0) ++vbits;
    if (name.starts_with("End mill")) ++mills;
    if (name.starts_with("Card cutter")) ++cutters;
    if (name.starts_with("Drill")) ++drills;
    EXPECT_NE(t.AbsDrillSpeed, 0) << name;
  }
  EXPECT_EQ(vbits, 1);
  // Tool #1 is a drill: the settings reader always selects a single drilling tool (a stored
  // "none" reads as tool 1), so the first slot must be one that can drill.
  EXPECT_TRUE(ToolName(tools[0]).starts_with("Drill"));
  EXPECT_EQ(tools[0].Profile, kProfileCylindrical);
  EXPECT_GE(mills, 2);
  EXPECT_EQ(cutters, 1);
  EXPECT_GE(drills, 5);
}

TEST_F(ToolFileTest, FullRoundTripAndCompactLoss) {
  ToolTable tools{};
  for (TToolData& t : tools) ResetTool(t);
  TToolData& t = tools[2];
  SetToolName(t, "Ball nose");
  t.Diameter = 1.5f;
  t.Profile = kProfilePyramidal;
  t.ConicalAngle = static_cast<float>(30 * kDegreesToRadians);
  t.ConicalMinDiam = 0.2f;
  t.Color = 1;
  t.NumberOfTeeth = 3;
  t.Zmax = 0.5f;
  t.XOffset = -1.25f;
  t.PeckPause = true;
  t.AutoSensor = false;
  t.SpindleOnOutputs = 0xA5;
  t.SpindleOffDelay = 1500;
  t.AbsDrillSpeed = 0;
  t.RelDrillSpeed = 80;
  ASSERT_TRUE(WriteTools(tools, Dir(), "Torvane", false));
  const std::string full = Slurp(ToolFilePath(Dir(), "Torvane"));
  EXPECT_EQ(full.substr(0, 2), "\r\n");  // the first filled slot is not slot 0
  EXPECT_NE(full.find("\r\n[Tool #3]\r\nNumber=3\r\nName=Ball nose\r\nColor=Auto\r\n"
                      "Diameter=1.5\r\nProfile=Pyramidal\r\nNumberOfTeeth=3\r\n"),
            std::string::npos);
  EXPECT_NE(full.find("Zmax=0.5\r\nFirstPlot=Undefined\r\nAbsPlotSpeed=60\r\n"
                      "AbsDrillSpeed=None\r\nRelDrillSpeed=80\r\n"),
            std::string::npos);
  EXPECT_NE(full.find("SpindleOnOutputs=0x000000A5\r\n"), std::string::npos);

  ToolTable back{};
  ASSERT_TRUE(ReadTools(back, Dir(), "Torvane"));
  EXPECT_EQ(ToolName(back[2]), "Ball nose");
  EXPECT_EQ(back[2].XOffset, -1.25f);
  EXPECT_EQ(back[2].SpindleOffDelay, 1500u);
  EXPECT_TRUE(back[2].PeckPause);
  EXPECT_FALSE(back[2].AutoSensor);
  EXPECT_EQ(back[2].Color, 1u);
  EXPECT_NEAR(back[2].ConicalAngle, t.ConicalAngle, 1e-6);
  EXPECT_EQ(back[2].ConicalMinDiam, 0.2f);
  EXPECT_EQ(back[1].Diameter, 0);  // an untouched, empty slot between
  EXPECT_EQ(back[0].Diameter, 1);  // the first slot's 1 mm

  // The compact form loses the keys it does not write; a read leaves them as memory holds.
  ASSERT_TRUE(WriteTools(tools, Dir(), "Isolith", true));
  const std::string compact = Get();
  EXPECT_EQ(compact.find("Color="), std::string::npos);
  EXPECT_EQ(compact.find("Zmax="), std::string::npos);
  ToolTable memory{};
  memory[2].Zmax = 9;
  memory[2].Diameter = 4;
  ASSERT_TRUE(ReadTools(memory, Dir(), "Isolith"));
  EXPECT_EQ(memory[2].Zmax, 9);
  EXPECT_EQ(memory[2].Diameter, 1.5f);
  EXPECT_EQ(memory[2].ConicalMinDiam, 0);
}

TEST_F(ToolFileTest, OverlayReadOfDamagedFiles) {
  ToolTable tools{};
  // No file: false, the table is left alone except for the first slot's 1 mm.
  EXPECT_FALSE(ReadTools(tools, Dir(), "Isolith"));
  EXPECT_EQ(tools[0].Diameter, 1);
  EXPECT_EQ(tools[1].Diameter, 0);

  // No Number line: nothing changes.
  Put("Diameter=5\nName=lost\n");
  EXPECT_TRUE(ReadTools(tools, Dir(), "Isolith"));
  EXPECT_EQ(tools[0].Diameter, 1);

  Put("[Tool #1]\r\n"
      "Number=51\nDiameter=0\nProfile=conical\nConicalAngle=90\n"  // slot 50; 0 reads as 0.01
      "number=0\ndiameter=2.5,7\n"                                 // slot 1; up to the comma
      "Number=7\nDiameter=3\nProfile=cylindrical\nConicalAngle=60\nCOLOR=0x0000FF\n"
      "Number=AUTO\nDiameter=9\n"  // dropped: no slot after AUTO
      "Number=8\nDiameter=1\nName=" +
      std::string(300, 'n') +
      "\nDiameter =4\n"  // a blank before "=" makes an unknown key
      "Number=9\nDiameter=NONE\n"
      "Number=10\nDiameter=1e9\nRelDrillSpeed=-5\nSpindleOnDelay=-1\nAutoChange=maybe\n"
      "Number=11\nDiameter=2");  // the last line has no line feed: not read
  EXPECT_TRUE(ReadTools(tools, Dir(), "Isolith"));
  EXPECT_EQ(tools[49].Diameter, 0.01f);
  EXPECT_EQ(tools[49].Profile, kProfileConical);
  EXPECT_EQ(tools[0].Diameter, 2.5f);
  EXPECT_EQ(tools[6].Diameter, 3);
  EXPECT_EQ(tools[6].ConicalAngle, 0);  // cleared for a cylindrical tool
  EXPECT_EQ(tools[6].Color, 0xFFu);
  EXPECT_EQ(tools[7].Diameter, 1);
  EXPECT_EQ(ToolName(tools[7]), std::string(47, 'n'));
  EXPECT_EQ(tools[8].Diameter, 0);
  EXPECT_EQ(tools[9].Diameter, 100);
  EXPECT_EQ(tools[9].RelDrillSpeed, 50);  // clamped to 0, then normalised
  EXPECT_EQ(tools[9].SpindleOnDelay, 180000u);
  EXPECT_FALSE(tools[9].AutoChange);
  EXPECT_EQ(tools[10].Diameter, 0);

  // Binary junk and a folder in the file's place: no crash, no change.
  ToolTable before = tools;
  std::string junk;
  std::mt19937 random(7);
  for (int i = 0; i < 200000; ++i) junk += static_cast<char>(random() & 0xFF);
  Put(junk);
  ReadTools(tools, Dir(), "Isolith");
  tools = before;
  Put(std::string(100000, '=') + "\n" + std::string(100000, 'x'));
  EXPECT_TRUE(ReadTools(tools, Dir(), "Isolith"));
  EXPECT_EQ(tools, before);
  fs::remove(dir_ / "Isolith.too");
  fs::create_directory(dir_ / "Isolith.too");
  EXPECT_FALSE(ReadTools(tools, Dir(), "Isolith"));
  EXPECT_EQ(tools, before);
}

TEST_F(ToolFileTest, AFailedWriteLeavesTheOldFile) {
  ToolTable tools{};
  ResetTool(tools[0]);
  tools[0].Diameter = 2;
  // A folder in the file's place cannot be replaced: the write fails, nothing is left behind.
  fs::create_directories(dir_ / "Isolith.too" / "keep");
  EXPECT_FALSE(WriteTools(tools, Dir(), "Isolith", true));
  EXPECT_TRUE(fs::is_directory(dir_ / "Isolith.too" / "keep"));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()), 1);
  fs::remove_all(dir_ / "Isolith.too");

  // A read-only file is replaced all the same.
  Put("old");
  chmod((dir_ / "Isolith.too").c_str(), 0400);
  EXPECT_TRUE(WriteTools(tools, Dir(), "Isolith", true));
  EXPECT_EQ(Get().substr(0, 11), "[Tool #1]\r\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()), 1);

  // A folder that takes no new file keeps the old one (not testable with rights that ignore
  // file modes).
  Put("old");
  chmod(dir_.c_str(), 0500);
  if (::access(dir_.c_str(), W_OK) == 0) return;
  EXPECT_FALSE(WriteTools(tools, Dir(), "Isolith", true));
  EXPECT_EQ(Get(), "old");
}

}  // namespace
}  // namespace isolith
