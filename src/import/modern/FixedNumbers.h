// Numbers of photoplot and drill files, which mostly leave their decimal point out: the digits
// stand for a fixed count of decimals, and a file that keeps its leading zeros writes them from
// the left, so that missing digits are trailing zeros.
#pragma once

#include <string>

namespace isolith {

// The value of `text` in file units: as written when it has a point; otherwise its digits with
// `decimals` of them after the point, filled up with zeros to `fromLeft` digits first when that
// is not 0. Anything that is not a number reads 0.
double FixedNumber(const std::string& text, int decimals, int fromLeft);

}  // namespace isolith
