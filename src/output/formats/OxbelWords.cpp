// Oxbel motion language words (code 1), kept for the suite's module variant.
#include "output/formats/FormatFamilies.h"
#include "output/formats/HeaderText.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

constexpr const char* kRule = "REM --------------------------------";

}  // namespace

void OxbelWords::Header(TOutputState& s) {
  WriteLine(s, kRule);
  WriteLine(s, "REM " + ProgramLabel() + " Output");
  if (!s.FileName.empty()) WriteLine(s, "REM " + s.FileName + "  -  " + DateText(context_.now));
  WriteLine(s, kRule);
  WriteLine(s, "REM");
}

void OxbelWords::Footer(TOutputState& s) {
  WriteRaw(s, kRule);
}

void OxbelWords::Speed(TOutputState& s, float v) {
  WriteLine(s, "SPEED " + Trimmed(double(v) * 60, 3));
}

void OxbelWords::ZRapid(TOutputState& s, float z) {
  WriteLine(s, "MOVE TO Z" + N2(MachineZ(s, z)));
}

void OxbelWords::Rapid(TOutputState& s, float x, float y) {
  WriteLine(s, "MOVE TO X" + N2(MachineX(s, x)) + " Y" + N2(MachineY(s, y)));
}

void OxbelWords::Plunge(TOutputState& s, float z) {
  WriteLine(s, "MOVE TO Z" + N2(MachineZ(s, z)));
}

void OxbelWords::Feed(TOutputState& s, float x, float y) {
  WriteLine(s, "MOVE TO X" + N2(MachineX(s, x)) + " Y" + N2(MachineY(s, y)));
}

void OxbelWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  std::string line = "ARC TO ";
  if (arc.motionType == kTypeArcCounterClockwise) line += "C";
  line += "CW I" + N2(MachineX(s, arc.centreX)) + " J" + N2(MachineY(s, arc.centreY)) + " X" +
          N2(MachineX(s, s.CurX)) + " Y" + N2(MachineY(s, s.CurY));
  WriteLine(s, line);
}

}  // namespace isolith
