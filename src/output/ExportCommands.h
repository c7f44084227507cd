// The output commands: "Save..." with its filter list and extension memory, the export flow
// around the layer walk, and the one call that writes the whole job for the Mill command.
#pragma once

#include <string>

#include "output/driver/OutputContext.h"

namespace isolith {

// Formats of the "Save..." filter list, in list order (the job file and the Oxbel language
// first for the suite's module variant 0 only); the job file, Excellon and Gerber only when the
// context has their writers.
std::vector<int> SaveFormats(const OutputContext& context);

// True when the active layer has something to write: contours on it, drills, or cut paths.
bool HasOutput(const Board& board);

// The tools the job needs, chosen and usable: the contour tool for contours of the active
// layer, the hatch tool for its hatches, a cylindrical cutting tool for cut paths, and a
// drilling mode of 1 to 3 with a cylindrical first drilling tool for drills. When one is
// missing the "Active tools" dialog opens; false when one is still missing afterwards.
bool CheckOutputTools(OutputContext& context);

// "Export" and "File export" dialogs, then the layer walk of the active layer to `path` (the
// save dialog asks when it is empty). Contours of the active layer and the cut paths are first
// turned the way the settings ask. A failed walk says "Unable to export file. ''<path>''"
// under "Error". With `fromRun`, a written file is opened in the text viewer when that choice is
// on. True when the file was written.
bool ExportFile(OutputContext& context, const std::string& path, int format, bool fromRun);

// "Save..." (command 12006): the save dialog over the formats' filters, then the writer of the
// chosen format. The chosen format becomes `ExportFormat`, the folder `ExportPath`, and an
// extension typed other than the format's own is remembered for it.
void CmdSave(OutputContext& context);

// The whole job in `MachineFormat` to `path`, as the Mill command writes it: with
// `MachineSetSeq` the "Final output" dialog and the section walk, otherwise `ExportFile`.
// Refused with a beep when there is nothing to write; the tools are checked first. On failure
// "Unable to export file. ''<path>''" is shown under "Error" and the previous file stands.
bool WriteMachineJob(OutputContext& context, const std::string& path);

}  // namespace isolith
