#include "commands/DisplayCommands.h"

#include <gtest/gtest.h>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "params/TDialogItemColor.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

struct World {
  test::FakePlatform fake;
  Application app{fake};
  World() { InitSettings(app); }
};

TEST(DisplayCommands, ColourSetsWriteTheirColoursAndTickByTheBackground) {
  World w;
  const struct {
    int id;
    uint32_t background, contour;
    bool ticked;
  } rows[] = {
      {cmd::BlackBackground, 0x000000, 0xFF8080, true},
      {cmd::GreenBackground, 0x008000, 0x00FFFF, true},
      {cmd::OrangeBackground, 0x006060, 0xC0C0C0, false},  // its row looks for 0x006080
      {cmd::WhiteBackground, 0xFFFFFF, 0xFF8080, true},
  };
  for (const auto& r : rows) {
    w.app.board.FinalRendering = true;
    w.app.settings.ClientBackground = 0x123456;
    ASSERT_TRUE(RunCommand(w.app, r.id));
    EXPECT_EQ(w.app.settings.BoardBackground, r.background) << r.id;
    EXPECT_EQ(w.app.settings.BoardContour, r.contour) << r.id;
    EXPECT_EQ(w.app.settings.ClientBackground, kColourAuto);
    EXPECT_FALSE(w.app.board.FinalRendering);
    for (int id = cmd::BlackBackground; id <= cmd::WhiteBackground; ++id)
      EXPECT_EQ(CommandChecked(id, w.app), id == r.id && r.ticked) << r.id << " " << id;
  }
}

TEST(DisplayCommands, CustomiseWritesOnOkOnly) {
  World w;
  w.fake.dialogs["TDialogItemColor"] = [](DialogForm& form) {
    auto& colours = dynamic_cast<TDialogItemColor&>(form);
    EXPECT_EQ(colours.title, "Application colours");
    EXPECT_EQ(colours.rows.size(), 12u);
    EXPECT_EQ(colours.rows.back().label, "Final drills");
    colours.rows[0].colour = 0x123456;
    return false;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CustomiseColours));
  EXPECT_EQ(w.app.settings.BoardBackground, 0x008000u);
  w.fake.dialogs["TDialogItemColor"] = [](DialogForm& form) {
    dynamic_cast<TDialogItemColor&>(form).rows[0].colour = 0x123456;
    return true;
  };
  ASSERT_TRUE(RunCommand(w.app, cmd::CustomiseColours));
  EXPECT_EQ(w.app.settings.BoardBackground, 0x123456u);
}

TEST(DisplayCommands, UnitsZoomOutAndHelp) {
  World w;
  Settings& s = w.app.settings;
  ASSERT_TRUE(RunCommand(w.app, cmd::Inches));
  EXPECT_EQ(s.LengthUnit, kLengthInch);
  EXPECT_EQ(s.LengthUnitLabel, "\"");
  ASSERT_TRUE(RunCommand(w.app, cmd::SpeedUnitLast));
  EXPECT_EQ(s.SpeedUnit, kSpeedInchPerS);
  EXPECT_EQ(s.SpeedUnitLabel, "\"/s");
  EXPECT_TRUE(CommandChecked(cmd::SpeedUnitLast, w.app));

  // Zoom out on the whole card beeps; the wheel steps beep at their limits too.
  test::AddPad(w.app.board, 0, 5, 5);
  RequestRepaint(w.app);
  ASSERT_TRUE(RunCommand(w.app, cmd::ZoomOut));
  EXPECT_EQ(w.fake.beeps, 1);
  ZoomStepCommand(w.app, false, 0, 0);
  EXPECT_EQ(w.fake.beeps, 2);

  ASSERT_TRUE(RunCommand(w.app, cmd::About));
  EXPECT_NE(w.fake.LastMessage().find("Isolith 0.1.0"), std::string::npos);
  ASSERT_TRUE(RunCommand(w.app, cmd::GeneralHelp));
  EXPECT_NE(w.fake.LastMessage().find("Page Down"), std::string::npos);
  // No manual beside the program: said, not faked.
  w.app.ProgramFolder = "/nonexistent/";
  ASSERT_TRUE(RunCommand(w.app, cmd::UsersManual));
  EXPECT_NE(w.fake.LastMessage().find("cannot be found"), std::string::npos);
  EXPECT_TRUE(w.fake.processes.empty());
}

}  // namespace
}  // namespace isolith
