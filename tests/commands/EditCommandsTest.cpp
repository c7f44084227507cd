#include "commands/EditCommands.h"

#include <gtest/gtest.h>

#include "TestBoards.h"
#include "commands/CommandHandlers.h"
#include "commands/Commands.h"
#include "commands/ImportSteps.h"
#include "core/board/BoardOps.h"
#include "edit/ApertureForms.h"
#include "edit/BoardDump.h"
#include "edit/SingleItemForms.h"
#include "support/FakePlatform.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

using test::AddCutout;
using test::AddDrill;
using test::AddPad;
using test::AddTrack;

struct World {
  test::FakePlatform fake;
  Application app{fake};
  Board& b = app.board;

  World() {
    ResetApertureTables(b);
    AddPad(b, 0, 10, 10, 10);
    AddPad(b, 0, 30, 10, 12);
    AddPad(b, 1, 10, 10, 10);
    AddTrack(b, 0, 10, 10, 30, 10, 11);
    AddTrack(b, 0, 30, 10, 30, 30, 11);
    AddDrill(b, 10, 10, 3);
    RepaintBookkeeping(b);
  }
  void WithContours() {
    for (int layer = 0; layer < kCircuitLayers; ++layer) {
      FreePolygons(b.Contours[layer]);
      b.Contours[layer] = new TPolygon;
    }
  }
  int ContourLayers() const {
    int n = 0;
    for (TPolygon* p : b.Contours) n += p != nullptr;
    return n;
  }
  template <typename F, typename Edit>
  void Script(const std::string& name, Edit edit) {
    fake.dialogs[name] = [edit](DialogForm& form) { return edit(dynamic_cast<F&>(form)); };
  }
};

TEST(EditCommands, EveryEditingRowIsBuiltAndFollowsTheRule) {
  World w;
  for (int id : {12107, 12108, 12110, 12201, 12202, 12203, 12204, 12206, 12210, 12214, 12220, 12224,
                 12230, 12235, 12603, 12611, 12615, 12626, 12628})
    EXPECT_NE(FindCommandHandler(id), nullptr) << id;
  EXPECT_TRUE(CommandEnabled(cmd::ModifyPads, w.app));
  EXPECT_FALSE(CommandEnabled(cmd::DeleteSelectedContours, w.app));  // no contours yet
  EXPECT_FALSE(CommandEnabled(cmd::EnablePad, w.app));               // nothing disabled drawn
  w.b.ActiveLayer = 2;
  EXPECT_FALSE(CommandEnabled(cmd::ModifyTracks, w.app));
}

TEST(EditCommands, ModifyPadsCancelRestoresOkRebuildsTheDrillList) {
  World w;
  const std::string before = test::DumpBoard(w.b);
  w.Script<TDialogChgPads>("TDialogChgPads", [](TDialogChgPads& f) {
    f.SizeXEdited("3");
    f.DrillEdited("1");
    f.DeleteAllOfType();
    return false;
  });
  ASSERT_TRUE(RunCommand(w.app, 116));  // the toolbar's button
  EXPECT_EQ(test::DumpBoard(w.b), before);
  EXPECT_EQ(w.fake.dialogsRun.size(), 1u);

  w.Script<TDialogChgPads>("TDialogChgPads", [](TDialogChgPads& f) {
    f.DrillEdited("1.1");
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::ModifyPads));
  EXPECT_FLOAT_EQ(w.b.DrillDiameter[10], 1.1f);
  ASSERT_FALSE(w.app.drillList.rows.empty());
  EXPECT_FLOAT_EQ(w.app.drillList.rows[0].diameter, 1.1f);

  // Tracks: Cancel through the popup row on the hovered track's code.
  w.b.HoverTrack = w.b.Tracks[0];
  const std::string tracks = test::DumpBoard(w.b);
  w.Script<TDialogChgTracks>("TDialogChgTracks", [](TDialogChgTracks& f) {
    f.WidthEdited("2");
    f.ToggleCentreline();
    return false;
  });
  ASSERT_TRUE(RunCommand(w.app, 12609));
  EXPECT_EQ(test::DumpBoard(w.b), tracks);
  EXPECT_EQ(w.b.HoverTrack, nullptr);
}

TEST(EditCommands, LoadStepsOpenTheApertureDialogsOutsideAutomaticRuns) {
  World w;
  ImportContext context = MakeImportContext(w.app);
  ASSERT_TRUE(context.steps.modifyPads && context.steps.modifyTracks);
  context.steps.modifyPads();
  context.steps.modifyTracks();
  EXPECT_EQ(w.fake.dialogsRun, (std::vector<std::string>{"TDialogChgPads", "TDialogChgTracks"}));
  w.app.AutoStart = true;
  context.steps.modifyPads();
  EXPECT_EQ(w.fake.dialogsRun.size(), 2u);
}

