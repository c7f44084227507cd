#include "toolpath/ItemGrid.h"

#include <algorithm>
#include <cmath>

namespace isolith {

namespace {

constexpr int kMaxCellsPerAxis = 2048;
// An item covering more cells than this is kept apart and returned by every query, so that a
// few long items cannot make the grid quadratic in size.
constexpr long kMaxCellsPerItem = 64;

bool Finite(const ItemBox& b) {
  return std::isfinite(b.xmin) && std::isfinite(b.ymin) && std::isfinite(b.xmax) &&
         std::isfinite(b.ymax);
}

}  // namespace

ItemGrid::ItemGrid(const std::vector<ItemBox>& boxes) : count_(boxes.size()) {
  stamp_.assign(count_, 0);
  double xmin = 0, ymin = 0, xmax = 0, ymax = 0;
  bool any = false;
  for (const ItemBox& b : boxes) {
    if (!Finite(b)) continue;
    if (!any) {
      xmin = b.xmin, ymin = b.ymin, xmax = b.xmax, ymax = b.ymax;
      any = true;
    }
    xmin = std::min<double>(xmin, b.xmin);
    ymin = std::min<double>(ymin, b.ymin);
    xmax = std::max<double>(xmax, b.xmax);
    ymax = std::max<double>(ymax, b.ymax);
  }
  const double width = xmax - xmin;
  const double height = ymax - ymin;
  const double n = std::max<double>(1, static_cast<double>(count_));
  double cell = std::sqrt(std::max(width * height, 1e-12) / n);
  cell = std::max(cell, std::max(width, height) / kMaxCellsPerAxis);
  if (!(cell > 0)) cell = 1;
  x0_ = xmin;
  y0_ = ymin;
  cell_ = cell;
  nx_ = std::clamp(static_cast<int>(width / cell) + 1, 1, kMaxCellsPerAxis);
  ny_ = std::clamp(static_cast<int>(height / cell) + 1, 1, kMaxCellsPerAxis);
  cells_.assign(static_cast<size_t>(nx_) * ny_, {});

  for (size_t i = 0; i < count_; ++i) {
    const ItemBox& b = boxes[i];
    if (!Finite(b)) {
      everywhere_.push_back(static_cast<int>(i));
      continue;
    }
    int cx0, cy0, cx1, cy1;
    CellRange(b, cx0, cy0, cx1, cy1);
    if (static_cast<long>(cx1 - cx0 + 1) * (cy1 - cy0 + 1) > kMaxCellsPerItem) {
      everywhere_.push_back(static_cast<int>(i));
      continue;
    }
    for (int cy = cy0; cy <= cy1; ++cy) {
      for (int cx = cx0; cx <= cx1; ++cx) {
        cells_[static_cast<size_t>(cy) * nx_ + cx].push_back(static_cast<int>(i));
      }
    }
  }
}

void ItemGrid::CellRange(const ItemBox& box, int& cx0, int& cy0, int& cx1, int& cy1) const {
  auto cellOf = [this](double v, double origin, int cells) {
    const double c = std::floor((v - origin) / cell_);
    if (c < 0) return 0;
    if (c >= cells - 1) return cells - 1;
    return static_cast<int>(c);
  };
  cx0 = cellOf(box.xmin, x0_, nx_);
  cx1 = cellOf(box.xmax, x0_, nx_);
  cy0 = cellOf(box.ymin, y0_, ny_);
  cy1 = cellOf(box.ymax, y0_, ny_);
}

void ItemGrid::Query(const ItemBox& query, std::vector<int>& out) {
  out.clear();
  if (!Finite(query)) {
    for (size_t i = 0; i < count_; ++i) out.push_back(static_cast<int>(i));
    return;
  }
  if (++epoch_ == 0) {
    std::fill(stamp_.begin(), stamp_.end(), 0);
    epoch_ = 1;
  }
  int cx0, cy0, cx1, cy1;
  CellRange(query, cx0, cy0, cx1, cy1);
  for (int cy = cy0; cy <= cy1; ++cy) {
    for (int cx = cx0; cx <= cx1; ++cx) {
      for (int i : cells_[static_cast<size_t>(cy) * nx_ + cx]) {
        if (stamp_[i] == epoch_) continue;
        stamp_[i] = epoch_;
        out.push_back(i);
      }
    }
  }
  for (int i : everywhere_) {
    if (stamp_[i] == epoch_) continue;
    stamp_[i] = epoch_;
    out.push_back(i);
  }
  std::sort(out.begin(), out.end());
}

}  // namespace isolith
