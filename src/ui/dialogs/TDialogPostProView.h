// The view of "Post-processor format": the user's own output format, on four pages, with "Open..."
// and "Save...".
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogPostPro); true when OK was pressed and the form accepted.
bool TDialogPostProView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
