#include "commands/ToolpathCommands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "commands/ImportSteps.h"
#include "commands/Startup.h"
#include "core/board/BoardOps.h"
#include "params/ToolForms.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"
#include "toolpath/ContourForm.h"
#include "toolpath/CutPath.h"
#include "toolpath/CuttingTabs.h"
#include "toolpath/HatchForm.h"

namespace isolith {
namespace {

using test::TempFolder;

namespace fs = std::filesystem;
using test::AddPad;
using test::AddTrack;

int Count(const std::vector<std::string>& list, const std::string& name) {
  return static_cast<int>(std::count(list.begin(), list.end(), name));
}

// Slot 0 a 0.3 mm engraver (contours and hatches), slot 1 a 1 mm cutter (cutting, drilling).
void GiveTools(Application& app) {
  app.tools[0].Diameter = 0.3f;
  app.tools[0].Profile = kProfileCylindrical;
  app.tools[1].Diameter = 1.0f;
  app.tools[1].Profile = kProfileCylindrical;
  app.settings.MillingTool = 0;
  app.settings.HatchingTool = 0;
}

// A round pad with a track leaving it, on a small card.
void Circuit(Board& b, int layer, float x = 10, float y = 5) {
  b.PadShape[layer][10] = kShapeCircle;
  b.PadSizeX[layer][10] = b.PadSizeY[layer][10] = 1.5f;
  b.TrackWidth[layer][11] = 0.3f;
  AddPad(b, layer, x, y);
  AddTrack(b, layer, x, y, x + 4, y);
  b.CardWidth = 20;
  b.CardHeight = 10;
  RepaintBookkeeping(b);
}

// Four thin tracks round the card's middle: a card edge.
void Outline(Board& b, int layer) {
  b.TrackWidth[layer][12] = 0.1f;
  AddTrack(b, layer, 2, 2, 18, 2, 12);
  AddTrack(b, layer, 18, 2, 18, 8, 12);
  AddTrack(b, layer, 18, 8, 2, 8, 12);
  AddTrack(b, layer, 2, 8, 2, 2, 12);
  RepaintBookkeeping(b);
}

struct World {
  test::FakePlatform fake;
  Application app{fake};
  Board& b = app.board;
  World() { GiveTools(app); }
};

TEST(ToolpathCommands, ContoursCalculateThenResetOnTheSecondCall) {
  World w;
  Circuit(w.b, 0);
  ASSERT_TRUE(RunCommand(w.app, 108));  // the toolbar's button
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogContour"});
  ASSERT_NE(w.b.Contours[0], nullptr);
  EXPECT_EQ(Count(w.fake.statusTexts, "Building draft contours..."), 1);
  EXPECT_EQ(Count(w.fake.statusTexts, "Final build-up..."), 1);
  EXPECT_EQ(w.fake.beeps, 0);

  // Hatches hang from the contours: the reset takes both, and asks nothing.
  w.b.Hatches[0] = new TPolygon;
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  EXPECT_EQ(w.b.Contours[0], nullptr);
  EXPECT_EQ(w.b.Hatches[0], nullptr);
  EXPECT_EQ(w.fake.dialogsRun.size(), 1u);

  // Off a circuit layer the command is refused, whatever the enabling rule says.
  w.b.ActiveLayer = kDrillLayer;
  CalculateContoursCommand(w.app);
  EXPECT_EQ(w.fake.beeps, 1);
  EXPECT_EQ(w.fake.dialogsRun.size(), 1u);
}

TEST(ToolpathCommands, LongCalculationsShowProgressAndStopWhenAsked) {
  World w;
  Circuit(w.b, 0);
  // Asked to stop at the second phase: no contours at all, the progress closed.
  w.fake.stopAfter = 2;
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  EXPECT_EQ(w.b.Contours[0], nullptr);
  EXPECT_EQ(w.fake.progressTitles, std::vector<std::string>{"Calculate contours"});
  EXPECT_EQ(w.fake.progressOpen, 0);
  EXPECT_EQ(Count(w.fake.statusTexts, "Removing bad segments..."), 0);

  w.fake.stopAfter = -1;
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  ASSERT_NE(w.b.Contours[0], nullptr);
  // Hatches stopped at their first phase leave none.
  w.fake.stopAfter = w.fake.stopQuestions + 1;
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateHatches));
  EXPECT_EQ(w.b.Hatches[0], nullptr);
  EXPECT_EQ(w.fake.progressTitles.back(), "Calculate hatches");
  EXPECT_EQ(w.fake.progressOpen, 0);
}

