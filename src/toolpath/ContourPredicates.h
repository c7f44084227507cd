// The tests of the contour phases, one pair or one element at a time. The full scans of
// Contours.cpp and the indexed scans of ContourPhasesIndexed.cpp both call these and nothing
// else, so the two can differ only in which pairs they offer, never in what a test decides.
#pragma once

#include <vector>

#include "core/board/Board.h"
#include "toolpath/ContourIndex.h"

namespace isolith::contour {

// The ordered box of a segment, widened by `margin` on every side.
IndexBox SegmentBox(const TSeg& s, float margin);
// The box test in front of an intersection (bounds included).
bool Overlap(const IndexBox& a, const IndexBox& b);
// Splits `s` at (x, y) unless the point is near one of its ends: the far piece goes directly
// behind it. True when it was split.
bool SplitAt(TSeg* s, float x, float y);

// Whether a track or a pad of the layer rejects the segment whose midpoint is (mx, my).
bool TrackRejects(const Board& b, int layer, const TTrack& t, const TSeg& s, float mx, float my,
                  float trackOffset, bool fast);
bool PadRejects(const Board& b, int layer, const TPad& p, const TSeg& s, float mx, float my,
                float padOffset);
// The midpoint the removal tests use.
void Midpoint(const TSeg& s, float& mx, float& my);

// Where an element can reject. With kBoxes every point it rejects lies in one of the boxes it
// gives (a track gives several along its length, each at most `piece` long on its longer axis).
// kEverywhere: no box can be given, and the element is tested against every segment. This is
// the case of an obround pad that may reject through the third point of its test, which lies at
// the half-length of the pad's straight part on the long axis, wherever the segment is. kNone:
// the element rejects nothing.
enum class Reach { kNone, kBoxes, kEverywhere };
Reach TrackReach(const Board& b, int layer, const TTrack& t, float trackOffset, double piece,
                 std::vector<IndexBox>& boxes);
Reach PadReach(const Board& b, int layer, const TPad& p, float padOffset, IndexBox& box);

// Whether a later segment repeats an earlier one: both ends near, in the same or the opposite
// order.
bool SameEnds(const TSeg& earlier, const TSeg& later);

// Which of the four chaining tests `s` passes first against the chain's start and end: 1 its
// first end meets the end, 2 its second end meets the end, 3 its second end meets the start,
// 4 its first end meets the start; 0 none.
int ChainFit(const TSeg& s, const TXY& start, const TXY& end);
// Takes `s` into the chain by the test it passed: its far end becomes the chain's new last
// vertex (1, 2) or new first vertex (3, 4). `last` is the chain's last vertex.
void ExtendChain(TPolygon& poly, TXY*& last, const TSeg& s, int fit);

}  // namespace isolith::contour
