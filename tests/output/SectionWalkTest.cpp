// The section walk: sections in the user's order with their own slot, the zero point on the
// first centering hole, mirrors, the chaining of drills and paths, and the cut-out sides.
#include <gtest/gtest.h>

#include <algorithm>

#include "OutputWorld.h"
#include "WalkTestSupport.h"
#include "output/driver/DrillTools.h"
#include "output/driver/SectionWalk.h"

namespace isolith::test {
namespace {

void SetSections(Settings& s, std::initializer_list<int> codes,
                 std::initializer_list<int> mirrors = {}) {
  s.MultiSequence.fill(0);
  s.MultiMirror.fill(0);
  int i = 0;
  for (int c : codes) s.MultiSequence[i++] = c;
  i = 0;
  for (int m : mirrors) s.MultiMirror[i++] = m;
}

std::string Walk(OutputWorld& w, int format = 9) {
  const std::string path = w.Path("sections.out");
  EXPECT_TRUE(SectionWalk(w.context, path, format));
  return ReadFile(path);
}

TEST(SectionWalk, SectionsInOrderAboutTheFirstCentreHoleWithMirrors) {
  OutputWorld w;
  w.AddTriangle();
  w.settings.PlottingTool = 0;
  w.settings.CuttingTool = 0;
  w.board.CentreHole1X = 5, w.board.CentreHole1Y = 5;
  TCutout* cutout = new TCutout;
  w.board.Cutouts = cutout;
  AddPath(cutout->paths, {{0, 0}, {50, 0}});
  SetSections(w.settings, {1, 10, 18}, {1, 1, 0});
  const std::string text = Walk(w);
  EXPECT_EQ(IsoMoves(text), (std::vector<std::string>{"G00 X0 Y0", "G00 Y5", "G01 X-15",
                                                      "G01 X-10 Y15", "G01 X-5 Y5", "G01 X45"}));
  // Each section is a slot of its own: the same tool is changed to three times.
  std::size_t changes = 0;
  for (std::size_t at = 0; (at = text.find("M06", at)) != std::string::npos; ++at) ++changes;
  EXPECT_EQ(changes, 3u);
  // Machine Z runs the other way in the section walk: depths are negative in ISO.
  EXPECT_NE(text.find("G01 F60 Z-0.1"), std::string::npos);
}

TEST(SectionWalk, PlotterPensAreSectionRows) {
  OutputWorld w;
  w.AddTriangle();
  SetSections(w.settings, {0, 0, 10});
  w.settings.MachineScaleXY = 0.5f;
  const std::string text = Walk(w, 2);
  EXPECT_EQ(text.rfind("IN;PA;PU;SP3;VS20;PU200,200;", 0), 0u) << text;
}

void AddChainDrills(OutputWorld& w) {
  w.board.DrillDiameter[1] = 0.8f;
  w.board.DrillDiameter[2] = 1.0f;
  w.drills.rows[0] = {0.8f, 1};
  w.drills.rows[1] = {1.0f, 2};
  ResetTool(w.tools[1]);
  w.tools[1].Diameter = 0.8f;
  ResetTool(w.tools[2]);
  w.tools[2].Diameter = 0.7f;  // thinner than tool 2's holes need: sorted first
  w.settings.BoringDrills = false;
  AddDrill(w.board, 0, 0, 1);
  AddDrill(w.board, 10, 0, 1);
  AddDrill(w.board, 20, 0, 1);
  AddDrill(w.board, -12, 0, 1);
  AddDrill(w.board, 30, 30, 2);
}

TEST(SectionWalk, DrillsChainFromHoleToHole) {
  OutputWorld w;
  AddChainDrills(w);
  w.settings.DrillingMode = 1;
  w.settings.DrillingTool = 1;
  SetSections(w.settings, {2});
  // From (20, 0) the hole of the other row is nearer than (-12, 0): one tool drills all.
  EXPECT_EQ(IsoMoves(Walk(w)),
            (std::vector<std::string>{"G00 X10", "G00 X20", "G00 X30 Y30", "G00 X-12 Y0"}));
  for (TDrill* d = w.board.Drills; d; d = d->next) EXPECT_FALSE(TestFlags(*d, kVisited));
}

TEST(SectionWalk, DrillSectionsFollowTheSortedToolSet) {
  OutputWorld w;
  AddChainDrills(w);
  w.settings.DrillingMode = 2;
  BuildOutputDrillTools(w.drills, w.tools);
  EXPECT_EQ(w.drills.outputTools[0], 2);
  EXPECT_EQ(w.drills.outputTools[1], 1);
  EXPECT_EQ(w.drills.outputTools[2], -1);
  SetSections(w.settings, {3, 2});
  const std::string text = Walk(w);
  EXPECT_EQ(IsoMoves(text),
            (std::vector<std::string>{"G00 X10", "G00 X20", "G00 X-12", "G00 X30 Y30"}));
  EXPECT_LT(text.find("T2 M06"), text.find("T3 M06"));
}

TEST(SectionWalk, PathsChainByEitherEndAndAreTurnedBackAfterwards) {
  OutputWorld w;
  AddPath(w.board.Contours[0], {{0, 0}, {10, 0}});
  TPolygon* middle = AddPath(w.board.Contours[0], {{30, 0}, {11, 0}});
  AddPath(w.board.Contours[0], {{31, 0}, {40, 0}});
  w.settings.HatchingTool = 0;
  AddPath(w.board.Hatches[1], {{0, 5}, {10, 5}});
  SetSections(w.settings, {10, 15});
  EXPECT_EQ(IsoMoves(Walk(w)), (std::vector<std::string>{"G01 X10", "G00 X11", "G01 X30", "G00 X31",
                                                         "G01 X40", "G00 Y5", "G01 X10"}));
  EXPECT_EQ(middle->first->x, 30);
  for (TPolygon* p = w.board.Contours[0]; p; p = p->next) EXPECT_FALSE(TestFlags(*p, kVisited));
  // A hatching section clears the contour marks of its layer, not its own: kept as it was.
  EXPECT_TRUE(TestFlags(*w.board.Hatches[1], kVisited));
}

TEST(SectionWalk, InsideCutsBeforeOutsideCuts) {
  OutputWorld w;
  w.settings.CuttingTool = 0;
  TCutout* outside = new TCutout;
  TCutout* inside = new TCutout;
  inside->side = 1;
  outside->next = inside;
  w.board.Cutouts = outside;
  AddPath(outside->paths, {{1, 1}, {10, 1}});
  AddPath(inside->paths, {{20, 2}, {30, 2}});
  SetSections(w.settings, {18});
  EXPECT_EQ(IsoMoves(Walk(w)),
            (std::vector<std::string>{"G00 X20 Y2", "G01 X30", "G00 X1 Y1", "G01 X10"}));
}

TEST(SectionWalk, AFileThatCannotBeCreatedIsReported) {
  OutputWorld w;
  w.AddTriangle();
  SetSections(w.settings, {10});
  EXPECT_FALSE(SectionWalk(w.context, "/dev/full/sections.iso", 9));
}

}  // namespace
}  // namespace isolith::test
