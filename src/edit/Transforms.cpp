#include "edit/Transforms.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

void TransformPolygons(const Board& b, TPolygon* list, bool mx, bool my, bool swap) {
  for (; list; list = list->next)
    for (TXY* p = list->first; p; p = p->next) TransformPoint(b, mx, my, swap, p->x, p->y);
}

// Turns a corner of the centering holes, when it is set.
void TurnCorner(const Board& b, bool mx, bool my, float& x, float& y) {
  if (!IsSet(x) || !IsSet(y)) return;
  std::swap(x, y);
  TransformPoint(b, mx, my, false, x, y);
}

bool IsEmptyBox(float xmin, float xmax) {
  return xmin > xmax;
}

}  // namespace

void TransformPoint(const Board& b, bool mirrorX, bool mirrorY, bool swapXY, float& x, float& y) {
  if (swapXY) {
    std::swap(x, y);
    return;
  }
  if (mirrorX) x = b.CardWidth - x;
  if (mirrorY) y = b.CardHeight - y;
}

void TransformLayer(Board& b, bool mirrorX, bool mirrorY, bool swapXY, int layer) {
  if (layer == kDrillLayer) {
    for (TDrill* d = b.Drills; d; d = d->next)
      TransformPoint(b, mirrorX, mirrorY, swapXY, d->x, d->y);
  } else if (layer == kCutoutLayer) {
    for (TCutout* c = b.Cutouts; c; c = c->next) {
      TransformPolygons(b, c->outline, mirrorX, mirrorY, swapXY);
      TransformPolygons(b, c->paths, mirrorX, mirrorY, swapXY);
    }
  } else if (IsCircuitLayer(layer)) {
    for (TPad* p = b.Pads[layer]; p; p = p->next)
      TransformPoint(b, mirrorX, mirrorY, swapXY, p->x, p->y);
    for (TTrack* t = b.Tracks[layer]; t; t = t->next) {
      TransformPoint(b, mirrorX, mirrorY, swapXY, t->x1, t->y1);
      TransformPoint(b, mirrorX, mirrorY, swapXY, t->x2, t->y2);
    }
    TransformPolygons(b, b.Contours[layer], mirrorX, mirrorY, swapXY);
    TransformPolygons(b, b.Hatches[layer], mirrorX, mirrorY, swapXY);
  }
}

bool ReframeBoard(Board& b, float margin) {
  float xmin, ymin, xmax, ymax;
  FullBoundingBox(b, xmin, ymin, xmax, ymax);
  if (IsEmptyBox(xmin, xmax)) return false;
  ShiftLists(b, margin - xmin, margin - ymin, true, true);
  b.CardWidth = static_cast<float>(double(xmax) - xmin + 2.0 * margin);
  b.CardHeight = static_cast<float>(double(ymax) - ymin + 2.0 * margin);
  ResetView(b);
  return true;
}

void FlipBoard(Board& b, bool mirrorX, bool mirrorY) {
  TransformLayer(b, mirrorX, mirrorY, false, b.ActiveLayer);
  if (b.ActiveLayer == 0) {
    TransformLayer(b, mirrorX, mirrorY, false, kDrillLayer);
    TransformLayer(b, mirrorX, mirrorY, false, kCutoutLayer);
  }
  TransformPoint(b, mirrorX, mirrorY, false, b.OriginX, b.OriginY);
  ResetView(b);
}

