#include "toolpath/CutPath.h"

#include "core/board/BoardOps.h"
#include "toolpath/OffsetPolyline.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {

bool CuttingToolDefined(const Settings& settings) {
  return settings.CuttingTool >= 0 && settings.CuttingTool < kToolSlots;
}

float CutPathDiameter(const Settings& settings, const ToolTable& tools) {
  if (!CuttingToolDefined(settings)) return kDefaultCutDiameter;
  return tools[settings.CuttingTool].Diameter;
}

TDialogCut::TDialogCut(TCutout& cutout, const Settings& settings, const ToolTable& tools)
    : toolLabel(ToolHeaderLabel(tools, settings.CuttingTool)),
      depth(settings.CuttingDepth),
      side(cutout.side),
      cutout_(cutout) {}

bool TDialogCut::Accept(Platform&) {
  cutout_.side = side == 0 ? 0 : 1;
  return true;
}

bool CalculateCutPath(CutContext& context, TCutout& cutout, bool askSide) {
  if (askSide) {
    TDialogCut form(cutout, context.settings, context.tools);
    if (!context.platform.RunDialog(form)) return false;
  }
  if (cutout.outline) {
    const bool clockwise = TurnSum(cutout.outline->first) < 0;
    if (clockwise == (cutout.side == 0)) ReversePolygon(*cutout.outline);
  }
  FreePolygons(cutout.paths);
  cutout.paths = nullptr;
  if (cutout.outline) {
    const float d = CutPathDiameter(context.settings, context.tools);
    cutout.paths = OffsetPolyline(cutout.outline->first, false, static_cast<float>(d * 0.5),
                                  kCutArcAngle, kCutArcStep, kCutSimplify, kCutMinLength);
  }
  context.platform.Repaint(RepaintLevel::View);
  return true;
}

void OrientCutPaths(Board& board, int cuttingDir) {
  for (TCutout* c = board.Cutouts; c; c = c->next) {
    for (TPolygon* p = c->paths; p; p = p->next) {
      const bool flip = (TurnSum(p->first) < 0) != (cuttingDir > 0);
      if (flip != (c->side != 0)) ReversePolygon(*p);
    }
  }
}

ToolSideStep ChangeToolSide(CutContext& context) {
  Board& board = context.board;
  if (!board.Cutouts) {
    context.platform.Beep(context.settings.ZapSound);
    return ToolSideStep::Refused;
  }
  board.ActiveLayer = kCutoutLayer;
  if (!board.Cutouts->next) {
    CalculateCutPath(context, *board.Cutouts, true);
    return ToolSideStep::Done;
  }
  context.platform.Repaint(RepaintLevel::View);
  return ToolSideStep::PickCutout;
}

}  // namespace isolith
