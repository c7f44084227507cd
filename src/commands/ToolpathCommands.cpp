// The toolpath commands of the menus.
#include "commands/ToolpathCommands.h"

#include "commands/CommandHandlers.h"
#include "commands/ConfigFolder.h"
#include "core/board/BoardOps.h"
#include "params/ToolForms.h"
#include "toolpath/CardContour.h"
#include "toolpath/ContourForm.h"
#include "toolpath/Contours.h"
#include "toolpath/CopperPlanes.h"
#include "toolpath/CutPath.h"
#include "toolpath/CuttingTabs.h"
#include "toolpath/DrillListForm.h"
#include "toolpath/HatchForm.h"
#include "toolpath/Hatches.h"

namespace isolith {

namespace {

// Context-menu rows of a hovered track that belong to the toolpaths.
constexpr int kDefineAsCardContour = 12612;
constexpr int kResetContourPath = 12627;

// A pick: the view leaves final rendering and the command waits for its click.
void StartPick(Application& app, int id) {
  ResetHover(app);
  app.board.FinalRendering = false;
  RequestRepaint(app);
  app.board.PendingCommand = id;
}

// "Active tools", with the settings written when it is confirmed.
void RunActiveTools(Application& app) {
  if (RunActiveToolsDialog(app.platform, app.tools, app.settings)) SaveSettings(app);
}

CutContext MakeCutContext(Application& app) {
  // Started with AUTOSTART or AUTOMILL, a card edge is taken without asking.
  return CutContext{app.board, app.platform, app.settings, app.tools,
                    !(app.AutoStart || app.AutoMill)};
}

bool AnyCircuitLayer(const Board& b, bool withContours) {
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (withContours ? b.Contours[layer] != nullptr : LayerHasContent(b, layer)) return true;
  }
  return false;
}

// The contour calculation from the tool check on: "Active tools" when the contour tool is
// missing, "Set contours" when `dialog`, then each chosen layer made active, shown and
// calculated, and the active layer given back. False when it stopped before calculating.
bool RunContourCalculation(Application& app, bool dialog) {
  Board& b = app.board;
  Settings& s = app.settings;
  if (!ContourToolReady(s, app.tools)) {
    RunActiveTools(app);
    if (!ContourToolReady(s, app.tools)) return false;
  }
  if (dialog) {
    TDialogContour form(s, app.tools, app.toolpath.ContourAllLayers, app.DecimalSeparator);
    if (!app.platform.RunDialog(form)) return false;
    SaveSettings(app);
  }
  ContourSettings contour = ContourSettingsFrom(s, app.tools);
  app.platform.SetBusyCursor(true);
  app.platform.BeginProgress("Calculate contours");
  const int active = b.ActiveLayer;
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!app.toolpath.ContourAllLayers && layer != active) continue;
    if (app.platform.StopRequested()) break;
    b.ActiveLayer = layer;
    RequestRepaint(app);
    CalculateContours(b, layer, contour, &app.platform);
  }
  b.ActiveLayer = active;
  app.platform.EndProgress();
  app.platform.SetBusyCursor(false);
  // The calculation clamps the counts; the settings keep what it used.
  if (contour.passes != s.MillingNb1 || contour.padPasses != s.MillingNb2) {
    s.MillingNb1 = contour.passes;
    s.MillingNb2 = contour.padPasses;
    SaveSettings(app);
  }
  return true;
}

void RunHatchCalculation(Application& app) {
  app.platform.SetBusyCursor(true);
  app.platform.BeginProgress("Calculate hatches");
  CalculateHatchesOnLayers(app.board, HatchSettingsFrom(app.settings, app.tools),
                           app.toolpath.hatch, &app.platform);
  app.platform.EndProgress();
  app.platform.SetBusyCursor(false);
}

void CalculateHatchesCommand(Application& app) {
  const HatchCommandResult result =
      BeginHatchCommand(app.board, app.toolpath.hatch, app.settings, app.tools, app.platform,
                        [&app] { RunActiveTools(app); });
  switch (result) {
    case HatchCommandResult::Refused:
      return;
    case HatchCommandResult::Reset:
    case HatchCommandResult::Stopped:
      break;
    case HatchCommandResult::Calculate:
      // "&Link hatches" of the dialog is a setting.
      SaveSettings(app);
      RunHatchCalculation(app);
      break;
    case HatchCommandResult::PickZone:
      SaveSettings(app);
      StartPick(app, cmd::CalculateHatches);
      return;
  }
  RequestRepaint(app);
}

