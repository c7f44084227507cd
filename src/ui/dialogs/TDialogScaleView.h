// The view of "Scale": the factor and the board size it gives, tied together, and the four boxes.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogScale); true when OK was pressed and the form accepted.
bool TDialogScaleView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
