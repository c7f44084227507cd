#include "params/ToolLibrary.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "params/FieldChecks.h"

namespace isolith {

namespace {

bool ValidIndex(int index) {
  return index >= 0 && index < kToolSlots;
}

}  // namespace

void ResetTool(TToolData& tool) {
  tool = TToolData{};
  tool.NumberOfTeeth = 1;
  tool.RelDrillSpeed = 50;
  tool.AutoSensor = true;
  tool.AbsPlotSpeed = 60;
  tool.RotationSpeed = 8000;
}

void NormaliseTools(ToolTable& tools) {
  for (TToolData& t : tools) {
    if (t.Diameter == 0) ResetTool(t);
    if (t.Profile != kProfileConical && t.Profile != kProfilePyramidal) t.ConicalAngle = 0;
    if (t.Profile == kProfileCylindrical) t.ConicalMinDiam = 0;
    if (t.AbsDrillSpeed == 0 && t.RelDrillSpeed == 0) t.RelDrillSpeed = 50;
    if (t.AbsDrillSpeed != 0) t.RelDrillSpeed = 0;
  }
}

void LockPlungeSpeeds(ToolTable& tools) {
  for (TToolData& t : tools) {
    if (t.Diameter == 0) break;  // a gap ends the pass on purpose
    if (t.AbsDrillSpeed == 0) {
      t.RelDrillSpeed = 0;
      t.AbsDrillSpeed = 60;
    }
  }
}

std::string ToolName(const TToolData& tool) {
  const char* begin = tool.Name.data();
  return std::string(begin, strnlen(begin, tool.Name.size()));
}

void SetToolName(TToolData& tool, std::string_view name) {
  size_t n = std::min(name.size(), tool.Name.size() - 1);
  // Never cut a multi-byte character in two: step back over its continuation bytes.
  if (n < name.size()) {
    while (n > 0 && (static_cast<unsigned char>(name[n]) & 0xC0) == 0x80) --n;
  }
  tool.Name.fill(0);
  std::memcpy(tool.Name.data(), name.data(), n);
}

float ToolCutWidth(TToolData& tool, float depth) {
  if (depth <= 0) return 0;
  const double d = depth;
  const double diameter = tool.Diameter;
  const double r = diameter / 2;
  const double h = tool.ConicalAngle / 2.0;
  switch (tool.Profile) {
    case kProfileConical: {
      if (tool.ConicalMinDiam >= tool.Diameter) tool.ConicalMinDiam = 0;
      double w = tool.ConicalMinDiam + 2 * d * std::sin(h) / std::cos(h);
      return static_cast<float>(std::min(w, diameter));
    }
    case kProfileHemispherical: {
      if (d > r) return tool.Diameter;
      double w = 2 * std::sqrt(r * r - (r - d) * (r - d));
      return static_cast<float>(std::max(static_cast<double>(tool.ConicalMinDiam), w));
    }
    case kProfilePyramidal: {
      if (tool.ConicalMinDiam >= tool.Diameter) tool.ConicalMinDiam = 0;
      double w = diameter - 2 * d * std::sin(h) / std::cos(h);
      return static_cast<float>(std::max(static_cast<double>(tool.ConicalMinDiam), w));
    }
    case kProfileArcade: {
      if (d > r) return tool.Diameter;
      double w = diameter - 2 * std::sqrt(r * r - d * d);
      return static_cast<float>(std::max(static_cast<double>(tool.ConicalMinDiam), w));
    }
    default:
      return tool.Diameter;
  }
}

float ToolCutWidthByIndex(ToolTable& tools, int index, float depth, float fallback) {
  if (!ValidIndex(index)) return fallback;
  return ToolCutWidth(tools[index], depth);
}

int ToolPlungeSpeed(const TToolData& tool, int feedSpeed) {
  if (tool.AbsDrillSpeed != 0) return tool.AbsDrillSpeed;
  uint16_t feed = static_cast<uint16_t>(feedSpeed);
  return static_cast<int>(static_cast<int64_t>(feed) * tool.RelDrillSpeed / 100);
}

void FormatToolLabel(std::string& text, const TToolData& tool, char separator) {
  if (tool.Diameter == 0) {
    text += "Undefined";
    return;
  }
  text += ToolName(tool);
  text += "   \xC3\xB8 ";  // "ø"
  text += FormatFieldFloat(tool.Diameter, 4, separator);
  text += "   ";
  const std::string degrees =
      FormatFieldFloat(static_cast<float>(tool.ConicalAngle * kRadiansToDegrees), 4, separator) +
      "\xC2\xB0";  // "°"
  switch (tool.Profile) {
    case kProfileCylindrical:
      if (tool.NumberOfTeeth == 0) {
        text += "cylindrical";
      } else {
        text += std::to_string(tool.NumberOfTeeth);
        text += tool.NumberOfTeeth < 2 ? " flute" : " flutes";
      }
      break;
    case kProfileConical:
      text += "conical " + degrees;
      break;
    case kProfileHemispherical:
      text += "hemispherical";
      break;
    case kProfilePyramidal:
      text += "pyramidal " + degrees;
      break;
    case kProfileArcade:
      text += "arcade";
      break;
    default:
      break;
  }
}

std::string ToolChoiceLabel(const ToolTable& tools, int index, char separator) {
  if (!ValidIndex(index)) return {};
  std::string text = (index < 9 ? "  " : "") + std::to_string(index + 1) + " > ";
  // Lists show the word "cylindrical" rather than the flute count.
  TToolData shown = tools[index];
  shown.NumberOfTeeth = 0;
  FormatToolLabel(text, shown, separator);
  return text;
}

std::string ToolHeaderLabel(const ToolTable& tools, int index, char separator) {
  if (!ValidIndex(index)) return {};
  std::string text = std::to_string(index + 1) + " > ";
  FormatToolLabel(text, tools[index], separator);
  return text;
}

const char* DrillingToolFault(const ToolTable& tools, int index) {
  if (index < 0) return nullptr;
  if (index >= kToolSlots || tools[index].Diameter == 0) {
    return "This tool was not defined in the tool library.";
  }
  if (tools[index].Profile != kProfileCylindrical) {
    return "Selected tool profile is not cylindrical.";
  }
  return nullptr;
}

}  // namespace isolith
