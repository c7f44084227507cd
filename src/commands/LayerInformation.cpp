#include "commands/LayerInformation.h"

#include <array>
#include <cstdio>

namespace isolith {

namespace {

constexpr double kInchPerMm = 1 / 25.4;

template <typename... Args>
void Append(std::string& out, const char* format, Args... args) {
  char line[256];
  const int n = std::snprintf(line, sizeof line, format, args...);
  if (n > 0) out.append(line, static_cast<size_t>(std::min<int>(n, sizeof line - 1)));
}

const char* ShapeWord(uint8_t shape) {
  switch (shape) {
    case kShapeRectangle:
      return "Rectangle";
    case kShapeObround:
      return "Obround";
    case kShapeOctagon:
      return "Octagon";
    default:
      return "Circle";
  }
}

void AppendApertureStart(std::string& out, int code) {
  Append(out, "-  %s %02d   ---->   ", "Aperture", code);
}

// A heading is written just before the first line it stands above.
void AppendHeading(std::string& out, bool& written, const char* format, const char* word) {
  if (written) return;
  Append(out, format, HeadingText(word).c_str());
  written = true;
}

}  // namespace

std::string HeadingText(std::string_view text) {
  // Accented letters of Latin-1, as UTF-8 pairs 0xC3 xx, fold to their plain capital.
  static constexpr char kFold[64 + 1] =
      "AAAAAAACEEEEIIIIDNOOOOOXOUUUUYTSAAAAAAACEEEEIIIIDNOOOOO/OUUUUYTY";
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == 0xC3 && i + 1 < text.size()) {
      const unsigned char d = static_cast<unsigned char>(text[i + 1]);
      if (d >= 0x80 && d <= 0xBF) {
        out += kFold[d - 0x80];
        ++i;
        continue;
      }
    }
    out += (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : static_cast<char>(c);
  }
  return out;
}

std::string InformationTitle(const Board& b) {
  std::string title;
  Append(title, "%s %d", "Layer", b.ActiveLayer);
  return title;
}

std::string InformationText(const Board& b) {
  std::string out;
  const int layer = b.ActiveLayer;
  if (IsCircuitLayer(layer)) {
    std::array<bool, kApertures> used{};
    for (const TPad* p = b.Pads[layer]; p != nullptr; p = p->next)
      if (p->code < kApertures) used[p->code] = true;
    bool heading = false;
    for (int code = 0; code < kApertures; ++code) {
      if (!used[code]) continue;
      AppendHeading(out, heading, "%s :\n", "Pads");
      AppendApertureStart(out, code);
      const uint8_t shape = b.PadShape[layer][code];
      Append(out, "%s   ", ShapeWord(shape));
      const float x = b.PadSizeX[layer][code];
      const float y = b.PadSizeY[layer][code];
      if (shape == kShapeCircle || shape == kShapeOctagon)
        Append(out, "Ø %.3f '' (%.3f mm)", x * kInchPerMm, static_cast<double>(x));
      else
        Append(out, "%.3f × %.3f '' (%.3f × %.3f mm)", x * kInchPerMm, y * kInchPerMm,
               static_cast<double>(x), static_cast<double>(y));
      out += "    \n";
    }

    used = {};
    for (const TTrack* t = b.Tracks[layer]; t != nullptr; t = t->next)
      if (t->code < kApertures) used[t->code] = true;
    heading = false;
    for (int code = 0; code < kApertures; ++code) {
      if (!used[code]) continue;
      AppendHeading(out, heading, "\n%s :\n", "Tracks");
      AppendApertureStart(out, code);
      const float w = b.TrackWidth[layer][code];
      Append(out, "%.3f '' (%.3f mm)", w * kInchPerMm, static_cast<double>(w));
      out += "    \n";
    }
  }

  std::array<bool, kApertures> used{};
  for (const TDrill* d = b.Drills; d != nullptr; d = d->next)
    if (d->code < kApertures) used[d->code] = true;
  bool heading = false;
  for (int code = 0; code < kApertures; ++code) {
    if (!used[code]) continue;
    AppendHeading(out, heading, "\n%s :\n", "Drills");
    AppendApertureStart(out, code);
    const float d = b.DrillDiameter[code];
    Append(out, "Ø %.3f '' (%.3f mm)", d * kInchPerMm, static_cast<double>(d));
    out += "    \n";
  }
  return out;
}

void ShowInformation(Application& app) {
  ResetHover(app);
  app.platform.ShowMessage(InformationTitle(app.board), InformationText(app.board),
                           MessageIcon::Information);
  RequestRepaint(app);
}

}  // namespace isolith
