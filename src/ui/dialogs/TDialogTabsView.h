// The view of "Set cutting tabs": the width of the tabs.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogTabs); true when OK was pressed and the form accepted.
bool TDialogTabsView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
