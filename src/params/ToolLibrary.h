// The tool library: a fixed table of 50 cutters and drills that every calculation takes its
// cutter from, and the operations on it (reset, normalisation, width cut at a depth, plunge
// speed, one-line labels). One table lives for the whole run, owned by the application object;
// reading and writing "Isolith.too" is in ToolFile.h, the two dialogs in ToolForms.h.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace isolith {

inline constexpr int kToolSlots = 50;  // index 0..49; a tool's number is index + 1

// `Profile` values.
enum ToolProfile : int32_t {
  kProfileCylindrical = 0,
  kProfileConical = 1,
  kProfileHemispherical = 2,
  kProfilePyramidal = 3,
  kProfileArcade = 4,
};

inline constexpr int kToolNameSize = 48;  // bytes, zero-terminated: 47 characters at most

// Degrees <-> radians as the tool file and the library dialog convert `ConicalAngle`.
inline constexpr double kDegreesToRadians = 0.017453292;
inline constexpr double kRadiansToDegrees = 57.29578;

// One slot of the table. A slot whose `Diameter` is 0 is empty and nothing else in it counts.
// A value-initialised record is all zero (the table at start-up); `ResetTool` gives a slot its
// usable reset values.
struct TToolData {
  std::array<char, kToolNameSize> Name{};
  float Diameter = 0;        // mm, full diameter
  float ConicalMinDiam = 0;  // mm; tip diameter of a conical tool, top of a pyramidal one
  float ConicalAngle = 0;    // radians, full point angle (degrees in files and dialogs)
  float Zmax = 0;            // mm, maximum depth per pass
  float FirstPlot = 0;       // mm, depth of the preliminary plotting
  float UnTamping = 0;       // mm, deburring depth
  float ChipBreakDown = 0;   // mm, chip-breaking depth
  float ChipBreakUp = 0;     // mm, chip-breaking retract
  float OverDrill = 0;       // mm, overdepth for simple drills
  float ActiveTrip = 0;      // mm, statistic: total distance
  float XOffset = 0, YOffset = 0, ZOffset = 0;  // mm, origin offset for this tool
  int32_t Profile = kProfileCylindrical;
  int32_t NumberOfTeeth = 0;
  int32_t RelDrillSpeed = 0;  // plunge speed in % of the feed; 0 when AbsDrillSpeed is set
  uint32_t SpindleOnOutputs = 0;
  uint32_t SpindleOffOutputs = 0;
  bool AutoChange = false;
  bool AutoSensor = false;
  bool AutoLeaveLast = false;
  bool PeckPause = false;
  uint16_t AbsPlotSpeed = 0;   // mm/min, preliminary plotting
  uint16_t AbsDrillSpeed = 0;  // mm/min, plunge speed; 0 means use RelDrillSpeed
  int32_t RotationSpeed = 0;   // rpm
  uint32_t Color = 0;          // 0x00BBGGRR, 1 = automatic
  uint32_t ActiveTime = 0;     // s, statistic
  uint32_t ActiveDrills = 0;   // statistic: number of plunges
  uint32_t SpindleOnDelay = 0, SpindleOffDelay = 0;  // ms

  bool operator==(const TToolData&) const = default;
};

using ToolTable = std::array<TToolData, kToolSlots>;

// Gives the slot its reset values: all zero except AutoSensor true, AbsPlotSpeed 60,
// RotationSpeed 8000, RelDrillSpeed 50 and NumberOfTeeth 1, so that a diameter alone makes a
// usable tool.
void ResetTool(TToolData& tool);

// The rules of the table as a whole: empty slots reset, the angle kept only for conical and
// pyramidal tools, the minimum diameter dropped for cylindrical ones, and exactly one of the two
// plunge speeds in force.
void NormaliseTools(ToolTable& tools);

// Run after every read of the program's own library: from the first slot up to the first empty
// one, a tool with no absolute plunge speed gets 60 mm/min locked in. Tools behind a gap keep
// their relative plunge speed.
void LockPlungeSpeeds(ToolTable& tools);

// The name as text (up to its terminating zero).
std::string ToolName(const TToolData& tool);
// Sets the name, cut to 47 bytes (never inside a UTF-8 character).
void SetToolName(TToolData& tool, std::string_view name);

// The width in mm that the tool cuts at `depth` mm; 0 at a depth of 0 or less. For a conical or
// pyramidal tool whose minimum diameter is not below its diameter, the minimum diameter is set
// to 0 in the record first: this is the one place that corrects such a tool.
float ToolCutWidth(TToolData& tool, float depth);

// `fallback` for a negative index, else the width of that slot at `depth`.
float ToolCutWidthByIndex(ToolTable& tools, int index, float depth, float fallback);

// The plunge speed in mm/min for a feed in mm/min: AbsDrillSpeed when set, else
// feed * RelDrillSpeed / 100 in whole numbers, the feed taken as an unsigned 16-bit value.
int ToolPlungeSpeed(const TToolData& tool, int feedSpeed);

// Appends the one-line description of a tool to `text`: "Undefined" for an empty slot, else the
// name, "   ø " and the diameter, three blanks and the profile (flute count, angle).
// `separator` is the decimal mark (the locale's in dialogs).
void FormatToolLabel(std::string& text, const TToolData& tool, char separator = '.');

// A row of a tool selection list: "  %d > " (tools 1 to 9) or "%d > ", then the label with
// "cylindrical" in place of the flute count. A list always has all 50 rows.
std::string ToolChoiceLabel(const ToolTable& tools, int index, char separator = '.');

// A dialog header naming a tool: "%d > " and the label.
std::string ToolHeaderLabel(const ToolTable& tools, int index, char separator = '.');

// Why a tool chosen for drilling cannot drill, or nullptr when it can. A negative index (no
// choice) passes; an empty slot gives "This tool was not defined in the tool library."; a
// profile other than cylindrical "Selected tool profile is not cylindrical.".
const char* DrillingToolFault(const ToolTable& tools, int index);

}  // namespace isolith
