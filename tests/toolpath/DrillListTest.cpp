#include <gtest/gtest.h>

#include <vector>

#include "core/board/BoardOps.h"
#include "support/FakePlatform.h"
#include "toolpath/DrillList.h"
#include "toolpath/DrillListForm.h"

namespace isolith {
namespace {

class DrillList : public ::testing::Test {
 protected:
  // One hole per diameter given, each with a code of its own, in the order given.
  void Holes(const std::vector<float>& diameters) {
    TDrill* tail = LastOf(board.Drills);
    for (float d : diameters) {
      board.DrillDiameter[next_] = d;
      AppendTo(board.Drills, tail, new TDrill{static_cast<uint8_t>(next_), 0, 1, 1, nullptr});
      ++next_;
    }
  }

  // Drilling tools in slots 0, 1, 2... with these diameters, all selected.
  void Tools(const std::vector<float>& diameters) {
    for (size_t i = 0; i < diameters.size(); ++i) {
      tools[i].Diameter = diameters[i];
      settings.DrillingLib[i] = static_cast<int>(i);
    }
  }

  std::vector<float> Diameters() const {
    std::vector<float> out;
    for (const TDrillRow& row : list.rows)
      if (RowUsed(row)) out.push_back(row.diameter);
    return out;
  }

  Board board;
  Settings settings;
  ToolTable tools{};
  TDrillList list;
  int next_ = 0;
};

TEST_F(DrillList, RowsGroupCloseDiametersAndSortAscending) {
  settings.DrillingMode = 1;
  settings.DrillingTool = 4;
  Holes({0.9f, 0.8f, 0.805f, 0.795f});
  list.outputTools[0] = 3;
  BuildDrillList(list, board, settings, tools);
  // 0.805 joins the row of 0.8, which keeps the diameter that came first.
  EXPECT_EQ(Diameters(), (std::vector<float>{0.8f, 0.9f}));
  EXPECT_EQ(list.rows[0].tool, 4);  // one single tool
  EXPECT_FALSE(RowUsed(list.rows[2]));
  EXPECT_EQ(list.rows[2].tool, -1);
  EXPECT_EQ(list.outputTools[0], -1);
  for (const TDrill* d = board.Drills; d; d = d->next) EXPECT_EQ(DrillToolOf(list, board, *d), 4);
}

TEST_F(DrillList, AThirteenthDiameterHasNoRowOfItsOwn) {
  settings.DrillingMode = 2;
  Tools({0.5f});
  std::vector<float> sizes;
  for (int i = 0; i < 12; ++i) sizes.push_back(1.0f + 0.1f * i);
  sizes.push_back(0.6f);   // dropped: no tool unless a row is within 0.05
  sizes.push_back(2.13f);  // dropped, but within 0.05 of the row of 2.1
  Holes(sizes);
  BuildDrillList(list, board, settings, tools);
  EXPECT_EQ(Diameters().size(), 12u);
  EXPECT_FLOAT_EQ(list.rows[0].diameter, 1.0f);
  const TDrill* d = board.Drills;
  for (int i = 0; i < 12; ++i) d = d->next;
  EXPECT_EQ(DrillToolOf(list, board, *d), -1);
  EXPECT_EQ(DrillToolOf(list, board, *d->next), 0);

  // A row counts the holes within 0.05, which can belong to its neighbour.
  Board b;
  TDrillList l;
  b.DrillDiameter[0] = 0.80f;
  b.DrillDiameter[1] = 0.83f;
  b.Drills = new TDrill{0, 0, 0, 0, new TDrill{1, 0, 0, 0, nullptr}};
  BuildDrillList(l, b, settings, tools);
  EXPECT_EQ(RowHoleCount(l.rows[0], b), 2);
  EXPECT_EQ(RowHoleCount(l.rows[1], b), 2);
}

TEST_F(DrillList, ToolChoiceBySmallerOrGreaterWithFallbacks) {
  settings.BoringDrills = false;
  Tools({0.6f, 1.0f, 0.8f, 1.5f});
  tools[3].Profile = kProfileConical;  // does not qualify
  settings.DrillingLib[4] = 30;        // an empty slot: does not qualify
  settings.DrillingMode = 2;
  EXPECT_EQ(ChooseDrillTool(0.9, board, settings, tools), 2);
  EXPECT_EQ(ChooseDrillTool(0.8f, board, settings, tools), 2);
  EXPECT_EQ(ChooseDrillTool(0.5, board, settings, tools), 0);  // all larger: the smallest above
  EXPECT_EQ(ChooseDrillTool(3.0, board, settings, tools), 1);
  settings.DrillingMode = 3;
  EXPECT_EQ(ChooseDrillTool(0.9, board, settings, tools), 1);
  EXPECT_EQ(ChooseDrillTool(3.0, board, settings, tools), 1);  // all smaller: the largest below
  settings.DrillingMode = 1;
  settings.DrillingTool = 17;
  EXPECT_EQ(ChooseDrillTool(0.9, board, settings, tools), 17);
  settings.DrillingMode = 2;
  settings.DrillingLib.fill(-1);
  EXPECT_EQ(ChooseDrillTool(0.9, board, settings, tools), -1);

  // Ties go to the first selected.
  ToolTable same{};
  same[5].Diameter = 1.0f;
  same[2].Diameter = 1.0f;
  settings.DrillingLib = {5, 2, -1, -1, -1, -1, -1, -1};
  EXPECT_EQ(ChooseDrillTool(1.2, board, settings, same), 5);
}

TEST_F(DrillList, BoredHolesShareTheToolOfTheSmallestOfThem) {
  settings.DrillingMode = 3;
  settings.BoringDrills = true;
  settings.BoringThreshold = 2;
  Tools({1.0f, 2.5f});
  Holes({3.0f, 2.0f, 0.9f});
  BuildDrillList(list, board, settings, tools);
  EXPECT_EQ(Diameters(), (std::vector<float>{0.9f, 2.0f, 3.0f}));
  EXPECT_EQ(list.rows[0].tool, 0);  // below the threshold: closest greater
  EXPECT_EQ(list.rows[1].tool, 0);  // t = 2.0: the largest tool not above it
  EXPECT_EQ(list.rows[2].tool, 0);
  settings.BoringDrills = false;
  BuildDrillList(list, board, settings, tools);
  EXPECT_EQ(list.rows[1].tool, 1);
  EXPECT_EQ(list.rows[2].tool, 1);  // by the fallback
}

TEST_F(DrillList, DialogShowsRowsAndWritesChosenTools) {
  settings.DrillingMode = 2;
  settings.BoringDrills = false;
  Tools({0.7f, 1.0f});
  Holes({0.8f, 0.8f, 1.2f});
  BuildDrillList(list, board, settings, tools);
  TDialogDrillList form(list, board, settings, tools, ',');
  EXPECT_EQ(form.title, "Drilling tools (3 holes)");
  EXPECT_TRUE(form.rows[0].visible);
  EXPECT_FALSE(form.rows[2].visible);
  EXPECT_EQ(form.rows[0].diameter, "0,80");
  EXPECT_EQ(form.rows[0].holes, "2");
  EXPECT_EQ(form.rows[0].tools, (std::vector<int>{0, 1}));
  EXPECT_EQ(form.rows[0].labels.size(), 2u);
  EXPECT_EQ(form.rows[0].chosen, 0);
  EXPECT_EQ(form.rows[1].chosen, 1);
  EXPECT_TRUE(form.Highlights(*board.Drills));
  form.SelectRow(1);
  EXPECT_FALSE(form.Highlights(*board.Drills));
  form.SelectRow(5);  // a hidden row cannot be checked
  EXPECT_EQ(form.selectedRow, 1);
  form.rows[1].chosen = 0;
  test::FakePlatform platform;
  EXPECT_TRUE(form.Accept(platform));
  EXPECT_EQ(list.rows[1].tool, 0);

  // With one single tool it is the only choice, and OK changes nothing.
  settings.DrillingMode = 1;
  settings.DrillingTool = 9;
  TDialogDrillList single(list, board, settings, tools, '.');
  EXPECT_EQ(single.rows[0].tools, std::vector<int>{9});
  EXPECT_EQ(single.rows[0].chosen, 0);
  EXPECT_TRUE(single.Accept(platform));
  EXPECT_EQ(list.rows[1].tool, 0);
}

TEST_F(DrillList, CommandBuildsShowsOnTheDrillLayerOrRefuses) {
  test::FakePlatform platform;
  board.ActiveLayer = 2;
  EXPECT_FALSE(ShowDrillList(list, board, platform, settings, tools));
  EXPECT_EQ(platform.beeps, 1);
  EXPECT_TRUE(platform.dialogsRun.empty());

  Holes({0.8f});
  int shownOn = -1;
  platform.dialogs["TDialogDrillList"] = [&](DialogForm&) {
    shownOn = board.ActiveLayer;
    return true;
  };
  EXPECT_TRUE(ShowDrillList(list, board, platform, settings, tools));
  EXPECT_EQ(shownOn, kDrillLayer);
  EXPECT_EQ(board.ActiveLayer, 2);
  EXPECT_FLOAT_EQ(list.rows[0].diameter, 0.8f);  // built because it was empty
}

}  // namespace
}  // namespace isolith
