// The Excellon drill file of the pads of the active layer.
#include <array>
#include <cmath>
#include <cstdio>

#include "output/export/BoardExport.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

constexpr double kInchPerMm = 0.03937007874015748;
constexpr double kInchPerCm = 0.39370078740157477;

// A coordinate in ten-thousandths of an inch, six characters with leading zeros; a longer number
// is written in full, and a negative one has its first character replaced by the sign (so
// -25.4 mm reads "-10000": the leading zero gives way).
std::string Coordinate(float mm) {
  std::string digits = Fixed(std::fabs(static_cast<double>(mm)) * kInchPerCm * 1000, 0);
  if (digits.size() < 6) digits.insert(0, 6 - digits.size(), '0');
  if (mm < 0) digits[0] = '-';
  return digits;
}

}  // namespace

std::string ExcellonText(const Board& board) {
  const int layer = board.ActiveLayer;
  const TPad* pads = IsCircuitLayer(layer) ? board.Pads[layer] : nullptr;
  std::array<bool, kApertures> used{};
  for (const TPad* p = pads; p; p = p->next)
    if (p->code < kApertures) used[p->code] = true;

  std::string text = "M48\nM90\nM72,LZ\nINCH\n";
  char line[64];
  for (int code = 0; code < kApertures; ++code) {
    if (!used[code] || board.DrillDiameter[code] == 0) continue;
    std::snprintf(line, sizeof line, "T%02d", code + 1);
    text += line;
    text += "C" + Fixed(board.DrillDiameter[code] * kInchPerMm, 3) + "\n";
  }
  text += "%\n";
  for (int code = 0; code < kApertures; ++code) {
    if (!used[code]) continue;
    std::snprintf(line, sizeof line, "T%02d\n", code + 1);
    text += line;
    for (const TPad* p = pads; p; p = p->next)
      if (p->code == code) text += "X" + Coordinate(p->x) + "Y" + Coordinate(p->y) + "\n";
  }
  // The tail stands on one line.
  text += "T00M30\n";
  return text;
}

}  // namespace isolith
