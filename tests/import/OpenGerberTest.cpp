#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "GerberTestSupport.h"
#include "core/board/BoardOps.h"
#include "import/Dialects.h"
#include "import/OpenGerber.h"
#include "import/OpenLayer.h"
#include "support/FakePlatform.h"

namespace isolith::test {
namespace {

namespace fs = std::filesystem;

// Three flashes with a 0.4 mm hole and one draw, on a 20 by 10 mm board at the origin.
constexpr const char* kBoard =
    "%FSLAX24Y24*%\n%MOMM*%\n%ADD10C,1.0X0.4*%\n%ADD11C,0.3*%\n"
    "D10*X0Y0D03*X200000Y0D03*X200000Y100000D03*\n"
    "D11*X0Y0D02*X200000Y0D01*\nM02*\n";

class OpenGerber : public ::testing::Test {
 protected:
  fs::path dir;
  Board board;
  Settings settings;
  FakePlatform platform;
  ImportContext context{board, settings, platform, "/nowhere/", {}};
  std::vector<std::string> steps;

  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    dir = fs::temp_directory_path() /
          ("isolith-gerber-" + std::to_string(getpid()) + "-" + info->name());
    fs::create_directories(dir);
    GerberLoadSteps& s = context.steps;
    s.cardThickness = [this] {
      steps.push_back("thickness");
      return 1.6f;
    };
    s.modifyPads = [this] { steps.push_back("pads"); };
    s.modifyTracks = [this] { steps.push_back("tracks"); };
    s.dimensions = [this] { steps.push_back("dimensions"); };
    s.saveSettings = [this] { steps.push_back("save"); };
    s.detectCopperPlanes = [this](int layer) {
      steps.push_back("planes " + std::to_string(layer));
    };
    s.detectCardContour = [this](int layer) {
      steps.push_back("contour " + std::to_string(layer));
      return false;
    };
    s.rebuildDrillTable = [this] { steps.push_back("drills"); };
  }
  void TearDown() override { fs::remove_all(dir); }

  std::string Write(const std::string& name, const std::string& content) {
    const fs::path p = dir / name;
    std::ofstream(p, std::ios::binary) << content;
    return p.string();
  }

  LoadResult Load(const std::string& name, const std::string& content, int layer = 0) {
    return OpenGerberFile(context, Write(name, content), layer);
  }

