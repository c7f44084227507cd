#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "commands/WindowTitle.h"
#include "import/TDialogImport.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::TempFolder;

namespace fs = std::filesystem;

void WriteGerber(const std::string& path, int pads) {
  std::ofstream out(path);
  out << "%FSLAX24Y24*%\n%MOIN*%\n%ADD10C,0.0600*%\nD10*\n";
  for (int i = 0; i < pads; ++i) out << "X0" << (10 + i) << "0000Y010000D03*\n";
  out << "M02*\n";
}

TEST(FileCommands, NewCircuitAndAdditionalLayer) {
  TempFolder folder;
  WriteGerber(folder.path() + "top.gbr", 3);
  WriteGerber(folder.path() + "bottom.gbr", 2);
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);

  // Cancel: nothing happens, the dialog started in the program folder.
  fake.files = {""};
  ASSERT_TRUE(RunCommand(app, cmd::NewCircuit));
  ASSERT_EQ(fake.fileRequests.size(), 1u);
  EXPECT_EQ(fake.fileRequests[0].folder, folder.path());
  EXPECT_EQ(app.board.LayerCount, 0);

  fake.files = {folder.path() + "top.gbr"};
  ASSERT_TRUE(RunCommand(app, 100));  // the toolbar's button
  EXPECT_EQ(app.board.LayerCount, 1);
  EXPECT_EQ(CountOf(app.board.Pads[0]), 3);

  fake.files = {folder.path() + "bottom.gbr"};
  ASSERT_TRUE(RunCommand(app, cmd::AdditionalLayer));
  EXPECT_EQ(app.board.LayerCount, 2);
  EXPECT_EQ(CountOf(app.board.Pads[0]), 3);
  EXPECT_EQ(CountOf(app.board.Pads[1]), 2);
  EXPECT_EQ(WindowTitle(app.board), "Isolith  -  BOTTOM.GBR   (Layer 2/2)");

  // A new circuit replaces the whole job.
  fake.files = {folder.path() + "bottom.gbr"};
  ASSERT_TRUE(RunCommand(app, cmd::NewCircuit));
  EXPECT_EQ(app.board.LayerCount, 1);
  EXPECT_EQ(CountOf(app.board.Pads[0]), 2);
  EXPECT_EQ(app.board.Pads[1], nullptr);
}

TEST(FileCommands, ImportScalesAreSavedOnOk) {
  TempFolder folder;
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  fake.dialogs["TDialogImport"] = [](DialogForm& form) {
    auto& d = static_cast<TDialogImport&>(form);
    d.scaleIn = "2.5";
    d.flipY = true;
    return true;
  };
  ASSERT_TRUE(RunCommand(app, 12423));  // Eagle
  EXPECT_FLOAT_EQ(app.settings.ImportFormat[kRowEagle].ScaleIn, 2.5f);
  EXPECT_EQ(app.settings.ImportFormat[kRowEagle].FlipXY, 2);
  std::ifstream in(folder.path() + "Isolith.ini", std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  EXPECT_NE(text.str().find("EagScaleIn=2.5\r\n"), std::string::npos);

  // Cancel keeps the row.
  fake.dialogs["TDialogImport"] = [](DialogForm& form) {
    static_cast<TDialogImport&>(form).scaleIn = "7";
    return false;
  };
  ASSERT_TRUE(RunCommand(app, 12423));
  EXPECT_FLOAT_EQ(app.settings.ImportFormat[kRowEagle].ScaleIn, 2.5f);
}

TEST(BoardCommands, FlipAndTurnEndWithARepaint) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  test::AddPad(b, 0, 10, 20);
  b.LayerCount = 1;
  b.HoverPad = b.Pads[0];
  ASSERT_TRUE(RunCommand(app, 104));  // the toolbar's "Flip X"
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 90);
  EXPECT_EQ(b.HoverPad, nullptr);
  EXPECT_EQ(fake.repaints, 1);
  ASSERT_TRUE(RunCommand(app, cmd::FlipVertically));
  EXPECT_FLOAT_EQ(b.Pads[0]->y, 50);
  ASSERT_TRUE(RunCommand(app, cmd::Rotate90));
  ASSERT_TRUE(RunCommand(app, cmd::RotateMinus90));
  EXPECT_FLOAT_EQ(b.Pads[0]->x, 90);
  EXPECT_FLOAT_EQ(b.Pads[0]->y, 50);
  b.PadSizeX[0][10] = 2;
  ASSERT_TRUE(RunCommand(app, cmd::RotatePads90));
  EXPECT_FLOAT_EQ(b.PadSizeY[0][10], 2);
  ASSERT_TRUE(RunCommand(app, cmd::Reframe));
  EXPECT_NEAR(b.Pads[0]->x, 2.54, 1e-4);
  EXPECT_NEAR(b.CardWidth, 5.08, 1e-4);
  EXPECT_EQ(fake.beeps, 0);
}

TEST(WindowTitle, NamesTheActiveLayer) {
  Board b;
  EXPECT_EQ(WindowTitle(b), "Isolith");
  test::AddPad(b, 0, 1, 1);
  test::AddDrill(b, 1, 1);
  b.LayerName[0] = "TOP.GBR";
  b.LayerName[4] = "HOLES.DRL";
  b.LayerCount = 2;
  EXPECT_EQ(WindowTitle(b), "Isolith  -  TOP.GBR   (Layer 1/1)");
  b.ActiveLayer = kDrillLayer;
  EXPECT_EQ(WindowTitle(b), "Isolith  -  HOLES.DRL   (Drills)");
  b.ActiveLayer = kCutoutLayer;
  EXPECT_EQ(WindowTitle(b), "Isolith   (Card contour)");
}

}  // namespace
}  // namespace isolith
