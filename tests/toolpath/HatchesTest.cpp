#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/board/BoardOps.h"
#include "params/Settings.h"
#include "support/FakePlatform.h"
#include "toolpath/Contours.h"
#include "toolpath/HatchForm.h"
#include "toolpath/Hatches.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {
namespace {

struct Piece {
  float x1, y1, x2, y2;
};

void RoundPad(Board& b, float x, float y, float diameter, uint8_t flags = 0) {
  b.PadShape[0][10] = kShapeCircle;
  b.PadSizeX[0][10] = b.PadSizeY[0][10] = diameter;
  TPad* tail = nullptr;
  AppendTo(b.Pads[0], tail, new TPad{10, flags, x, y, nullptr});
}

// A board whose layer 0 has contours, so that hatches may be calculated on it.
void WithContours(Board& b, int layer = 0) {
  auto* p = new TPolygon;
  AppendPoint(*p, 0, 0);
  AppendPoint(*p, 1, 0);
  p->next = b.Contours[layer];
  b.Contours[layer] = p;
}

HatchSettings Hatching(float pitch, float keepOut, bool link) {
  HatchSettings s;
  s.pitch = pitch;
  s.keepOut = keepOut;
  s.link = link;
  return s;
}

HatchSession Zone(float x1, float y1, float x2, float y2, int mode = kHatchWholeBoard) {
  HatchSession z;
  z.zone = mode;
  z.rectangle = {x1, y1, x2, y2};
  return z;
}

// Every edge of every hatch path, in list order.
std::vector<Piece> Edges(const TPolygon* list) {
  std::vector<Piece> out;
  for (; list; list = list->next)
    for (const TXY* v = list->first; v && v->next; v = v->next)
      out.push_back({v->x, v->y, v->next->x, v->next->y});
  return out;
}

std::vector<Piece> Pieces(const TSeg* list) {
  std::vector<Piece> out;
  for (; list; list = list->next) out.push_back({list->x1, list->y1, list->x2, list->y2});
  return out;
}

// A closed square keep-out shape.
TPolygon* Square(float x1, float y1, float x2, float y2, TPolygon* next = nullptr) {
  auto* p = new TPolygon;
  AppendPoint(*p, x1, y1);
  AppendPoint(*p, x2, y1);
  AppendPoint(*p, x2, y2);
  AppendPoint(*p, x1, y2);
  AppendPoint(*p, x1, y1);
  p->next = next;
  return p;
}

// Whether some keep-out edge crosses the horizontal line at y within a ten-thousandth of x.
bool OnOutline(const TPolygon* keepOut, float x, float y) {
  for (; keepOut; keepOut = keepOut->next)
    for (const TXY* v = keepOut->first; v && v->next; v = v->next) {
      float ix, iy;
      if (IntersectSegments(-100, y, 100, y, v->x, v->y, v->next->x, v->next->y, ix, iy, 0.01f) ==
              kOnBoth &&
          std::fabs(ix - x) < 1e-4f)
        return true;
    }
  return false;
}

TEST(Hatches, LinesStopShortOfPadsByTheKeepOutAndHalfAPitch) {
  Board b;
  b.CardWidth = b.CardHeight = 20;
  for (float x : {5.0f, 15.0f})
    for (float y : {5.0f, 15.0f}) RoundPad(b, x, y, 2.0f);
  ContourSettings cs;
  cs.distance = 0.4f;
  CalculateContours(b, 0, cs, nullptr);
  ASSERT_NE(b.Contours[0], nullptr);

  test::FakePlatform platform;
  CalculateHatches(b, 0, Hatching(0.5f, 0.4f, false), Zone(0, 0, 20, 20), &platform);
  EXPECT_EQ(platform.statusTexts,
            (std::vector<std::string>{"Building draft hatches...", "Calculating intersections...",
                                      "Removing bad segments...", "Final build-up..."}));
  // Every end that a pad cut lies half a pitch off the keep-out outline (the pad's draft at the
  // keep-out offset, 1.2 from the centre): moved back by 0.25 towards its pad it is on it.
  TPolygon* keepOut = BuildKeepOut(b, 0, 0.4f, false);
  int stopsAtPads = 0;
  for (const Piece& e : Edges(b.Hatches[0])) {
    ASSERT_EQ(e.y1, e.y2);  // unlinked: only scan pieces
    for (float x : {e.x1, e.x2}) {
      if (x == 0 || x == 20) continue;  // ends on the card's edges stay there
      const float cx = x < 10 ? 5.0f : 15.0f;
      const float back = x < cx ? x + 0.25f : x - 0.25f;
      EXPECT_TRUE(OnOutline(keepOut, back, e.y1)) << x << "," << e.y1;
      EXPECT_EQ(ListContainsPoint(keepOut, x, e.y1), -1);
      ++stopsAtPads;
    }
  }
  FreePolygons(keepOut);
  EXPECT_EQ(stopsAtPads, 40);  // five lines across each row of pads, four cut ends on each
}

TEST(Hatches, FreeLinesArePulledBackOnlyInsideTheCard) {
  Board b;
  b.CardWidth = 20;
  WithContours(b);
  // Inside the card: both ends come in by half a pitch; the second line runs back.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, false), Zone(8, 1.4f, 2, 1), nullptr);
  std::vector<Piece> e = Edges(b.Hatches[0]);
  ASSERT_EQ(e.size(), 1u);  // y = 1 only: 1.5 lies above 1.4 + 0.001
  EXPECT_FLOAT_EQ(e[0].x1, 2.25f);
  EXPECT_FLOAT_EQ(e[0].x2, 7.75f);

  // The top line is taken up to a thousandth above the zone.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, false), Zone(2, 1, 8, 1.4995f), nullptr);
  EXPECT_EQ(Edges(b.Hatches[0]).size(), 2u);

  // Ends on or beyond the card's edges stay, whatever the zone.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, false), Zone(-1, 1, 20, 1.5f), nullptr);
  e = Edges(b.Hatches[0]);
  ASSERT_EQ(e.size(), 2u);  // zone mode 0 replaced the first result
  EXPECT_FLOAT_EQ(e[0].x1, -1);
  EXPECT_FLOAT_EQ(e[0].x2, 20);
  EXPECT_FLOAT_EQ(e[1].x1, 20);  // the second line runs back

  // A piece of 0.2 or less goes, even in free space; a little more stays.
  CalculateHatches(b, 0, Hatching(0.05f, 0.3f, false), Zone(10, 1, 10.2f, 1), nullptr);
  EXPECT_EQ(b.Hatches[0], nullptr);
  CalculateHatches(b, 0, Hatching(0.05f, 0.3f, false), Zone(10, 1, 10.25f, 1), nullptr);
  ASSERT_EQ(Edges(b.Hatches[0]).size(), 1u);
  EXPECT_FLOAT_EQ(Edges(b.Hatches[0])[0].x1, 10.025f);

  // No pitch or no contours: nothing at all.
  CalculateHatches(b, 0, Hatching(0.009f, 0.3f, false), Zone(0, 0, 5, 5), nullptr);
  EXPECT_EQ(CountOf(b.Hatches[0]), 1);
  CalculateHatches(b, 1, Hatching(0.5f, 0.3f, false), Zone(0, 0, 5, 5), nullptr);
  EXPECT_EQ(b.Hatches[1], nullptr);
}

TEST(Hatches, ZoneModeTwoAddsAndLinksMakeOneZigzag) {
  Board b;
  b.CardWidth = 20;
  WithContours(b);
  // Linked: the lines of a free zone become one path walked back and forth.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, true), Zone(2, 2, 6, 3.5f), nullptr);
  ASSERT_EQ(CountOf(b.Hatches[0]), 1);
  EXPECT_EQ(CountPoints(*b.Hatches[0]), 8);  // four lines, three links
  // A second zone in mode 2 adds its paths behind the first.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, false), Zone(10, 2, 14, 2.5f, kHatchSelectedZone),
                   nullptr);
  EXPECT_EQ(CountOf(b.Hatches[0]), 3);
  EXPECT_FLOAT_EQ(b.Hatches[0]->first->x, 2.25f);
  // Mode 0 starts again.
  CalculateHatches(b, 0, Hatching(0.5f, 0.3f, false), Zone(10, 2, 14, 2, kHatchWholeBoard),
                   nullptr);
  EXPECT_EQ(CountOf(b.Hatches[0]), 1);
}

