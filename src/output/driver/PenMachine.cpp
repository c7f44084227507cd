#include "output/driver/PenMachine.h"

#include <algorithm>
#include <cmath>

namespace isolith {

namespace {

struct ModeRow {
  int motionType;
  bool vertical;  // speed factor ScaleVz rather than ScaleVxy; skipped without Z output
};

ModeRow RowOf(int mode) {
  switch (mode) {
    case kModeRapidZ:
      return {kTypeRapid, true};
    case kModePlunge:
      return {kTypeLinear, true};
    case kModeFeed:
      return {kTypeLinear, false};
    case kModeLift:
      return {kTypeRapid, true};
    default:
      return {kTypeRapid, false};
  }
}

float WantedSpeed(const TOutputState& s, int mode) {
  switch (mode) {
    case kModePlunge:
      return s.PlungeSpeed;
    case kModeFeed:
      return s.FeedSpeed;
    default:
      return s.ClearSpeed;
  }
}

// After every emitted move the type of this move becomes the previous one, and the speed in
// force is the one last written.
void EndMove(TOutputState& s) {
  s.PrevMotionType = s.MotionType;
  s.CurV = s.LastV;
}

// cos and sin of whole degrees, with the tiny remainders of the multiples of 90 made exact, so
// that a polygon's corners on the axes do not pick up a sign of noise.
double Snap(double v) {
  return std::fabs(v) < 1e-12 ? 0.0 : v;
}

}  // namespace

const TToolData& ToolAt(const ToolTable& tools, int index) {
  static const TToolData kNone{};
  if (index < 0 || index >= kToolSlots) return kNone;
  return tools[index];
}

void WriteHeader(PenMachine& pen) {
  pen.words.Header(pen.state);
}

void WriteFooter(PenMachine& pen) {
  pen.words.Footer(pen.state);
}

void SelectTool(PenMachine& pen, int slot, int tool) {
  TOutputState& s = pen.state;
  if (slot == s.Slot && tool == s.Tool) return;
  if (s.Tool >= 0) StopTool(pen);
  s.Slot = slot;
  s.Tool = tool;
  const TToolData& data = ToolAt(pen.tools, tool);
  ToolChangeWords change;
  change.tool = tool;
  change.spindleSpeed = data.RotationSpeed != 0 ? data.RotationSpeed : kDefaultSpindleSpeed;
  change.data = &data;
  pen.words.ToolChange(s, change);
  s.LastV = 0;
  s.CurX = s.CurY = s.CurZ = 0;
}

void StopTool(PenMachine& pen) {
  TOutputState& s = pen.state;
  if (s.Tool < 0) return;
  SetMotionMode(pen, kModeLift);
  MoveZ(pen, -s.ClearHeight);
  pen.words.ToolStop(s);
  s.LastV = 0;
  s.CurX = s.CurY = s.CurZ = 0;
  s.Tool = -1;
}

void SetToolSpeeds(PenMachine& pen, float feedMmPerMin) {
  TOutputState& s = pen.state;
  s.FeedSpeed = static_cast<float>(double(feedMmPerMin) / 60);
  const TToolData& tool = ToolAt(pen.tools, s.Tool);
  double plunge = double(tool.AbsDrillSpeed) / 60;
  if (plunge == 0) plunge = double(tool.RelDrillSpeed) * s.FeedSpeed * 0.01;
  if (plunge == 0) plunge = double(s.FeedSpeed) * 0.5;
  if (plunge == 0) plunge = 1;
  s.PlungeSpeed = static_cast<float>(plunge);
}

void SetMotionMode(PenMachine& pen, int mode) {
  TOutputState& s = pen.state;
  if (mode == s.MotionMode) return;
  s.MotionMode = mode;
  const ModeRow row = RowOf(mode);
  s.MotionTemplate = pen.words.MotionTemplate(mode);
  s.MotionType = row.motionType;
  s.CurV = WantedSpeed(s, mode);
  if (mode != kModeRapid && mode != kModeFeed && s.ScaleZ == 0) return;
  const float v = static_cast<float>(double(s.CurV) * (row.vertical ? s.ScaleVz : s.ScaleVxy));
  if (v == 0 || s.LastV == s.CurV) return;
  if (pen.words.SpeedOnMove()) {
    // The next move carries the speed.
    s.LastV = 0;
    return;
  }
  pen.words.Speed(s, v);
  s.LastV = s.CurV;
}

void MoveZ(PenMachine& pen, float z) {
  TOutputState& s = pen.state;
  if (s.ScaleZ != 0 && z != s.CurZ) pen.words.ZRapid(s, z);
  EndMove(s);
  s.CurZ = z;
}

void RapidTo(PenMachine& pen, float x, float y, float z) {
  TOutputState& s = pen.state;
  if (x != s.CurX || y != s.CurY || (z < 0 && s.CurZ > 0)) {
    SetMotionMode(pen, kModeLift);
    MoveZ(pen, -s.ClearHeight);
    SetMotionMode(pen, kModeRapid);
    if (x == s.CurX && y == s.CurY)
      pen.words.PenUp(s);
    else
      pen.words.Rapid(s, x, y);
    EndMove(s);
    s.CurX = x;
    s.CurY = y;
    s.CurZ = -s.ClearHeight;
  }
  if (z >= 0 && s.ScaleZ != 0) {
    SetMotionMode(pen, kModeRapidZ);
    if (s.ZeroHeight < s.ClearHeight) MoveZ(pen, std::min(-s.ZeroHeight, z));
    SetMotionMode(pen, kModePlunge);
    if (z != s.CurZ) pen.words.Plunge(s, z);
  }
  EndMove(s);
  s.CurX = x;
  s.CurY = y;
  s.CurZ = z;
  s.LastPlungeZ = z;
}

void FeedTo(PenMachine& pen, float x, float y) {
  TOutputState& s = pen.state;
  if (x == s.CurX && y == s.CurY) return;
  SetMotionMode(pen, kModeFeed);
  pen.words.Feed(s, x, y);
  EndMove(s);
  s.CurX = x;
  s.CurY = y;
}

void CircleAt(PenMachine& pen, float r) {
  TOutputState& s = pen.state;
  const float cx = s.CurX, cy = s.CurY;
  if (r <= kNoCircleRadius) {
    pen.words.Point(s);
  } else {
    FeedTo(pen, static_cast<float>(double(cx) + r), cy);
    if (!s.UseArcs) {
      // Twelve chords; a positive boring direction counts up, any other down.
      const int step = pen.boringDir > 0 ? 30 : -30;
      for (int i = 0; i <= 12; ++i) {
        const double a = double(i * step) * 3.14159265358979323846 / 180;
        FeedTo(pen, static_cast<float>(double(cx) + r * Snap(std::cos(a))),
               static_cast<float>(double(cy) + r * Snap(std::sin(a))));
      }
    } else {
      ArcWords arc;
      arc.centreX = cx;
      arc.centreY = cy;
      arc.radius = r;
      const bool counterClockwise = pen.boringDir >= 0;
      s.MotionType = counterClockwise ? kTypeArcCounterClockwise : kTypeArcClockwise;
      arc.motionType = s.MotionType;
      arc.sweep = counterClockwise ? 360.0f : -360.0f;
      pen.words.FullCircle(s, arc);
      s.PrevMotionType = s.MotionType;
    }
  }
  FeedTo(pen, cx, cy);
}

}  // namespace isolith
