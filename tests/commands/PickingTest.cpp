// The mouse on the board without a screen: which item each pending command picks, the hint of
// the hover item, the context menu's rows, and the rubber rectangles.
#include "commands/Picking.h"

#include <gtest/gtest.h>

#include "commands/Commands.h"
#include "commands/DisplayList.h"
#include "commands/MouseInput.h"
#include "commands/PopupMenu.h"
#include "core/board/BoardOps.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

struct World {
  test::FakePlatform fake;
  Application app{fake};
  Board& b = app.board;
  TPad *padA, *padB, *onTrack;
  TTrack* track;
  TDrill* drill;

  World() {
    InitSettings(app);
    b.CardWidth = 100, b.CardHeight = 70;
    b.PadSizeX[0][1] = b.PadSizeY[0][1] = 2;
    b.TrackWidth[0][2] = 0.5f;
    b.DrillDiameter[3] = 1;
    padA = Pad(10, 10), padB = Pad(11, 10), onTrack = Pad(30, 20);
    track = new TTrack{2, 0, 0, 20, 50, 20};
    b.Tracks[0] = track;
    drill = new TDrill{3, 0, 10, 10};
    b.Drills = drill;
    RepaintBookkeeping(b);
    ResetZoom(b);
    app.view.ClientRect = {0, 0, 1000, 700};
    FitView(app.view, b, true);
  }
  TPad* Pad(float x, float y) {
    TPad* p = new TPad{1, 0, x, y};
    TPad* tail = nullptr;
    AppendTo(b.Pads[0], tail, p);
    return p;
  }
  int Px(double x) const { return WorldToScreenX(app.view, b, x); }
  int Py(double y) const { return WorldToScreenY(app.view, b, y); }
  void Move(double x, double y) { UpdateHover(app, Px(x), Py(y)); }
};

TEST(Picking, EachPendingCommandPicksItsItemWithTheFirstAmongEquals) {
  struct Case {
    int pending, layer;
    double x, y;
    const char* want;  // "padA", "padB", "onTrack", "track", "drill", "hole1" or "" for nothing
  } cases[] = {
      {0, 0, 10.6, 10, "padB"},    // nearest centre
      {0, 0, 40, 20.45, "track"},  // the full width from the axis
      {0, 0, 40, 20.55, ""},
      {0, 0, 30, 20, "onTrack"},    // a pad on a track wins
      {0, 4, 10.4, 10.4, "drill"},  // in the box of its diameter
      {0, 4, 10.6, 10, ""},
      {cmd::DisablePad, 0, 10.2, 10, "padA"},
      {cmd::DisableTrack, 0, 40, 20, "track"},
      {cmd::EnableTrack, 0, 40, 20, ""},  // only disabled tracks
      {cmd::DefineCopperPlane, 0, 40, 20, "track"},
      {cmd::DisableCopperPlane, 0, 40, 20, ""},
      {cmd::AdjustOnReference, 4, 10, 10, "drill"},
      {cmd::DeleteDrill, 0, 10, 10, "drill"},
      {cmd::Origin, 0, 60, 60, "hole1"},  // no pad there: the centering hole
      {cmd::ZoomIn, 0, 10, 10, ""},       // a rectangle command picks nothing
  };
  for (const Case& c : cases) {
    World w;
    w.b.CentreHole1X = 60, w.b.CentreHole1Y = 60;
    w.b.ActiveLayer = c.layer;
    w.b.PendingCommand = c.pending;
    w.Move(c.x, c.y);
    std::string got = w.b.HoverPad == w.padA      ? "padA"
                      : w.b.HoverPad == w.padB    ? "padB"
                      : w.b.HoverPad == w.onTrack ? "onTrack"
                      : w.b.HoverTrack            ? "track"
                      : w.b.HoverDrill            ? "drill"
                      : w.b.HoverCentreHole == 1  ? "hole1"
                                                  : "";
    EXPECT_EQ(got, c.want) << "pending " << c.pending << " at " << c.x << ", " << c.y;
  }
  // A pad pointed at with nothing pending shows its net, the track it stands on with it; with a
  // command pending only the pad itself.
  for (const int pending : {0, cmd::DisablePad}) {
    World n;
    n.b.PendingCommand = pending;
    n.app.settings.BoardConnect1 = 0x123456;  // apart from the selection's colour
    n.Move(30, 20);
    ASSERT_EQ(n.b.HoverPad, n.onTrack);
    DisplayList list;
    BuildDisplayList(n.app, kRepaintFull, false, list);
    int net = 0;
    for (const DrawItem& item : list.items) net += item.colour == n.app.settings.BoardConnect1;
    EXPECT_EQ(net > 0, pending == 0) << pending;
    EXPECT_EQ(n.track->flags & kVisited, 0) << "the net's marks are cleared again";
  }
  // Equal distances: the first in the list.
  World w;
  EXPECT_EQ(PickPad(w.b, 0, 10.5, 10), w.padA);
  // Nothing is picked in the final rendering.
  w.b.FinalRendering = true;
  w.Move(10, 10);
  EXPECT_EQ(w.b.HoverPad, nullptr);
}