TEST(HatchPhases, CrossingsSplitBehindTheParentAndClassification) {
  TPolygon* keepOut = Square(4, -1, 6, 1, Square(10, -1, 12, 1));
  SegmentBuilder lines;
  lines.Add(0, 0, 20, 0);
  lines.Add(20, 1.5f, 0, 1.5f);  // meets nothing
  TSeg* list = lines.Release();
  CrossingPhase(list, keepOut);
  std::vector<Piece> p = Pieces(list);
  ASSERT_EQ(p.size(), 6u);  // the pieces of the first line in order, before the second line
  const float xs[] = {0, 4, 6, 10, 12, 20};
  for (int i = 0; i < 5; ++i) {
    EXPECT_FLOAT_EQ(p[i].x1, xs[i]);
    EXPECT_FLOAT_EQ(p[i].x2, xs[i + 1]);
  }
  list = ClassificationPhase(list, keepOut, 0.5f, 100);
  p = Pieces(list);
  ASSERT_EQ(p.size(), 4u);      // the two pieces inside the squares are gone
  EXPECT_FLOAT_EQ(p[0].x1, 0);  // the card's edge stays
  EXPECT_FLOAT_EQ(p[0].x2, 3.75f);
  EXPECT_FLOAT_EQ(p[1].x1, 6.25f);
  FreeChain(list);
  FreePolygons(keepOut);

  // The middle is tested, then the point halfway from it to the second end.
  auto survives = [](float x1, float x2, TPolygon* shape) {
    TSeg* s = ClassificationPhase(new TSeg{x1, 0, x2, 0, nullptr}, shape, 0.1f, 100);
    FreePolygons(shape);
    bool kept = s != nullptr;
    FreeChain(s);
    return kept;
  };
  EXPECT_TRUE(survives(0, 4, Square(-1, -1, 0.9f, 1)));     // only the first quarter
  EXPECT_FALSE(survives(0, 4, Square(2.5f, -1, 3.5f, 1)));  // the three-quarter point
  EXPECT_FALSE(survives(4, 0, Square(-1, -1, 1.2f, 1)));    // leftwards: x = 1
  EXPECT_FALSE(survives(4, 0, Square(-1, -1, 1, 1)));       // on the edge counts as inside
  EXPECT_TRUE(survives(0, 4, Square(3.2f, -1, 5, 1)));
}

