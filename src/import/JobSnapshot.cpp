#include "import/JobSnapshot.h"

#include <cstring>

namespace isolith {

namespace {

// Visits every stored position of the circuit layers and cut-outs, in one fixed order.
template <typename Visit>
void WalkPositions(const Board& b, Visit visit) {
  auto polygons = [&](const TPolygon* list) {
    for (; list; list = list->next)
      for (TXY* p = list->first; p; p = p->next) {
        visit(p->x);
        visit(p->y);
      }
  };
  for (int l = 0; l < kCircuitLayers; ++l) {
    for (TPad* p = b.Pads[l]; p; p = p->next) {
      visit(p->x);
      visit(p->y);
    }
    for (TTrack* t = b.Tracks[l]; t; t = t->next) {
      visit(t->x1);
      visit(t->y1);
      visit(t->x2);
      visit(t->y2);
    }
    polygons(b.Contours[l]);
    polygons(b.Hatches[l]);
  }
  for (const TCutout* c = b.Cutouts; c; c = c->next) {
    polygons(c->outline);
    polygons(c->paths);
  }
}

}  // namespace

JobSnapshot::JobSnapshot(const Board& b)
    : cardWidth_(b.CardWidth),
      cardHeight_(b.CardHeight),
      cardThickness_(b.CardThickness),
      originX_(b.OriginX),
      originY_(b.OriginY),
      hole1X_(b.CentreHole1X),
      hole1Y_(b.CentreHole1Y),
      hole2X_(b.CentreHole2X),
      hole2Y_(b.CentreHole2Y),
      viewLeft_(b.ViewLeft),
      viewBottom_(b.ViewBottom),
      viewRight_(b.ViewRight),
      viewTop_(b.ViewTop),
      zoomHistory_(b.ZoomHistory),
      zoomDepth_(b.ZoomDepth),
      activeLayer_(b.ActiveLayer),
      drillLayerName_(b.LayerName[kDrillLayer]) {
  WalkPositions(b, [&](float& v) { positions_.push_back(v); });
  std::memcpy(padSizeX_, b.PadSizeX, sizeof padSizeX_);
  std::memcpy(padSizeY_, b.PadSizeY, sizeof padSizeY_);
  std::memcpy(drillDiameter_, b.DrillDiameter, sizeof drillDiameter_);
  std::memcpy(apertureFlags_, b.ApertureFlags, sizeof apertureFlags_);
}

void JobSnapshot::Restore(Board& b) const {
  size_t k = 0;
  WalkPositions(b, [&](float& v) {
    if (k < positions_.size()) v = positions_[k++];
  });
  std::memcpy(b.PadSizeX, padSizeX_, sizeof padSizeX_);
  std::memcpy(b.PadSizeY, padSizeY_, sizeof padSizeY_);
  std::memcpy(b.DrillDiameter, drillDiameter_, sizeof drillDiameter_);
  std::memcpy(b.ApertureFlags, apertureFlags_, sizeof apertureFlags_);
  b.CardWidth = cardWidth_;
  b.CardHeight = cardHeight_;
  b.CardThickness = cardThickness_;
  b.OriginX = originX_;
  b.OriginY = originY_;
  b.CentreHole1X = hole1X_;
  b.CentreHole1Y = hole1Y_;
  b.CentreHole2X = hole2X_;
  b.CentreHole2Y = hole2Y_;
  b.ViewLeft = viewLeft_;
  b.ViewBottom = viewBottom_;
  b.ViewRight = viewRight_;
  b.ViewTop = viewTop_;
  b.ZoomHistory = zoomHistory_;
  b.ZoomDepth = zoomDepth_;
  b.ActiveLayer = activeLayer_;
  b.LayerName[kDrillLayer] = drillLayerName_;
}

}  // namespace isolith
