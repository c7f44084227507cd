#include "ui/dialogs/DialogViews.h"

namespace isolith {

void RegisterToolpathViews(QtPlatform&) {}

}  // namespace isolith
