#include "commands/TransformCommands.h"

#include <gtest/gtest.h>

#include "TestBoards.h"
#include "commands/CommandHandlers.h"
#include "commands/Commands.h"
#include "edit/TransformForms.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddDrill;
using test::AddPad;
using test::AddTrack;

// A world of two circuit layers and a drill, with the settings in memory only.
struct World {
  test::FakePlatform fake;
  Application app{fake};
  Board& b = app.board;

  World() {
    AddPad(b, 0, 10, 10);
    AddPad(b, 0, 30, 20);
    AddPad(b, 1, 12, 13);
    AddPad(b, 1, 32, 23);
    AddDrill(b, 10, 10);
    RepaintBookkeeping(b);
  }

  // Scripts the form of `name` (cast to F): edit it, then OK (true) or Cancel (false).
  template <typename F, typename Edit>
  void Script(const std::string& name, Edit edit) {
    fake.dialogs[name] = [edit](DialogForm& form) { return edit(dynamic_cast<F&>(form)); };
  }
};

TEST(TransformCommands, AllSixAreBuiltAndFollowTheRule) {
  World w;
  for (int id = cmd::Dimensions; id <= cmd::AdjustOnReference; ++id) {
    const CommandHandler* h = FindCommandHandler(id);
    ASSERT_NE(h, nullptr) << id;
    EXPECT_NE(h->first, cmd::NewCircuit) << id;  // not the file commands' table
  }
  EXPECT_TRUE(CommandEnabled(cmd::Dimensions, w.app));
  // Adjust needs a reference pad on another layer.
  EXPECT_FALSE(CommandEnabled(cmd::AdjustOnReference, w.app));
  Board empty;
  EXPECT_FALSE(CommandEnabled(cmd::Scale, empty, DrawnMarks{}));
}

TEST(TransformCommands, DimensionsOkCancelAndTheDepthQuestion) {
  World w;
  w.b.PendingCommand = cmd::ReferencePad;
  // Cancel: nothing changes, no question.
  w.Script<TDialogSize>("TDialogSize", [](TDialogSize& f) {
    f.thickness = "3";
    return false;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Dimensions));
  EXPECT_EQ(w.b.PendingCommand, 0);
  EXPECT_EQ(w.b.CardThickness, 1);
  EXPECT_EQ(w.b.CardWidth, 100);
  EXPECT_TRUE(w.fake.questions.empty());
  EXPECT_GE(w.fake.repaints, 1);

  // OK with the box off; the thickness differs from the depths: the question comes after the
  // repaint, and No keeps the depths.
  w.Script<TDialogSize>("TDialogSize", [](TDialogSize& f) {
    f.reframe = false;
    f.width = "60";
    f.height = "40";
    f.thickness = "1.6";
    return true;
  });
  w.fake.answers = {Answer::No};
  const int repaints = w.fake.repaints;
  ASSERT_TRUE(RunCommand(w.app, cmd::Dimensions));
  EXPECT_GT(w.fake.repaints, repaints);
  EXPECT_EQ(w.b.CardWidth, 60);
  EXPECT_EQ(w.b.CardHeight, 40);
  EXPECT_FLOAT_EQ(w.b.CardThickness, 1.6f);
  ASSERT_EQ(w.fake.questions.size(), 1u);
  EXPECT_EQ(w.fake.questions[0].title, "Warning");
  EXPECT_EQ(w.app.settings.DrillingDepth, 1);

  // Yes: both depths follow the thickness.
  w.fake.answers = {Answer::Yes};
  ASSERT_TRUE(RunCommand(w.app, cmd::Dimensions));
  EXPECT_FLOAT_EQ(w.app.settings.DrillingDepth, 1.6f);
  EXPECT_FLOAT_EQ(w.app.settings.CuttingDepth, 1.6f);
  // The depths now match: no further question.
  ASSERT_TRUE(RunCommand(w.app, cmd::Dimensions));
  EXPECT_EQ(w.fake.questions.size(), 2u);

  // A width under the content is refused: the dialog stays (the fake then gives up).
  w.Script<TDialogSize>("TDialogSize", [](TDialogSize& f) {
    f.reframe = false;
    f.width = "29";
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Dimensions));
  EXPECT_EQ(w.b.CardWidth, 60);
  EXPECT_NE(w.fake.LastMessage().find("Width :  29"), std::string::npos);
}

