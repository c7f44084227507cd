#include "import/GerberApertures.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

#include "import/GerberNumbers.h"
#include "import/TextNumbers.h"

namespace isolith {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Whether the block holds `word` at index `at`.
bool WordAt(const GerberReader& r, int at, std::string_view word) {
  return at >= 0 && at + static_cast<int>(word.size()) <= r.len &&
         std::string_view(r.line + at, word.size()) == word;
}

// The number that starts at index `at`; returns the index after it.
int NumberAt(GerberReader& r, int at, NumberAxis axis = NumberAxis::None) {
  r.pos = at - 1;
  ReadNumber(r, axis);
  return r.pos + 1;
}

// Steps over an optional ":" after a listing keyword.
int PassColon(const GerberReader& r, int at) {
  return at < r.len && r.line[at] == ':' ? at + 1 : at;
}

// The next number of a macro primitive: one separator is passed, then the number is read.
float NextMacroNumber(GerberReader& r) {
  r.pos += 1;
  ReadNumber(r, NumberAxis::None);
  return r.value;
}

void SetFlag(Board& b, int a, uint8_t bits) {
  b.ApertureFlags[a] = static_cast<uint8_t>(b.ApertureFlags[a] | bits);
}

// A standard aperture: letter, ",", size, then "X" numbers. reader.pos is on the letter.
void StandardAperture(GerberReader& r, Board& b, int layer, int a) {
  SetFlag(b, a, kApertureShapeGiven);
  uint8_t shape = kShapeCircle;
  switch (r.line[r.pos]) {
    case 'O':
      shape = kShapeObround;
      break;
    case 'P':
      shape = kShapeOctagon;
      break;
    case 'R':
      shape = kShapeRectangle;
      break;
    default:
      break;
  }
  b.PadShape[layer][a] = shape;
  int xCount = 0;
  for (r.pos += 1; r.pos < r.len; r.pos += 1) {
    const char c = r.line[r.pos];
    if (c == ',') {
      // Later commas are decimal commas.
      for (int k = r.pos + 1; k < r.len; ++k)
        if (r.line[k] == ',') r.line[k] = '.';
      ReadNumber(r, NumberAxis::None);
      const float size = StoredValue(double(r.value) * r.unit);
      if (size > 0) {
        SetFlag(b, a, kApertureSizeGiven);
        b.PadSizeX[layer][a] = StoredValue(double(size) * r.AperScaleIn);
        b.PadSizeY[layer][a] = StoredValue(double(size) * r.AperScaleIn);
        b.TrackWidth[layer][a] = StoredValue(double(size) * r.AperScaleIn);
        if (layer == 0 && size < b.DrillDiameter[a])
          b.DrillDiameter[a] = StoredValue(double(size) * r.DrillScaleIn);
      }
    } else if (c == 'X') {
      ReadNumber(r, NumberAxis::None);
      const float size = StoredValue(double(r.value) * r.unit);
      if (size <= 0) continue;
      ++xCount;
      const bool round = shape == kShapeCircle || shape == kShapeOctagon;
      if (xCount == 1 && round) {
        // The hole; a polygon's side count stands here and is taken as one.
        if (layer == 0) {
          b.DrillDiameter[a] = StoredValue(double(size) * r.DrillScaleIn);
          SetFlag(b, a, kApertureHoleGiven);
        }
      } else if (xCount == 1) {
        b.PadSizeY[layer][a] = StoredValue(double(size) * r.AperScaleIn);
      } else if (xCount == 2 && !round && layer == 0) {
        b.DrillDiameter[a] = StoredValue(double(size) * r.DrillScaleIn);
        SetFlag(b, a, kApertureHoleGiven);
      }
    }
  }
}

// An aperture named after a macro. reader.pos is on the first character of the name.
void MacroAperture(GerberReader& r, Board& b, int layer, int a) {
  const std::string_view rest(r.line + r.pos, r.len - r.pos);
  const GerberMacro* macro = nullptr;
  for (const GerberMacro& m : r.macros)
    if (!m.name.empty() && rest.starts_with(m.name)) {
      macro = &m;
      break;
    }
  if (!macro) return;
  int at = r.pos + static_cast<int>(macro->name.size());
  if (macro->shape == kShapeCircle) {
    b.PadShape[layer][a] = kShapeCircle;
    SetFlag(b, a, kApertureShapeGiven | kApertureSizeGiven);
    if (at < r.len && r.line[at] == ',') {
      at = NumberAt(r, at + 1);
      b.PadSizeX[layer][a] = StoredValue(double(r.value) * r.unit);
      b.PadSizeY[layer][a] = StoredValue(double(r.value) * r.unit);
      if (at < r.len && r.line[at] == 'X') {
        at = NumberAt(r, at + 1);
        b.DrillDiameter[a] = StoredValue(double(r.value) * r.unit);
      }
    }
  } else {
    b.PadShape[layer][a] = macro->shape;
    SetFlag(b, a, kApertureShapeGiven);
    if (macro->width != 0) {
      b.PadSizeX[layer][a] = StoredValue(double(macro->width) * r.AperScaleIn);
      b.PadSizeY[layer][a] = StoredValue(double(macro->height) * r.AperScaleIn);
      SetFlag(b, a, kApertureSizeGiven);
    }
    if (at < r.len && r.line[at] == ',') {
      at = NumberAt(r, at + 1);
      b.PadSizeX[layer][a] = StoredValue(double(b.PadSizeX[layer][a]) * r.value);
      b.PadSizeY[layer][a] = StoredValue(double(b.PadSizeY[layer][a]) * r.value);
    }
  }
  r.pos = at - 1;
}

}  // namespace