void RotateBoard(Board& b, bool mirrorX, bool mirrorY, int layer, bool withDrills) {
  const bool originAtZero = std::fabs(b.OriginX) < 0.001 && std::fabs(b.OriginY) < 0.001;
  float x0, y0, x1, y1, nx0, ny0, nx1, ny1;
  if (layer < 0) {
    FullBoundingBox(b, x0, y0, x1, y1);
    auto turn = [&](int l) {
      TransformLayer(b, false, false, true, l);
      TransformLayer(b, mirrorX, mirrorY, false, l);
    };
    for (int l = 0; l < kCircuitLayers; ++l) turn(l);
    if (withDrills) turn(kDrillLayer);
    turn(kCutoutLayer);
    TransformPoint(b, false, false, true, b.OriginX, b.OriginY);
    TransformPoint(b, mirrorX, mirrorY, false, b.OriginX, b.OriginY);
    TurnCorner(b, mirrorX, mirrorY, b.CentreHole1X, b.CentreHole1Y);
    TurnCorner(b, mirrorX, mirrorY, b.CentreHole2X, b.CentreHole2Y);
    FullBoundingBox(b, nx0, ny0, nx1, ny1);
    if (!IsEmptyBox(x0, x1))
      ShiftLists(b, static_cast<float>(double(y0) - nx0), static_cast<float>(double(x0) - ny0),
                 true, true);
    std::swap(b.CardWidth, b.CardHeight);
    if (originAtZero) {
      b.OriginX = 0;
      b.OriginY = 0;
    }
    for (int l = 0; l < kCircuitLayers; ++l)
      for (int i = 0; i < kApertures; ++i) std::swap(b.PadSizeX[l][i], b.PadSizeY[l][i]);
  } else {
    LayerBoundingBox(b, layer, x0, y0, x1, y1);
    TransformLayer(b, false, false, true, layer);
    TransformLayer(b, mirrorX, mirrorY, false, layer);
    LayerBoundingBox(b, layer, nx0, ny0, nx1, ny1);
    if (!IsEmptyBox(x0, x1))
      ShiftLists(b, static_cast<float>(double(y0) - nx0), static_cast<float>(double(x0) - ny0),
                 false, false);
    if (layer != 0) ReframeBoard(b);
  }
  ResetView(b);
}

void RotatePlus(Board& b) {
  RotateBoard(b, true, false, b.ActiveLayer == 0 ? -1 : b.ActiveLayer, true);
}

void RotateMinus(Board& b) {
  RotateBoard(b, false, true, b.ActiveLayer == 0 ? -1 : b.ActiveLayer, true);
}

bool RotatePadApertures(Board& b, bool ctrlHeld) {
  if (!ctrlHeld && b.ActiveLayer >= kCircuitLayers) return false;
  for (int l = 0; l < kCircuitLayers; ++l)
    for (int i = 0; i < kApertures; ++i) std::swap(b.PadSizeX[l][i], b.PadSizeY[l][i]);
  return true;
}

bool AdjustOnReference(Board& b) {
  if (!b.RefPad) return false;
  float hx, hy;
  if (b.HoverPad) {
    hx = b.HoverPad->x;
    hy = b.HoverPad->y;
  } else if (b.ActiveLayer == kDrillLayer && b.HoverDrill) {
    hx = b.HoverDrill->x;
    hy = b.HoverDrill->y;
  } else {
    return false;
  }
  float x0, y0, x1, y1, nx0, ny0, nx1, ny1;
  FullBoundingBox(b, x0, y0, x1, y1);
  ShiftLists(b, static_cast<float>(double(b.RefPad->x) - hx),
             static_cast<float>(double(b.RefPad->y) - hy), false, false);
  FullBoundingBox(b, nx0, ny0, nx1, ny1);
  if (nx1 < x1) b.CardWidth = static_cast<float>(b.CardWidth - (double(x1) - nx1));
  if (ny1 < y1) b.CardHeight = static_cast<float>(b.CardHeight - (double(y1) - ny1));
  return true;
}

void ShiftBoard(Board& b, float dx, float dy, bool allLayers, float thickness) {
  // On the cutout layer a negative shift moves the circuit away and leaves the cutout in place.
  if (b.ActiveLayer == kCutoutLayer && !allLayers && (dx < 0 || dy < 0))
    ShiftLists(b, -dx, -dy, true, true);
  ShiftLists(b, dx, dy, allLayers, allLayers);
  SetCardFromContent(b, thickness);
  ResetView(b);
}

void ScaleBoard(Board& b, float factor, const ScaleChoice& choice) {
  for (int l = 0; l < kCircuitLayers; ++l) {
    ScaleLists(b, b.Pads[l], b.Tracks[l], l == 0 ? b.Drills : nullptr, l == 0 ? b.Cutouts : nullptr,
               factor, choice.coordinates, choice.apertureSizes, choice.trackThicknesses,
               choice.drillDiameters, choice.coordinates);
  }
  if (choice.coordinates)
    for (int l = 0; l < kCircuitLayers; ++l) {
      FreePolygons(std::exchange(b.Contours[l], nullptr));
      FreePolygons(std::exchange(b.Hatches[l], nullptr));
    }
  ResetView(b);
}

}  // namespace isolith
