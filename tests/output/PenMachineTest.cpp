// The pen machine and the words it picks, on a stream in memory: the skip rules, the markers
// and the edge cases of the speed, Z and circle words.
#include <gtest/gtest.h>

#include <memory>

#include "OutputWorld.h"
#include "output/driver/PenMachine.h"
#include "output/formats/BuiltinFormats.h"
#include "output/formats/FormatFamilies.h"
#include "output/formats/UserTextFiles.h"
#include "output/formats/Writers.h"

namespace isolith::test {
namespace {

// One format's pen on a memory stream, with the clearance and speeds of the worked example.
struct MemoryPen {
  OutputWorld world;
  TOutputStream stream;
  TOutputState state;
  std::unique_ptr<FormatWords> words;
  std::unique_ptr<PenMachine> pen;

  explicit MemoryPen(int format) {
    FormatContext context;
    context.board = &world.board;
    context.programFolder = world.folder.string();
    context.now = kTestNow;
    words = MakeFormatWords(format, context);
    state.Stream = &stream;
    state.Format = format;
    state.ClearHeight = 5;
    state.ZeroHeight = 0.5f;
    state.ClearSpeed = 20;
    if (format == 9 || format == 11) state.ScaleZ = -1;
    pen = std::make_unique<PenMachine>(PenMachine{state, *words, world.tools, -1});
  }
  const std::string& Text() const { return stream.Text(); }
};

TEST(PenMachine, LinesAreCutOfBlanksAndEveryLineFeedBecomesCrLf) {
  MemoryPen p(9);
  WriteLine(p.state, "G00   ");
  WriteLine(p.state, "    ");
  WriteRaw(p.state, "a\nb ");
  WriteRaw(p.state, "");
  EXPECT_EQ(p.Text(), "G00\r\na\r\nb");
}

TEST(PenMachine, NumberForms) {
  EXPECT_EQ(N2(12.5), "12.5");
  EXPECT_EQ(N2(3.0), "3");
  EXPECT_EQ(N2(-0.126), "-0.13");
  EXPECT_EQ(N1(0.04), "0");
  EXPECT_EQ(N0(2.5), "2");  // plain rounding of the printf family: halves go to even
  EXPECT_EQ(N0(1200.0), "1200");
  EXPECT_EQ(Trimmed(100.0, 3), "100");
  EXPECT_EQ(Fixed(0.5, 0), "0");
  EXPECT_EQ(Block6(42), "000042");
}

TEST(PenMachine, NoSpeedFactorMeansNoSpeedLines) {
  MemoryPen iso(9);
  iso.state.ScaleVxy = 0;
  SelectTool(*iso.pen, 0, 0);
  EXPECT_EQ(iso.Text(), "T1 M06\r\nM03 S20000\r\n");

  MemoryPen ncp(5);
  ncp.state.ScaleVxy = 0;
  ncp.state.FeedSpeed = 2;
  WriteHeader(*ncp.pen);
  SelectTool(*ncp.pen, 0, 0);
  EXPECT_EQ(ncp.Text().find("VEL"), std::string::npos);
  EXPECT_NE(ncp.Text().find("N000007 GETTOOL 1\r\n"), std::string::npos);
}

TEST(PenMachine, IsoWithoutZHasNoZWordAndTheFirstFeedCarriesF0) {
  MemoryPen p(9);
  p.state.ScaleZ = 0;
  p.state.ScaleVz = 0;
  SelectTool(*p.pen, 0, 0);
  SetToolSpeeds(*p.pen, 120);
  RapidTo(*p.pen, 10, 10, 0.1f);
  FeedTo(*p.pen, 20, 10);
  FeedTo(*p.pen, 20, 15);
  StopTool(*p.pen);
  EXPECT_EQ(p.Text(), CrLf({"T1 M06", "M03 S20000", "G00 F1200", "G00 X10 Y10", "G01 F0 X20",
                            "G01 Y15", "M05"}));
}

TEST(PenMachine, SkipsUnchangedAxesAfterToolChangeAndZeroLengthSteps) {
  MemoryPen p(9);
  SelectTool(*p.pen, 0, 0);
  SetToolSpeeds(*p.pen, 120);
  // The pen is taken to stand at (0, 0, 0) after a tool change: X 0 is not written.
  RapidTo(*p.pen, 0, 5, 0.1f);
  FeedTo(*p.pen, 0, 5);  // no step at all
  FeedTo(*p.pen, 3, 5);
  FeedTo(*p.pen, 3, 5);
  // The same tool again changes nothing and keeps the spindle on.
  SelectTool(*p.pen, 0, 0);
  EXPECT_EQ(p.Text(), CrLf({"T1 M06", "M03 S20000", "G00 F1200", "G00 Z5", "G00 Y5", "G00 Z0.5",
                            "G01 F60 Z-0.1", "G01 F120 X3"}));
}

TEST(PenMachine, NoIntermediateRapidWhenTheMarginIsNotBelowTheClearance) {
  MemoryPen p(9);
  p.state.ZeroHeight = 5;
  SelectTool(*p.pen, 0, 0);
  SetToolSpeeds(*p.pen, 120);
  RapidTo(*p.pen, 1, 2, 0.1f);
  EXPECT_EQ(p.Text(),
            CrLf({"T1 M06", "M03 S20000", "G00 F1200", "G00 Z5", "G00 X1 Y2", "G01 F60 Z-0.1"}));
}

TEST(PenMachine, PlungeSpeedFallsBackInTurn) {
  MemoryPen p(9);
  TToolData& tool = p.world.tools[3];
  tool.Diameter = 1;
  p.state.Tool = 3;
  tool.AbsDrillSpeed = 90;
  SetToolSpeeds(*p.pen, 120);
  EXPECT_FLOAT_EQ(p.state.PlungeSpeed, 1.5f);
  tool.AbsDrillSpeed = 0;
  tool.RelDrillSpeed = 25;
  SetToolSpeeds(*p.pen, 120);
  EXPECT_FLOAT_EQ(p.state.PlungeSpeed, 0.5f);
  tool.RelDrillSpeed = 0;
  SetToolSpeeds(*p.pen, 120);
  EXPECT_FLOAT_EQ(p.state.PlungeSpeed, 1.0f);
  SetToolSpeeds(*p.pen, 0);
  EXPECT_FLOAT_EQ(p.state.PlungeSpeed, 1.0f);
}

TEST(PenMachine, BoringDirectionZeroTurnsArcsCounterClockwiseAndPolygonsClockwise) {
  MemoryPen arcs(9);
  arcs.pen->boringDir = 0;
  SelectTool(*arcs.pen, 0, 0);
  RapidTo(*arcs.pen, 10, 10, 1);
  CircleAt(*arcs.pen, 0.5f);
  EXPECT_NE(arcs.Text().find("G03 I-0.5 J0 X10.5 Y10\r\nG01 X10\r\n"), std::string::npos);

  MemoryPen polygon(9);
  polygon.pen->boringDir = 0;
  polygon.state.UseArcs = false;
  SelectTool(*polygon.pen, 0, 0);
  RapidTo(*polygon.pen, 10, 10, 1);
  CircleAt(*polygon.pen, 0.5f);
  // From the point at angle 0 the first chord goes down: clockwise.
  EXPECT_NE(polygon.Text().find("X10.5\r\nG01 X10.43 Y9.75\r\n"), std::string::npos);
  EXPECT_NE(polygon.Text().find("G01 X10.5 Y10\r\nG01 X10\r\n"), std::string::npos);
  EXPECT_EQ(polygon.Text().find("G03"), std::string::npos);
}

TEST(PenMachine, HolesWithoutCircle) {
  MemoryPen hpgl(2);
  hpgl.state.ScaleX = hpgl.state.ScaleY = 40;
  SelectTool(*hpgl.pen, 0, 0);
  RapidTo(*hpgl.pen, 1, 1, 1);
  CircleAt(*hpgl.pen, 0.01f);
  // The second hole at the same depth needs no new depth word.
  RapidTo(*hpgl.pen, 2, 1, 1);
  CircleAt(*hpgl.pen, 0);
  EXPECT_EQ(hpgl.Text(), "PU;SP1;VS20;PU40,40;!PZ100;!VZ0;PD;PU80,40;PD;");

  MemoryPen iso(9);
  SelectTool(*iso.pen, 0, 0);
  RapidTo(*iso.pen, 1, 1, 1);
  const std::size_t before = iso.Text().size();
  CircleAt(*iso.pen, 0.01f);
  EXPECT_EQ(iso.Text().size(), before);

  MemoryPen dxf(4);
  SelectTool(*dxf.pen, 0, 0);
  RapidTo(*dxf.pen, 1, 2, 0.5f);
  CircleAt(*dxf.pen, 0);
  EXPECT_EQ(dxf.Text(), CrLf({"POINT", "  8", "PLAN_1", " 62", "7", " 10", "1", " 20", "2", " 30",
                              "0.5", "  0"}));
}

TEST(PenMachine, RapidWithoutMoveIsAPenUpForPlottersOnly) {
  MemoryPen sml(21);
  SelectTool(*sml.pen, 0, 0);
  sml.state.CurZ = 1;  // in the material
  RapidTo(*sml.pen, 0, 0, -1);
  EXPECT_EQ(sml.Text(), "SS1;SR20000;PU;");

  MemoryPen iso(9);
  SelectTool(*iso.pen, 0, 0);
  iso.state.CurZ = 1;
  RapidTo(*iso.pen, 0, 0, -1);
  EXPECT_EQ(iso.Text(), CrLf({"T1 M06", "M03 S20000", "G00 F1200", "G00 Z5"}));
}

TEST(PenMachine, RolandWaitsForAKnownPlanePositionBeforeZ) {
  MemoryPen p(20);
  p.state.ScaleX = p.state.ScaleY = p.state.ScaleZ = 100;
  MoveZ(*p.pen, -5);
  EXPECT_EQ(p.Text(), "");
  p.state.CurX = 1;
  p.state.CurY = 2;
  MoveZ(*p.pen, -1);
  EXPECT_EQ(p.Text(), "Z100,200,-100;\r\n");
}

TEST(PenMachine, DxfColourOfEachSlot) {
  const int expected[16] = {7, 1, 3, 2, 5, 6, 4, 8, 15, 9, 11, 10, 13, 14, 12, 16};
  for (int slot = 0; slot < 16; ++slot) EXPECT_EQ(DxfWords::ColourOfSlot(slot), expected[slot]);
  EXPECT_EQ(DxfWords::ColourOfSlot(17), 1);
}

TEST(PenMachine, StopToolWithoutToolDoesNothing) {
  MemoryPen p(9);
  StopTool(*p.pen);
  WriteFooter(*p.pen);
  EXPECT_EQ(p.Text(), "M02\r\n%");
}

TEST(UserFiles, ReplaceTheDefaultWordsOnlyWithACompleteLine) {
  {
    MemoryPen p(2);
    WriteFile(p.world.folder / "HPGL-Top.txt", "IN;  \nSC0,100;\ntrailing");
    WriteHeader(*p.pen);
    EXPECT_EQ(p.Text(), "IN;SC0,100;");
  }
  {
    MemoryPen p(9);
    WriteFile(p.world.folder / "ISO-Top.txt", "");
    WriteHeader(*p.pen);
    EXPECT_EQ(p.Text().rfind("( Isolith 3 - 25/09/2008 / ISO-Mill Output )\r\n", 0), 0u);
  }
  {
    MemoryPen p(9);
    WriteFile(p.world.folder / "ISO-Top.txt", "( no line end )");
    WriteHeader(*p.pen);
    EXPECT_EQ(p.Text().rfind("( Isolith 3", 0), 0u);
  }
  {
    MemoryPen p(9);
    WriteFile(p.world.folder / "ISO-Top.txt", "%\r\nO1\t23  \r\n");
    WriteFile(p.world.folder / "ISO-Bottom.txt", "M30\n%\n");
    WriteHeader(*p.pen);
    WriteFooter(*p.pen);
    EXPECT_EQ(p.Text(), CrLf({"%", "O123", "( File created 25/12/2023 at 14:05 )",
                              "( Workpiece dimensions: 100 x 70 x 1 mm )",
                              "G00 G90 G94 G71 G40 G54 G80", "M30", "%"}));
  }
  EXPECT_EQ(UserLinesOf(std::string(300, 'x') + "\n")[0].size(), 255u);
}

}  // namespace
}  // namespace isolith::test
