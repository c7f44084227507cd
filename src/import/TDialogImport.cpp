#include "import/TDialogImport.h"

#include "import/Dialects.h"
#include "params/FieldChecks.h"

namespace isolith {

namespace {

constexpr double kMinimumScale = 0.001;
constexpr double kMaximumScale = 1000;
constexpr int kScaleDecimals = 3;
constexpr double kMinimumArcTolerance = 0.0001;
constexpr double kMaximumArcTolerance = 1;
constexpr int kToleranceDecimals = 4;

}  // namespace

int ImportScalesRow(int commandId) {
  if (commandId < kImportScalesFirstCommand || commandId > kImportScalesLastCommand) return -1;
  return commandId - kImportScalesFirstCommand;
}

TDialogImport::TDialogImport(Settings& settings, int row, std::string_view windowTitle,
                             char separator)
    : settings_(settings), row_(row < 0 || row >= kImportRows ? kRowGerber : row) {
  const TImportFormat& f = settings_.ImportFormat[row_];
  title = std::string(windowTitle) + " " + Dialect(row_).upperName;
  scaleIn = FormatFieldFloat(f.ScaleIn, kScaleDecimals, separator);
  aperScaleIn = FormatFieldFloat(f.AperScaleIn, kScaleDecimals, separator);
  drillScaleIn = FormatFieldFloat(f.DrillScaleIn, kScaleDecimals, separator);
  hasApertures = row_ != kRowExcellon;
  flipX = f.FlipXY & 1;
  flipY = f.FlipXY & 2;
  swapXY = f.FlipXY & 4;
  modernImport = settings_.ModernImport;
  arcTolerance = FormatFieldFloat(settings_.ArcTolerance, kToleranceDecimals, separator);
}

bool TDialogImport::Accept(Platform& platform) {
  TImportFormat& f = settings_.ImportFormat[row_];
  float scale = f.ScaleIn, aperture = f.AperScaleIn, drill = f.DrillScaleIn;
  auto refuse = [&](Field field) {
    focus = field;
    return false;
  };
  if (!CheckFloatField(platform, "XY co-ordinates", scaleIn, "", scale, kMinimumScale,
                       kMaximumScale))
    return refuse(kScaleIn);
  if (hasApertures && !CheckFloatField(platform, "Apertures", aperScaleIn, "", aperture,
                                       kMinimumScale, kMaximumScale))
    return refuse(kAperScaleIn);
  if (!CheckFloatField(platform, "Drills", drillScaleIn, "", drill, kMinimumScale, kMaximumScale))
    return refuse(kDrillScaleIn);
  float tolerance = settings_.ArcTolerance;
  if (!CheckFloatField(platform, "Arc tolerance", arcTolerance, "", tolerance, kMinimumArcTolerance,
                       kMaximumArcTolerance))
    return refuse(kArcTolerance);
  focus = kNoField;
  settings_.ModernImport = modernImport;
  settings_.ArcTolerance = tolerance;
  f.ScaleIn = scale;
  f.AperScaleIn = aperture;
  f.DrillScaleIn = drill;
  // Bits the dialog does not show are kept.
  f.FlipXY =
      static_cast<uint8_t>((f.FlipXY & ~7) | (flipX ? 1 : 0) | (flipY ? 2 : 0) | (swapXY ? 4 : 0));
  return true;
}

}  // namespace isolith