void ClearTablesOnce(GerberReader& r, Board& b, int layer) {
  if (r.tablesCleared) return;
  r.tablesCleared = true;
  const int first = layer == 0 ? 0 : layer;
  const int last = layer == 0 ? kCircuitLayers - 1 : layer;
  for (int l = first; l <= last; ++l)
    for (int i = 0; i < kApertures; ++i) {
      b.PadShape[l][i] = 0;
      b.PadSizeX[l][i] = 0;
      b.PadSizeY[l][i] = 0;
    }
  if (layer == 0) std::fill(std::begin(b.DrillDiameter), std::end(b.DrillDiameter), 0.0f);
}

void DefineAperture(GerberReader& r, Board& b, int layer) {
  ClearTablesOnce(r, b, layer);
  r.pos += 2;  // on the second "D": the number follows it
  ReadNumber(r, NumberAxis::None);
  const int mapped = MapAperture(r.intValue);
  r.pos += 1;
  if (mapped < 0 || r.pos >= r.len) return;
  const int a = mapped % kApertures;
  if (r.pos + 1 < r.len && r.line[r.pos + 1] == ',')
    StandardAperture(r, b, layer, a);
  else
    MacroAperture(r, b, layer, a);
}

void OpenMacro(GerberReader& r) {
  int entry = kMacroEntries - 1;
  for (int i = 0; i < kMacroEntries; ++i)
    if (r.macros[i].name.empty()) {
      entry = i;
      break;
    }
  const int start = r.pos + 2;
  const int count = std::clamp(r.len - start, 0, kMacroNameChars);
  r.macros[entry].name.assign(r.line + start, count);
  r.macroOpen = entry;
}

void ReadMacroBody(GerberReader& r) {
  GerberMacro& m = r.macros[r.macroOpen];
  r.macroOpen = -1;
  if (r.len == 0 || !IsDigit(r.line[0])) return;
  r.pos = -1;
  ReadNumber(r, NumberAxis::None);
  const int code = r.intValue;
  const double scale = double(r.ScaleIn) * r.unit;
  m.shape = kShapeCircle;
  m.width = m.height = 0;
  switch (code) {
    case 0: {  // a comment: its second number, if any, is taken as the size
      NextMacroNumber(r);
      m.width = m.height = StoredValue(NextMacroNumber(r) * scale);
      break;
    }
    case 4: {  // outline: the farthest corner gives an octagon round it
      m.shape = kShapeOctagon;
      NextMacroNumber(r);
      NextMacroNumber(r);
      float maxX = 0, maxY = 0;
      while (r.pos + 1 < r.len) {
        const float x = NextMacroNumber(r);
        const float y = NextMacroNumber(r);
        if (y == 0) break;
        maxX = std::max(maxX, std::fabs(x));
        maxY = std::max(maxY, std::fabs(y));
      }
      const double reach = std::sqrt(double(maxX) * maxX + double(maxY) * maxY);
      m.width = m.height = StoredValue(reach * 1.414 * scale);
      break;
    }
    case 5: {  // polygon: its diameter
      m.shape = kShapeOctagon;
      for (int i = 0; i < 4; ++i) NextMacroNumber(r);
      m.width = m.height = StoredValue(NextMacroNumber(r) * scale);
      break;
    }
    case 6:
    case 7: {  // moire, thermal: the outer diameter
      NextMacroNumber(r);
      NextMacroNumber(r);
      m.width = m.height = StoredValue(NextMacroNumber(r) * scale);
      break;
    }
    case 21: {  // centre line: width and height
      m.shape = kShapeRectangle;
      NextMacroNumber(r);
      m.width = StoredValue(NextMacroNumber(r) * scale);
      m.height = StoredValue(NextMacroNumber(r) * scale);
      break;
    }
    default:  // circles and the rest: the AD line's own parameters give the size
      break;
  }
}

void ReadListingComment(GerberReader& r, Board& b, int layer) {
  int at = r.pos + 1;
  if (!WordAt(r, at, "DCODE")) return;
  ClearTablesOnce(r, b, layer);
  at = PassColon(r, at + 5);
  at = NumberAt(r, at);
  const int mapped = MapAperture(r.intValue);
  if (mapped >= 0 && at < r.len) {
    const int a = mapped % kApertures;
    if (WordAt(r, at, "SIZE")) {
      at = NumberAt(r, PassColon(r, at + 4));
      const float size = StoredValue(double(r.value) * r.unit);
      if (size > 0) {
        SetFlag(b, a, kApertureSizeGiven);
        b.PadSizeX[layer][a] = size;
        b.PadSizeY[layer][a] = size;
        b.TrackWidth[layer][a] = size;
        if (layer == 0 && size < b.DrillDiameter[a]) b.DrillDiameter[a] = size;
      }
    }
    if (WordAt(r, at, "SHAPE")) {
      at = PassColon(r, at + 5);
      struct Word {
        std::string_view text;
        uint8_t shape;
      };
      for (const Word w : {Word{"ROUND", kShapeCircle}, Word{"SQUARE", kShapeRectangle},
                           Word{"OCTAGON", kShapeOctagon}})
        if (WordAt(r, at, w.text)) {
          b.PadShape[layer][a] = w.shape;
          SetFlag(b, a, kApertureShapeGiven);
          at += static_cast<int>(w.text.size());
          break;
        }
    }
  }
  r.pos = at - 1;
}

}  // namespace isolith
