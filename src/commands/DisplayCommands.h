// The commands of the "&Display" menu and the help rows: zoom, final rendering, the grid, the
// colour sets, the units; and the zoom steps of the wheel and the page keys.
#pragma once

#include "commands/Application.h"

namespace isolith {

// A zoom step: in at the pixel (px, py) of the client, or out. A refused step beeps; a step
// in with the pixel outside the client does nothing; a step taken repaints with a new scale.
void ZoomStepCommand(Application& app, bool in, int px, int py);

// The user's manual beside the program.
inline constexpr const char* kManualFile = "README.md";

}  // namespace isolith
