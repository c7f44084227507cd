// The Qt views of the dialog forms: each binds its widgets to a form of the logic and calls the
// form's accept rule on OK. A form without a view is refused by the platform, never faked.
#pragma once

#include "ui/QtPlatform.h"

namespace isolith {

// Registers every view with the platform.
void RegisterDialogViews(QtPlatform& platform);

// The two groups of views: the parameter, import and board dialogs, and the toolpath and
// output dialogs.
void RegisterParameterViews(QtPlatform& platform);
void RegisterToolpathViews(QtPlatform& platform);

}  // namespace isolith
