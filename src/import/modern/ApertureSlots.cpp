#include "import/modern/ApertureSlots.h"

#include <cmath>

namespace isolith {

namespace {

constexpr double kSame = 1e-4;  // mm: sizes this close are one size

bool Same(double a, double b) {
  return std::fabs(a - b) < kSame;
}

}  // namespace

ApertureSlots::ApertureSlots(Board& board, int layer) : board_(board), layer_(layer) {
  const int first = layer == 0 ? 0 : layer, last = layer == 0 ? kCircuitLayers - 1 : layer;
  for (int l = first; l <= last; ++l)
    for (int i = 0; i < kApertures; ++i) {
      board_.PadShape[l][i] = 0;
      board_.PadSizeX[l][i] = board_.PadSizeY[l][i] = 0;
    }
  if (layer == 0)
    for (float& d : board_.DrillDiameter) d = 0;
}

uint8_t ApertureSlots::Write(size_t index) {
  const Slot& s = slots_[index];
  const size_t code = index;
  if (s.pad) {
    board_.PadShape[layer_][code] = s.shape;
    board_.PadSizeX[layer_][code] = float(s.sizeX);
    board_.PadSizeY[layer_][code] = float(s.sizeY);
    if (layer_ == 0) board_.DrillDiameter[code] = float(s.hole);
  }
  if (s.track) board_.TrackWidth[layer_][code] = float(s.width);
  board_.ApertureFlags[code] = uint8_t(3 | (s.hole > 0 ? 4 : 0));
  return uint8_t(code);
}

uint8_t ApertureSlots::Add(const Slot& slot, const std::function<double(const Slot&)>& gap) {
  if (slots_.size() >= size_t(kApertures)) {
    size_t nearest = 0;
    for (size_t i = 1; i < slots_.size(); ++i)
      if (gap(slots_[i]) < gap(slots_[nearest])) nearest = i;
    return uint8_t(nearest);
  }
  slots_.push_back(slot);
  return Write(slots_.size() - 1);
}

uint8_t ApertureSlots::Pad(uint8_t shape, double sizeX, double sizeY, double hole) {
  const bool round = shape == kShapeCircle && Same(sizeX, sizeY) && hole == 0;
  for (size_t i = 0; i < slots_.size(); ++i) {
    Slot& s = slots_[i];
    if (s.pad && s.shape == shape && Same(s.sizeX, sizeX) && Same(s.sizeY, sizeY) &&
        Same(s.hole, hole))
      return uint8_t(i);
    if (!s.pad && round && Same(s.width, sizeX)) {
      s.pad = true;
      s.shape = shape;
      s.sizeX = s.sizeY = sizeX;
      return Write(i);
    }
  }
  Slot s;
  s.pad = true;
  s.shape = shape;
  s.sizeX = sizeX;
  s.sizeY = sizeY;
  s.hole = hole;
  s.track = round;
  s.width = round ? sizeX : 0;
  return Add(s, [&](const Slot& o) {
    return std::fabs(o.sizeX - sizeX) + std::fabs(o.sizeY - sizeY) + (o.shape == shape ? 0 : 1) +
           (o.pad ? 0 : 100);
  });
}

uint8_t ApertureSlots::Track(double width) {
  for (size_t i = 0; i < slots_.size(); ++i) {
    Slot& s = slots_[i];
    if (s.track && Same(s.width, width)) return uint8_t(i);
  }
  Slot s;
  s.track = true;
  s.width = width;
  return Add(s, [&](const Slot& o) { return std::fabs(o.width - width) + (o.track ? 0 : 100); });
}

}  // namespace isolith
