// Numbers in a photoplot block, the plotter's aperture numbering, and the coordinate scales.
#pragma once

#include "import/GerberState.h"

namespace isolith {

// What a number stands for: a coordinate on one axis (X and I, or Y and J) or a plain number.
enum class NumberAxis { None, X, Y };

// Reads the number that starts one past reader.pos: at most kNumberChars characters among
// digits, "." and "-"; reader.pos is left on the last character taken (unchanged when none was).
// Text that is no number reads as 0. With trailing zeros, a coordinate without a point is padded
// with zeros to 6 characters and then divided by 10. `value` is the number, times the axis scale
// for a coordinate (a written decimal point changes nothing in that); `intValue` its whole part,
// or 0 when `value` is 1000 or more.
void ReadNumber(GerberReader& reader, NumberAxis axis);

// The plotter wheel's numbering: D10..D19 are 0..9, D70 and D71 10 and 11, D20..D29 12..21,
// D72 and D73 22 and 23, D30..D69 24..63, D74..D99 64..89; numbers of 100 and above stay as they
// are. -1 for a number below 10, which names no aperture.
int MapAperture(int fileNumber);

// Recomputes xScale and yScale after ScaleIn, a fraction or the unit changed.
void UpdateScales(GerberReader& reader);

}  // namespace isolith
