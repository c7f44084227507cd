// Isel remote NCP words: every block but the first is numbered, the number counted up before
// each. The speeds go in the header and at each tool change; moves carry none.
#include "output/formats/FormatFamilies.h"
#include "output/formats/HeaderText.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

constexpr const char* kStars = ";************************************";

}  // namespace

std::string NcpWords::Block(TOutputState& s) const {
  ++s.LineNumber;
  return "N" + Block6(s.LineNumber);
}

void NcpWords::Header(TOutputState& s) {
  WriteLine(s, "IMF_PBL_V1.0");
  WriteLine(s, Block(s) + " " + kStars);
  WriteLine(s, Block(s) + " ; " + ProgramLabel() + " / Isel Remote-NCP Output");
  WriteLine(s, Block(s) + " ; " + FileLabel(s) + " created " + DateText(context_.now) + " at " +
                   TimeText(context_.now));
  WriteLine(s, Block(s) + " ; " + WorkpieceText(board(), s));
  WriteLine(s, Block(s) + " " + kStars);
  WriteLine(s, Block(s));
  if (s.ScaleVxy != 0)
    WriteLine(s, Block(s) + " FASTVEL " + Fixed(double(s.ClearSpeed) * 1000 * s.ScaleVxy, 0));
}

void NcpWords::Footer(TOutputState& s) {
  WriteLine(s, Block(s) + " WPCLEAR");
  WriteRaw(s, Block(s) + " PROGEND");
}

void NcpWords::ToolChange(TOutputState& s, const ToolChangeWords& change) {
  WriteLine(s, Block(s) + " GETTOOL " + std::to_string(change.tool + 1));
  WriteLine(s, Block(s) + " SPINDLE CW RPM" + std::to_string(change.spindleSpeed));
  // The feed is the one in force before this tool's speeds are set.
  if (s.ScaleVxy != 0)
    WriteLine(s, Block(s) + " VEL " + Fixed(double(s.FeedSpeed) * 1000 * s.ScaleVxy, 0));
}

void NcpWords::ToolStop(TOutputState& s) {
  WriteLine(s, Block(s) + " SPINDLE CW RPM0");
}

void NcpWords::ZRapid(TOutputState& s, float z) {
  WriteLine(s, Block(s) + " FASTABS Z" + Fixed(MachineZ(s, z), 0));
}

void NcpWords::Rapid(TOutputState& s, float x, float y) {
  std::string line = Block(s) + " FASTABS";
  if (x != s.CurX) line += " X" + N2(MachineX(s, x));
  if (y != s.CurY) line += " Y" + N2(MachineY(s, y));
  WriteLine(s, line);
}

void NcpWords::Plunge(TOutputState& s, float z) {
  WriteLine(s, Block(s) + " MOVEABS Z" + Fixed(MachineZ(s, z), 0));
}

void NcpWords::Feed(TOutputState& s, float x, float y) {
  std::string line = Block(s) + " MOVEABS";
  if (x != s.CurX) line += " X" + N2(MachineX(s, x));
  if (y != s.CurY) line += " Y" + N2(MachineY(s, y));
  WriteLine(s, line);
}

void NcpWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  std::string line = Block(s) + " ";
  line += arc.motionType == kTypeArcClockwise ? "CWABS " : "CCWABS ";
  line += " I" + N2(MachineX(s, arc.centreX)) + " J" + N2(MachineY(s, arc.centreY)) + " X" +
          N2(MachineX(s, s.CurX)) + " Y" + N2(MachineY(s, s.CurY));
  WriteLine(s, line);
}

}  // namespace isolith
