// What a load may change in the job that is already there, kept so that a refused or cancelled
// load can put it back exactly: the positions of every pad, track, path vertex and card outline
// (a load may turn and shift the board, never add or remove these), the pad size tables, the
// drill table, the card, origin, centering holes, view, active layer and drill layer name.
// The drills themselves are not kept here: the load sets the old list aside whole.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

class JobSnapshot {
 public:
  explicit JobSnapshot(const Board& board);
  // Puts the values back into the same records, walked in the same order.
  void Restore(Board& board) const;

 private:
  std::vector<float> positions_;
  float padSizeX_[kCircuitLayers][kApertures];
  float padSizeY_[kCircuitLayers][kApertures];
  float drillDiameter_[kApertures];
  uint8_t apertureFlags_[kApertures];
  float cardWidth_, cardHeight_, cardThickness_, originX_, originY_;
  float hole1X_, hole1Y_, hole2X_, hole2Y_;
  float viewLeft_, viewBottom_, viewRight_, viewTop_;
  std::array<ViewBox, 5> zoomHistory_;
  int zoomDepth_;
  int activeLayer_;
  std::string drillLayerName_;
};

}  // namespace isolith
