// The output commands as the menu runs them: Save, Mill with and without the sections, the tool
// checks, the Output data format dialog with the user's format, the centering holes with their
// click, and a failed write that leaves the old file.
#include "commands/OutputCommands.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "commands/MachiningModule.h"
#include "commands/Startup.h"
#include "core/platform/ConsolePlatform.h"
#include "output/DrillProcessForm.h"
#include "output/ExportDialogs.h"
#include "output/OutputFormatForm.h"
#include "output/PortParametersForm.h"
#include "output/formats/FileTypes.h"
#include "output/postprocessor/PostProcessorForm.h"
#include "params/ToolForms.h"
#include "support/FakePlatform.h"
#include "support/FakeTransfer.h"
#include "support/TempFolder.h"
#include "toolpath/TDialogManuPlot.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

namespace fs = std::filesystem;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// A started application over a scripted platform, with one engraving tool (slot 0) that also
// drills, and one closed contour round a pad on layer 0 of a 40 x 30 card.
struct World {
  TempFolder program, config;
  test::FakePlatform fake;
  Application app{fake, program.path(), config.path()};

  explicit World(const std::string& override = {}) {
    setenv("TZ", "UTC", 1);
    tzset();
    fake.now = 1703513100;  // 25/12/2023 14:05 UTC
    if (!override.empty()) {
      std::string error;
      EXPECT_TRUE(app.overrides.AddAssignment(override, error)) << error;
    }
    InitSettings(app);
    TToolData& tool = app.tools[0];
    tool.Diameter = 0.2f;
    tool.Profile = kProfileCylindrical;
    tool.RotationSpeed = 20000;
    Settings& s = app.settings;
    s.MillingTool = s.HatchingTool = s.DrillingTool = 0;
    s.DrillingMode = 1;
    Board& b = app.board;
    b.CardWidth = 40;
    b.CardHeight = 30;
    test::AddPad(b, 0, 20, 15);
    TPolygon* contour = new TPolygon;
    for (auto [x, y] : {std::pair{19.f, 14.f}, {21.f, 14.f}, {21.f, 16.f}, {19.f, 14.f}})
      AppendPoint(*contour, x, y);
    TPolygon* tail = nullptr;
    AppendTo(b.Contours[0], tail, contour);
    RepaintBookkeeping(b);
  }

  std::string Ini() const { return ReadAll(config.path() + "Isolith.ini"); }
};

TEST(OutputCommands, SaveWritesTheChosenFormatWithTheRunsValuesButNotIntoTheSettingsFile) {
  World w("MillingSpeed=120");
  w.app.settings.ExportFormat = 9;
  const std::string path = w.config.path() + "board.iso";
  w.fake.files = {path};
  ASSERT_TRUE(RunCommand(w.app, cmd::Save));

  // The filter list follows the stored format; then the two export dialogs.
  ASSERT_EQ(w.fake.fileRequests.size(), 1u);
  const FileRequest& request = w.fake.fileRequests[0];
  EXPECT_EQ(request.filters[request.filterIndex - 1].patterns, "*.iso");
  EXPECT_EQ(w.fake.dialogsRun, (std::vector<std::string>{"TDialogExport", "TDialogExpMill"}));
  const std::string text = ReadAll(path);
  EXPECT_TRUE(Contains(text, "( " + path + " created 25/12/2023 at 14:05 )\r\n")) << text;
  EXPECT_TRUE(Contains(text, "G01 F120 X21\r\n")) << text;
  EXPECT_TRUE(EndsWith(text, "M02\r\n%\r\n"));
  // The choices reach the file; the override does not.
  const std::string ini = w.Ini();
  EXPECT_TRUE(Contains(ini, "\r\nExportFormat=ISO\r\n"));
  EXPECT_TRUE(Contains(ini, "\r\nExportPath=" + w.config.path() + "\r\n")) << ini;
  EXPECT_TRUE(Contains(ini, "\r\nMillingSpeed=600\r\n"));
  EXPECT_EQ(w.app.settings.MillingSpeed, 120);

  // The board files are offered last, Excellon then Gerber, and written without dialogs; a
  // folder that cannot be written says so.
  EXPECT_EQ(request.filters.size(), 11u);
  EXPECT_EQ(request.filters[10].patterns, "*.grb");
  for (const std::string& target : {w.config.path() + "board.grb", w.config.path() + "no/b.grb"}) {
    w.fake.files = {target};
    w.fake.fileRequests.clear();
    w.fake.dialogsRun.clear();
    w.app.settings.ExportFormat = kFormatGerberOut;
    RunCommand(w.app, cmd::Save);
    EXPECT_TRUE(w.fake.dialogsRun.empty());
  }
  EXPECT_TRUE(Contains(ReadAll(w.config.path() + "board.grb"), "X00787.402Y00590.551D03*\r\n"));
  ASSERT_EQ(w.fake.messages.size(), 1u);
  EXPECT_EQ(w.fake.messages[0].text, "Unable to export file. ''" + w.config.path() + "no/b.grb''");

  // Nothing to write on the drill layer: the beep and no dialog.
  w.app.board.ActiveLayer = kDrillLayer;
  w.fake.fileRequests.clear();
  RunCommand(w.app, cmd::Save);
  EXPECT_EQ(w.fake.beeps, 1);
  EXPECT_TRUE(w.fake.fileRequests.empty());
}

