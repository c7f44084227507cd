// The walks' sorted and indexed orderings (the layer and section walks, the module's job file)
// against the plain scans they replace: on seeded random jobs (paths of every length, coincident and touching ends, ties on a coarse grid, points far
// away, drills of several tools, one on top of another) both write the same file, byte for byte.
#include <gtest/gtest.h>

#include <random>

#include "OutputWorld.h"
#include "output/driver/DrillTools.h"
#include "output/driver/JobFile.h"
#include "output/driver/LayerWalk.h"
#include "output/driver/SectionWalk.h"

namespace isolith::test {
namespace {

// The same job for the same seed: every walk changes the paths it turns, so each run gets a
// fresh one.
void MakeJob(OutputWorld& w, unsigned seed) {
  std::mt19937 random(seed);
  const auto coord = [&] {
    switch (random() % 8) {
      case 0:
        return static_cast<float>(random() % 5);  // a few spots: ties and coincident ends
      case 1:
        return static_cast<float>(random() % 2 ? 1e6 : -3e5);  // far from the rest
      default:
        return static_cast<float>(random() % 100000) / 1000.0f;
    }
  };
  for (TPolygon** list : {&w.board.Contours[0], &w.board.Hatches[0]}) {
    const int paths = 1 + static_cast<int>(random() % 300);
    for (int i = 0; i < paths; ++i) {
      TPolygon* p = AddPath(*list, {});
      const int points = static_cast<int>(random() % 6);  // none, one, or a few
      for (int k = 0; k < points; ++k) AppendPoint(*p, coord(), coord());
      if (points > 2 && random() % 2) AppendPoint(*p, p->first->x, p->first->y);  // closed
    }
  }
  for (int code = 1; code <= 3; ++code) {
    w.board.DrillDiameter[code] = 0.6f + 0.2f * code;
    w.drills.rows[code - 1] = {w.board.DrillDiameter[code], code};
    ResetTool(w.tools[code]);
    w.tools[code].Diameter = w.board.DrillDiameter[code];
  }
  const int drills = static_cast<int>(random() % 400);
  for (int i = 0; i < drills; ++i)
    AddDrill(w.board, coord(), coord(), static_cast<uint8_t>(1 + random() % 4));  // 4: no tool
  w.settings.HatchingTool = 0;
  w.settings.DrillingTool = 1;
  w.settings.MultiSequence = {2, 3, 4, 10, 14, 0, 0, 0};
}

std::string Walk(unsigned seed, bool reference, int kind) {
  OutputWorld w;
  MakeJob(w, seed);
  w.context.referenceOrdering = reference;
  const std::string path = w.Path("job.iso");
  const bool optim = kind % 2 == 0;
  if (kind >= 4) {
    EXPECT_TRUE(WriteJobFile(w.context, path, 0, kAllDrillsFirst, optim, optim, 15));
  } else if (kind < 2) {
    EXPECT_TRUE(ExportLayerWalk(w.context, 9, path, 0, true, true, false, 0, 0, kAllDrillsFirst,
                                optim, optim));
  } else {
    w.settings.DrillingMode = kind == 2 ? 0 : 2;
    RefreshOutputDrillTools(w.drills, w.tools, w.settings.DrillingMode);
    EXPECT_TRUE(SectionWalk(w.context, path, 9));
  }
  // The header names the file, whose folder differs from run to run.
  std::string text = ReadFile(path);
  const std::size_t at = text.find(path);
  if (at != std::string::npos) text.erase(at, path.size());
  return text;
}

TEST(WalkOrder, SortedAndIndexedWalksWriteTheFilesOfThePlainScans) {
  // Kinds: layer walk with and without the nearest starts, section walk with one drilling tool
  // and with a tool per section, the module's job file with and without the nearest starts.
  for (unsigned seed = 1; seed <= 12; ++seed) {
    for (int kind = 0; kind < 6; ++kind) {
      const std::string fast = Walk(seed, false, kind);
      EXPECT_GT(fast.size(), 100u);
      EXPECT_TRUE(fast == Walk(seed, true, kind)) << "seed " << seed << ", kind " << kind;
    }
  }
}

}  // namespace
}  // namespace isolith::test
