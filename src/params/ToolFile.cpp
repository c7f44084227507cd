#include "params/ToolFile.h"

#include <sys/stat.h>

#include <cmath>

#include "params/SettingsFile.h"

namespace isolith {

namespace {

constexpr const char* kProfileWords[] = {"Cylindrical", "Conical", "Hemispherical", "Pyramidal",
                                         "Arcade"};

void ReadProfileValue(std::string_view text, int32_t& profile) {
  std::string upper = UpperAscii(text);
  for (int32_t p = 0; p < 5; ++p) {
    if (upper == UpperAscii(kProfileWords[p])) profile = p;
  }
}

int32_t Whole(float v) {
  return static_cast<int32_t>(std::lround(v));
}

// Hands each pair of a tool file to the slot chosen by the last "Number" line.
class ToolPairs {
 public:
  explicit ToolPairs(ToolTable& tools) : tools_(tools) {}

  void operator()(std::string_view key, std::string_view v) {
    if (key == "NUMBER") {
      slot_ = ReadIntValue(v, 0, 1, kToolSlots) - 1;  // "AUTO"/"NONE": -1, keys are dropped
      return;
    }
    if (slot_ < 0) return;
    TToolData& t = tools_[slot_];
    if (key == "NAME") {
      SetToolName(t, v);
    } else if (key == "COLOR") {
      ReadColourValue(v, t.Color);
    } else if (key == "DIAMETER") {
      t.Diameter = ReadFloatValue(v, 0, 0.01f, 100);
    } else if (key == "PROFILE") {
      ReadProfileValue(v, t.Profile);
    } else if (key == "NUMBEROFTEETH") {
      t.NumberOfTeeth = ReadIntValue(v, 1, 1, 1000);
    } else if (key == "CONICALANGLE") {
      float degrees = ReadFloatValue(v, 0, 0, 180);
      t.ConicalAngle = static_cast<float>(degrees * kDegreesToRadians);
    } else if (key == "CONICALMINDIAM") {
      t.ConicalMinDiam = ReadFloatValue(v, 0, 0, 100);
    } else if (key == "ROTATIONSPEED") {
      t.RotationSpeed = Whole(ReadFloatValue(v, 0, -1000000, 1000000));
    } else if (key == "ZMAX") {
      t.Zmax = ReadFloatValue(v, 0, 0, 1000);
    } else if (key == "FIRSTPLOT") {
      t.FirstPlot = ReadFloatValue(v, 0, 0, 10);
    } else if (key == "ABSPLOTSPEED") {
      t.AbsPlotSpeed = static_cast<uint16_t>(Whole(ReadFloatValue(v, 0, 0, 6000)));
    } else if (key == "ABSDRILLSPEED") {
      t.AbsDrillSpeed = static_cast<uint16_t>(Whole(ReadFloatValue(v, 0, 0, 6000)));
    } else if (key == "RELDRILLSPEED") {
      t.RelDrillSpeed = ReadIntValue(v, 0, 0, 1000);
    } else if (key == "UNTAMPING") {
      t.UnTamping = ReadFloatValue(v, 0, 0, 1000);
    } else if (key == "CHIPBREAKDOWN") {
      t.ChipBreakDown = ReadFloatValue(v, 0, 0, 1000);
    } else if (key == "CHIPBREAKUP") {
      t.ChipBreakUp = ReadFloatValue(v, 0, 0, 1000);
    } else if (key == "OVERDRILL") {
      t.OverDrill = ReadFloatValue(v, 0, 0, 1000);
    } else if (key == "XOFFSET") {
      t.XOffset = ReadFloatValue(v, 0, -1000, 1000);
    } else if (key == "YOFFSET") {
      t.YOffset = ReadFloatValue(v, 0, -1000, 1000);
    } else if (key == "ZOFFSET") {
      t.ZOffset = ReadFloatValue(v, 0, -1000, 1000);
    } else if (key == "AUTOCHANGE") {
      ReadYesNoValue(v, t.AutoChange);
    } else if (key == "AUTOSENSOR") {
      ReadYesNoValue(v, t.AutoSensor);
    } else if (key == "AUTOLEAVELAST") {
      ReadYesNoValue(v, t.AutoLeaveLast);
    } else if (key == "PECKPAUSE") {
      ReadYesNoValue(v, t.PeckPause);
    } else if (key == "SPINDLEONOUTPUTS") {
      ReadHexValue(v, t.SpindleOnOutputs);
    } else if (key == "SPINDLEONDELAY") {
      t.SpindleOnDelay = ReadUnsignedValue(v, 0, 0, 180000);
    } else if (key == "SPINDLEOFFOUTPUTS") {
      ReadHexValue(v, t.SpindleOffOutputs);
    } else if (key == "SPINDLEOFFDELAY") {
      t.SpindleOffDelay = ReadUnsignedValue(v, 0, 0, 180000);
    }
  }

