#include "commands/LayerCommands.h"

#include <utility>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

bool HasCopper(const Board& b, int layer) {
  return b.Pads[layer] != nullptr || b.Tracks[layer] != nullptr;
}

}  // namespace

bool NextLayer(Board& b) {
  b.PendingCommand = 0;
  const int was = b.ActiveLayer;
  int layer = was;
  if (layer == kCutoutLayer) {
    layer = 0;
  } else if (layer == kDrillLayer) {
    layer = kCutoutLayer;
  } else {
    ++layer;
    while (layer < kCircuitLayers && !HasCopper(b, layer)) ++layer;
  }
  if (layer == kDrillLayer && b.Drills == nullptr) layer = kCutoutLayer;
  if (layer == kCutoutLayer && b.Cutouts == nullptr) layer = 0;
  b.ActiveLayer = layer;
  return layer != was;
}

bool PreviousLayer(Board& b) {
  b.PendingCommand = 0;
  const int was = b.ActiveLayer;
  int layer = was == 0 ? kCutoutLayer : was - 1;
  if (layer == kCutoutLayer && b.Cutouts == nullptr) layer = kDrillLayer;
  if (layer == kDrillLayer && b.Drills == nullptr) layer = kCircuitLayers - 1;
  while (layer > 0 && layer < kCircuitLayers && !HasCopper(b, layer)) --layer;
  b.ActiveLayer = layer;
  return layer != was;
}

void SwitchLayer(Application& app, bool forward) {
  Board& b = app.board;
  if (b.LayerCount <= 1) return;
  const int pending = b.PendingCommand;
  ResetHover(app);
  const bool moved = forward ? NextLayer(b) : PreviousLayer(b);
  if (!moved) {
    Refuse(app);
    return;
  }
  RequestRepaint(app);
  b.PendingCommand = pending;
}

void ShowLayer(Application& app, int layer) {
  Board& b = app.board;
  const int pending = b.PendingCommand;
  ResetHover(app);
  b.ActiveLayer = layer;
  RequestRepaint(app);
  b.PendingCommand = pending;
}

void CloseLayer(Application& app) {
  Board& b = app.board;
  ResetHover(app);
  const int layer = b.ActiveLayer;
  b.LayerName[layer].clear();
  if (layer == kDrillLayer) {
    FreeDrills(b, std::exchange(b.Drills, nullptr));
  } else if (layer == kCutoutLayer) {
    FreeCutouts(b, std::exchange(b.Cutouts, nullptr));
  } else {
    FreePads(b, std::exchange(b.Pads[layer], nullptr));
    FreeTracks(b, std::exchange(b.Tracks[layer], nullptr));
    FreePolygons(std::exchange(b.Contours[layer], nullptr));
    FreePolygons(std::exchange(b.Hatches[layer], nullptr));
  }
  CompactLayers(b);
  if (b.ActiveLayer != 0) PreviousLayer(b);
  if (b.ActiveLayer == 0 && !LayerHasContent(b, 0))
    ResetJob(b);
  else
    SetCardFromContent(b, CardThicknessFromSettings(app.settings));
  ResetView(b);
  RequestRepaint(app, RepaintLevel::Full);
}

}  // namespace isolith
