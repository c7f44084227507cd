// The card contour: the net of thin tracks on a circuit layer that draws the card's edge, taken
// off the layer and made a cut-out of the cutout layer, with its cut path.
#pragma once

#include "core/board/Board.h"
#include "toolpath/CutPath.h"

namespace isolith {

// Finds the card edge automatically: the leftmost and rightmost vertical tracks and the lowest
// and highest horizontal ones (by their first ends, the earlier on a tie) must be four different
// tracks of one net of tracks that really meet. That net is then taken as by CardContourFromNet
// (side asked: no) and the result is true. The visited marks are clear afterwards.
bool DetectCardContour(CutContext& context, int layer);

// Makes a cut-out of the tracks of `layer` that carry the visited mark, after asking (unless
// `context.confirm` is off). The outline starts at the track end nearest to (0, 0) and follows
// the marked tracks end to end within 0.01 mm; each track taken is removed from all circuit
// layers with its twins (same two ends). Branches and tracks that do not fit stay on their
// layer; closure is not checked. Then the cut path is calculated, with the side asked when
// `askSide`. Returns the new cut-out, or null when refused or nothing was marked.
TCutout* CardContourFromNet(CutContext& context, int layer, bool askSide);

// "Define" (card contour) after a click on a track: the net of HoverTrack on the active layer,
// tracks that really meet only, taken with the side asked. Marks are clear afterwards.
TCutout* DefineCardContour(CutContext& context);

// The detections that follow the opening of a layer file, when the layer has tracks: copper
// planes with "DetectGndPlanes", then the card contour with "DetectCutOut". When the card contour
// took every item of the layer, `previousLayer` becomes the active layer again.
void DetectAfterLoad(CutContext& context, int layer, int previousLayer);

}  // namespace isolith
