// The modern reading of a photoplot file: the interpreted image (GerberImage.h) turned into the
// pads and tracks the board holds. Filled regions become their outline and a scan-line fill of
// strokes, arcs chains of chords, macro apertures the nearest pad shape or, where none fits, the
// strokes of their figure; areas drawn with clear polarity are left out of the regions drawn
// before them.
#pragma once

#include <istream>

#include "core/board/Board.h"
#include "params/Settings.h"

namespace isolith {

// Reads the whole file into ImportPads, ImportTracks and (on layer 0, for pads with a hole)
// ImportDrills, and the tables of `layer` (0 to 3; another reads nothing), with the dialect's
// scales and `arcTolerance` mm of chord error.
void ReadModernGerber(std::istream& file, const TImportFormat& format, int layer,
                      double arcTolerance, Board& board);

}  // namespace isolith
