#include "edit/ItemActions.h"

#include <algorithm>

#include "core/board/BoardOps.h"
#include "edit/RemoveWhere.h"
#include "toolpath/TrackNets.h"

namespace isolith {

namespace {

template <typename R>
void Flag(R& r, ItemAction action, uint8_t bits) {
  if (action == ItemAction::Disable)
    SetFlags(r, bits);
  else
    ClearFlags(r, bits);
}

bool InZone(const ZoneBox& z, float x, float y) {
  return x >= z.xmin && x <= z.xmax && y >= z.ymin && y <= z.ymax;
}

bool TrackInZone(const ZoneBox& z, const TTrack& t) {
  return std::min(t.x1, t.x2) >= z.xmin && std::max(t.x1, t.x2) <= z.xmax &&
         std::min(t.y1, t.y2) >= z.ymin && std::max(t.y1, t.y2) <= z.ymax;
}

}  // namespace

bool PadAction(Board& b, ItemAction action) {
  if (!b.HoverPad || !IsCircuitLayer(b.ActiveLayer)) return false;
  if (action == ItemAction::Delete)
    RemovePad(b, b.ActiveLayer, b.HoverPad);
  else
    Flag(*b.HoverPad, action, kPadDisabled);
  FreeContours(b, true);
  return true;
}

bool TrackAction(Board& b, ItemAction action) {
  if (!b.HoverTrack || !IsCircuitLayer(b.ActiveLayer)) return false;
  if (action == ItemAction::Delete)
    RemoveTrack(b, b.ActiveLayer, b.HoverTrack);
  else
    Flag(*b.HoverTrack, action, kTrackDisabled);
  FreeContours(b, false);
  return true;
}

bool DrillAction(Board& b, ItemAction action) {
  if (!b.HoverDrill) return false;
  if (action == ItemAction::Delete)
    RemoveDrill(b, b.HoverDrill);
  else
    Flag(*b.HoverDrill, action, kDrillDisabled);
  return true;
}

NetResult TrackNetAction(Board& b, Platform& platform, ItemAction action) {
  b.PendingCommand = 0;
  const int layer = b.ActiveLayer;
  if (!IsCircuitLayer(layer)) return NetResult::Refused;
  if (!b.HoverTrack) return NetResult::Nothing;
  const bool busy = action != ItemAction::Delete;
  if (busy) platform.SetBusyCursor(true);
  ClearTrackMarks(b, layer);
  TraceTrack(b, layer, false, b.HoverTrack);
  const char* question = action == ItemAction::Disable  ? "Disable this track net?"
                         : action == ItemAction::Enable ? "Re-enable this track net?"
                                                        : "Delete this track net?";
  NetResult result = NetResult::Nothing;
  if (platform.Ask("Tracks", question, false, Answer::Yes) == Answer::Yes) {
    if (action == ItemAction::Delete) {
      RemoveWhere(b, b.Tracks[layer], [](const TTrack& t) { return TestFlags(t, kVisited); });
    } else {
      for (TTrack* t = b.Tracks[layer]; t; t = t->next)
        if (TestFlags(*t, kVisited)) Flag(*t, action, kTrackDisabled);
    }
    FreeContours(b, false);
    result = NetResult::Done;
  }
  ClearTrackMarks(b, layer);
  if (busy) platform.SetBusyCursor(false);
  return result;
}

ZoneBox SortedZone(float x1, float y1, float x2, float y2) {
  return ZoneBox{std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2)};
}

bool ZoneAction(Board& b, int layer, const ZoneBox& z, ItemAction action) {
  if (!IsCircuitLayer(layer)) return false;
  int caught = 0;
  auto padIn = [&z](const TPad& p) { return InZone(z, p.x, p.y); };
  auto trackIn = [&z](const TTrack& t) { return TrackInZone(z, t); };
  auto drillIn = [&z](const TDrill& d) { return InZone(z, d.x, d.y); };
  if (action == ItemAction::Delete) {
    caught += RemoveWhere(b, b.Pads[layer], padIn);
    caught += RemoveWhere(b, b.Tracks[layer], trackIn);
    caught += RemoveWhere(b, b.Drills, drillIn);
  } else {
    // Re-enabling clears the copper-plane bit with the disabled one.
    const uint8_t bits = action == ItemAction::Disable ? 0x01 : 0x03;
    auto flag = [&](auto* head, auto in) {
      for (; head; head = head->next)
        if (in(*head)) {
          Flag(*head, action, bits);
          ++caught;
        }
    };
    flag(b.Pads[layer], padIn);
    flag(b.Tracks[layer], trackIn);
    flag(b.Drills, drillIn);
  }
  if (caught == 0) return false;
  FreeContours(b, false);
  return true;
}

bool ZoneCommand(Board& b, const ZoneBox& box, ItemAction action, bool allLayers) {
  bool refused = false;
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!allLayers && layer != b.ActiveLayer) continue;
    if (!ZoneAction(b, layer, box, action) && !allLayers) refused = true;
  }
  return !refused;
}

bool DeleteCutout(Board& b, TCutout* cutout) {
  if (!cutout) return false;
  TCutout** link = &b.Cutouts;
  while (*link && *link != cutout) link = &(*link)->next;
  if (!*link) return false;
  *link = cutout->next;
  if (b.HoverCutout == cutout) b.HoverCutout = nullptr;
  delete cutout;
  if (!b.Cutouts && b.ActiveLayer == kCutoutLayer) b.ActiveLayer = 0;
  return true;
}

}  // namespace isolith
