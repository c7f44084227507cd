// Disable, re-enable and delete: items taken out of the job, one item, a track net or a zone at
// a time. Disabling keeps an item on the board but out of the contours (a disabled drill is
// still drilled); deleting removes it. Each action frees exactly the contours that its item
// could have shaped: a pad those of all layers, a track, net or zone those of the active layer,
// a drill or a card contour none. The command repaints.
#pragma once

#include "core/board/Board.h"
#include "core/platform/Platform.h"

namespace isolith {

enum class ItemAction { Disable, Enable, Delete };

// The hovered pad, track or drill of the active layer: flag 0x01 set or cleared, or the record
// removed. False when nothing is hovered (nothing changes).
bool PadAction(Board& board, ItemAction action);
bool TrackAction(Board& board, ItemAction action);
bool DrillAction(Board& board, ItemAction action);

enum class NetResult {
  Refused,  // not a circuit layer: the caller beeps
  Nothing,  // no hovered track, or the answer was No
  Done,
};

// The net of HoverTrack on the active layer (touching tracks only, pads left out) after the
// question under "Tracks": "Disable this track net?", "Re-enable this track net?" or "Delete
// this track net?". The marks are clear afterwards. Any number of tracks, no recursion.
NetResult TrackNetAction(Board& board, Platform& platform, ItemAction action);

// A zone of the card, corners sorted.
struct ZoneBox {
  float xmin = 0, ymin = 0, xmax = 0, ymax = 0;
};
ZoneBox SortedZone(float x1, float y1, float x2, float y2);

// One circuit layer's part of a zone: pads with their centre in the box (limits included),
// tracks with both ends in it, and the drills with their centre in it whatever the layer.
// Delete removes them, Disable sets flag 0x01, Enable clears flags 0x01 and 0x02 (so a copper
// plane in the zone becomes ordinary tracks). When anything was caught the active layer's
// contours go. True when anything was caught.
bool ZoneAction(Board& board, int layer, const ZoneBox& box, ItemAction action);

// The zone commands at the mouse's release: the active layer, or with `allLayers` (Ctrl held)
// every circuit layer. False when the caller should beep: nothing was caught on a layer that
// was treated, Ctrl not held. Without Ctrl, on the drill or cutout layer, nothing happens.
bool ZoneCommand(Board& board, const ZoneBox& box, ItemAction action, bool allLayers);

// "Delete contour path": the cut-out leaves the list; when the list has become empty while
// the cutout layer was shown, layer 0 is shown. False for none.
bool DeleteCutout(Board& board, TCutout* cutout);

}  // namespace isolith
