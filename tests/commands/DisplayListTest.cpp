#include "commands/DisplayList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "TestBoards.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddDrill;
using test::AddPad;
using test::AddTrack;

TPolygon* Path(std::initializer_list<std::pair<float, float>> points) {
  auto* path = new TPolygon;
  TXY** next = &path->first;
  for (auto [x, y] : points) {
    *next = new TXY{x, y, 0, nullptr};
    next = &(*next)->next;
  }
  return path;
}

// A job with something of every kind: pads of each state on layer 0, tracks of each kind, a
// track on layer 1, a contour and a hatch, two drills, a card contour and centering holes.
struct World {
  test::FakePlatform fake;
  Application app{fake};
  Board& b = app.board;
  Settings& s = app.settings;
  World() {
    InitSettings(app);
    b.PadShape[0][1] = kShapeCircle;
    b.PadSizeX[0][1] = 1.6f;
    b.PadSizeY[0][1] = 1.0f;  // a circle's Y size that drawing corrects
    b.PadShape[0][2] = kShapeRectangle;
    b.PadSizeX[0][2] = b.PadSizeY[0][2] = 2;
    AddPad(b, 0, 10, 10, 1);
    AddPad(b, 0, 20, 10, 2)->flags = kPadDisabled;
    AddPad(b, 0, 30, 10, 2)->flags = kPadThermal;
    AddTrack(b, 0, 10, 10, 20, 10, 1);
    AddTrack(b, 0, 10, 20, 20, 20, 1)->flags = kTrackEngraved;
    AddTrack(b, 0, 10, 30, 20, 30, 1)->flags = kTrackCopperPlane;
    AddTrack(b, 1, 40, 40, 50, 40, 1);
    b.Contours[0] = Path({{9, 9}, {11, 9}, {11, 11}, {9, 9}});
    b.Hatches[0] = Path({{5, 5}, {6, 5}});
    AddDrill(b, 10, 10, 3);
    AddDrill(b, 20, 10, 3)->flags = kDrillDisabled;
    test::AddCutout(b)->paths = Path({{4, 4}, {21, 4}});
    b.CentreHole1X = 2;
    b.CentreHole1Y = 2;
    b.CentreHole2X = 2;  // the same X: holes 1 and 9 only
    b.CentreHole2Y = 60;
    app.view.ClientRect = {0, 0, 808, 600};
  }
  DisplayList Build(int depth = kRepaintFull) {
    DisplayList list;
    BuildDisplayList(app, depth, true, list);
    return list;
  }
};

// The steps of a list in the order they come, each once.
std::vector<DrawStep> Steps(const DisplayList& list) {
  std::vector<DrawStep> steps;
  for (const DrawItem& item : list.items)
    if (steps.empty() || steps.back() != item.step) steps.push_back(item.step);
  return steps;
}

std::set<uint32_t> Colours(const DisplayList& list, DrawStep step, DrawShape shape) {
  std::set<uint32_t> colours;
  for (const DrawItem& item : list.items)
    if (item.step == step && item.shape == shape) colours.insert(item.colour);
  return colours;
}

int Count(const DisplayList& list, DrawStep step, DrawShape shape) {
  int n = 0;
  for (const DrawItem& item : list.items) n += item.step == step && item.shape == shape;
  return n;
}

