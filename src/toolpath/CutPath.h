// The cut path of a card outline: the outline offset by the cutting tool's radius, outside or
// inside the card, and its direction before output.
#pragma once

#include <string>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"

namespace isolith {

// What the card-contour commands work on.
struct CutContext {
  Board& board;
  Platform& platform;
  Settings& settings;
  ToolTable& tools;
  // False when the program was started with "AUTOSTART" or "AUTOMILL": a detected net is then
  // taken for the card edge without asking.
  bool confirm = true;
};

// The diameter a card is cut with when no cutting tool is chosen.
inline constexpr float kDefaultCutDiameter = 3.17f;

// Whether `CuttingTool` names a slot of the library.
bool CuttingToolDefined(const Settings& settings);
// The full diameter the cut path is offset by twice: that of `CuttingTool`, or 3.17 mm.
float CutPathDiameter(const Settings& settings, const ToolTable& tools);

// "Set card contour": the side of the cutting tool for one cut-out, with the tool and depth
// shown for information.
class TDialogCut : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Set card contour";
  static constexpr std::string_view kDepthLabel = "Depth";
  static constexpr std::string_view kOutside = "outside contour";
  static constexpr std::string_view kInside = "inside";

  TDialogCut(TCutout& cutout, const Settings& settings, const ToolTable& tools);

  std::string_view FormName() const override { return "TDialogCut"; }
  // Writes the side (0 outside, 1 inside) back to the cut-out.
  bool Accept(Platform& platform) override;

  std::string toolLabel;  // "%d > " and the tool's label; empty when no tool is chosen
  float depth = 0;        // CuttingDepth
  int side = 0;           // 0 outside contour, 1 inside

 private:
  TCutout& cutout_;
};

// Recalculates the paths of a cut-out from its outline; any tabs are gone. With `askSide` the
// side is asked first (TDialogCut), and Cancel leaves everything as it was: false. The outline is
// turned so that the tool lies on its right (outside paths run counter-clockwise, inside ones
// clockwise), and offset by half the cutting tool's full diameter. The view is repainted.
bool CalculateCutPath(CutContext& context, TCutout& cutout, bool askSide);

// Just before any output: each path of each cut-out is turned to run the way `CuttingDir` asks
// for its side.
void OrientCutPaths(Board& board, int cuttingDir);

// What "Change tool side..." leads to.
enum class ToolSideStep {
  Refused,     // no cut-out: the beep has sounded
  Done,        // the one cut-out was recalculated (or its dialog cancelled)
  PickCutout,  // several cut-outs: the user picks one, then CalculateCutPath(it, true)
};

// "Change tool side...": the cutout layer becomes the active one, then the single cut-out is
// recalculated with the side asked, or the caller lets the user pick one.
ToolSideStep ChangeToolSide(CutContext& context);

}  // namespace isolith
