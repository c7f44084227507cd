#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/board/BoardOps.h"
#include "import/OpenExcellon.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::FakePlatform;

// A drill file in millimetres, written as whole ten-thousandths (the second kind reads numbers
// as written): each point becomes one hole of tool 1, 0.8 mm.
std::string DrillFile(const std::vector<std::pair<double, double>>& holes) {
  std::string text = "M48\nMETRIC\nT1C0.8\n%\n";
  for (auto [x, y] : holes)
    text += "X" + std::to_string(long(x * 10000)) + "Y" + std::to_string(long(y * 10000)) + "\n";
  return text + "M30\n";
}

class OpenExcellon : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::path(::testing::TempDir()) / "isolith-excellon";
    std::filesystem::create_directories(folder_);
    settings.DrillImportFormat = 18;
  }

  std::string Write(const std::string& name, const std::string& text) {
    std::string path = (folder_ / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  ExcellonResult Load(const std::string& path) {
    ImportContext context{board, settings, platform, "", {}};
    context.steps.rebuildDrillTable = [this] { ++rebuilds; };
    context.steps.saveSettings = [this] { ++saves; };
    context.steps.cardThickness = [] { return 1.6f; };
    return OpenExcellonFile(context, choices, path);
  }

  void AddPad(float x, float y) {
    TPad* tail = LastOf(board.Pads[0]);
    AppendTo(board.Pads[0], tail, new TPad{3, 0, x, y, nullptr});
  }

  // An asymmetric set of pads on layer 0, fitted to the card as a layer load leaves it.
  void PadJob() {
    for (auto [x, y] : kPads) AddPad(x, y);
    board.PadSizeX[0][3] = 2;
    board.PadSizeY[0][3] = 1;
    SetCardFromContent(board, 1);
  }

  static constexpr std::pair<float, float> kPads[] = {{5, 5}, {25, 5}, {5, 15}, {10, 5}, {5, 8}};

  Board board;
  Settings settings;
  FakePlatform platform;
  ExcellonChoices choices;
  int rebuilds = 0, saves = 0;
  std::filesystem::path folder_;
};

TEST_F(OpenExcellon, DrillsOnAnEmptyJobAreAcceptedWithoutAlignment) {
  std::string path = Write("board.xyz", DrillFile({{10, 10}, {30, 10}, {10, 40}}));
  EXPECT_EQ(Load(path), ExcellonResult::Accepted);
  ASSERT_EQ(platform.questions.size(), 1u);
  EXPECT_EQ(platform.questions[0].title, "Excellon");
  EXPECT_EQ(platform.questions[0].text, "Is this file import valid?");
  EXPECT_EQ(CountOf(board.Drills), 3);
  EXPECT_NEAR(board.DrillDiameter[1], 0.8, 1e-5);
  EXPECT_EQ(board.LayerName[kDrillLayer], "BOARD.XYZ");
  EXPECT_EQ(board.ActiveLayer, 0);
  EXPECT_EQ(board.ImportDrills, nullptr);
  EXPECT_EQ(rebuilds, 1);
  EXPECT_GE(saves, 1);
  EXPECT_FLOAT_EQ(board.CentreHole1X, -1);
  // The card fits the holes with a margin; the folder and the extension are remembered.
  EXPECT_NEAR(board.CardWidth, 20 + 2 * 2.54, 1e-3);
  EXPECT_NEAR(board.CardHeight, 30 + 2 * 2.54, 1e-3);
  EXPECT_EQ(settings.ImportPath, folder_.string() + "/");
  EXPECT_EQ(settings.ImportFormat[kRowExcellon].Extension[0], "XYZ");
  EXPECT_TRUE(platform.messages.empty());
}

TEST_F(OpenExcellon, HolesMeetingThePadsNeedNoTurn) {
  PadJob();
  std::vector<std::pair<double, double>> holes;
  for (auto [x, y] : kPads) holes.push_back({x + 40, y + 3});  // shifted: alignment fixes it
  EXPECT_EQ(Load(Write("same.drl", DrillFile(holes))), ExcellonResult::Accepted);
  EXPECT_EQ(PadOverlap(board, kDrillLayer), 100);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][3], 2);  // a turn would have swapped the pad sizes
  EXPECT_EQ(settings.ImportFormat[kRowExcellon].Extension[0], "");
}

