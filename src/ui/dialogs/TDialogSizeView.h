// The view of "Board dimensions": the card's size or the reframing margin, and its thickness.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogSize); true when OK was pressed and the form accepted.
bool TDialogSizeView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
