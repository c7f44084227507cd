// The view of the machine configuration dialogs: one tab per section of "Torvane.cnc", a tick for
// each yes/no value and a text field for every other.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogMachine); true when OK was pressed.
bool TDialogMachineView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
