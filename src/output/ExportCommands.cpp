#include "output/ExportCommands.h"

#include <cstdio>

#include "output/ExportDialogs.h"
#include "output/ExportFlip.h"
#include "output/driver/LayerWalk.h"
#include "output/driver/OutputName.h"
#include "output/driver/PathDirections.h"
#include "output/driver/PenMachine.h"
#include "output/driver/SectionWalk.h"
#include "output/formats/FileTypes.h"
#include "params/ToolForms.h"
#include "toolpath/CutPath.h"

namespace isolith {

namespace {

void SaveSettings(OutputContext& context) {
  if (context.saveSettings) context.saveSettings();
}

void ReportFailure(OutputContext& context, const std::string& path) {
  context.platform.ShowMessage("Error", "Unable to export file. ''" + path + "''",
                               MessageIcon::Error);
}

bool HasCutPaths(const Board& board) {
  for (const TCutout* c = board.Cutouts; c; c = c->next)
    if (c->paths) return true;
  return false;
}

bool Usable(const ToolTable& tools, int index, bool cylindrical) {
  if (index < 0 || index >= kToolSlots) return false;
  const TToolData& tool = tools[index];
  if (tool.Diameter < 0.01f) return false;
  return !cylindrical || tool.Profile == kProfileCylindrical;
}

bool ToolsMissing(const OutputContext& context) {
  const Board& board = context.board;
  const Settings& s = context.settings;
  const int layer = board.ActiveLayer;
  if (IsCircuitLayer(layer)) {
    if (board.Contours[layer] && !Usable(context.tools, s.MillingTool, false)) return true;
    if (board.Hatches[layer] && !Usable(context.tools, s.HatchingTool, false)) return true;
  }
  if (HasCutPaths(board) && !Usable(context.tools, s.CuttingTool, true)) return true;
  if (board.Drills) {
    if (s.DrillingMode < 1 || s.DrillingMode > 3) return true;
    const int first = s.DrillingMode < 2 ? s.DrillingTool : s.DrillingLib[0];
    if (!Usable(context.tools, first, true)) return true;
  }
  return false;
}

// The drill list is rebuilt when it has no row yet although there are drills.
void EnsureDrillList(OutputContext& context) {
  if (context.board.Drills && !RowUsed(context.drillList.rows[0]))
    BuildDrillList(context.drillList, context.board, context.settings, context.tools);
}

}  // namespace

std::vector<int> SaveFormats(const OutputContext& context) {
  // A file kind whose writer this program does not have yet is not offered at all.
  std::vector<int> formats;
  if (context.productVariant == 0) {
    if (context.writeJobFile) formats.push_back(kFormatJobFile);
    formats.push_back(kFormatOxbel);
  }
  for (int f : {kFormatHpgl, kFormatDxf, kFormatNcp, kFormatIso, kFormatNum, kFormatCamm3,
                kFormatEgx, kFormatSml, kFormatCbr})
    formats.push_back(f);
  if (context.writeExcellon) formats.push_back(kFormatExcellon);
  if (context.writeGerber) formats.push_back(kFormatGerberOut);
  return formats;
}

bool HasOutput(const Board& board) {
  const int layer = board.ActiveLayer;
  if (IsCircuitLayer(layer) && board.Contours[layer]) return true;
  return board.Drills != nullptr || HasCutPaths(board);
}

bool CheckOutputTools(OutputContext& context) {
  if (!ToolsMissing(context)) return true;
  if (RunActiveToolsDialog(context.platform, context.tools, context.settings))
    SaveSettings(context);
  return !ToolsMissing(context);
}

bool ExportFile(OutputContext& context, const std::string& path, int format, bool fromRun) {
  Board& board = context.board;
  Settings& settings = context.settings;
  OrientContours(board, board.ActiveLayer, settings.MillingDir);
  OrientCutPaths(board, settings.CuttingDir);

  TOutputState naming;
  naming.Format = format;
  naming.FileName = path;
  if (!OpenOutputName(context, naming)) return false;
  const std::string target = naming.FileName;

  TDialogExport exportForm(settings, context.choices, format, target,
                           context.platform.DecimalSeparator());
  if (!context.platform.RunDialog(exportForm)) return false;
  SaveSettings(context);
  TDialogExpMill millForm(board, settings, context.choices);
  if (!context.platform.RunDialog(millForm)) return false;
  SaveSettings(context);

  const int layer = board.ActiveLayer;
  bool written;
  context.platform.SetBusyCursor(true);
  {
    ExportFlip flip(board, context.choices.flipHorizontally);
    float zeroX = board.OriginX, zeroY = board.OriginY;
    if (zeroX <= 0.001f || zeroY <= 0.001f) zeroX = zeroY = 0;
    written = ExportLayerWalk(
        context, format, target, layer, layer < kCircuitLayers, layer == 0 || layer == kDrillLayer,
        layer == 0 || layer == kCutoutLayer, zeroX, zeroY, settings.SingleSequence,
        settings.MillingOptim, settings.DrillingOptim);
  }
  context.platform.SetBusyCursor(false);
  if (!written) {
    ReportFailure(context, target);
    return false;
  }
  if (fromRun && context.choices.editInViewer && context.openTextViewer)
    context.openTextViewer(target);
  return true;
}

void CmdSave(OutputContext& context) {
  Settings& settings = context.settings;
  if (!HasOutput(context.board)) {
    context.platform.Beep(settings.ZapSound);
    return;
  }
  if (!CheckOutputTools(context)) return;
  EnsureDrillList(context);

  const std::vector<int> formats = SaveFormats(context);
  FileRequest request;
  request.folder = settings.ExportPath.empty() ? context.programFolder : settings.ExportPath;
  request.filterIndex = 1;
  for (std::size_t i = 0; i < formats.size(); ++i) {
    request.filters.push_back(FormatFilter(context, formats[i]));
    if (formats[i] == settings.ExportFormat) request.filterIndex = static_cast<int>(i) + 1;
  }
  request.defaultExtension = DefaultExtension(context, settings.ExportFormat);
  const auto chosen = context.platform.SaveFileDialog(request);
  if (!chosen || chosen->empty()) return;
  const std::string path = *chosen;
  int index = request.filterIndex;
  if (index < 1 || index > static_cast<int>(formats.size())) index = 1;
  const int format = formats[index - 1];
  settings.ExportFormat = format;
  settings.ExportPath = FolderOf(path);
  const std::string typed = TypedExtension(path);
  if (!typed.empty() && typed != DefaultExtension(context, format))
    if (std::string* remembered = RememberedExtensionToWrite(settings, format)) *remembered = typed;
  SaveSettings(context);

  switch (format) {
    case kFormatJobFile: {
      TDialogExpMill millForm(context.board, settings, context.choices);
      if (!context.platform.RunDialog(millForm)) return;
      SaveSettings(context);
      if (context.writeJobFile) context.writeJobFile(path);
      return;
    }
    case kFormatExcellon:
      if (context.writeExcellon) context.writeExcellon(path);
      return;
    case kFormatGerberOut:
      if (context.writeGerber) context.writeGerber(path);
      return;
    default:
      ExportFile(context, path, format, false);
  }
}

bool WriteMachineJob(OutputContext& context, const std::string& path) {
  Settings& settings = context.settings;
  if (!HasOutput(context.board)) {
    context.platform.Beep(settings.ZapSound);
    return false;
  }
  if (!CheckOutputTools(context)) return false;
  EnsureDrillList(context);
  if (!settings.MachineSetSeq) return ExportFile(context, path, settings.MachineFormat, true);

  TDialogMillLayers sections(context);
  if (!context.platform.RunDialog(sections)) return false;
  SaveSettings(context);
  context.platform.SetBusyCursor(true);
  const bool written = SectionWalk(context, path, settings.MachineFormat);
  context.platform.SetBusyCursor(false);
  if (!written && !path.empty()) {
    ReportFailure(context, path);
    return false;
  }
  return written;
}

}  // namespace isolith
