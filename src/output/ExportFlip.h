// "Flip horizontally" of the "File export" dialog: the active layer, the drills, the cut-outs
// and the origin are mirrored in X about the card's width for the length of one walk. The
// co-ordinates are saved first and put back afterwards, so the board is exactly as it was, to
// the last bit, whatever the mirror's rounding.
#pragma once

#include <utility>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

class ExportFlip {
 public:
  ExportFlip(Board& board, bool active);
  ~ExportFlip();
  ExportFlip(const ExportFlip&) = delete;
  ExportFlip& operator=(const ExportFlip&) = delete;

 private:
  void Mirror(float& x);
  void MirrorPaths(TPolygon* list);
  void MirrorLayer(int layer);

  Board& board_;
  std::vector<std::pair<float*, float>> saved_;
};

}  // namespace isolith
