// The job of a command-line run: the layer files and the drill file, read through the same
// load flows as the desktop's "New circuit", "Additional layer" and "Drills...".
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "commands/Application.h"

namespace isolith {

// The answers a person gives in the "Excellon import" dialog, given on the command line for the
// drill file of this run (the desktop asks; the command line has nobody to ask). An answer left
// out keeps the program's own: the stored drill format and the stored dialog defaults. Nothing
// of them is ever written to the settings file.
struct DrillAnswers {
  enum class From { Stored, Given, Header };
  // "Zero suppression :": --drill-zeros leading (format 17, numbers left-justified in six
  // digits), trailing (format 18, numbers as written) or auto (the header's ",LZ" or ",TZ").
  From zerosFrom = From::Stored;
  int zeros = 17;
  // "Units :": --drill-units inch, metric, or auto (the header's own unit word decides).
  From unitsFrom = From::Stored;
  bool metric = false;
  // "Co-ordinates :": --drill-coordinates absolute or incremental.
  std::optional<bool> relative;
};

// What the command line says about the job.
struct JobArguments {
  std::string dialect;                  // --dialect NAME, empty to go by the extensions
  std::vector<std::string> layerFiles;  // the first opens as a new circuit, the others as layers
  std::string drillFile;                // --drills FILE
  bool contours = false;                // --contours
  bool hatches = false;                 // --hatches
  bool modern = false;                  // --modern: ModernImport for this run
  DrillAnswers drillAnswers;            // --drill-zeros, --drill-units, --drill-coordinates
};

// What became of one file.
struct LoadedFile {
  std::string path;
  int layer = -1;            // where it went; -1 when it was refused
  bool cardContour = false;  // a card contour was taken from it at load
};

// The layer format of a dialect name ("gerber", "ares", "eagle", "orcad", "osmond", "pads",
// "pcb-wizard", "protel", "wintypon"); 0 for an unknown name.
int DialectFormat(const std::string& name);
// The dialect names, for messages.
const char* DialectNames();

// Takes one job word at args[i] (advancing i past a value); false with `error` set when the word
// is not a job word or its value is missing or wrong.
bool ParseJobWord(const std::vector<std::string>& args, size_t& i, JobArguments& job,
                  bool allowToolpaths, std::string& error);

// Reads the files in order; false as soon as one is refused (its message went through the
// platform). `loaded` tells what became of each file read. The drill answers stand for the drill
// file of this run only: the zero answer overrides DrillImportFormat as a --set does, the others
// go into the application's dialog choices.
bool LoadJob(Application& app, const JobArguments& job, std::vector<LoadedFile>& loaded);

}  // namespace isolith
