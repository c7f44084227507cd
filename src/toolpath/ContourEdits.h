// Manual edits of the calculated contours of a layer: the picks that find a path, a segment or a
// free end under the cursor, the removal of a path or a segment, the addition of a segment, and
// the join of open paths whose ends have come close. The contour engine cannot always close a
// path; these let the person close it by hand before milling.
//
// Pick radii are given in millimetres: the caller converts its pixels by the view's scale
// (PickRadius).
#pragma once

#include <functional>

#include "core/board/Board.h"

namespace isolith {

// Pixel radii of the picks: the path and segment picks, the free end caught by the first click
// of "Add selected contour segments", and the snap of its second click to an end.
inline constexpr float kContourPickPixels = 5;
inline constexpr float kOpenEndPickPixels = 12;
inline constexpr float kEndSnapPixels = 4;

// `pixels` in millimetres at `pixelsPerMm` (the view's scale); 0 for a scale that is not positive.
float PickRadius(float pixels, float pixelsPerMm);

// A path is open when its first and last vertices differ by more than 0.1 on an axis.
bool IsOpenPath(const TPolygon& polygon);

// The path (or segment, as the vertex that starts it, with its path in `owner`) nearest to
// (x, y) by its line distance among the segments whose box, widened by `radius`, holds the
// point and that lie within `radius`; a strictly nearer one wins, so the first in list order
// keeps a tie. Null when none.
TPolygon* PickContour(TPolygon* list, float x, float y, float radius);
TXY* PickContourSegment(TPolygon* list, float x, float y, float radius, TPolygon** owner = nullptr);

// The first or last vertex of an open path nearest to (x, y), strictly within `radius`; a
// strictly nearer one wins, a path's first end tried before its last. Null when none.
TXY* PickOpenEnd(TPolygon* list, float x, float y, float radius);

// Removes `polygon` from the list and frees it. False when it is not in the list.
bool DeleteContour(TPolygon*& list, TPolygon* polygon);

// Removes the segment that starts at `start`: at the path's start the first vertex goes (and the
// path with it when fewer than two vertices remain); the last segment loses its last vertex;
// any other cuts the path in two, the second part a new path (flags 0) right behind it. False
// when `start` begins no segment of the list.
bool DeleteContourSegment(TPolygon*& list, TXY* start);

// A free segment: a new path (flags 0) appended with the two points.
TPolygon* AddFreeSegment(TPolygon*& list, float x1, float y1, float x2, float y2);

// Extends the path whose first or last vertex is `end` to (x, y): in front of the first vertex,
// or behind the last. The path, or null when `end` is the end of no path (nothing changes).
TPolygon* ExtendPathAtEnd(TPolygon* list, TXY* end, float x, float y);

// Joins open paths whose ends lie closer than `tolerance`, as long as a pair is found: for each
// open path A in list order, the nearest end of another open path B (A first to B first, A first
// to B last, A last to B first, A last to B last; strictly under the tolerance, strictly nearer
// wins). A and B are turned so that A ends where B starts; B's vertices follow A's last (B's
// first dropped when the two lie within 0.01), B leaves the list, and the walk starts again.
// `joined` is told each path that grew. True when anything was joined.
bool JoinContourEnds(TPolygon*& list, float tolerance,
                     const std::function<void(TPolygon&)>& joined = {});

}  // namespace isolith