TEST(TransformCommands, OriginTypedOrPlottedOnAnItem) {
  World w;
  w.Script<TDialogOriginPoint>("TDialogManuPlot", [](TDialogOriginPoint& f) {
    f.xText = "5";
    f.yText = "6";
    return false;  // Cancel
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Origin));
  EXPECT_EQ(w.b.OriginX, 0);
  EXPECT_EQ(w.b.PendingCommand, 0);

  w.Script<TDialogOriginPoint>("TDialogManuPlot", [](TDialogOriginPoint& f) {
    f.xText = "5";
    f.yText = "6";
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Origin));
  EXPECT_EQ(w.b.OriginX, 5);
  EXPECT_EQ(w.b.OriginY, 6);

  // "Plot manually": the dialog closes, the origin stays, the click is awaited.
  w.Script<TDialogOriginPoint>("TDialogManuPlot", [](TDialogOriginPoint& f) {
    f.xText = "1";
    f.PlotManually();
    return false;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Origin));
  EXPECT_EQ(w.b.PendingCommand, cmd::Origin);
  EXPECT_EQ(w.b.OriginX, 5);

  // A click on nothing does nothing; on a track the nearer end is taken.
  EXPECT_FALSE(TransformClickAction(w.app, cmd::Origin, 50, 50));
  EXPECT_EQ(w.b.PendingCommand, cmd::Origin);
  TTrack* t = AddTrack(w.b, 0, 40, 5, 60, 25);
  w.b.HoverTrack = t;
  ASSERT_TRUE(TransformClickAction(w.app, cmd::Origin, 55, 20));
  EXPECT_EQ(w.b.OriginX, 60);
  EXPECT_EQ(w.b.OriginY, 25);
  EXPECT_EQ(w.b.PendingCommand, 0);
  EXPECT_EQ(w.b.HoverTrack, nullptr);

  // A pad wins over a track under the same click; a centering hole gives its own corner.
  w.b.HoverTrack = t;
  w.b.HoverPad = w.b.Pads[0]->next;
  ASSERT_TRUE(TransformClickAction(w.app, cmd::Origin, 55, 20));
  EXPECT_EQ(w.b.OriginX, 30);
  EXPECT_EQ(w.b.OriginY, 20);
  w.b.CentreHole1X = 3;
  w.b.CentreHole1Y = 4;
  w.b.CentreHole2X = 70;
  w.b.CentreHole2Y = 50;
  w.b.HoverCentreHole = 7;
  ASSERT_TRUE(TransformClickAction(w.app, cmd::Origin, 0, 0));
  EXPECT_EQ(w.b.OriginX, 3);
  EXPECT_EQ(w.b.OriginY, 50);
  w.b.HoverDrill = w.b.Drills;
  ASSERT_TRUE(TransformClickAction(w.app, cmd::Origin, 0, 0));
  EXPECT_EQ(w.b.OriginX, 10);
}

TEST(TransformCommands, ScaleAndOffsetRunTheirForms) {
  World w;
  w.Script<TDialogScale>("TDialogScale", [](TDialogScale& f) {
    EXPECT_TRUE(f.drillDiametersEnabled);
    f.scale = "2";
    return false;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Scale));
  EXPECT_EQ(w.b.Pads[0]->x, 10);

  w.Script<TDialogScale>("TDialogScale", [](TDialogScale& f) {
    f.width = "200";
    f.WidthEdited();
    f.choice = ScaleChoice{true, false, false, false};
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Scale));
  EXPECT_EQ(w.b.Pads[0]->x, 20);
  EXPECT_EQ(w.b.Pads[1]->x, 24);
  EXPECT_EQ(w.b.Drills->x, 20);

  // "All layers" moves everything; the card takes the largest depth of the settings.
  w.app.settings.CuttingDepth = 1.8f;
  w.Script<TDialogShift>("TDialogShift", [](TDialogShift& f) {
    f.dx = "-5";
    f.allLayers = true;
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::Offset));
  EXPECT_EQ(w.b.Pads[0]->x, 15);
  EXPECT_EQ(w.b.Pads[1]->x, 19);
  EXPECT_EQ(w.b.Drills->x, 15);
  EXPECT_FLOAT_EQ(w.b.CardThickness, 1.8f);
}

