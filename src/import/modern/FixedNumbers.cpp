#include "import/modern/FixedNumbers.h"

#include <cmath>
#include <cstdlib>

namespace isolith {

double FixedNumber(const std::string& text, int decimals, int fromLeft) {
  double v;
  if (text.find('.') != std::string::npos) {
    v = std::strtod(text.c_str(), nullptr);
  } else {
    std::string t = text;
    bool negative = false;
    if (!t.empty() && (t[0] == '-' || t[0] == '+')) {
      negative = t[0] == '-';
      t.erase(0, 1);
    }
    while (int(t.size()) < fromLeft) t += '0';
    v = std::strtod(t.empty() ? "0" : t.c_str(), nullptr) / std::pow(10.0, decimals);
    if (negative) v = -v;
  }
  return std::isfinite(v) ? v : 0;
}

}  // namespace isolith