TEST(ToolpathCommands, ContoursNeedAToolAndStopOnCancel) {
  World w;
  Circuit(w.b, 0);
  w.app.settings.MillingTool = -1;
  w.app.settings.HatchingTool = -1;

  // No tool, and "Active tools" cancelled: the command stops without a word.
  w.fake.dialogs["TDialogDrill"] = [](DialogForm&) { return false; };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogDrill"});
  EXPECT_EQ(w.b.Contours[0], nullptr);
  EXPECT_TRUE(w.fake.messages.empty());
  EXPECT_EQ(w.fake.beeps, 0);

  // The tool chosen there is kept, then "Set contours" is cancelled: still nothing.
  w.fake.dialogs["TDialogDrill"] = [](DialogForm& form) {
    auto& tools = static_cast<TDialogDrill&>(form);
    tools.millingTool = 0;
    tools.hatchingTool = 0;
    return true;
  };
  w.fake.dialogs["TDialogContour"] = [](DialogForm&) { return false; };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  EXPECT_EQ(w.app.settings.MillingTool, 0);
  EXPECT_EQ(Count(w.fake.dialogsRun, "TDialogContour"), 1);
  EXPECT_EQ(w.b.Contours[0], nullptr);

  // Now the tool stands: no "Active tools" any more, and the dialog's counts are used.
  w.fake.dialogs["TDialogContour"] = [](DialogForm& form) {
    static_cast<TDialogContour&>(form).passes = "2";
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  EXPECT_EQ(Count(w.fake.dialogsRun, "TDialogDrill"), 2);
  EXPECT_EQ(w.app.settings.MillingNb1, 2);
  ASSERT_NE(w.b.Contours[0], nullptr);
  // Two passes: the earlier pass's paths lose the last-pass mark.
  EXPECT_FALSE(TestFlags(*w.b.Contours[0], kPolygonMark));
}

TEST(ToolpathCommands, ContoursOnAllLayersComeBackToTheActiveLayer) {
  World w;
  Circuit(w.b, 0);
  Circuit(w.b, 1);
  Circuit(w.b, 2);
  w.b.ActiveLayer = 1;
  w.fake.dialogs["TDialogContour"] = [](DialogForm& form) {
    static_cast<TDialogContour&>(form).allLayers = true;
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  for (int layer = 0; layer < 3; ++layer) EXPECT_NE(w.b.Contours[layer], nullptr) << layer;
  EXPECT_EQ(w.b.Contours[3], nullptr);
  EXPECT_EQ(w.b.ActiveLayer, 1);
  EXPECT_TRUE(w.app.toolpath.ContourAllLayers);  // kept for the run
}

TEST(ToolpathCommands, StartFileWithAutostartGetsItsContours) {
  TempFolder folder;
  const std::string path = folder.path() + "Board.GTL";
  std::ofstream(path) << "%FSLAX24Y24*%\n%MOIN*%\n%ADD10C,0.0600*%\n%ADD11C,0.0100*%\n"
                         "D10*\nX010000Y010000D03*\nX020000Y010000D03*\n"
                         "D11*\nX010000Y010000D02*\nX020000Y015000D01*\nM02*\n";
  for (const char* word : {"AUTOSTART", "AUTOMILL", ""}) {
    test::FakePlatform fake;
    Application app(fake, folder.path(), folder.path());
    InitSettings(app);
    app.settings.MillingTool = 0;  // the library's first tool
    app.settings.MillingNb1 = 0;   // clamped by the calculation, and kept so
    std::vector<std::string> words{path};
    if (*word) words.emplace_back(word);
    ApplyCommandLine(app, words);
    RunFirstShow(app);
    EXPECT_EQ(app.board.LayerCount, 1) << word;
    EXPECT_EQ(app.board.Contours[0] != nullptr, *word != 0) << word;
    EXPECT_EQ(Count(fake.dialogsRun, "TDialogContour"), 0) << word;
    EXPECT_EQ(app.settings.MillingNb1, *word ? 1 : 0) << word;
    EXPECT_FALSE(app.AutoStart || app.AutoMill);
    EXPECT_EQ(app.board.PendingCommand, 0);
  }
}

TEST(ToolpathCommands, HatchesCalculateResetAndDelete) {
  World w;
  Circuit(w.b, 0);
  Circuit(w.b, 1);
  w.app.AutoStart = true;  // contours without their dialog
  ASSERT_TRUE(CalculateContoursOnAllLayers(w.app));
  w.app.AutoStart = false;

  ASSERT_TRUE(RunCommand(w.app, 110));  // the toolbar's button
  EXPECT_EQ(Count(w.fake.dialogsRun, "TDialogHatch"), 1);
  ASSERT_NE(w.b.Hatches[0], nullptr);
  EXPECT_EQ(w.b.Hatches[1], nullptr);
  EXPECT_EQ(Count(w.fake.statusTexts, "Building draft hatches..."), 1);

  // A second call in a whole-board zone is a reset, without the dialog.
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateHatches));
  EXPECT_EQ(w.b.Hatches[0], nullptr);
  EXPECT_NE(w.b.Contours[0], nullptr);
  EXPECT_EQ(Count(w.fake.dialogsRun, "TDialogHatch"), 1);

  // All layers, then "&Delete hatches" takes them from all four.
  w.fake.dialogs["TDialogHatch"] = [](DialogForm& form) {
    static_cast<TDialogHatch&>(form).allLayers = true;
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateHatches));
  ASSERT_NE(w.b.Hatches[0], nullptr);
  ASSERT_NE(w.b.Hatches[1], nullptr);
  EXPECT_TRUE(w.app.toolpath.hatch.allLayers);
  EXPECT_TRUE(CommandEnabled(cmd::DeleteHatches, w.app));
  ASSERT_TRUE(RunCommand(w.app, 132));
  EXPECT_EQ(w.b.Hatches[0], nullptr);
  EXPECT_EQ(w.b.Hatches[1], nullptr);
  EXPECT_FALSE(CommandEnabled(cmd::DeleteHatches, w.app));
}

