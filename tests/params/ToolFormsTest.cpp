#include "params/ToolForms.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "params/ToolFile.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

void Put(ToolTable& tools, int index, const char* name, float diameter, int profile = 0,
         float degrees = 0) {
  ResetTool(tools[index]);
  SetToolName(tools[index], name);
  tools[index].Diameter = diameter;
  tools[index].Profile = profile;
  tools[index].ConicalAngle = static_cast<float>(degrees * kDegreesToRadians);
}

class ToolFormsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("isolith-forms-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
    for (TToolData& t : tools) ResetTool(t);
    Put(tools, 0, "V-bit", 3.175f, kProfileConical, 90);
    Put(tools, 2, "Drill 1.5", 1.5f);
    Put(tools, 3, "Drill 0.5", 0.5f);
    Put(tools, 4, "Cutter", 2.5f);
    Put(tools, 5, "Drill 2", 2.0f);
    settings.LengthUnitLabel = "mm";
    settings.SpeedUnit = kSpeedMmPerS;
    settings.SpeedUnitLabel = "mm/s";
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string Dir() const { return dir_.string() + "/"; }

  fs::path dir_;
  ToolTable tools{};
  Settings settings;
  test::FakePlatform platform;
};

TEST_F(ToolFormsTest, LibraryShowsAndMovesBetweenSlots) {
  TDialogPcbToolData form(tools, settings, Dir(), '.');
  EXPECT_EQ(form.numberText, "1");
  EXPECT_EQ(form.name, "V-bit");
  EXPECT_EQ(form.diameter, "3.175");
  EXPECT_EQ(form.profile, 1);
  EXPECT_EQ(form.angle, "90");
  EXPECT_EQ(form.rotation, "8000");
  EXPECT_EQ(form.plungeSpeed, "1");  // no locked speed: shown as 60 mm/min

  form.name = "Sharp V-bit";
  form.numberText = "1+1";  // an expression; slot 2 is empty
  EXPECT_TRUE(form.NumberChanged(platform));
  EXPECT_EQ(ToolName(tools[0]), "Sharp V-bit");
  EXPECT_EQ(tools[0].AbsDrillSpeed, 60);
  EXPECT_EQ(tools[0].RelDrillSpeed, 0);
  EXPECT_EQ(form.number, 2);
  EXPECT_EQ(form.focus, TDialogPcbToolData::kNumber);
  EXPECT_EQ(form.diameter, "");
  EXPECT_EQ(form.profile, -1);

  // Beyond the table: a beep and the shown number comes back.
  form.numberText = "51";
  EXPECT_FALSE(form.NumberChanged(platform));
  EXPECT_EQ(platform.beeps, 1);
  EXPECT_EQ(form.numberText, "2");

  // A refused field keeps the slot and shows the working copy again.
  form.diameter = "200";
  form.numberText = "3";
  EXPECT_FALSE(form.NumberChanged(platform));
  EXPECT_EQ(form.number, 2);
  EXPECT_EQ(form.diameter, "");
  EXPECT_EQ(form.focus, TDialogPcbToolData::kDiameter);
  EXPECT_EQ(platform.LastMessage(),
            "Diameter :  200 mm\n\nInvalid value.\n\n  ---> Minimum value: 0\n  ---> Maximum "
            "value: 100");
}

TEST_F(ToolFormsTest, LibraryAcceptChecksStoresAndWrites) {
  TDialogPcbToolData form(tools, settings, Dir(), ',');
  form.numberText = "7";
  ASSERT_TRUE(form.NumberChanged(platform));
  form.name = "Engraver";
  form.diameter = "0,5*2";
  form.profile = 0;
  form.angle = "30";
  form.AngleChanged(platform);  // typing an angle makes the tool conical
  EXPECT_EQ(form.profile, 1);
  form.angle = "0";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPcbToolData::kAngle);
  EXPECT_EQ(platform.LastMessage(),
            "Angle :  0 \xC2\xB0\n\nInvalid value.\n\n  ---> Minimum value: 1\n  ---> Maximum "
            "value: 180");
  form.angle = "";  // blank: 90
  form.rotation = "";
  form.plungeSpeed = "2";  // mm/s
  ASSERT_TRUE(form.Accept(platform));
  const TToolData& t = tools[6];
  EXPECT_EQ(t.Diameter, 1);
  EXPECT_EQ(t.Profile, kProfileConical);
  EXPECT_FLOAT_EQ(t.ConicalAngle, static_cast<float>(90 * kDegreesToRadians));
  EXPECT_EQ(t.RotationSpeed, 8000);
  EXPECT_EQ(t.AbsDrillSpeed, 120);

  ToolTable written{};
  ASSERT_TRUE(ReadTools(written, Dir(), "Isolith"));
  EXPECT_EQ(ToolName(written[6]), "Engraver");
  EXPECT_EQ(written[6].AbsDrillSpeed, 120);

  // Plunge speed above 3000 mm/min (50 mm/s) is refused; a library that cannot be written is
  // reported and the dialog closes all the same.
  form.plungeSpeed = "51";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPcbToolData::kSpeed);
  form.plungeSpeed = "50";
  fs::remove(dir_ / "Isolith.too");
  fs::create_directories(dir_ / "Isolith.too" / "x");
  EXPECT_TRUE(form.Accept(platform));
  EXPECT_EQ(platform.messages.back().title, "Error");
  EXPECT_EQ(platform.LastMessage(),
            "Unable to write tool parameter file.\nParameters may be reinitialised.");
}