TEST(OutputCommands, MillAsksForTheOutputFirstThenWritesSectionsOrTheLayerAndRunsTheCommand) {
  World w;
  // Never chosen an output: "Output data format" comes first; its Cancel writes nothing.
  w.fake.dialogs["TDialogCopOutput"] = [](DialogForm&) { return false; };
  ASSERT_TRUE(RunCommand(w.app, cmd::Mill));
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogCopOutput"});
  EXPECT_EQ(w.app.settings.MachineOutput, 0);
  EXPECT_FALSE(fs::exists(MillTarget(w.app)));
  EXPECT_EQ(MillTarget(w.app), w.config.path() + "Isolith.out");

  // Confirmed: the proposed file and command are those of the program's folder and viewer.
  const std::string job = w.config.path() + "job.iso";
  std::string proposed, proposedRun;
  w.fake.dialogs["TDialogCopOutput"] = [&](DialogForm& form) {
    auto& f = static_cast<TDialogCopOutput&>(form);
    proposed = f.file;
    proposedRun = f.run;
    f.file = job;
    f.run = "\"my viewer\" --wait";
    return true;
  };
  w.fake.dialogsRun.clear();
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(proposed, w.config.path() + "Isolith.iso");
  EXPECT_EQ(proposedRun, "xdg-open");
  EXPECT_EQ(w.fake.dialogsRun, (std::vector<std::string>{"TDialogCopOutput", "TDialogMillLayers"}));
  EXPECT_TRUE(EndsWith(ReadAll(job), "M05\r\nM02\r\n%\r\n")) << ReadAll(job);
  EXPECT_TRUE(Contains(w.Ini(), "\r\nMachineOutput=1\r\n"));
  ASSERT_EQ(w.fake.processes.size(), 1u);
  EXPECT_EQ(w.fake.processes[0], (std::vector<std::string>{"my viewer", "--wait", job}));
  // "Simulate..." takes the same course, and the program hears that it is a simulation. A
  // program named by its path runs in its own folder, any other in the program's.
  w.app.settings.MachineRun = "/usr/bin/my-viewer --wait";
  RunCommand(w.app, cmd::Simulate);
  EXPECT_EQ(w.fake.workingFolders, (std::vector<std::string>{w.program.path(), "/usr/bin/"}));
  ASSERT_EQ(w.fake.processes.size(), 2u);
  EXPECT_EQ(w.fake.processes[1],
            (std::vector<std::string>{"/usr/bin/my-viewer", "--wait", job, "SIMULATION"}));

  // Without the sections: the active layer through "Export" and "File export"; the viewer
  // opens the file when asked to.
  w.app.settings.MachineSetSeq = false;
  w.app.settings.MachineRun.clear();
  w.fake.dialogs["TDialogExport"] = [](DialogForm& form) {
    static_cast<TDialogExport&>(form).editInViewer = true;
    return true;
  };
  w.fake.dialogsRun.clear();
  fs::remove(job);
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(w.fake.dialogsRun, (std::vector<std::string>{"TDialogExport", "TDialogExpMill"}));
  EXPECT_TRUE(EndsWith(ReadAll(job), "M02\r\n%\r\n"));
  ASSERT_EQ(w.fake.processes.size(), 3u);
  EXPECT_EQ(w.fake.processes[2], (std::vector<std::string>{"xdg-open", job}));
  EXPECT_TRUE(w.fake.messages.empty());
  EXPECT_EQ(w.app.board.PendingCommand, 0);
}

