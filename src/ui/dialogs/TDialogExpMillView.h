// The view of "File export": the milling and drilling sequence, the card contour and the flip.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogExpMill); true when OK was pressed and the form accepted.
bool TDialogExpMillView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
