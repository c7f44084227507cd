#include "core/application/Commands.h"

#include "core/application/ImportSteps.h"
#include "core/application/LayerCommands.h"
#include "core/application/LayerInformation.h"
#include "core/application/PendingCommands.h"

namespace isolith {

namespace {

// A toggle of the settings: flipped, written at once, ticks refreshed by the repaint.
void ToggleSetting(Application& app, bool& value) {
  value = !value;
  SaveSettings(app);
  RequestRepaint(app, RepaintLevel::Status);
}

}  // namespace

bool RunCommand(Application& app, int id) {
  if (id >= 100 && id <= 136) id = ToolbarCommand(id);
  if (!CommandEnabled(id, app) || !CommandImplemented(id)) {
    Refuse(app);
    return false;
  }
  Board& b = app.board;
  switch (id) {
    case cmd::CloseLayer:
      CloseLayer(app);
      break;
    case cmd::Information:
      ShowInformation(app);
      break;
    case cmd::Exit:
      app.ExitRequested = true;
      break;
    case cmd::DetectCopperPlanesOnOpen:
      ToggleSetting(app, app.settings.DetectGndPlanes);
      break;
    case cmd::DetectCardContourOnOpen:
      ToggleSetting(app, app.settings.DetectCutOut);
      break;
    case cmd::AutomaticReframing:
      ToggleSetting(app, app.settings.AutoReframe);
      break;
    case cmd::FinalRendering:
      b.FinalRendering = !b.FinalRendering;
      RequestRepaint(app);
      break;
    case cmd::VisualGrid:
      app.settings.ShowGrid = !app.settings.ShowGrid;
      SaveSettings(app);
      RequestRepaint(app);
      break;
    default:
      if (id >= cmd::Recent1 && id <= cmd::Recent5) {
        ImportContext context = MakeImportContext(app);
        OpenRecent(context, id - cmd::Recent1);
        RequestRepaint(app, RepaintLevel::Full);
        break;
      }
      if (id >= cmd::Layer1 && id <= cmd::Layer6) {
        ShowLayer(app, id - cmd::Layer1);
        break;
      }
      return false;  // not reached: CommandImplemented lists exactly the cases above
  }
  return true;
}

bool EscapeKey(Application& app) {
  Board& b = app.board;
  bool taken = false;
  if (b.FinalRendering) {
    b.FinalRendering = false;
    RequestRepaint(app);
    taken = true;
  }
  if (b.PendingCommand != 0) {
    ResetHover(app);
    RequestRepaint(app);
    taken = true;
  }
  app.platform.SetBusyCursor(false);
  return taken;
}

void ClickOutsideBoard(Application& app) {
  const int pending = app.board.PendingCommand;
  if (IsRectanglePick(pending)) {
    Refuse(app);
  } else if (IsItemPick(pending)) {
    ResetHover(app);
    RequestRepaint(app);
  }
}

}  // namespace isolith
