#include "commands/MachiningModule.h"

#include <fstream>
#include <sstream>

#include "commands/OutputCommands.h"
#include "output/ExportFlip.h"
#include "output/driver/JobFile.h"
#include "output/driver/PathDirections.h"
#include "params/SettingsFile.h"
#include "toolpath/CutPath.h"

namespace isolith {

namespace {

constexpr const char* kCannotStart = "Unable to start the machining process.";

std::string PidFilePath(const Application& app) {
  return OwnFilesFolder(app) + kModuleName + ".pid";
}

// The start time of a live process in clock ticks since boot (field 22 of its stat line), or -1
// when no such process lives. A zombie has ended: its parent merely has not heard yet.
long long ProcessStartTime(long long pid) {
  if (pid <= 0) return -1;
  std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  if (!std::getline(in, line)) return -1;
  // The command name in parentheses may hold blanks; the fields count from after it.
  const std::size_t close = line.rfind(')');
  if (close == std::string::npos) return -1;
  std::istringstream fields(line.substr(close + 1));
  std::string state;
  fields >> state;
  if (state == "Z" || state == "X") return -1;
  std::string skipped;
  for (int field = 4; field < 22; ++field) fields >> skipped;
  long long start = -1;
  fields >> start;
  return fields ? start : -1;
}

// Writes the job file of the active layer, saying so when it could not be written.
bool WriteModuleJob(Application& app, const std::string& path, float arcStep) {
  OutputContext context = MakeOutputContext(app);
  const Settings& s = app.settings;
  app.platform.SetBusyCursor(true);
  const bool written = WriteJobFile(context, path, app.board.ActiveLayer, s.SingleSequence,
                                    s.MillingOptim, s.DrillingOptim, arcStep);
  app.platform.SetBusyCursor(false);
  if (!written)
    app.platform.ShowMessage("Error", "Unable to export file. ''" + path + "''",
                             MessageIcon::Error);
  return written;
}

}  // namespace

std::vector<std::string> ModuleCommandLine(const std::string& programFolder, int mode) {
  if (mode == kModuleIoTest) return {"IOTESTM"};
  std::vector<std::string> line{programFolder + kModuleName, "TAMSYFILE"};
  line.push_back(mode == kModuleSimulate ? "SIMULM" : "MILL3");
  line.push_back("NOCUTPASS");
  return line;
}

bool MachiningModuleRunning(const Application& app) {
  std::ifstream in(PidFilePath(app));
  long long pid = 0, start = -1;
  if (!(in >> pid >> start)) return false;
  return start >= 0 && ProcessStartTime(pid) == start;
}

bool ActivateMachiningModule(Application& app) {
  if (!MachiningModuleRunning(app)) return false;
  app.platform.SetStatus(std::string("The machining module ") + kModuleName + " is running.");
  return true;
}

void LaunchMachiningModule(Application& app, int mode) {
  if (ActivateMachiningModule(app)) return;
  SaveSettings(app);
  std::vector<std::string> words = ModuleCommandLine(app.ProgramFolder, mode);
  const std::string program = words.front();
  words.erase(words.begin());
  int64_t pid = 0;
  if (!app.platform.StartProcess(program, words, app.ProgramFolder, &pid)) {
    app.platform.ShowMessage("Error", kCannotStart, MessageIcon::Error);
    return;
  }
  const long long start = ProcessStartTime(pid);
  if (start >= 0)
    WriteFileAtomically(PidFilePath(app), std::to_string(pid) + " " + std::to_string(start) + "\n");
}

void RunJob(Application& app, int mode, const std::string& path) {
  Board& b = app.board;
  Settings& s = app.settings;
  {
    ExportFlip flip(b, app.exportChoices.flipHorizontally);
    OrientContours(b, b.ActiveLayer, s.MillingDir);
    OrientCutPaths(b, s.CuttingDir);
    if (mode == kModuleSimulate) s.RunChain = 0;
    SaveSettings(app);
    if (s.RunChain == 0) {
      WriteModuleJob(app, path, mode == kModuleExportOnly ? 5.0f : 15.0f);
      if (mode != kModuleExportOnly) LaunchMachiningModule(app, mode);
    } else {
      const std::string job = OwnFilesFolder(app) + kProgramName + ".tvn";
      const std::string suite = app.ProgramFolder + kSuiteProgramName;
      WriteModuleJob(app, job, 15.0f);
      if (!app.platform.StartProcess(suite, {"TAMSYFILE", job}, app.ProgramFolder))
        app.platform.ShowMessage(
            "Error", suite + " TAMSYFILE " + job + "\n\nUnable to execute this programme.",
            MessageIcon::Error);
    }
  }
  RequestRepaint(app);
}

}  // namespace isolith