TEST_F(OpenExcellon, OrientationSearchTurnsTheBoardToMeetRotatedDrills) {
  PadJob();
  // The same holes a quarter turn away from the pads.
  std::vector<std::pair<double, double>> holes;
  for (auto [x, y] : kPads) holes.push_back({20 - y, x});
  EXPECT_EQ(Load(Write("turned.drl", DrillFile(holes))), ExcellonResult::Accepted);
  EXPECT_EQ(PadOverlap(board, kDrillLayer), 100);
  EXPECT_EQ(CountOf(board.Pads[0]), 5);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][3], 1);  // the board turned an odd number of times
  EXPECT_NEAR(board.CardWidth, 10 + 2 * 2.54, 1e-3);
  EXPECT_NEAR(board.CardHeight, 20 + 2 * 2.54, 1e-3);
}

TEST_F(OpenExcellon, CancelPutsTheJobBackExactly) {
  PadJob();
  TDrill* old = new TDrill{7, 0, 5, 5, nullptr};
  board.Drills = old;
  board.DrillDiameter[1] = 0.4f;
  board.DrillDiameter[7] = 1.1f;
  board.CentreHole1X = board.CentreHole1Y = 3;
  board.OriginX = 4;
  board.ActiveLayer = 1;
  board.LayerName[kDrillLayer] = "OLD.DRL";
  board.RefPad = board.Pads[0]->next;
  std::vector<float> positions;
  for (const TPad* p = board.Pads[0]; p; p = p->next)
    positions.insert(positions.end(), {p->x, p->y});
  const float width = board.CardWidth, height = board.CardHeight;

  std::vector<std::pair<double, double>> holes;
  for (auto [x, y] : kPads) holes.push_back({20 - y, x});
  platform.answers = {Answer::Cancel};
  EXPECT_EQ(Load(Write("turned.drl", DrillFile(holes))), ExcellonResult::Cancelled);

  EXPECT_EQ(board.Drills, old);
  EXPECT_EQ(old->next, nullptr);
  EXPECT_FLOAT_EQ(board.DrillDiameter[1], 0.4f);
  EXPECT_FLOAT_EQ(board.DrillDiameter[7], 1.1f);
  std::vector<float> after;
  for (const TPad* p = board.Pads[0]; p; p = p->next) after.insert(after.end(), {p->x, p->y});
  EXPECT_EQ(after, positions);
  EXPECT_EQ(board.RefPad, board.Pads[0]->next);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][3], 2);
  EXPECT_FLOAT_EQ(board.CardWidth, width);
  EXPECT_FLOAT_EQ(board.CardHeight, height);
  EXPECT_FLOAT_EQ(board.OriginX, 4);
  EXPECT_FLOAT_EQ(board.CentreHole1X, 3);
  EXPECT_EQ(board.ActiveLayer, 1);
  EXPECT_EQ(board.LayerName[kDrillLayer], "OLD.DRL");
  EXPECT_EQ(rebuilds, 0);

  // "No" and then Cancel in the dialog is a Cancel too.
  platform.answers = {Answer::No};
  platform.dialogs["TDialogExcellon"] = [](DialogForm&) { return false; };
  EXPECT_EQ(Load(Write("turned.drl", DrillFile(holes))), ExcellonResult::Cancelled);
  EXPECT_EQ(board.Drills, old);
  EXPECT_FLOAT_EQ(board.CardWidth, width);
}

// The modern reading puts the holes where the first layer's load put its copper, by the file's
// own numbers, and turns nothing; after a "No" the dialog's answers read the classic way.
TEST_F(OpenExcellon, ModernReadingTakesTheFirstLayersFrameUntilTheDialogAnswers) {
  PadJob();
  settings.ModernImport = true;
  std::vector<std::pair<double, double>> holes;
  for (auto [x, y] : kPads) holes.push_back({x - 2, y + 7});  // the file's frame
  const std::string path = Write("modern.drl", DrillFile(holes));
  EXPECT_EQ(Load(path), ExcellonResult::Accepted);
  EXPECT_TRUE(platform.dialogsRun.empty());
  ASSERT_EQ(CountOf(board.Drills), 5);
  EXPECT_EQ(PadOverlap(board, kDrillLayer), 100);
  EXPECT_FLOAT_EQ(board.Drills->x, board.Pads[0]->x);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][3], 2);  // no turn

  platform.answers = {Answer::No, Answer::Yes};
  platform.dialogs["TDialogExcellon"] = [](DialogForm&) { return true; };
  EXPECT_EQ(Load(path), ExcellonResult::Accepted);
  EXPECT_EQ(platform.dialogsRun, std::vector<std::string>{"TDialogExcellon"});
  EXPECT_EQ(platform.questions.size(), 3u);
}