// A platform on which no program starts.
class NoProcesses : public test::FakePlatform {
 public:
  bool StartProcess(const std::string&, const std::vector<std::string>&, const std::string&,
                    int64_t*) override {
    return false;
  }
};

TEST(OutputCommands, AProgramThatCannotStartIsNamedWithItsWholeLine) {
  TempFolder folder;
  NoProcesses fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  app.tools[0].Diameter = 0.2f;
  app.settings.MillingTool = app.settings.DrillingTool = 0;
  app.settings.MachineOutput = kMachineOutputFile;
  app.settings.MachineRun = "  viewer  ";
  test::AddPad(app.board, 0, 5, 5);
  TPolygon* contour = new TPolygon;
  AppendPoint(*contour, 4, 4);
  AppendPoint(*contour, 6, 4);
  AppendPoint(*contour, 4, 4);
  app.board.Contours[0] = contour;
  RepaintBookkeeping(app.board);
  RunCommand(app, cmd::Mill);
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].title, "Error");
  // The setting and the path joined by one blank, the whole trimmed only at its ends.
  EXPECT_EQ(fake.messages[0].text,
            "viewer   " + folder.path() + "Isolith.out\n\nUnable to execute this programme.");
  EXPECT_TRUE(fs::exists(folder.path() + "Isolith.out"));
}

TEST(OutputCommands, MillChecksTheToolsAndTheFirstDrillingTool) {
  World w;
  Settings& s = w.app.settings;
  s.MachineOutput = kMachineOutputFile;
  s.MachineFile = w.config.path() + "job.iso";

  // No contour tool, and the dialog finds none to offer: it stops without a beep.
  w.app.tools[0].Diameter = 0;
  s.MillingTool = -1;
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogDrill"});
  EXPECT_EQ(w.fake.beeps, 0);
  EXPECT_FALSE(fs::exists(s.MachineFile));

  // The contour tool is there, but no first drilling tool even without drills: the dialog once
  // more, then the beep.
  w.app.tools[0].Diameter = 0.2f;
  s.MillingTool = 0;
  s.DrillingTool = -1;
  w.fake.dialogs["TDialogDrill"] = [](DialogForm& form) {
    static_cast<TDialogDrill&>(form).drillingTool = -1;
    return true;
  };
  w.fake.dialogsRun.clear();
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogDrill"});
  EXPECT_EQ(w.fake.beeps, 1);
  EXPECT_FALSE(fs::exists(s.MachineFile));

  // Chosen in the dialog: the job is written.
  w.fake.dialogs["TDialogDrill"] = [](DialogForm& form) {
    static_cast<TDialogDrill&>(form).drillingTool = 0;
    return true;
  };
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(s.DrillingTool, 0);
  EXPECT_TRUE(fs::exists(s.MachineFile));
  EXPECT_TRUE(Contains(w.Ini(), "\r\nDrillingTool=1\r\n"));
}