TEST(ToolpathCommands, HatchZonesAreDraggedAndAddUp) {
  World w;
  Circuit(w.b, 0);
  w.app.AutoStart = true;
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateContours));
  w.app.AutoStart = false;
  w.b.FinalRendering = true;
  w.fake.dialogs["TDialogHatch"] = [](DialogForm& form) {
    return static_cast<TDialogHatch&>(form).SelectZone(kHatchSelectedZone);
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateHatches));
  EXPECT_EQ(w.b.PendingCommand, cmd::CalculateHatches);
  EXPECT_FALSE(w.b.FinalRendering);
  EXPECT_EQ(w.b.Hatches[0], nullptr);  // nothing until a zone is dragged

  // A point click is not this pick's; a rectangle is, and the pick stays for the next.
  EXPECT_FALSE(ToolpathClickAction(w.app, cmd::CalculateHatches, 3, 3));
  EXPECT_FALSE(ToolpathRectangleAction(w.app, cmd::DeleteZone, 1, 1, 8, 9));
  ASSERT_TRUE(ToolpathRectangleAction(w.app, cmd::CalculateHatches, 8, 9, 1, 1));
  EXPECT_EQ(w.b.PendingCommand, cmd::CalculateHatches);
  const int first = CountOf(w.b.Hatches[0]);
  EXPECT_GT(first, 0);
  ASSERT_TRUE(ToolpathRectangleAction(w.app, cmd::CalculateHatches, 15, 1, 19, 9));
  EXPECT_GT(CountOf(w.b.Hatches[0]), first);

  // In that zone mode the command opens the dialog again instead of resetting.
  const int kept = CountOf(w.b.Hatches[0]);
  ASSERT_TRUE(RunCommand(w.app, cmd::CalculateHatches));
  EXPECT_EQ(Count(w.fake.dialogsRun, "TDialogHatch"), 2);
  EXPECT_EQ(CountOf(w.b.Hatches[0]), kept);
}