TEST_F(OpenExcellon, NoReadsAgainWithTheDialogsChoices) {
  settings.DrillImportFormat = 17;
  std::string path = Write("retry.abc", "METRIC\nT1C0.8\nX10Y10\nX30Y10\nX10Y40\n");
  platform.answers = {Answer::No, Answer::Yes};
  platform.dialogs["TDialogExcellon"] = [](DialogForm& form) {
    auto& dialog = dynamic_cast<TDialogExcellon&>(form);
    EXPECT_EQ(dialog.zeros, 0);
    EXPECT_EQ(dialog.digits, "3.2");
    dialog.zeros = 1;  // "&trailing": numbers as written
    return true;
  };
  EXPECT_EQ(Load(path), ExcellonResult::Accepted);
  EXPECT_EQ(platform.dialogsRun, std::vector<std::string>{"TDialogExcellon"});
  ASSERT_EQ(CountOf(board.Drills), 3);
  EXPECT_EQ(choices.format, 18);
  EXPECT_EQ(settings.DrillImportFormat, 17);  // not kept as default
  // The extension joins the history once per load, not once per read.
  EXPECT_EQ(settings.ImportFormat[kRowExcellon].Extension[0], "ABC");
  EXPECT_EQ(settings.ImportFormat[kRowExcellon].Extension[1], "");
  // The size guess grew the tiny board by tens: the holes keep their shape.
  float xmin, ymin, xmax, ymax;
  BoundingBox(nullptr, nullptr, board.Drills, nullptr, xmin, ymin, xmax, ymax, false);
  EXPECT_NEAR((xmax - xmin) / (ymax - ymin), 20.0 / 30.0, 1e-4);
}

TEST_F(OpenExcellon, AFileWithoutHolesKeepsTheJob) {
  PadJob();
  TDrill* old = new TDrill{2, 0, 5, 5, nullptr};
  board.Drills = old;
  board.DrillDiameter[1] = 0.3f;
  EXPECT_EQ(Load(Write("empty.drl", "M48\nT1C0.8\n%\nM30\n")), ExcellonResult::Refused);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, "Error");
  EXPECT_EQ(platform.messages[0].text, "An error occurred while loading the file.");
  EXPECT_TRUE(platform.questions.empty());
  EXPECT_EQ(board.Drills, old);
  EXPECT_FLOAT_EQ(board.DrillDiameter[1], 0.3f);
  EXPECT_EQ(board.LayerName[kDrillLayer], "");
  EXPECT_FALSE(board.Busy);

  // A file that cannot be opened does nothing at all.
  FakePlatform quiet;
  ImportContext context{board, settings, quiet, "", {}};
  EXPECT_EQ(OpenExcellonFile(context, choices, (folder_ / "missing.drl").string()),
            ExcellonResult::NotOpened);
  EXPECT_TRUE(quiet.messages.empty());
  EXPECT_EQ(board.Drills, old);
}

TEST(ExcellonDialog, DecimalFormatRulesAndDefaults) {
  Settings settings;
  ExcellonChoices choices;
  FakePlatform platform;
  choices.digits = 2.4f;
  TDialogExcellon dialog(choices, settings, ',');
  EXPECT_EQ(dialog.digits, "2,4");
  dialog.decimalFormat = 1;
  for (const char* bad : {"0.5", "3.6", "32", "3.25", "a.1", "3;2", ""}) {
    dialog.digits = bad;
    EXPECT_FALSE(dialog.Accept(platform)) << bad;
    EXPECT_EQ(platform.LastMessage(), std::string("Invalid value.\n") + bad);
  }
  EXPECT_FALSE(choices.digitSet);  // nothing written on a refusal
  dialog.digits = "4,5";
  dialog.coordinates = 1;
  dialog.units = 1;
  dialog.zeros = 1;
  EXPECT_TRUE(dialog.Accept(platform));
  EXPECT_TRUE(choices.relative && choices.metric && choices.digitSet);
  EXPECT_EQ(choices.format, 18);
  EXPECT_FLOAT_EQ(choices.digits, 4.5f);
  EXPECT_FALSE(settings.ExlRelative);

  dialog.keepAsDefault = true;
  dialog.digits = "1.0";
  EXPECT_TRUE(dialog.Accept(platform));
  EXPECT_TRUE(settings.ExlRelative && settings.ExlMetric && settings.ExlDigitSet);
  EXPECT_EQ(settings.DrillImportFormat, 18);
  EXPECT_FLOAT_EQ(settings.ExlDigits, 1.0f);

  // "a&utomatic" takes no digits and keeps the value.
  dialog.decimalFormat = 0;
  dialog.digits = "junk";
  EXPECT_TRUE(dialog.Accept(platform));
  EXPECT_FALSE(choices.digitSet);
  EXPECT_FLOAT_EQ(choices.digits, 1.0f);
}

}  // namespace
}  // namespace isolith