TEST(OutputCommands, AFailedWriteSaysSoAndLeavesTheOldFile) {
  World w;
  Settings& s = w.app.settings;
  s.MachineOutput = kMachineOutputFile;
  s.MachineFile = w.config.path() + "job.iso";
  { std::ofstream(s.MachineFile) << "old job"; }

  // A disk that takes no more than a few bytes of any file.
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit tight = before;
  tight.rlim_cur = 64;
  setrlimit(RLIMIT_FSIZE, &tight);
  const bool done = MillJob(w.app, s.MachineFile);
  RunCommand(w.app, cmd::Mill);
  setrlimit(RLIMIT_FSIZE, &before);

  EXPECT_FALSE(done);
  ASSERT_EQ(w.fake.messages.size(), 2u);
  for (const auto& m : w.fake.messages) {
    EXPECT_EQ(m.title, "Error");
    EXPECT_EQ(m.text, "Unable to export file. ''" + s.MachineFile + "''");
  }
  EXPECT_EQ(ReadAll(s.MachineFile), "old job");
  EXPECT_TRUE(w.fake.processes.empty());
  // No temporary file is left beside it.
  int files = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator(w.config.path())) ++files;
  EXPECT_EQ(files, 2);  // Isolith.ini and job.iso

  // A device is never replaced by the file.
  EXPECT_FALSE(MillJob(w.app, "/dev/null"));
  EXPECT_EQ(w.fake.LastMessage(), "Unable to export file. ''/dev/null''");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(OutputCommands, MillJobCutsTheCardAndRefusesWithAReason) {
  World w;
  std::string reason;
  // A card contour without its cut path gets it before the job is written.
  TCutout* card = test::AddCutout(w.app.board);
  card->outline->first->next->next = new TXY{20, 20, 0, new TXY{5, 20, 0, new TXY{5, 5, 0}}};
  w.app.tools[1].Diameter = 1;
  w.app.tools[1].Profile = kProfileCylindrical;
  w.app.settings.CuttingTool = 1;
  const std::string path = w.config.path() + "card.iso";
  ASSERT_TRUE(MillJob(w.app, path, &reason)) << reason;
  EXPECT_NE(card->paths, nullptr);
  EXPECT_TRUE(w.fake.dialogsRun.empty());  // every dialog taken as it stands
  EXPECT_TRUE(EndsWith(ReadAll(path), "M02\r\n%\r\n"));

  // Nothing to write: refused with a reason and no message.
  World empty;
  FreeChain(empty.app.board.Contours[0]);
  empty.app.board.Contours[0] = nullptr;
  EXPECT_FALSE(MillJob(empty.app, empty.config.path() + "x.iso", &reason));
  EXPECT_TRUE(Contains(reason, "nothing to write")) << reason;
  EXPECT_TRUE(empty.fake.messages.empty());
  EXPECT_FALSE(fs::exists(empty.config.path() + "x.iso"));
}

TEST(OutputCommands, TheSuiteModuleVariantWritesTheJobAndStartsTheModuleOrTheSuite) {
  EXPECT_EQ(ModuleCommandLine("/p/", kModuleMill),
            (std::vector<std::string>{"/p/Drevon", "TAMSYFILE", "MILL3", "NOCUTPASS"}));
  EXPECT_EQ(ModuleCommandLine("/p/", kModuleManual),
            (std::vector<std::string>{"/p/Drevon", "TAMSYFILE", "MILL3", "NOCUTPASS"}));
  EXPECT_EQ(ModuleCommandLine("/p/", kModuleIoTest), std::vector<std::string>{"IOTESTM"});

  // By command, chosen process and the dialog's answer: the process line that starts, if any.
  struct Case {
    int command;
    int runChain;
    bool confirmed;
    std::vector<std::string> started;  // after the program folder's prefix on the first word
  } cases[] = {
      {cmd::Mill, 0, true, {"Drevon", "TAMSYFILE", "MILL3", "NOCUTPASS"}},
      {cmd::Simulate, 1, true, {"Drevon", "TAMSYFILE", "SIMULM", "NOCUTPASS"}},
      {cmd::Mill, 1, true, {"Torvane", "TAMSYFILE", "<job>"}},
      {cmd::Mill, 0, false, {}},
  };
  for (const Case& c : cases) {
    World w;
    w.app.ProductVariant = kSuiteModuleVariant;
    w.app.settings.MachineOutput = 0;  // never asked for in this variant
    w.fake.dialogs["TDialogDrillProcess"] = [&c](DialogForm& form) {
      static_cast<TDialogDrillProcess&>(form).process = c.runChain;
      return c.confirmed;
    };
    RunCommand(w.app, c.command);
    const std::string job = w.config.path() + "Isolith.tvn";
    SCOPED_TRACE(c.started.empty() ? "cancelled" : c.started[2]);
    EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogDrillProcess"});
    EXPECT_EQ(fs::exists(job), c.confirmed);
    if (!c.confirmed) {
      EXPECT_TRUE(w.fake.processes.empty());
      continue;
    }
    std::vector<std::string> expected = c.started;
    expected[0] = w.program.path() + expected[0];
    if (expected.back() == "<job>") expected.back() = job;
    ASSERT_EQ(w.fake.processes.size(), 1u);
    EXPECT_EQ(w.fake.processes[0], expected);
    EXPECT_EQ(w.fake.workingFolders[0], w.program.path());
    // Simulate stores the module's chain; the job names the product and holds the contour.
    const int stored = c.command == cmd::Simulate ? 0 : c.runChain;
    EXPECT_TRUE(Contains(w.Ini(), "\r\nRunChain=" + std::to_string(stored) + "\r\n"));
    EXPECT_EQ(ReadAll(job).substr(0, 15), "Torvane 3 Isoli");
    EXPECT_TRUE(w.fake.messages.empty());
  }
}