  bool Has(const std::string& step) const {
    return std::find(steps.begin(), steps.end(), step) != steps.end();
  }
};

TEST_F(OpenGerber, InstallsAFirstLayerFittedToTheCard) {
  board.CentreHole1X = board.CentreHole1Y = 5;
  ASSERT_EQ(Load("board.GBR", kBoard), LoadResult::Loaded);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(CountOf(board.Pads[0]), 3);
  EXPECT_EQ(CountOf(board.Tracks[0]), 1);
  EXPECT_EQ(CountOf(board.Drills), 3);
  EXPECT_EQ(board.ImportPads, nullptr);
  EXPECT_EQ(board.LayerName[0], "BOARD.GBR");
  EXPECT_EQ(board.LayerName[kDrillLayer], "BOARD.GBR");
  EXPECT_FLOAT_EQ(board.DrillDiameter[0], 0.4f);
  // Moved off the edge to 2.54 mm; the card fits round it with equal margins.
  EXPECT_FLOAT_EQ(board.Pads[0]->x, 2.54f);
  EXPECT_FLOAT_EQ(board.Drills->y, 2.54f);
  EXPECT_FLOAT_EQ(board.CardWidth, 25.08f);
  EXPECT_FLOAT_EQ(board.CardHeight, 15.08f);
  EXPECT_FLOAT_EQ(board.CardThickness, 1.6f);
  EXPECT_EQ(board.ActiveLayer, 0);
  EXPECT_FALSE(board.Busy);
  EXPECT_FLOAT_EQ(board.CentreHole1X, -1);
  // The file joins the recent list; its extension is a default one and is not remembered.
  EXPECT_EQ(settings.RecentName[0], "board.GBR");
  EXPECT_EQ(settings.RecentPath[0], dir.string() + "/");
  EXPECT_EQ(settings.ImportPath, dir.string() + "/");
  EXPECT_TRUE(settings.ImportFormat[kRowGerber].Extension[0].empty());
  EXPECT_EQ(steps,
            (std::vector<std::string>{"thickness", "save", "planes 0", "contour 0", "drills"}));
}

TEST_F(OpenGerber, AFileThatCannotBeOpenedDoesNothing) {
  ASSERT_EQ(Load("board.gbr", kBoard), LoadResult::Loaded);
  const int repaints = platform.repaints;
  EXPECT_EQ(OpenGerberFile(context, (dir / "gone.gbr").string(), 0), LoadResult::NotOpened);
  EXPECT_EQ(OpenGerberFile(context, dir.string(), 1), LoadResult::NotOpened);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(platform.repaints, repaints);
  EXPECT_EQ(CountOf(board.Pads[0]), 3);

  settings.RecentName[1] = "gone.gbr";
  settings.RecentPath[1] = dir.string() + "/";
  settings.RecentFormat[1] = kFormatEagle;
  EXPECT_EQ(OpenRecent(context, 1), LoadResult::NotOpened);
  EXPECT_EQ(settings.LayerImportFormat, kFormatEagle);
  EXPECT_EQ(OpenRecent(context, 4), LoadResult::NotOpened);
}

// Everything a refused load must leave as it was.
// Everything a refused load must leave as it was: list sizes, tables, names, card, layer.
std::string JobState(const Board& b) {
  std::string state;
  auto bytes = [&state](const void* p, size_t n) { state.append(static_cast<const char*>(p), n); };
  for (int l = 0; l < kCircuitLayers; ++l)
    state += std::to_string(CountOf(b.Pads[l])) + " " + std::to_string(CountOf(b.Tracks[l])) + " ";
  state += std::to_string(CountOf(b.Drills)) + " " + std::to_string(b.ActiveLayer);
  for (const std::string& name : b.LayerName) state += "|" + name;
  bytes(b.PadShape, sizeof b.PadShape);
  bytes(b.PadSizeX, sizeof b.PadSizeX);
  bytes(b.PadSizeY, sizeof b.PadSizeY);
  bytes(b.TrackWidth, sizeof b.TrackWidth);
  bytes(b.DrillDiameter, sizeof b.DrillDiameter);
  const float card[] = {b.CardWidth, b.CardHeight, b.OriginX, b.OriginY,
                        b.Pads[0] ? b.Pads[0]->x : -1};
  bytes(card, sizeof card);
  return state;
}

TEST_F(OpenGerber, ARefusedFileLeavesTheJobAsItWas) {
  ASSERT_EQ(Load("board.gbr", kBoard), LoadResult::Loaded);
  const std::string before = JobState(board);
  platform.messages.clear();

  // Definitions clear the tables and a swap of the dialect turns them: all of it goes back.
  settings.LayerImportFormat = kFormatOrcad;
  for (int layer : {0, 1}) {
    EXPECT_EQ(Load("defs.gbr", "%MOMM*%\n%ADD10R,5X3*%\nG04 no flash, no draw*\n", layer),
              LoadResult::Refused);
    ASSERT_EQ(platform.messages.size(), 1u);
    EXPECT_EQ(platform.messages[0].title, "Error");
    EXPECT_EQ(platform.messages[0].text, "An error occurred while loading the file.");
    platform.messages.clear();
    EXPECT_EQ(JobState(board), before);
    EXPECT_EQ(board.ImportPads, nullptr);
    EXPECT_FALSE(board.Busy);
  }
  EXPECT_EQ(Load("empty.gbr", ""), LoadResult::Refused);
  EXPECT_EQ(JobState(board), before);
  EXPECT_EQ(settings.RecentName[0], "board.gbr");
}

TEST_F(OpenGerber, BinaryFilesGiveABoardOrTheErrorBox) {
  ASSERT_EQ(Load("board.gbr", kBoard), LoadResult::Loaded);
  for (uint32_t seed = 1; seed <= 6; ++seed) {
    std::string bytes(100000, '\0');
    uint32_t x = seed;
    for (char& c : bytes) {
      x = x * 1664525u + 1013904223u;
      c = static_cast<char>(x >> 24);
    }
    const std::string before = JobState(board);
    platform.messages.clear();
    const LoadResult r = Load("noise.bin", bytes, seed % 4);
    if (r == LoadResult::Refused) {
      EXPECT_EQ(JobState(board), before);
      EXPECT_EQ(platform.messages.size(), 1u);
    } else {
      EXPECT_EQ(r, LoadResult::Loaded);
      EXPECT_TRUE(std::isfinite(board.CardWidth) && std::isfinite(board.CardHeight));
    }
  }
}

TEST_F(OpenGerber, SizeGuessRepairsAWrongDecimalCount) {
  // A 50 by 30 mm board written with three decimals, read as four: ten times too small.
  ASSERT_EQ(Load("small.gbr", "%FSLAX24Y24*%\n%MOMM*%\n%ADD10C,1*%\nD10*X0Y0D03*X50000Y30000D03*"),
            LoadResult::Loaded);
  const TPad* last = LastOf(board.Pads[0]);
  EXPECT_FLOAT_EQ(last->x, 52.54f);
  EXPECT_FLOAT_EQ(last->y, 32.54f);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][0], 1);  // aperture sizes are not touched

  // 100 inch units of a millimetre board: shrunk by tenths until under 500.
  ASSERT_EQ(Load("large.gbr", "%ADD10C,0.04*%\nD10*X0Y0D03*X100000Y100000D03*"),
            LoadResult::Loaded);
  EXPECT_NEAR(LastOf(board.Pads[0])->x, 254 + 2.54, 1e-3);

  GerberLoadSteps none;
  context.steps = none;
  // A single flash is a point: left as it is, and off the edge already.
  ASSERT_EQ(Load("one.gbr", "X1000Y2000D03*"), LoadResult::Loaded);
  EXPECT_FLOAT_EQ(board.Pads[0]->x, 25.4f);
  EXPECT_FLOAT_EQ(board.Pads[0]->y, 50.8f);
  EXPECT_FLOAT_EQ(board.CardWidth, 50.8f);
  EXPECT_FLOAT_EQ(board.OriginX, 0);
}