TEST(HatchPhases, LinksGoToTheNearestStartOnePitchUpUnlessBlocked) {
  auto link = [](std::vector<Piece> pieces, TPolygon* keepOut = nullptr) {
    SegmentBuilder b;
    for (const Piece& p : pieces) b.Add(p.x1, p.y1, p.x2, p.y2);
    TSeg* list = b.Release();
    LinkPhase(list, keepOut, 1.0f);
    std::vector<Piece> out = Pieces(list);
    FreeChain(list);
    FreePolygons(keepOut);
    return out;
  };
  // Within 2.01 pitches: linked from the end to the start, directly behind the piece.
  auto p = link({{0, 0, 10, 0}, {12, 1, 20, 1}});
  ASSERT_EQ(p.size(), 3u);
  EXPECT_FLOAT_EQ(p[1].x1, 10);
  EXPECT_FLOAT_EQ(p[1].y1, 0);
  EXPECT_FLOAT_EQ(p[1].x2, 12);
  EXPECT_FLOAT_EQ(p[1].y2, 1);
  EXPECT_EQ(link({{0, 0, 10, 0}, {12.01f, 1, 20, 1}}).size(), 2u);
  // The nearest start wins, a tie keeps the earlier, two pitches up does not count.
  p = link({{0, 0, 10, 0}, {10, 2, 9, 2}, {11.5f, 1, 20, 1}, {10.5f, 1, 20, 1}});
  EXPECT_FLOAT_EQ(p[1].x2, 10.5f);
  p = link({{0, 0, 10, 0}, {11, 1, 20, 1}, {9, 1, 0, 1}});
  EXPECT_FLOAT_EQ(p[1].x2, 11);
  // A link that would cross a keep-out edge is refused.
  EXPECT_EQ(link({{0, 0, 10, 0}, {10, 1, 0, 1}}, Square(9.5f, 0.4f, 10.5f, 0.6f)).size(), 2u);
  EXPECT_EQ(link({{0, 0, 10, 0}, {10, 1, 0, 1}}, Square(11, 0.4f, 12, 0.6f)).size(), 3u);
}

