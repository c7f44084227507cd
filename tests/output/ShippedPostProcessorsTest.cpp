// The post-processors shipped in data/postprocessors: found by name, their feeds in mm/min
// whatever the speed unit, and the words each controller expects at a tool change and a bored
// hole.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "output/OutputFormatForm.h"
#include "output/driver/OutputStream.h"
#include "output/driver/PenMachine.h"
#include "output/postprocessor/PostProcessorWords.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "params/Settings.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

const std::string kProgramFolder = std::string(ISOLITH_SOURCE_DIR) + "/data/";

// Tool 2 at 12000 rpm bores a hole of radius 0.5 at (10, 20), 1 mm deep, fed at 300 mm/min and
// plunged at half of it, in the section walk's frame (Z taken negative).
std::string BoredHole(const TPostProcessor& pp, int speedUnit) {
  ToolTable tools{};
  tools[1].RotationSpeed = 12000;
  TOutputStream stream;
  TOutputState state;
  state.Stream = &stream;
  state.Format = kOutputPostProcessor;
  state.ScaleZ = -1;
  state.ClearHeight = 2;
  state.ClearSpeed = 50;
  PostProcessorWords words(pp, speedUnit);
  PenMachine pen{state, words, tools, 0};
  WriteHeader(pen);
  SelectTool(pen, 1, 1);
  SetToolSpeeds(pen, 300);
  RapidTo(pen, 10, 20, 1);
  CircleAt(pen, 0.5f);
  StopTool(pen);
  WriteFooter(pen);
  return stream.Text();
}

TEST(ShippedPostProcessors, FoundByNameWithTheirTitles) {
  const std::vector<TShippedPostProcessor> shipped = ShippedPostProcessors(kProgramFolder);
  std::vector<std::string> names, titles;
  for (const TShippedPostProcessor& p : shipped) names.push_back(p.name), titles.push_back(p.title);
  EXPECT_EQ(names, (std::vector<std::string>{"grbl", "linuxcnc", "mach", "marlin"}));
  EXPECT_EQ(titles, (std::vector<std::string>{"GRBL 1.1", "LinuxCNC", "Mach3 / Mach4", "Marlin"}));
  ASSERT_NE(FindShippedPostProcessor(shipped, "LinuxCNC"), nullptr);
  EXPECT_EQ(FindShippedPostProcessor(shipped, "LinuxCNC")->name, "linuxcnc");
  EXPECT_EQ(FindShippedPostProcessor(shipped, "iso"), nullptr);
  EXPECT_TRUE(ShippedPostProcessors("/nonexistent/").empty());
  TPostProcessor pp;
  EXPECT_FALSE(LoadShippedPostProcessor(pp, {"gone", "Gone", "/nonexistent/gone.ppf"}, 0));
  EXPECT_EQ(pp.Title, TPostProcessor{}.Title);
}

