// The view of "Application colours": one button per colour, each opening the colour chooser.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogItemColor); true when OK was pressed.
bool TDialogItemColorView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
