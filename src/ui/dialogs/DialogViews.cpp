#include "ui/dialogs/DialogViews.h"

namespace isolith {

void RegisterDialogViews(QtPlatform& platform) {
  RegisterParameterViews(platform);
  RegisterToolpathViews(platform);
}

}  // namespace isolith
