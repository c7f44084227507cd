// The quadratic phases of the hatch calculation with a spatial index in front of their tests.
//
// Each gives, list for list, what its full scan in Hatches.h gives: the same tests
// (HatchPredicates.h) on the same candidates that could pass them, in the same order wherever
// the order decides. Only candidates that cannot pass are left out.
#pragma once

#include "toolpath/Hatches.h"

namespace isolith {

// Each piece in list order against the keep-out edges whose boxes meet its X range, met in
// polygon and vertex order; a new piece is reached by the walk along the list.
void CrossingPhaseIndexed(TSeg* list, const TPolygon* keepOut, HatchStats* stats = nullptr);

// Each piece against the keep-out shapes that can hold its test points; a piece falls when any
// one does, so the order of the shapes does not matter.
TSeg* ClassificationPhaseIndexed(TSeg* list, const TPolygon* keepOut, float pitch, float cardWidth,
                                 HatchStats* stats = nullptr);

// Each piece against the later pieces whose first end lies about one pitch above its end, met in
// list order, and the step it takes against the keep-out edges that its box meets.
void LinkPhaseIndexed(TSeg* list, const TPolygon* keepOut, float pitch,
                      HatchStats* stats = nullptr);

}  // namespace isolith