TEST(Picking, HintsAndContextMenuRowsFollowTheHoverItems) {
  World w;
  w.b.OriginX = 1;
  w.Move(10.2, 10);
  EXPECT_EQ(HoverHint(w.app),
            "Pad  \xC3\x98 2.00  /  Drill \xC3\x98 1.00\nPosition  X9.00 / Y10.00");
  w.Move(40, 20);
  EXPECT_EQ(HoverHint(w.app),
            "Track  \xC3\x98 0.50\nPosition  X-1.00 / Y20.00  ---  X49.00 / Y20.00");

  // A pad on a track: both kinds, the pad's rows first, a line between.
  w.b.HoverPad = w.onTrack;
  w.b.HoverTrack = w.track;
  std::vector<int> ids;
  for (const PopupRow& r : PopupRows(w.app)) ids.push_back(r.id);
  EXPECT_EQ(ids, (std::vector<int>{12600, 12601, 12602, 0,     12603, 12604, 12605, 0,     12606,
                                   12607, 0,     12615, 12619, 12623, 0,     12612, 0,     12613,
                                   12614, 0,     12608, 12609, 12610, 12611, 0,     12616, 12620,
                                   12624, 0,     12617, 12621, 12625, 0,     12600}));
  const auto enabled = [&w](int id) {
    for (const PopupRow& r : PopupRows(w.app))
      if (r.id == id) return r.enabled;
    return false;
  };
  EXPECT_TRUE(enabled(cmd::DefineAsCopperPlane));
  EXPECT_FALSE(enabled(cmd::DisableThisCopperPlane));
  w.track->flags |= kTrackCopperPlane;
  EXPECT_FALSE(enabled(cmd::DefineAsCopperPlane));
  EXPECT_TRUE(enabled(cmd::DisableThisCopperPlane));
  // The rows act on the hover item: the origin and the reference pad.
  w.b.HoverTrack = nullptr;
  EXPECT_TRUE(RunCommand(w.app, cmd::SetAsOrigin));
  EXPECT_EQ(w.b.OriginX, 30);
  EXPECT_EQ(w.b.OriginY, 20);
  w.b.HoverPad = w.padB;
  EXPECT_TRUE(RunCommand(w.app, cmd::SetAsReferencePad));
  EXPECT_EQ(w.b.RefPad, w.padB);
  ClearHover(w.b);
  EXPECT_TRUE(PopupRows(w.app).empty());
}