TEST(EditCommands, ItemPicksClickActionsAndPopups) {
  struct Row {
    int id;
    int contoursLeft;
    bool pickStays;
  };
  const Row rows[] = {
      {cmd::DisablePad, 0, false}, {cmd::DeleteTrack, 3, false}, {cmd::DisableDrill, 4, false},
      {cmd::ThermalPad, 3, false}, {cmd::DeletePad, 0, false},   {cmd::EnableTrack, 3, false},
  };
  for (const Row& r : rows) {
    World w;
    w.WithContours();
    w.app.drawn.disabledTrack = true;  // the re-enable rows need a disabled track drawn
    ASSERT_TRUE(RunCommand(w.app, r.id)) << r.id;
    EXPECT_EQ(w.b.PendingCommand, r.id);
    // A click on nothing: nothing happens, the pick waits.
    EXPECT_TRUE(EditClickAction(w.app, r.id));
    EXPECT_EQ(w.b.PendingCommand, r.id);
    EXPECT_EQ(w.ContourLayers(), 4);
    w.b.HoverPad = w.b.Pads[0];
    w.b.HoverTrack = w.b.Tracks[0];
    w.b.HoverDrill = w.b.Drills;
    EXPECT_TRUE(EditClickAction(w.app, r.id));
    EXPECT_EQ(w.ContourLayers(), r.contoursLeft) << r.id;
    EXPECT_EQ(w.b.PendingCommand, 0) << r.id;
    EXPECT_EQ(w.b.HoverPad, nullptr);
  }
  World w;
  EXPECT_FALSE(EditClickAction(w.app, cmd::Origin));
  // The popup's "Delete track net" on the hovered track, answered Yes.
  w.b.HoverTrack = w.b.Tracks[0];
  ASSERT_TRUE(RunCommand(w.app, 12625));
  EXPECT_EQ(w.b.Tracks[0], nullptr);
  EXPECT_EQ(w.fake.questions.back().text, "Delete this track net?");
  // On the drill layer the net pick is refused with the beep.
  w.b.ActiveLayer = kDrillLayer;
  w.b.HoverTrack = AddTrack(w.b, 0, 1, 1, 2, 2);
  const int beeps = w.fake.beeps;
  EXPECT_TRUE(EditClickAction(w.app, cmd::DisableTrackNet));
  EXPECT_EQ(w.fake.beeps, beeps + 1);
}

TEST(EditCommands, SinglePadStaysAfterAPickOnlyAndCancelRestores) {
  World w;
  const std::string before = test::DumpBoard(w.b);
  w.Script<TDialogChgOnePad>("TDialogChgOnePad", [](TDialogChgOnePad& f) {
    f.SizeXEdited("4");
    f.DrillEdited("2");
    return false;
  });
  w.b.HoverPad = w.b.Pads[0]->next;
  ASSERT_TRUE(RunCommand(w.app, 12603));
  EXPECT_EQ(test::DumpBoard(w.b), before);
  EXPECT_EQ(w.b.PendingCommand, 0);

  w.Script<TDialogChgOnePad>("TDialogChgOnePad", [](TDialogChgOnePad& f) {
    f.SizeXEdited("4");
    return true;
  });
  ASSERT_TRUE(RunCommand(w.app, cmd::ModifySinglePad));
  w.b.HoverPad = w.b.Pads[0]->next;
  ASSERT_TRUE(EditClickAction(w.app, cmd::ModifySinglePad));
  EXPECT_EQ(w.b.PendingCommand, cmd::ModifySinglePad);  // "stay": the next pad
  EXPECT_EQ(w.b.PadSizeX[0][w.b.Pads[0]->next->code], 4);
}

