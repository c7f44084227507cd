// The polyline offsetter of the card cut path: a chain moved sideways by a distance, with arcs or
// mitres at outer corners, intersections at inner corners, and the loops that tight inner corners
// leave cut out again.
#pragma once

#include "core/board/Records.h"

namespace isolith {

// Angles and lengths of the card cut path: arcs only at corners sharper than a right angle, in
// steps of ten degrees; the source thinned to 0.1 mm and the result's vertices at least 0.1 mm
// apart.
inline constexpr float kCutArcAngle = 1.5725416f;
inline constexpr float kCutArcStep = 0.17453292f;
inline constexpr float kCutSimplify = 0.1f;
inline constexpr float kCutMinLength = 0.1f;

// Offsets the chain that starts at `first` by `offset` on its left (`leftSide`) or right side,
// looking along the chain. A chain whose ends are no further apart than the offset is taken as
// closed. An outer corner turning by at least `arcAngle` gets points on a circle round the vertex
// every `arcStep`; smaller outer corners are mitred. The source is thinned to points more than
// `simplify` apart (retried with 3 and 9 times that when nothing survives), and with
// `minLength` not 0 the result keeps no vertex within `minLength` of the one before.
//
// Returns a new list of paths, the caller's to free; null when nothing survives (an offset under
// 0.05, fewer than two points, or a chain smaller than the offset both ways).
TPolygon* OffsetPolyline(const TXY* first, bool leftSide, float offset, float arcAngle,
                         float arcStep, float simplify, float minLength);

}  // namespace isolith
