// The application's part in loading a layer file: the steps of a load that belong to the
// program rather than to the readers (ResetHover, the card thickness, reframing, saving the
// settings, the detections that follow an opening).
#pragma once

#include "commands/Application.h"
#include "import/OpenGerber.h"

namespace isolith {

// A load context over the application's board, settings and platform, with every step of the
// program filled in.
ImportContext MakeImportContext(Application& app);

}  // namespace isolith
