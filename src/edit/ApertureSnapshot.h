// The full copy that the aperture dialogs keep while they edit the board live: the board behind
// the dialog shows every change at once, and Cancel puts back exactly what stood before.
#pragma once

#include <array>
#include <cstdint>

#include "core/board/Board.h"

namespace isolith {

class ApertureSnapshot {
 public:
  // What is copied besides the active layer's tables.
  enum Kind {
    kPads,    // pad shape and size tables of the four circuit layers (through-hole pads are
              // kept alike on all of them), the drill table, all pads and the drills
    kTracks,  // the layer's track width table and the tracks of all four circuit layers
  };

  ApertureSnapshot(Board& board, int layer, Kind kind);
  ~ApertureSnapshot();
  ApertureSnapshot(const ApertureSnapshot&) = delete;
  ApertureSnapshot& operator=(const ApertureSnapshot&) = delete;

  // Swaps the copies in and frees the edited lists. The hover and reference names come back to
  // the records they named at the copy (none when they named nothing then). Once only.
  void Restore();

 private:
  Board& board_;
  int layer_;
  Kind kind_;
  bool restored_ = false;
  uint8_t shape_[kCircuitLayers][kApertures];
  float sizeX_[kCircuitLayers][kApertures], sizeY_[kCircuitLayers][kApertures];
  float width_[kApertures], drill_[kApertures];
  std::array<TPad*, kCircuitLayers> pads_{};
  std::array<TTrack*, kCircuitLayers> tracks_{};
  TDrill* drills_ = nullptr;
  // Where the names pointed, as (layer, position in the list); -1 for none.
  int hoverPadLayer_ = -1, hoverPadIndex_ = -1, refPadLayer_ = -1, refPadIndex_ = -1;
  int hoverTrackLayer_ = -1, hoverTrackIndex_ = -1, hoverDrillIndex_ = -1;
};

}  // namespace isolith
