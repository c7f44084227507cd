#include "params/ToolForms.h"

#include <algorithm>
#include <cmath>

#include "params/Expression.h"
#include "params/FieldChecks.h"
#include "params/ToolFile.h"

namespace isolith {

namespace {

constexpr const char* kDegreeSign = "\xC2\xB0";  // "°"

// The plunge speed of the library dialog goes up to 3000 mm/min; the job speeds are held in
// 16 bits, from the 6 mm/min that the settings file allows.
constexpr double kMaxPlungeSpeed = 3000;
constexpr double kMinJobSpeed = 6;
constexpr double kMaxJobSpeed = 65535;

uint16_t StoredSpeed(double unitValue, int speedUnit) {
  double mmPerMin = std::round(SpeedFromUnit(unitValue, speedUnit));
  return static_cast<uint16_t>(std::clamp(mmPerMin, 0.0, 65535.0));
}

// A name cut to the field's length, never inside a UTF-8 character.
std::string CutName(std::string_view name, size_t length) {
  if (name.size() <= length) return std::string(name);
  size_t n = length;
  while (n > 0 && (static_cast<unsigned char>(name[n]) & 0xC0) == 0x80) --n;
  return std::string(name.substr(0, n));
}

bool Filled(const TToolData& t) {
  return t.Diameter != 0;
}

// The filled cylindrical tool nearest to `diameter`; the lowest number wins a tie.
int NearestCylindrical(const ToolTable& tools, double diameter) {
  int best = -1;
  double bestDistance = 0;
  for (int i = 0; i < kToolSlots; ++i) {
    const TToolData& t = tools[i];
    if (!Filled(t) || t.Profile != kProfileCylindrical) continue;
    double distance = std::fabs(t.Diameter - diameter);
    if (best < 0 || distance < bestDistance) {
      best = i;
      bestDistance = distance;
    }
  }
  return best;
}

bool Chosen(int tool) {
  return tool >= 0 && tool < kToolSlots;
}

}  // namespace

double SpeedToUnit(double mmPerMin, int speedUnit) {
  switch (speedUnit) {
    case kSpeedMPerMin:
      return mmPerMin * 0.001;
    case kSpeedMmPerS:
      return mmPerMin / 60;
    case kSpeedInchPerMin:
      return mmPerMin / 25.4;
    case kSpeedInchPerS:
      return mmPerMin / 1524;
    default:
      return mmPerMin;
  }
}

double SpeedFromUnit(double value, int speedUnit) {
  switch (speedUnit) {
    case kSpeedMPerMin:
      return value * 1000;
    case kSpeedMmPerS:
      return value * 60;
    case kSpeedInchPerMin:
      return value * 25.4;
    case kSpeedInchPerS:
      return value * 1524;
    default:
      return value;
  }
}

std::string FormatSpeedField(double mmPerMin, int speedUnit, char separator) {
  // Inches per second need a fourth decimal to bring a whole mm/min back unchanged.
  int decimals = speedUnit == kSpeedInchPerS ? 4 : 3;
  return FormatFieldFloat(SpeedToUnit(mmPerMin, speedUnit), decimals, separator);
}

std::vector<std::string> ToolChoiceRows(const ToolTable& tools, char separator) {
  std::vector<std::string> rows;
  rows.reserve(kToolSlots);
  for (int i = 0; i < kToolSlots; ++i) rows.push_back(ToolChoiceLabel(tools, i, separator));
  return rows;
}

// ---- "Tool library" ----

TDialogPcbToolData::TDialogPcbToolData(ToolTable& tools, const Settings& settings,
                                       std::string folder, char separator)
    : tools_(tools), settings_(settings), folder_(std::move(folder)), separator_(separator) {
  LoadSlot(0);
}

void TDialogPcbToolData::LoadSlot(int index) {
  number = index + 1;
  working = tools_[index];
  ShowWorking();
}

void TDialogPcbToolData::ShowWorking() {
  numberText = std::to_string(number);
  const TToolData& t = working;
  if (!Filled(t)) {
    name.clear();
    diameter.clear();
    profile = -1;
    angle.clear();
    rotation.clear();
    plungeSpeed.clear();
    return;
  }
  name = CutName(ToolName(t), kNameLength);
  diameter = FormatFieldFloat(t.Diameter, 3, separator_);
  profile = t.Profile == kProfileCylindrical ? 0 : t.Profile == kProfileConical ? 1 : -1;
  angle.clear();
  if (t.Profile == kProfileConical || t.Profile == kProfilePyramidal) {
    angle = FormatFieldFloat(static_cast<float>(t.ConicalAngle * kRadiansToDegrees), 3, separator_);
  }
  rotation = std::to_string(t.RotationSpeed);
  // A tool without a locked plunge speed is offered the usual 60 mm/min.
  plungeSpeed = FormatSpeedField(t.AbsDrillSpeed == 0 ? 60 : t.AbsDrillSpeed, settings_.SpeedUnit,
                                 separator_);
}

bool TDialogPcbToolData::Validate(Platform& platform) {
  focus = kNoField;
  SetToolName(working, CutName(name, kNameLength));

  float d = working.Diameter;
  if (!CheckFloatFieldOr(platform, "Diameter", diameter, settings_.LengthUnitLabel, d, 0, 0, 100)) {
    focus = kDiameter;
    return false;
  }
  working.Diameter = d;

  // The list has two rows; a tool of another profile (from the suite's file) keeps it until a
  // row is chosen.
  if (profile == 0) working.Profile = kProfileCylindrical;
  if (profile == 1) working.Profile = kProfileConical;

  if (working.Profile == kProfileConical) {
    float degrees = static_cast<float>(working.ConicalAngle * kRadiansToDegrees);
    if (!CheckFloatFieldOr(platform, "Angle", angle, kDegreeSign, degrees, 90, 1, 180)) {
      focus = kAngle;
      return false;
    }
    working.ConicalAngle = static_cast<float>(degrees * kDegreesToRadians);
  } else if (working.Profile == kProfileCylindrical) {
    working.ConicalAngle = 0;
  }

  int rpm = working.RotationSpeed;
  if (!CheckIntFieldOr(platform, "Rotate", rotation, "rpm", rpm, 8000, 0, 1000000)) {
    focus = kRotation;
    return false;
  }
  working.RotationSpeed = rpm;

  float speed = 0;
  if (!CheckFloatFieldOr(platform, "Speed", plungeSpeed, settings_.SpeedUnitLabel, speed, 0, 0,
                         SpeedToUnit(kMaxPlungeSpeed, settings_.SpeedUnit))) {
    focus = kSpeed;
    return false;
  }
  working.AbsDrillSpeed = StoredSpeed(speed, settings_.SpeedUnit);
  working.RelDrillSpeed = 0;
  return true;
}

bool TDialogPcbToolData::NumberChanged(Platform& platform) {
  IntExprResult r = EvaluateInt(numberText, separator_);
  if (r.errorPosition != 0 || r.value <= 0 || r.value == number) return false;
  if (r.value > kToolSlots) {
    // The table ends at 50: the typed number is refused and the shown one comes back.
    platform.Beep(settings_.ZapSound);
    numberText = std::to_string(number);
    focus = kNumber;
    return false;
  }
  if (!Validate(platform)) {
    ShowWorking();
    return false;
  }
  tools_[number - 1] = working;
  LoadSlot(r.value - 1);
  focus = kNumber;
  return true;
}

void TDialogPcbToolData::AngleChanged(Platform&) {
  ExprResult r = EvaluateExpression(angle, separator_);
  if (r.errorPosition == 0 && r.value > 0 && profile != 1) profile = 1;
}

bool TDialogPcbToolData::Accept(Platform& platform) {
  if (!Validate(platform)) return false;
  tools_[number - 1] = working;
  if (!WriteTools(tools_, folder_, kToolBaseName, true)) {
    platform.ShowMessage("Error",
                         "Unable to write tool parameter file.\nParameters may be reinitialised.",
                         MessageIcon::Error);
  }
  return true;
}

// ---- "Active tools" ----

TDialogDrill::TDialogDrill(ToolTable& tools, Settings& settings, char separator)
    : tools_(tools), settings_(settings), separator_(separator) {
  const Settings& s = settings;
  millingTool = s.MillingTool;
  if (millingTool < 0) {
    for (int i = 0; i < kToolSlots; ++i) {
      if (Filled(tools[i]) && tools[i].Profile == kProfileConical) {
        millingTool = i;
        break;
      }
    }
  }
  hatchingTool = s.HatchingTool < 0 ? millingTool : s.HatchingTool;
  cuttingTool = s.CuttingTool < 0 ? NearestCylindrical(tools, 2.54) : s.CuttingTool;
  plottingTool = s.PlottingTool < 0 ? cuttingTool : s.PlottingTool;
  drillingTool = s.DrillingTool < 0 ? NearestCylindrical(tools, 1.0) : s.DrillingTool;

  millingDepth = FormatFieldFloat(s.MillingDepth, 3, separator);
  millingMargin = FormatFieldFloat(s.MillingMargin, 3, separator);
  millingSpeed = FormatSpeedField(s.MillingSpeed, s.SpeedUnit, separator);
  hatchingDepth = FormatFieldFloat(s.HatchingDepth, 3, separator);
  hatchingMargin = FormatFieldFloat(s.HatchingMargin, 3, separator);
  hatchingSpeed = FormatSpeedField(s.HatchingSpeed, s.SpeedUnit, separator);
  cuttingDepth = FormatFieldFloat(s.CuttingDepth, 3, separator);
  cuttingSpeed = FormatSpeedField(s.CuttingSpeed, s.SpeedUnit, separator);
  drillingDepth = FormatFieldFloat(s.DrillingDepth, 3, separator);
  boringSpeed = FormatSpeedField(s.BoringSpeed, s.SpeedUnit, separator);
  drillingMode = std::clamp(s.DrillingMode, 1, 3);
  drillingLib = s.DrillingLib;
  boringDrills = s.BoringDrills;
  boringThreshold = FormatFieldFloat(s.BoringThreshold, 3, separator);
}

std::optional<double> TDialogDrill::Value(const std::string& text) const {
  ExprResult r = EvaluateExpression(text, separator_);
  if (r.errorPosition != 0) return std::nullopt;
  return r.value;
}

std::optional<double> TDialogDrill::Radius(int tool, const std::string& depth) {
  std::optional<double> d = Value(depth);
  if (!Chosen(tool) || !d || *d <= 0) return std::nullopt;
  return ToolCutWidth(tools_[tool], static_cast<float>(*d)) / 2.0;
}

std::optional<std::string> TDialogDrill::EngravingRadius() {
  std::optional<double> r = Radius(millingTool, millingDepth);
  if (!r) return std::nullopt;
  return "=> " + FormatFieldFloat(*r, 3, separator_) + " ";
}

std::optional<std::string> TDialogDrill::EngravingDistance() {
  std::optional<double> r = Radius(millingTool, millingDepth);
  std::optional<double> margin = Value(millingMargin);
  if (!r || !margin) return std::nullopt;
  return "=> " + FormatFieldFloat(*r + *margin, 3, separator_) + " ";
}

std::optional<std::string> TDialogDrill::HatchingRadius() {
  std::optional<double> r = Radius(hatchingTool, hatchingDepth);
  if (!r) return std::nullopt;
  return "=> " + FormatFieldFloat(*r, 3, separator_) + " ";
}

std::optional<std::string> TDialogDrill::HatchingRecovery() {
  std::optional<double> r = Radius(hatchingTool, hatchingDepth);
  std::optional<double> margin = Value(hatchingMargin);
  if (!r || !margin || *r == 0) return std::nullopt;
  double recovery = std::min(100.0, (*r - *margin) * 50 / *r);
  return "=> " + FormatFieldFloat(recovery, 1, separator_) + "% ";
}

void TDialogDrill::BoringThresholdChanged(Platform&) {
  std::optional<double> v = Value(boringThreshold);
  if (v && *v > 0) boringDrills = true;
}

bool TDialogDrill::Accept(Platform& platform) {
  focus = kNoField;
  focusRow = -1;
  const std::string& lengthUnit = settings_.LengthUnitLabel;
  const std::string& speedUnit = settings_.SpeedUnitLabel;
  const int unit = settings_.SpeedUnit;
  const double minSpeed = SpeedToUnit(kMinJobSpeed, unit);
  const double maxSpeed = SpeedToUnit(kMaxJobSpeed, unit);

  auto refuse = [&](Field field) {
    focus = field;
    return false;
  };
  auto depth = [&](const std::string& text, float& value) {
    return CheckFloatField(platform, "Depth", text, lengthUnit, value, 0.01, 100);
  };
  auto speed = [&](const std::string& text, uint16_t& value) {
    float v = 0;
    if (!CheckFloatField(platform, "Speed", text, speedUnit, v, minSpeed, maxSpeed)) return false;
    value = StoredSpeed(v, unit);
    return true;
  };

  Settings s = settings_;  // written back only when every check has passed

  if (!Chosen(millingTool)) return refuse(kMillingTool);
  s.MillingTool = millingTool;
  if (!depth(millingDepth, s.MillingDepth)) return refuse(kMillingDepth);
  if (!CheckFloatField(platform, "Margin", millingMargin, lengthUnit, s.MillingMargin, -100, 100)) {
    return refuse(kMillingMargin);
  }
  if (!speed(millingSpeed, s.MillingSpeed)) return refuse(kMillingSpeed);

  if (!Chosen(hatchingTool)) return refuse(kHatchingTool);
  s.HatchingTool = hatchingTool;
  if (!depth(hatchingDepth, s.HatchingDepth)) return refuse(kHatchingDepth);
  // The margin may take back at most 45 % of the hatching cut on either side.
  double limit = 0.45 * ToolCutWidth(tools_[hatchingTool], s.HatchingDepth);
  if (!CheckFloatField(platform, "Margin", hatchingMargin, lengthUnit, s.HatchingMargin, -limit,
                       limit)) {
    return refuse(kHatchingMargin);
  }
  if (!speed(hatchingSpeed, s.HatchingSpeed)) return refuse(kHatchingSpeed);

  if (!Chosen(cuttingTool)) return refuse(kCuttingTool);
  s.CuttingTool = cuttingTool;
  if (!Chosen(plottingTool)) return refuse(kPlottingTool);
  s.PlottingTool = plottingTool;
  if (!depth(cuttingDepth, s.CuttingDepth)) return refuse(kCuttingDepth);
  if (!speed(cuttingSpeed, s.CuttingSpeed)) return refuse(kCuttingSpeed);
  if (!depth(drillingDepth, s.DrillingDepth)) return refuse(kDrillingDepth);
  if (!speed(boringSpeed, s.BoringSpeed)) return refuse(kBoringSpeed);

  if (drillingMode <= 1) {
    if (const char* fault = DrillingToolFault(tools_, drillingTool)) {
      platform.ShowMessage("Error", fault, MessageIcon::Error);
      return refuse(kDrillingTool);
    }
    s.DrillingMode = 1;
    s.DrillingTool = drillingTool;
  } else {
    if (boringDrills) {
      if (!CheckFloatFieldOr(platform, "Diameter", boringThreshold, lengthUnit, s.BoringThreshold,
                             0, 0, 100)) {
        return refuse(kBoringThreshold);
      }
    }
    s.BoringDrills = boringDrills;
    std::array<int32_t, kSequenceSlots> set;
    set.fill(-1);
    int count = 0;
    for (int row = 0; row < kSequenceSlots; ++row) {
      int tool = drillingLib[row];
      if (tool < 0) continue;
      if (const char* fault = DrillingToolFault(tools_, tool)) {
        platform.ShowMessage("Error", fault, MessageIcon::Error);
        focusRow = row;
        return refuse(kDrillingLib);
      }
      set[count++] = tool;  // gaps close as the rows move up
    }
    if (count == 0) {
      platform.ShowMessage("Error", "You must define a set of drilling tools.", MessageIcon::Error);
      return refuse(kDialog);
    }
    for (int pass = 0; pass < count - 1; ++pass) {
      for (int i = 0; i + 1 < count - pass; ++i) {
        if (tools_[set[i]].Diameter > tools_[set[i + 1]].Diameter) std::swap(set[i], set[i + 1]);
      }
    }
    s.DrillingLib = set;
    drillingLib = set;
    s.DrillingMode = std::min(drillingMode, 3);
  }

  settings_ = s;
  return true;
}

// ---- the commands ----

bool RunToolLibraryDialog(Platform& platform, ToolTable& tools, const Settings& settings,
                          const std::string& folder) {
  ReadToolLibrary(tools, folder);
  TDialogPcbToolData form(tools, settings, folder, platform.DecimalSeparator());
  if (platform.RunDialog(form)) return true;
  // Moving between slots stored them in the table; the file brings them back.
  ReadToolLibrary(tools, folder);
  return false;
}

bool RunActiveToolsDialog(Platform& platform, ToolTable& tools, Settings& settings) {
  TDialogDrill form(tools, settings, platform.DecimalSeparator());
  return platform.RunDialog(form);
}

}  // namespace isolith
