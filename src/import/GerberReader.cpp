#include "import/GerberReader.h"

#include <algorithm>
#include <cmath>

#include "import/GerberApertures.h"
#include "import/GerberBlocks.h"
#include "import/GerberNumbers.h"
#include "import/GerberParameters.h"
#include "import/TextNumbers.h"

namespace isolith {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A stored "no position" or "not given" value; like every sentinel of the model it is matched
// within 0.1.
bool IsNoPosition(float v) {
  return std::fabs(double(v) - kNoPosition) < 0.1;
}

void SelectOrMode(GerberReader& r, GerberPen& pen) {
  ReadNumber(r, NumberAxis::None);
  if (r.pos < 0 || r.pos >= r.len || !IsDigit(r.line[r.pos])) return;
  if (r.intValue >= 1 && r.intValue <= 3) {
    pen.D = r.intValue;
    return;
  }
  const int mapped = MapAperture(r.intValue);
  if (mapped < 0) return;
  // The selection passes through the 8-bit register before it is brought into the table:
  // numbers of 256 and above wrap first.
  r.aperture = static_cast<uint8_t>(mapped);
  r.aperture = static_cast<uint8_t>(r.aperture % kApertures);
}

void GCode(GerberReader& r, GerberPen& pen, Board& b, int layer) {
  ReadNumber(r, NumberAxis::None);
  switch (r.intValue) {
    case 0:
    case 54:
      pen.D = 2;
      break;
    case 2:
    case 3:
      pen.G = r.intValue;
      break;
    case 70:
      r.unit = 25.4f;
      UpdateScales(r);
      break;
    case 71:
      r.unit = 1;
      UpdateScales(r);
      break;
    case 4:
      // The comment's text is scanned as codes afterwards: some layout programs put their real
      // codes there.
      pen.D = 2;
      ReadListingComment(r, b, layer);
      break;
    default:
      break;  // G01, G36, G37, G74, G75, G90, G91 and the rest change nothing
  }
}

}  // namespace

void ScanBlock(GerberReader& r, GerberPen& pen, Board& b, int layer) {
  for (; r.pos < r.len; r.pos += 1) {
    switch (r.line[r.pos]) {
      case 'I':
        ReadNumber(r, NumberAxis::X);
        pen.I = r.value;
        break;
      case 'J':
        ReadNumber(r, NumberAxis::Y);
        pen.J = r.value;
        break;
      case 'X':
        ReadNumber(r, NumberAxis::X);
        pen.X = pen.incremental ? StoredValue(double(pen.X) + r.value) : r.value;
        break;
      case 'Y':
        ReadNumber(r, NumberAxis::Y);
        pen.Y = pen.incremental ? StoredValue(double(pen.Y) + r.value) : r.value;
        break;
      case 'D':
        SelectOrMode(r, pen);
        break;
      case 'G':
        GCode(r, pen, b, layer);
        break;
      case '%':
        ReadParameter(r, pen, b, layer);
        break;
      default:
        break;  // M codes, N numbers and the rest
    }
  }
}

void DrawStep(GerberPen& pen, uint8_t aperture, Board& b, int layer, TPad*& padTail,
              TTrack*& trackTail, TDrill*& drillTail) {
  if (pen.D == 1) {
    const bool still = pen.PX == pen.X && pen.PY == pen.Y;
    const bool noPrevious = IsNoPosition(pen.PX) && IsNoPosition(pen.PY);
    const bool arc = (pen.G == 2 || pen.G == 3) && !IsNoPosition(pen.I) && !IsNoPosition(pen.J);
    if (!still && !noPrevious && !arc) {
      TTrack* t = new TTrack;
      t->code = aperture;
      t->x1 = pen.PX;
      t->y1 = pen.PY;
      t->x2 = pen.X;
      t->y2 = pen.Y;
      AppendTo(b.ImportTracks, trackTail, t);
    }
  } else if (pen.D == 3) {
    TPad* p = new TPad;
    p->code = aperture;
    p->x = pen.X;
    p->y = pen.Y;
    AppendTo(b.ImportPads, padTail, p);
    if (layer == 0 && b.DrillDiameter[aperture] != 0) {
      TDrill* d = new TDrill;
      d->code = aperture;
      d->x = pen.X;
      d->y = pen.Y;
      AppendTo(b.ImportDrills, drillTail, d);
    }
    pen.D = 2;
  }
  pen.PX = pen.X;
  pen.PY = pen.Y;
}

void ReadGerber(GerberReader& r, std::istream& file, const TImportFormat& format, int layer,
                Board& b) {
  std::fill(std::begin(b.ApertureFlags), std::end(b.ApertureFlags), uint8_t{0});
  if (layer < 0 || layer >= kCircuitLayers) return;
  r.format = format.id;
  r.ScaleIn = format.ScaleIn;
  r.AperScaleIn = format.AperScaleIn;
  r.DrillScaleIn = format.DrillScaleIn;
  UpdateScales(r);
  std::streambuf* bytes = file.rdbuf();
  if (!bytes) return;
  GerberPen pen;
  TPad* padTail = LastOf(b.ImportPads);
  TTrack* trackTail = LastOf(b.ImportTracks);
  TDrill* drillTail = LastOf(b.ImportDrills);
  while (!r.atEnd && !b.StopImport) {
    ReadBlock(r, *bytes);
    r.pos = 0;
    pen.G = 0;
    pen.I = pen.J = kNoPosition;
    if (r.len == 0) continue;
    if (r.macroOpen >= 0)
      ReadMacroBody(r);
    else
      ScanBlock(r, pen, b, layer);
    DrawStep(pen, r.aperture, b, layer, padTail, trackTail, drillTail);
  }
}

void ReadGerber(std::istream& file, const TImportFormat& format, int layer, Board& board) {
  GerberReader reader;
  ReadGerber(reader, file, format, layer, board);
}

}  // namespace isolith
