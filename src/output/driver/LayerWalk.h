// The layer walk: one layer at a time, in two passes whose order the sequence chooses, then
// the cut paths. Drives the "Export" and "File export" flow and the Mill command when the
// section sequence is off.
#pragma once

#include <string>

#include "output/driver/OutputContext.h"

namespace isolith {

// `SingleSequence` values, and the one that only the walk knows.
enum ExportSequence : int {
  kMillOnly = 0,
  kDrillOnly = 1,
  kMillThenDrill = 2,
  kDrillThenMill = 3,
  kAllDrillsFirst = 99,  // everything in the first pass, drills first
};

// Whether drills, and contours with their hatches, are walked in pass 0 or 1 of a sequence.
bool DrillsInPass(int sequence, int pass);
bool ContoursInPass(int sequence, int pass);

// Writes `layer` in `format` to `path` (the save dialog asks when it is empty). Drills (with the
// centering holes) when `withDrills`, contours with the layer's hatches when `withContours`, cut
// paths when `withCutouts` and the "card contour" choice are set. The zero point is
// (zeroX, zeroY). Hatches and contours take the nearest start with `contourOptim`; drills the
// nearest hole to the list's first drill with `drillOptim`. True when the whole file was written;
// otherwise the previous file stands as it was.
bool ExportLayerWalk(OutputContext& context, int format, const std::string& path, int layer,
                     bool withContours, bool withDrills, bool withCutouts, float zeroX, float zeroY,
                     int sequence, bool contourOptim, bool drillOptim);

}  // namespace isolith