TEST_F(ToolFormsTest, LibraryCancelRestoresFromTheFile) {
  ASSERT_TRUE(WriteTools(tools, Dir(), "Isolith", true));
  platform.dialogs["TDialogPcbToolData"] = [this](DialogForm& f) {
    auto& form = static_cast<TDialogPcbToolData&>(f);
    form.diameter = "2";
    form.numberText = "3";
    EXPECT_TRUE(form.NumberChanged(platform));
    return false;  // Cancel
  };
  EXPECT_FALSE(RunToolLibraryDialog(platform, tools, settings, Dir()));
  EXPECT_FLOAT_EQ(tools[0].Diameter, 3.175f);
  EXPECT_EQ(tools[0].AbsDrillSpeed, 60);  // locked on reading
}

TEST_F(ToolFormsTest, ActiveToolsFillsMissingChoices) {
  TDialogDrill form(tools, settings, '.');
  EXPECT_EQ(form.millingTool, 0);   // the first conical tool
  EXPECT_EQ(form.hatchingTool, 0);  // as the engraving tool
  EXPECT_EQ(form.cuttingTool, 4);   // nearest to 2.54 mm
  EXPECT_EQ(form.plottingTool, 4);
  EXPECT_EQ(form.drillingTool, 2);  // 1.5 and 0.5 are as near to 1 mm: the lower number
  EXPECT_EQ(form.millingSpeed, "10");
  EXPECT_EQ(form.millingDepth, "0.25");

  form.millingMargin = "0.05";
  EXPECT_EQ(form.EngravingRadius(), "=> 0.25 ");
  EXPECT_EQ(form.EngravingDistance(), "=> 0.3 ");
  form.hatchingMargin = "0.05";
  EXPECT_EQ(form.HatchingRecovery(), "=> 40% ");
  form.hatchingDepth = "0";
  EXPECT_EQ(form.HatchingRadius(), std::nullopt);
}

TEST_F(ToolFormsTest, ActiveToolsChecksInOrder) {
  Settings before = settings;
  TDialogDrill form(tools, settings, '.');
  form.millingTool = -1;
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kMillingTool);
  EXPECT_TRUE(platform.messages.empty());
  form.millingTool = 0;

  form.millingDepth = "0";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kMillingDepth);
  EXPECT_EQ(platform.LastMessage(),
            "Depth :  0 mm\n\nInvalid value.\n\n  ---> Minimum value: 0.01\n  ---> Maximum "
            "value: 100");
  form.millingDepth = "0.3";

  // The hatching margin may take back 45 % of the cut: 0.45 * 0.5 mm at 0.25 mm.
  form.hatchingMargin = "0.3";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kHatchingMargin);
  EXPECT_NE(platform.LastMessage().find("Minimum value: -0.225\n  ---> Maximum value: 0.225"),
            std::string::npos);
  form.hatchingMargin = "-0.2";

  form.drillingMode = 1;
  form.drillingTool = 0;
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kDrillingTool);
  EXPECT_EQ(platform.LastMessage(), "Selected tool profile is not cylindrical.");

  form.drillingMode = 2;
  form.drillingLib.fill(-1);
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kDialog);
  EXPECT_EQ(platform.LastMessage(), "You must define a set of drilling tools.");
  form.drillingLib[6] = 1;
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focusRow, 6);
  EXPECT_EQ(platform.LastMessage(), "This tool was not defined in the tool library.");

  form.boringThreshold = "200";
  form.boringDrills = false;
  form.BoringThresholdChanged(platform);
  EXPECT_TRUE(form.boringDrills);
  form.drillingLib = {-1, 2, -1, 3, 5, -1, -1, -1};
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogDrill::kBoringThreshold);

  // Nothing reached the settings while a check failed.
  EXPECT_EQ(settings.MillingTool, before.MillingTool);
  EXPECT_EQ(settings.MillingDepth, before.MillingDepth);

  form.boringThreshold = "1,2";
  form.drillingMode = 3;
  form.cuttingSpeed = "2.5";
  ASSERT_TRUE(form.Accept(platform));
  EXPECT_EQ(settings.MillingTool, 0);
  EXPECT_EQ(settings.PlottingTool, 4);
  EXPECT_FLOAT_EQ(settings.MillingDepth, 0.3f);
  EXPECT_FLOAT_EQ(settings.HatchingMargin, -0.2f);
  EXPECT_EQ(settings.CuttingSpeed, 150);
  EXPECT_EQ(settings.DrillingMode, 3);
  EXPECT_FLOAT_EQ(settings.BoringThreshold, 1.2f);
  EXPECT_TRUE(settings.BoringDrills);
  const std::array<int32_t, kSequenceSlots> sorted{3, 2, 5, -1, -1, -1, -1, -1};
  EXPECT_EQ(settings.DrillingLib, sorted);
}

}  // namespace
}  // namespace isolith