// The module as a real process: a script named "Drevon" that waits in the program folder.
class RealProcesses : public test::FakePlatform {
 public:
  bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                    const std::string& folder, int64_t* pid) override {
    FakePlatform::StartProcess(program, args, folder, nullptr);
    return console.StartProcess(program, args, folder, pid);
  }
  ConsolePlatform console;
};

TEST(OutputCommands, ARunningModuleIsKnownByItsPidFileAndOnlyRaisedAgain) {
  TempFolder program, config;
  RealProcesses fake;
  Application app(fake, program.path(), config.path());
  InitSettings(app);
  {
    std::ofstream script(program.path() + "Drevon");
    script << "#!/bin/sh\nexec sleep 60\n";
  }
  fs::permissions(program.path() + "Drevon", fs::perms::owner_all);
  EXPECT_FALSE(MachiningModuleRunning(app));

  LaunchMachiningModule(app, kModuleMill);
  ASSERT_TRUE(MachiningModuleRunning(app));
  LaunchMachiningModule(app, kModuleSimulate);  // raised, not started twice
  EXPECT_EQ(fake.processes.size(), 1u);
  EXPECT_EQ(fake.statusTexts.back(), "The machining module Drevon is running.");

  // The parameter dialogs warn that the running module will not see their changes.
  fake.dialogs["TDialogMachine"] = [](DialogForm&) { return false; };
  RunCommand(app, cmd::MachineBasicData);
  EXPECT_TRUE(std::any_of(fake.messages.begin(), fake.messages.end(),
                          [](const auto& m) { return m.title == "CNC"; }));

  std::ifstream pidFile(config.path() + "Drevon.pid");
  long long pid = 0, start = 0;
  pidFile >> pid >> start;
  ::kill(static_cast<pid_t>(pid), SIGKILL);
  ::waitpid(static_cast<pid_t>(pid), nullptr, 0);
  EXPECT_FALSE(MachiningModuleRunning(app));

  // A live process under the recorded id that started at another time is not the module; a
  // module that cannot start says so.
  std::ofstream(config.path() + "Drevon.pid") << ::getpid() << " 1\n";
  EXPECT_FALSE(MachiningModuleRunning(app));
  fs::remove(program.path() + "Drevon");
  fake.messages.clear();
  LaunchMachiningModule(app, kModuleMill);
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].text, "Unable to start the machining process.");
}

