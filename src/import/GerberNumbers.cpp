#include "import/GerberNumbers.h"

#include <cstdint>
#include <string_view>

#include "import/TextNumbers.h"

namespace isolith {

namespace {

bool IsNumberChar(char c) {
  return (c >= '0' && c <= '9') || c == '.' || c == '-';
}

// The number at the start of the text as the C library's atof reads it: an optional minus,
// digits, an optional point and digits; whatever follows is ignored, and no number is 0. At most
// kNumberChars characters arrive here, so the digits fit a double's mantissa exactly and one
// division rounds the result.
double DecimalPrefix(std::string_view text) {
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && text[i] == '-') {
    negative = true;
    ++i;
  }
  double mantissa = 0, divisor = 1;
  bool point = false;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9') {
      mantissa = mantissa * 10 + (c - '0');
      if (point) divisor *= 10;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  const double v = mantissa / divisor;
  return negative ? -v : v;
}

// The whole number at the start of the text as atoi reads it, held within 32 bits.
int32_t IntegerPrefix(std::string_view text) {
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && text[i] == '-') {
    negative = true;
    ++i;
  }
  int64_t v = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    v = v * 10 + (text[i] - '0');
    if (v > INT32_MAX) v = INT32_MAX + int64_t{1};  // stays bounded; clamped below
  }
  if (negative) v = -v;
  if (v > INT32_MAX) v = INT32_MAX;
  if (v < INT32_MIN) v = INT32_MIN;
  return static_cast<int32_t>(v);
}

}  // namespace

void ReadNumber(GerberReader& reader, NumberAxis axis) {
  char text[kNumberChars + 8];
  int n = 0;
  for (int p = reader.pos + 1; p < reader.len && n < kNumberChars && IsNumberChar(reader.line[p]);
       ++p) {
    text[n++] = reader.line[p];
    reader.pos = p;
  }
  double number;
  if (reader.trailing && axis != NumberAxis::None &&
      std::string_view(text, n).find('.') == std::string_view::npos) {
    // Trailing-zero coordinates are left-justified in six digits.
    while (n < 6) text[n++] = '0';
    number = DecimalPrefix(std::string_view(text, n)) * 0.1;
  } else {
    number = DecimalPrefix(std::string_view(text, n));
  }
  if (axis == NumberAxis::X) number *= reader.xScale;
  if (axis == NumberAxis::Y) number *= reader.yScale;
  reader.value = StoredValue(number);
  reader.intValue = reader.value >= 1000 ? 0 : IntegerPrefix(std::string_view(text, n));
}

int MapAperture(int n) {
  if (n < 10) return -1;
  if (n <= 19) return n - 10;
  if (n <= 29) return n - 20 + 12;
  if (n <= 69) return n - 30 + 24;
  if (n <= 71) return n - 70 + 10;
  if (n <= 73) return n - 72 + 22;
  if (n <= 99) return n - 74 + 64;
  return n;
}

void UpdateScales(GerberReader& reader) {
  reader.xScale = StoredValue(double(reader.ScaleIn) * reader.xFrac * reader.unit);
  reader.yScale = StoredValue(double(reader.ScaleIn) * reader.yFrac * reader.unit);
}

}  // namespace isolith
