#include "toolpath/ContourForm.h"

#include "params/FieldChecks.h"

namespace isolith {

namespace {

bool DefinedTool(int index) {
  return index >= 0 && index < kToolSlots;
}

}  // namespace

bool ContourToolReady(const Settings& settings, const ToolTable& tools) {
  return DefinedTool(settings.MillingTool) && tools[settings.MillingTool].Diameter >= 0.01;
}

float ContourDistance(const Settings& settings, ToolTable& tools) {
  if (!DefinedTool(settings.MillingTool)) return 0.25f;
  const float width = ToolCutWidth(tools[settings.MillingTool], settings.MillingDepth);
  return static_cast<float>(double(width) + settings.MillingMargin);
}

ContourSettings ContourSettingsFrom(const Settings& settings, ToolTable& tools) {
  ContourSettings s;
  s.distance = ContourDistance(settings, tools);
  s.passes = settings.MillingNb1;
  s.padPasses = settings.MillingNb2;
  s.fast = settings.FastCalcul;
  s.threads = settings.CalculationThreads;
  return s;
}

TDialogContour::TDialogContour(Settings& settings, ToolTable& tools, bool& allLayers,
                               char separator)
    : passes(std::to_string(settings.MillingNb1)),
      padPasses(std::to_string(settings.MillingNb2)),
      allLayers(allLayers),
      fast(settings.FastCalcul),
      depth(settings.MillingDepth),
      settings_(settings),
      allLayers_(allLayers) {
  if (DefinedTool(settings.MillingTool)) {
    toolLabel = ToolHeaderLabel(tools, settings.MillingTool, separator);
    distance = ContourDistance(settings, tools);
  } else {
    toolLabel = kUndefined;
  }
}

bool TDialogContour::Accept(Platform& platform) {
  int nb1 = settings_.MillingNb1;
  int nb2 = settings_.MillingNb2;
  focus = kNoField;
  if (!CheckIntField(platform, kNumberLabel, passes, "", nb1, kPassesMinimum, kPassesMaximum)) {
    focus = kPasses;
    return false;
  }
  if (!CheckIntField(platform, kNumberLabel, padPasses, "", nb2, kPadPassesMinimum,
                     kPadPassesMaximum)) {
    focus = kPadPasses;
    return false;
  }
  settings_.MillingNb1 = nb1;
  settings_.MillingNb2 = nb2;
  settings_.FastCalcul = fast;
  allLayers_ = allLayers;
  return true;
}

}  // namespace isolith
