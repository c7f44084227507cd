// The toolpath choices that live for the run only and never reach the settings file: "&Apply
// to all layers" of the contours, the zone and layers of the hatches, and the first point of a
// contour segment being added.
#pragma once

#include "toolpath/Hatches.h"

namespace isolith {

// "Add selected contour segments" between its two clicks.
struct ContourEditSession {
  bool positionHintShown = false;  // the "Position" box comes once per run
  bool hasFreePoint = false;       // the right button gave a free first point
  float freeX = 0, freeY = 0;
};

struct ToolpathSession {
  bool ContourAllLayers = false;  // "&Apply to all layers" of "Set contours"
  HatchSession hatch;             // "Set hatches": zone mode, all layers, the last zone
  ContourEditSession contourEdit;
};

}  // namespace isolith