TEST(DisplayList, WorkingViewDrawsInOrderAndSetsTheMarks) {
  World w;
  const DisplayList list = w.Build();
  using S = DrawStep;
  EXPECT_EQ(Steps(list), (std::vector<S>{S::Client, S::Card, S::Grid, S::CardContours,
                                         S::OtherLayers, S::ActiveTracks, S::ActivePads, S::Hatches,
                                         S::Contours, S::Drills, S::Origin, S::CentreHoles}));
  EXPECT_EQ(list.items.front().shape, DrawShape::FillRect);
  EXPECT_EQ(list.items.front().colour, kColourAuto);
  EXPECT_EQ(list.items.back().shape, DrawShape::Unclip);
  const Settings& s = w.s;
  const struct {
    DrawStep step;
    DrawShape shape;
    std::set<uint32_t> colours;
  } rows[] = {
      {S::Card, DrawShape::FillRect, {s.BoardBackground}},
      {S::Card, DrawShape::FrameRect, {s.BoardBorder}},
      {S::Grid, DrawShape::Points, {s.BoardGrid}},
      {S::CardContours, DrawShape::Polyline, {s.BoardDrill}},
      {S::OtherLayers, DrawShape::Polyline, {s.BoardTrace2}},
      {S::ActiveTracks, DrawShape::Polyline, {s.BoardTrace1, s.BoardThinLines, s.BoardTrace3}},
      // The thermal pad's bars are the card's colour.
      {S::ActivePads, DrawShape::FillRect, {s.BoardTrace1, s.BoardTrace3, s.BoardBackground}},
      {S::Hatches, DrawShape::Polyline, {s.BoardHatch}},
      {S::Contours, DrawShape::Polyline, {s.BoardContour}},
      {S::Drills, DrawShape::Disc, {s.BoardDrill, s.BoardTrace3}},
      {S::Origin, DrawShape::Circle, {s.BoardBackground, s.BoardOrigin}},
      {S::CentreHoles, DrawShape::Circle, {s.BoardSelect}},
      {S::CentreHoles, DrawShape::Disc, {s.BoardDrill}},
  };
  for (const auto& r : rows)
    EXPECT_EQ(Colours(list, r.step, r.shape), r.colours) << static_cast<int>(r.step);
  EXPECT_EQ(Count(list, S::CentreHoles, DrawShape::Disc), 2);
  EXPECT_EQ(Count(list, S::Grid, DrawShape::Points), 1);
  // Paths are one pixel wide in the working view; the card outline three.
  for (const DrawItem& item : list.items)
    if (item.step == S::Hatches || item.step == S::Contours) {
      EXPECT_EQ(item.width, 1);
    }
  EXPECT_EQ(w.b.PadSizeY[0][1], 1.6f);
  EXPECT_TRUE(w.app.drawn.disabledPad && w.app.drawn.disabledTrack == false &&
              w.app.drawn.copperPlane && w.app.drawn.engravedTrack && w.app.drawn.disabledDrill);

  // A repaint of the paths only leaves the card and traces (and their marks) as they are.
  const DisplayList paths = w.Build(kRepaintPaths);
  EXPECT_EQ(Steps(paths), (std::vector<S>{S::Client, S::Hatches, S::Contours, S::Drills, S::Origin,
                                          S::CentreHoles}));
  EXPECT_EQ(paths.items.front().shape, DrawShape::Clip);
  EXPECT_TRUE(w.app.drawn.disabledPad);

  // The origin 1 mm off the card has no cross; the grid can be hidden.
  w.b.OriginX = -1;
  w.s.ShowGrid = false;
  const std::vector<S> steps = Steps(w.Build());
  EXPECT_EQ(std::count(steps.begin(), steps.end(), S::Origin), 0);
  EXPECT_EQ(std::count(steps.begin(), steps.end(), S::Grid), 0);
}

TEST(DisplayList, FinalRenderingShowsWhatTheToolsLeave) {
  World w;
  w.b.FinalRendering = true;
  w.b.PendingCommand = cmd::ReferencePad;
  const DisplayList list = w.Build(kRepaintPaths);  // taken as a full repaint
  using S = DrawStep;
  EXPECT_EQ(Steps(list), (std::vector<S>{S::Client, S::Card, S::Hatches, S::Contours, S::Drills,
                                         S::FinalCut, S::CentreHoles}));
  EXPECT_EQ(w.b.PendingCommand, 0);
  const Settings& s = w.s;
  EXPECT_EQ(Colours(list, S::Card, DrawShape::FillRect), std::set<uint32_t>{s.BoardFinalBg});
  EXPECT_EQ(Colours(list, S::Contours, DrawShape::Polyline), std::set<uint32_t>{s.BoardFinalFg});
  EXPECT_EQ(Colours(list, S::Hatches, DrawShape::Polyline), std::set<uint32_t>{s.BoardFinalFg});
  EXPECT_EQ(Colours(list, S::FinalCut, DrawShape::Polyline), std::set<uint32_t>{s.BoardFinalHole});
  // The disabled drill is left out, the centering holes lose their ring.
  EXPECT_EQ(Count(list, S::Drills, DrawShape::Disc), 1);
  EXPECT_EQ(Count(list, S::CentreHoles, DrawShape::Circle), 0);
  // No tool chosen: 0.5 mm paths, at 0.125 mm per pixel 4 pixels and one more; the card's cut
  // at twice the cutter's width.
  ASSERT_FLOAT_EQ(w.app.view.PixelSize, 0.125f);
  for (const DrawItem& item : list.items) {
    if (item.step == S::Contours || item.step == S::Hatches) {
      EXPECT_EQ(item.width, 5);
    }
    if (item.step == S::FinalCut && item.shape == DrawShape::Polyline) {
      EXPECT_EQ(item.width, 8);
    }
  }
  EXPECT_FALSE(w.app.drawn.disabledPad || w.app.drawn.disabledDrill);
}

}  // namespace
}  // namespace isolith
