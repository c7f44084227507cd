// The view of "Set hatches": the zone, the two switches and the hatching tool for information.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogHatch); true when OK was pressed and the form accepted.
bool TDialogHatchView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
