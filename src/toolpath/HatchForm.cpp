#include "toolpath/HatchForm.h"

namespace isolith {

namespace {

bool UsableTool(const ToolTable& tools, int index) {
  return index >= 0 && index < kToolSlots && tools[index].Diameter >= 0.01;
}

}  // namespace

TDialogHatch::TDialogHatch(HatchSession& session, Settings& settings, ToolTable& tools,
                           const Board& board)
    : session_(session), settings_(settings) {
  cardContour = board.Cutouts != nullptr;
  zone = session.zone;
  if (zone == kHatchCardContour && !cardContour) zone = kHatchWholeBoard;
  if (zone < kHatchWholeBoard || zone > kHatchSelectedZone) zone = kHatchWholeBoard;
  openedZone_ = zone;
  allLayers = session.allLayers;
  link = settings.HatchingLink;
  depth = settings.HatchingDepth;
  const int tool = settings.HatchingTool;
  if (tool >= 0 && tool < kToolSlots)
    interval = static_cast<float>(double(ToolCutWidth(tools[tool], settings.HatchingDepth)) +
                                  settings.HatchingMargin);
}

bool TDialogHatch::SelectZone(int mode) {
  if (mode < kHatchWholeBoard || mode > kHatchSelectedZone) return false;
  if (mode == kHatchCardContour && !cardContour) return false;
  zone = mode;
  return true;
}

bool TDialogHatch::Accept(Platform&) {
  const int chosen = zone;
  zone = openedZone_;
  SelectZone(chosen);
  session_.zone = zone;
  session_.allLayers = allLayers;
  settings_.HatchingLink = link;
  return true;
}

bool HatchToolsReady(const Settings& settings, const ToolTable& tools) {
  return UsableTool(tools, settings.MillingTool) && UsableTool(tools, settings.HatchingTool);
}

HatchCommandResult BeginHatchCommand(Board& b, HatchSession& session, Settings& settings,
                                     ToolTable& tools, Platform& platform,
                                     const std::function<void()>& runActiveTools) {
  b.PendingCommand = 0;
  const int layer = b.ActiveLayer;
  if (!IsCircuitLayer(layer) || !b.Contours[layer]) {
    platform.Beep(settings.ZapSound);
    return HatchCommandResult::Refused;
  }
  if (b.Hatches[layer] && session.zone != kHatchSelectedZone) {
    DeleteHatches(b, session.allLayers);
    platform.Repaint(RepaintLevel::View);
    return HatchCommandResult::Reset;
  }
  if (!HatchToolsReady(settings, tools)) {
    if (runActiveTools) runActiveTools();
    if (!HatchToolsReady(settings, tools)) return HatchCommandResult::Stopped;
  }
  TDialogHatch form(session, settings, tools, b);
  if (!platform.RunDialog(form)) return HatchCommandResult::Stopped;
  if (session.zone == kHatchSelectedZone) return HatchCommandResult::PickZone;
  session.rectangle = ZoneRectangle(b, session.zone);
  return HatchCommandResult::Calculate;
}

}  // namespace isolith
