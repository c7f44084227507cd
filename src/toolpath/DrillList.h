// The drill list: the holes of the drill layer grouped by diameter into at most twelve rows,
// each row with the drilling tool that the user's rule gives it. The output walks use it to
// change tools, and the circular boring of holes wider than their tool depends on the same
// choice. One list lives for the run beside the board; it is rebuilt whenever the drills are
// loaded or changed.
#pragma once

#include <array>

#include "core/board/Board.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"

namespace isolith {

inline constexpr int kDrillRows = 12;
inline constexpr int kOutputDrillTools = 8;

// Rows are built from holes within 0.01 of each other; a hole is matched to a row within 0.05,
// which is looser on purpose, so that a hole of a diameter that found no row of its own is
// still drilled by a close one.
inline constexpr double kRowBuildTolerance = 0.01;
inline constexpr double kRowMatchTolerance = 0.05;

struct TDrillRow {
  float diameter = 0;  // mm; under 0.001 the row is empty
  int tool = -1;       // tool index, -1 for none
};

struct TDrillList {
  // Used rows at the front, ascending by diameter.
  std::array<TDrillRow, kDrillRows> rows{};
  // The output's working set of drilling tools (distinct tools of the rows, sorted by the
  // tool's diameter); all -1 until the output builds it again after a rebuild of the rows.
  std::array<int, kOutputDrillTools> outputTools{-1, -1, -1, -1, -1, -1, -1, -1};
};

inline bool RowUsed(const TDrillRow& row) {
  return row.diameter >= 0.001f;
}

// A hole's diameter: the drill table's entry for its code.
inline float DiameterOf(const Board& board, const TDrill& drill) {
  return board.DrillDiameter[drill.code];
}

// The tool for holes of `diameter` by the rule of `DrillingMode`: one single tool; or, among the
// selected drilling tools (`DrillingLib`) that are cylindrical and defined, the closest smaller
// (mode 2) or closest greater (mode 3) one, falling back to the other side. With boring on, all
// holes from the threshold up share the tool that fits the smallest of them. -1 for none.
int ChooseDrillTool(double diameter, const Board& board, const Settings& settings,
                    const ToolTable& tools);

// Rebuilds the rows from the drills of the board, in list order, and resets the output's set.
void BuildDrillList(TDrillList& list, const Board& board, const Settings& settings,
                    const ToolTable& tools);

// The tool of the first row within 0.05 of the hole's diameter, -1 when none.
int DrillToolOf(const TDrillList& list, const Board& board, const TDrill& drill);

// Whether a hole belongs to a row as the list shows it: within 0.05 of the row's diameter. A
// hole can count in two neighbouring rows less than 0.05 apart.
bool RowHasHole(const TDrillRow& row, const Board& board, const TDrill& drill);

// The number of holes of the board that a row counts.
int RowHoleCount(const TDrillRow& row, const Board& board);

}  // namespace isolith
