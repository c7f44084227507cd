// A filled copper area as straight strokes that every calculator already understands: its
// outline as thin strokes, and inside a scan-line fill of overlapping strokes of one width, each
// kept a half width off the edges so that the copper ends where the area ends. Areas cleared
// after the area was drawn are left out of both.
#pragma once

#include <vector>

#include "import/modern/Outlines.h"

namespace isolith {

inline constexpr double kRegionOutlineWidth = 0.05;  // mm, the pen of the outline strokes

struct FillStroke {
  OutlinePoint a, b;
  double width = 0;
};

// The width of the fill strokes of an area whose box is `w` by `h` mm: finer for small areas so
// that narrow parts are filled too.
double RegionFillWidth(double w, double h);

// The strokes of the even-odd area `region`, less every area of `cleared` (each an even-odd set
// of outlines of its own). The fill strokes have the width of RegionFillWidth, scan lines at a
// third of it, with short upright strokes joining each line to the one below so that the fill
// is one piece wherever the area is.
std::vector<FillStroke> FillRegion(const std::vector<Outline>& region,
                                   const std::vector<const std::vector<Outline>*>& cleared);

}  // namespace isolith
