// The view of "Set contours": the two pass counts, the two switches and the contour tool for
// information.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogContour); true when OK was pressed and the form accepted.
bool TDialogContourView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
