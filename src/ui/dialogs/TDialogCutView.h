// The view of "Set card contour": the side of the cutting tool, with the tool and its depth.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogCut); true when OK was pressed and the form accepted.
bool TDialogCutView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
