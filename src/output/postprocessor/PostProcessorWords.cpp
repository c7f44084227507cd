#include "output/postprocessor/PostProcessorWords.h"

#include <cmath>
#include <string>

#include "output/formats/Writers.h"
#include "output/postprocessor/PostProcessorTemplates.h"
#include "params/Settings.h"

namespace isolith {

namespace {

// The longest text of one line, line numbers and header and trailer bytes aside.
constexpr size_t kLineTextMax = 200;
constexpr double kDegreesPerRadian = 57.29578;
// <T>: the tool number with no decimals and no width.
constexpr TNumberFormat kToolNumberFormat{'0', 1, '.', 0};

void AppendByte(std::string& out, uint8_t byte) {
  if (byte != 0) out.push_back(static_cast<char>(byte));
}

void AppendLineNumber(std::string& out, TOutputState& state, const TPostProcessor& pp) {
  const std::string_view pattern = pp.LineNb;
  size_t pos = 0;
  while (pos < pattern.size()) {
    if (pattern[pos] != '0') {
      out.push_back(pattern[pos++]);
      continue;
    }
    size_t digits = 0;
    while (pos < pattern.size() && pattern[pos] == '0') {
      ++digits;
      ++pos;
    }
    std::string number = std::to_string(state.LineNumber);
    if (number.size() < digits) number.insert(0, digits - number.size(), '0');
    out.append(number);
    const int64_t next = int64_t{state.LineNumber} + pp.IncNb;
    state.LineNumber = next > pp.EndNb ? pp.BeginNb : static_cast<int>(next);
  }
}

void WriteOneLine(TOutputState& state, const TPostProcessor& pp, std::string_view line) {
  std::string out;
  AppendByte(out, pp.Header1);
  AppendByte(out, pp.Header2);
  AppendByte(out, pp.Header3);
  if (state.LineNumber >= 0) AppendLineNumber(out, state, pp);
  out.append(line.substr(0, kLineTextMax));
  AppendByte(out, pp.Trailer1);
  AppendByte(out, pp.Trailer2);
  AppendByte(out, pp.Trailer3);
  WriteRaw(state, out);
}

// A board position as a tag shows it: the machine value plus the offset, or, with relative
// co-ordinates, minus the raw previous board position as it stands.
double AxisTag(const TPostProcessor& pp, double machine, float offset, float previous) {
  return pp.RelCoords ? machine - previous : offset + machine;
}

// Speed unit factors: mm/s turned into the unit's own measure, as the user's formats expect it.
double SpeedUnitFactor(int speedUnit) {
  switch (speedUnit) {
    case kSpeedMPerMin:
      return 0.001;
    case kSpeedMmPerMin:
      return 1;
    case kSpeedMmPerS:
      return 1.0 / 60;
    case kSpeedInchPerMin:
      return 1.0 / 25.4;
    case kSpeedInchPerS:
      return 1.0 / 1524;
    default:
      return 1;
  }
}

}  // namespace

void WriteBlock(TOutputState& state, const TPostProcessor& pp, std::string_view text) {
  if (text.empty()) return;
  while (true) {
    const size_t cut = text.find(kTemplateBreak);
    WriteOneLine(state, pp, text.substr(0, cut));
    if (cut == std::string_view::npos) break;
    text.remove_prefix(cut + kTemplateBreak.size());
  }
}

double PostSpeed(double mmPerSecond, int speedUnit, const TPostProcessor& pp) {
  return mmPerSecond * SpeedUnitFactor(speedUnit) * 60 * double(pp.ScaleV);
}

void PostMove(TOutputState& state, const TPostProcessor& pp, int speedUnit, double x, double y,
              double z) {
  if (x == state.CurX && y == state.CurY && z == state.CurZ) return;
  std::string line =
      ApplyOptionalGroups(state.MotionTemplate, state.PrevMotionType, state.MotionType, state.LastV,
                          state.CurV, state.CurX, x, state.CurY, y, state.CurZ, z);
  const double mx = (x - double(state.ZeroX)) * double(state.ScaleX);
  const double my = (y - double(state.ZeroY)) * double(state.ScaleY);
  const double mz = (z - double(state.ZeroZ)) * double(state.ScaleZ);
  const double px = mx + double(pp.OffsetX), py = my + double(pp.OffsetY);
  const double radius = std::hypot(px, py) * double(pp.ScaleR);
  const double angle =
      (std::atan2(py, px) + double(pp.OffsetA)) * kDegreesPerRadian * double(pp.ScaleA);
  const bool noZeros = pp.NoZeros, hexa = pp.Hexa;
  SubstituteTag(line, "X", AxisTag(pp, mx, pp.OffsetX, state.CurX), pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "Y", AxisTag(pp, my, pp.OffsetY, state.CurY), pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "Z", AxisTag(pp, mz, pp.OffsetZ, state.CurZ), pp.FormatZ, noZeros, hexa);
  SubstituteTag(line, "V", PostSpeed(state.CurV, speedUnit, pp), pp.FormatV, noZeros, hexa);
  SubstituteTag(line, "R", radius, pp.FormatR, noZeros, hexa);
  SubstituteTag(line, "A", angle, pp.FormatA, noZeros, hexa);
  WriteBlock(state, pp, line);
}

void PostProcessorZeroPoint(const TPostProcessor& pp, const Board& board, float& zeroX,
                            float& zeroY, float& zeroZ) {
  const float w = board.CardWidth, h = board.CardHeight;
  switch (pp.OriginXY) {
    case kOriginSouthWest:
      zeroX = 0, zeroY = 0;
      break;
    case kOriginNorthWest:
      zeroX = 0, zeroY = h;
      break;
    case kOriginSouthEast:
      zeroX = w, zeroY = 0;
      break;
    case kOriginNorthEast:
      zeroX = w, zeroY = h;
      break;
    case kOriginCentre:
      zeroX = w / 2, zeroY = h / 2;
      break;
    case kOriginCentreWest:
      zeroX = 0, zeroY = h / 2;
      break;
    case kOriginCentreEast:
      zeroX = w, zeroY = h / 2;
      break;
    case kOriginCentreSouth:
      zeroX = w / 2, zeroY = 0;
      break;
    case kOriginCentreNorth:
      zeroX = w / 2, zeroY = h;
      break;
    case kOriginRedCross:
      zeroX = board.OriginX, zeroY = board.OriginY;
      break;
    case kOriginRedPoint:
      zeroX = board.RefPad ? board.RefPad->x : 0;
      zeroY = board.RefPad ? board.RefPad->y : 0;
      break;
    default:
      zeroX = 0, zeroY = 0;
      break;
  }
  zeroZ = pp.OriginZ == 1 ? board.CardThickness : 0;
}

PostProcessorWords::PostProcessorWords(const TPostProcessor& pp, int speedUnit)
    : pp_(pp), speedUnit_(speedUnit) {}

void PostProcessorWords::Header(TOutputState& state) {
  state.LineNumber = 0;
  WriteBlock(state, pp_, pp_.FileTop);
  state.LineNumber = pp_.BeginNb;
}

void PostProcessorWords::Footer(TOutputState& state) {
  std::string_view rest = pp_.FileBottom;
  while (!rest.empty()) {
    const size_t cut = rest.find(kTemplateBreak);
    const std::string_view part = rest.substr(0, cut);
    rest = cut == std::string_view::npos ? std::string_view{}
                                         : rest.substr(cut + kTemplateBreak.size());
    if (part.empty()) continue;
    if (part.starts_with("<N>")) {
      WriteBlock(state, pp_, part.substr(3));
      continue;
    }
    const int number = state.LineNumber;
    state.LineNumber = -1;
    WriteBlock(state, pp_, part);
    state.LineNumber = number;
  }
}

void PostProcessorWords::ToolChange(TOutputState& state, const ToolChangeWords& change) {
  const bool noZeros = pp_.NoZeros, hexa = pp_.Hexa;
  const double tool = change.tool + 1;
  std::string line = pp_.ToolChg;
  SubstituteTag(line, "T", tool, kToolNumberFormat, noZeros, hexa);
  WriteBlock(state, pp_, line);
  const double rpm = double(change.spindleSpeed) * double(pp_.ScaleRPM);
  line = pp_.SpindleOn;
  SubstituteTag(line, "T", tool, kToolNumberFormat, noZeros, hexa);
  SubstituteTag(line, "RPM", rpm, pp_.FormatRPM, noZeros, hexa);
  // Times 60 and not divided: the machines of this format have always taken it so.
  SubstituteTag(line, "RPS", rpm * 60, pp_.FormatRPM, noZeros, hexa);
  WriteBlock(state, pp_, line);
}

void PostProcessorWords::ToolStop(TOutputState& state) {
  const bool noZeros = pp_.NoZeros, hexa = pp_.Hexa;
  std::string line = pp_.SpindleOff;
  SubstituteTag(line, "T", state.Tool + 1, kToolNumberFormat, noZeros, hexa);
  SubstituteTag(line, "RPM", 0, pp_.FormatRPM, noZeros, hexa);
  SubstituteTag(line, "RPS", 0, pp_.FormatRPM, noZeros, hexa);
  WriteBlock(state, pp_, line);
}

void PostProcessorWords::Speed(TOutputState& state, float v) {
  std::string line = pp_.ClearV;
  // The speed goes through the rule once more after its own times 60, so this line shows 60
  // times what a motion line shows; machines set up for this format expect it.
  SubstituteTag(line, "V", PostSpeed(double(v) * 60, speedUnit_, pp_), pp_.FormatV, pp_.NoZeros,
                pp_.Hexa);
  WriteBlock(state, pp_, line);
}

std::string PostProcessorWords::MotionTemplate(int mode) const {
  switch (mode) {
    case kModeRapid:
    case kModeRapidZ:
      return pp_.ClearXYZ;
    case kModePlunge:
      return pp_.PlungeZ;
    case kModeFeed:
      return pp_.FeedXYZ;
    case kModeLift:
      return pp_.LiftUpZ;
    default:
      return {};
  }
}

void PostProcessorWords::ZRapid(TOutputState& state, float z) {
  PostMove(state, pp_, speedUnit_, state.CurX, state.CurY, z);
}

void PostProcessorWords::Rapid(TOutputState& state, float x, float y) {
  PostMove(state, pp_, speedUnit_, x, y, state.CurZ);
}

void PostProcessorWords::Plunge(TOutputState& state, float z) {
  PostMove(state, pp_, speedUnit_, state.CurX, state.CurY, z);
}

void PostProcessorWords::Feed(TOutputState& state, float x, float y) {
  PostMove(state, pp_, speedUnit_, x, y, state.CurZ);
}

void PostProcessorWords::FullCircle(TOutputState& state, const ArcWords& arc) {
  // Types 1 and 2 and all positions 0 and 1: every group with an axis tag stays.
  std::string line = ApplyOptionalGroups(pp_.FeedArc2, kTypeLinear, kTypeArcClockwise, state.LastV,
                                         state.CurV, 0, 1, 0, 1, 0, 1);
  const TPostProcessor& pp = pp_;
  const bool noZeros = pp.NoZeros, hexa = pp.Hexa;
  const double scaleX = state.ScaleX, scaleY = state.ScaleY;
  const auto machineX = [&](double x) { return (x - double(state.ZeroX)) * scaleX; };
  const auto machineY = [&](double y) { return (y - double(state.ZeroY)) * scaleY; };
  const double centreX = AxisTag(pp, machineX(arc.centreX), pp.OffsetX, state.CurX);
  const double centreY = AxisTag(pp, machineY(arc.centreY), pp.OffsetY, state.CurY);
  const double startX = AxisTag(pp, machineX(state.CurX), pp.OffsetX, state.CurX);
  const double startY = AxisTag(pp, machineY(state.CurY), pp.OffsetY, state.CurY);
  const double machineZ = (double(state.CurZ) - double(state.ZeroZ)) * double(state.ScaleZ);
  // The start relative to the centre, scaled, with the offsets where positions carry them.
  const double fromCentreX = -double(arc.radius) * scaleX + (pp.RelCoords ? 0 : pp.OffsetX);
  const double fromCentreY = pp.RelCoords ? 0 : double(pp.OffsetY);

  SubstituteTag(line, "V", PostSpeed(state.CurV, speedUnit_, pp), pp.FormatV, noZeros, hexa);
  SubstituteTag(line, "CX", centreX, pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "CY", centreY, pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "X1CX", fromCentreX, pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "Y1CY", fromCentreY, pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "Z", AxisTag(pp, machineZ, pp.OffsetZ, state.CurZ), pp.FormatZ, noZeros,
                hexa);
  SubstituteTag(line, "R", double(arc.radius) * scaleX, pp.FormatXY, noZeros, hexa);
  SubstituteTag(line, "A1", 0, pp.FormatA, noZeros, hexa);
  SubstituteTag(line, "A2", arc.sweep, pp.FormatA, noZeros, hexa);
  SubstituteTag(line, "A12", arc.sweep, pp.FormatA, noZeros, hexa);
  for (const char* tag : {"X1", "X2", "X1X2"})
    SubstituteTag(line, tag, startX, pp.FormatXY, noZeros, hexa);
  for (const char* tag : {"Y1", "Y2", "Y1Y2"})
    SubstituteTag(line, tag, startY, pp.FormatXY, noZeros, hexa);
  WriteBlock(state, pp, line);
}

void PostProcessorWords::AdjustSectionWalk(TOutputState& state, const Board& board) {
  state.ScaleX *= pp_.ScaleX;
  state.ScaleY *= pp_.ScaleY;
  state.ScaleZ *= pp_.ScaleZ;
  state.UseArcs = pp_.Arcs;
  PostProcessorZeroPoint(pp_, board, state.ZeroX, state.ZeroY, state.ZeroZ);
}

}  // namespace isolith
