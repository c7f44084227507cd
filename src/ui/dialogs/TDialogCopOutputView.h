// The view of "Output data format": the format the Mill command writes, sections or layer, the
// machine scales, the tool's clearance, and the file it creates with the program run after it.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogCopOutput); true when OK was pressed and the form
// accepted.
bool TDialogCopOutputView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
