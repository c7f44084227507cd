// The spatial index of the contour phases: which pairs are worth testing, never the test.
//
// The contour phases test pairs in list order, and the order of the tests decides the result.
// The index only narrows the candidates: a query hands out every item whose registered box may
// share a point with the query box (it may hand out more, never fewer), and the caller puts the
// candidates back into list order with ListOrder before it tests them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace isolith {

// An axis-aligned box with ordered corners.
struct IndexBox {
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

bool IsFinite(const IndexBox& b);
// Whether `outer` holds `inner`, bounds included.
bool Contains(const IndexBox& outer, const IndexBox& inner);
IndexBox Union(const IndexBox& a, const IndexBox& b);
// Whether two boxes share a point, bounds included; false when either holds a NaN.
inline bool Meet(const IndexBox& a, const IndexBox& b) {
  return a.x1 <= b.x2 && b.x1 <= a.x2 && a.y1 <= b.y2 && b.y1 <= a.y2;
}
// The region of a set of boxes, its non-finite ones left out.
class IndexRegion {
 public:
  void Add(const IndexBox& b) {
    if (!IsFinite(b)) return;
    box_ = any_ ? Union(box_, b) : b;
    any_ = true;
  }
  const IndexBox& Box() const { return box_; }
  double Area() const { return (double(box_.x2) - box_.x1) * (double(box_.y2) - box_.y1); }

 private:
  IndexBox box_;
  bool any_ = false;
};
// The box grown by `margin` on every side, rounded outwards to float.
IndexBox Grown(const IndexBox& b, double margin);
// The smallest float box that holds the box of these bounds.
IndexBox Outward(double x1, double y1, double x2, double y2);

// A hierarchy of uniform grids over a region: level 0 has cells of about one item's size, each
// next level cells twice as large, the last one at most two cells on a side. An item goes to
// the finest level where its box covers at most 32 cells (a long thin box lies along fine
// cells), so a long item costs about as little as a short one. Boxes outside the region fall into
// its border cells. An item whose box is not finite is handed to every query, and a query box that
// is not finite sees every item.
//
// Two boxes that share a point always meet in some cell: the cell of a coordinate is a
// non-decreasing function of it, at every level.
class BoxGrid {
 public:
  // `region`: where the items mostly lie; `expected`: about how many items there will be;
  // `density`: about how many items share a cell of level 0 in an even spread.
  BoxGrid(const IndexBox& region, size_t expected, double density = 1);

  // Registers item `id` (ids are small non-negative numbers) with a box. Registering an id
  // again adds the new box to the old one; a query still hands the item out once.
  void Insert(int id, const IndexBox& box);
  // The item is no longer handed out.
  void Remove(int id);

  // Calls `visit(id)` once for each live item that may overlap `box`, in no particular order.
  // When `visit` returns false the item is removed, as by Remove.
  template <class Visit>
  void Query(const IndexBox& box, Visit&& visit);

 private:
  struct Level {
    double cell = 1, inverse = 1;
    int nx = 1, ny = 1;
    size_t entries = 0;  // registrations, removed ones included
    std::vector<std::vector<int>> cells;
  };

  int CellX(const Level& l, double x) const;
  int CellY(const Level& l, double y) const;
  void Grow(int id);
  void NextEpoch();
  template <class Visit>
  void Scan(std::vector<int>& entries, Visit& visit);

  double x0_ = 0, y0_ = 0;
  std::vector<Level> levels_;
  std::vector<int> everywhere_;
  std::vector<uint32_t> stamp_;
  std::vector<uint8_t> dead_;
  uint32_t epoch_ = 0;
};

// The order of the working list as numbers: each segment gets a label, and the labels grow
// along the list. A piece put in behind its parent gets a label halfway to the parent's
// successor. When no room is left, only the neighbourhood is labelled afresh: the smallest
// aligned range of labels around the parent that is sparse enough (its items fewer than
// (2 / 1.4)^bits for a range of 2^bits labels) gets its items evenly spaced again, so that a
// place cut over and over costs a logarithmic share of relabelling per cut, never the whole
// list. Items are numbered 0 .. n-1 in list order at the start, and further items are numbered
// as they are put in; item 0 stays the head.
class ListOrder {
 public:
  explicit ListOrder(size_t n);

  int Next(int id) const { return next_[id]; }
  uint64_t Label(int id) const { return label_[id]; }
  bool Before(int a, int b) const { return label_[a] < label_[b]; }
  size_t Size() const { return next_.size(); }
  // Puts a new item directly behind `parent` and returns its number.
  int InsertBehind(int parent);
  // How often a range of the list was labelled afresh, and how many labels that gave in all.
  size_t Relabels() const { return relabels_; }
  size_t RelabelledItems() const { return relabelledItems_; }

 private:
  void Relabel();
  // Spreads the labels of the sparse range around `id` so that room opens behind it.
  void Rebalance(int id);

  std::vector<int> next_, prev_;
  std::vector<uint64_t> label_;
  size_t relabels_ = 0, relabelledItems_ = 0;
};

// ---- Template members ---------------------------------------------------------------------

template <class Visit>
void BoxGrid::Scan(std::vector<int>& entries, Visit& visit) {
  for (size_t i = 0; i < entries.size();) {
    const int id = entries[i];
    if (dead_[id]) {
      entries[i] = entries.back();
      entries.pop_back();
      continue;
    }
    if (stamp_[id] != epoch_) {
      stamp_[id] = epoch_;
      if (!visit(id)) {
        dead_[id] = 1;
        entries[i] = entries.back();
        entries.pop_back();
        continue;
      }
    }
    ++i;
  }
}

template <class Visit>
void BoxGrid::Query(const IndexBox& box, Visit&& visit) {
  NextEpoch();
  Scan(everywhere_, visit);
  const bool all = !IsFinite(box);
  for (Level& l : levels_) {
    if (l.entries == 0) continue;
    const int cx0 = all ? 0 : CellX(l, box.x1), cx1 = all ? l.nx - 1 : CellX(l, box.x2);
    const int cy0 = all ? 0 : CellY(l, box.y1), cy1 = all ? l.ny - 1 : CellY(l, box.y2);
    for (int cy = cy0; cy <= cy1; ++cy)
      for (int cx = cx0; cx <= cx1; ++cx) Scan(l.cells[static_cast<size_t>(cy) * l.nx + cx], visit);
  }
}

}  // namespace isolith
