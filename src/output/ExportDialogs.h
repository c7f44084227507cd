// The dialogs of file output as forms: "Export" (scale, clearance, switches), "File export"
// (sequence, card contour, flip) and the "Final output" family (the eight sections).
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/Platform.h"
#include "output/driver/OutputContext.h"

namespace isolith {

// "Export": the scale of the format, the clearance, arcs or polygons and the switches.
class TDialogExport : public DialogForm {
 public:
  TDialogExport(Settings& settings, ExportChoices& choices, int format, std::string fileName,
                char separator);
  std::string_view FormName() const override { return "TDialogExport"; }
  static constexpr std::string_view kTitle = "Export";

  std::string fileName;     // shown only
  std::string scale;        // "Scale", 0.001 to 1000, into the format's *ScaleOut
  std::string clearHeight;  // "Tool clearance &height :", mm
  std::string clearSpeed;   // "Tool clearance sp&eed :", in the speed unit
  bool clearanceEnabled;    // off for the plotter format
  bool arcs;                // "as &arcs" (true) / "as &polygons"
  bool includeHeader;       // "Include header"
  bool zCoordinates;        // "Z co-ordinates"
  bool flipZ;               // "Flip Z co-ordinates"
  bool speeds;              // "Speeds"
  bool editInViewer;        // "Edit file with NotePad for checking"

  enum Field { kNoField, kScale, kClearHeight, kClearSpeed };
  Field focus = kNoField;

  // The units shown after the clearance fields.
  const std::string& lengthUnitLabel() const { return settings_.LengthUnitLabel; }
  const std::string& speedUnitLabel() const { return settings_.SpeedUnitLabel; }

  bool Accept(Platform& platform) override;

 private:
  Settings& settings_;
  ExportChoices& choices_;
  int format_;
};

// "File export" (dialog 14046): what the layer walk writes and in which order.
class TDialogExpMill : public DialogForm {
 public:
  // Opening: the sequences that exist are offered; when not both contours and drills exist,
  // `SingleSequence` is reset to 0. The "card contour" tick is on when there are cut-outs, off
  // and disabled otherwise.
  TDialogExpMill(const Board& board, Settings& settings, ExportChoices& choices);
  std::string_view FormName() const override { return "TDialogExpMill"; }
  static constexpr std::string_view kTitle = "File export";
  static constexpr std::string_view kSequenceTexts[4] = {"Mill only", "Drill only",
                                                         "Mill then drill", "Drill then mill"};

  std::vector<int> offered;       // sequence values in list order
  int sequence = 0;               // the chosen value
  bool cardContour = false;       // "card contour"
  bool cutoutEnabled = false;     // the "then" label and the tick
  bool flipHorizontally = false;  // "Flip horizontally"

  // Stores the sequence (1 when the layer has no contours) and the ticks.
  bool Accept(Platform& platform) override;

 private:
  bool hasContours_;
  Settings& settings_;
  ExportChoices& choices_;
};

// One choice of a section row.
struct TSectionChoice {
  std::string label;
  int code = 0;
};

// "Final output" (14049), "Transfer to NC-CAD" (14050), "Output" (14051): eight rows, each a
// tick, a choice and a "Flip X" tick.
class TDialogMillLayers : public DialogForm {
 public:
  // Opening: the drill tool set is rebuilt when the rule says so; mirror ticks are cleared when
  // layer 0 is empty; after a rebuild an "Engraving layer #1" row followed by an empty row gets
  // "Engraving layer #2" with the opposite mirror, and "Cutting out" rows are mirrored. A ticked
  // row whose section is not offered gets a choice that tells what the walk does with it.
  explicit TDialogMillLayers(OutputContext& context);
  std::string_view FormName() const override { return "TDialogMillLayers"; }
  // "Final output", "Transfer to NC-CAD" or "Output" by product variant.
  std::string title;

  struct Row {
    std::string label;  // "Section #n" or "Layer #n"
    bool ticked = false;
    int code = 0;
    bool mirror = false;  // "Flip X"
    std::vector<TSectionChoice> choices;
  };
  std::array<Row, kSequenceSlots> rows;
  int focusRow = -1;  // the refused row
  int clashRow = -1;  // the earlier row that has the refused row's choice

  // The choices a row offers, in list order, each only when it exists.
  static std::vector<TSectionChoice> Choices(const OutputContext& context);

  // Refuses with a beep two ticked rows with the same choice (focus on the later one);
  // otherwise stores the codes (0 for unticked rows) and the mirror ticks.
  bool Accept(Platform& platform) override;
  // Names the two rows with one choice.
  std::string Refusal() const override;

 private:
  OutputContext& context_;
};

}  // namespace isolith