void ChangeToolSideCommand(Application& app) {
  ResetHover(app);
  CutContext cut = MakeCutContext(app);
  switch (ChangeToolSide(cut)) {
    case ToolSideStep::Refused:
      return;
    case ToolSideStep::Done:
      RequestRepaint(app);
      return;
    case ToolSideStep::PickCutout:
      StartPick(app, cmd::ChangeToolSide);
      return;
  }
}

void AddCuttingTabsCommand(Application& app) {
  ResetHover(app);
  const bool anyCutout = app.board.Cutouts != nullptr;
  CutContext cut = MakeCutContext(app);
  if (BeginCuttingTabs(cut)) {
    SaveSettings(app);  // the tab width
    StartPick(app, cmd::AddCuttingTabs);
  } else if (anyCutout) {
    RequestRepaint(app);  // the dialog was cancelled; without a cut-out the beep was all
  }
}

void RunToolpathCommand(Application& app, int id) {
  Board& b = app.board;
  switch (id) {
    case cmd::CalculateContours:
      CalculateContoursCommand(app);
      break;
    case cmd::CalculateHatches:
      CalculateHatchesCommand(app);
      break;
    case cmd::DeleteHatches:
      ResetHover(app);
      DeleteHatches(b, app.toolpath.hatch.allLayers);
      RequestRepaint(app);
      break;
    case cmd::DefineCopperPlane:
    case cmd::DisableCopperPlane:
    case cmd::DefineCardContour:
      StartPick(app, id);
      break;
    case cmd::DetectAllCopperPlanes:
      ResetHover(app);
      DetectAllCopperPlanes(b, app.platform);
      RequestRepaint(app);
      break;
    case cmd::DisableAllCopperPlanes:
      ResetHover(app);
      DisableAllCopperPlanes(b, app.platform);
      RequestRepaint(app);
      break;
    case cmd::AutoDetectCardContour: {
      ResetHover(app);
      CutContext cut = MakeCutContext(app);
      DetectCardContour(cut, b.ActiveLayer);
      RequestRepaint(app);
      break;
    }
    case cmd::ChangeToolSide:
      ChangeToolSideCommand(app);
      break;
    case cmd::AddCuttingTabs:
      AddCuttingTabsCommand(app);
      break;
    case cmd::ListOfDrills:
      b.PendingCommand = 0;
      if (ShowDrillList(app.drillList, b, app.platform, app.settings, app.tools)) {
        RequestRepaint(app);
      }
      break;
    case cmd::ToolLibrary:
      b.PendingCommand = 0;
      // Without a configuration folder there is no tool file to read or write.
      if (app.ConfigFolder.empty()) {
        Refuse(app);
        return;
      }
      // The dialog writes "Isolith.too" itself on OK.
      RunToolLibraryDialog(app.platform, app.tools, app.settings, app.ConfigFolder);
      RequestRepaint(app);
      break;
    case cmd::SelectedTools:
      b.PendingCommand = 0;
      RunActiveTools(app);
      RequestRepaint(app);
      break;
    default:
      break;
  }
}

// The rows of a hovered track's context menu: they act on HoverTrack at once, so the hover
// names are cleared only afterwards.
void RunTrackMenuCommand(Application& app, int id) {
  Board& b = app.board;
  b.PendingCommand = 0;
  if (id == kDefineAsCardContour) {
    CutContext cut = MakeCutContext(app);
    DefineCardContour(cut);
  } else {
    CopperPlaneFromNet(b, app.platform, app.settings.ZapSound, id == cmd::DefineAsCopperPlane);
  }
  ResetHover(app);
  RequestRepaint(app);
}

// "Reset contour path" of a hovered cut-out's menu: its paths calculated afresh from its outline
// on the side it has, so that tabs and any other change are gone.
void RunResetContourPath(Application& app, int) {
  Board& b = app.board;
  b.PendingCommand = 0;
  if (b.HoverCutout) {
    CutContext cut = MakeCutContext(app);
    CalculateCutPath(cut, *b.HoverCutout, false);
  }
  ResetHover(app);
  RequestRepaint(app);
}

constexpr CommandHandler kToolpathHandlers[] = {
    {cmd::CalculateContours, cmd::CalculateContours, RunToolpathCommand},
    {cmd::CalculateHatches, cmd::DisableAllCopperPlanes, RunToolpathCommand},
    {cmd::AutoDetectCardContour, cmd::AddCuttingTabs, RunToolpathCommand},
    {cmd::ListOfDrills, cmd::ListOfDrills, RunToolpathCommand},
    {cmd::ToolLibrary, cmd::SelectedTools, RunToolpathCommand},
    {kDefineAsCardContour, cmd::DisableThisCopperPlane, RunTrackMenuCommand},
    {kResetContourPath, kResetContourPath, RunResetContourPath},
};

}  // namespace

