// The boxes of a list's items, to find the items that may lie near a box.
//
// The net walks test every item of a list in list order. The grid only narrows "which items are
// tested": a query returns the positions of every item whose box overlaps the query box, in
// ascending list position, so a walk that tests the returned items in that order meets exactly
// the items the full scan would have accepted, in the same order. It never decides a contact.
#pragma once

#include <vector>

#include "toolpath/ContourIndex.h"

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

  int Size() const { return size_; }

 private:
  int size_ = 0;
  // Levels of cells, so that a long track or a large pad sits in cells of its own size rather
  // than being handed to every query.
  BoxGrid grid_;
};

}  // namespace isolith
