#include "toolpath/DrillList.h"

#include <cmath>
#include <utility>

namespace isolith {

namespace {

// A selected drilling tool that can drill: defined and cylindrical.
bool Qualifies(const ToolTable& tools, int index) {
  return index >= 0 && index < kToolSlots && tools[index].Diameter != 0 &&
         tools[index].Profile == kProfileCylindrical;
}

// Among the selected drilling tools: the largest not above `limit` (the smallest gap wins, the
// first one on a tie), or with `greater` the smallest not below it. -1 when none.
int ClosestTool(const Settings& settings, const ToolTable& tools, double limit, bool greater) {
  int best = -1;
  double bestGap = 0;
  for (int index : settings.DrillingLib) {
    if (!Qualifies(tools, index)) continue;
    double gap =
        greater ? double(tools[index].Diameter) - limit : limit - double(tools[index].Diameter);
    if (gap < 0) continue;
    if (best < 0 || gap < bestGap) {
      best = index;
      bestGap = gap;
    }
  }
  return best;
}

}  // namespace

int ChooseDrillTool(double diameter, const Board& board, const Settings& settings,
                    const ToolTable& tools) {
  if (settings.DrillingMode <= 1) return settings.DrillingTool;
  if (settings.BoringDrills && diameter >= settings.BoringThreshold) {
    // Every hole to be bored shares the tool that fits the smallest of them.
    bool found = false;
    float smallest = 0;
    for (const TDrill* d = board.Drills; d; d = d->next) {
      float size = DiameterOf(board, *d);
      if (size >= settings.BoringThreshold && (!found || size < smallest)) {
        smallest = size;
        found = true;
      }
    }
    if (found) {
      int tool = ClosestTool(settings, tools, smallest, false);
      if (tool >= 0) return tool;
    }
  }
  if (settings.DrillingMode == 3) {
    int tool = ClosestTool(settings, tools, diameter, true);
    if (tool >= 0) return tool;
  }
  int tool = ClosestTool(settings, tools, diameter, false);
  if (tool >= 0) return tool;
  return ClosestTool(settings, tools, diameter, true);
}

void BuildDrillList(TDrillList& list, const Board& board, const Settings& settings,
                    const ToolTable& tools) {
  auto& rows = list.rows;
  rows.fill(TDrillRow{});
  for (const TDrill* d = board.Drills; d; d = d->next) {
    float size = DiameterOf(board, *d);
    bool fits = false;
    for (const TDrillRow& row : rows)
      if (RowUsed(row) && std::fabs(double(row.diameter) - size) < kRowBuildTolerance) {
        fits = true;
        break;
      }
    if (fits) continue;
    // A diameter beyond the twelfth finds no free row: its holes go without a row of their own.
    for (TDrillRow& row : rows)
      if (!RowUsed(row)) {
        row.diameter = size;
        row.tool = ChooseDrillTool(size, board, settings, tools);
        break;
      }
  }
  for (int i = 0; i < kDrillRows - 1; ++i)
    for (int j = 0; j < kDrillRows - 1 - i; ++j)
      if (rows[j].diameter > rows[j + 1].diameter) std::swap(rows[j], rows[j + 1]);
  // Empty rows sorted to the front; the used ones move up behind them.
  auto anyUsed = [&] {
    for (const TDrillRow& row : rows)
      if (RowUsed(row)) return true;
    return false;
  };
  while (!RowUsed(rows[0]) && anyUsed()) {
    for (int i = 0; i < kDrillRows - 1; ++i) rows[i] = rows[i + 1];
    rows[kDrillRows - 1] = TDrillRow{};
  }
  list.outputTools.fill(-1);
}

bool RowHasHole(const TDrillRow& row, const Board& board, const TDrill& drill) {
  return std::fabs(double(row.diameter) - DiameterOf(board, drill)) < kRowMatchTolerance;
}

int DrillToolOf(const TDrillList& list, const Board& board, const TDrill& drill) {
  for (const TDrillRow& row : list.rows)
    if (RowHasHole(row, board, drill)) return row.tool;
  return -1;
}

int RowHoleCount(const TDrillRow& row, const Board& board) {
  int n = 0;
  for (const TDrill* d = board.Drills; d; d = d->next) n += RowHasHole(row, board, *d) ? 1 : 0;
  return n;
}

}  // namespace isolith
