#include "commands/CommandTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "TestBoards.h"
#include "commands/PendingCommands.h"

namespace isolith {
namespace {

using test::AddCutout;
using test::AddDrill;
using test::AddPad;
using test::AddTrack;

void ForEachRow(const std::vector<MenuNode>& nodes, const std::function<void(const MenuNode&)>& f) {
  for (const MenuNode& n : nodes) {
    f(n);
    ForEachRow(n.children, f);
  }
}

TEST(CommandTable, MenuRowsAndTableAgree) {
  std::multiset<int> menuIds;
  int topLevel = 0;
  for (const MenuNode& top : MenuBar()) {
    EXPECT_EQ(top.kind, MenuNode::Submenu);
    ++topLevel;
  }
  EXPECT_EQ(topLevel, 6);
  bool recent = false;
  ForEachRow(MenuBar(), [&](const MenuNode& n) {
    if (n.kind == MenuNode::RecentFiles) recent = true;
    if (n.kind != MenuNode::Command) return;
    menuIds.insert(n.id);
    const CommandInfo* c = FindCommand(n.id);
    ASSERT_NE(c, nullptr) << n.id;
    EXPECT_FALSE(std::string(n.text).empty()) << n.id;
  });
  EXPECT_TRUE(recent);
  // Every command of the table has a menu row, the recent files apart; only 12102 has two.
  for (const CommandInfo& c : CommandTable()) {
    if (c.id >= cmd::Recent1 && c.id <= cmd::Recent5) continue;
    EXPECT_EQ(menuIds.count(c.id), c.id == cmd::Simulate ? 2u : 1u) << c.id;
  }
  EXPECT_STREQ(FindCommand(cmd::NewCircuit)->shortcut, "Ctrl+O");
  EXPECT_STREQ(FindCommand(cmd::Dimensions)->shortcut, "Ctrl+D");
  EXPECT_FALSE(FindCommand(cmd::Layer1)->bindShortcut);
  EXPECT_TRUE(FindCommand(cmd::FinalRendering)->checkable);
  EXPECT_STREQ(FindCommand(cmd::Rotate90)->text, "Rotate &90°");
  EXPECT_EQ(RecentFileText(2, "BOARD.GBR"), "&3 - BOARD.GBR");
}

TEST(CommandTable, ToolbarIssuesMenuCommands) {
  EXPECT_EQ(ToolbarCommand(100), cmd::NewCircuit);
  EXPECT_EQ(ToolbarCommand(103), cmd::Reframe);
  EXPECT_EQ(ToolbarCommand(119), cmd::Layer1);
  EXPECT_EQ(ToolbarCommand(124), cmd::Layer6);
  EXPECT_EQ(ToolbarCommand(135), cmd::ThermalPad);
  EXPECT_EQ(ToolbarCommand(136), cmd::AddCuttingTabs);
  EXPECT_EQ(ToolbarCommand(99), 0);
  EXPECT_EQ(ToolbarCommand(137), 0);
  for (int bar = 100; bar <= 136; ++bar) {
    const int id = ToolbarCommand(bar);
    EXPECT_TRUE(FindCommand(id) != nullptr || id == cmd::Reframe || id == cmd::ThermalPad) << bar;
  }
}

TEST(CommandTable, RuleFollowsTheModel) {
  Board b;
  DrawnMarks drawn;
  // An empty job: only the "always" commands.
  EXPECT_FALSE(CommandRuleAllows(cmd::CloseLayer, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::Information, b, drawn));
  EXPECT_TRUE(CommandRuleAllows(cmd::NewCircuit, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(12302, b, drawn));

  AddPad(b, 0, 10, 10);
  AddTrack(b, 1, 0, 0, 5, 5);
  b.LayerCount = 2;
  EXPECT_TRUE(CommandRuleAllows(cmd::Information, b, drawn));
  EXPECT_TRUE(CommandRuleAllows(cmd::ModifyPads, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::ModifyTracks, b, drawn));
  EXPECT_TRUE(CommandRuleAllows(12302, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(12303, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::CalculateHatches, b, drawn));

  // The drill layer: the import slot of pads is not a layer's pads, and no information.
  b.ActiveLayer = kDrillLayer;
  AddPad(b, kImportSlot, 1, 1);
  EXPECT_FALSE(CommandRuleAllows(cmd::ModifyPads, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::Information, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::CalculateContours, b, drawn));

  // Card contour definition: more than one layer, or one without drills, never on layer 5.
  b.ActiveLayer = 0;
  b.LayerCount = 1;
  EXPECT_TRUE(CommandRuleAllows(cmd::DefineCardContour, b, drawn));
  AddDrill(b, 3, 3);
  EXPECT_FALSE(CommandRuleAllows(cmd::DefineCardContour, b, drawn));
  b.LayerCount = 2;
  EXPECT_TRUE(CommandRuleAllows(cmd::DefineCardContour, b, drawn));
  b.ActiveLayer = kCutoutLayer;
  EXPECT_FALSE(CommandRuleAllows(cmd::DefineCardContour, b, drawn));
  b.ActiveLayer = 0;

  // Reference pad: set and chosen on another layer.
  EXPECT_FALSE(CommandRuleAllows(cmd::AdjustOnReference, b, drawn));
  b.RefPad = b.Pads[0];
  b.RefLayer = 0;
  EXPECT_FALSE(CommandRuleAllows(cmd::AdjustOnReference, b, drawn));
  b.ActiveLayer = 1;
  EXPECT_TRUE(CommandRuleAllows(cmd::AdjustOnReference, b, drawn));

  // Re-enable rules read what the last repaint drew.
  b.ActiveLayer = 1;
  EXPECT_FALSE(CommandRuleAllows(cmd::EnableTrack, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::EnableZone, b, drawn));
  drawn.disabledTrack = true;
  EXPECT_TRUE(CommandRuleAllows(cmd::EnableTrack, b, drawn));
  EXPECT_TRUE(CommandRuleAllows(cmd::EnableZone, b, drawn));
  EXPECT_FALSE(CommandRuleAllows(cmd::DisableCopperPlane, b, drawn));
  drawn.copperPlane = true;
  EXPECT_TRUE(CommandRuleAllows(cmd::DisableCopperPlane, b, drawn));

  EXPECT_FALSE(CommandRuleAllows(12306, b, drawn));
  AddCutout(b);
  EXPECT_TRUE(CommandRuleAllows(12306, b, drawn));
  EXPECT_TRUE(CommandRuleAllows(cmd::AddCuttingTabs, b, drawn));
}

TEST(CommandTable, EnabledNeedsAHandlerAndNoReader) {
  Board b;
  DrawnMarks drawn;
  AddPad(b, 0, 10, 10);
  b.LayerCount = 1;
  EXPECT_TRUE(CommandEnabled(cmd::CloseLayer, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::Layer1, b, drawn));
  // The rule allows it but its handler is not built.
  EXPECT_TRUE(CommandRuleAllows(cmd::MachineIoTest, b, drawn));
  EXPECT_FALSE(CommandImplemented(cmd::MachineIoTest));
  EXPECT_FALSE(CommandEnabled(cmd::MachineIoTest, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::ThermalPad, b, drawn));  // the editing is built; pads stand
  EXPECT_TRUE(CommandEnabled(cmd::Dimensions, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::Reframe, b, drawn));
  // The toolpath commands are built: their rule alone decides.
  EXPECT_TRUE(CommandEnabled(cmd::CalculateContours, b, drawn));
  EXPECT_FALSE(CommandEnabled(cmd::CalculateHatches, b, drawn));  // no contours yet
  EXPECT_FALSE(CommandEnabled(cmd::ListOfDrills, b, drawn));      // no drills
  EXPECT_TRUE(CommandEnabled(cmd::AutoDetectCardContour, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::ToolLibrary, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::SelectedTools, b, drawn));
  // So are the output commands.
  for (int id : {cmd::Save, cmd::Mill, cmd::Simulate, cmd::CenteringHoles, cmd::OutputDataFormat})
    EXPECT_TRUE(CommandEnabled(id, b, drawn)) << id;
  b.LayerCount = 0;
  EXPECT_FALSE(CommandEnabled(cmd::Mill, b, drawn));
  EXPECT_TRUE(CommandEnabled(cmd::OutputDataFormat, b, drawn));
  b.LayerCount = 1;
  // An id foreign to the program is enabled, except while a reader runs.
  EXPECT_TRUE(CommandEnabled(4711, b, drawn));
  b.Busy = true;
  EXPECT_FALSE(CommandEnabled(4711, b, drawn));
  EXPECT_FALSE(CommandEnabled(cmd::CloseLayer, b, drawn));
  EXPECT_FALSE(CommandEnabled(cmd::Exit, b, drawn));
}

TEST(PendingCommands, RectanglesBeepItemsEnd) {
  std::set<int> rectangles;
  for (const PendingInfo& p : PendingCommandTable())
    if (IsRectanglePick(p.id)) rectangles.insert(p.id);
  EXPECT_EQ(rectangles, (std::set<int>{12111, 12214, 12224, 12235, 12307}));
  EXPECT_TRUE(IsItemPick(12013));
  EXPECT_TRUE(IsItemPick(12104));
  EXPECT_FALSE(IsItemPick(0));
  EXPECT_FALSE(IsItemPick(12002));
  EXPECT_EQ(FindPending(12123)->after, AfterClick::Stays);
  EXPECT_EQ(FindPending(12203)->after, AfterClick::WithStay);
  EXPECT_EQ(FindPending(12307)->after, AfterClick::Ends);
}

}  // namespace
}  // namespace isolith
