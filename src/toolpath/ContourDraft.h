// The draft contour: every pad and track drawn as loose segments half an offset outside its
// copper. The contour and hatch calculators both start from it.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// Whether an element takes part in the calculation: bits 1 and 2 exclude it.
inline bool IsExcluded(uint8_t flags) {
  return (flags & 3) != 0;
}

// The draft of one pad of `layer` (its aperture from the layer's tables), as a new list of
// segments running counter-clockwise; null when the pad has none.
TSeg* BuildPadDraft(const Board& b, int layer, const TPad& pad, float offset);
// The draft of one track: two sides and two caps on the 45-degree grid; `fast` halves the caps.
TSeg* BuildTrackDraft(const Board& b, int layer, const TTrack& track, float offset, bool fast);

// Removes for good each track of the layer that is shorter than a tenth of its width: a dot
// drawn as a zero-length track is not copper worth isolating.
void PurgeShortTracks(Board& b, int layer);

// Purges short tracks, then the drafts of all pads and then all tracks of the layer, excluded
// elements skipped, in list order.
TSeg* BuildDraftContours(Board& b, int layer, float padOffset, float trackOffset, bool fast);

}  // namespace isolith
