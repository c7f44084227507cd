#include "toolpath/DrillListForm.h"

#include <cstdio>

namespace isolith {

namespace {

std::string Fixed2(float value, char separator) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", double(value));
  std::string s = text;
  for (char& c : s)
    if (c == '.') c = separator;
  return s;
}

}  // namespace

TDialogDrillList::TDialogDrillList(TDrillList& list, const Board& board, const Settings& settings,
                                   const ToolTable& tools, char separator)
    : list_(list), board_(board), mode_(settings.DrillingMode) {
  title = "Drilling tools (" + std::to_string(CountOf(board.Drills)) + " holes)";
  std::vector<int> offered;
  if (mode_ < 2) {
    if (settings.DrillingTool >= 0 && settings.DrillingTool < kToolSlots)
      offered.push_back(settings.DrillingTool);
  } else {
    for (int index : settings.DrillingLib)
      if (index >= 0 && index < kToolSlots) offered.push_back(index);
  }
  for (int i = 0; i < kDrillRows; ++i) {
    const TDrillRow& source = list.rows[i];
    Row& row = rows[i];
    if (!RowUsed(source)) continue;
    row.visible = true;
    row.diameter = Fixed2(source.diameter, separator);
    row.holes = std::to_string(RowHoleCount(source, board));
    row.tools = offered;
    for (int index : offered) row.labels.push_back(ToolChoiceLabel(tools, index, separator));
    for (size_t k = 0; k < offered.size(); ++k)
      if (mode_ < 2 || offered[k] == source.tool) {
        row.chosen = static_cast<int>(k);
        break;
      }
  }
}

void TDialogDrillList::SelectRow(int row) {
  if (row >= 0 && row < kDrillRows && rows[row].visible) selectedRow = row;
}

bool TDialogDrillList::Highlights(const TDrill& drill) const {
  const TDrillRow& row = list_.rows[selectedRow];
  return RowUsed(row) && RowHasHole(row, board_, drill);
}

bool TDialogDrillList::Accept(Platform&) {
  if (mode_ > 1)
    for (int i = 0; i < kDrillRows; ++i) {
      const Row& row = rows[i];
      if (!RowUsed(list_.rows[i])) continue;
      bool chosen = row.chosen >= 0 && row.chosen < static_cast<int>(row.tools.size());
      list_.rows[i].tool = chosen ? row.tools[row.chosen] : -1;
    }
  return true;
}

bool ShowDrillList(TDrillList& list, Board& board, Platform& platform, const Settings& settings,
                   const ToolTable& tools) {
  if (!RowUsed(list.rows[0])) BuildDrillList(list, board, settings, tools);
  if (!board.Drills) {
    platform.Beep(settings.ZapSound);
    return false;
  }
  const int layer = board.ActiveLayer;
  board.ActiveLayer = kDrillLayer;
  platform.Repaint(RepaintLevel::View);
  TDialogDrillList form(list, board, settings, tools, platform.DecimalSeparator());
  platform.RunDialog(form);
  board.ActiveLayer = layer;
  platform.Repaint(RepaintLevel::View);
  return true;
}

}  // namespace isolith
