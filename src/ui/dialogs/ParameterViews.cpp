#include "ui/dialogs/DialogViews.h"

namespace isolith {

void RegisterParameterViews(QtPlatform&) {}

}  // namespace isolith
