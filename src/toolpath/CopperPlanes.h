// Copper planes: tracks that only fill an area of copper. A track that cannot be reached from any
// enabled pad of its layer through touching tracks is a plane (flag kTrackCopperPlane); planes
// are left out of the isolation contours and of the keep-out shapes of hatches.
#pragma once

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "toolpath/TrackNets.h"

namespace isolith {

// Marks as plane every track of the layer that no enabled pad of the same layer feeds. Returns
// true when at least one track is left unreached (and so is, or stays, a plane). Never clears
// the plane flag: a track the user made a plane keeps it even when reached. With `show` the
// view is repainted. The visited marks are clear afterwards.
bool DetectCopperPlanes(Board& board, Platform& platform, int layer, bool show,
                        NetSearch search = NetSearch::Indexed);

// Defines (or, with `define` false, undoes) the copper plane of the track net under the mouse
// (HoverTrack), after asking. Only tracks that really meet are taken, whatever their widths.
// A layer that is not a circuit layer refuses with the beep of `sound`; a layer without tracks,
// or no hovered track, does nothing. False when nothing changed.
bool CopperPlaneFromNet(Board& board, Platform& platform, int sound, bool define);

// "Detect all": detection on the active circuit layer, then its contours are freed. Ignored on a
// layer without tracks.
void DetectAllCopperPlanes(Board& board, Platform& platform);

// "Disable all": the plane flag is cleared on every track of the active circuit layer, then its
// contours are freed. Ignored on a layer without tracks.
void DisableAllCopperPlanes(Board& board, Platform& platform);

}  // namespace isolith
