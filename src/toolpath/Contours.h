// The isolation contours of a circuit layer: the outer boundary of the union of every pad and
// track grown by the tool, in as many passes as asked, chained into paths in cutting order.
#pragma once

#include "core/board/Board.h"

namespace isolith {

class Platform;

// What one calculation needs from the settings and the tool library.
struct ContourSettings {
  float distance = 0.25f;  // cutting width of the contour tool at depth, plus the margin
  int passes = 1;          // `MillingNb1`: successive contours
  int padPasses = 0;       // `MillingNb2`: extra contours round the pads
  bool fast = false;       // `FastCalcul`: simplified caps and track tests
  // The phases find their candidate pairs through a spatial index; false runs the full scans,
  // which give the same contours and are kept as the reference the index is checked against.
  bool indexed = true;
  int threads = 1;  // `CalculationThreads`: 2 shares the removal tests between two threads
};

// What a calculation did, summed over its passes: for measurements.
struct ContourStats {
  long long draftSegments = 0;
  long long pairsTested = 0;   // intersection pairs whose boxes were compared (indexed only)
  long long elementTests = 0;  // segment-element removal tests (indexed only)
  long long relabels = 0;      // times the working list was labelled afresh (indexed only)
};

// Offsets of pass `p`: pads grow with every pass, tracks stop at the last normal pass.
void PassOffsets(const ContourSettings& s, int p, float& padOffset, float& trackOffset);

// The phases, each over its working list, by full scans: the reference. The candidate pairs are
// every later segment whose box overlaps; the tests are those of ContourPredicates.h. The
// indexed phases (ContourPhasesIndexed.h) give the same results.
void IntersectionPhase(TSeg* list);
TSeg* RemovalPhase(const Board& b, int layer, TSeg* list, float padOffset, float trackOffset,
                   bool fast);
TSeg* RemoveDuplicateSegments(TSeg* list);
// Chains the segments (consumed) into paths, in the order the chains are made.
TPolygon* ChainSegments(TSeg* list);
// Removes each path with no or only one vertex; returns the new head.
TPolygon* RemoveEmptyContours(TPolygon* list);
// Joins open chains whose ends lie within half of `trackOffset`.
TPolygon* BridgeChains(TPolygon* list, float trackOffset);
// Makes each closed path start at its sharpest corner, unless the joint is as sharp.
void MoveStartToSharpestCorner(TPolygon* list);
// The open polylines along the engraved tracks of the layer.
TPolygon* EngravedTrackPaths(const Board& b, int layer);

// The whole calculation of one layer; deletes the layer's contours and hatches first. The
// counts of `s` are clamped (and stay clamped, for the caller to write back). `platform` may
// be null; otherwise it hears the phases in the status line. `stats`, when given, is added to.
void CalculateContours(Board& b, int layer, ContourSettings& s, Platform* platform,
                       ContourStats* stats = nullptr);

}  // namespace isolith
