// Suregrave SML words: raw like HPGL, with Y mirrored about the card's height, because this
// machine counts Y from the top edge.
#include <cmath>

#include "output/formats/FormatFamilies.h"
#include "output/formats/Writers.h"

namespace isolith {

double SmlWords::MirroredY(const TOutputState& s, float y) const {
  return (double(board().CardHeight) - (double(y) - s.ZeroY)) * s.ScaleY;
}

void SmlWords::Header(TOutputState& s) {
  if (auto text = UserText("SML-Top.txt")) {
    WriteRaw(s, *text);
    return;
  }
  WriteRaw(s, "SS0;PM3;ZD0;PA;ZL0;");
  WriteRaw(s, "ZU" + Fixed(std::fabs(double(s.ScaleZ)) * s.ClearHeight, 0) + ";");
}

void SmlWords::ToolChange(TOutputState& s, const ToolChangeWords& change) {
  WriteRaw(s, "SS1;");
  WriteRaw(s, "SR" + std::to_string(change.spindleSpeed) + ";");
}

void SmlWords::ToolStop(TOutputState& s) {
  WriteRaw(s, "PG;");
}

void SmlWords::Rapid(TOutputState& s, float x, float y) {
  WriteRaw(s, "PU" + Fixed(MachineX(s, x), 0) + "," + Fixed(MirroredY(s, y), 0) + ";");
}

void SmlWords::PenUp(TOutputState& s) {
  WriteRaw(s, "PU;");
}

void SmlWords::Feed(TOutputState& s, float x, float y) {
  WriteRaw(s, "PD" + Fixed(MachineX(s, x), 0) + "," + Fixed(MirroredY(s, y), 0) + ";");
}

void SmlWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  WriteRaw(s, "AA" + Fixed(MachineX(s, arc.centreX), 0) + "," +
                  Fixed(MirroredY(s, arc.centreY), 0) + "," + Fixed(arc.sweep, 0) + ";");
}

void SmlWords::Point(TOutputState& s) {
  WriteRaw(s, "PD;");
}

}  // namespace isolith