TEST(Picking, RubberRectanglesZoomDisableAndCancel) {
  World w;
  MouseState m;
  const auto drag = [&](double x1, double y1, double x2, double y2, bool rightFirst = false) {
    LeftPressed(w.app, m, w.Px(x1), w.Py(y1), false);
    MouseMoved(w.app, m, w.Px(x2), w.Py(y2), true);
    if (rightFirst) RightPressed(w.app, m, w.Px(x2), w.Py(y2));
    LeftReleased(w.app, m, w.Px(x2), w.Py(y2), false);
  };
  // A zoom box of 1 mm grows to 12.7 mm round its centre, and the command ends.
  w.b.PendingCommand = cmd::ZoomIn;
  drag(20, 20, 21, 21);
  EXPECT_NEAR(w.b.ViewRight - w.b.ViewLeft, kMinimumZoom, 1e-4);
  EXPECT_NEAR(w.b.ViewLeft + w.b.ViewRight, 41, 0.2);  // to the pixel
  EXPECT_EQ(w.b.PendingCommand, 0);
  EXPECT_EQ(w.b.ZoomDepth, 1);

  // A disable zone takes the pads inside; the pick stays for the next rectangle.
  World z;
  MouseState n;
  m = n;
  z.b.PendingCommand = cmd::DisableZone;
  LeftPressed(z.app, m, z.Px(5), z.Py(5), false);
  MouseMoved(z.app, m, z.Px(12.5), z.Py(15), true);
  PixelRect r;
  uint32_t colour = 0;
  ASSERT_TRUE(RubberRectangle(z.app, m, r, colour));
  EXPECT_EQ(colour, z.app.settings.DisableSelect);
  LeftReleased(z.app, m, z.Px(12.5), z.Py(15), false);
  EXPECT_TRUE(z.padA->flags & kPadDisabled);
  EXPECT_TRUE(z.padB->flags & kPadDisabled);
  EXPECT_FALSE(z.onTrack->flags & kPadDisabled);
  EXPECT_EQ(z.b.PendingCommand, cmd::DisableZone);

  // A right click mid-drag cancels: no rectangle is kept and nothing changes.
  z.b.PendingCommand = cmd::DeleteZone;
  LeftPressed(z.app, m, z.Px(25), z.Py(15), false);
  MouseMoved(z.app, m, z.Px(35), z.Py(25), true);
  RightPressed(z.app, m, z.Px(35), z.Py(25));
  EXPECT_FALSE(RubberRectangle(z.app, m, r, colour));
  LeftReleased(z.app, m, z.Px(35), z.Py(25), false);
  EXPECT_NE(z.b.Pads[0]->next->next, nullptr);  // the pad on the track still stands
  // A rectangle begun outside the board beeps.
  z.b.PendingCommand = cmd::DisableZone;
  const int beeps = z.fake.beeps;
  LeftPressed(z.app, m, -50, -50, false);
  EXPECT_EQ(z.fake.beeps, beeps + 1);
  EXPECT_EQ(m.DragActive, 0);
}

TEST(Picking, TheCursorFollowsTheDragThePendingCommandAndTheZoom) {
  struct Case {
    int pending;
    int zoomDepth;
    uint32_t background;
    double x, y;  // where the mouse stands; (-50, -50) mm is off the board
    bool panning;
    BoardCursor cursor;
  };
  const Case cases[] = {
      {0, 0, 0x008000, 70, 50, false, BoardCursor::Arrow},
      {0, 1, 0x008000, 70, 50, false, BoardCursor::OpenHand},
      {0, 1, 0x008000, 10, 10, false, BoardCursor::Arrow},  // over a pad
      {0, 1, 0x008000, 70, 50, true, BoardCursor::ClosedHand},
      {cmd::ZoomIn, 0, 0xFFFFFF, 70, 50, false, BoardCursor::ZoomOnWhite},
      {cmd::ZoomIn, 0, 0x008000, 70, 50, false, BoardCursor::ZoomOnColour},
      {cmd::ZoomIn, 0, 0x008000, -50, -50, false, BoardCursor::Arrow},
      {12214, 1, 0x008000, 70, 50, false, BoardCursor::PickRectangle},
      {12104, 0, 0x008000, 70, 50, false, BoardCursor::PickPoint},
      {12123, 0, 0x008000, 70, 50, false, BoardCursor::PickPoint},
      {12203, 0, 0x008000, 10, 10, false, BoardCursor::PickItem},
      {12122, 0, 0x008000, 70, 50, false, BoardCursor::PickItem},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.pending << " at " << c.x << ", " << c.y);
    World w;
    w.app.settings.BoardBackground = c.background;
    w.b.ZoomDepth = c.zoomDepth;
    w.Move(c.x, c.y);
    w.b.PendingCommand = c.pending;
    MouseState m;
    m.Panning = c.panning;
    EXPECT_EQ(CursorAt(w.app, m, w.Px(c.x), w.Py(c.y)), c.cursor);
  }
}

}  // namespace
}  // namespace isolith