TEST(HatchPhases, KeepOutShapesAndTheirOffset) {
  Board b;
  RoundPad(b, 5, 5, 2.0f, kPadThermal);
  RoundPad(b, 9, 5, 2.0f, kPadDisabled);
  b.TrackWidth[0][3] = 0.5f;
  TTrack* tt = nullptr;
  AppendTo(b.Tracks[0], tt, new TTrack{3, kTrackEngraved, 0, 10, 5, 10, nullptr});
  AppendTo(b.Tracks[0], tt, new TTrack{3, 0, 0, 12, 5, 12, nullptr});
  TPolygon* k = BuildKeepOut(b, 0, 0.4f, false);
  ASSERT_EQ(CountOf(k), 2);  // the thermal pad and the plain track
  // The thermal gaps are bridged: sixteen chords give seventeen vertices, and the gap on the
  // vertical axis is closed by a straight edge just below the ring.
  EXPECT_EQ(CountPoints(*k), 17);
  EXPECT_EQ(ContainsPoint(*k, 5, 6.05f), 1);
  EXPECT_EQ(ContainsPoint(*k, 5, 6.15f), -1);
  EXPECT_EQ(ContainsPoint(*k->next, 2.5f, 12.3f), 1);
  FreePolygons(k);

  // The pitch comes from the hatching depth, the keep-out from the contour depth and margin.
  Settings st;
  ToolTable tools{};
  ResetTool(tools[2]);
  tools[2].Diameter = 3;
  tools[2].Profile = kProfileConical;
  tools[2].ConicalAngle = static_cast<float>(90 * kDegreesToRadians);  // cuts twice its depth
  st.HatchingTool = 2;
  st.HatchingDepth = 0.2f;
  st.HatchingMargin = 0.05f;
  st.MillingDepth = 0.1f;
  st.MillingMargin = 0.1f;
  HatchSettings s = HatchSettingsFrom(st, tools);
  EXPECT_NEAR(s.pitch, 0.25f, 1e-5);
  EXPECT_NEAR(s.keepOut, 0.3f, 1e-5);
  st.HatchingTool = -1;
  s = HatchSettingsFrom(st, tools);
  EXPECT_EQ(s.pitch, 0);
  EXPECT_EQ(s.keepOut, 0.25f);
}

