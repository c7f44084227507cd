// The main window's title: the program, the active layer's file and where it stands.
#pragma once

#include <string>

#include "core/board/Board.h"

namespace isolith {

// "Isolith", then "  -  " and the active layer's name when it has one, then, when any layer
// holds something, "   (" and "Drills", "Card contour" or "Layer n/m" (the active circuit
// layer's number from 1 and the number of circuit layers in use) and ")".
std::string WindowTitle(const Board& b);

}  // namespace isolith
