#include "output/driver/NearestPoints.h"

#include <algorithm>
#include <cmath>

#include "output/driver/WalkSteps.h"

namespace isolith {

namespace {

// Grid side: about one point per cell, at most this many cells a side, so that a far point does
// not make the grid huge.
constexpr int kMaxSide = 2048;

}  // namespace

NearestPoints::NearestPoints(int count) : cellOfRank_(count, -1), alive_(count, 0) {
  entries_.reserve(count);
}

void NearestPoints::Add(int rank, double x, double y) {
  // A point off the plane never comes nearer than anything: the scan passes over it.
  if (!std::isfinite(x) || !std::isfinite(y)) return;
  entries_.push_back({rank, x, y});
  alive_[rank] = 1;
  ++alive_count_;
}

int NearestPoints::CellOf(double v, double origin, int limit) const {
  const double c = std::floor((v - origin) / cell_);
  if (!(c > 0)) return 0;
  return c >= limit - 1 ? limit - 1 : static_cast<int>(c);
}

void NearestPoints::Build() {
  built_ = true;
  if (entries_.empty()) return;
  double maxX = entries_[0].x, maxY = entries_[0].y;
  minX_ = maxX, minY_ = maxY;
  for (const Entry& e : entries_) {
    minX_ = std::min(minX_, e.x), maxX = std::max(maxX, e.x);
    minY_ = std::min(minY_, e.y), maxY = std::max(maxY, e.y);
  }
  const double width = maxX - minX_, height = maxY - minY_, extent = std::max(width, height);
  const int side = std::clamp(static_cast<int>(std::sqrt(double(entries_.size()))), 1, kMaxSide);
  cell_ = extent > 0 && std::isfinite(extent) ? extent / side : 1;
  columns_ = std::clamp(static_cast<int>(width / cell_) + 1, 1, kMaxSide + 1);
  rows_ = std::clamp(static_cast<int>(height / cell_) + 1, 1, kMaxSide + 1);
  cells_.assign(static_cast<size_t>(columns_) * rows_, {});
  aliveInCell_.assign(cells_.size(), 0);
  for (const Entry& e : entries_) {
    const int index = CellIndex(CellOf(e.x, minX_, columns_), CellOf(e.y, minY_, rows_));
    cells_[index].push_back(e);  // in rank order, since the entries came so
    cellOfRank_[e.rank] = index;
    ++aliveInCell_[index];
  }
  entries_.clear();
  entries_.shrink_to_fit();
}

void NearestPoints::Remove(int rank) {
  if (rank < 0 || rank >= static_cast<int>(alive_.size()) || !alive_[rank]) return;
  if (!built_) Build();
  alive_[rank] = 0;
  --alive_count_;
  --aliveInCell_[cellOfRank_[rank]];
}

int NearestPoints::Nearest(double x, double y) {
  if (!built_) Build();
  if (alive_count_ == 0 || !std::isfinite(x) || !std::isfinite(y)) return -1;
  const int cx = CellOf(x, minX_, columns_), cy = CellOf(y, minY_, rows_);
  int bestRank = -1;
  double best = 0;
  const int maxRing = std::max(columns_, rows_);
  for (int ring = 0; ring <= maxRing; ++ring) {
    // Every cell of this ring and beyond lies at least (ring - 1) cells from the point; with a
    // winner nearer than that (and a hair of room for rounding) the search is over. An equal
    // distance still searches on, since a lower rank may stand there.
    if (bestRank >= 0 && ring >= 2) {
      const double reach = (ring - 1) * cell_ * (1 - 1e-9);
      if (reach * reach > best) break;
    }
    const int x0 = cx - ring, x1 = cx + ring, y0 = cy - ring, y1 = cy + ring;
    const auto visit = [&](int gx, int gy) {
      if (gx < 0 || gx >= columns_ || gy < 0 || gy >= rows_) return;
      const int index = CellIndex(gx, gy);
      if (aliveInCell_[index] == 0) return;
      for (const Entry& e : cells_[index]) {
        if (!alive_[e.rank]) continue;
        const double d = Distance2(x, y, e.x, e.y);
        if (bestRank < 0 || d < best || (d == best && e.rank < bestRank)) {
          best = d;
          bestRank = e.rank;
        }
      }
    };
    for (int gy = std::max(y0, 0); gy <= std::min(y1, rows_ - 1); ++gy) {
      if (gy == y0 || gy == y1) {
        for (int gx = std::max(x0, 0); gx <= std::min(x1, columns_ - 1); ++gx) visit(gx, gy);
      } else {
        visit(x0, gy);
        if (x1 != x0) visit(x1, gy);
      }
    }
  }
  return bestRank;
}

}  // namespace isolith
