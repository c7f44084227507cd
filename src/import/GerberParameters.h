// RS-274-X parameters: format, unit, macros and aperture definitions, given between "%" signs.
#pragma once

#include "core/board/Board.h"
#include "import/GerberState.h"

namespace isolith {

// reader.pos is on the "%". The tests run in this order, each on the text where the previous
// one left the position: "FS", "MOIN", "MOMM", "AM", "ADD"; any other parameter is ignored.
// The rest of the block is skipped: reader.pos is left at its end.
void ReadParameter(GerberReader& reader, GerberPen& pen, Board& board, int layer);

}  // namespace isolith
