#include "commands/Startup.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "commands/Commands.h"
#include "commands/ConfigFolder.h"
#include "params/ToolFile.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

namespace fs = std::filesystem;

// A fresh folder under the system's temporary folder, removed at the end of the test.
TEST(Startup, InitSettingsCreatesTheFileAndKeepsOverridesOutOfIt) {
  TempFolder program, config;
  test::FakePlatform fake;
  fake.decimalSeparator = ',';
  {
    Application app(fake, program.path(), config.path());
    std::string error;
    ASSERT_TRUE(app.overrides.AddAssignment("ShowGrid=No", error)) << error;
    app.settings.RecentName[0] = "OLD.GBR";
    app.settings.SpeedUnit = kSpeedInchPerS;
    app.board.PadSizeX[0][5] = 9;
    InitSettings(app);
    EXPECT_EQ(app.DecimalSeparator, ',');
    EXPECT_TRUE(app.settings.RecentName[0].empty());
    EXPECT_EQ(app.settings.SpeedUnit, kSpeedMmPerS);
    EXPECT_EQ(app.settings.LengthUnit, kLengthMm);
    EXPECT_FLOAT_EQ(app.board.PadSizeX[0][5], 1.27f);
    EXPECT_EQ(app.settings.ImportPath, program.path());
    EXPECT_FALSE(app.settings.ShowGrid);       // the override holds for the run
    EXPECT_FALSE(app.tools[0].Diameter == 0);  // the library always has a first tool

    // A toggle writes the file at once, with the file's own value for the override.
    ASSERT_TRUE(RunCommand(app, cmd::AutomaticReframing));
    EXPECT_FALSE(app.settings.AutoReframe);
  }
  const std::string ini = ReadAll(config.path() + "Isolith.ini");
  EXPECT_NE(ini.find("AutoReframe=No\r\n"), std::string::npos);
  EXPECT_NE(ini.find("ShowGrid=Yes\r\n"), std::string::npos);
  EXPECT_EQ(ini.find("ShowGrid=No"), std::string::npos);

  // A second run reads what the first wrote.
  Application again(fake, program.path(), config.path());
  InitSettings(again);
  EXPECT_FALSE(again.settings.AutoReframe);
  EXPECT_TRUE(again.settings.ShowGrid);
}

TEST(Startup, ConfigFolderChoiceAndStarterTools) {
  TempFolder program, user;
  std::string error;
  // A requested folder wins and is created when missing.
  const std::string requested = user.path() + "given/deeper";
  EXPECT_EQ(PrepareConfigFolder(program.path(), requested, error), requested + "/");
  EXPECT_TRUE(fs::is_directory(requested));
  // A writable program folder holds the files itself.
  EXPECT_EQ(PrepareConfigFolder(program.path(), "", error), program.path());

  // An unusable program folder sends them to the user's configuration folder, with the
  // starter library copied there once.
  const char* old = std::getenv("XDG_CONFIG_HOME");
  const std::string saved = old ? old : "";
  setenv("XDG_CONFIG_HOME", (user.path() + "xdg").c_str(), 1);
  EXPECT_EQ(UserConfigFolder(), user.path() + "xdg/isolith/");
  EXPECT_EQ(PrepareConfigFolder(program.path() + "missing/", "", error),
            user.path() + "xdg/isolith/");
  if (old)
    setenv("XDG_CONFIG_HOME", saved.c_str(), 1);
  else
    unsetenv("XDG_CONFIG_HOME");

  const std::string target = user.path() + "xdg/isolith/";
  EXPECT_FALSE(InstallStarterTools(program.path(), target));  // no starter beside the program
  std::ofstream(program.path() + kToolFileName) << "[Tool #1]\r\nNumber=1\r\n";
  EXPECT_TRUE(InstallStarterTools(program.path(), target));
  EXPECT_EQ(ReadAll(target + kToolFileName), "[Tool #1]\r\nNumber=1\r\n");
  std::ofstream(target + kToolFileName) << "mine";
  EXPECT_FALSE(InstallStarterTools(program.path(), target));  // never replaced
  EXPECT_EQ(ReadAll(target + kToolFileName), "mine");
  EXPECT_FALSE(InstallStarterTools(program.path(), program.path()));

  // A folder given with --config gets the starter library too.
  EXPECT_EQ(PrepareConfigFolder(program.path(), user.path() + "fresh", error),
            user.path() + "fresh/");
  EXPECT_EQ(ReadAll(user.path() + "fresh/" + kToolFileName), "[Tool #1]\r\nNumber=1\r\n");
  // An installed program finds its starter library in ../share/isolith/.
  fs::create_directories(user.path() + "usr/bin");
  fs::create_directories(user.path() + "usr/share/isolith");
  fs::create_directories(user.path() + "home");
  std::ofstream(user.path() + "usr/share/isolith/" + kToolFileName) << "shared";
  EXPECT_TRUE(InstallStarterTools(user.path() + "usr/bin/", user.path() + "home"));
  EXPECT_EQ(ReadAll(user.path() + "home/" + kToolFileName), "shared");
}

