// Numbers as the readers see them: a short run of digits, points and minus signs taken from a
// line, read whatever the locale, with anything that is not a number reading as 0.
#pragma once

#include <string_view>

namespace isolith {

// The value of `text`: its longest leading part that reads as a decimal number ("12", "-1.5",
// ".5", "3."), 0 when there is none or when it lies outside the range of a stored float.
double ReadNumberText(std::string_view text);

// A value as it is stored in the model: a float, and 0 for anything that a float cannot hold.
float StoredValue(double value);

}  // namespace isolith
