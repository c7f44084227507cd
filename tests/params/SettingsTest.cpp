#include "params/Settings.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <clocale>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "params/SettingsFile.h"
#include "params/SettingsOverrides.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

// The aperture tables of the first layer at their start values.
struct Tables {
  uint8_t shape[kApertures] = {};
  float sizeX[kApertures], sizeY[kApertures], track[kApertures], drill[kApertures];
  Tables() {
    for (int i = 0; i < kApertures; ++i) {
      sizeX[i] = sizeY[i] = 1.27f;
      track[i] = drill[i] = 0.635f;
    }
  }
  SettingsApertures View() { return {shape, sizeX, sizeY, track, drill}; }
};

Settings HostSettings() {
  Settings s;
  s.InstallPath = "/opt/isolith/";
  s.OpSystem = "Linux 6.1";
  s.Processor = "Pentium";
  s.PhysMemory = "4096 MB";
  s.ScreenWidth = 1920;
  s.ScreenHeight = 1080;
  return s;
}

Settings Read(std::string_view text) {
  Settings s = HostSettings();
  Tables t;
  ReadSettingsText(text, s, t.View());
  return s;
}

std::string Format(const Settings& s) {
  Tables t;
  return FormatSettings(s, t.View());
}

// The first line where two file texts part, for a short failure message.
std::string FirstDifference(const std::string& a, const std::string& b) {
  std::istringstream left(a), right(b);
  std::string l, r;
  for (int line = 1;; ++line) {
    const bool moreLeft = static_cast<bool>(std::getline(left, l));
    const bool moreRight = static_cast<bool>(std::getline(right, r));
    if (!moreLeft && !moreRight) return "";
    if (l != r || moreLeft != moreRight) {
      return "line " + std::to_string(line) + ": \"" + l + "\" vs \"" + r + "\"";
    }
  }
}

#define EXPECT_SAME_TEXT(a, b)                                    \
  do {                                                            \
    const std::string textA = (a), textB = (b);                   \
    EXPECT_TRUE(textA == textB) << FirstDifference(textA, textB); \
  } while (false)

bool HasLine(const std::string& file, const std::string& line) {
  return file.find("\r\n" + line + "\r\n") != std::string::npos;
}

