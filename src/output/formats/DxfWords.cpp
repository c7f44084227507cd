// DXF words: a release AC1006 drawing whose entities are the feed lines, the drilled circles
// and the spots of the job, coloured by tool. Rapid moves leave no trace.
#include <cstdio>
#include <initializer_list>

#include "output/formats/FormatFamilies.h"
#include "output/formats/Writers.h"

namespace isolith {

namespace {

// One line type of the table: its picture and its element lengths in the tiny units of the
// drawing's line-type scale, as written.
struct LineType {
  const char* name;
  const char* picture;
  const char* total;
  std::initializer_list<const char*> elements;
};

const LineType kLineTypes[] = {
    {"CONTINUOUS", "Solid line", "0.000000", {}},
    {"DASHED",
     "__ __ __ __ __ __ __ __ __ __ __ __ __ __ __",
     "0.000003",
     {"0.000002", "-0.000001"}},
    {"HIDDEN",
     "_ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _ _",
     "0.000002",
     {"0.000001", "-0.000001"}},
    {"CENTER",
     "____ _ ____ _ ____ _ ____ _ ____ _ ____ _ ____",
     "0.000008",
     {"0.000005", "-0.000001", "0.000001", "-0.000001"}},
    {"PHANTOM",
     "_____ _ _ _____ _ _ _____ _ _ _____ _ _ _____",
     "0.000010",
     {"0.000005", "-0.000001", "0.000001", "-0.000001", "0.000001", "-0.000001"}},
    {"DOT",
     ". . . . . . . . . . . . . . . . . . . . . . . . . . . .",
     "0.000001",
     {"0.000000", "-0.000001"}},
    {"DASHDOT",
     "__ . __ . __ . __ . __ . __ . __ . __ . __ . __",
     "0.000004",
     {"0.000002", "-0.000001", "0.000000", "-0.000001"}},
    {"BORDER",
     "__ __ . __ __ . __ __ . __ __ . __ __ . __ __ .",
     "0.000007",
     {"0.000002", "-0.000001", "0.000002", "-0.000001", "0.000000", "-0.000001"}},
    {"DIVIDE",
     "__ . . __ . . __ . . __ . . __ . . __ . . __",
     "0.000005",
     {"0.000002", "-0.000001", "0.000000", "-0.000001", "0.000000", "-0.000001"}},
    {"DOTDOT",
     ".. .. .. .. .. .. .. .. .. .. .. .. .. .. .. ..",
     "0.000002",
     {"0.000000", "-0.000001", "0.000000", "-0.000001"}},
};

std::string Value(double v) {
  return Trimmed(v, 6);
}

std::string Count3(int n) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%3d", n);
  return buffer;
}

void WriteLineType(TOutputState& s, const LineType& type) {
  WriteLine(s, std::string("  0\nLTYPE\n  2\n") + type.name + "\n 70\n 64\n  3\n" + type.picture +
                   "\n 72\n 65\n 73\n" + Count3(static_cast<int>(type.elements.size())) +
                   "\n 40\n" + type.total);
  for (const char* length : type.elements) {
    WriteLine(s, " 49");
    WriteLine(s, length);
  }
}

void WriteGroup(TOutputState& s, const char* code, double value) {
  WriteLine(s, code);
  WriteLine(s, Value(value));
}

}  // namespace

int DxfWords::ColourOfSlot(int slot) {
  const int n = slot % 16;
  switch (n) {
    case 0:
      return 7;
    case 1:
      return 1;
    case 3:
      return 2;
    case 6:
      return 4;
    case 8:
      return 15;
    case 9:
      return 9;
    case 11:
      return 10;
    case 14:
      return 12;
    default:
      return n + 1;
  }
}

