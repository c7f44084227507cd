// What the mouse points at: the pick functions over the board's lists, the pick that each
// pending command runs at a mouse move, and the hint that describes the item found. Every pick
// keeps the first in list order among equals, since only a strictly nearer item replaces the
// best so far. Tolerances given in pixels are turned into millimetres by the view's scale.
#pragma once

#include <string>

#include "commands/Application.h"

namespace isolith {

// A pad whose box of X by Y size around its centre holds the point, edges included, whatever
// its shape; the nearest centre wins. Circuit layers only.
TPad* PickPad(const Board& b, int layer, double x, double y);
// Which tracks a pick takes: those whose flags masked by `mask` equal `want`.
struct TrackFilter {
  uint8_t mask = 0;
  uint8_t want = 0;
};
// A track within its full width of the point (2 pixels for a track engraved at its centre);
// the smallest distance wins. Circuit layers only.
TTrack* PickTrack(const Board& b, int layer, double x, double y, double pixelSize,
                  TrackFilter filter = {});
// A drill whose box of its diameter holds the point; the nearest centre wins.
TDrill* PickDrill(const Board& b, double x, double y);
// A card contour with a segment of its outline within 5 pixels; the smallest distance wins.
TCutout* PickCutout(const Board& b, double x, double y, double pixelSize);
// The centering hole (1, 3, 7 or 9) whose box of half the centering tool's cut width holds the
// point; the nearest centre wins; 0 for none.
int PickCentreHole(Application& app, double x, double y);

// The pick of a mouse move at pixel (px, py), chosen by PendingCommand and the active layer; the
// hover names of the board are set to what it found. None runs in the final rendering, nor for a
// pending command that picks nothing. True when the hover changed.
bool UpdateHover(Application& app, int px, int py);

// Whether a pending command waits for a click on an item (a pick), and whether it waits for a
// rectangle to be dragged.
bool IsPickCommand(int pendingId);
bool IsRectangleCommand(int pendingId);

// The hint box of the hover item: its first line and the position line, joined by a line feed;
// empty when nothing is hovered. Positions are card positions less the origin.
std::string HoverHint(const Application& app);

}  // namespace isolith
