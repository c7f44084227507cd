#include "output/formats/Writers.h"

#include <charconv>
#include <cstdio>

namespace isolith {

namespace {

std::string_view CutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace

void WriteLine(TOutputState& state, std::string_view text) {
  text = CutTrailingBlanks(text);
  if (text.empty() || !state.Stream) return;
  state.Stream->Write(text);
  state.Stream->Write("\n");
}

void WriteRaw(TOutputState& state, std::string_view text) {
  text = CutTrailingBlanks(text);
  if (text.empty() || !state.Stream) return;
  state.Stream->Write(text);
}

std::string Fixed(double value, int decimals) {
  // Large enough for any double in fixed notation.
  char buffer[400];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  if (result.ec != std::errc()) return "0";
  return std::string(buffer, result.ptr);
}

std::string Trimmed(double value, int decimals) {
  std::string text = Fixed(value, decimals);
  if (text.find('.') == std::string::npos) return text;
  while (!text.empty() && text.back() == '0') text.pop_back();
  if (!text.empty() && text.back() == '.') text.pop_back();
  return text;
}

std::string Block6(int number) {
  char buffer[24];
  std::snprintf(buffer, sizeof buffer, "%06d", number);
  return buffer;
}

}  // namespace isolith
