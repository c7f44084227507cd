// The file commands that open a layer: the open dialog with the dialect filters, then the
// reader of the chosen dialect.
#pragma once

#include "import/OpenExcellon.h"
#include "import/OpenGerber.h"

namespace isolith {

// "&New circuit..." (layer 0, not additional), "&Additional layer..." (the layer the command
// chose, additional) and "Drills..." (layer 4). The dialog starts in the import folder, or the
// program folder when none is known, with the filter row of the present format chosen. Cancel
// changes nothing and returns false. On OK the chosen row becomes the format ("All files" is 0,
// read as Gerber; for drills any row but the third is the first kind), a new circuit starts with
// ResetJob, and the file is loaded on `layer`.
bool OpenLayerDialog(ImportContext& context, ExcellonChoices& choices, bool isAdditional,
                     int layer);

}  // namespace isolith
