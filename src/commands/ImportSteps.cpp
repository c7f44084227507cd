#include "commands/ImportSteps.h"

#include "commands/CommandHandlers.h"
#include "commands/EditCommands.h"
#include "core/board/BoardOps.h"
#include "edit/Transforms.h"
#include "toolpath/CardContour.h"
#include "toolpath/CopperPlanes.h"
#include "toolpath/DrillList.h"

namespace isolith {

ImportContext MakeImportContext(Application& app) {
  ImportContext context{app.board, app.settings, app.platform, app.ProgramFolder, {}};
  GerberLoadSteps& steps = context.steps;
  steps.resetHover = [&app] { ResetHover(app); };
  steps.cardThickness = [&app] { return CardThicknessFromSettings(app.settings); };
  steps.reframe = [&app] {
    ReframeBoard(app.board);
    ResetHover(app);
    RequestRepaint(app);
  };
  steps.saveSettings = [&app] { SaveSettings(app); };
  // After the warning about missing aperture definitions, the aperture dialogs open as the menu
  // opens them; a run started with AUTOSTART or AUTOMILL goes through without a person.
  steps.modifyPads = [&app] {
    if (!(app.AutoStart || app.AutoMill)) ModifyPadsCommand(app, false);
  };
  steps.modifyTracks = [&app] {
    if (!(app.AutoStart || app.AutoMill)) ModifyTracksCommand(app, false);
  };
  steps.detectCopperPlanes = [&app](int layer) {
    DetectCopperPlanes(app.board, app.platform, layer, false);
  };
  steps.detectCardContour = [&app](int layer) {
    // Started with AUTOSTART or AUTOMILL, a detected edge is taken without asking.
    CutContext cut{app.board, app.platform, app.settings, app.tools,
                   !(app.AutoStart || app.AutoMill)};
    return DetectCardContour(cut, layer) && !LayerHasContent(app.board, layer);
  };
  // A small first layer on a large card: "&Dimensions..." opens, as the menu runs it; not in a
  // run started with AUTOSTART or AUTOMILL, which goes through without a person.
  steps.dimensions = [&app] {
    if (app.AutoStart || app.AutoMill) return;
    if (const CommandHandler* dimensions = FindCommandHandler(cmd::Dimensions))
      dimensions->run(app, cmd::Dimensions);
  };
  steps.rebuildDrillTable = [&app] {
    BuildDrillList(app.drillList, app.board, app.settings, app.tools);
  };
  return context;
}

}  // namespace isolith
