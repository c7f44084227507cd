// The tests of the hatch phases, one piece against one edge, shape or later piece at a time.
// The full scans of Hatches.cpp and the indexed scans of HatchPhasesIndexed.cpp both call these,
// so the two can differ only in which candidates they offer, never in what a test decides.
#pragma once

#include <cmath>

#include "core/board/Board.h"
#include "toolpath/ContourIndex.h"

namespace isolith::hatch {

// The ordered box of a segment, widened by `mx` on the X axis and `my` on the Y axis.
IndexBox SegmentBox(float x1, float y1, float x2, float y2, float mx, float my);
// The box of a keep-out edge as the crossing walk compares it: widened by 0.01 on every side.
IndexBox EdgeBox(const TXY& a, const TXY& b);
// The box of a scan piece as the crossing walk asks with it: its X range widened by 0.01.
IndexBox PieceQuery(const TSeg& s);

// One step of the crossing walk of piece `s` over edge (a, b): when the edge's box meets the
// piece's present `range` and the two cross, the piece is split there (the far piece directly
// behind it) and `range` is taken again from its bare ends.
void CrossEdge(TSeg* s, IndexBox& range, const TXY& a, const TXY& b, const IndexBox& edge);

// Where ContainsPoint(polygon, ...) can be other than -1: inside `box`, the vertices' box grown
// by more than the 0.01 of the boundary test (not finite when a vertex is not). A chain whose
// ends are near but not the same is not closed for the ray test, so a point below it in the
// column of its gap counts as inside: `below` then reaches from that column down without bound.
struct ContainmentReach {
  IndexBox box;
  bool open = false;
  IndexBox below;
};
ContainmentReach ReachOf(const TPolygon& polygon);

// The test of one piece: too short, or its middle, or else its point at three quarters, inside
// a keep-out shape or on its edge (`inside(x, y)` answers that for the whole keep-out list). A
// piece whose first quarter alone lies in a shape survives.
template <class Inside>
bool PieceRemoved(const TSeg& s, Inside&& inside) {
  if (std::fabs(double(s.x2) - s.x1) <= 0.2) return true;
  float m = static_cast<float>((double(s.x1) + s.x2) * 0.5);
  if (inside(m, s.y1)) return true;
  m = static_cast<float>((double(m) + s.x2) * 0.5);
  return inside(m, s.y1);
}

// Pulls each end of a piece back by half a pitch, so that the cutter stays as far from the
// shape that cut the line as the lines stay from each other. The card's edges are not a shape:
// an end at or beyond them stays where it is, whatever the zone.
void PullBack(TSeg& s, float pitch, float cardWidth);

// The search limit of a link: 2.01 pitches.
float LinkLimit(float pitch);
// One step of the link search from the end of `s`: a later piece `t` whose first end lies one
// pitch above becomes the `best` when it is strictly nearer in X than `bestDistance` so far.
void ConsiderLinkTarget(const TSeg& s, TSeg* t, float pitch, TSeg*& best, float& bestDistance);
// The box that holds the first end of every piece the link search from `s` can take.
IndexBox LinkTargetQuery(const TSeg& s, float pitch);
// Whether the step from (x1, y1) to (x2, y2) crosses the keep-out edge (a, b), the boxes of both
// compared first without margin.
bool LinkCrossesEdge(float x1, float y1, float x2, float y2, const TXY& a, const TXY& b);

}  // namespace isolith::hatch