TEST(HatchCommand, RefusalResetZonesToolsAndDelete) {
  Board b;
  b.CardWidth = 30;
  b.CardHeight = 20;
  Settings st;
  ToolTable tools{};
  ResetTool(tools[0]);
  tools[0].Diameter = 0.8f;
  st.MillingTool = st.HatchingTool = 0;
  HatchSession session;
  test::FakePlatform platform;
  int activeToolsRuns = 0;
  auto run = [&] {
    return BeginHatchCommand(b, session, st, tools, platform, [&] { ++activeToolsRuns; });
  };

  b.PendingCommand = 12111;
  EXPECT_EQ(run(), HatchCommandResult::Refused);  // no contours
  EXPECT_EQ(platform.beeps, 1);
  EXPECT_EQ(b.PendingCommand, 0);

  // Mode 0: the card; the dialog shows the full width as the interval, not the pitch.
  WithContours(b);
  WithContours(b, 1);
  platform.dialogs["TDialogHatch"] = [](DialogForm& f) {
    auto& d = static_cast<TDialogHatch&>(f);
    EXPECT_FLOAT_EQ(*d.interval, 0.8f);
    EXPECT_FALSE(d.SelectZone(kHatchCardContour));  // no card contour
    d.allLayers = true;
    return true;
  };
  EXPECT_EQ(run(), HatchCommandResult::Calculate);
  EXPECT_TRUE(session.allLayers);
  EXPECT_FLOAT_EQ(session.rectangle.xmax, 30);
  EXPECT_FLOAT_EQ(session.rectangle.ymax, 20);
  CalculateHatchesOnLayers(b, Hatching(0.5f, 0.3f, true), session, &platform);
  ASSERT_NE(b.Hatches[1], nullptr);
  EXPECT_EQ(b.ActiveLayer, 0);

  // A second command in mode 0 deletes them, on all layers when asked.
  EXPECT_EQ(run(), HatchCommandResult::Reset);
  EXPECT_EQ(b.Hatches[0], nullptr);
  EXPECT_EQ(b.Hatches[1], nullptr);

  // Mode 2 keeps them and waits for rectangles, each one adding to the chosen layers.
  CalculateHatchesOnLayers(b, Hatching(0.5f, 0.3f, true), session, &platform);
  session.zone = kHatchSelectedZone;
  session.allLayers = false;
  platform.dialogs.clear();
  EXPECT_EQ(run(), HatchCommandResult::PickZone);
  const int before = CountOf(b.Hatches[0]);
  HatchSelectedZone(b, session, Hatching(0.5f, 0.3f, false), {12, 3, 5, 1}, &platform);
  EXPECT_EQ(CountOf(b.Hatches[0]), before + 5);  // y = 1 to 3, each line a path
  EXPECT_EQ(CountOf(b.Hatches[1]), 1);           // not this layer

  // "&Delete hatches": the active layer, then all.
  b.ActiveLayer = 1;
  DeleteHatches(b, false);
  EXPECT_EQ(b.Hatches[1], nullptr);
  EXPECT_NE(b.Hatches[0], nullptr);
  DeleteHatches(b, true);
  EXPECT_EQ(b.Hatches[0], nullptr);
  EXPECT_NE(b.Contours[0], nullptr);
  b.ActiveLayer = 0;

  // Mode 1 falls back to 0 without a card contour, and takes the outlines' box with one.
  session.zone = kHatchCardContour;
  EXPECT_EQ(run(), HatchCommandResult::Calculate);
  EXPECT_EQ(session.zone, kHatchWholeBoard);
  b.Cutouts = new TCutout;
  b.Cutouts->outline = Square(3, 4, 13, 9);
  session.zone = kHatchCardContour;
  EXPECT_EQ(run(), HatchCommandResult::Calculate);
  EXPECT_FLOAT_EQ(session.rectangle.xmin, 3);
  EXPECT_FLOAT_EQ(session.rectangle.ymax, 9);
  EXPECT_EQ(activeToolsRuns, 0);

  // Unusable tools: "Active tools" once, then a silent stop. Cancel changes nothing.
  st.HatchingTool = 5;  // an empty slot
  EXPECT_EQ(run(), HatchCommandResult::Stopped);
  EXPECT_EQ(activeToolsRuns, 1);
  st.HatchingTool = 0;
  platform.dialogs["TDialogHatch"] = [](DialogForm& f) {
    static_cast<TDialogHatch&>(f).link = false;
    return false;
  };
  EXPECT_EQ(run(), HatchCommandResult::Stopped);
  EXPECT_TRUE(st.HatchingLink);
}

}  // namespace
}  // namespace isolith
