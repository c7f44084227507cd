// The view of "Excellon import": the assumptions under which a drill file is read again.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Shows the dialog over `form` (a TDialogExcellon); true when OK was pressed and the form accepted.
bool TDialogExcellonView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