TEST_F(OpenGerber, MissingDefinitionsAreReported) {
  ASSERT_EQ(Load("one.gbr", "X1000Y2000D03*"), LoadResult::Loaded);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, "Gerber import");
  EXPECT_EQ(platform.messages[0].text,
            "One or several plotter aperture definitions are missing in the file.\n"
            "Please use Gerber Scientific RS274-X extended format when possible.");
  EXPECT_FLOAT_EQ(board.PadSizeX[0][0], 1.27f);  // the default size stands
  EXPECT_TRUE(Has("pads"));
  EXPECT_FALSE(Has("tracks"));
  EXPECT_FALSE(Has("planes 0"));  // no tracks: no detection

  steps.clear();
  platform.messages.clear();
  ASSERT_EQ(Load("far.gbr",
                 "%FSLAX24Y24*%\n%MOMM*%\n%ADD10C,1*%\nD10*X1000000Y1000000D03*"
                 "X1120000Y1050000D03*X1000000Y1000000D01*"),
            LoadResult::Loaded);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_TRUE(Has("dimensions"));  // complete, and the content fills little of the card
}

TEST_F(OpenGerber, DialectMirrorBitsAndHistory) {
  settings.LayerImportFormat = kFormatOrcad;  // FlipXY 6: swap, then mirror Y
  ASSERT_EQ(Load("mirror.xyz", "%FSLAX24Y24*%\n%MOMM*%\n%ADD10R,1X2*%\nD10*X100000Y200000D03*"),
            LoadResult::Loaded);
  EXPECT_FLOAT_EQ(board.Pads[0]->x, 20);
  EXPECT_FLOAT_EQ(board.Pads[0]->y, 60);  // 70 (the card so far) - 10
  EXPECT_FLOAT_EQ(board.PadSizeX[0][0], 2);
  EXPECT_FLOAT_EQ(board.PadSizeY[0][0], 1);
  EXPECT_EQ(settings.ImportFormat[kRowOrcad].Extension[0], "XYZ");
  EXPECT_EQ(settings.RecentFormat[0], kFormatOrcad);

  Board b;
  TPad* p = new TPad;
  p->x = 1;
  p->y = 2;
  b.ImportPads = p;
  b.CardWidth = 10;
  FlipImport(b, 1);
  EXPECT_FLOAT_EQ(p->x, 9);
  FlipImport(b, 4);
  EXPECT_FLOAT_EQ(p->x, 2);
  EXPECT_FLOAT_EQ(p->y, 9);
}

