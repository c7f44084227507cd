// What the output walks and commands work on: the one board, settings record, tool library and
// drill list of the run, the platform, and the few things the output needs from other parts of
// the program (the user's format, the writers of other file kinds, the text viewer).
#pragma once

#include <functional>
#include <string>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "output/formats/FormatWords.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"
#include "toolpath/DrillList.h"

namespace isolith {

// The product variants: the stand-alone program, and the module of the suite that hands its
// jobs to the suite's machining module. The build chooses one (ISOLITH_PRODUCT_VARIANT).
inline constexpr int kStandAloneVariant = 1;
inline constexpr int kSuiteModuleVariant = 0;
#ifndef ISOLITH_PRODUCT_VARIANT
#define ISOLITH_PRODUCT_VARIANT 1
#endif
inline constexpr int kBuildProductVariant = ISOLITH_PRODUCT_VARIANT;

// Choices of the "Export" and "File export" dialogs that are not settings: they keep their state
// for the program's run.
struct ExportChoices {
  bool cardContour = true;        // "card contour"
  bool flipHorizontally = false;  // "Flip horizontally"
  bool editInViewer = false;      // "Edit file with NotePad for checking"
};

struct OutputContext {
  OutputContext(Board& b, Settings& s, ToolTable& t, TDrillList& d, Platform& p, ExportChoices& c)
      : board(b), settings(s), tools(t), drillList(d), platform(p), choices(c) {}

  Board& board;
  Settings& settings;
  ToolTable& tools;
  TDrillList& drillList;
  Platform& platform;
  ExportChoices& choices;
  // The folder of the executable: the user's header and footer files are looked for here, and
  // the save dialog starts here when no export folder is known.
  std::string programFolder;
  int productVariant = kStandAloneVariant;

  // The loaded user format (code 33): its words, the title and the default extension it shows.
  // Without words, code 33 cannot be written.
  FormatWords* userFormat = nullptr;
  std::string userFormatTitle;
  std::string userFormatExtension;

  // Writes the settings file after a dialog changed the record (keeping any run-only values
  // out of it). May be empty: the record then changes in memory only.
  std::function<void()> saveSettings;
  // Writers of the other file kinds that "Save..." offers: the job file (code 0), Excellon (23)
  // and Gerber (24); each returns false on failure. An empty one makes its format unavailable.
  std::function<bool(const std::string& path)> writeJobFile;
  std::function<bool(const std::string& path)> writeExcellon;
  std::function<bool(const std::string& path)> writeGerber;
  // Opens a written file in the text viewer. May be empty.
  std::function<void(const std::string& path)> openTextViewer;
  // The walks order paths and drills by plain scans of the lists instead of their sorted and
  // indexed searches: the reference the fast orderings are checked against (same order, same
  // file). Only tests and benchmarks set it.
  bool referenceOrdering = false;
  // Marks a drill or path on the screen while the section walk visits it. May be empty.
  std::function<void(float x, float y)> showProgress;
};

}  // namespace isolith
