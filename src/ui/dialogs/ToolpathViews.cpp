#include "ui/dialogs/DialogViews.h"
#include "ui/dialogs/TDialogContourView.h"
#include "ui/dialogs/TDialogCopOutputView.h"
#include "ui/dialogs/TDialogCutView.h"
#include "ui/dialogs/TDialogDrillListView.h"
#include "ui/dialogs/TDialogDrillProcessView.h"
#include "ui/dialogs/TDialogExpMillView.h"
#include "ui/dialogs/TDialogExportView.h"
#include "ui/dialogs/TDialogHatchView.h"
#include "ui/dialogs/TDialogMillLayersView.h"
#include "ui/dialogs/TDialogPostProView.h"
#include "ui/dialogs/TDialogRS232View.h"
#include "ui/dialogs/TDialogTabsView.h"

namespace isolith {

void RegisterToolpathViews(QtPlatform& platform) {
  platform.RegisterView("TDialogContour", TDialogContourView);
  platform.RegisterView("TDialogHatch", TDialogHatchView);
  platform.RegisterView("TDialogCut", TDialogCutView);
  platform.RegisterView("TDialogTabs", TDialogTabsView);
  platform.RegisterView("TDialogDrillList", TDialogDrillListView);
  platform.RegisterView("TDialogExport", TDialogExportView);
  platform.RegisterView("TDialogExpMill", TDialogExpMillView);
  platform.RegisterView("TDialogMillLayers", TDialogMillLayersView);
  platform.RegisterView("TDialogPostPro", TDialogPostProView);
  platform.RegisterView("TDialogCopOutput", TDialogCopOutputView);
  platform.RegisterView("TDialogDrillProcess", TDialogDrillProcessView);
  platform.RegisterView("TDialogRS232", TDialogRS232View);
}

}  // namespace isolith
