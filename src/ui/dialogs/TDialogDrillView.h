// The view of "Active tools": the working tools, their depths, margins and speeds, and the drilling
// set.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogDrill); true when OK was pressed and the form accepted.
bool TDialogDrillView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
