#include "commands/LayerCommands.h"

#include <gtest/gtest.h>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddCutout;
using test::AddDrill;
using test::AddPad;
using test::AddTrack;

TEST(LayerSwitching, CycleSkipsEmptyLayers) {
  Board b;
  AddPad(b, 0, 10, 10);
  AddTrack(b, 2, 0, 0, 5, 5);
  AddDrill(b, 10, 10);
  // Forward: 0, 2, 4 (drills), then 5 has no cutouts, so 0.
  EXPECT_TRUE(NextLayer(b));
  EXPECT_EQ(b.ActiveLayer, 2);
  EXPECT_TRUE(NextLayer(b));
  EXPECT_EQ(b.ActiveLayer, 4);
  EXPECT_TRUE(NextLayer(b));
  EXPECT_EQ(b.ActiveLayer, 0);
  // Backward: 0 to 5 (empty) to 4, then 2, then 0.
  EXPECT_TRUE(PreviousLayer(b));
  EXPECT_EQ(b.ActiveLayer, 4);
  EXPECT_TRUE(PreviousLayer(b));
  EXPECT_EQ(b.ActiveLayer, 2);
  EXPECT_TRUE(PreviousLayer(b));
  EXPECT_EQ(b.ActiveLayer, 0);

  // Cutouts without drills: 0, 5, 0 either way; the drill layer is passed over.
  Board c;
  AddPad(c, 0, 10, 10);
  AddCutout(c);
  EXPECT_TRUE(NextLayer(c));
  EXPECT_EQ(c.ActiveLayer, 5);
  EXPECT_TRUE(NextLayer(c));
  EXPECT_EQ(c.ActiveLayer, 0);
  EXPECT_TRUE(PreviousLayer(c));
  EXPECT_EQ(c.ActiveLayer, 5);
  EXPECT_TRUE(PreviousLayer(c));
  EXPECT_EQ(c.ActiveLayer, 0);

  // A lone layer goes nowhere.
  Board d;
  AddPad(d, 0, 1, 1);
  d.PendingCommand = 12210;
  EXPECT_FALSE(NextLayer(d));
  EXPECT_EQ(d.PendingCommand, 0);
  EXPECT_FALSE(PreviousLayer(d));
}

TEST(LayerSwitching, TabKeepsThePendingPickAndIsSilentOnOneLayer) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  AddPad(b, 0, 10, 10);
  b.LayerCount = 1;
  b.PendingCommand = 12210;
  SwitchLayer(app, true);
  SwitchLayer(app, false);
  EXPECT_EQ(fake.beeps, 0);
  EXPECT_EQ(fake.repaints, 0);
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_EQ(b.PendingCommand, 12210);

  AddTrack(b, 1, 0, 0, 5, 5);
  b.LayerCount = 2;
  b.HoverPad = b.Pads[0];
  SwitchLayer(app, true);
  EXPECT_EQ(b.ActiveLayer, 1);
  EXPECT_EQ(b.PendingCommand, 12210);  // the "&Disable" pick survives
  EXPECT_EQ(b.HoverPad, nullptr);      // the hover does not
  EXPECT_EQ(fake.beeps, 0);
  SwitchLayer(app, false);
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_EQ(b.PendingCommand, 12210);

  // The layer commands keep it too.
  ASSERT_TRUE(RunCommand(app, 12302));
  EXPECT_EQ(b.ActiveLayer, 1);
  EXPECT_EQ(b.PendingCommand, 12210);
  // From the toolbar: button 119 shows layer 1.
  ASSERT_TRUE(RunCommand(app, 119));
  EXPECT_EQ(b.ActiveLayer, 0);
  // An empty layer's command is refused with the beep.
  EXPECT_FALSE(RunCommand(app, 12304));
  EXPECT_EQ(fake.beeps, 1);
  EXPECT_EQ(b.ActiveLayer, 0);
}

