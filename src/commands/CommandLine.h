// The desktop program's command line: a file to open at start and a few option words.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "params/Settings.h"

namespace isolith {

// What the words asked for. The import formats they imply go straight into the settings.
struct CommandLineOptions {
  std::string StartFile;   // as typed (case kept); empty when none
  bool DebugMode = false;  // "DEBUG"
  bool Snapshot = false;   // "SNAPSHOT": the window starts at 850 by 714 pixels
  bool NoSplash = false;   // "NOSPLASH"
  bool AutoStart = false;  // "AUTOSTART"
  bool AutoMill = false;   // "AUTOMILL"
};

// The layer format that a file name implies by its extension, tested on the last four
// characters (dot included) of the upper-cased name: first the fixed extensions, then the
// user's own extensions of the dialect rows (Gerber, Ares, Eagle, Pads, PCB-Wizard, Protel,
// WinTypon; the Orcad and Osmond rows are not tested). Returns the format id, kFormatExcellon1
// for a drill file (fixed or user extension of the Excellon row), 0 when nothing matches.
int FormatOfCommandLineFile(const std::string& word, const Settings& settings);

// Reads the words (the program's name excluded). A word naming a file by its extension becomes
// StartFile and sets LayerImportFormat (a drill file sets DrillImportFormat to the layer format
// noted so far, 0 when none); option words are compared whole, in upper case. Any other word is
// ignored. When more than one word was given, a StartFile for which `exists` is false is dropped
// without a word; a single word is kept, and the reader then reports the missing file.
CommandLineOptions ParseCommandLine(const std::vector<std::string>& words, Settings& settings,
                                    const std::function<bool(const std::string&)>& exists);

}  // namespace isolith
