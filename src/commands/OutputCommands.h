// The output commands as the window and the command-line program reach them: "&Save...",
// "&Mill...", "Output data format..." and "&Add centering holes...". The menu runs them through
// the handler table (CommandHandlers.h); the functions here are what else must call them: the
// start-up chain, the board view's clicks and the scripts.
#pragma once

#include <string>

#include "commands/Application.h"
#include "output/driver/OutputContext.h"

namespace isolith {

// The output's view of the application: its board, settings, tools, drill list and export
// choices, the user's header and footer files and the save dialog's first folder in the folder
// of the program's own files, the user's format as "Isolith.ppf" gave it, the settings file
// written without this run's overrides, and the desktop's text viewer ("xdg-open") started
// through the platform. The context points into the application and lives no longer than one
// command.
OutputContext MakeOutputContext(Application& app);

// Where the program keeps the files it makes for the user: the configuration folder, which is
// the program folder whenever that is writable. The user's header and footer files belong there
// too, since an installed program's own folder is not the user's to write in.
std::string OwnFilesFolder(const Application& app);

// The file the Mill command writes when no other is named: "Isolith.out" in the folder of the
// program's own files.
std::string MillTarget(const Application& app);

// "&Mill..." as the menu runs it: PendingCommand cleared; refused with the beep when the active
// layer has nothing to write (no contours, no drills, no cut paths); the tools checked ("Active
// tools" opens when one is missing, and the command stops when one still is); a first drilling
// tool that is not chosen opens "Active tools" once more and stops with the beep when still not
// chosen. While no output was ever chosen "Output data format" opens first, and the command
// stops unless it is confirmed. The job is then written in `MachineFormat` to `MachineFile`
// ("Isolith.out" when none is named): the sections of "Final output" with `MachineSetSeq`, the
// active layer through "Export" and "File export" without. Once written, `MachineRun` (when
// set) runs with the file's path after its words; a run that cannot start says
// "<command line>\n\nUnable to execute this programme." under "Error". With the program started
// with AUTOMILL every dialog of the command is confirmed as it stands. Ends with ResetHover and
// a repaint. "&Simulate..." (and "M&anual control...", which shares its id) runs the same
// course with `simulate`: `MachineRun` then gets the word "SIMULATION" after the file.
void MillCommand(Application& app, bool simulate = false);

// The finished machine file at `path` to where `MachineOutput` sends it: the printer queue
// `MachinePrn` (the default queue when empty) or the port `MachinePort` with the port
// parameters of the settings. The file itself stays.
SendStatus SendMachineFile(Application& app, const std::string& path);

// For scripts, after the caller has loaded the files and calculated the contours (and hatches):
// the card's cut path of every card contour that has none yet, the tools checked as the Mill
// command checks them (the tool dialog confirmed as it stands), and the job written to `path`
// with WriteMachineJob, every dialog confirmed as it stands. True only when the whole file was
// written. On any refusal `reason` (when given) receives a short text why, naming the dialog
// that refused its values (two "Final output" rows with one choice are named); a failed write
// also says "Unable to export file. ''<path>''" under "Error", and the file that stood at `path`
// stays as it was. A path that names something other than a plain file (a device) is refused
// with that message. With `MachineOutput` 2 or 3 the written file is then printed or sent
// (SendMachineFile); a transfer that fails gives false with its reason, and the file stays at
// `path`.
bool MillJob(Application& app, const std::string& path, std::string* reason = nullptr);

// The active layer written as a board file, as "Save..." writes it: `format` is kFormatExcellon
// (its pads as drill holes) or kFormatGerberOut. A failure (or a path that names a device) says
// "Unable to export file. ''<path>''" under "Error" and leaves what stood at `path`.
bool ExportLayerFile(Application& app, int format, const std::string& path);

// A left click on the board while an output pick is pending; (x, y) is the card position of the
// mouse, `gridStep` the step of the visual grid the click snaps to (0 with Ctrl held).
//   12104: the centering hole placed at the click (the first opens "Centering holes" for the
//          second; with "Plot manually" the pick stays for the second click).
// False when `pendingId` is not one of these picks.
bool OutputClickAction(Application& app, int pendingId, float x, float y, float gridStep);

}  // namespace isolith
