#include "output/ExportFlip.h"

namespace isolith {

ExportFlip::ExportFlip(Board& board, bool active) : board_(board) {
  if (!active) return;
  const int layer = board.ActiveLayer;
  MirrorLayer(layer);
  if (layer != kDrillLayer) MirrorLayer(kDrillLayer);
  if (layer != kCutoutLayer) MirrorLayer(kCutoutLayer);
  Mirror(board.OriginX);
}

ExportFlip::~ExportFlip() {
  for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) *it->first = it->second;
}

void ExportFlip::Mirror(float& x) {
  saved_.emplace_back(&x, x);
  x = board_.CardWidth - x;
}

void ExportFlip::MirrorPaths(TPolygon* list) {
  for (; list; list = list->next)
    for (TXY* p = list->first; p; p = p->next) {
      // A walk may turn a path by exchanging co-ordinates, so Y is kept too.
      saved_.emplace_back(&p->y, p->y);
      Mirror(p->x);
    }
}

void ExportFlip::MirrorLayer(int layer) {
  if (layer == kDrillLayer) {
    for (TDrill* d = board_.Drills; d; d = d->next) Mirror(d->x);
  } else if (layer == kCutoutLayer) {
    for (TCutout* c = board_.Cutouts; c; c = c->next) {
      MirrorPaths(c->outline);
      MirrorPaths(c->paths);
    }
  } else if (IsCircuitLayer(layer)) {
    for (TPad* p = board_.Pads[layer]; p; p = p->next) Mirror(p->x);
    for (TTrack* t = board_.Tracks[layer]; t; t = t->next) {
      Mirror(t->x1);
      Mirror(t->x2);
    }
    MirrorPaths(board_.Contours[layer]);
    MirrorPaths(board_.Hatches[layer]);
  }
}

}  // namespace isolith
