#include "edit/ApertureSnapshot.h"

#include <algorithm>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

template <typename R>
R* CopyList(const R* head) {
  R* copy = nullptr;
  R* tail = nullptr;
  for (; head; head = head->next) {
    R* r = new R(*head);
    r->next = nullptr;
    AppendTo(copy, tail, r);
  }
  return copy;
}

template <typename R>
int IndexIn(const R* head, const R* record) {
  for (int i = 0; head; head = head->next, ++i)
    if (head == record) return i;
  return -1;
}

template <typename R>
R* AtIndex(R* head, int index) {
  if (index < 0) return nullptr;
  for (; head && index > 0; head = head->next) --index;
  return head;
}

// The layer and position of a record among the four circuit layers' lists.
template <typename R>
void Locate(const std::array<R*, 5>& lists, const R* record, int& layer, int& index) {
  if (!record) return;
  for (int l = 0; l < kCircuitLayers; ++l) {
    const int i = IndexIn(lists[l], record);
    if (i >= 0) {
      layer = l;
      index = i;
      return;
    }
  }
}

}  // namespace

ApertureSnapshot::ApertureSnapshot(Board& board, int layer, Kind kind)
    : board_(board), layer_(layer), kind_(kind) {
  for (int l = 0; l < kCircuitLayers; ++l) {
    std::copy_n(board.PadShape[l], kApertures, shape_[l]);
    std::copy_n(board.PadSizeX[l], kApertures, sizeX_[l]);
    std::copy_n(board.PadSizeY[l], kApertures, sizeY_[l]);
  }
  std::copy_n(board.TrackWidth[layer], kApertures, width_);
  std::copy_n(board.DrillDiameter, kApertures, drill_);
  if (kind == kPads) {
    for (int l = 0; l < kCircuitLayers; ++l) pads_[l] = CopyList(board.Pads[l]);
    drills_ = CopyList(board.Drills);
    Locate(board.Pads, board.HoverPad, hoverPadLayer_, hoverPadIndex_);
    Locate(board.Pads, board.RefPad, refPadLayer_, refPadIndex_);
    hoverDrillIndex_ = IndexIn(board.Drills, board.HoverDrill);
  } else {
    for (int l = 0; l < kCircuitLayers; ++l) tracks_[l] = CopyList(board.Tracks[l]);
    Locate(board.Tracks, board.HoverTrack, hoverTrackLayer_, hoverTrackIndex_);
  }
}

ApertureSnapshot::~ApertureSnapshot() {
  if (restored_) return;
  for (TPad* p : pads_) FreeChain(p);
  for (TTrack* t : tracks_) FreeChain(t);
  FreeChain(drills_);
}

void ApertureSnapshot::Restore() {
  if (restored_) return;
  restored_ = true;
  Board& b = board_;
  if (kind_ == kPads) {
    std::copy_n(drill_, kApertures, b.DrillDiameter);
    for (int l = 0; l < kCircuitLayers; ++l) {
      std::copy_n(shape_[l], kApertures, b.PadShape[l]);
      std::copy_n(sizeX_[l], kApertures, b.PadSizeX[l]);
      std::copy_n(sizeY_[l], kApertures, b.PadSizeY[l]);
      FreePads(b, b.Pads[l]);
      b.Pads[l] = pads_[l];
    }
    FreeDrills(b, b.Drills);
    b.Drills = drills_;
    if (hoverPadLayer_ >= 0) b.HoverPad = AtIndex(b.Pads[hoverPadLayer_], hoverPadIndex_);
    if (refPadLayer_ >= 0) b.RefPad = AtIndex(b.Pads[refPadLayer_], refPadIndex_);
    b.HoverDrill = AtIndex(b.Drills, hoverDrillIndex_);
  } else {
    std::copy_n(width_, kApertures, b.TrackWidth[layer_]);
    for (int l = 0; l < kCircuitLayers; ++l) {
      FreeTracks(b, b.Tracks[l]);
      b.Tracks[l] = tracks_[l];
    }
    if (hoverTrackLayer_ >= 0) b.HoverTrack = AtIndex(b.Tracks[hoverTrackLayer_], hoverTrackIndex_);
  }
}

}  // namespace isolith
