// The position dialog with a "Plot manually" button: two numbers, X and Y, each within its own
// limits, or the choice to show the point with the mouse instead. The centering holes use it for
// the offset of the second hole from the first ("Centering holes"); the origin command uses the
// same dialog for the origin's position ("Origin point").
#pragma once

#include <string>
#include <string_view>

#include "core/platform/Platform.h"

namespace isolith {

class TDialogManuPlot : public DialogForm {
 public:
  static constexpr std::string_view kCentringTitle = "Centering holes";
  static constexpr std::string_view kOriginTitle = "Origin point";
  static constexpr std::string_view kPlotManuallyText = "Plot manually";
  // Both fields are refused under this name.
  static constexpr std::string_view kLabel = "Position";
  static constexpr int kDecimals = 3;

  enum Field { kNoField, kX, kY };

  // Shows (x, y) with three decimals in the locale's decimal mark `separator`; X must lie from
  // `minX` to `maxX` and Y from `minY` to `maxY` (0.001 of slack), `unit` is the length unit's
  // label shown after the fields.
  TDialogManuPlot(std::string_view title, float x, float y, double minX, double maxX, double minY,
                  double maxY, std::string unit, char separator);

  std::string_view FormName() const override { return "TDialogManuPlot"; }

  // The button "Plot manually": the view calls this and closes the dialog as cancelled; the
  // caller then sees `plotManually` and lets the user click the point.
  void PlotManually() { plotManually = true; }

  // Checks X, then Y. On success `x` and `y` hold the values; on a refusal they keep what they
  // held and `focus` names the refused field.
  bool Accept(Platform& platform) override;

  std::string title;
  std::string xText, yText;  // the fields as typed
  std::string unit;
  double minX, maxX, minY, maxY;
  float x, y;
  bool plotManually = false;
  Field focus = kNoField;
};

}  // namespace isolith
