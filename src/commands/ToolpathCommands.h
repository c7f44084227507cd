// The toolpath commands as the window and the command-line program reach them: contours,
// hatches, copper planes, card contour and tabs, the drill list and the tool dialogs. The menu
// runs them through the handler table (CommandHandlers.h); the functions here are what else
// must call them: the start-up chain, the board view's clicks and the scripts.
#pragma once

#include <string>

#include "commands/Application.h"

namespace isolith {

// "Calculate &contours" as the menu runs it: PendingCommand cleared; refused with the beep off a
// circuit layer; a reset when the active layer has contours (its contours and hatches deleted).
// Otherwise the contour tool is checked ("Active tools" opens once when it is missing, and the
// command stops silently when there is still none), "Set contours" runs unless the program was
// started with AUTOSTART or AUTOMILL, and the active layer (or every circuit layer with "&Apply
// to all layers") is calculated, each made active in turn. Ends with a repaint.
void CalculateContoursCommand(Application& app);

// For scripts: the contours of every circuit layer, as the command calculates them with "&Apply
// to all layers" ticked and the dialogs confirmed as they stand. Existing contours are
// calculated again rather than reset. False when no circuit layer holds pads or tracks, when
// there is still no contour tool after "Active tools", or when a dialog refused its values.
bool CalculateContoursOnAllLayers(Application& app);

// For scripts: the hatches of every circuit layer that has contours, as "Calculate &hatches"
// calculates them with "&Apply to all layers" ticked and the dialogs confirmed as they stand.
// Existing hatches are replaced rather than reset. False when no layer has contours, when the
// contour or hatching tool is still missing after "Active tools", when a dialog refused its
// values, or when the zone mode is "&selected zone", whose zones are dragged with the mouse.
bool CalculateHatchesOnAllLayers(Application& app);

// Why a calculation cannot start for want of a tool, in words that name the tool, its slot and
// where to set it ("Active tools" or "Isolith.ini", "Tool library" or "Isolith.too"); empty
// when the contour tool (and, with `hatches`, the hatching tool) can cut.
std::string MissingToolReason(const Application& app, bool hatches);

// A left click on the board while a toolpath pick is pending; the view has set the hover names
// for the click first, and (x, y) is the card position of the mouse.
//   12113, 12114: the copper plane of HoverTrack's net defined or undone, after asking.
//   12121: HoverTrack's net taken as card contour, after asking, with the tool side asked.
//   12122: the cut path of HoverCutout recalculated with the tool side asked.
//   12123: a cutting tab cut at the path point nearest to (x, y); the pick stays pending.
// Without the hover item the pick wants, nothing happens and the pick stays. False when
// `pendingId` is not one of these picks (the click belongs to another subject, or, for 12111,
// to ToolpathRectangleAction).
bool ToolpathClickAction(Application& app, int pendingId, float x, float y);

// A rectangle dragged on the board while a toolpath pick is pending, corners in card positions,
// in any order. 12111 ("&selected zone" of the hatches): the rectangle becomes the zone and the
// hatches of the chosen layers are calculated at once and added; the pick stays pending for the
// next rectangle. False for any other id.
bool ToolpathRectangleAction(Application& app, int pendingId, float x1, float y1, float x2,
                             float y2);

}  // namespace isolith
