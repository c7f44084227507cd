// The section walk: up to eight sections in the user's order (centering holes, drilling per
// tool, engraving and hatching per layer, cutting out), each optionally mirrored in X about the
// zero point, each path chained to the nearest next one. Drives the Mill command when the
// section sequence is on.
#pragma once

#include <string>

#include "output/driver/OutputContext.h"

namespace isolith {

// Section codes of `MultiSequence`.
inline constexpr int kSectionNone = 0;
inline constexpr int kSectionCentreHoles = 1;
inline constexpr int kSectionDrillFirst = 2;  // 2..9: drilling, row (code - 2) of the tool set
inline constexpr int kSectionDrillLast = 9;
inline constexpr int kSectionEngraveFirst = 10;  // 10..13: engraving of circuit layers 0..3
inline constexpr int kSectionHatchFirst = 14;    // 14..17: hatching of circuit layers 0..3
inline constexpr int kSectionCutting = 18;

// Depth of engraving and hatching for the front end of the plotter variant.
inline constexpr float kPlotterVariantDepth = 0.25f;

// Writes the sections of `MultiSequence` / `MultiMirror` in `format` to `path` (the save dialog
// asks when it is empty). Right after the header every contour is turned to a non-negative
// turning sum; nothing else is re-oriented. True when the whole file was written; otherwise the
// previous file stands as it was.
bool SectionWalk(OutputContext& context, const std::string& path, int format);

}  // namespace isolith
