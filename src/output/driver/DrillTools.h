// The output's view of the drill list: which tool drills a hole, and the sorted set of drilling
// tools that the "Final output" dialog offers one row each.
#pragma once

#include <array>

#include "core/board/Board.h"
#include "params/ToolLibrary.h"
#include "toolpath/DrillList.h"

namespace isolith {

// Rebuilds `outputTools`: the distinct tools of the used rows (diameter at least 0.001, tool
// not negative), at most 8, bubble-sorted by ascending tool diameter; -1 behind them.
void BuildOutputDrillTools(TDrillList& list, const ToolTable& tools);

// The rebuild rule of the dialog: when `DrillingMode` is below 2 or the set's first entry is
// negative. True when it was rebuilt.
bool RefreshOutputDrillTools(TDrillList& list, const ToolTable& tools, int drillingMode);

}  // namespace isolith
