// The Gerber RS-274-X file of one layer: its apertures, tracks, pads and card contours.
#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "output/export/BoardExport.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

constexpr double kInchPerMm = 0.03937007874015748;
constexpr std::size_t kMaxApertures = 200;
// From this length on the aperture list is compacted.
constexpr std::size_t kCompactFrom = 100;

struct Aperture {
  int shape = 0;
  float sizeX = 0, sizeY = 0, hole = 0;
};

// The apertures of the layer and which entry each track code and pad code uses.
struct ApertureList {
  std::vector<Aperture> entries;
  std::array<int, kApertures> trackEntry{};
  std::array<int, kApertures> padEntry{};
  std::array<bool, kApertures> trackUsed{};
  std::array<bool, kApertures> padUsed{};
};

void Add(ApertureList& list, std::array<int, kApertures>& users, int code, const Aperture& a) {
  if (list.entries.size() >= kMaxApertures) return;
  users[code] = static_cast<int>(list.entries.size());
  list.entries.push_back(a);
}

// Merges equal entries of a long list: same shape and sizes, and equal holes or a zero hole on
// either. The later entry goes and its users move to the earlier. A zero hole of the kept entry
// stays zero even when the removed one had a hole: the refill reads the kept entry itself.
void Compact(ApertureList& list) {
  auto& e = list.entries;
  const auto moveUsers = [&list](int removed, int kept) {
    for (auto* users : {&list.trackEntry, &list.padEntry})
      for (int& u : *users) {
        if (u == removed)
          u = kept;
        else if (u > removed)
          --u;
      }
  };
  for (std::size_t i = 0; i < e.size(); ++i) {
    for (std::size_t j = i + 1; j < e.size();) {
      const bool same = e[i].shape == e[j].shape && e[i].sizeX == e[j].sizeX &&
                        e[i].sizeY == e[j].sizeY &&
                        (e[i].hole == e[j].hole || e[i].hole == 0 || e[j].hole == 0);
      if (!same) {
        ++j;
        continue;
      }
      e.erase(e.begin() + static_cast<std::ptrdiff_t>(j));
      moveUsers(static_cast<int>(j), static_cast<int>(i));
    }
  }
}

ApertureList Apertures(const Board& board, int layer, const TPad* pads, const TTrack* tracks) {
  ApertureList list;
  for (const TTrack* t = tracks; t; t = t->next)
    if (t->code < kApertures) list.trackUsed[t->code] = true;
  for (const TPad* p = pads; p; p = p->next)
    if (p->code < kApertures) list.padUsed[p->code] = true;
  for (int code = 0; code < kApertures; ++code)
    if (list.trackUsed[code]) {
      const float width = board.TrackWidth[layer][code];
      Add(list, list.trackEntry, code, {kShapeCircle, width, width, 0});
    }
  for (int shape = kShapeCircle; shape <= kShapeOctagon; ++shape)
    for (int code = 0; code < kApertures; ++code)
      if (list.padUsed[code] && board.PadShape[layer][code] == shape)
        Add(list, list.padEntry, code,
            {shape, board.PadSizeX[layer][code], board.PadSizeY[layer][code],
             board.DrillDiameter[code]});
  if (list.entries.size() >= kCompactFrom) Compact(list);
  return list;
}

std::string Inch(float mm) {
  return Fixed(mm * kInchPerMm, 4);
}

// "%09.3f" of the thousandths of an inch: zero-padded to nine places, the sign inside the width.
std::string Thousandths(float mm) {
  std::string text = Fixed(mm * kInchPerMm * 1000, 3);
  const bool negative = text[0] == '-';
  if (text.size() < 9) text.insert(negative ? 1 : 0, 9 - text.size(), '0');
  return text;
}

std::string Point(float x, float y, const char* d) {
  return "X" + Thousandths(x) + "Y" + Thousandths(y) + d + "*\n";
}

std::string Select(int entry) {
  return "G54D" + std::to_string(DCodeOf(entry)) + "*\n";
}

}  // namespace

int DCodeOf(int index) {
  index %= 24;
  if (index <= 9) return index + 10;
  if (index <= 11) return index + 60;
  if (index <= 21) return index + 8;
  return index + 50;
}

std::string GerberText(const Board& board, int layer) {
  const bool circuit = IsCircuitLayer(layer);
  const TPad* pads = circuit ? board.Pads[layer] : nullptr;
  const TTrack* tracks = circuit ? board.Tracks[layer] : nullptr;
  const ApertureList list = Apertures(board, circuit ? layer : 0, pads, tracks);

  std::string text = "G04*\n%FSLAX53Y53*%\n%MOIN*%\n";
  static constexpr char kShapeLetters[] = {'C', 'R', 'O', 'P'};
  for (std::size_t i = 0; i < list.entries.size(); ++i) {
    const Aperture& a = list.entries[i];
    if (a.sizeX == 0) continue;
    text += "%ADD" + std::to_string(DCodeOf(static_cast<int>(i))) + kShapeLetters[a.shape & 3] +
            "," + Inch(a.sizeX);
    if (a.shape == kShapeRectangle || a.shape == kShapeObround) text += "X" + Inch(a.sizeY);
    // Without a hole the line is left open, without its closing "*%"; our reader takes it so.
    if (a.hole != 0) text += "X" + Inch(a.hole) + "*%";
    text += "\n";
  }
  text += "G04*\nG70*\nG90*\nG01*\n";

  for (int code = 0; code < kApertures; ++code) {
    if (!list.trackUsed[code]) continue;
    text += Select(list.trackEntry[code]);
    float lastX = 0, lastY = 0;
    for (const TTrack* t = tracks; t; t = t->next) {
      if (t->code != code) continue;
      if (t->x1 != lastX || t->y1 != lastY) text += Point(t->x1, t->y1, "D02");
      text += Point(t->x2, t->y2, "D01");
      lastX = t->x2, lastY = t->y2;
    }
  }
  for (int code = 0; code < kApertures; ++code) {
    if (!list.padUsed[code]) continue;
    text += Select(list.padEntry[code]);
    for (const TPad* p = pads; p; p = p->next)
      if (p->code == code) text += Point(p->x, p->y, "D03");
  }

  if (layer != kDrillLayer && board.Cutouts) {
    int smallest = -1, firstUsed = -1;
    for (int code = 0; code < kApertures; ++code) {
      if (!list.trackUsed[code]) continue;
      if (firstUsed < 0) firstUsed = code;
      const float width = board.TrackWidth[circuit ? layer : 0][code];
      if (width > 0 && (smallest < 0 || width < board.TrackWidth[circuit ? layer : 0][smallest]))
        smallest = code;
    }
    // The outlines are drawn with the aperture of track code 0 when a width was found, else with
    // that of the code after the first used one: not the code the search found.
    text += Select(list.trackEntry[smallest >= 0 ? 0 : std::min(firstUsed + 1, kApertures - 1)]);
    for (const TCutout* c = board.Cutouts; c; c = c->next)
      for (const TPolygon* poly = c->outline; poly; poly = poly->next)
        for (const TXY* v = poly->first; v; v = v->next)
          text += Point(v->x, v->y, v == poly->first ? "D02" : "D01");
  }
  text += "M02*\n";
  return text;
}

}  // namespace isolith
