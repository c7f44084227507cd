#include "toolpath/ContourIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace isolith {

namespace {

// Cells on a side of level 0 at most: bounds the memory whatever the region and the count.
constexpr double kMaxCellsPerAxis = 4096;

float Lower(double v) {
  float f = static_cast<float>(v);
  return f > v ? std::nextafter(f, -std::numeric_limits<float>::infinity()) : f;
}

float Upper(double v) {
  float f = static_cast<float>(v);
  return f < v ? std::nextafter(f, std::numeric_limits<float>::infinity()) : f;
}

}  // namespace

bool IsFinite(const IndexBox& b) {
  return std::isfinite(b.x1) && std::isfinite(b.y1) && std::isfinite(b.x2) && std::isfinite(b.y2);
}

bool Contains(const IndexBox& outer, const IndexBox& inner) {
  return outer.x1 <= inner.x1 && inner.x2 <= outer.x2 && outer.y1 <= inner.y1 &&
         inner.y2 <= outer.y2;
}

IndexBox Union(const IndexBox& a, const IndexBox& b) {
  return {std::min(a.x1, b.x1), std::min(a.y1, b.y1), std::max(a.x2, b.x2), std::max(a.y2, b.y2)};
}

IndexBox Grown(const IndexBox& b, double margin) {
  return Outward(double(b.x1) - margin, double(b.y1) - margin, double(b.x2) + margin,
                 double(b.y2) + margin);
}

IndexBox Outward(double x1, double y1, double x2, double y2) {
  return {Lower(x1), Lower(y1), Upper(x2), Upper(y2)};
}

BoxGrid::BoxGrid(const IndexBox& region, size_t expected, double density) {
  double w = 0, h = 0;
  if (IsFinite(region)) {
    x0_ = region.x1;
    y0_ = region.y1;
    w = std::max(0.0, double(region.x2) - region.x1);
    h = std::max(0.0, double(region.y2) - region.y1);
  }
  const double n = std::max<double>(1, static_cast<double>(expected));
  double cell = std::sqrt(w * h * std::max(density, 1e-3) / n);
  cell = std::max(cell, std::max(w, h) / kMaxCellsPerAxis);
  if (!(cell > 0) || !std::isfinite(cell)) cell = std::max(1.0, std::max(w, h));
  // Levels down to a grid of at most two cells on each side.
  for (;;) {
    Level l;
    l.cell = cell;
    l.inverse = 1 / cell;
    l.nx = static_cast<int>(std::min(w / cell, kMaxCellsPerAxis)) + 1;
    l.ny = static_cast<int>(std::min(h / cell, kMaxCellsPerAxis)) + 1;
    l.cells.resize(static_cast<size_t>(l.nx) * l.ny);
    const bool last = l.nx <= 2 && l.ny <= 2;
    levels_.push_back(std::move(l));
    if (last) break;
    cell *= 2;
  }
}

int BoxGrid::CellX(const Level& l, double x) const {
  const double c = std::floor((x - x0_) * l.inverse);
  return c <= 0 ? 0 : c >= l.nx - 1 ? l.nx - 1 : static_cast<int>(c);
}

int BoxGrid::CellY(const Level& l, double y) const {
  const double c = std::floor((y - y0_) * l.inverse);
  return c <= 0 ? 0 : c >= l.ny - 1 ? l.ny - 1 : static_cast<int>(c);
}

void BoxGrid::Grow(int id) {
  if (static_cast<size_t>(id) >= stamp_.size()) {
    stamp_.resize(static_cast<size_t>(id) + 1, 0);
    dead_.resize(static_cast<size_t>(id) + 1, 0);
  }
}

void BoxGrid::NextEpoch() {
  if (++epoch_ == 0) {
    std::fill(stamp_.begin(), stamp_.end(), 0);
    epoch_ = 1;
  }
}

void BoxGrid::Insert(int id, const IndexBox& box) {
  Grow(id);
  dead_[id] = 0;
  if (!IsFinite(box)) {
    everywhere_.push_back(id);
    return;
  }
  for (Level& l : levels_) {
    const int cx0 = CellX(l, box.x1), cx1 = CellX(l, box.x2);
    const int cy0 = CellY(l, box.y1), cy1 = CellY(l, box.y2);
    if (cx1 - cx0 > 1 || cy1 - cy0 > 1) {
      if (&l != &levels_.back()) continue;
    }
    for (int cy = cy0; cy <= cy1; ++cy)
      for (int cx = cx0; cx <= cx1; ++cx)
        l.cells[static_cast<size_t>(cy) * l.nx + cx].push_back(id);
    ++l.entries;
    return;
  }
}

void BoxGrid::Remove(int id) {
  if (static_cast<size_t>(id) < dead_.size()) dead_[id] = 1;
}

ListOrder::ListOrder(size_t n) {
  next_.resize(n);
  label_.resize(n);
  for (size_t i = 0; i < n; ++i) next_[i] = i + 1 < n ? static_cast<int>(i + 1) : -1;
  Relabel();
  relabels_ = 0;
}

int ListOrder::InsertBehind(int parent) {
  const int id = static_cast<int>(next_.size());
  const int after = next_[parent];
  constexpr uint64_t kEnd = uint64_t(1) << 63;
  auto room = [&] { return (after < 0 ? kEnd : label_[after]) - label_[parent]; };
  if (room() < 2) Relabel();
  const uint64_t low = label_[parent];
  next_.push_back(after);
  label_.push_back(low + room() / 2);
  next_[parent] = id;
  return id;
}

void ListOrder::Relabel() {
  ++relabels_;
  // The labels fill [1, 2^63) evenly, leaving as much room as possible behind each item.
  const uint64_t step = (uint64_t(1) << 63) / (next_.size() + 1);
  uint64_t v = step;
  for (int id = next_.empty() ? -1 : 0; id >= 0; id = next_[id], v += step) label_[id] = v;
}

}  // namespace isolith
