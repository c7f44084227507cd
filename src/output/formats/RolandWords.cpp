// Roland CAMM-3 (code 19) and EGX (code 20) words: every move names all three axes.
#include <algorithm>

#include "output/formats/FormatFamilies.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

std::string Move(double x, double y, double z) {
  return "Z" + Fixed(x, 0) + "," + Fixed(y, 0) + "," + Fixed(z, 0) + ";";
}

}  // namespace

RolandWords::RolandWords(FormatContext context, bool egx)
    : BuiltinWords(std::move(context)), egx_(egx) {}

void RolandWords::Header(TOutputState& s) {
  if (auto text = UserText(egx_ ? "EGX-Top.txt" : "CM3-Top.txt")) WriteLine(s, *text);
}

void RolandWords::Footer(TOutputState& s) {
  WriteLine(s, "H;");
}

void RolandWords::ToolChange(TOutputState& s, const ToolChangeWords&) {
  WriteLine(s, "^IN;");
  WriteLine(s, "^PA;");
  WriteLine(s, "!MC1;");
  WriteLine(s, "V" + Fixed(std::max(1.0, double(s.ClearSpeed) * s.ScaleVxy), 0) + ";");
}

void RolandWords::ToolStop(TOutputState& s) {
  WriteLine(s, "!MC0;");
}

void RolandWords::Speed(TOutputState& s, float v) {
  WriteLine(s, "V" + Fixed(std::max(1.0, double(v)), 0) + ";");
}

void RolandWords::ZRapid(TOutputState& s, float z) {
  // The machine needs the plane position with every Z; with none known yet, Z waits.
  if (s.CurX == kUnknownPosition || s.CurY == kUnknownPosition) return;
  WriteLine(s, Move(MachineX(s, s.CurX), MachineY(s, s.CurY), MachineZ(s, z)));
}

void RolandWords::Rapid(TOutputState& s, float x, float y) {
  WriteLine(s, Move(MachineX(s, x), MachineY(s, y), MachineZ(s, s.CurZ)));
}

void RolandWords::Plunge(TOutputState& s, float z) {
  WriteLine(s, Move(MachineX(s, s.CurX), MachineY(s, s.CurY), MachineZ(s, z)));
}

void RolandWords::Feed(TOutputState& s, float x, float y) {
  WriteLine(s, Move(MachineX(s, x), MachineY(s, y), MachineZ(s, s.CurZ)));
}

void RolandWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  WriteLine(s, "C" + Fixed(MachineX(s, arc.centreX), 0) + "," + Fixed(MachineY(s, arc.centreY), 0) +
                   "," + Fixed(double(arc.radius) * s.ScaleX, 0) + ",0,36;");
}

}  // namespace isolith