TEST(ToolpathCommands, ScriptFunctionsWorkOnEveryLayerAndRecalculate) {
  World w;
  EXPECT_FALSE(CalculateContoursOnAllLayers(w.app));
  EXPECT_FALSE(CalculateHatchesOnAllLayers(w.app));
  EXPECT_TRUE(w.fake.dialogsRun.empty());

  Circuit(w.b, 0);
  Circuit(w.b, 2);
  test::AddDrill(w.b, 10, 5);
  w.b.ActiveLayer = kDrillLayer;
  ASSERT_TRUE(CalculateContoursOnAllLayers(w.app));
  EXPECT_EQ(w.fake.dialogsRun, std::vector<std::string>{"TDialogContour"});
  EXPECT_NE(w.b.Contours[0], nullptr);
  EXPECT_NE(w.b.Contours[2], nullptr);
  EXPECT_EQ(w.b.ActiveLayer, kDrillLayer);

  ASSERT_TRUE(CalculateHatchesOnAllLayers(w.app));
  EXPECT_NE(w.b.Hatches[0], nullptr);
  EXPECT_NE(w.b.Hatches[2], nullptr);
  const int hatches = CountOf(w.b.Hatches[0]);

  // A second run calculates again: the hatches are replaced, not added to nor reset.
  ASSERT_TRUE(CalculateHatchesOnAllLayers(w.app));
  EXPECT_EQ(CountOf(w.b.Hatches[0]), hatches);
  ASSERT_TRUE(CalculateContoursOnAllLayers(w.app));
  EXPECT_NE(w.b.Contours[0], nullptr);
  EXPECT_EQ(w.b.Hatches[0], nullptr);  // new contours, so the old hatches are gone
}

TEST(ToolpathCommands, CopperPlanePicksAskAndActOnTheHoveredNet) {
  World w;
  Circuit(w.b, 0);
  TTrack* island = AddTrack(w.b, 0, 1, 1, 3, 1);
  TTrack* corner = AddTrack(w.b, 0, 3, 1, 3, 3);
  TTrack* fed = w.b.Tracks[0];
  w.b.FinalRendering = true;

  ASSERT_TRUE(RunCommand(w.app, cmd::DefineCopperPlane));
  EXPECT_EQ(w.b.PendingCommand, cmd::DefineCopperPlane);
  EXPECT_FALSE(w.b.FinalRendering);
  // A click with no track under the mouse does nothing, and the pick stays.
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::DefineCopperPlane, 0, 0));
  EXPECT_EQ(w.b.PendingCommand, cmd::DefineCopperPlane);
  EXPECT_TRUE(w.fake.questions.empty());

  w.b.HoverTrack = island;
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::DefineCopperPlane, 2, 1));
  ASSERT_EQ(w.fake.questions.size(), 1u);
  EXPECT_EQ(w.fake.questions[0].text, "Define this track zone as copper plane?");
  EXPECT_TRUE(TestFlags(*island, kTrackCopperPlane));
  EXPECT_TRUE(TestFlags(*corner, kTrackCopperPlane));
  EXPECT_FALSE(TestFlags(*fed, kTrackCopperPlane));
  EXPECT_EQ(w.b.PendingCommand, 0);
  EXPECT_EQ(w.b.HoverTrack, nullptr);

  // Undone through the other pick.
  w.app.drawn.copperPlane = true;
  ASSERT_TRUE(RunCommand(w.app, cmd::DisableCopperPlane));
  w.b.HoverTrack = corner;
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::DisableCopperPlane, 3, 2));
  EXPECT_FALSE(TestFlags(*island, kTrackCopperPlane));
  EXPECT_FALSE(TestFlags(*corner, kTrackCopperPlane));

  // The context-menu row acts on the hovered track at once.
  w.b.HoverTrack = island;
  ASSERT_TRUE(RunCommand(w.app, cmd::DefineAsCopperPlane));
  EXPECT_TRUE(TestFlags(*island, kTrackCopperPlane));
  EXPECT_EQ(w.b.HoverTrack, nullptr);
}

