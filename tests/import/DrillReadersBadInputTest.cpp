// Any bytes at all: the drill and WinTypon readers give records with finite values or nothing,
// never a crash, a hang or an allocation out of proportion to the file.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "core/board/BoardOps.h"
#include "import/ExcellonReader.h"
#include "import/OpenExcellon.h"
#include "import/WinTyponReader.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

// Deterministic noise.
std::string Noise(size_t n, uint32_t seed) {
  std::string s(n, '\0');
  for (char& c : s) {
    seed = seed * 1664525u + 1013904223u;
    c = static_cast<char>(seed >> 24);
  }
  return s;
}

std::string Inputs(int i) {
  const std::string digits500(500, '9');
  switch (i) {
    case 0:
      return "";
    case 1:
      return Noise(20000, 7);
    case 2:
      return std::string(100000, 'X') + "\n" + std::string(100000, '1') + "\n";
    case 3:
      return "X" + digits500 + "Y-" + digits500 + "\nT" + digits500 + "C" + digits500 +
             "\nX1Y1\nM" + digits500 + "\nG" + digits500 + "\n";
    case 4: {  // increments that double on every line until no float can hold them
      std::string s = "G91\nX1000Y1000\n";
      for (int k = 0; k < 400; ++k) s += "X1\n";
      return s;
    }
    case 5:
      return "T1C-5\nT-3\nX-Y-\nX.Y.\nX--1Y1..2\n(((\n$$$\nC\nT\n\n\n";
    case 6: {  // WinTypon records with broken fields
      std::string s = "\xA4#PASTILLE\xA4\n";
      s += std::string(3000, '\xB7') + "\n";
      s += "1\xB7"
           "2\xB7\xB7\xB7\xB7\xB7\xB7\xB7\xB7" +
           digits500 + "\xB7-" + digits500 + "\xB7" + digits500 + "\n";
      s += "\xA4#SEGMENT\xA4\n" + digits500 +
           "\xB7"
           "1\xB7"
           "2\xB7"
           "3\xB7\xB7\xB7" +
           digits500 +
           "\xB7"
           "5\n";
      return s + Noise(5000, 3);
    }
    default:
      return {};
  }
}

template <typename R>
bool AllFinite(const R* head) {
  for (; head; head = head->next)
    if (!std::isfinite(head->x) || !std::isfinite(head->y)) return false;
  return true;
}

bool TracksFinite(const TTrack* t) {
  for (; t; t = t->next)
    if (!std::isfinite(t->x1) || !std::isfinite(t->y1) || !std::isfinite(t->x2) ||
        !std::isfinite(t->y2))
      return false;
  return true;
}

bool TablesFinite(const Board& b) {
  for (int i = 0; i < kApertures; ++i) {
    if (!std::isfinite(b.DrillDiameter[i])) return false;
    for (int l = 0; l < kCircuitLayers; ++l)
      if (!std::isfinite(b.PadSizeX[l][i]) || !std::isfinite(b.PadSizeY[l][i]) ||
          !std::isfinite(b.TrackWidth[l][i]))
        return false;
  }
  return true;
}

TEST(DrillReadersBadInput, EveryInputGivesFiniteRecordsOrNothing) {
  for (int i = 0; i <= 6; ++i) {
    for (int format : {17, 18}) {
      Board b;
      std::istringstream in(Inputs(i));
      ExcellonFormat f;
      f.format = format;
      int holes = ReadExcellon(in, f, b);
      EXPECT_EQ(holes, CountOf(b.ImportDrills)) << i;
      EXPECT_TRUE(AllFinite(b.ImportDrills)) << i;
      EXPECT_TRUE(TablesFinite(b)) << i;
      for (const TDrill* d = b.ImportDrills; d; d = d->next) EXPECT_LT(d->code, kApertures);
    }
    Board b;
    std::istringstream in(Inputs(i));
    ReadWinTypon(in, 1, b);
    EXPECT_TRUE(AllFinite(b.ImportPads)) << i;
    EXPECT_TRUE(AllFinite(b.ImportDrills)) << i;
    EXPECT_TRUE(TracksFinite(b.ImportTracks)) << i;
    EXPECT_TRUE(TablesFinite(b)) << i;
    for (const TPad* p = b.ImportPads; p; p = p->next) EXPECT_LT(p->code, kApertures);
  }
}

TEST(DrillReadersBadInput, TheLoadGivesABoardOrTheErrorBoxAndKeepsTheJob) {
  const auto folder = std::filesystem::path(::testing::TempDir()) / "isolith-excellon-bad";
  std::filesystem::create_directories(folder);
  for (int i = 0; i <= 6; ++i) {
    const std::string path = (folder / ("bad" + std::to_string(i) + ".drl")).string();
    std::ofstream(path, std::ios::binary) << Inputs(i);
    Board board;
    board.Pads[0] = new TPad{0, 0, 10, 10, new TPad{0, 0, 30, 20, nullptr}};
    TDrill* old = new TDrill{0, 0, 10, 10, nullptr};
    board.Drills = old;
    Settings settings;
    test::FakePlatform platform;
    platform.answers = {Answer::Cancel};
    ExcellonChoices choices;
    ImportContext context{board, settings, platform, "", {}};
    ExcellonResult result = OpenExcellonFile(context, choices, path);
    if (result == ExcellonResult::Refused) {
      EXPECT_EQ(platform.LastMessage(), "An error occurred while loading the file.") << i;
    } else {
      EXPECT_EQ(result, ExcellonResult::Cancelled) << i;
      EXPECT_TRUE(std::isfinite(board.CardWidth) && std::isfinite(board.CardHeight)) << i;
    }
    EXPECT_EQ(board.Drills, old) << i;
    EXPECT_FLOAT_EQ(board.Pads[0]->x, 10) << i;
    EXPECT_FALSE(board.Busy) << i;
  }
}

}  // namespace
}  // namespace isolith