TEST(TransformCommands, ReferencePadAndAdjust) {
  World w;
  w.b.RefPad = w.b.Pads[0]->next;
  w.b.FinalRendering = true;
  ASSERT_TRUE(RunCommand(w.app, cmd::ReferencePad));
  EXPECT_EQ(w.b.RefPad, nullptr);  // dropped as soon as a new one is asked for
  EXPECT_FALSE(w.b.FinalRendering);
  EXPECT_EQ(w.b.PendingCommand, cmd::ReferencePad);

  // A click with no pad under the mouse leaves the pick waiting.
  EXPECT_FALSE(TransformClickAction(w.app, cmd::ReferencePad, 1, 1));
  EXPECT_EQ(w.b.PendingCommand, cmd::ReferencePad);
  w.b.HoverPad = w.b.Pads[0];
  ASSERT_TRUE(TransformClickAction(w.app, cmd::ReferencePad, 10, 10));
  EXPECT_EQ(w.b.RefPad, w.b.Pads[0]);
  EXPECT_EQ(w.b.RefLayer, 0);
  EXPECT_EQ(w.b.PendingCommand, 0);

  // Not offered on the reference pad's own layer.
  const int beeps = w.fake.beeps;
  EXPECT_FALSE(RunCommand(w.app, cmd::AdjustOnReference));
  EXPECT_EQ(w.fake.beeps, beeps + 1);
  EXPECT_EQ(w.b.PendingCommand, 0);

  w.b.ActiveLayer = 1;
  ASSERT_TRUE(RunCommand(w.app, cmd::AdjustOnReference));
  EXPECT_EQ(w.b.PendingCommand, cmd::AdjustOnReference);

  // Back on layer 0 while the pick waits (layer switching keeps it): the click is refused.
  w.b.ActiveLayer = 0;
  w.b.HoverPad = w.b.Pads[0]->next;
  EXPECT_FALSE(TransformClickAction(w.app, cmd::AdjustOnReference, 30, 20));
  EXPECT_EQ(w.fake.beeps, beeps + 2);
  EXPECT_EQ(w.b.Pads[0]->next->x, 30);
  EXPECT_EQ(w.b.PendingCommand, cmd::AdjustOnReference);

  // On layer 1 the hovered pad meets the reference; layer 0 stays.
  w.b.ActiveLayer = 1;
  w.b.HoverPad = w.b.Pads[1];
  ASSERT_TRUE(TransformClickAction(w.app, cmd::AdjustOnReference, 12, 13));
  EXPECT_EQ(w.b.Pads[1]->x, 10);
  EXPECT_EQ(w.b.Pads[1]->y, 10);
  EXPECT_EQ(w.b.Pads[1]->next->x, 30);
  EXPECT_EQ(w.b.Pads[0]->next->x, 30);
  EXPECT_EQ(w.b.PendingCommand, 0);
  EXPECT_EQ(w.b.HoverPad, nullptr);

  // On the drill layer a hovered drill is taken.
  w.b.ActiveLayer = kDrillLayer;
  w.b.Drills->x = 11;
  w.b.HoverDrill = w.b.Drills;
  ASSERT_TRUE(TransformClickAction(w.app, cmd::AdjustOnReference, 11, 10));
  EXPECT_EQ(w.b.Drills->x, 10);

  // Ids of other subjects are not taken.
  EXPECT_FALSE(TransformClickAction(w.app, cmd::DisablePad, 0, 0));
}

}  // namespace
}  // namespace isolith
