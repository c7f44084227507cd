// The transform commands of the menus: the dialogs over the card, the origin, the scale and the
// shift, and the two picks of the reference pad. The flips and quarter turns are immediate and
// run with the file commands.
#include "commands/TransformCommands.h"

#include "commands/CommandHandlers.h"
#include "core/board/BoardOps.h"
#include "edit/TransformForms.h"
#include "edit/Transforms.h"
#include "toolpath/CentringHoles.h"

namespace isolith {

namespace {

const std::string& LengthUnit(const Application& app) {
  return app.settings.LengthUnitLabel;
}

// A pick: the hover cleared, final rendering left, a repaint, then the wait for the click.
void BeginPick(Application& app, int id) {
  ResetHover(app);
  app.board.FinalRendering = false;
  RequestRepaint(app);
  app.board.PendingCommand = id;
}

// "&Dimensions...": the card's size and thickness, then the offer to mill and drill to the new
// thickness.
void EditDimensions(Application& app) {
  Board& b = app.board;
  b.PendingCommand = 0;
  TDialogSize form(b, LengthUnit(app), app.DecimalSeparator);
  if (!app.platform.RunDialog(form)) {
    RequestRepaint(app);
    return;
  }
  RequestRepaint(app);
  if (OfferThicknessAsDepths(app.platform, app.settings, b.CardThickness, app.DecimalSeparator))
    SaveSettings(app);
}

// "O&rigin": the position typed in, or "Plot manually" and a click on an item.
void EditOrigin(Application& app) {
  Board& b = app.board;
  b.PendingCommand = 0;
  TDialogOriginPoint form(b, LengthUnit(app), app.DecimalSeparator);
  const bool ok = app.platform.RunDialog(form);
  RequestRepaint(app);
  if (!ok && form.plotManually) b.PendingCommand = cmd::Origin;
}

// "S&cale...".
void EditScale(Application& app) {
  app.board.PendingCommand = 0;
  TDialogScale form(app.board, LengthUnit(app), app.DecimalSeparator);
  app.platform.RunDialog(form);
  RequestRepaint(app);
}

// "O&ffset...".
void EditShift(Application& app) {
  app.board.PendingCommand = 0;
  TDialogShift form(app.board, CardThicknessFromSettings(app.settings), LengthUnit(app),
                    app.DecimalSeparator);
  app.platform.RunDialog(form);
  RequestRepaint(app);
}

void RunTransformCommand(Application& app, int id) {
  switch (id) {
    case cmd::Dimensions:
      EditDimensions(app);
      break;
    case cmd::Origin:
      EditOrigin(app);
      break;
    case cmd::Scale:
      EditScale(app);
      break;
    case cmd::Offset:
      EditShift(app);
      break;
    case cmd::ReferencePad:
      // A new reference is chosen from scratch: the old one is dropped at once.
      app.board.RefPad = nullptr;
      BeginPick(app, cmd::ReferencePad);
      break;
    case cmd::AdjustOnReference:
      BeginPick(app, cmd::AdjustOnReference);
      break;
    default:
      break;
  }
}

constexpr CommandHandler kTransformHandlers[] = {
    {cmd::Dimensions, cmd::AdjustOnReference, RunTransformCommand},
};

// The point of the hovered item that the origin takes, false when nothing is hovered.
bool PickedOrigin(const Board& b, float mouseX, float mouseY, float& x, float& y) {
  if (b.HoverPad) {
    x = b.HoverPad->x;
    y = b.HoverPad->y;
    return true;
  }
  if (b.HoverDrill) {
    x = b.HoverDrill->x;
    y = b.HoverDrill->y;
    return true;
  }
  if (b.HoverCentreHole != 0 && CenteringHole(b, b.HoverCentreHole, x, y)) return true;
  if (b.HoverTrack) {
    const TTrack& t = *b.HoverTrack;
    const double d1 = (double(t.x1) - mouseX) * (double(t.x1) - mouseX) +
                      (double(t.y1) - mouseY) * (double(t.y1) - mouseY);
    const double d2 = (double(t.x2) - mouseX) * (double(t.x2) - mouseX) +
                      (double(t.y2) - mouseY) * (double(t.y2) - mouseY);
    x = d2 < d1 ? t.x2 : t.x1;
    y = d2 < d1 ? t.y2 : t.y1;
    return true;
  }
  return false;
}

}  // namespace

std::span<const CommandHandler> TransformCommandHandlers() {
  return kTransformHandlers;
}

bool TransformClickAction(Application& app, int pendingId, float x, float y) {
  Board& b = app.board;
  switch (pendingId) {
    case cmd::Origin: {
      float ox, oy;
      if (!PickedOrigin(b, x, y, ox, oy)) return false;
      b.OriginX = ox;
      b.OriginY = oy;
      break;
    }
    case cmd::ReferencePad:
      if (!b.HoverPad || !IsCircuitLayer(b.ActiveLayer)) return false;
      b.RefPad = b.HoverPad;
      b.RefLayer = b.ActiveLayer;
      break;
    case cmd::AdjustOnReference:
      // The layers may have been switched while the pick waited: a layer cannot be adjusted
      // on its own reference.
      if (b.RefPad && b.ActiveLayer == b.RefLayer) {
        Refuse(app);
        return false;
      }
      if (!AdjustOnReference(b)) return false;
      break;
    default:
      return false;
  }
  ResetHover(app);
  RequestRepaint(app);
  return true;
}

}  // namespace isolith
