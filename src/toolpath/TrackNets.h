// Track nets: the walks that find which pads and tracks touch each other.
//
// A walk marks what it reaches with the visited bit (kVisited, 0x80) and never clears it: the
// command that walks clears the marks of its layer before it begins and after it ends. The walks
// are depth-first and visit in list order, exactly as a recursive walk would, but keep their own
// stack so that a net of any number of tracks can be followed.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// How a walk finds the items it tests. Both give the same marks: `Scan` tests every item of each
// list, `Indexed` first narrows the lists to the items near enough to touch, and is the one the
// program uses; `Scan` stays as the reference it is checked against.
enum class NetSearch { Indexed, Scan };

// Half the aperture width of a track of a circuit layer.
float TrackHalfWidth(const Board& board, int layer, const TTrack& track);
// The reach of a pad in the walks: half the smaller of its width and height.
float PadTraceSize(const Board& board, int layer, const TPad& pad);

// The contact tests of the walks, apart from which pairs they are tried on.
//
// A pad reaching out to a track: r = the track's half-width + the pad's size. The first end
// counts up to r inclusive, the second end only below r, the perpendicular foot up to r.
bool PadReachesTrack(const TPad& pad, float padSize, const TTrack& track, float halfWidth);
// A track reaching out to a pad: both ends and the foot count up to r inclusive.
bool TrackReachesPad(const TTrack& track, float halfWidth, const TPad& pad, float padSize);
// Two tracks of one layer: an end of one within h + h2 of an end of the other, or their axes
// crossing within min(h, h2) at a point whose foot on `other` lies within h2.
bool TracksMeet(const TTrack& track, float h, const TTrack& other, float h2);

// Clears the visited mark of the tracks of one circuit layer, and of its pads.
void ClearTrackMarks(Board& board, int layer);
void ClearPadMarks(Board& board, int layer);
// Clears the visited mark of the pads and tracks of all four circuit layers.
void ClearNetMarks(Board& board);

// Marks a pad and every track of the four circuit layers it reaches, and goes on from each
// through pads to other layers: the electrical net of the pad.
void TracePad(Board& board, int layer, TPad* pad, NetSearch search = NetSearch::Indexed);

// Marks a track and follows its neighbours. With `throughPads` it passes through pads to the
// other layers and so marks the electrical net. Without, it stays on the layer and follows only
// tracks that really meet, whatever their widths: both half-widths are taken as the smaller of
// 0.01 and the half-width of the track being followed. Disabled tracks and copper planes are
// followed like any other.
void TraceTrack(Board& board, int layer, bool throughPads, TTrack* track,
                NetSearch search = NetSearch::Indexed);

// The walk of the copper-plane detection: same layer, tracks only, with their true widths, and
// disabled tracks are not followed.
void TraceCopperTrack(Board& board, int layer, TTrack* track,
                      NetSearch search = NetSearch::Indexed);

// The feeding step of the copper-plane detection: each track of the layer not yet marked that
// touches a pad of the same layer that is not disabled (the first such pad in list order) is
// followed by TraceCopperTrack. Pads on other layers do not count. Marks stay set.
void TraceTracksFedByPads(Board& board, int layer, NetSearch search = NetSearch::Indexed);

}  // namespace isolith
