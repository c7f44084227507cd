// The view of "Drill list": one row per diameter with its hole count and tool; the checked row is
// the one the drill layer highlights.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogDrillList); true when OK was pressed and the form
// accepted.
bool TDialogDrillListView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
