// "Set hatches" and the "Calculate &hatches" command up to the calculation: the refusal, the
// reset when hatches exist, the tool check, the dialog, and the zone that the calculation then
// covers.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"
#include "toolpath/Hatches.h"

namespace isolith {

// The dialog: the zone mode, "&Apply to all layers" and "&Link hatches", with the hatching
// depth and the interval for information. The interval is the full cutting width of the
// hatching tool at its depth plus the margin, not the pitch the lines are drawn at.
class TDialogHatch : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Set hatches";
  static constexpr std::string_view kZoneTexts[3] = {"&whole board", "&card contour",
                                                     "&selected zone"};
  static constexpr std::string_view kAllLayersText = "&Apply to all layers";
  static constexpr std::string_view kLinkText = "&Link hatches";
  static constexpr std::string_view kDepthLabel = "Depth";
  static constexpr std::string_view kIntervalLabel = "Interval";

  // Zone mode 1 without a card contour falls back to 0 on opening.
  TDialogHatch(HatchSession& session, Settings& settings, ToolTable& tools, const Board& board);

  std::string_view FormName() const override { return "TDialogHatch"; }

  int zone = kHatchWholeBoard;
  bool allLayers = false;
  bool link = true;
  float depth = 0;                // `HatchingDepth`
  std::optional<float> interval;  // empty when no hatching tool is chosen
  bool cardContour = false;       // whether "&card contour" can be taken

  // A click on a zone button; "&card contour" without a card contour is not taken (false).
  bool SelectZone(int mode);

  // Writes the zone and "all layers" into the session and `HatchingLink` into the settings
  // (saving the settings file is the caller's part). A zone that cannot be taken is not.
  bool Accept(Platform& platform) override;

 private:
  HatchSession& session_;
  Settings& settings_;
  int openedZone_;
};

// Whether both the contour tool and the hatching tool name a tool of at least 0.01 mm.
bool HatchToolsReady(const Settings& settings, const ToolTable& tools);

// Where "Calculate &hatches" stands after BeginHatchCommand.
enum class HatchCommandResult {
  Refused,    // not a circuit layer, or no contours: the refusal beep
  Reset,      // the hatches were there and have been deleted (zone modes 0 and 1)
  Stopped,    // still no usable tools, or the dialog was cancelled
  Calculate,  // the session's rectangle is set: run CalculateHatchesOnLayers
  PickZone,   // zone mode 2: wait for rectangles, each one goes to HatchSelectedZone
};

// "Calculate &hatches" up to the calculation. PendingCommand is cleared; off a circuit layer or
// on a layer without contours the command is refused with the beep. When the layer has hatches
// and the zone mode is not 2, the hatches of the active layer (or of all four with "all
// layers") are deleted and the view repainted: a reset. Otherwise the tools are checked, and
// `runActiveTools` (the "Active tools" dialog, with the settings saved on OK) is called once
// when they are not usable; then "Set hatches" runs. With zone mode 0 or 1 the session's
// rectangle becomes the zone. After Calculate or PickZone the caller writes the settings file,
// which the dialog may have changed.
HatchCommandResult BeginHatchCommand(Board& b, HatchSession& session, Settings& settings,
                                     ToolTable& tools, Platform& platform,
                                     const std::function<void()>& runActiveTools);

}  // namespace isolith
