#include "toolpath/ContourIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace isolith {

namespace {

// Cells on a side of level 0 at most: bounds the memory whatever the region and the count.
constexpr double kMaxCellsPerAxis = 4096;
// The most cells an item is registered in at one level before it moves to a coarser one.
constexpr long kCellsPerItem = 32;

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
    // A long thin box stays in the fine cells along it rather than in coarse cells that every
    // query nearby would visit.
    const long cells = (long(cx1) - cx0 + 1) * (long(cy1) - cy0 + 1);
    if (cells > kCellsPerItem) {
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

namespace {
constexpr int kLabelBits = 63;
constexpr uint64_t kLabelEnd = uint64_t(1) << kLabelBits;
}  // namespace

ListOrder::ListOrder(size_t n) {
  next_.resize(n);
  prev_.resize(n);
  label_.resize(n);
  for (size_t i = 0; i < n; ++i) {
    next_[i] = i + 1 < n ? static_cast<int>(i + 1) : -1;
    prev_[i] = static_cast<int>(i) - 1;
  }
  Relabel();
  relabels_ = relabelledItems_ = 0;
}

int ListOrder::InsertBehind(int parent) {
  const int id = static_cast<int>(next_.size());
  auto room = [&] {
    const int after = next_[parent];
    return (after < 0 ? kLabelEnd : label_[after]) - label_[parent];
  };
  if (room() < 2) Rebalance(parent);
  const int after = next_[parent];
  const uint64_t low = label_[parent];
  next_.push_back(after);
  prev_.push_back(parent);
  label_.push_back(low + room() / 2);
  if (after >= 0) prev_[after] = id;
  next_[parent] = id;
  return id;
}

void ListOrder::Rebalance(int id) {
  // The range of 2^bits labels that holds `id`, grown a bit at a time; `first` and `last` are
  // its first and last items, `count` how many it holds.
  int first = id, last = id;
  size_t count = 1;
  double limit = 1;  // (2 / 1.4)^bits
  for (int bits = 1; bits < kLabelBits; ++bits) {
    limit *= 2 / 1.4;
    const uint64_t size = uint64_t(1) << bits;
    const uint64_t base = label_[id] & ~(size - 1);
    while (prev_[first] >= 0 && label_[prev_[first]] >= base) first = prev_[first], ++count;
    while (next_[last] >= 0 && label_[next_[last]] < base + size) last = next_[last], ++count;
    // The range must take one more item with a gap of at least 2 behind each.
    if (static_cast<double>(count + 1) > limit || (count + 1) * 2 > size) continue;
    ++relabels_;
    relabelledItems_ += count;
    const uint64_t step = size / (count + 1);
    uint64_t v = base + step;
    for (int at = first;; at = next_[at], v += step) {
      label_[at] = v;
      if (at == last) break;
    }
    return;
  }
  Relabel();
}

void ListOrder::Relabel() {
  ++relabels_;
  relabelledItems_ += next_.size();
  // The labels fill [1, 2^63) evenly, leaving as much room as possible behind each item.
  const uint64_t step = kLabelEnd / (next_.size() + 1);
  uint64_t v = step;
  for (int id = next_.empty() ? -1 : 0; id >= 0; id = next_[id], v += step) label_[id] = v;
}

}  // namespace isolith
