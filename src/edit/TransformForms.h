// The dialogs of the board transforms as forms: "Board dimensions", "Origin point", "Scale" and
// "Co-ordinate shift". Each form holds the dialog's values as the fields show them (text in the
// locale's decimal mark), filled from the model when it is made; `Accept` checks the fields in
// the dialog's order, names a refused field in `focus` so that the view can put the focus there,
// and changes the board only once every field has passed. The repaint is the command's part.
#pragma once

#include <string>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "edit/Transforms.h"
#include "params/Settings.h"
#include "toolpath/TDialogManuPlot.h"

namespace isolith {

// Every length field of these dialogs shows three decimals and steps by 0.001.
inline constexpr int kLengthDecimals = 3;
inline constexpr double kLengthStep = 0.001;

// "Board dimensions": the card's size, either given or fitted round the circuit with a margin,
// and its thickness.
class TDialogSize : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Board dimensions";
  static constexpr std::string_view kWidthText = "&X width :";
  static constexpr std::string_view kHeightText = "&Y height :";
  static constexpr std::string_view kReframeText = "Reframe around existing circuitry";
  static constexpr std::string_view kMarginText = "with a margin of";
  static constexpr std::string_view kThicknessText = "&Z thickness :";
  static constexpr double kMinThickness = 0.01, kMaxThickness = 10;
  static constexpr double kMinMargin = 0, kMaxMargin = 100;
  static constexpr double kMaxSize = 1000;

  enum Field { kNoField, kWidth, kHeight, kMargin, kThickness };

  // Shows the card's size and thickness, the box on and a margin of 2.54. `unit` is the length
  // unit's label, shown after the fields and in the refusals.
  TDialogSize(Board& board, std::string unit, char separator);

  std::string_view FormName() const override { return "TDialogSize"; }

  std::string width, height;  // the fields as typed
  bool reframe = true;
  std::string margin;
  std::string thickness;
  std::string unit;
  Field focus = kNoField;

  // The margin field goes with the box, the width and height fields against it.
  bool MarginEnabled() const { return reframe; }
  bool SizeEnabled() const { return !reframe; }

  // The smallest width and height the card may take: the content's maximum X and Y (at least 0).
  double MinWidth() const { return minWidth_; }
  double MinHeight() const { return minHeight_; }

  // Checks "Thickness" (0.01 to 10), then with the box "Margin" (0 to 100), without it "Width"
  // and "Height" (from the content's maximum to 1000). When all pass: the board is reframed
  // with the margin, or the card takes the width and height; `CardThickness` is stored and the
  // view reset.
  bool Accept(Platform& platform) override;

 private:
  Board& board_;
  double minWidth_ = 0, minHeight_ = 0;
};

// After "Board dimensions": when the card's thickness differs by more than 0.001 from the
// drilling or the cutting depth of the selected tools, the "Warning" question offers to give
// both depths the thickness. True when the person said Yes and the depths changed (the caller
// writes the settings file).
bool OfferThicknessAsDepths(Platform& platform, Settings& settings, float thickness,
                            char separator);

// "Origin point": the position dialog over the origin, X from 0 to the card's width and Y from 0
// to its height. OK stores the origin and resets the view; "Plot manually" closes it as
// cancelled with `plotManually` set, and the caller then waits for the click that picks it.
class TDialogOriginPoint : public TDialogManuPlot {
 public:
  TDialogOriginPoint(Board& board, std::string unit, char separator);

  bool Accept(Platform& platform) override;

 private:
  Board& board_;
};

// "Scale": one factor for the coordinates, the aperture sizes, the drill diameters and the track
// thicknesses, each chosen by its box. The factor and the card's new width and height are three
// views of one value: editing one shows the others.
class TDialogScale : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Scale";
  static constexpr std::string_view kScaleText = "&Scale :";
  static constexpr std::string_view kDimensionsText = "--->  Board &dimensions :";
  static constexpr std::string_view kCoordinatesText = "co-ordinates";
  static constexpr std::string_view kApertureSizesText = "aperture sizes";
  static constexpr std::string_view kDrillDiametersText = "drill diameters";
  static constexpr std::string_view kTrackThicknessesText = "track thicknesses";
  static constexpr int kScaleDecimals = 6;
  static constexpr double kMinScale = 0.001, kMaxScale = 1000;

  enum Field { kNoField, kScale };

  // A factor of 1, the card's size, all four boxes on; "drill diameters" cannot be changed when
  // the job has no drills.
  TDialogScale(Board& board, std::string unit, char separator);

  std::string_view FormName() const override { return "TDialogScale"; }

  std::string scale;          // 6 decimals
  std::string width, height;  // 3 decimals
  ScaleChoice choice;
  bool drillDiametersEnabled = true;
  std::string unit;
  Field focus = kNoField;

  // The width and height fields go with "co-ordinates".
  bool SizeEnabled() const { return choice.coordinates; }

  // The view calls these when a field has been edited. The scale shows the card's width and
  // height multiplied by it; a width shows width / card width as the scale and the proportional
  // height; a height likewise. A text that is no number (or a card side of 0) changes nothing.
  void ScaleEdited();
  void WidthEdited();
  void HeightEdited();

  // With at least one box on, "Scale" must lie from 0.001 to 1000 and the board is scaled by it
  // (ScaleBoard). With none, OK closes the dialog and nothing changes.
  bool Accept(Platform& platform) override;

 private:
  void ShowScale(double factor);
  void ShowSize(double factor);

  Board& board_;
  char separator_;
};

// "Co-ordinate shift": the active layer, or all of them, moved by (Dx, Dy), the card fitted
// round the content afterwards.
class TDialogShift : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Co-ordinate shift";
  static constexpr std::string_view kDxText = "D&x :";
  static constexpr std::string_view kDyText = "D&y :";
  static constexpr std::string_view kAllLayersText = "All layers";

  enum Field { kNoField, kDx, kDy };

  // Both offsets 0, "All layers" off. `thickness` is what the card's thickness becomes when the
  // card is fitted round the content (the largest cutting depth of the settings).
  TDialogShift(Board& board, float thickness, std::string unit, char separator);

  std::string_view FormName() const override { return "TDialogShift"; }

  std::string dx, dy;
  bool allLayers = false;
  std::string unit;
  Field focus = kNoField;

  // Any value is taken; a text that is no number is refused. Then ShiftBoard.
  bool Accept(Platform& platform) override;

 private:
  Board& board_;
  float thickness_;
};

}  // namespace isolith
