#include "edit/SingleItemForms.h"

#include <algorithm>
#include <cmath>

#include "core/board/BoardOps.h"
#include "edit/ApertureFields.h"

namespace isolith {

namespace {

// The first code that no record of the list uses, remembered in `freeCode` once found; 99
// when every code is taken.
template <typename R>
int FreeCodeOf(const R* head, int& freeCode) {
  if (freeCode >= 0) return freeCode;
  std::array<bool, kApertures> used{};
  for (; head; head = head->next) used[head->code] = true;
  for (int code = 0; code < kApertures; ++code)
    if (!used[code]) return freeCode = code;
  return kApertures - 1;
}

bool Within(double a, double b, double tolerance) {
  return std::fabs(a - b) <= tolerance;
}

}  // namespace

// ---- Unique pad ----------------------------------------------------------------------------

TDialogChgOnePad::TDialogChgOnePad(Board& board, TPad& pad, char separator)
    : board_(board),
      pad_(pad),
      layer_(board.ActiveLayer),
      separator_(separator),
      padCode_(pad.code) {
  std::copy_n(board.PadShape[layer_], kApertures, shapes_.begin());
  std::copy_n(board.PadSizeX[layer_], kApertures, sizesX_.begin());
  std::copy_n(board.PadSizeY[layer_], kApertures, sizesY_.begin());
  std::copy_n(board.DrillDiameter, kApertures, diameters_.begin());
  board.HoverDrill = nullptr;
  for (TDrill* d = board.Drills; d && !board.HoverDrill; d = d->next)
    if (SamePoint(d->x, d->y, pad.x, pad.y)) board.HoverDrill = d;
  drill_ = board.HoverDrill;
  if (drill_) drillCode_ = drill_->code;
  const int c = pad.code;
  shape = board.PadShape[layer_][c];
  x_ = board.PadSizeX[layer_][c];
  y_ = ShapeHasOneSize(shape) || board.PadSizeY[layer_][c] == 0 ? x_ : board.PadSizeY[layer_][c];
  sizeX = SizeText(x_, separator);
  sizeY = SizeText(y_, separator);
  const float d = drill_ ? board.DrillDiameter[drill_->code] : 0;
  drill = d == 0 ? std::string() : SizeText(d, separator);
}

bool TDialogChgOnePad::SizeYEnabled() const {
  return !ShapeHasOneSize(shape);
}

// The pad moves to an aperture of its new shape and sizes: an existing one within 0.05 in index
// order, else the run's free code (or 99), overwritten.
void TDialogChgOnePad::LookUpPadCode() {
  Board& b = board_;
  const float y = ShapeHasOneSize(shape) ? x_ : y_;
  int found = -1;
  for (int code = 0; code < kApertures && found < 0; ++code)
    if (b.PadShape[layer_][code] == shape && Within(b.PadSizeX[layer_][code], x_, kMatch) &&
        Within(b.PadSizeY[layer_][code], y, kMatch))
      found = code;
  if (found < 0) {
    found = FreeCodeOf(b.Pads[layer_], freeCode);
    b.PadShape[layer_][found] = static_cast<uint8_t>(shape);
    b.PadSizeX[layer_][found] = x_;
    b.PadSizeY[layer_][found] = y;
  }
  pad_.code = static_cast<uint8_t>(found);
  board_.HighlightPadCode = found;  // the pads that now share the code show with it
}

void TDialogChgOnePad::ShapeChosen(int newShape) {
  if (newShape < 0 || newShape >= static_cast<int>(kShapeNames.size())) return;
  shape = newShape;
  LookUpPadCode();
}

void TDialogChgOnePad::SizeXEdited(const std::string& text) {
  sizeX = text;
  float value = 0;
  if (!ReadTypedNumber(text, separator_, value) || value == 0) return;
  x_ = value;
  LookUpPadCode();
}

void TDialogChgOnePad::SizeYEdited(const std::string& text) {
  sizeY = text;
  float value = 0;
  if (!ReadTypedNumber(text, separator_, value) || value == 0) return;
  y_ = value;
  LookUpPadCode();
}

void TDialogChgOnePad::DrillEdited(const std::string& text) {
  drill = text;
  float value = 0;
  if (!ReadTypedNumber(text, separator_, value)) return;
  Board& b = board_;
  // No hole wanted and none there: nothing to do.
  if (!drill_ && value < 0.01f) return;
  int found = -1;
  for (int code = 0; code < kApertures && found < 0; ++code)
    if (Within(b.DrillDiameter[code], value, kMatch)) found = code;
  if (found < 0) {
    if (freeDrillCode < 0) {
      for (int code = 0; code < kApertures && freeDrillCode < 0; ++code)
        if (b.DrillDiameter[code] < 0.01f) freeDrillCode = code;
    }
    found = freeDrillCode >= 0 ? freeDrillCode : kApertures - 1;
    b.DrillDiameter[found] = value;
  }
  if (!drill_) {
    drill_ = new TDrill{0, 0, pad_.x, pad_.y, nullptr};
    TDrill* tail = nullptr;
    AppendTo(b.Drills, tail, drill_);
    drillAdded_ = true;
    b.HoverDrill = drill_;
  }
  drill_->code = static_cast<uint8_t>(found);
}

bool TDialogChgOnePad::Accept(Platform&) {
  return true;
}

void TDialogChgOnePad::Cancel() {
  Board& b = board_;
  std::copy(shapes_.begin(), shapes_.end(), b.PadShape[layer_]);
  std::copy(sizesX_.begin(), sizesX_.end(), b.PadSizeX[layer_]);
  std::copy(sizesY_.begin(), sizesY_.end(), b.PadSizeY[layer_]);
  std::copy(diameters_.begin(), diameters_.end(), b.DrillDiameter);
  pad_.code = padCode_;
  if (drillAdded_) {
    RemoveDrill(b, drill_);
  } else if (drill_) {
    drill_->code = drillCode_;
  }
  drill_ = nullptr;
  drillAdded_ = false;
}

// ---- Unique track --------------------------------------------------------------------------

TDialogChgOneTrack::TDialogChgOneTrack(Board& board, TTrack& track, char separator)
    : board_(board),
      track_(track),
      layer_(board.ActiveLayer),
      separator_(separator),
      code_(track.code) {
  std::copy_n(board.TrackWidth[layer_], kApertures, widths_.begin());
  width = SizeText(board.TrackWidth[layer_][track.code], separator);
}

void TDialogChgOneTrack::WidthEdited(const std::string& text) {
  width = text;
  float value = 0;
  if (!ReadTypedNumber(text, separator_, value) || value == 0) return;
  Board& b = board_;
  int found = -1;
  for (int code = 0; code < kApertures && found < 0; ++code)
    if (Within(b.TrackWidth[layer_][code], value, kMatch)) found = code;
  if (found < 0) {
    found = FreeCodeOf(b.Tracks[layer_], freeCode);
    b.TrackWidth[layer_][found] = value;
  }
  track_.code = static_cast<uint8_t>(found);
}

bool TDialogChgOneTrack::Accept(Platform&) {
  return true;
}

void TDialogChgOneTrack::Cancel() {
  std::copy(widths_.begin(), widths_.end(), board_.TrackWidth[layer_]);
  track_.code = code_;
}

}  // namespace isolith
