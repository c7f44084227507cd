#include "edit/ApertureForms.h"

#include <algorithm>
#include <cmath>

#include "core/board/BoardOps.h"
#include "edit/ApertureFields.h"
#include "edit/IdenticalItems.h"
#include "edit/RemoveWhere.h"

namespace isolith {

namespace {

// The codes the records of one list use, the selection on `start` (or the first record).
template <typename R>
UsedCodes CodesOf(const R* head, const R* start) {
  UsedCodes codes;
  for (const R* r = head; r; r = r->next) codes.used[r->code] = true;
  for (int code = 0; code < kApertures; ++code)
    if (codes.used[code]) codes.listed.push_back(code);
  if (head) codes.current = (start ? start : head)->code;
  return codes;
}

template <typename R>
bool InList(const R* head, const R* record) {
  for (; head; head = head->next)
    if (head == record) return true;
  return false;
}

// A typed size that is read, not zero and different from the stored one.
bool NewSize(const std::string& text, char separator, float stored, float& value) {
  return ReadTypedNumber(text, separator, value) && value != 0 && value != stored;
}

}  // namespace

int UsedCodes::Row() const {
  const auto it = std::find(listed.begin(), listed.end(), current);
  return it == listed.end() ? 0 : static_cast<int>(it - listed.begin());
}

void UsedCodes::Step(int delta) {
  if (listed.empty()) return;
  const int row = std::clamp(Row() + delta, 0, static_cast<int>(listed.size()) - 1);
  current = static_cast<uint8_t>(listed[row]);
}

std::string CodeNumberText(int code) {
  return std::to_string(code + 1);
}

// ---- Pad apertures -------------------------------------------------------------------------

TDialogChgPads::TDialogChgPads(Board& board, char separator)
    : board_(board), layer_(board.ActiveLayer), separator_(separator) {
  board.PendingCommand = 0;
  if (!IsCircuitLayer(layer_) || !board.Pads[layer_]) return;
  const TPad* start = InList(board.Pads[layer_], board.HoverPad) ? board.HoverPad : nullptr;
  codes = CodesOf(board.Pads[layer_], start);
  snapshot_ = std::make_unique<ApertureSnapshot>(board, layer_, ApertureSnapshot::kPads);
  ShowCurrent();
}

bool TDialogChgPads::SizeYEnabled() const {
  return !ShapeHasOneSize(shape);
}

void TDialogChgPads::ShowCurrent() {
  const int c = codes.current;
  board_.HighlightPadCode = c;  // the board behind the dialog shows the pads of the code
  if (board_.PadSizeY[layer_][c] == 0) board_.PadSizeY[layer_][c] = board_.PadSizeX[layer_][c];
  shape = board_.PadShape[layer_][c];
  sizeX = SizeText(board_.PadSizeX[layer_][c], separator_);
  sizeY = SizeText(board_.PadSizeY[layer_][c], separator_);
  const float d = board_.DrillDiameter[c];
  drill = d == 0 ? std::string() : SizeText(d, separator_);
}

void TDialogChgPads::ChooseCode(int code) {
  if (!IsOpen() || code < 0 || code >= kApertures || !codes.used[code]) return;
  codes.current = static_cast<uint8_t>(code);
  ShowCurrent();
}

void TDialogChgPads::Step(int delta) {
  if (!IsOpen()) return;
  codes.Step(delta);
  ShowCurrent();
}

// Through-hole pads stay alike on all sides: a pad of another circuit layer standing on a pad
// of the current code takes its shape and sizes, in its own layer's table.
void TDialogChgPads::MirrorCurrent() {
  Board& b = board_;
  const int c = codes.current;
  for (const TPad* p = b.Pads[layer_]; p; p = p->next) {
    if (p->code != c) continue;
    for (int other = 0; other < kCircuitLayers; ++other) {
      if (other == layer_) continue;
      for (const TPad* q = b.Pads[other]; q; q = q->next) {
        if (!SamePoint(p->x, p->y, q->x, q->y)) continue;
        b.PadShape[other][q->code] = b.PadShape[layer_][c];
        b.PadSizeX[other][q->code] = b.PadSizeX[layer_][c];
        b.PadSizeY[other][q->code] = b.PadSizeY[layer_][c];
      }
    }
  }
}

void TDialogChgPads::ShapeChosen(int newShape) {
  if (!IsOpen() || newShape < 0 || newShape >= static_cast<int>(kShapeNames.size())) return;
  shape = newShape;
  board_.PadShape[layer_][codes.current] = static_cast<uint8_t>(newShape);
  MirrorCurrent();
}

void TDialogChgPads::SizeXEdited(const std::string& text) {
  sizeX = text;
  float value = 0;
  if (!IsOpen() || !NewSize(text, separator_, board_.PadSizeX[layer_][codes.current], value))
    return;
  board_.PadSizeX[layer_][codes.current] = value;
  MirrorCurrent();
}

void TDialogChgPads::SizeYEdited(const std::string& text) {
  sizeY = text;
  float value = 0;
  if (!IsOpen() || !NewSize(text, separator_, board_.PadSizeY[layer_][codes.current], value))
    return;
  board_.PadSizeY[layer_][codes.current] = value;
  MirrorCurrent();
}

void TDialogChgPads::DrillEdited(const std::string& text) {
  drill = text;
  float value = 0;
  if (!IsOpen() || !ReadTypedNumber(text, separator_, value)) return;
  Board& b = board_;
  const int c = codes.current;
  if (value == b.DrillDiameter[c]) return;
  b.DrillDiameter[c] = value;
  // The drills of the layer's pads of this code take the code; a hole-free aperture gets no new
  // drills, and the drills it had keep their code with a diameter of 0.
  TDrill* tail = LastOf(b.Drills);
  for (const TPad* p = b.Pads[layer_]; p; p = p->next) {
    if (p->code != c) continue;
    TDrill* found = nullptr;
    for (TDrill* d = b.Drills; d && !found; d = d->next)
      if (SamePoint(d->x, d->y, p->x, p->y)) found = d;
    if (found) {
      found->code = p->code;
    } else if (value != 0) {
      AppendTo(b.Drills, tail, new TDrill{p->code, 0, p->x, p->y, nullptr});
    }
  }
}

void TDialogChgPads::ApplyShapeToAll() {
  if (!IsOpen()) return;
  for (int code : codes.listed)
    board_.PadShape[layer_][code] = board_.PadShape[layer_][codes.current];
}

void TDialogChgPads::ApplySizeToAll() {
  if (!IsOpen()) return;
  for (int code : codes.listed) {
    board_.PadSizeX[layer_][code] = board_.PadSizeX[layer_][codes.current];
    board_.PadSizeY[layer_][code] = board_.PadSizeY[layer_][codes.current];
  }
}

void TDialogChgPads::ApplyDrillToAll() {
  if (!IsOpen()) return;
  for (int code : codes.listed) board_.DrillDiameter[code] = board_.DrillDiameter[codes.current];
}

void TDialogChgPads::DeleteAllOfType() {
  if (!IsOpen()) return;
  const int code = codes.current;
  RemoveWhere(board_, board_.Pads[layer_], [code](const TPad& p) { return p.code == code; });
}

bool TDialogChgPads::Accept(Platform&) {
  snapshot_.reset();
  return true;
}

void TDialogChgPads::Cancel() {
  if (!snapshot_) return;
  snapshot_->Restore();
  snapshot_.reset();
}

// ---- Track apertures -----------------------------------------------------------------------

TDialogChgTracks::TDialogChgTracks(Board& board, char separator)
    : board_(board), layer_(board.ActiveLayer), separator_(separator) {
  board.PendingCommand = 0;
  if (!IsCircuitLayer(layer_) || !board.Tracks[layer_]) return;
  const TTrack* start = InList(board.Tracks[layer_], board.HoverTrack) ? board.HoverTrack : nullptr;
  codes = CodesOf(board.Tracks[layer_], start);
  snapshot_ = std::make_unique<ApertureSnapshot>(board, layer_, ApertureSnapshot::kTracks);
  ShowCurrent();
}

void TDialogChgTracks::ShowCurrent() {
  width = SizeText(board_.TrackWidth[layer_][codes.current], separator_);
}

void TDialogChgTracks::ChooseCode(int code) {
  if (!IsOpen() || code < 0 || code >= kApertures || !codes.used[code]) return;
  codes.current = static_cast<uint8_t>(code);
  ShowCurrent();
}

void TDialogChgTracks::Step(int delta) {
  if (!IsOpen()) return;
  codes.Step(delta);
  ShowCurrent();
}

void TDialogChgTracks::WidthEdited(const std::string& text) {
  width = text;
  float value = 0;
  if (!IsOpen() || !NewSize(text, separator_, board_.TrackWidth[layer_][codes.current], value))
    return;
  board_.TrackWidth[layer_][codes.current] = value;
}

void TDialogChgTracks::ApplyWidthToAll() {
  if (!IsOpen()) return;
  for (int code : codes.listed)
    board_.TrackWidth[layer_][code] = board_.TrackWidth[layer_][codes.current];
}

void TDialogChgTracks::DeleteAllOfType() {
  if (!IsOpen()) return;
  const int code = codes.current;
  RemoveWhere(board_, board_.Tracks[layer_], [code](const TTrack& t) { return t.code == code; });
}

void TDialogChgTracks::ToggleCentreline() {
  if (IsOpen()) ToggleEngraving(board_, codes.current, layer_, layer_);
}

bool TDialogChgTracks::Accept(Platform&) {
  snapshot_.reset();
  return true;
}

void TDialogChgTracks::Cancel() {
  if (!snapshot_) return;
  snapshot_->Restore();
  snapshot_.reset();
}

}  // namespace isolith
