#include "commands/DisplayCommands.h"

#include <filesystem>
#include <string>

#include "commands/CommandHandlers.h"
#include "params/ColourSets.h"
#include "params/TDialogItemColor.h"

namespace isolith {

namespace {

constexpr const char* kGeneralHelp =
    "Isolith turns the photoplot (Gerber), drill (Excellon) and WinTypon files of a printed "
    "circuit into the toolpaths that mill it.\n\n"
    "Open the first layer with \"New circuit...\" (Ctrl+O), further layers with \"Additional "
    "layer...\" and the holes with \"Drills...\". Calculate the isolation with \"Calculate "
    "contours\", then write the machine file with \"Mill...\".\n\n"
    "On the board:\n"
    "  Mouse wheel, Page Down / Page Up: zoom in at the mouse / zoom out\n"
    "  Tab, Shift+Tab: next / previous layer\n"
    "  Esc: leave the final rendering, cancel the command that waits for a click\n"
    "  Ctrl+D: dimensions of the card\n"
    "  F1: this help";

void Repaint(Application& app) {
  RequestRepaint(app, RepaintLevel::Full);
}

void RunZoomOut(Application& app, int) {
  if (!ZoomOut(app.board)) Refuse(app);
  Repaint(app);
}

// "Zoom in": the rectangle the mouse draws next becomes the view; refused when the view is
// already as small as a zoom goes.
void RunZoomIn(Application& app, int) {
  const Board& b = app.board;
  if (b.ViewRight - b.ViewLeft <= kMinimumZoom || b.ViewTop - b.ViewBottom <= kMinimumZoom) {
    Refuse(app);
    return;
  }
  ResetHover(app);
  app.board.PendingCommand = cmd::ZoomIn;
  Repaint(app);
}

void RunFinalRendering(Application& app, int) {
  ResetHover(app);
  app.board.FinalRendering = !app.board.FinalRendering;
  Repaint(app);
}

void RunVisualGrid(Application& app, int) {
  app.settings.ShowGrid = !app.settings.ShowGrid;
  SaveSettings(app);
  Repaint(app);
}

// A standard set: written over the colours (the file keeps them at exit), the final
// rendering left and the pending pick cleared.
void RunColourSet(Application& app, int id) {
  ApplyColourSet(app.settings, StandardColourSets()[id - cmd::BlackBackground]);
  app.board.FinalRendering = false;
  app.board.PendingCommand = 0;
  Repaint(app);
}

void RunCustomiseColours(Application& app, int) {
  SaveSettings(app);
  TDialogItemColor form(app.settings);
  // The form writes only on OK, so that Cancel leaves the colours the file holds.
  if (app.platform.RunDialog(form)) SaveSettings(app);
  app.board.FinalRendering = false;
  Repaint(app);
}

// The length unit (11857, 11858) or the speed unit (11861 to 11865), with its label.
void RunUnit(Application& app, int id) {
  Settings& s = app.settings;
  if (id <= cmd::Inches) {
    s.LengthUnit = id - cmd::Millimeters;
    s.LengthUnitLabel = kLengthUnitLabels[s.LengthUnit];
  } else {
    s.SpeedUnit = id - cmd::SpeedUnitFirst;
    s.SpeedUnitLabel = kSpeedUnitLabels[s.SpeedUnit];
  }
  SaveSettings(app);
  Repaint(app);
}

void RunHelp(Application& app, int id) {
  Platform& ui = app.platform;
  switch (id) {
    case cmd::UsersManual: {
      const std::string manual = app.ProgramFolder + kManualFile;
      std::error_code ec;
      if (!std::filesystem::is_regular_file(manual, ec)) {
        ui.ShowMessage(kProgramName, "The user's manual cannot be found:\n" + manual,
                       MessageIcon::Error);
      } else if (!ui.StartProcess("xdg-open", {manual}, app.ProgramFolder)) {
        ui.ShowMessage(kProgramName, "The user's manual cannot be shown:\n" + manual,
                       MessageIcon::Error);
      }
      break;
    }
    case cmd::GeneralHelp:
      ui.ShowMessage(std::string(kProgramName) + " help", kGeneralHelp, MessageIcon::Information);
      break;
    default:
      ui.ShowMessage(std::string("About ") + kProgramName,
                     std::string(kProgramName) + " " + kProgramVersion +
                         "\nMilling toolpaths for printed circuits.",
                     MessageIcon::Information);
      break;
  }
}

constexpr CommandHandler kDisplayHandlers[] = {
    {cmd::ZoomIn, cmd::ZoomIn, RunZoomIn},
    {cmd::ZoomOut, cmd::ZoomOut, RunZoomOut},
    {cmd::FinalRendering, cmd::FinalRendering, RunFinalRendering},
    {cmd::VisualGrid, cmd::VisualGrid, RunVisualGrid},
    {cmd::BlackBackground, cmd::WhiteBackground, RunColourSet},
    {cmd::CustomiseColours, cmd::CustomiseColours, RunCustomiseColours},
    {cmd::Millimeters, cmd::Inches, RunUnit},
    {cmd::SpeedUnitFirst, cmd::SpeedUnitLast, RunUnit},
    {cmd::UsersManual, cmd::UsersManual, RunHelp},
    {cmd::GeneralHelp, cmd::GeneralHelp, RunHelp},
    {cmd::About, cmd::About, RunHelp},
};

}  // namespace

void ZoomStepCommand(Application& app, bool in, int px, int py) {
  const ZoomStep step = in ? ZoomStepIn(app.view, app.board, px, py) : ZoomStepOut(app.board);
  if (step == ZoomStep::Refused) Refuse(app);
  if (step == ZoomStep::Done) Repaint(app);
}

std::span<const CommandHandler> DisplayCommandHandlers() {
  return kDisplayHandlers;
}

}  // namespace isolith
