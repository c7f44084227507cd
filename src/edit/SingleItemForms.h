// "Unique pad" and "Unique track": the size of one item changed by moving it to another
// aperture, an existing one of that size or a free one, which the dialog then keeps for the rest
// of its run. They edit live, over a copy of the layer's tables taken at the opening; Cancel
// gives back the tables and the item's code (and removes a drill that the dialog added).
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"

namespace isolith {

class TDialogChgOnePad : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Unique pad";
  static constexpr std::string_view kShapeText = "S&hape :";
  static constexpr std::string_view kSizeText = "&Size :";
  static constexpr std::string_view kDrillText = "&Drill :";
  // An existing aperture within this of the typed sizes (or drill) is taken.
  static constexpr float kMatch = 0.05f;

  // Over `pad` of the active layer; HoverDrill becomes the drill at the pad's centre.
  TDialogChgOnePad(Board& board, TPad& pad, char separator);

  std::string_view FormName() const override { return "TDialogChgOnePad"; }

  int shape = 0;
  std::string sizeX, sizeY, drill;
  int freeCode = -1;       // the free pad code this run took, -1 before one was needed
  int freeDrillCode = -1;  // the same for the drill table
  bool SizeYEnabled() const;

  void ShapeChosen(int newShape);
  void SizeXEdited(const std::string& text);
  void SizeYEdited(const std::string& text);
  void DrillEdited(const std::string& text);

  bool Accept(Platform& platform) override;
  void Cancel();

 private:
  void LookUpPadCode();

  Board& board_;
  TPad& pad_;
  int layer_;
  char separator_;
  float x_ = 0, y_ = 0;  // the sizes as last read
  uint8_t padCode_, drillCode_ = 0;
  TDrill* drill_ = nullptr;
  bool drillAdded_ = false;
  std::array<uint8_t, kApertures> shapes_;
  std::array<float, kApertures> sizesX_, sizesY_, diameters_;
};

class TDialogChgOneTrack : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Unique track";
  static constexpr std::string_view kWidthText = "Width :";
  static constexpr float kMatch = 0.01f;

  TDialogChgOneTrack(Board& board, TTrack& track, char separator);

  std::string_view FormName() const override { return "TDialogChgOneTrack"; }

  std::string width;
  int freeCode = -1;

  void WidthEdited(const std::string& text);

  bool Accept(Platform& platform) override;
  void Cancel();

 private:
  Board& board_;
  TTrack& track_;
  int layer_;
  char separator_;
  uint8_t code_;
  std::array<float, kApertures> widths_;
};

}  // namespace isolith
