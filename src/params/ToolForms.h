// The two tool dialogs as forms: "Tool library" (one slot of the table at a time) and "Active
// tools" (which slot engraves, hatches, cuts, centres and drills, with the depths and speeds of
// the job). Each form holds the dialog's values as the fields show them, text in the locale's
// decimal mark, filled from the model when it is made; `Accept` checks them in the dialog's
// order, says what is wrong, and writes back only when all are good. A refused field is named
// in `focus` so that the view can put the focus there.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"

namespace isolith {

// Speeds are kept in mm/min and shown in the chosen speed unit (an index of kSpeed...).
double SpeedToUnit(double mmPerMin, int speedUnit);
double SpeedFromUnit(double value, int speedUnit);
// A speed in mm/min as a field shows it in `speedUnit`.
std::string FormatSpeedField(double mmPerMin, int speedUnit, char separator);

// The 50 rows of a tool selection list ("  1 > name   ø 0.8   cylindrical", ...).
std::vector<std::string> ToolChoiceRows(const ToolTable& tools, char separator);

// "Tool library": edits a working copy of one slot; moving to another slot or OK stores it in
// the table, and OK writes "Isolith.too" in compact form.
class TDialogPcbToolData : public DialogForm {
 public:
  enum Field { kNoField, kNumber, kName, kDiameter, kProfile, kAngle, kRotation, kSpeed };
  static constexpr int kNameLength = 46;  // what the name field takes

  // Shows slot 0. `folder` is where "Isolith.too" is written on OK.
  TDialogPcbToolData(ToolTable& tools, const Settings& settings, std::string folder,
                     char separator);

  std::string_view FormName() const override { return "TDialogPcbToolData"; }
  static constexpr std::string_view kTitle = "Tool library";

  // The values of the dialog.
  int number = 1;          // the slot shown, 1 to 50
  std::string numberText;  // the number as typed
  std::string name;
  std::string diameter;
  int profile = -1;  // row of the list: 0 "cylindrical", 1 "conical", -1 none
  std::string angle;
  std::string rotation;
  std::string plungeSpeed;
  Field focus = kNoField;

  TToolData working;  // the slot being edited, as last checked

  // The rows of the profile list and the labels and unit labels of the fields.
  static std::vector<std::string> ProfileRows() { return {"cylindrical", "conical"}; }
  const std::string& speedUnitLabel() const { return settings_.SpeedUnitLabel; }
  const std::string& lengthUnitLabel() const { return settings_.LengthUnitLabel; }
  bool AngleEnabled() const { return profile == 1; }

  // The number field changed. A positive whole number other than the current one checks the
  // form, stores the working copy and shows that slot (true). A number above 50 is refused with
  // a beep. When the check fails the fields show the working copy again and the slot stays.
  bool NumberChanged(Platform& platform);
  // The angle field changed: a value above 0 makes the tool conical.
  void AngleChanged(Platform& platform);
  // Checks the fields into the working copy, in the dialog's order.
  bool Validate(Platform& platform);
  // OK: checks, stores the slot and writes the library. A library that cannot be written is
  // reported; the table stays in memory and the dialog closes all the same.
  bool Accept(Platform& platform) override;

 private:
  void LoadSlot(int index);
  void ShowWorking();

  ToolTable& tools_;
  const Settings& settings_;
  std::string folder_;
  char separator_;
};

// "Active tools" (the "Selected tools" command): the working tools, their depths, margins and
// speeds, and the drilling tools with their mode. Missing choices are filled in on opening.
// Accept writes the values into the settings record; saving "Isolith.ini" is the caller's part.
class TDialogDrill : public DialogForm {
 public:
  enum Field {
    kNoField,
    kMillingTool,
    kMillingDepth,
    kMillingMargin,
    kMillingSpeed,
    kHatchingTool,
    kHatchingDepth,
    kHatchingMargin,
    kHatchingSpeed,
    kCuttingTool,
    kPlottingTool,
    kCuttingDepth,
    kCuttingSpeed,
    kDrillingDepth,
    kBoringSpeed,
    kDrillingTool,
    kBoringThreshold,
    kDrillingLib,  // the row is in focusRow
    kDialog,       // no single field: the dialog itself
  };

  TDialogDrill(ToolTable& tools, Settings& settings, char separator);

  std::string_view FormName() const override { return "TDialogDrill"; }
  static constexpr std::string_view kTitle = "Active tools";
  static constexpr std::string_view kModeTexts[3] = {
      "Use one single tool for all drills, with circular boring",
      "Use for each drill the closest smaller tool, with circular boring",
      "Use for each drill the closest greater tool, without circular boring"};

  // Tool choices are slot indices, -1 for none. Speeds are in the speed unit.
  int millingTool = -1;
  std::string millingDepth, millingMargin, millingSpeed;
  int hatchingTool = -1;
  std::string hatchingDepth, hatchingMargin, hatchingSpeed;
  int cuttingTool = -1;
  int plottingTool = -1;
  std::string cuttingDepth, cuttingSpeed;
  std::string drillingDepth, boringSpeed;
  int drillingMode = 1;  // the radio button: 1, 2 or 3
  int drillingTool = -1;
  std::array<int, kSequenceSlots> drillingLib{};
  bool boringDrills = false;  // "Allow circular boring for all drills over"
  std::string boringThreshold;
  Field focus = kNoField;
  int focusRow = -1;  // the DrillingLib row when focus is kDrillingLib

  // The 50 rows of the tool lists, and the unit labels shown after the fields.
  std::vector<std::string> ToolRows() const { return ToolChoiceRows(tools_, separator_); }
  const std::string& lengthUnitLabel() const { return settings_.LengthUnitLabel; }
  const std::string& speedUnitLabel() const { return settings_.SpeedUnitLabel; }

  // What the numbers give, "=> %s " and the value, or nothing new when the depth is not above 0
  // or no tool is chosen (the view then keeps what it shows).
  std::optional<std::string> EngravingRadius();
  std::optional<std::string> EngravingDistance();
  std::optional<std::string> HatchingRadius();
  std::optional<std::string> HatchingRecovery();

  // The boring diameter changed: a value above 0 ticks the box.
  void BoringThresholdChanged(Platform& platform);

  bool Accept(Platform& platform) override;

 private:
  std::optional<double> Radius(int tool, const std::string& depth);
  std::optional<double> Value(const std::string& text) const;

  ToolTable& tools_;
  Settings& settings_;
  char separator_;
};

// "&Tool library...": reads "Isolith.too" from `folder` (with the plunge-speed pass), runs the
// dialog on the first slot; on Cancel the file is read again. True when OK was pressed.
bool RunToolLibraryDialog(Platform& platform, ToolTable& tools, const Settings& settings,
                          const std::string& folder);

// "&Selected tools...": runs "Active tools"; true when OK was pressed and the settings record
// was updated (the caller then writes the settings file).
bool RunActiveToolsDialog(Platform& platform, ToolTable& tools, Settings& settings);

}  // namespace isolith
