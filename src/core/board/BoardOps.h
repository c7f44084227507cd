// The operations of the board model. They work on the one model handed to them.
#pragma once

#include <functional>

#include <utility>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

// Same point: both differences strictly below 0.001 mm.
bool SamePoint(double x1, double y1, double x2, double y2);

// Aperture tables back to their start values: shape 0, pads 1.27, tracks 0.635, drills 0.635.
void ResetApertureTables(Board& b);

// Unlink and free one record; a hover or reference name pointing at it is cleared first.
void RemovePad(Board& b, int layer, TPad* pad);
void RemoveTrack(Board& b, int layer, TTrack* track);
void RemoveDrill(Board& b, TDrill* drill);
// Removes, in one pass over the list, every track of `layer` for which `condition` holds; the
// number removed.
int RemoveTracksWhere(Board& b, int layer, const std::function<bool(const TTrack&)>& condition);
// Removes every track joining the two points either way, on the active layer or on all circuit
// layers, `except` excepted; true when one was removed.
bool RemoveTracksAt(Board& b, float x1, float y1, float x2, float y2, bool allLayers,
                    const TTrack* except);

// Free a whole list; FreePads also clears HoverPad and RefPad when it meets them.
void FreePads(Board& b, TPad* head);
void FreeTracks(Board& b, TTrack* head);
void FreeDrills(Board& b, TDrill* head);
void FreePolygons(TPolygon* head);
void FreeCutouts(Board& b, TCutout* head);
// Frees the contours and hatches of the active layer (or all); a layer without contours keeps
// its hatches.
void FreeContours(Board& b, bool allLayers);

// Empties every list and returns the card, origin and view to their defaults.
void ResetJob(Board& b);
// Empties the hover names and the pending command. The application's ResetHover adds the
// reframe and the cursor.
void ClearHover(Board& b);

TPad* LastPad(TPad* head);
TTrack* LastTrack(TTrack* head);
TPolygon* LastPolygon(TPolygon* head);

// Whether a circuit layer holds pads or tracks, or the drill and cutout layers their items.
bool LayerHasContent(const Board& b, int layer);
// Number of layers that hold something.
int CountLayers(const Board& b);

// Box of the lists given (pads and drills by centre, tracks by their ends, cut-outs by outline).
void BoundingBox(const TPad* pads, const TTrack* tracks, const TDrill* drills,
                 const TCutout* cutouts, float& xmin, float& ymin, float& xmax, float& ymax,
                 bool accumulate);
void FullBoundingBox(const Board& b, float& xmin, float& ymin, float& xmax, float& ymax);

void ScaleLists(Board& b, TPad* pads, TTrack* tracks, TDrill* drills, TCutout* cutouts,
                float factor, bool lists, bool padTables, bool trackTables, bool drillTable,
                bool card);
void ShiftLists(Board& b, float dx, float dy, bool all, bool withOrigin);

// Percentage of coincidence of a layer's pads (or the drills for layer 4) with those of layer 0.
int PadOverlap(const Board& b, int layer);
// The pairs of `a` x `b` that are the same point (SamePoint); PadOverlap's count.
int CountSamePoints(std::vector<std::pair<double, double>> a,
                    std::vector<std::pair<double, double>> b);
// Moves a layer onto layer 0; 1 for all but layers 0 and 5.
int AlignLayer(Board& b, int layer);
// Removes gaps among the circuit layers.
void CompactLayers(Board& b);
// The visible window back to the whole card, with an empty zoom history.
void ResetView(Board& b);
// The box of one layer's content: pads and tracks, the drills, or the cut-outs.
void LayerBoundingBox(const Board& b, int layer, float& xmin, float& ymin, float& xmax,
                      float& ymax);
// Fits the card round the content with margins of at least 2.54 mm; `thickness` is the largest
// cutting depth of the machining settings.
void SetCardFromContent(Board& b, float thickness);

}  // namespace isolith
