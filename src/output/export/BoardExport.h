// The active layer written back as board files for other programs: an Excellon drill file of its
// pads and a Gerber RS-274-X file of its tracks, pads and card contours. Neither goes through the
// pen machine; lengths in the files are inches. Each file is written beside its target and
// replaces it only once whole, with CR LF line ends.
#pragma once

#include <string>

#include "core/board/Board.h"

namespace isolith {

// The D code of aperture list entry `index`: index mod 24, then 0..9 give D10..D19, 10 and 11
// D70 and D71, 12..21 D20..D29, 22 and 23 D72 and D73.
int DCodeOf(int index);

// The texts of the two files, as they are written.
std::string ExcellonText(const Board& board);
std::string GerberText(const Board& board, int layer);

// The drill file of the pads of the active layer (not of the drill layer: a layer without pads
// gives a bare header). False when the file could not be written; what stood there stays.
bool WriteExcellon(const Board& board, const std::string& path);
// The Gerber file of `layer`. False when the file could not be written; what stood there stays.
bool WriteGerber(const Board& board, const std::string& path, int layer);

// Writes `text` (LF line ends, written as CR LF) beside `path`, then renames it over `path`.
bool WriteExportFile(const std::string& path, const std::string& text);

}  // namespace isolith
