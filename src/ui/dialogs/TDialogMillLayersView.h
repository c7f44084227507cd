// The view of "Final output" and its variants: eight rows, each a tick, a section and "Flip X".
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogMillLayers); true when OK was pressed and the form
// accepted.
bool TDialogMillLayersView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