TEST(EditCommands, ZonesAndTheCardContour) {
  World w;
  ASSERT_TRUE(RunCommand(w.app, cmd::DeleteZone));
  ASSERT_TRUE(EditRectangleAction(w.app, cmd::DeleteZone, 50, 50, 40, 40, false));
  EXPECT_EQ(w.fake.beeps, 1);  // nothing caught
  EXPECT_EQ(w.b.PendingCommand, cmd::DeleteZone);
  ASSERT_TRUE(EditRectangleAction(w.app, cmd::DeleteZone, 35, 35, 5, 5, true));
  EXPECT_EQ(w.b.Pads[0], nullptr);
  EXPECT_EQ(w.b.Pads[1], nullptr);  // Ctrl: every circuit layer
  EXPECT_EQ(w.b.Drills, nullptr);
  EXPECT_EQ(w.b.PendingCommand, cmd::DeleteZone);
  EXPECT_FALSE(EditRectangleAction(w.app, cmd::CalculateHatches, 0, 0, 1, 1, false));

  // One cut-out: taken at once; two: the pick waits for the click on one.
  AddCutout(w.b);
  RepaintBookkeeping(w.b);
  ASSERT_TRUE(RunCommand(w.app, cmd::DeleteCardContour));
  EXPECT_EQ(w.b.Cutouts, nullptr);
  EXPECT_EQ(w.b.ActiveLayer, 0);
  AddCutout(w.b);
  TCutout* second = AddCutout(w.b);
  ASSERT_TRUE(RunCommand(w.app, cmd::DeleteCardContour));
  EXPECT_EQ(w.b.PendingCommand, cmd::DeleteCardContour);
  EXPECT_EQ(w.b.ActiveLayer, kCutoutLayer);
  w.b.HoverCutout = second;
  ASSERT_TRUE(EditClickAction(w.app, cmd::DeleteCardContour));
  EXPECT_EQ(CountOf(w.b.Cutouts), 1);
}

TEST(EditCommands, ContourModesByClicks) {
  World w;
  TPolygon* tail = nullptr;
  auto path = [&](float x1, float y1, float x2, float y2) {
    auto* p = new TPolygon;
    AppendPoint(*p, x1, y1);
    AppendPoint(*p, x2, y2);
    AppendTo(w.b.Contours[0], tail, p);
    return p;
  };
  path(0, 0, 10, 0);
  path(10, 5, 0, 5);
  constexpr float kScale = 10;  // pixels per mm: 12 pixels are 1.2 mm, 4 pixels 0.4 mm
  ASSERT_TRUE(RunCommand(w.app, cmd::AddContourSegments));
  ASSERT_TRUE(RunCommand(w.app, cmd::AddContourSegments));
  EXPECT_EQ(w.fake.messages.size(), 1u);  // the "Position" box, once per run
  EXPECT_EQ(w.fake.messages[0].title, "Position");

  // Left click far from a free end: refused. Then from the end (10,0) to near (10,5): the
  // segment snaps to that end and the join makes one path.
  ContourHover(w.app, cmd::AddContourSegments, 20, 20, kScale);
  EXPECT_EQ(w.b.HoverContourVertex, nullptr);
  ASSERT_TRUE(ContourClickAction(w.app, cmd::AddContourSegments, 20, 20, kScale, false));
  EXPECT_EQ(w.fake.beeps, 1);
  ASSERT_TRUE(ContourClickAction(w.app, cmd::AddContourSegments, 10.5f, 0, kScale, false));
  EXPECT_EQ(w.b.PendingCommand, cmd::AddContourSegmentsSecond);
  ASSERT_TRUE(ContourClickAction(w.app, cmd::AddContourSegmentsSecond, 10.2f, 5.1f, kScale, false));
  EXPECT_EQ(w.b.PendingCommand, cmd::AddContourSegments);
  ASSERT_EQ(CountOf(w.b.Contours[0]), 1);
  EXPECT_EQ(CountPoints(*w.b.Contours[0]), 4);
  EXPECT_FLOAT_EQ(LastPoint(*w.b.Contours[0])->x, 0);

  // The right button gives a free point: a new path of two loose ends.
  ASSERT_TRUE(ContourClickAction(w.app, cmd::AddContourSegments, 30, 30, kScale, true));
  ASSERT_TRUE(ContourClickAction(w.app, cmd::AddContourSegmentsSecond, 40, 30, kScale, false));
  EXPECT_EQ(CountOf(w.b.Contours[0]), 2);

  // Delete a segment, then the path; a click on nothing beeps.
  const int beeps = w.fake.beeps;
  ASSERT_TRUE(ContourClickAction(w.app, cmd::DeleteContourSegments, 60, 60, kScale, false));
  EXPECT_EQ(w.fake.beeps, beeps + 1);
  ASSERT_TRUE(ContourClickAction(w.app, cmd::DeleteContourSegments, 35, 30.2f, kScale, false));
  EXPECT_EQ(CountOf(w.b.Contours[0]), 1);
  ASSERT_TRUE(ContourClickAction(w.app, cmd::DeleteSelectedContours, 5, 0.3f, kScale, false));
  EXPECT_EQ(w.b.Contours[0], nullptr);
  EXPECT_FALSE(ContourClickAction(w.app, cmd::DeletePad, 0, 0, kScale, false));

  // Outside the board the points of a segment beep; other picks end.
  w.b.PendingCommand = cmd::AddContourSegments;
  ClickOutsideBoard(w.app);
  EXPECT_EQ(w.b.PendingCommand, cmd::AddContourSegments);
  EXPECT_EQ(w.fake.beeps, beeps + 2);
}

}  // namespace
}  // namespace isolith
