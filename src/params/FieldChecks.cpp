#include "params/FieldChecks.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/platform/Platform.h"
#include "params/Expression.h"

namespace isolith {

namespace {

// "%s :  %s %s\n\n%s" with the limits below it.
std::string RangeMessage(std::string_view label, std::string_view text, std::string_view unit,
                         const std::string& minimum, const std::string& maximum) {
  std::string m;
  m.append(label).append(" :  ").append(text).append(" ").append(unit);
  m.append("\n\nInvalid value.");
  m.append("\n\n  ---> Minimum value: ").append(minimum);
  m.append("\n  ---> Maximum value: ").append(maximum);
  return m;
}

}  // namespace

std::string FormatFieldFloat(double value, int decimals, char separator) {
  decimals = std::clamp(decimals, 0, 6);
  char buffer[400];
  auto [end, ec] =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  if (ec != std::errc()) return "0";
  std::string text(buffer, end);
  if (text.find('.') != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  if (text == "-0") text = "0";
  std::replace(text.begin(), text.end(), '.', separator);
  return text;
}

bool CheckFloatField(Platform& platform, std::string_view label, std::string_view text,
                     std::string_view unit, float& value, double minimum, double maximum,
                     double tolerance) {
  char separator = platform.DecimalSeparator();
  ExprResult r = EvaluateExpression(text, separator);
  if (r.errorPosition != 0) {
    platform.ShowMessage("Error", r.errorText, MessageIcon::Error);
    return false;
  }
  if (minimum < maximum) {
    double v = r.value;
    if (v < minimum - tolerance || v > maximum + tolerance) {
      platform.ShowMessage(
          "Error",
          RangeMessage(label, TrimBlanks(text), unit, FormatFieldFloat(minimum, 3, separator),
                       FormatFieldFloat(maximum, 3, separator)),
          MessageIcon::Error);
      return false;
    }
  }
  value = r.value;
  return true;
}

bool CheckFloatFieldOr(Platform& platform, std::string_view label, std::string_view text,
                       std::string_view unit, float& value, float blankDefault, double minimum,
                       double maximum, double tolerance) {
  if (TrimBlanks(text).empty()) {
    value = blankDefault;
    return true;
  }
  return CheckFloatField(platform, label, text, unit, value, minimum, maximum, tolerance);
}

bool CheckIntField(Platform& platform, std::string_view label, std::string_view text,
                   std::string_view unit, int& value, int minimum, int maximum) {
  IntExprResult r = EvaluateInt(text, platform.DecimalSeparator());
  if (r.errorPosition != 0) {
    platform.ShowMessage("Error", r.errorText, MessageIcon::Error);
    return false;
  }
  if (minimum < maximum && (r.value < minimum || r.value > maximum)) {
    platform.ShowMessage("Error",
                         RangeMessage(label, TrimBlanks(text), unit, std::to_string(minimum),
                                      std::to_string(maximum)),
                         MessageIcon::Error);
    return false;
  }
  value = r.value;
  return true;
}

bool CheckIntFieldOr(Platform& platform, std::string_view label, std::string_view text,
                     std::string_view unit, int& value, int blankDefault, int minimum,
                     int maximum) {
  if (TrimBlanks(text).empty()) {
    value = blankDefault;
    return true;
  }
  return CheckIntField(platform, label, text, unit, value, minimum, maximum);
}

}  // namespace isolith