std::string Slurp(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

class SettingsFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("isolith-settings-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string Dir() const { return dir_.string(); }
  fs::path Ini() const { return dir_ / "Isolith.ini"; }
  size_t EntryCount() const {
    return std::distance(fs::directory_iterator(dir_), fs::directory_iterator());
  }
  fs::path dir_;
};

TEST_F(SettingsFolder, FirstStartWritesTheFileAndLaterStartsSettleOnIt) {
  Tables tables;
  Settings first = HostSettings();
  EXPECT_FALSE(StartSettings(Dir(), kSettingsBaseName, first, tables.View()));
  EXPECT_EQ(first.ImportPath, "/opt/isolith/");
  const std::string created = Slurp(Ini());
  EXPECT_SAME_TEXT(created, FormatSettings(first, tables.View()));

  // The second start reads the file back. Two kept quirks change what it holds: the
  // TopBarStyle line feeds ZapSound, and a DrillingTool line always selects a tool.
  Tables again;
  Settings second = HostSettings();
  EXPECT_TRUE(StartSettings(Dir(), kSettingsBaseName, second, again.View()));
  EXPECT_EQ(second.ZapSound, 0);
  EXPECT_EQ(second.DrillingTool, 0);
  std::string expected = created;
  expected.replace(expected.find("ZapSound=6"), 10, "ZapSound=0");
  expected.replace(expected.find("DrillingTool=0"), 14, "DrillingTool=1");
  const std::string settled = Slurp(Ini());
  EXPECT_SAME_TEXT(settled, expected);
  EXPECT_SAME_TEXT(FormatSettings(second, again.View()), settled);

  // From then on every start reads and writes the same bytes.
  Tables third;
  Settings later = HostSettings();
  EXPECT_TRUE(StartSettings(Dir(), kSettingsBaseName, later, third.View()));
  EXPECT_SAME_TEXT(Slurp(Ini()), settled);
  EXPECT_EQ(EntryCount(), 1u);  // no temporary file left behind
}

TEST(Settings, FileLayoutSectionsInOrderWithCrLf) {
  const std::string file = Format(HostSettings());
  ASSERT_EQ(file.rfind("[General]\r\nVersion=3\r\nRelease=25/09/2008\r\nLanguage=ENGLISH\r\n", 0),
            0u);
  size_t last = 0;
  for (const char* name : {"System", "Application", "Colours", "Imports", "Exports", "Toolset",
                           "Machine", "Apertures"}) {
    const size_t at = file.find(std::string("\r\n\r\n[") + name + "]\r\n");
    ASSERT_NE(at, std::string::npos) << name;
    EXPECT_GT(at, last) << name;
    last = at;
  }
  for (size_t pos = file.find('\n'); pos != std::string::npos; pos = file.find('\n', pos + 1)) {
    ASSERT_EQ(file[pos - 1], '\r') << "bare line feed at " << pos;
  }
  // Written-only keys are there; the read-only one is not.
  EXPECT_TRUE(HasLine(file, "Resolution=1920x1080"));
  EXPECT_TRUE(HasLine(file, "InstallPath=/opt/isolith/"));
  EXPECT_TRUE(HasLine(file, "BoringDir=-1"));
  EXPECT_EQ(file.find("PltScaleOut"), std::string::npos);
  EXPECT_TRUE(HasLine(file, "MachineFormat=ISO"));
  EXPECT_TRUE(HasLine(file, "ExportFormat=TVN"));
  EXPECT_TRUE(HasLine(file, "ExlScaleIn=0.1"));
  EXPECT_TRUE(HasLine(file, "ClientBackground=Auto"));
  EXPECT_TRUE(HasLine(file, "MultiSequence8=18"));
  EXPECT_TRUE(HasLine(file, "DrillingLib8=0"));
  EXPECT_TRUE(HasLine(file, "PadShape100=Circle"));
  EXPECT_TRUE(HasLine(file, "TrackWidth100=0.635"));
  EXPECT_EQ(file.find("AperScaleIn", file.find("ExlScaleIn")), std::string::npos);
}

TEST(Settings, ChangedValuesSurviveARoundTrip) {
  Settings s = HostSettings();
  s.BoardGrid = 0x123456;
  s.LengthUnit = kLengthInch;
  s.LengthUnitLabel = "\"";
  s.SpeedUnit = kSpeedMmPerMin;
  s.SpeedUnitLabel = "mm/min";
  s.ImportFormat[kRowAres].Extension = {"xyz", "abc"};
  s.ImportFormat[kRowOrcad].ScaleIn = 25.4f;
  s.RecentPath = {"/boards/", "/other/", "", "", ""};
  s.RecentName = {"one.gbr", "two.top", "", "", ""};
  s.RecentFormat = {19, 29, 0, 0, 0};
  s.ExportFormat = 20;
  s.MillingTool = 4;
  s.DrillingLib[7] = 49;
  s.MachineScaleZ = -2.5f;
  s.MachinePort = "COM3";
  s.ExlDigits = -2.4f;
  // Values that the two quirky keys would change on reading (see the start-up test).
  s.ZapSound = 0;
  s.DrillingTool = 3;
  const std::string once = Format(s);
  const Settings back = Read(once);
  EXPECT_SAME_TEXT(Format(back), once);
  EXPECT_EQ(back.LengthUnit, kLengthInch);
  EXPECT_EQ(back.SpeedUnit, kSpeedMmPerMin);
  EXPECT_EQ(back.RecentName[1], "two.top");
  EXPECT_EQ(back.RecentFormat[1], kFormatAres);
  EXPECT_EQ(back.MillingTool, 4);
  EXPECT_EQ(back.DrillingLib[7], 49);
  EXPECT_FLOAT_EQ(back.ImportFormat[kRowOrcad].ScaleIn, 25.4f);
}

TEST(Settings, ZeroIsWrittenAsTheKeysZeroText) {
  Settings s = HostSettings();
  s.ImportFormat[kRowGerber].AperScaleIn = 0;
  s.MillingSpeed = 0;
  s.MachineBaudrate = 0;
  s.ExlDigits = 0;
  const std::string file = Format(s);
  EXPECT_TRUE(HasLine(file, "GrbAperScaleIn=0.01"));
  EXPECT_TRUE(HasLine(file, "MillingSpeed=6"));
  EXPECT_TRUE(HasLine(file, "MachineBaudrate=9600"));
  EXPECT_TRUE(HasLine(file, "ExlDigits=3.2"));
  const Settings back = Read(file);
  EXPECT_FLOAT_EQ(back.ImportFormat[kRowGerber].AperScaleIn, 0.01f);
  EXPECT_EQ(back.MillingSpeed, 6);

  EXPECT_EQ(FormatFloat(0.1f), "0.1");
  EXPECT_EQ(FormatFloat(100), "100");
  EXPECT_EQ(FormatFloat(-0.25), "-0.25");
  EXPECT_EQ(FormatFloat(1e-7), "0");
  EXPECT_EQ(FormatFloat(1234567.125), "1234567.125");
}

TEST(Settings, ReaderLineRules) {
  // A blank before "=" makes the key unknown; one after it joins the value; a last line
  // without a line feed is dropped; sections mean nothing; control characters vanish.
  const Settings s = Read(
      "[Machine]\nZapSound =9\nShowGrid= No\nMILLINGDEPTH=0.5\r\n[Nowhere]\nMill\tingNb1=4\n"
      "BeepSound=7");
  EXPECT_EQ(s.ZapSound, 6);
  EXPECT_TRUE(s.ShowGrid);
  EXPECT_FLOAT_EQ(s.MillingDepth, 0.5f);
  EXPECT_EQ(s.MillingNb1, 4);
  EXPECT_EQ(s.BeepSound, 2);

  // A value longer than 255 characters is cut there; text fields to their own size.
  const Settings longs =
      Read("ImportPath=" + std::string(400, 'a') + "\nMachinePort=" + std::string(40, 'b') +
           "\nMachinePrn=" + std::string(300, 'c') + "\n" + std::string(60, 'K') + "=1\n");
  EXPECT_EQ(longs.ImportPath.size(), 255u);
  EXPECT_EQ(longs.MachinePort, std::string(10, 'b'));
  EXPECT_EQ(longs.MachinePrn.size(), 100u);
}

TEST(Settings, FallbacksAndClamps) {
  // "NONE" and "AUTO" give the fallback unclamped; 0 or no number the fallback, clamped.
  EXPECT_EQ(ReadUnsignedValue("none", 110, 9600, 256000), 110u);
  EXPECT_EQ(ReadUnsignedValue("0", 110, 9600, 256000), 9600u);
  EXPECT_EQ(ReadUnsignedValue("-1", 110, 9600, 256000), 256000u);
  EXPECT_FLOAT_EQ(ReadFloatValue("AUTO", 5, 0, 1), 5);
  EXPECT_FLOAT_EQ(ReadFloatValue("1,5", 7, 0, 10), 1);
  EXPECT_FLOAT_EQ(ReadFloatValue(" 2.5mm", 7, 0, 10), 2.5f);
  EXPECT_FLOAT_EQ(ReadFloatValue("1e999", 7, 0, 10), 10);
  EXPECT_FLOAT_EQ(ReadFloatValue("nan", 7, 0, 10), 7);
  EXPECT_EQ(ReadIntValue("3.9", 0, -5, 5), 3);
  EXPECT_EQ(ReadIntValue("99999999999999", 0, -5, 5), 5);
  EXPECT_EQ(ReadIntValue("x", -3, -5, 5), -3);

  const Settings s = Read(
      "MillingDepth=0\nHatchingDepth=1000\nExlDigits=-20\nFrameWinX=5000\nFrameWinH=-3\n"
      "MachineWordLength=6\nCuttingDir=abc\nMillingSpeed=99999\nGrbScaleIn=0.00001\n"
      "MachineBaudrate=none\nExportClearHeight=NONE\nSysNumColors=99999999\n");
  EXPECT_FLOAT_EQ(s.MillingDepth, 0.01f);
  EXPECT_FLOAT_EQ(s.HatchingDepth, 100);
  EXPECT_FLOAT_EQ(s.ExlDigits, -9.9f);
  EXPECT_EQ(s.FrameWinX, 3840);
  EXPECT_EQ(s.FrameWinH, 0);
  EXPECT_EQ(s.MachineWordLength, 7);
  EXPECT_EQ(s.CuttingDir, 1);
  EXPECT_EQ(s.MillingSpeed, 6000);
  EXPECT_FLOAT_EQ(s.ImportFormat[kRowGerber].ScaleIn, 0.0001f);
  EXPECT_EQ(s.MachineBaudrate, 110u);
  EXPECT_FLOAT_EQ(s.ExportClearHeight, 1);
  EXPECT_EQ(s.SysNumColors, 16777215);
}

TEST(Settings, KeptQuirks) {
  // TopBarStyle feeds ZapSound (clamped to the style's range); the style keeps its value.
  Settings s = Read("ZapSound=9\nTopBarStyle=200\n");
  EXPECT_EQ(s.ZapSound, 3);
  EXPECT_EQ(s.TopBarStyle, 0);
  EXPECT_TRUE(HasLine(Format(s), "TopBarStyle=0"));

  // Extensions fill slot 1, then slot 2, a third line replaces slot 2, cut to 3 characters.
  s = Read("GrbExtension=abcd\nGrbExtension=x\nGrbExtension=y\n");
  EXPECT_EQ(s.ImportFormat[kRowGerber].Extension[0], "abc");
  EXPECT_EQ(s.ImportFormat[kRowGerber].Extension[1], "y");
  // Pads looks at the Protel row's first slot instead of its own.
  s = Read("PdsExtension=aaa\nPdsExtension=bbb\n");
  EXPECT_EQ(s.ImportFormat[kRowPads].Extension[0], "bbb");
  EXPECT_EQ(s.ImportFormat[kRowPads].Extension[1], "");
  s = Read("PtlExtension=ppp\nPdsExtension=aaa\nPdsExtension=bbb\n");
  EXPECT_EQ(s.ImportFormat[kRowPads].Extension[0], "");
  EXPECT_EQ(s.ImportFormat[kRowPads].Extension[1], "bbb");
  const std::string file = Format(s);
  EXPECT_TRUE(HasLine(file, "PdsExtension=bbb"));
  EXPECT_TRUE(HasLine(file, "PtlExtension=ppp"));

  // Read-only PltScaleOut, written-only BoringDir, DrillingTool's minimum of 1.
  s = Read("PltScaleOut=2.5\nBoringDir=1\nDrillingTool=0\nMillingTool=3\nCuttingTool=99\n");
  EXPECT_FLOAT_EQ(s.PltScaleOut, 2.5f);
  EXPECT_EQ(s.BoringDir, -1);
  EXPECT_EQ(s.DrillingTool, 0);
  EXPECT_EQ(s.MillingTool, 2);
  EXPECT_EQ(s.CuttingTool, 49);
  EXPECT_EQ(Read("MillingTool=0\n").MillingTool, -1);

  // Output formats sharing an extension come back as the first; other texts give 1.
  s = HostSettings();
  s.MachineFormat = 11;
  s.ExportFormat = 33;
  const Settings back = Read(Format(s));
  EXPECT_EQ(back.MachineFormat, 9);
  EXPECT_EQ(back.ExportFormat, 33);
  EXPECT_EQ(Read("ExportFormat=ppr\nMachineFormat=xyz\n").ExportFormat, 33);
  EXPECT_EQ(Read("MachineFormat=xyz\n").MachineFormat, 1);
  EXPECT_EQ(Read("MachineFormat=c\n").MachineFormat, 32);

  // Import formats: unknown text gives the key's default; a nameless id writes the default.
  s = Read("LayerImportFormat=pcb-wizard\nDrillImportFormat=gerberish\n");
  EXPECT_EQ(s.LayerImportFormat, kFormatWizard);
  EXPECT_EQ(s.DrillImportFormat, kFormatExcellon1);
  s.LayerImportFormat = 5;
  s.DrillImportFormat = 5;
  EXPECT_TRUE(HasLine(Format(s), "LayerImportFormat=Gerber"));
  EXPECT_TRUE(HasLine(Format(s), "DrillImportFormat=Excellon-1"));
}

TEST(Settings, TypedValues) {
  Settings s = Read(
      "BoardGrid=0x123456\nBoardDrill=auto\nBoardHatch=zz\nBoardTrace1=0xGG\n"
      "ShowGrid=no\nFastCalcul=YES\nMillingOptim=maybe\nLengthUnit=\"\nSpeedUnit=knots\n");
  EXPECT_EQ(s.BoardGrid, 0x123456u);
  EXPECT_EQ(s.BoardDrill, kColourAuto);
  EXPECT_EQ(s.BoardHatch, 0xFF0000u);
  EXPECT_EQ(s.BoardTrace1, 0x80FF80u);
  EXPECT_FALSE(s.ShowGrid);
  EXPECT_TRUE(s.FastCalcul);
  EXPECT_TRUE(s.MillingOptim);
  EXPECT_EQ(s.LengthUnit, kLengthInch);
  EXPECT_EQ(s.LengthUnitLabel, "\"");
  EXPECT_EQ(s.SpeedUnit, kSpeedMmPerS);
  EXPECT_EQ(s.SpeedUnitLabel, "");
  EXPECT_TRUE(HasLine(Format(s), "BoardDrill=Auto"));

  uint32_t hex = 7;
  ReadHexValue("0x0000BEEF", hex);
  EXPECT_EQ(hex, 0xBEEFu);
  ReadHexValue("0x", hex);
  EXPECT_EQ(hex, 0xBEEFu);
  EXPECT_EQ(ReadSmallNumberValue("33"), 0);
  EXPECT_EQ(ReadSmallNumberValue("32"), 32);
  EXPECT_TRUE(ReadFlagValue("1abc"));
  EXPECT_FALSE(ReadFlagValue(" 1"));
}

TEST(Settings, RecentFiles) {
  // Each list takes its first free slot; a sixth entry is dropped; only named slots are written.
  std::string text;
  for (int i = 1; i <= 6; ++i) {
    text += "RecentPath=/p" + std::to_string(i) + "/\nRecentName=f" + std::to_string(i) +
            ".gbr\nRecentFormat=" + (i == 2 ? "Eagle" : "what") + "\n";
  }
  Settings s = Read(text);
  EXPECT_EQ(s.RecentName[4], "f5.gbr");
  EXPECT_EQ(s.RecentPath[4], "/p5/");
  EXPECT_EQ(s.RecentFormat[1], kFormatEagle);
  EXPECT_EQ(s.RecentFormat[0], kFormatGerber);
  s.RecentName[2].clear();
  const std::string file = Format(s);
  EXPECT_EQ(file.find("/p3/"), std::string::npos);
  EXPECT_TRUE(HasLine(file, "RecentPath=/p2/\r\nRecentName=f2.gbr\r\nRecentFormat=Eagle"));
  EXPECT_EQ(file.find("f6.gbr"), std::string::npos);
}

TEST(Settings, ApertureKeys) {
  Settings s = HostSettings();
  Tables t;
  ReadSettingsText(
      "PadSizeX5=2.5\nPadSizeX0=9\nPadSizeX101=9\nPADSIZEX007=3\nPadShape3=obround\n"
      "PadShape4=hexagon\nTrackWidth2=500\nPadDrill1=none\nPadSizeY9=-1\n",
      s, t.View());
  EXPECT_FLOAT_EQ(t.sizeX[4], 2.5f);
  EXPECT_FLOAT_EQ(t.sizeX[6], 3);
  EXPECT_FLOAT_EQ(t.sizeX[99], 1.27f);
  EXPECT_EQ(t.shape[2], 2);
  EXPECT_EQ(t.shape[3], 0);
  EXPECT_FLOAT_EQ(t.track[1], 100);
  EXPECT_FLOAT_EQ(t.drill[0], 0);
  EXPECT_FLOAT_EQ(t.sizeY[8], 0);

  t.sizeX[10] = 0.01f;  // not above 0.01: its pad lines are left out
  t.track[20] = 0;
  const std::string file = FormatSettings(s, t.View());
  EXPECT_EQ(file.find("PadShape11="), std::string::npos);
  EXPECT_EQ(file.find("TrackWidth21="), std::string::npos);
  EXPECT_TRUE(HasLine(file,
                      "PadShape3=Obround\r\nPadSizeX3=1.27\r\nPadSizeY3=1.27\r\n"
                      "PadDrill3=0.635"));
  EXPECT_TRUE(HasLine(file, "PadDrill1=0"));
}

TEST(Settings, DamagedInputNeverBreaksTheReader) {
  std::mt19937 random(12345);
  std::string noise(200000, '\0');
  for (char& ch : noise) ch = static_cast<char>(random());
  // Lines that look like keys, with binary values.
  for (int i = 0; i < 2000; ++i) {
    noise += "MILLINGSPEED=" + std::string(1, static_cast<char>(random())) + "\n";
    noise += "FrameWinW=" + std::to_string(static_cast<int32_t>(random())) + "\n";
    noise += "PadSizeX" + std::to_string(static_cast<int32_t>(random())) + "=1\n";
  }
  noise += std::string(1 << 20, 'Q');  // one very long line
  Settings s = HostSettings();
  Tables t;
  ReadSettingsText(noise, s, t.View());
  EXPECT_GE(s.MillingSpeed, 6);
  EXPECT_LE(s.MillingSpeed, 6000);
  EXPECT_GE(s.FrameWinW, 0);
  EXPECT_LE(s.FrameWinW, 3840);
  // Whatever was read, one more read and write settles the file for good.
  std::string text = FormatSettings(s, t.View());
  std::string previous;
  for (int round = 0; round < 3; ++round) {
    Settings again = HostSettings();
    Tables t2;
    ReadSettingsText(text, again, t2.View());
    previous = text;
    text = FormatSettings(again, t2.View());
    if (round > 0) {
      EXPECT_SAME_TEXT(text, previous);
    }
  }
}

TEST_F(SettingsFolder, MissingFileChangesNothing) {
  Settings s = HostSettings();
  s.MillingSpeed = 1234;
  Tables t;
  EXPECT_FALSE(ReadSettings(Dir(), "Nothing", s, t.View()));
  EXPECT_EQ(s.MillingSpeed, 1234);
}

TEST_F(SettingsFolder, FailedWriteKeepsTheOldFile) {
  Tables t;
  Settings s = HostSettings();
  ASSERT_TRUE(WriteSettings(Dir(), kSettingsBaseName, s, t.View()));
  const std::string old = Slurp(Ini());

  // A full disk: the file size limit stops the temporary file half-way.
  s.MillingSpeed = 999;
  rlimit saved;
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
  auto previous = std::signal(SIGXFSZ, SIG_IGN);
  rlimit tight = saved;
  tight.rlim_cur = 512;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
  const bool written = WriteSettings(Dir(), kSettingsBaseName, s, t.View());
  ::setrlimit(RLIMIT_FSIZE, &saved);
  std::signal(SIGXFSZ, previous);
  EXPECT_FALSE(written);
  EXPECT_EQ(Slurp(Ini()), old);
  EXPECT_EQ(EntryCount(), 1u);

  // A folder that does not exist, and a target that is a folder.
  EXPECT_FALSE(WriteSettings(Dir() + "/missing", kSettingsBaseName, s, t.View()));
  fs::create_directory(dir_ / "Blocked.ini");
  EXPECT_FALSE(WriteSettings(Dir(), "Blocked", s, t.View()));
  EXPECT_TRUE(fs::is_directory(dir_ / "Blocked.ini"));
  EXPECT_EQ(EntryCount(), 2u);

  // A read-only file is replaced and stays writable for its owner.
  ::chmod(Ini().c_str(), 0444);
  EXPECT_TRUE(WriteSettings(Dir(), kSettingsBaseName, s, t.View()));
  EXPECT_TRUE(HasLine(Slurp(Ini()), "MillingSpeed=999"));
  struct stat info;
  ASSERT_EQ(::stat(Ini().c_str(), &info), 0);
  EXPECT_TRUE(info.st_mode & S_IWUSR);
}

TEST(Settings, NumbersUseAPointUnderACommaLocale) {
  if (!std::setlocale(LC_ALL, "de_DE.UTF-8") && !std::setlocale(LC_ALL, "fr_FR.UTF-8")) {
    GTEST_SKIP() << "no locale with a decimal comma installed";
  }
  Settings s = HostSettings();
  const Settings back = Read("MillingDepth=0.5\n");
  s.MillingDepth = 0.75f;
  const std::string file = Format(s);
  std::setlocale(LC_ALL, "C");
  EXPECT_FLOAT_EQ(back.MillingDepth, 0.5f);
  EXPECT_TRUE(HasLine(file, "MillingDepth=0.75"));
}

TEST(Settings, OverridesReadLikeTheFile) {
  Settings s = HostSettings();
  std::string error;
  ASSERT_TRUE(ApplySettingOverride(s, "MillingSpeed", "0", error));
  ASSERT_TRUE(ApplySettingOverride(s, "grbaperscalein", "0", error));
  const std::string file = Format(s);
  EXPECT_TRUE(HasLine(file, "MillingSpeed=6"));
  EXPECT_TRUE(HasLine(file, "GrbAperScaleIn=0.01"));
  EXPECT_EQ(s.MillingSpeed, 6);

  ASSERT_TRUE(ApplySettingOverride(s, "HatchingSpeed", "99999", error));
  EXPECT_EQ(s.HatchingSpeed, 6000);
  ASSERT_TRUE(ApplySettingOverride(s, "CuttingSpeed", "abc", error));
  EXPECT_EQ(s.CuttingSpeed, 300);
  ASSERT_TRUE(ApplySettingOverride(s, "TopBarStyle", "2", error));
  EXPECT_EQ(s.ZapSound, 2);

  for (const char* bad : {"NoSuchKey", "BoringDir", "PadSizeX3", " MillingSpeed"}) {
    error.clear();
    EXPECT_FALSE(ApplySettingOverride(s, bad, "1", error)) << bad;
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(error.find('\n'), std::string::npos);
  }
  EXPECT_NE(error.find("MillingSpeed"), std::string::npos);
}

TEST_F(SettingsFolder, OverridesNeverReachTheFile) {
  Tables t;
  ASSERT_TRUE(
      WriteSettings(Dir(), kSettingsBaseName, Read("MillingSpeed=700\nCuttingTabs=3\n"), t.View()));
  SettingsOverrides overrides;
  std::string error;
  ASSERT_TRUE(overrides.AddAssignment("MillingSpeed=1000", error));
  ASSERT_TRUE(overrides.AddAssignment("CuttingTabs=5", error));
  EXPECT_FALSE(overrides.AddAssignment("CuttingTabs", error));
  EXPECT_FALSE(overrides.AddAssignment("Nonsense=1", error));

  Settings s = HostSettings();
  StartSettings(Dir(), kSettingsBaseName, s, t.View());
  overrides.Apply(s);
  EXPECT_EQ(s.MillingSpeed, 1000);
  EXPECT_TRUE(HasLine(FormatSettings(s, t.View()), "MillingSpeed=1000"));

  // The run changes one overridden value and one other; both of those are saved.
  s.CuttingTabs = 7;
  s.ExportPath = "/out/";
  ASSERT_TRUE(WriteSettings(Dir(), kSettingsBaseName, overrides.ForFile(s), t.View()));
  const std::string file = Slurp(Ini());
  EXPECT_TRUE(HasLine(file, "MillingSpeed=700"));
  EXPECT_TRUE(HasLine(file, "CuttingTabs=7"));
  EXPECT_TRUE(HasLine(file, "ExportPath=/out/"));
  EXPECT_EQ(s.MillingSpeed, 1000);

  // Reading the file again (a cancelled colour dialog) and re-applying keeps the override.
  ReadSettings(Dir(), kSettingsBaseName, s, t.View());
  EXPECT_EQ(s.MillingSpeed, 700);
  overrides.Apply(s);
  EXPECT_EQ(s.MillingSpeed, 1000);
  EXPECT_EQ(overrides.ForFile(s).MillingSpeed, 700);
}

TEST(Settings, ImportRows) {
  EXPECT_EQ(ImportRowOfFormat(0), kRowGerber);
  EXPECT_EQ(ImportRowOfFormat(kFormatGerber), kRowGerber);
  EXPECT_EQ(ImportRowOfFormat(kFormatPads), kRowPads);
  EXPECT_EQ(ImportRowOfFormat(kFormatWinTypon), kRowWinTypon);
  EXPECT_EQ(ImportRowOfFormat(kFormatExcellon2), kRowExcellon);
  EXPECT_EQ(ImportRowOfFormat(28), -1);
  EXPECT_EQ(SettingsFilePath("/a/b", "Isolith"), "/a/b/Isolith.ini");
  EXPECT_EQ(SettingsFilePath("/a/b/", "Isolith"), "/a/b/Isolith.ini");
}

}  // namespace
}  // namespace isolith
