// The aperture table of a layer filled from what a modern read needs: each distinct pad figure
// (shape, sizes, hole) and each stroke width gets an entry of its own, a round pad and a stroke of
// the same size sharing one, until the 100 entries are taken; then the nearest entry serves.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

class ApertureSlots {
 public:
  // Starts from empty tables of `layer`; on layer 0 the tables of every circuit layer and the
  // hole table are emptied too, as a new job's first file does.
  ApertureSlots(Board& board, int layer);

  uint8_t Pad(uint8_t shape, double sizeX, double sizeY, double hole);
  uint8_t Track(double width);

 private:
  struct Slot {
    bool pad = false, track = false;
    uint8_t shape = 0;
    double sizeX = 0, sizeY = 0, hole = 0, width = 0;
  };
  uint8_t Write(size_t index);
  // A new entry, or, when the table is full, the one of the smallest `gap` from it.
  uint8_t Add(const Slot& slot, const std::function<double(const Slot&)>& gap);
  Board& board_;
  int layer_;
  std::vector<Slot> slots_;
};

}  // namespace isolith
