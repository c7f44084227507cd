// The view of "Export": the scale, the clearance, arcs or polygons and the switches of a file
// export.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogExport); true when OK was pressed and the form accepted.
bool TDialogExportView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
