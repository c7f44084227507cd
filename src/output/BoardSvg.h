// The job as an SVG picture: the card, the copper of each layer, the drills, the card contours
// with their cut paths, and the calculated contours and hatches, each kind in a group of its own
// (`<g class="pads" data-layer="0">`...). Every path is a polyline in card millimetres, X right
// and Y up, so that a person can look at it in a browser and a program can measure it.
#pragma once

#include <string>

#include "core/board/Board.h"

namespace isolith {

std::string BoardToSvg(const Board& b);

}  // namespace isolith
