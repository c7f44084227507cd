#include "output/OutputFormatForm.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <utility>

#include "output/PortParametersForm.h"
#include "output/formats/FileTypes.h"
#include "output/postprocessor/PostProcessorForm.h"
#include "output/transfer/PortNames.h"
#include "params/FieldChecks.h"
#include "params/ToolForms.h"

namespace isolith {

namespace {

constexpr double kMachineScaleLimit = 1000;                      // the machine scales, both ways
constexpr double kMinHeight = -10, kMaxHeight = 1000;            // mm
constexpr double kMinClearSpeed = 6, kMaxClearSpeed = 65535;     // mm/min
constexpr double kCamm3RapidSpeed = 900, kEgxRapidSpeed = 3000;  // mm/min

bool Listed(int code) {
  return std::find(std::begin(TDialogCopOutput::kFormats), std::end(TDialogCopOutput::kFormats),
                   code) != std::end(TDialogCopOutput::kFormats);
}

}  // namespace

std::string WithExtension(const std::string& path, const std::string& extension) {
  const std::size_t slash = path.find_last_of('/');
  const std::size_t dot = path.find_last_of('.');
  const bool hasDot = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  return (hasDot ? path.substr(0, dot) : path) + "." + extension;
}

TDialogCopOutput::TDialogCopOutput(Settings& settings, TPostProcessor& pp, std::string folder,
                                   const std::string& proposedName,
                                   std::function<void()> saveSettings, char separator,
                                   std::vector<TShippedPostProcessor> shipped,
                                   std::vector<std::string> printers_)
    : format(settings.MachineFormat),
      sections(settings.MachineSetSeq),
      arcs(settings.MachineArcs),
      file(settings.MachineFile),
      run(settings.MachineRun),
      output(settings.MachineOutput >= kMachineOutputFile &&
                     settings.MachineOutput <= kMachineOutputPort
                 ? settings.MachineOutput
                 : kMachineOutputFile),
      printers(std::move(printers_)),
      printer(settings.MachinePrn),
      port(settings.MachinePort),
      lineEnd(settings.MachineEol < 4 ? settings.MachineEol : 1),
      settings_(settings),
      pp_(pp),
      folder_(std::move(folder)),
      saveSettings_(std::move(saveSettings)),
      separator_(separator),
      shipped_(std::move(shipped)) {
  BuildFormatList();
  scaleXY = FormatFieldFloat(settings.MachineScaleXY, 3, separator);
  scaleZ = FormatFieldFloat(settings.MachineScaleZ, 3, separator);
  scaleVxy = FormatFieldFloat(settings.MachineScaleVxy, 3, separator);
  scaleVz = FormatFieldFloat(settings.MachineScaleVz, 3, separator);
  clearHeight = FormatFieldFloat(settings.ExportClearHeight, 3, separator);
  zeroHeight = FormatFieldFloat(settings.ExportZeroHeight, 3, separator);
  clearSpeed = FormatSpeedField(settings.ExportClearSpeed, settings.SpeedUnit, separator);
  // A first opening proposes a file and the desktop's viewer to look at it.
  if (file.empty() && settings.MachineOutput == 0)
    file = proposedName + "." + FormatExtension(format);
  if (run.empty()) run = kProposedRun;
  if (printer.empty()) {
    const auto roland = std::find_if(printers.begin(), printers.end(), [](const std::string& name) {
      std::string upper = name;
      for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      return upper.find("ROLAND") != std::string::npos;
    });
    if (roland != printers.end())
      printer = *roland;
    else if (!printers.empty())
      printer = printers.front();
  }
  for (int n = 1; n <= kLptPorts; ++n) ports.push_back("LPT" + std::to_string(n));
  for (int n = 1; n <= kComPorts; ++n) ports.push_back("COM" + std::to_string(n));
}

bool TDialogCopOutput::EditPortParameters(Platform& platform) {
  TDialogRS232 form(settings_);
  if (!platform.RunDialog(form)) return false;
  port = settings_.MachinePort;
  return true;
}

void TDialogCopOutput::BuildFormatList() {
  if (!folder_.empty()) ReadPostProcessor(pp_, folder_, kPostProcessorBaseName);
  formats.clear();
  for (int code : kFormats) {
    std::string label = FileTypeOf(code).title;
    if (code == kFormatUser) label += " \"" + pp_.Title + "\"";
    formats.push_back({code, std::move(label), {}});
  }
  for (const TShippedPostProcessor& p : shipped_) {
    formats.push_back(
        {kFormatUser,
         FileTypeOf(kFormatUser).title + (" \"" + p.title + "\"") + std::string(kShippedMark),
         p.name});
  }
}

void TDialogCopOutput::ChooseRow(size_t row) {
  if (row >= formats.size()) return;
  shippedChoice = formats[row].shipped;
  ChooseFormat(formats[row].code);
  if (shippedChoice.empty()) return;
  sections = true;
  TPostProcessor chosen;
  const TShippedPostProcessor* found = FindShippedPostProcessor(shipped_, shippedChoice);
  if (found && LoadShippedPostProcessor(chosen, *found, settings_.SpeedUnit) && !file.empty())
    file = WithExtension(file, chosen.FileExt);
}

size_t TDialogCopOutput::SelectedRow() const {
  for (size_t row = 0; row < formats.size(); ++row)
    if (formats[row].code == format && formats[row].shipped == shippedChoice) return row;
  return 0;
}

std::string TDialogCopOutput::FormatExtension(int code) const {
  if (code == kFormatUser && !pp_.FileExt.empty()) return pp_.FileExt;
  return FileTypeOf(code).extension;
}

void TDialogCopOutput::ChooseFormat(int code) {
  format = code;
  scaleXY = scaleZ = scaleVxy = scaleVz = FormatFieldFloat(1, 3, separator_);
  arcs = true;
  if (code == kFormatCamm3 || code == kFormatEgx) {
    clearSpeed = FormatSpeedField(code == kFormatCamm3 ? kCamm3RapidSpeed : kEgxRapidSpeed,
                                  settings_.SpeedUnit, separator_);
    sections = true;
  }
  if (!file.empty()) file = WithExtension(file, FormatExtension(code));
}

bool TDialogCopOutput::PostProcessorEnabled() const {
  return format == kFormatUser && shippedChoice.empty();
}

bool TDialogCopOutput::ImportShipped(Platform& platform) {
  const TShippedPostProcessor* found = FindShippedPostProcessor(shipped_, shippedChoice);
  TPostProcessor chosen;
  if (!found || !LoadShippedPostProcessor(chosen, *found, settings_.SpeedUnit)) {
    platform.ShowMessage("Error",
                         "Unable to read ''" + (found ? found->path : shippedChoice) + "''",
                         MessageIcon::Error);
    return false;
  }
  // The user's own format is replaced only when they say so.
  TPostProcessor own;
  if (!folder_.empty() && ReadPostProcessor(own, folder_, kPostProcessorBaseName) &&
      PostProcessorFileText(own) != PostProcessorFileText(chosen) &&
      platform.Ask(kTitle,
                   "Replace the post-processor \"" + own.Title + "\" of ''" +
                       PostProcessorPath(folder_, kPostProcessorBaseName) + "'' with \"" +
                       chosen.Title + "\"?",
                   false, Answer::No) != Answer::Yes)
    return false;
  // Without a configuration folder there is no "Isolith.ppf" to copy it into.
  if (folder_.empty() || !WritePostProcessor(chosen, folder_, kPostProcessorBaseName)) {
    platform.ShowMessage(
        "Error", "Unable to write ''" + PostProcessorPath(folder_, kPostProcessorBaseName) + "''",
        MessageIcon::Error);
    return false;
  }
  pp_ = std::move(chosen);
  settings_.PprExtension = pp_.FileExt;
  return true;
}

bool TDialogCopOutput::EditPostProcessor(Platform& platform) {
  // Without a folder there is no "Isolith.ppf" to edit.
  if (!PostProcessorEnabled() || folder_.empty()) return false;
  if (!isolith::EditPostProcessor(platform, pp_, settings_, folder_)) return false;
  if (saveSettings_) saveSettings_();
  BuildFormatList();
  if (!file.empty()) file = WithExtension(file, FormatExtension(format));
  return true;
}

bool TDialogCopOutput::Accept(Platform& platform) {
  Settings& s = settings_;
  float xy = s.MachineScaleXY, z = s.MachineScaleZ, vxy = s.MachineScaleVxy, vz = s.MachineScaleVz;
  struct ScaleField {
    const char* label;
    const std::string& text;
    float& value;
    Field field;
  };
  const ScaleField scales[] = {{"XY scale", scaleXY, xy, kScaleXY},
                               {"Z scale", scaleZ, z, kScaleZ},
                               {"Vxy scale", scaleVxy, vxy, kScaleVxy},
                               {"Vz scale", scaleVz, vz, kScaleVz}};
  for (const ScaleField& f : scales) {
    if (!CheckFloatField(platform, f.label, f.text, "", f.value, -kMachineScaleLimit,
                         kMachineScaleLimit)) {
      focus = f.field;
      return false;
    }
  }
  float height = s.ExportClearHeight, margin = s.ExportZeroHeight;
  if (!CheckFloatField(platform, "Tool clearance height", clearHeight, s.LengthUnitLabel, height,
                       kMinHeight, kMaxHeight)) {
    focus = kClearHeight;
    return false;
  }
  if (!CheckFloatField(platform, "Surface contact margin", zeroHeight, s.LengthUnitLabel, margin,
                       kMinHeight, kMaxHeight)) {
    focus = kZeroHeight;
    return false;
  }
  float speed = static_cast<float>(SpeedToUnit(s.ExportClearSpeed, s.SpeedUnit));
  if (!CheckFloatField(platform, "Cleared tool rapid speed", clearSpeed, s.SpeedUnitLabel, speed,
                       SpeedToUnit(kMinClearSpeed, s.SpeedUnit),
                       SpeedToUnit(kMaxClearSpeed, s.SpeedUnit))) {
    focus = kClearSpeed;
    return false;
  }

  if (output == kMachineOutputPort && (port.empty() || port.size() > kMachinePortLength)) {
    platform.ShowMessage("Error", kPortTooLong, MessageIcon::Error);
    focus = kPort;
    return false;
  }

  if (!shippedChoice.empty()) {
    if (!sections) {
      platform.ShowMessage("Error", kShippedNeedsSections, MessageIcon::Error);
      return false;
    }
    if (!ImportShipped(platform)) return false;
  }
  if (Listed(format)) s.MachineFormat = format;
  s.MachineSetSeq = sections;
  s.MachineArcs = arcs;
  s.MachineScaleXY = xy;
  s.MachineScaleZ = z;
  s.MachineScaleVxy = vxy;
  s.MachineScaleVz = vz;
  s.ExportClearHeight = height;
  s.ExportZeroHeight = margin;
  const double mmPerMin =
      std::clamp(std::round(SpeedFromUnit(speed, s.SpeedUnit)), kMinClearSpeed, kMaxClearSpeed);
  s.ExportClearSpeed = static_cast<uint16_t>(mmPerMin);
  s.MachineOutput = output;
  if (output == kMachineOutputFile) {
    s.MachineFile = file;
    s.MachineRun = run;
  } else if (output == kMachineOutputPrinter) {
    s.MachinePrn = printer;
  } else {
    s.MachinePort = port;
    s.MachineEol = static_cast<uint8_t>(lineEnd);
  }
  return true;
}

}  // namespace isolith