void DxfWords::Header(TOutputState& s) {
  WriteLine(s, "  0\nSECTION\n  2\nHEADER");
  WriteLine(s, "  9\n$ACADVER\n  1\nAC1006");
  WriteLine(s, "  9\n$EXTMIN\n 10\n0.0\n 20\n0.0");
  WriteLine(s, "  9\n$EXTMAX");
  WriteGroup(s, " 10", double(board().CardWidth) * s.ScaleX);
  WriteGroup(s, " 20", double(board().CardHeight) * s.ScaleY);
  WriteLine(s, "  9\n$LTSCALE\n 40\n0.000394");
  WriteLine(s, "  9\n$PDMODE\n 70\n35\n  9\n$PDSIZE\n 40\n0.000315");
  WriteLine(s, "  0\nENDSEC");
  WriteLine(s, "  0\nSECTION\n  2\nTABLES");
  // The count says nine and ten types follow: readers have always taken it so.
  WriteLine(s, "  0\nTABLE\n  2\nLTYPE\n 70\n  9");
  for (const LineType& type : kLineTypes) WriteLineType(s, type);
  WriteLine(s, "  0\nENDTAB");
  WriteLine(s, "  0\nTABLE\n  2\nSTYLE\n 70\n  0\n  0\nENDTAB");
  WriteLine(s, "  0\nTABLE\n  2\nLAYER\n 70\n  4");
  WriteLine(s, "  0\nLAYER\n  2\nFOREGROUND\n 70\n 64\n 62\n  7\n  6\nCONTINUOUS");
  WriteLine(s, "  0\nLAYER\n  2\nBACKGROUND\n 70\n 65\n 62\n -7\n  6\nCONTINUOUS");
  WriteLine(s, "  0\nLAYER\n  2\nPLAN_1\n 70\n 64\n 62\n  7\n  6\nCONTINUOUS");
  WriteLine(s, "  0\nENDTAB");
  WriteLine(s, "  0\nENDSEC");
  WriteLine(s, "  0\nSECTION\n  2\nENTITIES\n  0");
}

void DxfWords::Footer(TOutputState& s) {
  WriteRaw(s, "ENDSEC\n  0\nEOF");
}

void DxfWords::ToolChange(TOutputState& s, const ToolChangeWords&) {
  s.DxfColour = ColourOfSlot(s.Slot);
}

void DxfWords::Feed(TOutputState& s, float x, float y) {
  WriteLine(s, "LINE\n  8\nPLAN_1\n 62\n" + std::to_string(s.DxfColour));
  WriteGroup(s, " 10", MachineX(s, s.CurX));
  WriteGroup(s, " 20", MachineY(s, s.CurY));
  if (s.ScaleZ != 0) WriteGroup(s, " 30", MachineZ(s, s.CurZ));
  WriteGroup(s, " 11", MachineX(s, x));
  WriteGroup(s, " 21", MachineY(s, y));
  if (s.ScaleZ != 0) WriteGroup(s, " 31", MachineZ(s, s.CurZ));
  WriteLine(s, "  0");
}

void DxfWords::FullCircle(TOutputState& s, const ArcWords& arc) {
  WriteLine(s, "CIRCLE\n  8\nPLAN_1\n 62\n" + std::to_string(s.DxfColour));
  WriteGroup(s, " 10", MachineX(s, arc.centreX));
  WriteGroup(s, " 20", MachineY(s, arc.centreY));
  if (s.ScaleZ != 0) WriteGroup(s, " 30", MachineZ(s, s.CurZ));
  WriteGroup(s, " 40", double(arc.radius) * s.ScaleX);
  WriteLine(s, "  0");
}

void DxfWords::Point(TOutputState& s) {
  WriteLine(s, "POINT\n  8\nPLAN_1\n 62\n" + std::to_string(s.DxfColour));
  WriteGroup(s, " 10", MachineX(s, s.CurX));
  WriteGroup(s, " 20", MachineY(s, s.CurY));
  if (s.ScaleZ != 0) WriteGroup(s, " 30", MachineZ(s, s.CurZ));
  WriteLine(s, "  0");
}

}  // namespace isolith
