// "Pad apertures" and "Track apertures": the dialogs that edit the aperture tables of the active
// layer. They work live on the real tables and lists, so that the board behind them shows each
// change at once, over a full copy taken when they open: Cancel restores it exactly, OK drops it.
// The command runs the dialog and calls `Cancel` when it was not confirmed.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "edit/ApertureSnapshot.h"

namespace isolith {

// The codes of one layer that pads (or tracks) use, and the selected one.
struct UsedCodes {
  std::array<bool, kApertures> used{};
  std::vector<int> listed;  // the used codes in index order, shown as code + 1
  uint8_t current = 0;

  bool Empty() const { return listed.empty(); }
  // The position of `current` in `listed`.
  int Row() const;
  // Moves `current` by `delta` rows; past either end it stays at that end.
  void Step(int delta);
};

// The number shown for a code: code + 1.
std::string CodeNumberText(int code);

class TDialogChgPads : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Pad apertures";
  static constexpr std::string_view kNumberText = "Number";
  static constexpr std::string_view kShapeText = "Shape";
  static constexpr std::string_view kSizeText = "Size";
  static constexpr std::string_view kDrillText = "Drill";
  static constexpr std::string_view kApplyText = "Apply to all pads :";
  static constexpr std::string_view kDeleteText = "Delete all pads of that type";

  // Opens on the code of HoverPad when it stands on the active layer, else of the layer's first
  // pad. PendingCommand is cleared and the copy taken. On a layer without pads the form stays
  // closed (`IsOpen` false) and changes nothing.
  TDialogChgPads(Board& board, char separator);

  std::string_view FormName() const override { return "TDialogChgPads"; }
  bool IsOpen() const { return snapshot_ != nullptr; }

  UsedCodes codes;
  // The fields of the current code: shape, sizes with 2 decimals, drill (empty for none).
  int shape = 0;
  std::string sizeX, sizeY, drill;
  bool SizeYEnabled() const;

  // Choosing a number (a code), or stepping with "<" and ">": the fields show that code.
  void ChooseCode(int code);
  void Step(int delta);
  // Each edit writes the table at once; shape and size edits then give the same shape and
  // sizes to the through-hole pads of the other circuit layers.
  void ShapeChosen(int newShape);
  void SizeXEdited(const std::string& text);
  void SizeYEdited(const std::string& text);
  // The job's drill table takes the diameter (0 for an empty field), and the drills of the
  // layer's pads of this code take the code; a pad without a drill gets one.
  void DrillEdited(const std::string& text);
  // "Apply to all pads :" "Shape", "Size", "Drill": the current code's value to every used code.
  void ApplyShapeToAll();
  void ApplySizeToAll();
  void ApplyDrillToAll();
  // "Delete all pads of that type": the pads of the current code leave the active layer.
  void DeleteAllOfType();

  // OK: the copy is dropped (the command rebuilds the drill list).
  bool Accept(Platform& platform) override;
  // Cancel: the tables, pads and drills come back as they stood at the opening.
  void Cancel();

 private:
  void ShowCurrent();
  void MirrorCurrent();

  Board& board_;
  int layer_;
  char separator_;
  std::unique_ptr<ApertureSnapshot> snapshot_;
};

class TDialogChgTracks : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Track apertures";
  static constexpr std::string_view kNumberText = "Number :";
  static constexpr std::string_view kWidthText = "Width :";
  static constexpr std::string_view kApplyText = "Apply this width to all tracks";
  static constexpr std::string_view kDeleteText = "Delete all tracks of that type";
  static constexpr std::string_view kCentrelineText = "Define as simple centerline";

  // Opens on the code of HoverTrack when it stands on the active layer, else of the layer's
  // first track; closed on a layer without tracks.
  TDialogChgTracks(Board& board, char separator);

  std::string_view FormName() const override { return "TDialogChgTracks"; }
  bool IsOpen() const { return snapshot_ != nullptr; }

  UsedCodes codes;
  std::string width;  // 2 decimals

  void ChooseCode(int code);
  void Step(int delta);
  void WidthEdited(const std::string& text);
  void ApplyWidthToAll();
  void DeleteAllOfType();
  // "Define as simple centerline": the majority toggle of the engraving flag over the current
  // code's tracks of the active layer, without a question and without freeing contours.
  void ToggleCentreline();

  bool Accept(Platform& platform) override;
  void Cancel();

 private:
  void ShowCurrent();

  Board& board_;
  int layer_;
  char separator_;
  std::unique_ptr<ApertureSnapshot> snapshot_;
};

}  // namespace isolith
