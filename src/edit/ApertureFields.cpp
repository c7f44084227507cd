#include "edit/ApertureFields.h"

#include <charconv>

#include "params/Expression.h"

namespace isolith {

std::string SizeText(double value, char separator) {
  char buffer[400];
  auto [end, ec] =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 2);
  if (ec != std::errc()) return "0";
  std::string text(buffer, end);
  for (char& c : text)
    if (c == '.') c = separator;
  return text;
}

bool ReadTypedNumber(std::string_view text, char separator, float& value) {
  const ExprResult result = EvaluateExpression(text, separator);
  if (result.errorPosition != 0 || !result.errorText.empty()) return false;
  value = result.value;
  return true;
}

}  // namespace isolith
