// The view of "RS-232 settings": the serial port and its parameters as lists and ticks.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogRS232); true when OK was pressed.
bool TDialogRS232View(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