TEST(Startup, FirstShowClearsTheAutoFlags) {
  test::FakePlatform fake;
  Application app(fake);
  ApplyCommandLine(app, {"AUTOSTART", "AUTOMILL", "nowhere.gbr", "NOSPLASH"});
  EXPECT_TRUE(app.StartFile.empty());
  EXPECT_TRUE(app.AutoStart && app.AutoMill && app.NoSplash);
  app.board.PendingCommand = 12210;
  RunFirstShow(app);
  EXPECT_FALSE(app.FirstShow);
  EXPECT_FALSE(app.AutoStart);
  EXPECT_FALSE(app.AutoMill);
  EXPECT_EQ(app.board.PendingCommand, 0);
  EXPECT_EQ(app.board.LayerCount, 0);
  EXPECT_TRUE(fake.messages.empty());
  // Only the first show runs the chain.
  app.AutoMill = true;
  RunFirstShow(app);
  EXPECT_TRUE(app.AutoMill);
}

TEST(Startup, FirstShowReadsTheStartFileAndRecentFilesReopenIt) {
  TempFolder folder;
  const std::string path = folder.path() + "Board.GTL";
  std::ofstream(path) << "%FSLAX24Y24*%\n%MOIN*%\n%ADD10C,0.0600*%\n%ADD11C,0.0100*%\n"
                         "D10*\nX010000Y010000D03*\nX020000Y010000D03*\n"
                         "D11*\nX010000Y010000D02*\nX020000Y015000D01*\nM02*\n";
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  ApplyCommandLine(app, {path});
  EXPECT_EQ(app.settings.LayerImportFormat, kFormatProtel);
  RunFirstShow(app);
  EXPECT_TRUE(fake.messages.empty()) << fake.LastMessage();
  EXPECT_EQ(app.board.LayerCount, 1);
  EXPECT_EQ(CountOf(app.board.Pads[0]), 2);
  EXPECT_EQ(CountOf(app.board.Tracks[0]), 1);
  EXPECT_FALSE(app.settings.RecentName[0].empty());

  // Closed, then reopened from the recent list.
  ASSERT_TRUE(RunCommand(app, cmd::CloseLayer));
  EXPECT_EQ(app.board.LayerCount, 0);
  ASSERT_TRUE(RunCommand(app, cmd::Recent1));
  EXPECT_EQ(app.board.LayerCount, 1);
  EXPECT_EQ(CountOf(app.board.Pads[0]), 2);

  // A start file that cannot be read leaves an empty job.
  Application other(fake, folder.path(), folder.path());
  InitSettings(other);
  other.StartFile = folder.path() + "missing.gbr";
  RunFirstShow(other);
  EXPECT_EQ(other.board.LayerCount, 0);
}

}  // namespace
}  // namespace isolith
