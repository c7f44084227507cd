// Operations on the vertex chain of a path (TPolygon) and on working segment lists (TSeg).
#pragma once

#include <cstdint>
#include <vector>

#include "core/board/Records.h"

namespace isolith {

// Number of vertices of a path.
int CountPoints(const TPolygon& polygon);

// Appends a vertex at the end of the chain and returns it.
TXY* AppendPoint(TPolygon& polygon, float x, float y);
// The same for a builder that keeps the tail: `tail` is the last vertex (null when not known
// yet) and becomes the new one.
TXY* AppendPoint(TPolygon& polygon, TXY*& tail, float x, float y);

// The last vertex of the chain, null for an empty path.
TXY* LastPoint(const TPolygon& polygon);

// The vertex before `point`; null when `point` is the first (or not in the chain).
TXY* PreviousPoint(const TPolygon& polygon, const TXY* point);

// Reverses the direction of a path by exchanging coordinates between the two ends of the chain,
// walking inward. The vertex records stay where they are and keep their flags.
void ReversePolygon(TPolygon& polygon);

// Frees the vertex chain and leaves the path empty.
void FreePoints(TPolygon& polygon);

// Total turning of a chain in radians: positive is counter-clockwise. The turn at a repeated
// vertex is skipped, an exact half turn (a leg folding back) is not added, and the closing turn
// at the first vertex is not counted. 0 for fewer than two vertices.
float TurnSum(const TXY* firstPoint);

// Where a point lies against a path (closed by one more edge unless its ends are near within
// 0.01): 1 inside, 0 on the boundary within 0.01, -1 outside.
int ContainsPoint(const TPolygon& polygon, float x, float y);

// The same test over a list of paths: 0 at the first boundary hit, 1 at the first path that
// contains the point, -1 when none does.
int ListContainsPoint(const TPolygon* list, float x, float y);

// ContainsPoint for a path of many vertices asked about many points. The ray of the test goes
// straight up, so only the edges whose X range reaches the point's X (within the boundary
// tolerance) can count; the path's X range is cut into columns, each holding the edges that
// reach it. The answers are those of ContainsPoint, whatever the point. Memory stays a few
// entries per edge however long the edges are: the columns widen when long edges would
// otherwise fill many of them.
class ContainmentColumns {
 public:
  explicit ContainmentColumns(const TPolygon& polygon);
  int Contains(float x, float y) const;

 private:
  struct Edge {
    float x0, y0, x1, y1;
  };
  int Column(double x) const;

  std::vector<Edge> edges_;
  std::vector<uint32_t> start_;       // column c holds items_[start_[c] .. start_[c + 1])
  std::vector<uint32_t> items_;       // edge numbers, in path order within a column
  std::vector<uint32_t> everywhere_;  // edges with an X that is not finite: always tested
  double left_ = 0, inverse_ = 0;
  int columns_ = 1;
};

// Removes and frees each segment whose two ends are near within 0.01; returns the new head.
TSeg* RemoveDegenerateSegments(TSeg* list);

}  // namespace isolith
