// The hand-over to the suite's machining module "Drevon", the path of the product variant that
// is a module of the suite (ProductVariant 0): the Mill command writes the job file (JobFile.h)
// and starts the module with it, or hands the job to the suite's main program "Torvane".
//
// A running module is known by a pid file of ours beside the settings, "Drevon.pid": the process
// id and the start time of the process this program started. The module counts as running while
// a live process has that id and that start time, so a recycled process id never passes for it.
#pragma once

#include <string>
#include <vector>

#include "commands/Application.h"
#include "core/platform/Platform.h"

namespace isolith {

inline constexpr const char* kModuleName = "Drevon";
inline constexpr const char* kSuiteProgramName = "Torvane";

// Modes of a job run and of the module's start.
enum ModuleMode : int {
  kModuleMill = 1,         // "MILL3 NOCUTPASS"
  kModuleSimulate = 5,     // "SIMULM NOCUTPASS"
  kModuleManual = 7,       // manual control: the mill's words
  kModuleIoTest = 9,       // the line "IOTESTM" alone
  kModuleExportOnly = 19,  // the job file only, as an exported file, no start
};

// The command line of the module in `mode`: the program ("Drevon" in `programFolder`; this
// system's programs carry no ".exe") and its words. Mode 9 is the line "IOTESTM" alone, which
// replaces the module's name too, as the suite has always built it.
std::vector<std::string> ModuleCommandLine(const std::string& programFolder, int mode);

// Whether the module this program started is still running (the pid file, see above).
bool MachiningModuleRunning(const Application& app);

// When the module runs: true, and the status line says so; its window is the module's own to
// raise on this system. False when it does not run.
bool ActivateMachiningModule(Application& app);

// Starts the module in `mode` unless it runs already (then only ActivateMachiningModule): the
// settings written, the module started in the program folder and its pid file written. A start
// that fails says "Unable to start the machining process." under "Error".
void LaunchMachiningModule(Application& app, int mode);

// The job of the active layer for the module: mirrored for its length when "Flip horizontally"
// is chosen, contours and cut paths oriented, the settings written. With `RunChain` 0 (always
// for Simulate) the job file goes to `path`, bored holes as 15-degree chords (5 for export
// only), and the module starts in `mode` (not for export only); with `RunChain` 1 the job goes
// to "<product>.tvn" in the folder of the program's own files and the suite's main program
// starts with "TAMSYFILE" and that file. A job file that could not be written says "Unable to
// export file. ''<path>''" under "Error"; the module still starts, as it always has.
void RunJob(Application& app, int mode, const std::string& path);

}  // namespace isolith
