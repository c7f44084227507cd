#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/board/BoardOps.h"
#include "import/OpenGerber.h"
#include "support/FakePlatform.h"

namespace isolith::test {
namespace {

namespace fs = std::filesystem;

bool IsCopperLayer(const fs::path& p) {
  std::string ext = p.extension().string();
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const std::string name = p.filename().string();
  return ext == ".gtl" || ext == ".gbl" || ext == ".cmp" || ext == ".sol" ||
         name.find("_Cu.") != std::string::npos;
}

// The copper layers of real boards from several layout programs load as complete layers on a
// card of a plausible size, every item on the card.
TEST(SampleBoards, CopperLayersLoadCompletely) {
  const fs::path root = ISOLITH_FIXTURES;
  if (!fs::exists(root)) GTEST_SKIP() << "sample boards not installed";
  int layers = 0;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file() || !IsCopperLayer(entry.path())) continue;
    const std::string name = entry.path().filename().string();
    Board b;
    Settings s;
    FakePlatform p;
    ImportContext c{b, s, p, "/", {}};
    ASSERT_EQ(OpenGerberFile(c, entry.path().string(), 0), LoadResult::Loaded) << name;
    EXPECT_TRUE(p.messages.empty()) << name;
    EXPECT_GT(CountOf(b.Pads[0]), 0) << name;
    EXPECT_GT(CountOf(b.Tracks[0]), 0) << name;
    EXPECT_GT(b.CardWidth, 20) << name;
    EXPECT_LT(b.CardWidth, 200) << name;
    EXPECT_GT(b.CardHeight, 20) << name;
    EXPECT_LT(b.CardHeight, 200) << name;
    float xmin, ymin, xmax, ymax;
    LayerBoundingBox(b, 0, xmin, ymin, xmax, ymax);
    EXPECT_GE(xmin, 2.5f) << name;
    EXPECT_GE(ymin, 2.5f) << name;
    EXPECT_LE(xmax, b.CardWidth) << name;
    EXPECT_LE(ymax, b.CardHeight) << name;
    ++layers;
  }
  EXPECT_GE(layers, 16);
}

}  // namespace
}  // namespace isolith::test
