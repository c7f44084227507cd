// "Set contours" and what the "Calculate &contours" command reads from the settings: the counts
// of passes, "&Apply to all layers" and the simplified calculation, with the contour tool, its
// depth and the distance between passes shown for information.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"
#include "toolpath/Contours.h"

namespace isolith {

// Whether `MillingTool` names a tool of at least 0.01 mm: without one no contour is calculated.
bool ContourToolReady(const Settings& settings, const ToolTable& tools);

// The cutting width of `MillingTool` at `MillingDepth` plus `MillingMargin`; 0.25 when no
// contour tool is chosen.
float ContourDistance(const Settings& settings, ToolTable& tools);

// The settings of one calculation, the counts as the settings hold them (the calculation
// clamps them).
ContourSettings ContourSettingsFrom(const Settings& settings, ToolTable& tools);

// The dialog. The counts are whole numbers under the name "Number": 1 to 10 successive
// contours, 0 to 10 extra contours round the pads.
class TDialogContour : public DialogForm {
 public:
  enum Field { kNoField, kPasses, kPadPasses };

  static constexpr std::string_view kTitle = "Set contours";
  static constexpr std::string_view kNumberLabel = "Number";
  static constexpr std::string_view kAllLayersText = "&Apply to all layers";
  static constexpr std::string_view kFastText = "Use &simplified calculation (faster)";
  static constexpr std::string_view kUndefined = "Undefined";
  static constexpr std::string_view kDepthLabel = "Depth";
  static constexpr std::string_view kDistanceSeparator = "  /  ";
  static constexpr std::string_view kDistanceLabel = "Distance";
  static constexpr int kPassesMinimum = 1, kPassesMaximum = 10;
  static constexpr int kPadPassesMinimum = 0, kPadPassesMaximum = 10;

  // `allLayers` is the run's "&Apply to all layers", written back on OK with the settings.
  // `separator` is the locale's decimal mark, as the tool line shows the diameter with it.
  TDialogContour(Settings& settings, ToolTable& tools, bool& allLayers, char separator);

  std::string_view FormName() const override { return "TDialogContour"; }

  std::string passes;     // `MillingNb1` as the field shows it
  std::string padPasses;  // `MillingNb2`
  bool allLayers = false;
  bool fast = false;              // `FastCalcul`
  std::string toolLabel;          // "%d > " and the tool's label, or "Undefined"
  float depth = 0;                // `MillingDepth`, shown beside "Depth"
  std::optional<float> distance;  // shown after "  /  " and "Distance"; empty without a tool
  Field focus = kNoField;         // the field a refusal names

  // Checks both counts in that order and writes them, the simplified calculation and "all
  // layers" back. A refused count is said under "Error" and named in `focus`; nothing is
  // written then.
  bool Accept(Platform& platform) override;

 private:
  Settings& settings_;
  bool& allLayers_;
};

}  // namespace isolith
