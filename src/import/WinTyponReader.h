// The WinTypon layout reader: the pads and tracks of a two-sided board, read from the text
// export of the layout program (".wt5"). It stands in for the Gerber reader inside the layer
// load, always on the first layer; the load then splits the result over the first two layers
// with `SplitWinTyponSides`.
#pragma once

#include <istream>

#include "core/board/Board.h"

namespace isolith {

// Reads `file` into `ImportPads`, `ImportTracks` and `ImportDrills` and fills the aperture tables
// of layers 0 and 1 and the drill table. `scaleIn` is the dialect's co-ordinate scale
// ("WtyScaleIn"); lengths in the file are hundredths of a millimetre.
//
// When the board has copper on the second side, the import lists hold the first side followed
// by the second, and `HoverPad` and `HoverTrack` name the first item of the second side (null
// when that side has none of them). These two names are the seam that `SplitWinTyponSides`
// cuts at: nothing may clear them in between (the transforms of the load only move items).
//
// Any bytes at all are read; a file with neither section leaves both lists empty.
void ReadWinTypon(std::istream& file, float scaleIn, Board& board);

// Once the read lists stand on layer 0: the part of each list from the seam on replaces
// layer 1's list (freeing what was there), and both seam names are emptied. A name that no
// longer points into layer 0's list cuts nothing.
void SplitWinTyponSides(Board& board);

}  // namespace isolith
