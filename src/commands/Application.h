// The application object: the one board, settings record and tool library of a run, the
// platform they talk through, and the start-up state. main() creates one; a test builds a fresh
// one with `Application app(platform);`. Nothing else in the program holds mutable state.
#pragma once

#include <memory>
#include <string>

#include "commands/CommandTable.h"
#include "commands/ToolpathSession.h"
#include "commands/Viewport.h"
#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "import/OpenExcellon.h"
#include "output/driver/OutputContext.h"
#include "output/formats/FormatWords.h"
#include "output/postprocessor/PostProcessor.h"
#include "output/transfer/MachineTransfer.h"
#include "params/MachineParameters.h"
#include "params/Settings.h"
#include "params/SettingsOverrides.h"
#include "params/ToolLibrary.h"
#include "toolpath/DrillList.h"

namespace isolith {

inline constexpr const char* kProgramName = "Isolith";
inline constexpr const char* kProgramVersion = "0.1.0";

class Application {
 public:
  // `programFolder` is the folder of the executable, `configFolder` the folder of the settings,
  // tool and post-processor files (ConfigFolder.h), both with their final separator. Nothing is
  // read or written until InitSettings.
  explicit Application(Platform& platform, std::string programFolder = {},
                       std::string configFolder = {});
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  Platform& platform;
  Board board;
  Settings settings;
  // Values given on the command line for this run only (isolith-cli --set): re-applied after
  // every read of the settings file and kept out of every write of it.
  SettingsOverrides overrides;
  ToolTable tools{};

  std::string ProgramFolder;    // folder of the executable, case kept
  std::string ConfigFolder;     // folder of "Isolith.ini", "Isolith.too", "Isolith.ppf"
  char DecimalSeparator = '.';  // the locale's, for dialogs only; files always use "."

  // Start-up state from the command line (CommandLine.h). AutoStart and AutoMill are cleared
  // once the start-up chain has run.
  std::string StartFile;
  bool DebugMode = false;
  bool NoSplash = false;
  bool Snapshot = false;
  bool AutoStart = false;
  bool AutoMill = false;
  bool FirstShow = true;  // until the first show of the window has run the start-up chain

  // The product variant the build chose; a test may play the other.
  int ProductVariant = kBuildProductVariant;

  // The "Excellon import" choices, kept from one drill load to the next.
  ExcellonChoices excellonChoices;

  // The drill rows and their tools, rebuilt after every load; the toolpath choices of the run.
  TDrillList drillList;
  // "Torvane.cnc" as last read or edited; start-up does not read it.
  MachineParameters machine;
  ToolpathSession toolpath;

  // The output: the user's own format (read from "Isolith.ppf"), the choices of the export
  // dialogs kept for the run, and the words of the user's format that an output context points
  // to (made afresh with each context, from the format as it stands then).
  TPostProcessor postProcessor;
  ExportChoices exportChoices;
  std::unique_ptr<FormatWords> userFormatWords;

  // Where a finished machine file goes when it is printed or sent to a port: the system's print
  // server and ports (a test puts its own in place).
  std::unique_ptr<MachineTransfer> transfer = std::make_unique<SystemTransfer>();

  // What the last repaint drew on the active layer; the drawing code sets it.
  DrawnMarks drawn;
  // The board on the screen: scale, client and board rectangles, grid step.
  Viewport view;

  // The card position of the last right click: where the context menu's rows act.
  float PopupX = 0, PopupY = 0;

  // Set by "E&xit": the window closes at its next turn.
  bool ExitRequested = false;
};

// Start-up settings, in this order: the locale's decimal separator; the recent list cleared and
// the aperture tables at their defaults; the units at millimetres and mm/s; "Isolith.ini" read
// (and written back at once, so that a first run creates it) with an empty import folder
// becoming the program folder; the run's overrides applied; the tool library and the user's
// output format ("Isolith.ppf") read; ResetJob. The screen size (0 when there is none) goes
// into the host facts that the file records. Without a configuration folder nothing is read or
// written.
void InitSettings(Application& app, int screenWidth = 0, int screenHeight = 0);

// Writes "Isolith.ini" as memory holds it, the values overridden for this run put back to what
// the file held. False when it could not be written.
bool SaveSettings(Application& app);

// Empties the hover names and PendingCommand and brings the arrow cursor back. When the pending
// command was the placing of the first centering hole and none stands, the card is reframed
// first.
void ResetHover(Application& app);

// The bookkeeping of every repaint: LayerCount recounted, RefPad kept only while it still stands
// in the pads of a circuit layer (its layer becoming RefLayer).
void RepaintBookkeeping(Board& b);

// The repaint every command ends with: the bookkeeping, then the window redraws.
void RequestRepaint(Application& app, RepaintLevel level = RepaintLevel::View);

// The refusal: a short beep in the user's sound, nothing else.
void Refuse(Application& app);

// The card thickness that follows an import: the largest of the milling, hatching, cutting and
// drilling depths of the settings.
float CardThicknessFromSettings(const Settings& settings);

// Whether a command is enabled now, by the command table's rule (CommandTable.h).
bool CommandEnabled(int id, const Application& app);

// Whether a checkable menu row shows its tick, from the state it shows.
bool CommandChecked(int id, const Application& app);

}  // namespace isolith
