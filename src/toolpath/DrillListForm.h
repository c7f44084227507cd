// "&List of drills...": the drill list shown on the drill layer, one row per diameter with its
// hole count and its tool, where the tools of the rows can be chosen by hand.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"
#include "toolpath/DrillList.h"

namespace isolith {

// The "Drill list" dialog: twelve rows of "Diameter", "Nb." and "Tool"; empty rows are hidden.
class TDialogDrillList : public DialogForm {
 public:
  struct Row {
    bool visible = false;             // a used row
    std::string diameter;             // "%.2f", in the locale's decimal mark
    std::string holes;                // "%d": holes within 0.05 of the diameter
    std::vector<int> tools;           // the tool indices offered
    std::vector<std::string> labels;  // their texts, as the tool lists show them
    int chosen = -1;                  // index into `tools`; -1 when none is selected
  };

  // Filled from the list: with one single tool (`DrillingMode` under 2) that tool is the only
  // choice; otherwise every defined `DrillingLib` entry is offered with the row's tool selected.
  TDialogDrillList(TDrillList& list, const Board& board, const Settings& settings,
                   const ToolTable& tools, char separator);

  std::string title;  // "Drilling tools (%d holes)"
  std::array<Row, kDrillRows> rows;
  int selectedRow = 0;  // the checked row, whose holes the drill layer shows highlighted

  // Checks one row alone; the caller repaints the drill layer.
  void SelectRow(int row);
  // Whether the drill layer shows this hole highlighted: it belongs to the checked row.
  bool Highlights(const TDrill& drill) const;

  std::string_view FormName() const override { return "TDialogDrillList"; }
  // With a choice of tools (`DrillingMode` above 1) every used row takes its chosen tool.
  bool Accept(Platform& platform) override;

 private:
  TDrillList& list_;
  const Board& board_;
  int mode_;
};

// The command: the list built first when it is empty, the refusal beep when the board has no
// drills, else the drill layer shown while the dialog runs and the active layer given back
// after it. False when refused.
bool ShowDrillList(TDrillList& list, Board& board, Platform& platform, const Settings& settings,
                   const ToolTable& tools);

}  // namespace isolith
