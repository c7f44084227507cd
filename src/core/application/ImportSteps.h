// The application's part in loading a layer file: the steps of a load that belong to the
// program rather than to the readers (ResetHover, the card thickness, reframing, saving the
// settings, the detections that follow an opening).
#pragma once

#include "core/application/Application.h"
#include "import/OpenGerber.h"

namespace isolith {

// A load context over the application's board, settings and platform. The steps whose
// commands are not part of the program yet (the pad, track and dimension dialogs that follow a
// load, and the rebuilding of the drill table) are left empty, and the load skips them.
ImportContext MakeImportContext(Application& app);

}  // namespace isolith