TEST(ToolpathCommands, CardContourDetectDefineSideAndTabs) {
  World w;
  Circuit(w.b, 0);
  Outline(w.b, 1);
  w.b.ActiveLayer = 1;
  ASSERT_TRUE(RunCommand(w.app, cmd::AutoDetectCardContour));
  ASSERT_NE(w.b.Cutouts, nullptr);
  EXPECT_EQ(w.b.Tracks[1], nullptr);  // the edge left the circuit layer
  EXPECT_NE(w.b.Cutouts->paths, nullptr);
  EXPECT_EQ(w.fake.questions.size(), 1u);

  // A second edge defined by a click on one of its tracks; the side is asked there.
  Outline(w.b, 0);
  w.b.ActiveLayer = 0;
  ASSERT_TRUE(RunCommand(w.app, 118));  // the toolbar's button
  EXPECT_EQ(w.b.PendingCommand, cmd::DefineCardContour);
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::DefineCardContour, 5, 5));  // no track: stays
  EXPECT_EQ(w.b.PendingCommand, cmd::DefineCardContour);
  w.b.HoverTrack = LastOf(w.b.Tracks[0]);
  w.fake.dialogs["TDialogCut"] = [](DialogForm& form) {
    static_cast<TDialogCut&>(form).side = 1;
    return true;
  };
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::DefineCardContour, 2, 5));
  ASSERT_EQ(CountOf(w.b.Cutouts), 2);
  EXPECT_EQ(LastOf(w.b.Cutouts)->side, 1);
  EXPECT_EQ(CountOf(w.b.Tracks[0]), 1);  // the circuit's own track stays
  EXPECT_EQ(w.b.PendingCommand, 0);

  // Two cut-outs: the side change waits for a pick on the cutout layer.
  w.fake.dialogs["TDialogCut"] = [](DialogForm& form) {
    static_cast<TDialogCut&>(form).side = 0;
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::ChangeToolSide));
  EXPECT_EQ(w.b.ActiveLayer, kCutoutLayer);
  EXPECT_EQ(w.b.PendingCommand, cmd::ChangeToolSide);
  w.b.HoverCutout = LastOf(w.b.Cutouts);
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::ChangeToolSide, 2, 5));
  EXPECT_EQ(LastOf(w.b.Cutouts)->side, 0);
  EXPECT_EQ(w.b.PendingCommand, 0);

  // Tabs: the width is asked and saved, each click on the path cuts one, the pick stays.
  FreeCutouts(w.b, w.b.Cutouts->next);
  w.b.Cutouts->next = nullptr;
  w.fake.dialogs["TDialogTabs"] = [](DialogForm& form) {
    static_cast<TDialogTabs&>(form).width = "1.5";
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, 136));  // the toolbar's button
  EXPECT_FLOAT_EQ(w.app.settings.CuttingTabs, 1.5f);
  EXPECT_EQ(w.b.PendingCommand, cmd::AddCuttingTabs);
  const int paths = CountOf(w.b.Cutouts->paths);
  // The outer path runs 1.585 mm outside the edge (half the default cutting diameter).
  EXPECT_TRUE(ToolpathClickAction(w.app, cmd::AddCuttingTabs, 10, 0.5f));
  EXPECT_EQ(CountOf(w.b.Cutouts->paths), paths + 1);
  EXPECT_EQ(w.b.PendingCommand, cmd::AddCuttingTabs);
  EXPECT_FALSE(ToolpathClickAction(w.app, cmd::DeletePad, 1, 1));

  // "Reset contour path" from the cut-out's menu: the tab is gone, the pick has ended.
  w.b.HoverCutout = w.b.Cutouts;
  ASSERT_TRUE(RunCommand(w.app, 12627));
  EXPECT_EQ(CountOf(w.b.Cutouts->paths), paths);
  EXPECT_EQ(w.b.PendingCommand, 0);
}

