#include <gtest/gtest.h>

#include "output/driver/OutputStream.h"
#include "output/driver/PenMachine.h"
#include "output/postprocessor/PostProcessorWords.h"
#include "params/Settings.h"

namespace isolith {
namespace {

// A state writing to memory, numbered from `BeginNb` as the body of a file is.
struct Output {
  TOutputStream stream;
  TOutputState state;
  Output() { state.Stream = &stream; }
  const std::string& Text() const { return stream.Text(); }
};

TEST(PostProcessorWords, WriteBlockNumbersEachLine) {
  TPostProcessor pp;
  Output out;
  out.state.LineNumber = 2;
  WriteBlock(out.state, pp, "T1 M06\\\\M03");
  // The default trailer CR LF reaches the file as CR CR LF.
  EXPECT_EQ(out.Text(), "N2 T1 M06\r\r\nN3 M03\r\r\n");
  EXPECT_EQ(out.state.LineNumber, 4);
  const size_t written = out.Text().size();
  WriteBlock(out.state, pp, "");
  EXPECT_EQ(out.Text().size(), written);

  // Zero padding, wrapping from EndNb to BeginNb, a number of its own for each run of zeros.
  pp.LineNb = "N000 ";
  pp.BeginNb = 5;
  pp.EndNb = 6;
  pp.Trailer1 = 10;
  pp.Trailer2 = 0;
  Output wrap;
  wrap.state.LineNumber = 5;
  WriteBlock(wrap.state, pp, "A\\\\B\\\\C");
  EXPECT_EQ(wrap.Text(), "N005 A\r\nN006 B\r\nN005 C\r\n");
  pp.LineNb = "0:0 ";
  wrap.state.LineNumber = 5;
  WriteBlock(wrap.state, pp, "D");
  EXPECT_EQ(wrap.Text().substr(wrap.Text().size() - 7), "5:6 D\r\n");

  // IncNb 0 repeats the number; a template without "0" shows none and uses none.
  pp.LineNb = "N0 ";
  pp.EndNb = 999999;
  pp.IncNb = 0;
  Output same;
  same.state.LineNumber = 7;
  WriteBlock(same.state, pp, "A\\\\B");
  EXPECT_EQ(same.Text(), "N7 A\r\nN7 B\r\n");
  pp.LineNb = "X";
  Output none;
  none.state.LineNumber = 7;
  WriteBlock(none.state, pp, "A");
  EXPECT_EQ(none.Text(), "XA\r\n");
  EXPECT_EQ(none.state.LineNumber, 7);

  // Header bytes before the number, no number at all with LineNumber -1, the text held to 200.
  pp.Header1 = '%';
  pp.Header3 = '>';
  Output raw;
  raw.state.LineNumber = -1;
  WriteBlock(raw.state, pp, std::string(250, 'x'));
  EXPECT_EQ(raw.Text(), "%>" + std::string(200, 'x') + "\r\n");
}

// The job of the worked example: one closed contour of three vertices, tool 1 at 20000 rpm,
// depth 0.1, feed 120 mm/min, plunge at half the feed, clearance 5 mm at 1200 mm/min, surface
// margin 0.5 mm, Z taken negative as the section walk takes it.
std::string OneContour(const TPostProcessor& pp, int speedUnit, bool footer = true) {
  ToolTable tools{};
  tools[0].Diameter = 0.2f;
  tools[0].RotationSpeed = 20000;
  tools[0].RelDrillSpeed = 50;
  Output out;
  out.state.Format = kOutputPostProcessor;
  out.state.ScaleZ = -1;
  out.state.ClearHeight = 5;
  out.state.ZeroHeight = 0.5f;
  out.state.ClearSpeed = 1200.0f / 60;
  PostProcessorWords words(pp, speedUnit);
  PenMachine pen{out.state, words, tools, 0};
  WriteHeader(pen);
  SelectTool(pen, 0, 0);
  SetToolSpeeds(pen, 120);
  RapidTo(pen, 10, 10, 0.1f);
  FeedTo(pen, 20, 10);
  FeedTo(pen, 15, 20);
  FeedTo(pen, 10, 10);
  StopTool(pen);
  if (footer) WriteFooter(pen);
  return out.Text();
}

TEST(PostProcessorWords, DefaultFormatGivesTheIsoStructure) {
  TPostProcessor pp;
  // Speeds in mm/min at scale 1 show the F values of the ISO format.
  pp.ScaleV = 1;
  EXPECT_EQ(OneContour(pp, kSpeedMmPerMin),
            "N0 ( Torvane / ISO Post-Processor )\r\r\n"
            "N1 %1\r\r\n"
            "N2 N1 G00 G90 G94 G71 G40 G54 G80\r\r\n"
            "N2 T1 M06\r\r\n"
            "N3 M03 S20000\r\r\n"
            "N4 G00 F1200 Z5\r\r\n"
            "N5 G00 X10 Y10\r\r\n"
            "N6 G00 Z0.5\r\r\n"
            "N7 G01 F60 Z-0.1\r\r\n"
            "N8 G01 X20\r\r\n"
            "N9 G01 X15 Y20\r\r\n"
            "N10 G01 X10 Y10\r\r\n"
            "N11 G00 F1200 Z5\r\r\n"
            "N12 M05\r\r\n"
            "M02\r\r\n");

  // The shipped defaults: speed unit mm/s and ScaleV 0.001.
  const std::string shipped = OneContour(TPostProcessor{}, kSpeedMmPerS, false);
  EXPECT_NE(shipped.find("N4 G00 F0.02 Z5\r"), std::string::npos) << shipped;
  EXPECT_NE(shipped.find("N7 G01 F0.001 Z-0.1\r"), std::string::npos) << shipped;

  // Hexa: every number of the templates a whole hexadecimal number; line numbers stay decimal.
  pp.Hexa = true;
  pp.ScaleX = 1;
  const std::string hexa = OneContour(pp, kSpeedMmPerMin, false);
  EXPECT_NE(hexa.find("N4 G00 F4B0 Z5\r"), std::string::npos) << hexa;
  EXPECT_NE(hexa.find("N3 M03 S4E20\r"), std::string::npos) << hexa;
  EXPECT_NE(hexa.find("N10 G01 XA YA\r"), std::string::npos) << hexa;
  EXPECT_NE(hexa.find("N7 G01 F3C Z0\r"), std::string::npos) << hexa;
}

TEST(PostProcessorWords, FileTopBottomToolAndSpeedLines) {
  TPostProcessor pp;
  pp.FileTop = "%\\\\O1000";
  pp.FileBottom = "<N>M30\\\\\\\\\\\\M02\\\\%";
  pp.LineNb = "N00 ";
  pp.BeginNb = 10;
  pp.IncNb = 10;
  pp.ToolChg = "T<t> (<T>)";
  pp.SpindleOn = "S<RPM> <RPS>";
  pp.SpindleOff = "M05 T<T> S<RPM>";
  pp.ClearV = "F<V>";
  pp.ScaleRPM = 0.5f;
  Output out;
  PostProcessorWords words(pp, kSpeedMmPerMin);
  words.Header(out.state);
  EXPECT_EQ(out.state.LineNumber, 10);
  ToolChangeWords change;
  change.tool = 2;
  change.spindleSpeed = 10000;
  words.ToolChange(out.state, change);
  out.state.Tool = 2;
  words.Speed(out.state, 2);
  words.ToolStop(out.state);
  words.Footer(out.state);
  // <RPS> is the rpm times 60; the ClearV line is 60 times the motion lines' speed.
  EXPECT_EQ(out.Text(),
            "N00 %\r\r\nN10 O1000\r\r\n"
            "N10 T3 (3)\r\r\nN20 S5000 300000\r\r\n"
            "N30 F7.2\r\r\n"
            "N40 M05 T3 S0\r\r\n"
            "N50 M30\r\r\nM02\r\r\n%\r\r\n");

  // Empty templates write nothing at all.
  pp.ClearV.clear();
  pp.SpindleOff.clear();
  pp.FileBottom = "\\\\";
  Output quiet;
  PostProcessorWords silent(pp, kSpeedMmPerMin);
  silent.Speed(quiet.state, 2);
  silent.ToolStop(quiet.state);
  silent.Footer(quiet.state);
  EXPECT_EQ(quiet.Text(), "");
}

TEST(PostProcessorWords, MotionTagsArcsAndPolarValues) {
  TPostProcessor pp;
  pp.LineNb = "";
  pp.Trailer1 = 10;
  pp.Trailer2 = 0;
  pp.OffsetX = 100;
  Output out;
  out.state.ScaleX = 2;
  out.state.ZeroX = 1;
  out.state.CurX = 3;
  out.state.CurY = 4;
  out.state.CurZ = 0;
  out.state.MotionTemplate = "G01 X<X> Y<Y>";
  // Nothing for a move to where the pen stands.
  PostMove(out.state, pp, kSpeedMmPerS, 3, 4, 0);
  EXPECT_EQ(out.Text(), "");
  PostMove(out.state, pp, kSpeedMmPerS, 5, 4, 0);
  EXPECT_EQ(out.Text(), "G01 X108 Y4\r\n");

  // Relative co-ordinates subtract the raw previous board position, unscaled.
  pp.RelCoords = true;
  Output rel;
  rel.state = out.state;
  rel.state.Stream = &rel.stream;
  PostMove(rel.state, pp, kSpeedMmPerS, 5, 4, 0);
  EXPECT_EQ(rel.Text(), "G01 X5 Y0\r\n");

  // R and A about the machine origin, with the angle offset added before the turn to degrees.
  pp.RelCoords = false;
  pp.OffsetX = 0;
  pp.ScaleR = 10;
  Output polar;
  polar.state.CurX = polar.state.CurY = polar.state.CurZ = 0;
  polar.state.MotionTemplate = "G01[ R<R>][ A<A>]";
  PostMove(polar.state, pp, kSpeedMmPerS, 3, 4, 0);
  EXPECT_EQ(polar.Text(), "G01 R50 A53.1\r\n");

  // A circle: always FeedArc2, every group with a one-letter axis tag kept, centre and end by
  // the co-ordinate rule.
  pp.ScaleR = 1;
  pp.ScaleV = 1;
  pp.FeedArc2 = "G02[ F<V>][ Z<Z>] X<X2> I<CX> J<cy> <X1CX>/<Y1CY> R<R> A<A12>[ X<X2>]";
  ToolTable tools{};
  Output arc;
  arc.state.CurX = 10;
  arc.state.CurY = 10;
  arc.state.CurZ = 0.2f;
  arc.state.ScaleZ = -1;
  arc.state.FeedSpeed = 2;
  PostProcessorWords words(pp, kSpeedMmPerMin);
  PenMachine pen{arc.state, words, tools, -1};
  CircleAt(pen, 1.5f);
  EXPECT_EQ(arc.Text(),
            "G01 F120 X11.5\r\n"
            "G02 F120 Z-0.2 X11.5 I10 J10 -1.5/0 R1.5 A-360\r\n"
            "G01 X10\r\n");
}

TEST(PostProcessorWords, SectionWalkTakesScalesArcsAndZeroPoint) {
  Board board;
  board.CardWidth = 80;
  board.CardHeight = 60;
  board.CardThickness = 1.6f;
  board.OriginX = 7;
  board.OriginY = 8;
  TPostProcessor pp;
  pp.ScaleX = 2;
  pp.ScaleZ = 3;
  pp.Arcs = false;
  pp.OriginXY = kOriginNorthEast;
  pp.OriginZ = 1;
  TOutputState state;
  state.ScaleZ = -1;
  PostProcessorWords(pp, kSpeedMmPerS).AdjustSectionWalk(state, board);
  EXPECT_FLOAT_EQ(state.ScaleX, 2);
  EXPECT_FLOAT_EQ(state.ScaleY, 1);
  EXPECT_FLOAT_EQ(state.ScaleZ, -3);
  EXPECT_FALSE(state.UseArcs);
  EXPECT_FLOAT_EQ(state.ZeroX, 80);
  EXPECT_FLOAT_EQ(state.ZeroY, 60);
  EXPECT_FLOAT_EQ(state.ZeroZ, 1.6f);

  const std::pair<int, std::pair<float, float>> zeros[] = {
      {kOriginCentre, {40, 30}}, {kOriginCentreWest, {0, 30}}, {kOriginCentreSouth, {40, 0}},
      {kOriginRedCross, {7, 8}}, {kOriginRedPoint, {0, 0}},    {kOriginNorthWest, {0, 60}}};
  for (const auto& [choice, point] : zeros) {
    pp.OriginXY = choice;
    float x = -1, y = -1, z = -1;
    PostProcessorZeroPoint(pp, board, x, y, z);
    EXPECT_FLOAT_EQ(x, point.first) << choice;
    EXPECT_FLOAT_EQ(y, point.second) << choice;
  }
}

}  // namespace
}  // namespace isolith
