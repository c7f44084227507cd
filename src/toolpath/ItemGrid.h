// A uniform grid over the boxes of a list's items, to find the items that may lie near a box.
//
// The net walks test every item of a list in list order. The grid only narrows "which items are
// tested": a query returns the positions of every item whose box overlaps the query box, in
// ascending list position, so a walk that tests the returned items in that order meets exactly
// the items the full scan would have accepted, in the same order. It never decides a contact.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace isolith {

struct ItemBox {
  float xmin = 0, ymin = 0, xmax = 0, ymax = 0;
};

class ItemGrid {
 public:
  // Indexes the boxes; item i is the i-th of the list.
  explicit ItemGrid(const std::vector<ItemBox>& boxes);

  // Positions of the items whose box overlaps `query` (ends included), ascending. May return
  // more items than overlap, never fewer.
  void Query(const ItemBox& query, std::vector<int>& out);

  int Size() const { return static_cast<int>(count_); }

 private:
  void CellRange(const ItemBox& box, int& cx0, int& cy0, int& cx1, int& cy1) const;

  size_t count_ = 0;
  double x0_ = 0, y0_ = 0, cell_ = 1;
  int nx_ = 1, ny_ = 1;
  std::vector<std::vector<int>> cells_;
  std::vector<int> everywhere_;  // items too large (or not finite) to be placed in cells
  std::vector<uint32_t> stamp_;
  uint32_t epoch_ = 0;
};

}  // namespace isolith
