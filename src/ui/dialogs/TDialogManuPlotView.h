// The view of The position dialog ("Origin point", "Centering holes") with its "Plot manually"
// button.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogManuPlot); true when OK was pressed and the form accepted.
bool TDialogManuPlotView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
