// The view of "Drill & engraving process": the "Process" list.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogDrillProcess); true when OK was pressed.
bool TDialogDrillProcessView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
