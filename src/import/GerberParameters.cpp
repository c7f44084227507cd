#include "import/GerberParameters.h"

#include <cmath>
#include <string_view>

#include "import/GerberApertures.h"
#include "import/GerberNumbers.h"

namespace isolith {

namespace {

bool At(const GerberReader& r, std::string_view word) {
  return r.pos >= 0 && r.pos + static_cast<int>(word.size()) <= r.len &&
         std::string_view(r.line + r.pos, word.size()) == word;
}

// "%FS": zero mode, coordinate mode and the decimals of each axis. Only the second digit after
// "X" or "Y" counts; "L" and the integer digits are not used. Osmond files state digits that do
// not match their coordinates, so they are ignored for that dialect.
void FormatStatement(GerberReader& r, GerberPen& pen) {
  r.pos += 2;
  while (r.pos < r.len) {
    const char c = r.line[r.pos];
    r.pos += 1;
    switch (c) {
      case 'A':
        pen.incremental = false;
        break;
      case 'I':
        pen.incremental = true;
        break;
      case 'T':
        r.trailing = true;
        break;
      case 'X':
      case 'Y': {
        if (r.pos + 1 >= r.len || r.format == kOsmondFormat) break;
        const char d = r.line[r.pos + 1];
        if (d < '0' || d > '9') break;
        const float frac = static_cast<float>(std::pow(0.1, d - '0'));
        (c == 'X' ? r.xFrac : r.yFrac) = frac;
        UpdateScales(r);
        break;
      }
      default:
        break;
    }
  }
}

}  // namespace

void ReadParameter(GerberReader& r, GerberPen& pen, Board& b, int layer) {
  r.pos += 1;
  if (At(r, "FS")) FormatStatement(r, pen);
  if (At(r, "MOIN")) {
    r.unit = 25.4f;
    UpdateScales(r);
    r.pos += 4;
  }
  if (At(r, "MOMM")) {
    r.unit = 1;
    UpdateScales(r);
    r.pos += 4;
  }
  if (At(r, "AM")) OpenMacro(r);
  if (At(r, "ADD")) DefineAperture(r, b, layer);
  r.pos = r.len;
}

}  // namespace isolith