TEST(OutputCommands, OutputDataFormatListsTheFormatsWithTheUsersOwnAndEditsIt) {
  World w;
  {
    std::ofstream(w.config.path() + "Isolith.ppf")
        << "[Post-Processor]\r\nTitle=Bench mill\r\nFileExt=nc\r\nFileTop=(BENCH)\r\n";
  }
  std::vector<std::string> labels;
  std::string isoFile, rolandSpeed, userFile;
  bool rolandSections = false, enabledForIso = true;
  w.app.settings.MachineSetSeq = false;
  w.fake.dialogs["TDialogCopOutput"] = [&](DialogForm& form) {
    auto& f = static_cast<TDialogCopOutput&>(form);
    for (const auto& row : f.formats) labels.push_back(row.label);
    enabledForIso = f.PostProcessorEnabled();
    isoFile = f.file;
    f.scaleXY = "3";
    f.ChooseFormat(20);
    rolandSpeed = f.clearSpeed;
    rolandSections = f.sections;
    f.ChooseFormat(33);
    userFile = f.file;
    return f.PostProcessorEnabled();
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::OutputDataFormat));
  ASSERT_EQ(labels.size(), 10u);
  EXPECT_EQ(labels[0],
            "HPGL-Plotter 2D/2\xC2\xBD"
            "D");
  EXPECT_EQ(labels[2], "ISO G-Code for CNC-Mill Process");
  EXPECT_EQ(labels[4], "Isel-Remote NCP Command Language");
  EXPECT_EQ(labels[9], "Post-processor \"Bench mill\"");
  EXPECT_FALSE(enabledForIso);
  EXPECT_EQ(isoFile, w.config.path() + "Isolith.iso");
  EXPECT_EQ(rolandSpeed, "50");  // 3000 mm/min in mm/s
  EXPECT_TRUE(rolandSections);
  EXPECT_EQ(userFile, w.config.path() + "Isolith.nc");

  const Settings& s = w.app.settings;
  EXPECT_EQ(s.MachineFormat, 33);
  EXPECT_FLOAT_EQ(s.MachineScaleXY, 1);  // choosing a format puts the scales back
  EXPECT_EQ(s.ExportClearSpeed, 3000);
  EXPECT_TRUE(s.MachineSetSeq);
  EXPECT_TRUE(Contains(w.Ini(), "\r\nMachineFormat=POST-PROCESSOR\r\n"));

  // The Mill command then writes the user's format.
  RunCommand(w.app, cmd::Mill);
  EXPECT_EQ(s.MachineFile, w.config.path() + "Isolith.nc");
  EXPECT_EQ(ReadAll(s.MachineFile).rfind("N0 (BENCH)\r\r\n", 0), 0u) << ReadAll(s.MachineFile);

  // ">" edits the user's format: the file is written and the list shows the new title.
  w.fake.dialogs["TDialogPostPro"] = [](DialogForm& pp) {
    static_cast<TDialogPostPro&>(pp).title = "Renamed";
    static_cast<TDialogPostPro&>(pp).fileExt = "tap";
    return true;
  };
  w.fake.dialogs["TDialogCopOutput"] = [&](DialogForm& form) {
    auto& f = static_cast<TDialogCopOutput&>(form);
    EXPECT_TRUE(f.EditPostProcessor(w.fake));
    labels.clear();
    for (const auto& row : f.formats) labels.push_back(row.label);
    userFile = f.file;
    return false;
  };
  RunCommand(w.app, cmd::OutputDataFormat);
  EXPECT_EQ(labels.back(), "Post-processor \"Renamed\"");
  EXPECT_EQ(userFile, w.config.path() + "Isolith.tap");
  EXPECT_TRUE(Contains(ReadAll(w.config.path() + "Isolith.ppf"), "\r\nTitle=Renamed\r\n"));
  EXPECT_TRUE(Contains(w.Ini(), "\r\nPprExtension=tap\r\n"));
}

TEST(OutputCommands, OutputDataFormatSendsTheFileToAFileAPrinterOrAPort) {
  World w;
  auto transfer = std::make_unique<test::FakeTransfer>();
  transfer->printers = {"office", "Roland-EGX"};
  w.app.transfer = std::move(transfer);
  // The printer proposed is a Roland when none is chosen; the ports are listed LPT first.
  w.fake.dialogs["TDialogCopOutput"] = [](DialogForm& form) {
    auto& f = static_cast<TDialogCopOutput&>(form);
    EXPECT_EQ(f.printer, "Roland-EGX");
    EXPECT_EQ(f.ports.size(), 35u);
    EXPECT_EQ(f.ports.front() + f.ports[3] + f.ports.back(), "LPT1COM1COM32");
    f.output = kMachineOutputPrinter;
    f.printer = "office";
    f.file = "/elsewhere.iso";  // kept only for "Create file"
    return true;
  };
  RunCommand(w.app, cmd::OutputDataFormat);
  const Settings& s = w.app.settings;
  EXPECT_EQ(s.MachineOutput, kMachineOutputPrinter);
  EXPECT_EQ(s.MachinePrn, "office");
  EXPECT_EQ(s.MachineFile, "");

  // A port name the settings cannot keep is refused; "Parameters..." names a COM port with its
  // parameters, and the port and line end are kept.
  std::string port;
  w.fake.dialogs["TDialogRS232"] = [](DialogForm& form) {
    auto& f = static_cast<TDialogRS232&>(form);
    EXPECT_EQ(f.baudRow, 6);  // 9600
    f.com = 5;
    f.baudRow = 12;
    f.stopBitsRow = 1;
    f.rts = 3;
    return true;
  };
  w.fake.dialogs["TDialogCopOutput"] = [&](DialogForm& form) {
    auto& f = static_cast<TDialogCopOutput&>(form);
    f.output = kMachineOutputPort;
    f.port = "/dev/ttyUSB0";
    EXPECT_FALSE(f.Accept(w.fake));
    EXPECT_EQ(f.focus, TDialogCopOutput::kPort);
    EXPECT_TRUE(f.EditPortParameters(w.fake));
    port = f.port;
    f.lineEnd = 3;
    return true;
  };
  RunCommand(w.app, cmd::OutputDataFormat);
  EXPECT_EQ(w.fake.messages.at(0).text, TDialogCopOutput::kPortTooLong);
  EXPECT_EQ(port, "COM5");
  EXPECT_EQ(s.MachineOutput, kMachineOutputPort);
  EXPECT_EQ(s.MachinePrn, "office");
  EXPECT_EQ(s.MachinePort + "/" + std::to_string(s.MachineBaudrate) + "/" +
                std::to_string(s.MachineStopBits) + "/" + std::to_string(s.MachineRTS) + "/" +
                std::to_string(s.MachineEol),
            "COM5/115200/15/3/3");
  EXPECT_TRUE(Contains(w.Ini(), "\r\nMachinePort=COM5\r\n"));

  // Mill then sends the written file there.
  RunCommand(w.app, cmd::Mill);
  auto& sent = static_cast<test::FakeTransfer&>(*w.app.transfer).sent;
  EXPECT_EQ(sent, std::vector<std::string>{"COM5:" + MillTarget(w.app)});
}

