// The view of "Co-ordinate shift": the two offsets and "All layers".
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogShift); true when OK was pressed and the form accepted.
bool TDialogShiftView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
