// Cutting tabs: short gaps cut out of a card's cut path so that the card stays held in its panel.
// The gap is as wide as the tab asked for plus the tool's cutting width, so that the copper
// left standing is exactly the tab's width.
#pragma once

#include <string>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "toolpath/CutPath.h"

namespace isolith {

// "Set cutting tabs": the width of the tabs (CuttingTabs), 1 to 10 mm.
class TDialogTabs : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Set cutting tabs";
  static constexpr std::string_view kWidthLabel = "Tab width :";
  static constexpr double kMinimum = 1;
  static constexpr double kMaximum = 10;

  // `separator` is the locale's decimal mark, as the field shows numbers.
  TDialogTabs(Settings& settings, char separator);

  std::string_view FormName() const override { return "TDialogTabs"; }
  // Checks the width and writes it to CuttingTabs. The caller saves the settings.
  bool Accept(Platform& platform) override;

  std::string width;  // the field's text
  const std::string& unitLabel() const { return settings_.LengthUnitLabel; }

 private:
  Settings& settings_;
};

// A point of a cut path: the foot of the perpendicular from the mouse on one segment.
struct TabFoot {
  TCutout* cutout = nullptr;
  TPolygon* path = nullptr;
  TXY* segment = nullptr;  // the segment's first vertex
  float x = 0, y = 0;
};

// The foot on any segment of any cut path nearest to (x, y) and nearer than `reach`; the first
// one wins a tie. False when there is none.
bool FindTabFoot(const Board& board, float x, float y, float reach, TabFoot& foot);

// Where the tab marker stands for the mouse at (x, y): on the foot, or off the card at the
// negative card size when there is none.
void TabMarker(const Board& board, float x, float y, float reach, float& mx, float& my);

// Half the gap cut for a tab: half the tab's width, plus half the cutting width of the tool at
// the cutting depth when a tool is chosen.
float TabHalfGap(const Settings& settings, ToolTable& tools);

// Cuts a gap of `halfGap` each side of the foot: the path is split at the foot into two paths,
// the one behind it inserted right after it, then the first is shortened from its end and the
// second from its start. A part too short for that is deleted. When the foot lies near a vertex,
// the second part loses the whole of each leading segment not longer than the half gap and then
// the half gap more: the gap grows there, as it always has.
void CutTab(TCutout& cutout, const TabFoot& foot, float halfGap);

// "Add cutting tabs...": refused with the beep without a cut-out. The cutout layer becomes the
// active one, the tab width is asked; true when the caller should start the mode in which each
// click adds a tab.
bool BeginCuttingTabs(CutContext& context);

// A click in that mode with the mouse at (x, y): refused with the beep when the marker lies off
// the card (both coordinates negative) or no foot is found again from it; else the tab is cut
// and the view repainted.
bool AddCuttingTab(CutContext& context, float x, float y);

}  // namespace isolith
