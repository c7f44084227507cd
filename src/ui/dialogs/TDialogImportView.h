// The view of "Import scales": the three scales and the mirror boxes of one dialect.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogImport); true when OK was pressed and the form accepted.
bool TDialogImportView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
