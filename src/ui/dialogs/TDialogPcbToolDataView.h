// The view of "Tool library": one slot of the table at a time, the slot number as a spin field.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogPcbToolData); true when OK was pressed and the form
// accepted.
bool TDialogPcbToolDataView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
