// Plane figures of the modern reading, in millimetres and double precision: the outlines of
// regions, of aperture shapes and of cleared areas, and the chains of chords that stand for arcs.
#pragma once

#include <vector>

namespace isolith {

struct OutlinePoint {
  double x = 0, y = 0;
};
using Outline = std::vector<OutlinePoint>;  // closed: the last point joins the first

// An arc from `from` to `to` round `centre`, clockwise or not, as the points of chords that stay
// within `tolerance` of it (the start left out, the end always last). `full` makes an arc whose
// ends meet a whole turn rather than nothing.
std::vector<OutlinePoint> ArcChords(OutlinePoint from, OutlinePoint to, OutlinePoint centre,
                                    bool clockwise, bool full, double tolerance);

// A circle of `diameter` round `centre` as a polygon within `tolerance`.
Outline CircleOutline(OutlinePoint centre, double diameter, double tolerance);

// The outline of a stroke of round pen `width` from `a` to `b` (a stadium).
Outline StrokeOutline(OutlinePoint a, OutlinePoint b, double width, double tolerance);

// A rectangle of sizes `w` by `h` round `centre`, and an obround (a rectangle with half-round
// short ends) likewise.
Outline RectangleOutline(OutlinePoint centre, double w, double h);
Outline ObroundOutline(OutlinePoint centre, double w, double h, double tolerance);

// Whether `p` lies inside the even-odd union of `outlines`.
bool InsideOutlines(const std::vector<Outline>& outlines, OutlinePoint p);

}  // namespace isolith
