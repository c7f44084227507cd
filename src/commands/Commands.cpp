#include "commands/Commands.h"

#include "commands/CommandHandlers.h"
#include "commands/ImportSteps.h"
#include "commands/LayerCommands.h"
#include "commands/LayerInformation.h"
#include "commands/PendingCommands.h"
#include "commands/WindowTitle.h"
#include "core/board/BoardOps.h"
#include "edit/Transforms.h"
#include "import/OpenLayer.h"
#include "import/TDialogImport.h"

namespace isolith {

namespace {

// A toggle of the settings: flipped, written at once, ticks refreshed by the repaint.
void ToggleSetting(Application& app, bool& value) {
  value = !value;
  SaveSettings(app);
  RequestRepaint(app, RepaintLevel::Status);
}

// "&New circuit...", "&Additional layer..." and "Drills...": the open dialog, then the reader.
void OpenLayer(Application& app, bool isAdditional, int layer) {
  ResetHover(app);
  ImportContext context = MakeImportContext(app);
  OpenLayerDialog(context, app.excellonChoices, isAdditional, layer);
  RequestRepaint(app, RepaintLevel::Full);
}

// The first circuit layer that holds nothing, or the last one when all are taken.
int FirstFreeCircuitLayer(const Board& b) {
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    if (!LayerHasContent(b, layer)) return layer;
  return kCircuitLayers - 1;
}

// "&Import scales": the dialect row's scales and mirror bits, saved on OK.
void EditImportScales(Application& app, int id) {
  app.board.PendingCommand = 0;
  TDialogImport form(app.settings, ImportScalesRow(id), WindowTitle(app.board),
                     app.DecimalSeparator);
  if (app.platform.RunDialog(form)) SaveSettings(app);
  RequestRepaint(app);
}

// An immediate command: ResetHover, the act, a repaint.
template <typename Act>
void Immediate(Application& app, Act act) {
  ResetHover(app);
  act(app.board);
  RequestRepaint(app);
}

void RunFileCommand(Application& app, int id) {
  Board& b = app.board;
  switch (id) {
    case cmd::NewCircuit:
      OpenLayer(app, false, 0);
      break;
    case cmd::AdditionalLayer:
      OpenLayer(app, true, FirstFreeCircuitLayer(b));
      break;
    case cmd::Drills:
      OpenLayer(app, false, kDrillLayer);
      break;
    case cmd::Reframe:
      Immediate(app, [](Board& board) { ReframeBoard(board); });
      break;
    case cmd::FlipHorizontally:
      Immediate(app, [](Board& board) { FlipBoard(board, true, false); });
      break;
    case cmd::FlipVertically:
      Immediate(app, [](Board& board) { FlipBoard(board, false, true); });
      break;
    case cmd::Rotate90:
      Immediate(app, [](Board& board) { RotatePlus(board); });
      break;
    case cmd::RotateMinus90:
      Immediate(app, [](Board& board) { RotateMinus(board); });
      break;
    case cmd::RotatePads90:
      // From the menu Ctrl is never held: the drill and cutout layers are left alone.
      Immediate(app, [](Board& board) { RotatePadApertures(board, false); });
      break;
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
    default:
      break;
  }
}

void RunRecentFile(Application& app, int id) {
  ImportContext context = MakeImportContext(app);
  OpenRecent(context, id - cmd::Recent1);
  RequestRepaint(app, RepaintLevel::Full);
}

void RunShowLayer(Application& app, int id) {
  ShowLayer(app, id - cmd::Layer1);
}

constexpr CommandHandler kFileHandlers[] = {
    {cmd::NewCircuit, cmd::Drills, RunFileCommand},
    {cmd::CloseLayer, cmd::Information, RunFileCommand},
    {cmd::FlipHorizontally, cmd::RotateMinus90, RunFileCommand},
    {cmd::Exit, cmd::Exit, RunFileCommand},
    {cmd::Recent1, cmd::Recent5, RunRecentFile},
    {cmd::DetectCopperPlanesOnOpen, cmd::DetectCopperPlanesOnOpen, RunFileCommand},
    {cmd::DetectCardContourOnOpen, cmd::DetectCardContourOnOpen, RunFileCommand},
    {cmd::RotatePads90, cmd::RotatePads90, RunFileCommand},
    {cmd::Layer1, cmd::Layer6, RunShowLayer},
    {cmd::ImportScaleFirst, cmd::ImportScaleLast, EditImportScales},
    {cmd::AutomaticReframing, cmd::AutomaticReframing, RunFileCommand},
    {cmd::Reframe, cmd::Reframe, RunFileCommand},
};

}  // namespace

std::span<const CommandHandler> FileCommandHandlers() {
  return kFileHandlers;
}

const CommandHandler* FindCommandHandler(int id) {
  for (auto subject : {FileCommandHandlers, TransformCommandHandlers, ToolpathCommandHandlers,
                       OutputCommandHandlers, EditCommandHandlers, DisplayCommandHandlers,
                       MachineCommandHandlers, PopupCommandHandlers})
    for (const CommandHandler& h : subject())
      if (id >= h.first && id <= h.last) return &h;
  return nullptr;
}

bool CommandImplemented(int id) {
  return FindCommandHandler(id) != nullptr;
}

bool RunCommand(Application& app, int id) {
  if (id >= 100 && id <= 136) id = ToolbarCommand(id);
  const CommandHandler* handler = FindCommandHandler(id);
  if (!handler || !CommandEnabled(id, app)) {
    Refuse(app);
    return false;
  }
  handler->run(app, id);
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
  // The points of a new contour segment must lie on the board.
  if (IsRectanglePick(pending) || pending == cmd::AddContourSegments ||
      pending == cmd::AddContourSegmentsSecond) {
    Refuse(app);
  } else if (IsItemPick(pending)) {
    ResetHover(app);
    RequestRepaint(app);
  }
}

}  // namespace isolith