TEST(OutputCommands, AutomillMillsTheStartFileWithEveryDialogTakenAsItStands) {
  TempFolder folder;
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  app.tools[0].Diameter = 0.2f;
  app.tools[0].Profile = kProfileCylindrical;
  app.settings.MillingTool = app.settings.DrillingTool = 0;
  const std::string board = folder.path() + "board.gbr";
  std::ofstream(board) << "%FSLAX34Y34*%\n%MOMM*%\n%ADD10C,1.6*%\n%ADD11C,0.4*%\n"
                          "D10*\nX50000Y50000D03*\nX150000Y50000D03*\n"
                          "D11*\nX50000Y50000D02*\nX150000Y50000D01*\nM02*\n";
  ApplyCommandLine(app, {board, "AUTOMILL"});
  ASSERT_TRUE(app.AutoMill);
  RunFirstShow(app);

  EXPECT_FALSE(app.AutoMill);
  EXPECT_TRUE(fake.dialogsRun.empty());
  // Never chosen an output: the proposal of "Output data format" stands, viewer included.
  const std::string job = folder.path() + "Isolith.iso";
  EXPECT_TRUE(EndsWith(ReadAll(job), "M02\r\n%\r\n"));
  EXPECT_EQ(app.settings.MachineOutput, kMachineOutputFile);
  ASSERT_EQ(fake.processes.size(), 1u);
  EXPECT_EQ(fake.processes[0], (std::vector<std::string>{"xdg-open", job}));
}

TEST(OutputCommands, CenteringHolesArePlacedByClicksAndRemovedAgain) {
  World w;
  Board& b = w.app.board;
  b.FinalRendering = true;
  // A click for another subject's pick is not taken.
  EXPECT_FALSE(OutputClickAction(w.app, cmd::Origin, 1, 1, 0));

  ASSERT_TRUE(RunCommand(w.app, cmd::CenteringHoles));
  EXPECT_EQ(b.PendingCommand, cmd::CenteringHoles);
  EXPECT_FALSE(b.FinalRendering);

  // The first click opens "Centering holes"; "Plot manually" keeps the pick for the second.
  w.fake.dialogs["TDialogManuPlot"] = [](DialogForm& form) {
    static_cast<TDialogManuPlot&>(form).plotManually = true;
    return false;
  };
  ASSERT_TRUE(OutputClickAction(w.app, cmd::CenteringHoles, 3.2f, 2.9f, 1));
  EXPECT_FLOAT_EQ(b.CentreHole1X, 3);
  EXPECT_FLOAT_EQ(b.CentreHole1Y, 3);
  EXPECT_EQ(b.PendingCommand, cmd::CenteringHoles);
  ASSERT_TRUE(OutputClickAction(w.app, cmd::CenteringHoles, 30, 20, 0));
  EXPECT_EQ(b.PendingCommand, 0);
  EXPECT_TRUE(CommandChecked(cmd::CenteringHoles, w.app));
  // The board was fitted round the holes with its margin.
  EXPECT_FLOAT_EQ(b.CentreHole1X, 2.54f);
  EXPECT_FLOAT_EQ(b.CentreHole1Y, 2.54f);

  // The same command removes them.
  RunCommand(w.app, cmd::CenteringHoles);
  EXPECT_FALSE(CommandChecked(cmd::CenteringHoles, w.app));
  EXPECT_EQ(b.PendingCommand, 0);
}

}  // namespace
}  // namespace isolith
