#include "import/TextNumbers.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace isolith {

double ReadNumberText(std::string_view text) {
  double value = 0;
  auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  (void)end;
  if (error != std::errc()) return 0;
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) return 0;
  return value;
}

float StoredValue(double value) {
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) return 0;
  return static_cast<float>(value);
}

}  // namespace isolith
