#include "output/driver/DrillTools.h"

#include <utility>

#include "output/driver/PenMachine.h"

namespace isolith {

void BuildOutputDrillTools(TDrillList& list, const ToolTable& tools) {
  std::array<int, kOutputDrillTools> set;
  set.fill(-1);
  int count = 0;
  for (const TDrillRow& row : list.rows) {
    if (!RowUsed(row) || row.tool < 0 || count >= kOutputDrillTools) continue;
    bool known = false;
    for (int i = 0; i < count; ++i) known = known || set[i] == row.tool;
    if (!known) set[count++] = row.tool;
  }
  for (int pass = 0; pass < count; ++pass)
    for (int i = 0; i + 1 < count - pass; ++i)
      if (ToolAt(tools, set[i]).Diameter > ToolAt(tools, set[i + 1]).Diameter)
        std::swap(set[i], set[i + 1]);
  list.outputTools = set;
}

bool RefreshOutputDrillTools(TDrillList& list, const ToolTable& tools, int drillingMode) {
  if (drillingMode >= 2 && list.outputTools[0] >= 0) return false;
  BuildOutputDrillTools(list, tools);
  return true;
}

}  // namespace isolith
