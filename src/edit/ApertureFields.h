// What the pad and track dialogs share: the shape names in code order, the size fields shown
// with two decimals in the locale's mark, and typed numbers read as they come, a text that does
// not parse yet being passed over.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace isolith {

// The shape choices, index = PadShape code.
inline constexpr std::array<std::string_view, 4> kShapeNames = {"Circle", "Rectangle", "Obround",
                                                                "Octagon"};

// Shapes 0 and 3 have one size: the Y field is off and Y follows X.
inline bool ShapeHasOneSize(int shape) {
  return shape == 0 || shape == 3;
}

// "%.2f" with `separator` as the decimal mark.
std::string SizeText(double value, char separator);

// The typed text as a number; false while it does not parse (the field is then passed over).
// A blank text reads as 0.
bool ReadTypedNumber(std::string_view text, char separator, float& value);

}  // namespace isolith
