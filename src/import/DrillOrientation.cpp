#include "import/DrillOrientation.h"

#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

constexpr float kMargin = 2.54f;
constexpr int kQuarterTurns = 4;

// Swap, then mirror in X about the card's width.
void Turn(const Board& b, float& x, float& y) {
  std::swap(x, y);
  x = b.CardWidth - x;
}

void TurnPolygons(const Board& b, TPolygon* list) {
  for (; list; list = list->next)
    for (TXY* p = list->first; p; p = p->next) Turn(b, p->x, p->y);
}

void TurnCorner(const Board& b, float& x, float& y) {
  if (IsSet(x) && IsSet(y)) Turn(b, x, y);
}

}  // namespace

void TurnBoardWithoutDrills(Board& b) {
  const bool originAtZero = std::fabs(b.OriginX) < 0.001 && std::fabs(b.OriginY) < 0.001;
  float x0, y0, x1, y1, nx0, ny0, nx1, ny1;
  FullBoundingBox(b, x0, y0, x1, y1);
  for (int l = 0; l < kCircuitLayers; ++l) {
    for (TPad* p = b.Pads[l]; p; p = p->next) Turn(b, p->x, p->y);
    for (TTrack* t = b.Tracks[l]; t; t = t->next) {
      Turn(b, t->x1, t->y1);
      Turn(b, t->x2, t->y2);
    }
    TurnPolygons(b, b.Contours[l]);
    TurnPolygons(b, b.Hatches[l]);
  }
  for (TCutout* c = b.Cutouts; c; c = c->next) {
    TurnPolygons(b, c->outline);
    TurnPolygons(b, c->paths);
  }
  Turn(b, b.OriginX, b.OriginY);
  TurnCorner(b, b.CentreHole1X, b.CentreHole1Y);
  TurnCorner(b, b.CentreHole2X, b.CentreHole2Y);
  FullBoundingBox(b, nx0, ny0, nx1, ny1);
  if (x0 <= x1)
    ShiftLists(b, static_cast<float>(double(y0) - nx0), static_cast<float>(double(x0) - ny0), true,
               true);
  std::swap(b.CardWidth, b.CardHeight);
  if (originAtZero) {
    b.OriginX = 0;
    b.OriginY = 0;
  }
  for (int l = 0; l < kCircuitLayers; ++l)
    for (int i = 0; i < kApertures; ++i) std::swap(b.PadSizeX[l][i], b.PadSizeY[l][i]);
  ResetView(b);
}

int SearchDrillOrientation(Board& b) {
  int best = -1;
  for (int turn = 0; turn < kQuarterTurns; ++turn) {
    TurnBoardWithoutDrills(b);
    AlignLayer(b, kDrillLayer);
    int overlap = PadOverlap(b, kDrillLayer);
    if (overlap > best) best = overlap;
  }
  // Back where it started; turn on to the first orientation that did best.
  int overlap = -1;
  for (int turn = 0; turn < kQuarterTurns && overlap != best; ++turn) {
    TurnBoardWithoutDrills(b);
    AlignLayer(b, kDrillLayer);
    overlap = PadOverlap(b, kDrillLayer);
  }
  return overlap;
}

bool ReframeJob(Board& b) {
  float xmin, ymin, xmax, ymax;
  FullBoundingBox(b, xmin, ymin, xmax, ymax);
  if (xmin > xmax) return false;
  ShiftLists(b, kMargin - xmin, kMargin - ymin, true, true);
  b.CardWidth = static_cast<float>(double(xmax) - xmin + 2.0 * kMargin);
  b.CardHeight = static_cast<float>(double(ymax) - ymin + 2.0 * kMargin);
  ResetView(b);
  return true;
}

}  // namespace isolith
