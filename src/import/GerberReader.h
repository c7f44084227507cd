// The photoplot reader: a forgiving scanner for RS-274-D and RS-274-X files of many layout
// programs. It knows flashes and straight draws, keeps the file's apertures in the table of 100,
// and guesses what a file leaves out; regions are read as plain draws and arcs move the pen
// without drawing.
#pragma once

#include <istream>

#include "core/board/Board.h"
#include "import/GerberState.h"
#include "params/Settings.h"

namespace isolith {

// Reads the whole file, block by block, until its end or until board.StopImport is set: flashes
// are appended to ImportPads (and, on layer 0, a drill for each flash whose aperture has a hole
// to ImportDrills), draws to ImportTracks, and the file's apertures go to the tables of `layer`
// (0 to 3; another value reads nothing). The aperture flags are cleared first. `format` gives
// the dialect's id and its three scales.
void ReadGerber(GerberReader& reader, std::istream& file, const TImportFormat& format, int layer,
                Board& board);

// The same with a fresh reader.
void ReadGerber(std::istream& file, const TImportFormat& format, int layer, Board& board);

// One block's codes, scanned left to right from reader.pos (exposed for the tests of the codes;
// ReadGerber calls it for every block outside a macro definition).
void ScanBlock(GerberReader& reader, GerberPen& pen, Board& board, int layer);

// What the pen does at the end of a block: a draw in mode 1 (none for a pen that has not moved,
// has no previous position yet, or followed an arc with both I and J), a flash in mode 3, after
// which the mode returns to 2. The appended records go to the tails given, which are kept.
void DrawStep(GerberPen& pen, uint8_t aperture, Board& board, int layer, TPad*& padTail,
              TTrack*& trackTail, TDrill*& drillTail);

}  // namespace isolith