TEST_F(OpenGerber, AnotherLayerIsAlignedOnTheFirst) {
  ASSERT_EQ(Load("top.gbr", kBoard), LoadResult::Loaded);
  const float x0 = board.Pads[0]->x, y0 = board.Pads[0]->y;
  const std::string shifted =
      "%FSLAX24Y24*%\n%MOMM*%\n%ADD12C,1.5*%\n"
      "D12*X50000Y50000D03*X250000Y50000D03*X250000Y150000D03*X50000Y50000D01*";
  ASSERT_EQ(Load("bottom.gbr", shifted, 1), LoadResult::Loaded);
  EXPECT_EQ(board.LayerName[1], "BOTTOM.GBR");
  EXPECT_EQ(PadOverlap(board, 1), 100);
  EXPECT_FLOAT_EQ(board.Pads[1]->x, x0);
  EXPECT_FLOAT_EQ(board.Pads[0]->x, x0);  // the first layer did not move
  EXPECT_FLOAT_EQ(board.Pads[0]->y, y0);
  EXPECT_FLOAT_EQ(board.PadSizeX[1][2], 1.5f);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][0], 1.0f);   // the first layer's table stands
  EXPECT_EQ(CountOf(board.Drills), 3);           // no drills from another layer
  EXPECT_EQ(settings.RecentName[0], "top.gbr");  // only first layers are recent files
  EXPECT_EQ(board.ActiveLayer, 1);

  // A card contour that takes the whole layer sends the view back to the layer shown before.
  board.ActiveLayer = 0;
  context.steps.detectCardContour = [](int) { return true; };
  ASSERT_EQ(Load("outline.gbr", shifted, 2), LoadResult::Loaded);
  EXPECT_EQ(board.ActiveLayer, 0);
  settings.DetectCutOut = false;
  ASSERT_EQ(Load("outline.gbr", shifted, 2), LoadResult::Loaded);
  EXPECT_EQ(board.ActiveLayer, 2);
}