TEST(CloseLayer, EmptiesTheLayerAndRefitsTheCard) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  AddPad(b, 0, 10, 10);
  AddPad(b, 0, 30, 20);
  AddTrack(b, 1, 50, 40, 60, 40);
  b.LayerName[0] = "TOP.GBR";
  b.LayerName[1] = "BOTTOM.GBR";
  b.LayerCount = 2;
  b.ActiveLayer = 1;
  b.CardWidth = 200;

  ASSERT_TRUE(RunCommand(app, cmd::CloseLayer));
  EXPECT_EQ(b.Tracks[1], nullptr);
  EXPECT_TRUE(b.LayerName[1].empty());
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_EQ(b.LayerCount, 1);
  // Fitted round the two pads, at least 2.54 mm from the edges.
  EXPECT_FLOAT_EQ(b.CardWidth, 40);
  EXPECT_FLOAT_EQ(b.CardHeight, 30);
  EXPECT_EQ(b.LayerName[0], "TOP.GBR");

  // The last layer that holds anything: a new job, the card back to 100 by 70.
  ASSERT_TRUE(RunCommand(app, cmd::CloseLayer));
  EXPECT_EQ(b.Pads[0], nullptr);
  EXPECT_FLOAT_EQ(b.CardWidth, 100);
  EXPECT_FLOAT_EQ(b.CardHeight, 70);
  EXPECT_EQ(b.LayerCount, 0);
  EXPECT_FALSE(RunCommand(app, cmd::CloseLayer));  // nothing left to close

  // Only drills: closing them also leaves an empty job.
  AddDrill(b, 50, 50);
  b.CardWidth = 10;
  b.ActiveLayer = kDrillLayer;
  b.LayerCount = 1;
  ASSERT_TRUE(RunCommand(app, cmd::CloseLayer));
  EXPECT_EQ(b.Drills, nullptr);
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_FLOAT_EQ(b.CardWidth, 100);
}

TEST(CloseLayer, FirstLayerMovesUpWhenOthersRemain) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  AddPad(b, 0, 10, 10);
  AddPad(b, 1, 20, 20);
  b.LayerName[1] = "BOTTOM.GBR";
  TPad* bottom = b.Pads[1];
  b.RefPad = b.Pads[0];
  b.LayerCount = 2;
  ASSERT_TRUE(RunCommand(app, cmd::CloseLayer));
  EXPECT_EQ(b.Pads[0], bottom);
  EXPECT_EQ(b.Pads[1], nullptr);
  EXPECT_EQ(b.LayerName[0], "BOTTOM.GBR");
  EXPECT_EQ(b.RefPad, nullptr);
  EXPECT_EQ(b.ActiveLayer, 0);
}

TEST(Escape, LeavesFinalRenderingAndThePickInOnePress) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  AddPad(b, 0, 10, 10);
  b.FinalRendering = true;
  b.PendingCommand = 12013;
  b.HoverPad = b.Pads[0];
  EXPECT_TRUE(EscapeKey(app));
  EXPECT_FALSE(b.FinalRendering);
  EXPECT_EQ(b.PendingCommand, 0);
  EXPECT_EQ(b.HoverPad, nullptr);
  // Nothing left to do: the key is not taken, so the window beeps on release.
  EXPECT_FALSE(EscapeKey(app));
}

TEST(ResetHover, GivesBackTheRoomMadeForCenteringHoles) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  AddPad(b, 0, 30, 30);
  AddPad(b, 0, 40, 35);
  b.CardWidth = 140;
  b.CardHeight = 100;

  // Holes already placed: nothing moves.
  b.CentreHole1X = b.CentreHole1Y = 5;
  b.PendingCommand = cmd::CenteringHoles;
  ResetHover(app);
  EXPECT_EQ(b.PendingCommand, 0);
  EXPECT_FLOAT_EQ(b.CardWidth, 140);

  // Leaving the placing of the first hole: the card is reframed round the content.
  b.CentreHole1X = b.CentreHole1Y = -1;
  b.PendingCommand = cmd::CenteringHoles;
  ResetHover(app);
  EXPECT_EQ(b.PendingCommand, 0);
  EXPECT_NEAR(b.CardWidth, 10 + 2 * 2.54, 1e-4);
  EXPECT_NEAR(b.Pads[0]->x, 2.54, 1e-4);

  // Any other pick just ends.
  b.PendingCommand = 12210;
  ResetHover(app);
  EXPECT_NEAR(b.CardWidth, 10 + 2 * 2.54, 1e-4);
}

TEST(ClickOutsideBoard, ItemPicksEndRectanglePicksBeep) {
  test::FakePlatform fake;
  Application app(fake);
  app.board.PendingCommand = 12214;
  ClickOutsideBoard(app);
  EXPECT_EQ(app.board.PendingCommand, 12214);
  EXPECT_EQ(fake.beeps, 1);
  app.board.PendingCommand = 12230;
  ClickOutsideBoard(app);
  EXPECT_EQ(app.board.PendingCommand, 0);
  EXPECT_EQ(fake.beeps, 1);
}

}  // namespace
}  // namespace isolith