TEST(ShippedPostProcessors, EachControllerGetsItsOwnWordsAndFeedsInMmPerMin) {
  const struct {
    const char* name;
    int speedUnit;
    std::vector<std::string> lines;  // in this order, among the others
  } cases[] = {
      {"linuxcnc",
       kSpeedMmPerS,
       {"G17 G21 G90 G91.1 G94 G40 G49 G54 G80", "T2 M6", "G43 H2", "M3 S12000", "G4 P3", "F150",
        "G1 Z-1", "F300", "G1 X10.5", "G2 X10.5 Y20 I-0.5 J0", "G1 X10", "F3000", "G0 Z2", "M5",
        "M2"}},
      {"linuxcnc", kSpeedMmPerMin, {"F150", "G1 Z-1", "F300", "F3000"}},
      {"linuxcnc", kSpeedMPerMin, {"F150", "G1 Z-1", "F300", "F3000"}},
      {"linuxcnc", kSpeedInchPerS, {"F150", "G1 Z-1", "F300", "F3000"}},
      {"mach", kSpeedMmPerS, {"T2 M6", "G43 H2", "G2 X10.5 Y20 I-0.5 J0", "M5", "M30"}},
      {"grbl",
       kSpeedMmPerS,
       {"(MSG,Change to tool 2, zero Z, then resume)", "M0", "M3 S12000", "G4 P3", "F150",
        "G2 X10.5 Y20 I-0.5 J0", "M5", "M2"}},
      {"marlin",
       kSpeedMmPerS,
       {"G21", "G90", "M0 Tool 2: insert, zero Z, resume", "M3 S12000", "G4 S3", "G1 F150",
        "G2 X10.5 Y20 I-0.5 J0", "G1 F3000", "G0 Z2", "M5", "M84"}},
  };
  const std::vector<TShippedPostProcessor> shipped = ShippedPostProcessors(kProgramFolder);
  for (const auto& c : cases) {
    const TShippedPostProcessor* found = FindShippedPostProcessor(shipped, c.name);
    ASSERT_NE(found, nullptr) << c.name;
    TPostProcessor pp;
    ASSERT_TRUE(LoadShippedPostProcessor(pp, *found, c.speedUnit));
    const std::string text = BoredHole(pp, c.speedUnit);
    size_t at = 0;
    for (const std::string& line : c.lines) {
      const size_t next = text.find("\r\n" + line + "\r\n", at);
      EXPECT_NE(next, std::string::npos)
          << c.name << " unit " << c.speedUnit << ": " << line << " missing or out of order in\n"
          << text;
      if (next != std::string::npos) at = next + 1;
    }
  }
}

// "Output data format" lists the shipped post-processors after the user's own; OK copies the one
// chosen into "Isolith.ppf", asking first when the user's own file would be replaced.
TEST(ShippedPostProcessors, OutputDataFormatImportsOneIntoTheUsersFile) {
  const struct {
    std::string own;  // title of the "Isolith.ppf" there before, empty for none
    size_t row;
    bool sections;
    Answer answer;
    bool accepted;
    std::string titleAfter;
    size_t questions, messages;
  } cases[] = {
      {"", 10, true, Answer::Yes, true, "GRBL 1.1", 0, 0},
      {"Mine", 11, true, Answer::No, false, "Mine", 1, 0},
      {"Mine", 11, true, Answer::Yes, true, "LinuxCNC", 1, 0},
      {"Mine", 12, false, Answer::Yes, false, "Mine", 0, 1},
      {"Mine", 9, false, Answer::Yes, true, "Mine", 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.row);
    test::TempFolder config;
    TPostProcessor own;
    own.Title = c.own;
    if (!c.own.empty()) {
      ASSERT_TRUE(WritePostProcessor(own, config.path(), "Isolith"));
    }
    Settings settings;
    settings.MachineFile = config.path() + "board.iso";
    TPostProcessor pp;
    TDialogCopOutput form(settings, pp, config.path(), "board", nullptr, '.',
                          ShippedPostProcessors(kProgramFolder));
    ASSERT_EQ(form.formats.size(), 14u);
    EXPECT_EQ(form.formats[13].label, "Post-processor \"Marlin\" (shipped)");
    form.sections = false;
    form.ChooseRow(c.row);
    EXPECT_EQ(form.SelectedRow(), c.row);
    EXPECT_EQ(form.PostProcessorEnabled(), c.row == 9);
    form.sections = c.sections;
    test::FakePlatform platform;
    platform.answers.push_back(c.answer);
    EXPECT_EQ(form.Accept(platform), c.accepted);
    EXPECT_EQ(platform.questions.size(), c.questions);
    EXPECT_EQ(platform.messages.size(), c.messages);
    TPostProcessor after;
    ReadPostProcessor(after, config.path(), "Isolith");
    EXPECT_EQ(after.Title, c.titleAfter);
    EXPECT_EQ(settings.MachineFormat, c.accepted ? kOutputPostProcessor : 9);
  }
  // A shipped choice gives the file the extension of its controller.
  Settings settings;
  settings.MachineFile = "/tmp/board.iso";
  TPostProcessor pp;
  TDialogCopOutput form(settings, pp, "", "board", nullptr, '.',
                        ShippedPostProcessors(kProgramFolder));
  form.ChooseRow(11);
  EXPECT_EQ(form.file, "/tmp/board.ngc");
  EXPECT_TRUE(form.sections);
}

}  // namespace
}  // namespace isolith
