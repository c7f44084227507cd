// The editing commands: pad and track apertures, single pads and tracks, the identical-item
// edits, disable / re-enable / delete (item, net, zone, card contour) and the manual contour
// edits. The menu and the context menu run them through the handler table (CommandHandlers.h);
// the functions here are what the board view calls at its clicks and drags, and what a load
// calls after it warned of missing apertures.
#pragma once

#include "commands/Application.h"

namespace isolith {

// "Modify &pads..." over the active layer, opened on its first pad (the menu and the load
// steps), or on HoverPad ("Edit all identical pads"). Cancel restores the tables, pads and
// drills exactly; OK rebuilds the drill list. Nothing happens on a layer without pads.
void ModifyPadsCommand(Application& app, bool onHoverPad);
// "Modify &tracks..." likewise; OK leaves the contours alone.
void ModifyTracksCommand(Application& app, bool onHoverTrack);

// A left click on the board while an editing pick is pending; the view has set the hover names
// for the click first.
//   12203, 12204: the single pad or track dialog on HoverPad or HoverTrack; after OK the pick
//     is raised again for the next item.
//   12206: HoverPad becomes a thermal pad.
//   12210 to 12213, 12220 to 12223, 12230 to 12233: disable, re-enable or delete the hovered
//     pad, track, track net or drill.
//   12234: the hovered cut-out is deleted.
// Each ends with ResetHover and a repaint; without the item it wants nothing happens and the
// pick stays. False when `pendingId` is none of these.
bool EditClickAction(Application& app, int pendingId);

// A rectangle dragged while 12214, 12224 or 12235 waits, corners in card positions in any
// order: the zone is disabled, re-enabled or deleted on the active layer, or on every circuit
// layer with `ctrl` held; a beep when nothing was caught without Ctrl. ResetHover, the pick
// stays for the next rectangle, repaint. False for any other id.
bool EditRectangleAction(Application& app, int pendingId, float x1, float y1, float x2, float y2,
                         bool ctrl);

// The hover of the contour modes at a mouse move to (x, y), with the view's scale in pixels
// per millimetre: HoverContour (12107), HoverContourSegment (12110) or HoverContourVertex, the
// free end of an open path (12108), on the active layer. Other ids leave the names alone.
void ContourHover(Application& app, int pendingId, float x, float y, float pixelsPerMm);

// A click of the contour modes at card point (x, y), with the view's scale:
//   12107: the path under the cursor is deleted.
//   12110: the segment under the cursor is deleted, then the open ends are joined.
//   12108: the first point, a caught free end (left button) or the cursor (right button);
//     the mode goes on to 12109.
//   12109: the second point, snapped to a free end within 4 pixels: a free segment, or the
//     caught path extended; the open ends are joined; back to 12108.
// A refused click beeps and leaves the paths alone. The modes stay. False for other ids.
bool ContourClickAction(Application& app, int pendingId, float x, float y, float pixelsPerMm,
                        bool rightButton);

// The join distance of the contour edits: the milling tool's cut width at the milling depth
// (0.5 without a tool), at least 0.1.
float ContourJoinTolerance(Application& app);

}  // namespace isolith