TEST_F(OpenGerber, HandWrittenFilesOfBothKinds) {
  const std::string data = ISOLITH_TEST_DATA;
  // RS-274-D with its apertures listed in comments; inches with three decimals.
  ASSERT_EQ(OpenGerberFile(context, data + "/listing-rs274d.pho", 0), LoadResult::Loaded);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(CountOf(board.Pads[0]), 3);
  EXPECT_EQ(CountOf(board.Tracks[0]), 2);
  EXPECT_EQ(board.Drills, nullptr);  // the listing gives no holes
  EXPECT_EQ(board.PadShape[0][2], kShapeRectangle);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][2], 1.778f);
  EXPECT_FLOAT_EQ(board.TrackWidth[0][1], 0.3048f);
  EXPECT_FLOAT_EQ(board.CardWidth, 76.2f);
  EXPECT_TRUE(Has("dimensions"));  // complete, and a third of the card is empty on each side
  EXPECT_EQ(settings.ImportFormat[kRowGerber].Extension[0], "PHO");

  // RS-274-X with macros and a region.
  steps.clear();
  ASSERT_EQ(OpenGerberFile(context, data + "/macros-rs274x.gbr", 0), LoadResult::Loaded);
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(CountOf(board.Pads[0]), 5);
  EXPECT_EQ(CountOf(board.Tracks[0]), 4);  // the region's outline came in as draws
  EXPECT_EQ(CountOf(board.Drills), 2);     // only the first aperture has a hole
  EXPECT_FLOAT_EQ(board.DrillDiameter[0], 0.8f);
  EXPECT_EQ(board.PadShape[0][1], kShapeRectangle);
  EXPECT_FLOAT_EQ(board.PadSizeY[0][1], 1.2f);
  EXPECT_EQ(board.PadShape[0][2], kShapeOctagon);
  EXPECT_NEAR(board.PadSizeX[0][2], 1.08239 * 1.5, 1e-5);
  // A thermal macro is a circle whose size the AD line has to give; this one gives none.
  EXPECT_EQ(board.PadShape[0][3], kShapeCircle);
  EXPECT_FLOAT_EQ(board.PadSizeX[0][3], 0);
  EXPECT_FLOAT_EQ(board.CardWidth, 45);
  EXPECT_FLOAT_EQ(board.CardHeight, 35);
  EXPECT_TRUE(Has("dimensions"));
}

TEST_F(OpenGerber, TheOpenDialogOffersTheDialectsAndKeepsTheChoice) {
  ExcellonChoices choices;
  EXPECT_FALSE(OpenLayerDialog(context, choices, false, 0));  // Cancel
  ASSERT_EQ(platform.fileRequests.size(), 1u);
  EXPECT_EQ(platform.fileRequests[0].folder, "/nowhere/");
  EXPECT_EQ(platform.fileRequests[0].filters.size(), 10u);
  EXPECT_EQ(platform.fileRequests[0].filterIndex, 2);

  EXPECT_FALSE(OpenLayerDialog(context, choices, false, kDrillLayer));
  EXPECT_EQ(platform.fileRequests[1].filters.size(), 3u);
  EXPECT_EQ(platform.fileRequests[1].filterIndex, 2);

  settings.LayerImportFormat = 0;  // "All files": read with the Gerber row
  platform.files.push_back(Write("first.gbr", kBoard));
  EXPECT_TRUE(OpenLayerDialog(context, choices, false, 0));
  EXPECT_EQ(platform.fileRequests[2].filterIndex, 1);
  EXPECT_EQ(CountOf(board.Pads[0]), 3);
  EXPECT_EQ(settings.RecentFormat[0], kFormatGerber);

  settings.LayerImportFormat = kFormatAres;
  platform.files.push_back(Write("second.top", kBoard));
  EXPECT_TRUE(OpenLayerDialog(context, choices, true, 1));
  EXPECT_EQ(platform.fileRequests[3].folder, dir.string() + "/");
  EXPECT_EQ(platform.fileRequests[3].filterIndex, 3);
  EXPECT_EQ(CountOf(board.Pads[0]), 3);
  EXPECT_EQ(CountOf(board.Pads[1]), 3);

  // A new circuit starts from an empty job before its file is read.
  platform.files.push_back(Write("broken.top", "G04 nothing*"));
  EXPECT_TRUE(OpenLayerDialog(context, choices, false, 0));
  EXPECT_EQ(platform.LastMessage(), "An error occurred while loading the file.");
  EXPECT_EQ(board.Pads[0], nullptr);
  EXPECT_EQ(board.Pads[1], nullptr);
}

}  // namespace
}  // namespace isolith::test
