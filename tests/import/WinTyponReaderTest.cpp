#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "core/board/BoardOps.h"
#include "import/WinTyponReader.h"

namespace isolith {
namespace {

const std::string kPads = "\xA4#PASTILLE\xA4\n";
const std::string kTracks = "\xA4#SEGMENT\xA4\n";
const std::string kOther = "\xA4#TEXTE\xA4\n";

std::string Fields(const std::vector<std::string>& fields) {
  std::string line;
  for (size_t i = 0; i < fields.size(); ++i) line += (i ? "\xB7" : "") + fields[i];
  return line + "\r\n";
}

// A pad record in hundredths of a millimetre.
std::string Pad(int x, int y, int sx, int sy, int shape, int hole = 0, int hole2 = 0) {
  return Fields({std::to_string(x), std::to_string(y), "0", "0", "0", "0", "0", "0", "0",
                 std::to_string(sx), std::to_string(sy), std::to_string(shape), "0", "0", "0",
                 std::to_string(hole), std::to_string(hole2)});
}

std::string Track(int x1, int y1, int x2, int y2, int side, int width) {
  return Fields({std::to_string(x1), std::to_string(y1), std::to_string(x2), std::to_string(y2),
                 "0", "0", std::to_string(side), std::to_string(width)});
}

void Read(Board& b, const std::string& text, float scale = 1) {
  std::istringstream in(text);
  ReadWinTypon(in, scale, b);
}

// The import lists moved to layer 0 as the layer load does, then split at the seam.
void InstallAndSplit(Board& b) {
  b.Pads[0] = b.ImportPads;
  b.Tracks[0] = b.ImportTracks;
  b.Drills = b.ImportDrills;
  b.ImportPads = nullptr;
  b.ImportTracks = nullptr;
  b.ImportDrills = nullptr;
  SplitWinTyponSides(b);
}

TEST(WinTyponReader, PadsShapesSizesAndHoles) {
  Board b;
  b.PadSizeX[2][40] = 3;
  Read(b,
       "HEADER\n" + kPads + Pad(1000, 2000, 150, 100, 0, 80) +  // circle, round-sized
           Pad(0, 0, 150, 100, 3) +                             // rectangle, round-sized
           Pad(0, 0, 150, 100, 4) +                             // circle, sizes kept
           Pad(0, 0, 150, 100, 2) + Pad(0, 0, 150, 100, 6) + Pad(0, 0, 150, 100, 9) +
           Pad(0, 0, 150, 100, 5, 40, 60) +
           "1\xB7"
           "2\xB7"
           "3\n" +
           kOther + Pad(5, 5, 300, 300, 0),
       2);
  ASSERT_EQ(CountOf(b.ImportPads), 7);
  const TPad* p = b.ImportPads;
  EXPECT_FLOAT_EQ(p->x, 20);  // 1000 hundredths times the dialect's scale 2
  EXPECT_FLOAT_EQ(p->y, 40);
  auto shape = [&](int i) {
    const TPad* q = b.ImportPads;
    while (i--) q = q->next;
    return std::vector<float>{float(b.PadShape[0][q->code]), b.PadSizeX[0][q->code],
                              b.PadSizeY[0][q->code], b.DrillDiameter[q->code]};
  };
  EXPECT_EQ(shape(0), (std::vector<float>{0, 3, 3, 1.6f}));
  EXPECT_EQ(shape(1), (std::vector<float>{1, 3, 3, 0}));
  EXPECT_EQ(shape(2), (std::vector<float>{0, 3, 2, 0}));
  EXPECT_EQ(shape(3), (std::vector<float>{2, 3, 2, 0}));
  EXPECT_EQ(shape(4), (std::vector<float>{3, 3, 3, 0}));
  EXPECT_EQ(shape(5), (std::vector<float>{1, 3, 2, 0}));
  EXPECT_EQ(shape(6), (std::vector<float>{0, 3, 3, 1.2f}));  // the larger hole figure
  EXPECT_EQ(b.ApertureFlags[b.ImportPads->code], 7);
  // A drill for each pad with a hole, at the pad.
  ASSERT_EQ(CountOf(b.ImportDrills), 2);
  EXPECT_FLOAT_EQ(b.ImportDrills->x, 20);
  EXPECT_EQ(b.ImportDrills->code, b.ImportPads->code);
  // The first pad cleared the tables of every layer; layer 1 got layer 0's.
  EXPECT_FLOAT_EQ(b.PadSizeX[2][40], 0);
  EXPECT_FLOAT_EQ(b.PadSizeX[1][b.ImportPads->code], 3);
}

TEST(WinTyponReader, AperturesAreSharedFoundOrOverwritten) {
  Board b;
  std::string file = kPads + Pad(0, 0, 100, 100, 1) + Pad(0, 0, 105, 100, 1);
  // 99 more distinct sizes fill the table.
  for (int i = 1; i <= 99; ++i) file += Pad(i, 0, 100 + 200 * i, 100, 1);
  file += Pad(500, 0, 130, 100, 1);  // the 101st size: the close entry 0 is overwritten
  Read(b, file);
  const TPad* p = b.ImportPads;
  EXPECT_EQ(p->code, 0);
  EXPECT_EQ(p->next->code, 0);  // 0.05 mm apart: one aperture
  const TPad* last = LastOf(b.ImportPads);
  EXPECT_EQ(last->code, 0);
  EXPECT_FLOAT_EQ(b.PadSizeX[0][0], 1.3f);  // the earlier pads of entry 0 change with it
  EXPECT_EQ(CountOf(b.ImportPads), 102);

  // Tracks: within 0.1 (strictly) share, else a free entry.
  Board c;
  Read(c, kTracks + Track(0, 0, 100, 0, 0, 20) + Track(0, 0, 0, 100, 0, 29) +
              Track(0, 0, 50, 50, 0, 31) +
              "1\xB7"
              "2\xB7"
              "3\xB7"
              "4\n");
  ASSERT_EQ(CountOf(c.ImportTracks), 3);
  EXPECT_EQ(c.ImportTracks->code, 0);
  EXPECT_EQ(c.ImportTracks->next->code, 0);
  EXPECT_EQ(c.ImportTracks->next->next->code, 1);
  EXPECT_FLOAT_EQ(c.TrackWidth[0][1], 0.31f);
  EXPECT_FLOAT_EQ(c.TrackWidth[3][5], 0);  // cleared by the first track
  EXPECT_FLOAT_EQ(c.TrackWidth[1][1], 0.31f);
}

TEST(WinTyponReader, OneSidedBoardLeavesTheSecondLayerEmpty) {
  Board b;
  Read(b, kPads + Pad(0, 0, 100, 100, 0) + kTracks + Track(0, 0, 100, 0, 0, 20));
  EXPECT_EQ(b.HoverPad, nullptr);
  EXPECT_EQ(b.HoverTrack, nullptr);
  InstallAndSplit(b);
  EXPECT_EQ(CountOf(b.Pads[0]), 1);
  EXPECT_EQ(CountOf(b.Tracks[0]), 1);
  EXPECT_EQ(b.Pads[1], nullptr);
  EXPECT_EQ(b.Tracks[1], nullptr);

  // All tracks on the second side: read as one side, with no second layer.
  Board c;
  Read(c, kPads + Pad(0, 0, 100, 100, 0) + kTracks + Track(0, 0, 100, 0, 1, 20) +
              Track(0, 0, 0, 100, 7, 20));
  EXPECT_EQ(c.HoverPad, nullptr);
  EXPECT_EQ(c.HoverTrack, nullptr);
  EXPECT_EQ(CountOf(c.ImportPads), 1);
  EXPECT_EQ(CountOf(c.ImportTracks), 2);
}

TEST(WinTyponReader, TwoSidesAreSplitAtTheSeam) {
  Board b;
  Read(b, kPads + Pad(100, 100, 100, 100, 0) + Pad(200, 100, 100, 100, 0) + kTracks +
              Track(0, 0, 100, 0, 0, 20) + Track(0, 0, 0, 100, 1, 20) +
              Track(0, 0, 100, 100, 0, 20));
  ASSERT_EQ(CountOf(b.ImportPads), 4);  // the pads, then their copies for the second side
  ASSERT_EQ(b.HoverPad, b.ImportPads->next->next);
  EXPECT_FLOAT_EQ(b.HoverPad->x, 1);
  ASSERT_EQ(CountOf(b.ImportTracks), 3);  // side 1 in file order, then side 2
  EXPECT_EQ(b.HoverTrack, b.ImportTracks->next->next);
  EXPECT_FLOAT_EQ(b.HoverTrack->y2, 1);
  InstallAndSplit(b);
  EXPECT_EQ(b.HoverPad, nullptr);
  EXPECT_EQ(b.HoverTrack, nullptr);
  EXPECT_EQ(CountOf(b.Pads[0]), 2);
  EXPECT_EQ(CountOf(b.Pads[1]), 2);
  EXPECT_EQ(CountOf(b.Tracks[0]), 2);
  EXPECT_EQ(CountOf(b.Tracks[1]), 1);

  // A single pad and a second side: the copy is found and the split is clean.
  Board c;
  Read(c, kPads + Pad(100, 100, 100, 100, 0) + kTracks + Track(0, 0, 100, 0, 0, 20) +
              Track(0, 0, 0, 100, 1, 20));
  ASSERT_EQ(CountOf(c.ImportPads), 2);
  EXPECT_EQ(c.HoverPad, c.ImportPads->next);
  InstallAndSplit(c);
  EXPECT_EQ(CountOf(c.Pads[0]), 1);
  EXPECT_EQ(CountOf(c.Pads[1]), 1);

  // A seam name that no longer points into the list cuts nothing.
  Board d;
  Read(d, kPads + Pad(100, 100, 100, 100, 0) + kTracks + Track(0, 0, 100, 0, 0, 20) +
              Track(0, 0, 0, 100, 1, 20));
  TPad stray;
  d.HoverPad = &stray;
  InstallAndSplit(d);
  EXPECT_EQ(CountOf(d.Pads[0]), 2);
  EXPECT_EQ(d.Pads[1], nullptr);
  EXPECT_EQ(CountOf(d.Tracks[1]), 1);
}

TEST(WinTyponReader, SectionsAreMatchedWholeAndLowerCaseFolds) {
  Board b;
  Read(b, "\xA4#pastille\xA4\n" + Pad(100, 100, 100, 100, 0) + "\xA4#PASTILLES\xA4\n" +
              Pad(200, 100, 100, 100, 0) + "#PASTILLE\n" + Pad(300, 100, 100, 100, 0));
  EXPECT_EQ(CountOf(b.ImportPads), 1);

  Board c;
  Read(c, "nothing of a layout here\n");
  EXPECT_EQ(c.ImportPads, nullptr);
  EXPECT_EQ(c.ImportTracks, nullptr);
  EXPECT_FLOAT_EQ(c.PadSizeX[0][0], 1.27f);  // tables untouched
}

}  // namespace
}  // namespace isolith
