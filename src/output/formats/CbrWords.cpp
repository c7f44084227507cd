// Colinbus CBR words. This machine has no circle command: the layer walk always gives it
// polygons.

#include "output/formats/FormatFamilies.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

// The tool's name as the machine's tool table accepts it: no blanks, colons or semicolons.
std::string CleanName(const TToolData* tool) {
  std::string name;
  if (!tool) return name;
  for (char c : ToolName(*tool))
    if (c != ' ' && c != ':' && c != ';') name.push_back(c);
  return name;
}

}  // namespace

void CbrWords::Header(TOutputState& s) {
  if (auto text = UserText("CBR-Top.txt"))
    WriteLine(s, *text);
  else
    WriteLine(s, "OF X:40,Y:40,Z:40;");
  if (s.ScaleVz != 0) WriteLine(s, "@ZU " + N1(double(s.ClearSpeed) * s.ScaleVz) + ";");
  if (s.ScaleZ != 0) WriteLine(s, "@ZA " + N0(-double(s.ClearHeight) * s.ScaleZ) + ";");
}

void CbrWords::Footer(TOutputState& s) {
  if (auto text = UserText("CBR-Bottom.txt")) {
    WriteLine(s, *text);
    return;
  }
  if (s.ScaleVxy != 0) WriteLine(s, "VS " + N1(double(s.ClearSpeed) * s.ScaleVxy) + ";");
  WriteLine(s, "PA 0,0;");
}

void CbrWords::ToolChange(TOutputState& s, const ToolChangeWords& change) {
  const float diameter = change.data ? change.data->Diameter : 0.0f;
  const float zmax = change.data ? change.data->Zmax : 0.0f;
  const double height = zmax != 0 ? double(zmax) : double(diameter) * 5;
  WriteLine(s, "T:" + std::to_string(change.tool % 9 + 1) + " N:" + CleanName(change.data) +
                   " H:" + N1(height) + " D:" + N1(diameter) + ";");
  WriteLine(s, "@SS 1;");
}

void CbrWords::ToolStop(TOutputState& s) {
  WriteLine(s, "@SS 0;");
}

void CbrWords::Speed(TOutputState& s, float v) {
  WriteLine(s, "VS " + N1(v) + ";");
}

void CbrWords::ZRapid(TOutputState& s, float z) {
  WriteLine(s, "@ZA " + N0(MachineZ(s, z)) + ";");
}

void CbrWords::Rapid(TOutputState& s, float x, float y) {
  WriteLine(s, "PA " + N0(MachineX(s, x)) + "," + N0(MachineY(s, y)) + ";");
}

void CbrWords::Plunge(TOutputState& s, float z) {
  WriteLine(s, "@ZA " + N0(MachineZ(s, z)) + ";");
}

void CbrWords::Feed(TOutputState& s, float x, float y) {
  WriteLine(s, "PA " + N0(MachineX(s, x)) + "," + N0(MachineY(s, y)) + ";");
}

}  // namespace isolith
