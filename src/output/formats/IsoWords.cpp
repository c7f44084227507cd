// ISO G-code (code 9) and its NUM dialect (code 11), which differ in the name of their user
// files and comment, and in giving the arc centre absolute rather than from the start.
#include "output/formats/FormatFamilies.h"
#include "output/formats/HeaderText.h"
#include "output/formats/Writers.h"

namespace isolith {

IsoWords::IsoWords(FormatContext context, bool num) : BuiltinWords(std::move(context)), num_(num) {}

void IsoWords::Header(TOutputState& s) {
  if (auto lines = UserLines(num_ ? "NUM-Top.txt" : "ISO-Top.txt")) {
    for (const std::string& line : *lines) WriteLine(s, line);
  } else {
    WriteLine(s, "( " + ProgramLabel() + (num_ ? " / NUM-Mill Output )" : " / ISO-Mill Output )"));
  }
  WriteLine(s, "( " + FileLabel(s) + " created " + DateText(context_.now) + " at " +
                   TimeText(context_.now) + " )");
  WriteLine(s, "( " + WorkpieceText(board(), s) + " )");
  WriteLine(s, "G00 G90 G94 G71 G40 G54 G80");
}

void IsoWords::Footer(TOutputState& s) {
  if (auto lines = UserLines(num_ ? "NUM-Bottom.txt" : "ISO-Bottom.txt")) {
    for (const std::string& line : *lines) WriteLine(s, line);
    return;
  }
  WriteLine(s, "M02");
  WriteRaw(s, "%");
}

void IsoWords::ToolChange(TOutputState& s, const ToolChangeWords& change) {
  WriteLine(s, "T" + std::to_string(change.tool + 1) + " M06");
  WriteLine(s, "M03 S" + std::to_string(change.spindleSpeed));
  if (s.ScaleVxy != 0 && s.ClearSpeed != 0)
    WriteLine(s, "G00 F" + Fixed(double(s.ClearSpeed) * 60 * s.ScaleVxy, 0) + " ");
}

void IsoWords::ToolStop(TOutputState& s) {
  WriteLine(s, "M05");
}

void IsoWords::ZRapid(TOutputState& s, float z) {
  WriteLine(s, "G00 Z" + N2(MachineZ(s, z)));
}

void IsoWords::Rapid(TOutputState& s, float x, float y) {
  std::string line = "G00";
  if (x != s.CurX) line += " X" + N2(MachineX(s, x));
  if (y != s.CurY) line += " Y" + N2(MachineY(s, y));
  WriteLine(s, line);
}

void IsoWords::AppendSpeed(TOutputState& s, std::string& line) const {
  if (s.LastV == s.CurV) return;
  line += " F" + N2(double(s.CurV) * 60 * s.ScaleVz);
  s.LastV = s.CurV;
}

void IsoWords::Plunge(TOutputState& s, float z) {
  std::string line = "G01";
  AppendSpeed(s, line);
  line += " Z" + N2(MachineZ(s, z));
  WriteLine(s, line);
}

void IsoWords::Feed(TOutputState& s, float x, float y) {
  std::string line = "G01";
  AppendSpeed(s, line);
  if (x != s.CurX) line += " X" + N2(MachineX(s, x));
  if (y != s.CurY) line += " Y" + N2(MachineY(s, y));
  WriteLine(s, line);
}

void IsoWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  std::string line = "G0" + std::to_string(arc.motionType);
  if (num_) {
    line += " I" + N2(MachineX(s, arc.centreX)) + " J" + N2(MachineY(s, arc.centreY));
  } else {
    line += " I" + N2(-(double(arc.radius) * s.ScaleX)) + " J0";
  }
  line += " X" + N2(MachineX(s, s.CurX)) + " Y" + N2(MachineY(s, s.CurY));
  WriteLine(s, line);
}

}  // namespace isolith