TEST(ToolpathCommands, DrillListIsRebuiltAtLoadAndShownOnTheDrillLayer) {
  World w;
  Circuit(w.b, 0);
  w.b.DrillDiameter[3] = 0.8f;
  w.b.DrillDiameter[4] = 1.2f;
  test::AddDrill(w.b, 10, 5, 4);
  test::AddDrill(w.b, 14, 5, 3);
  w.app.settings.DrillingMode = 1;
  w.app.settings.DrillingTool = 1;
  ImportContext context = MakeImportContext(w.app);
  ASSERT_TRUE(context.steps.rebuildDrillTable);
  context.steps.rebuildDrillTable();
  EXPECT_FLOAT_EQ(w.app.drillList.rows[0].diameter, 0.8f);
  EXPECT_FLOAT_EQ(w.app.drillList.rows[1].diameter, 1.2f);
  EXPECT_EQ(w.app.drillList.rows[0].tool, 1);

  int shownOn = -1;
  w.fake.dialogs["TDialogDrillList"] = [&](DialogForm&) {
    shownOn = w.b.ActiveLayer;
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, 112));  // the toolbar's button
  EXPECT_EQ(shownOn, kDrillLayer);
  EXPECT_EQ(w.b.ActiveLayer, 0);
}

TEST(ToolpathCommands, ToolDialogsWriteTheirFiles) {
  // Without a configuration folder there is no library to read or write.
  {
    World w;
    ASSERT_TRUE(RunCommand(w.app, cmd::ToolLibrary));
    EXPECT_EQ(w.fake.beeps, 1);
    EXPECT_TRUE(w.fake.dialogsRun.empty());
  }
  TempFolder folder;
  test::FakePlatform fake;
  {
    Application app(fake, folder.path(), folder.path());
    InitSettings(app);
    GiveTools(app);
    fake.dialogs["TDialogPcbToolData"] = [](DialogForm& form) {
      static_cast<TDialogPcbToolData&>(form).diameter = "0.2";
      return true;
    };
    ASSERT_TRUE(RunCommand(app, cmd::ToolLibrary));
    EXPECT_FLOAT_EQ(app.tools[0].Diameter, 0.2f);
    EXPECT_TRUE(fs::exists(folder.path() + "Isolith.too"));

    fake.dialogs["TDialogDrill"] = [](DialogForm& form) {
      static_cast<TDialogDrill&>(form).millingTool = 1;
      return true;
    };
    ASSERT_TRUE(RunCommand(app, cmd::SelectedTools));
    EXPECT_EQ(app.settings.MillingTool, 1);
  }
  EXPECT_EQ(fake.dialogsRun, (std::vector<std::string>{"TDialogPcbToolData", "TDialogDrill"}));
  Application again(fake, folder.path(), folder.path());
  InitSettings(again);
  EXPECT_EQ(again.settings.MillingTool, 1);
  EXPECT_FLOAT_EQ(again.tools[0].Diameter, 0.2f);
}

}  // namespace
}  // namespace isolith
