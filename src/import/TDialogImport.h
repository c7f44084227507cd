// "&Import scales": the three scales and the mirror bits of one dialect.
#pragma once

#include <string>
#include <string_view>

#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

// The menu commands of the dialog, one per row of the dialect table, in table order.
inline constexpr int kImportScalesFirstCommand = 12421;
inline constexpr int kImportScalesLastCommand = 12430;

// The row a command edits (kRowGerber .. kRowExcellon), -1 for another id.
int ImportScalesRow(int commandId);

class TDialogImport : public DialogForm {
 public:
  // The dialog over the row `row` of the settings; `windowTitle` is the main window's title and
  // `separator` the locale's decimal mark, in which the fields show their values.
  TDialogImport(Settings& settings, int row, std::string_view windowTitle, char separator);

  std::string title;         // the window's title, then the row's name in capitals
  std::string scaleIn;       // "XY &co-ordinates :"
  std::string aperScaleIn;   // "&Apertures :", absent for Excellon
  std::string drillScaleIn;  // "&Drills :"
  bool hasApertures = true;
  bool flipX = false, flipY = false, swapXY = false;  // "Flip :" "X", "Y", "X/Y"
  // "&Modern reading (regions, arcs, macros, drill headers)": ModernImport, shared by every
  // dialect; "Arc &tolerance (mm) :" ArcTolerance, the chord error of the arcs it reads.
  bool modernImport = false;
  std::string arcTolerance;

  // The field the last refusal named, for the view's focus.
  enum Field { kNoField, kScaleIn, kAperScaleIn, kDrillScaleIn, kArcTolerance };
  Field focus = kNoField;

  std::string_view FormName() const override { return "TDialogImport"; }
  // Each field must lie from 0.001 to 1000; the first that does not is refused by the standard
  // field check and nothing is written, nor is an arc tolerance outside 0.0001 to 1. Otherwise
  // the scales and the three bits go to the row, the modern reading and its tolerance to the
  // settings.
  bool Accept(Platform& platform) override;

 private:
  Settings& settings_;
  int row_;
};

}  // namespace isolith
