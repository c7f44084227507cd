// The quadratic phases of the contour calculation with a spatial index in front of their tests.
//
// Each gives, list for list, what its full scan in Contours.h gives: the same tests
// (ContourPredicates.h) on the same pairs that could pass them, in the same order wherever the
// order decides. Only pairs that cannot pass are left out.
#pragma once

#include "toolpath/Contours.h"

namespace isolith {

// Every segment A in list order against each later segment B whose box may overlap A's, met in
// list order; a B that is cut is followed by its new piece, as the walk along the list does.
void IntersectionPhaseIndexed(TSeg* list, ContourStats* stats = nullptr);

// Each segment against the elements that can reach it; a segment falls when any one rejects it,
// so the order of the elements does not matter. Nor does the order of the segments, whose tests
// read the board alone: with `threads` 2 a second thread takes the second half of the list.
TSeg* RemovalPhaseIndexed(const Board& b, int layer, TSeg* list, float padOffset, float trackOffset,
                          bool fast, ContourStats* stats = nullptr, int threads = 1);

// A segment falls when an earlier segment that stayed has the same ends.
TSeg* RemoveDuplicateSegmentsIndexed(TSeg* list);

// The chains, each step taking the first remaining segment in list order that fits an end.
TPolygon* ChainSegmentsIndexed(TSeg* list);

// Open chains joined end to start, each chain in list order taking the first chain in list
// order whose start lies near its end, as long as it stays open.
TPolygon* BridgeChainsIndexed(TPolygon* list, float trackOffset);

}  // namespace isolith
