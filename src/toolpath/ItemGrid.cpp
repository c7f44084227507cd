#include "toolpath/ItemGrid.h"

#include <algorithm>

namespace isolith {

namespace {

IndexBox ToIndexBox(const ItemBox& b) {
  return {b.xmin, b.ymin, b.xmax, b.ymax};
}

IndexBox RegionOf(const std::vector<ItemBox>& boxes) {
  IndexRegion region;
  for (const ItemBox& b : boxes) region.Add(ToIndexBox(b));
  return region.Box();
}

}  // namespace

ItemGrid::ItemGrid(const std::vector<ItemBox>& boxes)
    : size_(static_cast<int>(boxes.size())), grid_(RegionOf(boxes), boxes.size()) {
  for (int i = 0; i < size_; ++i) grid_.Insert(i, ToIndexBox(boxes[i]));
}

void ItemGrid::Query(const ItemBox& query, std::vector<int>& out) {
  out.clear();
  grid_.Query(ToIndexBox(query), [&](int id) {
    out.push_back(id);
    return true;
  });
  std::sort(out.begin(), out.end());
}

}  // namespace isolith