 private:
  ToolTable& tools_;
  int slot_ = -1;  // no keys count before the first Number line
};

void WriteTool(std::string& out, const TToolData& t, int index, bool compact) {
  WriteSectionLine(out, "Tool #" + std::to_string(index + 1), index > 0);
  WriteIntLine(out, "Number", index + 1, "0");
  WriteTextLine(out, "Name", ToolName(t));
  if (!compact) WriteColourLine(out, "Color", t.Color);
  WriteFloatLine(out, "Diameter", t.Diameter, "0");
  WriteTextLine(out, "Profile",
                kProfileWords[t.Profile >= 0 && t.Profile < 5 ? t.Profile : kProfileCylindrical]);
  if (!compact) WriteIntLine(out, "NumberOfTeeth", t.NumberOfTeeth, "1");
  // The angle goes out in degrees, rounded to a float as every written value is.
  WriteFloatLine(out, "ConicalAngle", static_cast<float>(t.ConicalAngle * kRadiansToDegrees),
                 "None");
  if (!compact) WriteFloatLine(out, "ConicalMinDiam", t.ConicalMinDiam, "None");
  WriteFloatLine(out, "RotationSpeed", static_cast<float>(t.RotationSpeed), "0");
  if (!compact) {
    WriteFloatLine(out, "Zmax", t.Zmax, "Undefined");
    WriteFloatLine(out, "FirstPlot", t.FirstPlot, "Undefined");
    WriteFloatLine(out, "AbsPlotSpeed", t.AbsPlotSpeed, "60");
  }
  WriteFloatLine(out, "AbsDrillSpeed", t.AbsDrillSpeed, "None");
  WriteIntLine(out, "RelDrillSpeed", t.RelDrillSpeed, "None");
  if (compact) return;
  WriteFloatLine(out, "UnTamping", t.UnTamping, "None");
  WriteFloatLine(out, "ChipBreakDown", t.ChipBreakDown, "None");
  WriteFloatLine(out, "ChipBreakUp", t.ChipBreakUp, "None");
  WriteFloatLine(out, "OverDrill", t.OverDrill, "None");
  WriteFloatLine(out, "XOffset", t.XOffset, "0");
  WriteFloatLine(out, "YOffset", t.YOffset, "0");
  WriteFloatLine(out, "ZOffset", t.ZOffset, "0");
  WriteYesNoLine(out, "AutoChange", t.AutoChange);
  WriteYesNoLine(out, "AutoSensor", t.AutoSensor);
  WriteYesNoLine(out, "AutoLeaveLast", t.AutoLeaveLast);
  WriteYesNoLine(out, "PeckPause", t.PeckPause);
  WriteHexLine(out, "SpindleOnOutputs", t.SpindleOnOutputs);
  WriteUnsignedLine(out, "SpindleOnDelay", t.SpindleOnDelay, "0");
  WriteHexLine(out, "SpindleOffOutputs", t.SpindleOffOutputs);
  WriteUnsignedLine(out, "SpindleOffDelay", t.SpindleOffDelay, "0");
}

}  // namespace

std::string ToolFilePath(const std::string& directory, const std::string& baseName) {
  std::string path = directory;
  if (!path.empty() && path.back() != '/') path += '/';
  return path + baseName + "." + kToolExtension;
}

void ReadToolsText(ToolTable& tools, std::string_view text) {
  if (tools[0].Diameter == 0) tools[0].Diameter = 1;
  SettingsLineReader reader(ToolPairs{tools});
  reader.Feed(text);
  NormaliseTools(tools);
}

bool ReadTools(ToolTable& tools, const std::string& directory, const std::string& baseName) {
  // The first slot is never empty, whether or not a file exists.
  if (tools[0].Diameter == 0) tools[0].Diameter = 1;
  const std::string path = ToolFilePath(directory, baseName);
  struct stat info {};
  if (stat(path.c_str(), &info) != 0 || S_ISDIR(info.st_mode)) return false;
  if (!ReadSettingsFile(path, ToolPairs{tools})) return false;
  NormaliseTools(tools);
  return true;
}

bool ReadToolLibrary(ToolTable& tools, const std::string& directory) {
  bool read = ReadTools(tools, directory, kToolBaseName);
  LockPlungeSpeeds(tools);
  return read;
}

std::string FormatTools(ToolTable& tools, bool compact) {
  NormaliseTools(tools);
  std::string out;
  for (int i = 0; i < kToolSlots; ++i) {
    if (tools[i].Diameter != 0) WriteTool(out, tools[i], i, compact);
  }
  return out;
}

bool WriteTools(ToolTable& tools, const std::string& directory, const std::string& baseName,
                bool compact) {
  return WriteFileAtomically(ToolFilePath(directory, baseName), FormatTools(tools, compact));
}

}  // namespace isolith
