// Hatches: horizontal scan lines over a rectangle, walked back and forth, that clear the copper
// left between the isolation contours. Each line is cut wherever it meets the keep-out shape of
// a pad or track, the pieces inside a shape are dropped, the survivors pulled back by half a
// pitch, optionally linked to the next line up, and chained into paths in cutting order.
#pragma once

#include "core/board/Board.h"
#include "params/ToolLibrary.h"

namespace isolith {

class Platform;
struct Settings;

// The zone modes of the hatch command (`HatchZone`).
enum HatchZoneMode : int {
  kHatchWholeBoard = 0,    // "&whole board": the card
  kHatchCardContour = 1,   // "&card contour": the box of the card outlines
  kHatchSelectedZone = 2,  // "&selected zone": rectangles dragged one after the other, added up
};

// A zone rectangle on the card, in millimetres; its corners may come in any order.
struct HatchRect {
  float xmin = 0, ymin = 0, xmax = 0, ymax = 0;
};

// The choices of the hatch command that live for the run only, never in the settings file.
struct HatchSession {
  int zone = kHatchWholeBoard;  // `HatchZone`
  bool allLayers = false;       // `HatchAllLayers`: "&Apply to all layers"
  HatchRect rectangle;          // the zone of the last calculation
};

// What one calculation needs from the settings and the tool library.
struct HatchSettings {
  float pitch = 0;        // distance between scan lines; under 0.01 nothing is calculated
  float keepOut = 0.25f;  // draft offset of the keep-out shapes (a full tool width)
  bool link = true;       // `HatchingLink`: join neighbouring lines by a short step
  bool fast = false;      // `FastCalcul`: the coarser track caps of the draft
  // The phases find their candidates through a spatial index; false runs the full scans, which
  // give the same hatches and are kept as the reference the index is checked against.
  bool indexed = true;
};

// What a calculation did: for measurements (indexed phases only).
struct HatchStats {
  long long edgeTests = 0;   // piece-edge and link-edge pairs handed to their tests
  long long shapeTests = 0;  // point-in-shape tests of the classification
};

// Half the cutting width of `HatchingTool` at `HatchingDepth`, plus `HatchingMargin`; 0 when no
// hatching tool is chosen, which stops the calculation.
float HatchPitch(const Settings& settings, ToolTable& tools);
// The keep-out offset: the cutting width of `HatchingTool` at the contour tool's depth
// (`MillingDepth`) plus `MillingMargin`, or 0.25 without a hatching tool. The contour depth and
// margin are taken on purpose: the hatches must stay off what the contour tool leaves standing.
float HatchKeepOutOffset(const Settings& settings, ToolTable& tools);
HatchSettings HatchSettingsFrom(const Settings& settings, ToolTable& tools);

// The rectangle of zone mode 0 or 1: the card, or the box of the card outlines (the card when
// that box has no positive width or height). Zone 2 has no rectangle of its own: the card.
HatchRect ZoneRectangle(const Board& b, int zone);

// --- The phases, each over its working list ------------------------------------------------
// By full scans: the reference. The indexed phases (HatchPhasesIndexed.h) give the same lists.

// One keep-out polygon per pad, then per track of the layer, in list order, excluded elements
// skipped: the vertices of the element's draft at `offset` (the first segment's start, then
// every segment's end), so that the gaps of thermal pads are bridged. A draft of fewer than
// three segments gives none.
TPolygon* BuildKeepOut(const Board& b, int layer, float offset, bool fast);

// The scan lines over an ordered rectangle, from its bottom upwards every `pitch` while not
// above ymax + 0.001, alternately left to right and right to left, the first left to right.
TSeg* BuildScanLines(const HatchRect& zone, float pitch);

// Splits every scan piece at each crossing with a keep-out edge; a new piece goes directly
// behind its parent, so that the walk reaches it too.
void CrossingPhase(TSeg* list, const TPolygon* keepOut);

// Drops pieces of 0.2 mm or less and pieces whose middle, or else whose point at three quarters,
// lies inside a keep-out shape or on its edge. Each survivor is pulled back by half a pitch at
// each end that lies inside the card (strictly between 0 and `cardWidth`). Returns the new head.
TSeg* ClassificationPhase(TSeg* list, const TPolygon* keepOut, float pitch, float cardWidth);

// Joins the end of each piece to the start of the nearest later piece one pitch above (nearer
// than 2.01 pitches in X, the earlier on a tie), unless the step would cross a keep-out edge.
// The step goes directly behind the piece.
void LinkPhase(TSeg* list, const TPolygon* keepOut, float pitch);

// --- Calculation and commands --------------------------------------------------------------

// The whole calculation on one layer over the session's rectangle. Nothing happens off a
// circuit layer, on a layer without contours, or with a pitch under 0.01. Except in zone mode 2
// the layer's hatches are deleted first; the new paths go to the end of `Hatches[layer]`.
// `platform` may be null; otherwise it hears the phases in the status line.
// `stats`, when given, is added to.
void CalculateHatches(Board& b, int layer, const HatchSettings& s, const HatchSession& session,
                      Platform* platform, HatchStats* stats = nullptr);

// What the progress dialog runs: the active layer, or every circuit layer with `allLayers`,
// each made active, repainted and hatched (a layer without contours is passed by in silence);
// then the active layer comes back and the view is repainted.
void CalculateHatchesOnLayers(Board& b, const HatchSettings& s, const HatchSession& session,
                              Platform* platform);

// A rectangle dragged in zone mode: it becomes the session's zone and the hatches of the
// chosen layers are calculated at once and added to what they hold. The pick stays pending for
// the next rectangle; that is the caller's part.
void HatchSelectedZone(Board& b, HatchSession& session, const HatchSettings& s,
                       const HatchRect& dragged, Platform* platform);

// "&Delete hatches": the hatches of the active layer, or of all four circuit layers.
void DeleteHatches(Board& b, bool allLayers);

}  // namespace isolith
