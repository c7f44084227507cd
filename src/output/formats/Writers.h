// The two writers every format speaks through, and the number forms of machine words. Numbers
// always use "." whatever the locale.
#pragma once

#include <string>
#include <string_view>

#include "output/driver/OutputState.h"

namespace isolith {

// The line writer: the text with its trailing blanks cut, then LF. An empty text (after the
// cut) writes nothing at all, not even the LF.
void WriteLine(TOutputState& state, std::string_view text);
// The raw writer: the same without the LF.
void WriteRaw(TOutputState& state, std::string_view text);

// "%.<decimals>f" of `value`, in "." notation.
std::string Fixed(double value, int decimals);
// The same with trailing zeros and then a trailing point removed ("1.50" -> "1.5", "2.00" -> "2").
std::string Trimmed(double value, int decimals);

// The number forms of the words: N0, N1 and N2 are `Trimmed` with 0, 1 and 2 decimals.
inline std::string N0(double value) {
  return Trimmed(value, 0);
}
inline std::string N1(double value) {
  return Trimmed(value, 1);
}
inline std::string N2(double value) {
  return Trimmed(value, 2);
}

// "%06d", the block number of the Isel format.
std::string Block6(int number);

}  // namespace isolith
