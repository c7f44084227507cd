// The machining module's job file, decoded block by block.
#include "output/driver/JobFile.h"

#include <gtest/gtest.h>

#include <cstring>

#include "OutputWorld.h"
#include "output/driver/LayerWalk.h"

namespace isolith::test {
namespace {

struct Decoded {
  int type;
  int32_t a, b, c, d;
  std::string text;  // a text block's characters
  bool operator==(const Decoded&) const = default;
};

std::vector<Decoded> Decode(const std::string& file) {
  std::vector<Decoded> blocks;
  EXPECT_EQ(file.size() % kJobBlockSize, 0u);
  blocks.push_back({-1, 0, 0, 0, 0, std::string(file.c_str(), strnlen(file.c_str(), 17))});
  for (size_t at = kJobBlockSize; at + kJobBlockSize <= file.size(); at += kJobBlockSize) {
    Decoded b{static_cast<uint8_t>(file[at]), 0, 0, 0, 0, ""};
    int32_t words[4];
    std::memcpy(words, file.data() + at + 1, sizeof words);  // the machine is little-endian too
    b.a = words[0], b.b = words[1], b.c = words[2], b.d = words[3];
    if (b.type == kJobToolMore && static_cast<unsigned char>(file[at + 1]) >= 32) {
      b = {kJobToolMore,
           0,
           0,
           0,
           0,
           std::string(file.data() + at + 1, strnlen(file.data() + at + 1, 16))};
    }
    blocks.push_back(b);
  }
  return blocks;
}

TEST(JobFile, BlocksDecodeToTheCardTheToolsAndThePathsInOrder) {
  OutputWorld w;
  Board& b = w.board;
  b.CardWidth = 100, b.CardHeight = 70, b.CardThickness = 1.6f;
  b.OriginX = 2.5f;
  std::strcpy(w.tools[0].Name.data(), "Engraver 0.2 mm with a long name!");  // 33 characters
  w.tools[0].Zmax = 0.3f;
  ResetTool(w.tools[1]);
  w.tools[1].Diameter = 1.0f;
  b.DrillDiameter[1] = 1.0f;  // drilled in one plunge
  b.DrillDiameter[2] = 3.0f;  // bored: 1 mm off the 1 mm tool
  w.drills.rows[0] = {1.0f, 1};
  w.drills.rows[1] = {3.0f, 1};
  AddDrill(b, 50, 20, 2);
  AddDrill(b, 40, 20, 1);
  w.AddTriangle();
  AddPath(b.Hatches[0], {{20, 11}, {30, 30}});  // nearer the last hole by its far end
  w.settings.HatchingTool = 0;
  w.settings.BoringThreshold = 1;
  w.settings.BoringDir = 1;
  w.settings.DrillingDepth = 1.5f;
  const std::string path = w.Path("job.tvn");
  ASSERT_TRUE(WriteJobFile(w.context, path, 0, kDrillThenMill, true, true, 90));
  const std::vector<Decoded> blocks = Decode(ReadFile(path));

  const int32_t f = 100000;  // one millimetre, fixed
  const std::vector<Decoded> head = {
      {-1, 0, 0, 0, 0, "Torvane 3 Isolith"},
      {0, 100 * f, 70 * f, 160000, 0, ""},
      {0, 0, 0, 100 * f, 70 * f, ""},
      {0, 1, 0, 0, 0, ""},
      {0, 0, 10000, 120, 0, ""},  // engraving: tool 0, 0.1 mm, 120 mm/min
      {0, 4, 0, 0, 0, ""},
      {0, 250000, 0, 0, 0, ""},  // origin, no reference pad
      {2, 0, 20000, 0, 0, ""},
      {3, 0, 1, 20000, 30000, ""},  // colour, one tooth, 20000 rpm, 0.3 mm a pass
      {3, 0, 50, 0, 0, ""},
      {3, 0, 0, 0, 0, ""},
      {3, 0, 0, 0, 0, "Engraver 0.2 mm "},
      {3, 0, 0, 0, 0, "with a long name"},
      {3, 0, 0, 0, 0, "!"},
      {2, 1, f, 0, 0, ""},
  };
  ASSERT_GT(blocks.size(), head.size());
  for (size_t i = 0; i < head.size(); ++i) EXPECT_EQ(blocks[i], head[i]) << "block " << i;

  // From tool 1's blocks on: the holes (the first in the list is bored, the other a plunge),
  // then the hatch turned round and the triangle entered at its vertex nearest the hatch's end.
  std::vector<Decoded> paths;
  for (size_t i = head.size(); i < blocks.size(); ++i)
    if (blocks[i].type >= kJobPath) paths.push_back(blocks[i]);
  const std::vector<Decoded> expected = {
      {10, 300, 0, 0, 1, ""},
      {11, 50 * f, 20 * f, 150000, 0, ""},
      {11, 51 * f, 20 * f, 150000, 0, ""},
      {10, 300, 0, 0, 1 | kJobCircle, ""},
      {11, 51 * f, 20 * f, 150000, 0, ""},  // 0 degrees
      {11, 50 * f, 21 * f, 150000, 0, ""},  // 90
      {11, 49 * f, 20 * f, 150000, 0, ""},  // 180
      {11, 50 * f, 19 * f, 150000, 0, ""},  // 270
      {11, 51 * f, 20 * f, 150000, 0, ""},  // 360
      {20, 50 * f, 20 * f, f, f, ""},
      {20, 0, 360 * f, 90 * f, 1, ""},
      {10, 300, 0, 0, 1, ""},
      {11, 51 * f, 20 * f, 150000, 0, ""},
      {11, 50 * f, 20 * f, 150000, 0, ""},
      {10, 300, 0, 0, 1 | kJobPlunge, ""},
      {11, 40 * f, 20 * f, 150000, 0, ""},
      {10, 120, 0, 0, kJobHatch, ""},
      {11, 30 * f, 30 * f, 10000, 0, ""},
      {11, 20 * f, 11 * f, 10000, 0, ""},
      {10, 120, 0, 0, 0, ""},
      {11, 20 * f, 10 * f, 10000, 0, ""},
      {11, 15 * f, 20 * f, 10000, 0, ""},
      {11, 10 * f, 10 * f, 10000, 0, ""},
      {11, 20 * f, 10 * f, 10000, 0, ""},
  };
  ASSERT_EQ(paths.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    // The chord points are computed in double: a hundred-thousandth either way is the same point.
    EXPECT_NEAR(paths[i].a, expected[i].a, 1) << "path block " << i;
    EXPECT_NEAR(paths[i].b, expected[i].b, 1) << "path block " << i;
    EXPECT_EQ(paths[i].type, expected[i].type) << "path block " << i;
    EXPECT_EQ(paths[i].c, expected[i].c) << "path block " << i;
    EXPECT_EQ(paths[i].d, expected[i].d) << "path block " << i;
  }

  // A folder that does not exist: false, and nothing is left there.
  EXPECT_FALSE(WriteJobFile(w.context, w.Path("none/job.tvn"), 0, kMillOnly, true, true, 5));
  EXPECT_EQ(JobFixed(-0.000004), 0);
  EXPECT_EQ(JobFixed(1e9), INT32_MAX);
}

}  // namespace
}  // namespace isolith::test