std::span<const CommandHandler> ToolpathCommandHandlers() {
  return kToolpathHandlers;
}

void CalculateContoursCommand(Application& app) {
  Board& b = app.board;
  b.PendingCommand = 0;
  if (!IsCircuitLayer(b.ActiveLayer)) {
    Refuse(app);
    return;
  }
  if (b.Contours[b.ActiveLayer]) {
    FreeContours(b, false);
  } else {
    RunContourCalculation(app, !(app.AutoStart || app.AutoMill));
  }
  RequestRepaint(app);
}

bool CalculateContoursOnAllLayers(Application& app) {
  if (!AnyCircuitLayer(app.board, false)) return false;
  app.board.PendingCommand = 0;
  app.toolpath.ContourAllLayers = true;
  const bool done = RunContourCalculation(app, !(app.AutoStart || app.AutoMill));
  RequestRepaint(app);
  return done;
}

bool CalculateHatchesOnAllLayers(Application& app) {
  Board& b = app.board;
  if (!AnyCircuitLayer(b, true)) return false;
  b.PendingCommand = 0;
  HatchSession& session = app.toolpath.hatch;
  session.allLayers = true;
  if (!HatchToolsReady(app.settings, app.tools)) {
    RunActiveTools(app);
    if (!HatchToolsReady(app.settings, app.tools)) return false;
  }
  TDialogHatch form(session, app.settings, app.tools, b);
  if (!app.platform.RunDialog(form)) return false;
  SaveSettings(app);
  if (session.zone == kHatchSelectedZone) return false;
  session.rectangle = ZoneRectangle(b, session.zone);
  RunHatchCalculation(app);
  RequestRepaint(app);
  return true;
}

namespace {

// The words for one working tool that cannot cut; empty when it can.
std::string ToolProblem(const Application& app, const char* what, const char* key, int index) {
  const std::string library = "\"Tool library\" (" + app.ConfigFolder + kToolFileName + ")";
  if (index < 0 || index >= kToolSlots)
    return std::string("no ") + what + " is chosen: choose one in \"Active tools\" (" + key +
           " in Isolith.ini) among the tools of " + library;
  const TToolData& tool = app.tools[index];
  if (tool.Diameter >= 0.01) return {};
  return std::string("the ") + what + " (" + key + ", tool #" + std::to_string(index + 1) +
         ") has no diameter: define that tool in " + library +
         " or choose another in \"Active tools\"";
}

}  // namespace

std::string MissingToolReason(const Application& app, bool hatches) {
  std::string reason = ToolProblem(app, "contour tool", "MillingTool", app.settings.MillingTool);
  if (reason.empty() && hatches)
    reason = ToolProblem(app, "hatching tool", "HatchingTool", app.settings.HatchingTool);
  return reason;
}

bool ToolpathClickAction(Application& app, int pendingId, float x, float y) {
  Board& b = app.board;
  switch (pendingId) {
    case cmd::DefineCopperPlane:
    case cmd::DisableCopperPlane:
      if (!b.HoverTrack) return true;
      CopperPlaneFromNet(b, app.platform, app.settings.ZapSound,
                         pendingId == cmd::DefineCopperPlane);
      break;
    case cmd::DefineCardContour: {
      if (!b.HoverTrack) return true;
      CutContext cut = MakeCutContext(app);
      DefineCardContour(cut);
      break;
    }
    case cmd::ChangeToolSide: {
      if (!b.HoverCutout) return true;
      TCutout& cutout = *b.HoverCutout;
      CutContext cut = MakeCutContext(app);
      CalculateCutPath(cut, cutout, true);
      break;
    }
    case cmd::AddCuttingTabs: {
      // The mode stays for the next tab.
      CutContext cut = MakeCutContext(app);
      AddCuttingTab(cut, x, y);
      RequestRepaint(app);
      return true;
    }
    default:
      return false;
  }
  ResetHover(app);
  RequestRepaint(app);
  return true;
}

bool ToolpathRectangleAction(Application& app, int pendingId, float x1, float y1, float x2,
                             float y2) {
  if (pendingId != cmd::CalculateHatches) return false;
  app.platform.SetBusyCursor(true);
  app.platform.BeginProgress("Calculate hatches");
  HatchSelectedZone(app.board, app.toolpath.hatch, HatchSettingsFrom(app.settings, app.tools),
                    HatchRect{x1, y1, x2, y2}, &app.platform);
  app.platform.EndProgress();
  app.platform.SetBusyCursor(false);
  RequestRepaint(app);
  return true;
}

}  // namespace isolith
