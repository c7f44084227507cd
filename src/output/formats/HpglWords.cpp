// HPGL plotter words. Everything goes through the raw writer, so a whole file is one line.
#include "output/formats/FormatFamilies.h"
#include "output/formats/Writers.h"

namespace isolith {

void HpglWords::Header(TOutputState& s) {
  if (auto text = UserText("HPGL-Top.txt")) {
    WriteRaw(s, *text);
    return;
  }
  WriteRaw(s, "IN;");
  WriteRaw(s, "PA;");
}

void HpglWords::Footer(TOutputState& s) {
  if (auto text = UserText("HPGL-Bottom.txt")) {
    WriteRaw(s, *text);
    return;
  }
  WriteRaw(s, "SP;");
}

void HpglWords::ToolChange(TOutputState& s, const ToolChangeWords&) {
  WriteRaw(s, "PU;SP" + std::to_string(s.Slot + 1) + ";");
}

void HpglWords::ToolStop(TOutputState& s) {
  WriteRaw(s, "PU;");
}

void HpglWords::Speed(TOutputState& s, float v) {
  WriteRaw(s, "VS" + Fixed(v, 0) + ";");
}

void HpglWords::Rapid(TOutputState& s, float x, float y) {
  WriteRaw(s, "PU" + Fixed(MachineX(s, x), 0) + "," + Fixed(MachineY(s, y), 0) + ";");
}

void HpglWords::PenUp(TOutputState& s) {
  WriteRaw(s, "PU;");
}

void HpglWords::Plunge(TOutputState& s, float z) {
  // The pen plotter's depth only needs saying when it differs from the last plunge.
  if (z == s.LastPlungeZ) return;
  WriteRaw(s, "!PZ" + Fixed(double(z) * 100 * s.ScaleZ, 0) + ";");
  if (s.ScaleVz != 0) WriteRaw(s, "!VZ" + Fixed(s.PlungeSpeed, 0) + ";");
}

void HpglWords::Feed(TOutputState& s, float x, float y) {
  WriteRaw(s, "PD" + Fixed(MachineX(s, x), 0) + "," + Fixed(MachineY(s, y), 0) + ";");
}

void HpglWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  WriteRaw(s, "AA" + Fixed(MachineX(s, arc.centreX), 0) + "," + Fixed(MachineY(s, arc.centreY), 0) +
                  "," + Fixed(arc.sweep, 0) + ";");
}

void HpglWords::Point(TOutputState& s) {
  WriteRaw(s, "PD;");
}

}  // namespace isolith
