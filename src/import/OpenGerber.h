// Loading a circuit layer: a Gerber (or WinTypon) file is read, fitted to the card and installed
// as a layer, or refused with a message, in which case the job stands as it was.
#pragma once

#include <functional>
#include <string>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

// The steps of a load that belong to other parts of the program. The import folder reaches
// neither the window nor the editing dialogs nor the program object, so these come in from the
// caller; a step left empty is skipped.
struct GerberLoadSteps {
  // The program's ResetHover; the board's ClearHover when empty.
  std::function<void()> resetHover;
  // The card thickness that follows an import (the largest cutting depth); when empty the
  // thickness stays.
  std::function<float()> cardThickness;
  // With AutoReframe: the card is reframed round the content (which repaints).
  std::function<void()> reframe;
  // After the warning about missing aperture definitions: "Modify &pads..." when pads lack
  // them, then "Modify &tracks..." when tracks do.
  std::function<void()> modifyPads;
  std::function<void()> modifyTracks;
  // A complete first layer that fills at most half the card on an axis: "&Dimensions...".
  std::function<void()> dimensions;
  // Writes the settings file (the recent list and extension history changed).
  std::function<void()> saveSettings;
  // Detection when opening a file, for a layer that has tracks. Copper planes run with
  // DetectGndPlanes; the card contour with DetectCutOut and returns true when it took every
  // item of the layer.
  std::function<void(int layer)> detectCopperPlanes;
  std::function<bool(int layer)> detectCardContour;
  // The drill table rebuilt from the drills of the job.
  std::function<void()> rebuildDrillTable;
};

// What a load works on.
struct ImportContext {
  Board& board;
  Settings& settings;
  Platform& platform;
  std::string programFolder;  // the open dialogs start here when no import folder is known
  GerberLoadSteps steps;
};

// The message of a file that gives nothing to read, under "Error".
inline constexpr const char* kLoadError = "An error occurred while loading the file.";

enum class LoadResult {
  NotOpened,  // the file could not be opened: nothing happened, no message
  Refused,    // no flash and no draw: the error box, the job untouched
  Loaded,     // the file is a layer of the job
};

// Reads `path` with the dialect of Settings::LayerImportFormat onto circuit layer `layer`
// (0 replaces the whole job; a WinTypon file always loads on layer 0 and splits its second side
// to layer 1), fits it to the card and installs it. The file is read in place. Any bytes at all
// give either a layer or the error box "An error occurred while loading the file." under
// "Error"; a refused file changes nothing of the job (lists, tables, card, names).
LoadResult OpenGerberFile(ImportContext& context, const std::string& path, int layer);

// Reopens recent file `index` (0-based) as a new first layer with the format stored for it,
// which becomes the layer format. An empty entry does nothing.
LoadResult OpenRecent(ImportContext& context, int index);

// The thresholds of the size guess: a board whose box is at least `large` on both axes was read
// in too small a unit and is shrunk by tenths; one of at most `small` on both axes (and more than
// a point) is grown by tens. Import lists only; aperture sizes stay.
void GuessImportSize(Board& board, double small, double large);

// The dialect's mirror bits on the import lists: 4 swaps X and Y (and the pad sizes of every
// table), then 1 mirrors X and 2 mirrors Y within the present card.
void FlipImport(Board& board, uint8_t flipXY);

// Whether every pad of the layer has an aperture whose shape and size were both given, and
// every track one whose shape or size was.
bool PadsComplete(const Board& board, int layer);
bool TracksComplete(const Board& board, int layer);

}  // namespace isolith
