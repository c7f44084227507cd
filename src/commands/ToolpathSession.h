// The toolpath choices that live for the run only and never reach the settings file: "&Apply
// to all layers" of the contours, and the zone and layers of the hatches.
#pragma once

#include "toolpath/Hatches.h"

namespace isolith {

struct ToolpathSession {
  bool ContourAllLayers = false;  // "&Apply to all layers" of "Set contours"
  HatchSession hatch;             // "Set hatches": zone mode, all layers, the last zone
};

}  // namespace isolith
