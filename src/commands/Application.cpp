#include "commands/Application.h"

#include <algorithm>
#include <utility>

#include "commands/ConfigFolder.h"
#include "core/board/BoardOps.h"
#include "edit/Transforms.h"
#include "params/ColourSets.h"
#include "params/ToolFile.h"

namespace isolith {

Application::Application(Platform& p, std::string programFolder, std::string configFolder)
    : platform(p), ProgramFolder(std::move(programFolder)), ConfigFolder(std::move(configFolder)) {}

void InitSettings(Application& app, int screenWidth, int screenHeight) {
  app.DecimalSeparator = app.platform.DecimalSeparator();

  Settings& s = app.settings;
  s.RecentPath = {};
  s.RecentName = {};
  s.RecentFormat = {};
  ResetApertureTables(app.board);

  s.LengthUnit = kLengthMm;
  s.SpeedUnit = kSpeedMmPerS;

  FillHostFacts(s, app.ProgramFolder, screenWidth, screenHeight);
  if (!app.ConfigFolder.empty()) {
    // The file is read and written back as it stands; the run's overrides come after, so they
    // never reach it.
    if (!StartSettings(app.ConfigFolder, kSettingsBaseName, s, LayerZeroApertures(app.board))) {
      // A first run has just written the file: it reads it back at once, so that it holds what
      // every later run will read (the reader changes a few values on the way, on purpose).
      ReadSettings(app.ConfigFolder, kSettingsBaseName, s, LayerZeroApertures(app.board));
      WriteSettings(app.ConfigFolder, kSettingsBaseName, s, LayerZeroApertures(app.board));
    }
    app.overrides.Apply(s);
    ReadToolLibrary(app.tools, app.ConfigFolder);
    // The user's output format; without the file the built-in one stands.
    ReadPostProcessor(app.postProcessor, app.ConfigFolder, kPostProcessorBaseName);
  } else {
    if (s.ImportPath.empty()) s.ImportPath = s.InstallPath;
    app.overrides.Apply(s);
  }
  ResetJob(app.board);
}

bool SaveSettings(Application& app) {
  if (app.ConfigFolder.empty()) return false;
  return WriteSettings(app.ConfigFolder, kSettingsBaseName, app.overrides.ForFile(app.settings),
                       LayerZeroApertures(app.board));
}

void ResetHover(Application& app) {
  Board& b = app.board;
  if (b.PendingCommand == cmd::CenteringHoles && !IsSet(b.CentreHole1X)) {
    // Placing the first hole made room round the card; leaving without a hole gives it back.
    b.PendingCommand = 0;
    ReframeBoard(b);
  }
  ClearHover(b);
  app.platform.SetBusyCursor(false);
}

void RepaintBookkeeping(Board& b) {
  b.LayerCount = CountLayers(b);
  if (b.RefPad != nullptr) {
    int found = -1;
    for (int layer = 0; layer < kCircuitLayers && found < 0; ++layer)
      for (const TPad* p = b.Pads[layer]; p != nullptr; p = p->next)
        if (p == b.RefPad) {
          found = layer;
          break;
        }
    if (found < 0)
      b.RefPad = nullptr;
    else
      b.RefLayer = found;
  }
}

void RequestRepaint(Application& app, RepaintLevel level) {
  RepaintBookkeeping(app.board);
  app.platform.Repaint(level);
}

void Refuse(Application& app) {
  app.platform.Beep(app.settings.ZapSound);
}

float CardThicknessFromSettings(const Settings& s) {
  return std::max({s.MillingDepth, s.HatchingDepth, s.CuttingDepth, s.DrillingDepth});
}

bool CommandEnabled(int id, const Application& app) {
  return CommandEnabled(id, app.board, app.drawn);
}

bool CommandChecked(int id, const Application& app) {
  const Settings& s = app.settings;
  switch (id) {
    case cmd::CenteringHoles:
      return IsSet(app.board.CentreHole1X);
    case cmd::DetectCopperPlanesOnOpen:
      return s.DetectGndPlanes;
    case cmd::DetectCardContourOnOpen:
      return s.DetectCutOut;
    case cmd::FinalRendering:
      return app.board.FinalRendering;
    case cmd::VisualGrid:
      return s.ShowGrid;
    // The orange set stores 0x006060 but its row looks for 0x006080: its tick stays off.
    case cmd::BlackBackground:
    case cmd::GreenBackground:
    case cmd::OrangeBackground:
    case cmd::WhiteBackground:
      return s.BoardBackground == StandardColourSets()[id - cmd::BlackBackground].tickBackground;
    case cmd::Millimeters:
      return s.LengthUnit == kLengthMm;
    case cmd::Inches:
      return s.LengthUnit == kLengthInch;
    case cmd::AutomaticReframing:
      return s.AutoReframe;
    case cmd::ExternalDriver:
      return app.machine.Flag("ExternalDriver");
    default:
      if (id >= cmd::SpeedUnitFirst && id <= cmd::SpeedUnitLast)
        return s.SpeedUnit == id - cmd::SpeedUnitFirst;
      return false;
  }
}

}  // namespace isolith
