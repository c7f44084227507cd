// The one range check of every numeric field in every dialog: the text is evaluated as an
// expression and tested against the field's limits, and what is wrong is said in the same words
// everywhere, under the title "Error".
#pragma once

#include <string>
#include <string_view>

namespace isolith {

class Platform;

// The slack every dialog allows at both ends of a range.
inline constexpr double kFieldTolerance = 0.001;

// Evaluates `text` with the locale's decimal separator. On a failed evaluation the evaluator's
// message is shown; when `minimum` < `maximum` the result must lie within the limits widened by
// `tolerance`, else the "Invalid value." message with both limits is shown. On failure `value`
// keeps what it held and the result is false (the caller puts the focus on the field).
bool CheckFloatField(Platform& platform, std::string_view label, std::string_view text,
                     std::string_view unit, float& value, double minimum, double maximum,
                     double tolerance = kFieldTolerance);

// As CheckFloatField, but a blank text gives `blankDefault` without any test.
bool CheckFloatFieldOr(Platform& platform, std::string_view label, std::string_view text,
                       std::string_view unit, float& value, float blankDefault, double minimum,
                       double maximum, double tolerance = kFieldTolerance);

// The same for whole numbers: the text must give a whole number; limits shown by "%d".
bool CheckIntField(Platform& platform, std::string_view label, std::string_view text,
                   std::string_view unit, int& value, int minimum, int maximum);

// As CheckIntField, but a blank text gives `blankDefault` without any test.
bool CheckIntFieldOr(Platform& platform, std::string_view label, std::string_view text,
                     std::string_view unit, int& value, int blankDefault, int minimum, int maximum);

// A float as a field shows it: "%.Nf" (N at most 6), then trailing zeros and a trailing
// separator removed, with `separator` as the decimal mark.
std::string FormatFieldFloat(double value, int decimals, char separator);

}  // namespace isolith
