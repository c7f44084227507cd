#include "ui/dialogs/ApertureViews.h"
#include "ui/dialogs/DialogViews.h"
#include "ui/dialogs/TDialogDrillView.h"
#include "ui/dialogs/TDialogExcellonView.h"
#include "ui/dialogs/TDialogImportView.h"
#include "ui/dialogs/TDialogItemColorView.h"
#include "ui/dialogs/TDialogMachineView.h"
#include "ui/dialogs/TDialogManuPlotView.h"
#include "ui/dialogs/TDialogPcbToolDataView.h"
#include "ui/dialogs/TDialogScaleView.h"
#include "ui/dialogs/TDialogShiftView.h"
#include "ui/dialogs/TDialogSizeView.h"

namespace isolith {

void RegisterParameterViews(QtPlatform& platform) {
  platform.RegisterView("TDialogPcbToolData", TDialogPcbToolDataView);
  platform.RegisterView("TDialogDrill", TDialogDrillView);
  platform.RegisterView("TDialogSize", TDialogSizeView);
  platform.RegisterView("TDialogScale", TDialogScaleView);
  platform.RegisterView("TDialogShift", TDialogShiftView);
  platform.RegisterView("TDialogChgPads", TDialogChgPadsView);
  platform.RegisterView("TDialogChgTracks", TDialogChgTracksView);
  platform.RegisterView("TDialogChgOnePad", TDialogChgOnePadView);
  platform.RegisterView("TDialogChgOneTrack", TDialogChgOneTrackView);
  // "Origin point" and "Centering holes" share the form's name.
  platform.RegisterView("TDialogManuPlot", TDialogManuPlotView);
  platform.RegisterView("TDialogImport", TDialogImportView);
  platform.RegisterView("TDialogExcellon", TDialogExcellonView);
  platform.RegisterView("TDialogItemColor", TDialogItemColorView);
  platform.RegisterView("TDialogMachine", TDialogMachineView);
}

}  // namespace isolith
