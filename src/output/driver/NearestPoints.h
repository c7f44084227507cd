// The nearest of a set of board points to a moving point, as the walks choose the next path or
// drill: by the squared distance of Distance2, the lowest rank winning a tie (the rank is the
// order in which the plain scan meets the points, so the winner is the scan's own). Points are
// taken out as they are used. A grid of buckets keeps each search to the neighbourhood of the
// point instead of the whole list.
#pragma once

#include <cstdint>
#include <vector>

namespace isolith {

class NearestPoints {
 public:
  // Ranks run from 0 to `count` - 1; every rank is added once before the first search.
  explicit NearestPoints(int count);
  void Add(int rank, double x, double y);

  // The rank of the nearest point still in the set; -1 when none is left, or when no distance
  // can be measured (a point off the plane never wins a comparison, as in the scan).
  int Nearest(double x, double y);
  void Remove(int rank);

 private:
  struct Entry {
    int rank;
    double x, y;
  };
  void Build();
  int CellIndex(int cx, int cy) const { return cy * columns_ + cx; }
  int CellOf(double v, double origin, int limit) const;

  std::vector<Entry> entries_;  // finite points, in rank order until Build
  std::vector<int32_t> cellOfRank_;
  std::vector<char> alive_;
  std::vector<std::vector<Entry>> cells_;
  std::vector<int> aliveInCell_;
  int alive_count_ = 0;
  bool built_ = false;
  double minX_ = 0, minY_ = 0, cell_ = 1;
  int columns_ = 1, rows_ = 1;
};

}  // namespace isolith
