// Points, segments and lines of the toolpath engine. Points are passed as pairs of float
// coordinates in card millimetres; every result that is stored is a float.
//
// These are the exact operations the contour, hatch, copper-plane and card-contour calculators
// are built on: their tolerances and tie-breaks decide which segment survives, so a "better"
// intersection or distance here would change the toolpaths.
#pragma once

namespace isolith {

// Square root of dx squared plus dy squared.
float Distance(float x1, float y1, float x2, float y2);

// Both axis differences not greater than tol: a square test, and the bound counts as near.
bool NearPoints(float x1, float y1, float x2, float y2, float tol);

// Direction from the first point to the second in (-Pi, Pi], the Y difference multiplied by k.
// Coincident points give 0.
float SegmentAngle(float x1, float y1, float x2, float y2, float k = 1);

// Signed change of heading at the middle point, in (-Pi, Pi].
float TurnAngle(float x1, float y1, float x2, float y2, float x3, float y3);

// The point at distance r from (cx, cy) in direction a.
void PolarPoint(float cx, float cy, float r, float a, float& x, float& y);

// Length and SegmentAngle of a segment.
void PolarOfSegment(float x1, float y1, float x2, float y2, float& length, float& angle);

// Results of IntersectSegments.
enum IntersectCode : int {
  kParallel = 0,      // no intersection point (both vertical, or equal slopes apart)
  kOnBoth = 1,        // the point lies on both segments
  kOnFirstOnly = 2,   // on the first segment only
  kOnSecondOnly = 3,  // on the second segment only
  kOnNeither = 4,     // the lines cross outside both segments
};

// Intersection of the lines through two segments, and where it lies, within tol (strict
// comparisons on both axes). A segment is vertical when its two X are exactly equal; two
// vertical segments are parallel whatever their distance. Collinear sloped segments give the
// first point of the first segment.
int IntersectSegments(float x1, float y1, float x2, float y2, float x3, float y3, float x4,
                      float y4, float& x, float& y, float tol);

// The same intersection of the two infinite lines: 0 when parallel, 1 otherwise.
int IntersectLines(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                   float& x, float& y);

// Distance from P to the foot of its perpendicular on the segment, or kNoFoot when the foot lies
// outside the segment, however close P is to an end. The ends themselves are not considered:
// callers that want the true distance to a finite segment test the ends themselves.
float PointSegmentDistance(float px, float py, float x1, float y1, float x2, float y2);

// Distance from P to the foot of its perpendicular on the infinite line through the segment;
// kNoFoot if no foot can be found (the probe came out parallel to the line).
float PointLineDistance(float px, float py, float x1, float y1, float x2, float y2);

// The two points at distance kProbeLength from P in the directions a - Pi and a.
void PerpendicularThrough(float px, float py, float a, float& x1, float& y1, float& x2, float& y2);

// Foot of the perpendicular from P on the segment, found within 0.001. True when the foot lies
// on the segment (or no crossing could be computed, in which case the foot is P itself).
bool ProjectOnSegment(float px, float py, float x1, float y1, float x2, float y2, float& fx,
                      float& fy);

// Overlap of two ordered intervals [a1, a2] and [b1, b2], ends included.
bool IntervalsOverlap(float a1, float a2, float b1, float b2);

// Overlap of two boxes, each given by its ordered corners: the quick reject before
// IntersectSegments.
bool BoxesOverlap(float ax1, float ay1, float ax2, float ay2, float bx1, float by1, float bx2,
                  float by2);

}  // namespace isolith
