// The board files the program writes are read back by its own readers: the Gerber file of each
// sample board's top copper gives the same pads and tracks, the Excellon file of its pads gives
// holes on those pads, within the resolution of each format.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "cli/CliJob.h"
#include "commands/Application.h"
#include "integration/SampleBoards.h"
#include "output/export/BoardExport.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

// A fresh world that reads layers without looking for card contours or copper planes, so that
// every item stays on its layer.
struct World {
  test::FakePlatform platform;
  test::TempFolder config;
  Application app{platform, config.path(), config.path()};
  World() {
    for (const char* s : {"DetectCutOut=No", "DetectGndPlanes=No", "AutoReframe=No"}) {
      std::string error;
      app.overrides.AddAssignment(s, error);
    }
    InitSettings(app);
  }
  bool Load(const std::string& layer, const std::string& drills = {}) {
    JobArguments job;
    job.layerFiles = {layer};
    job.drillFile = drills;
    if (!drills.empty()) {
      job.drillAnswers.zerosFrom = DrillAnswers::From::Header;
      job.drillAnswers.unitsFrom = DrillAnswers::From::Header;
    }
    std::vector<LoadedFile> loaded;
    return LoadJob(app, job, loaded);
  }
};

bool Near(float a, float b, double tolerance) {
  return std::fabs(static_cast<double>(a) - b) <= tolerance;
}

template <typename R>
std::vector<const R*> ByCode(const R* list) {
  std::vector<const R*> items;
  for (; list; list = list->next) items.push_back(list);
  std::stable_sort(items.begin(), items.end(),
                   [](const R* a, const R* b) { return a->code < b->code; });
  return items;
}

// Half a unit of the files: a millionth of an inch in Gerber, a ten-thousandth in Excellon, and
// the float of a board of some hundred millimetres.
constexpr double kGerberMm = 0.0000254 / 2 + 0.0002;
constexpr double kExcellonMm = 0.00254 / 2 + 0.0002;
constexpr double kApertureMm = 0.00254 / 2 + 0.0002;

TEST(BoardExport, EverySampleBoardReadsBackFromItsGerberAndExcellonFiles) {
  const std::vector<fs::path> layers = test::TopCopperLayers();
  ASSERT_EQ(layers.size(), 8u) << "sample boards missing from " << ISOLITH_FIXTURES;
  int checkedSizes = 0;
  for (const fs::path& layer : layers) {
    SCOPED_TRACE(layer.filename().string());
    World first;
    ASSERT_TRUE(first.Load(layer.string()));
    const Board& a = first.app.board;
    const std::string gerber = first.config.path() + "back.gbr";
    const std::string drills = first.config.path() + "back.drl";
    ASSERT_TRUE(WriteGerber(a, gerber, 0));
    for (float& d : first.app.board.DrillDiameter) d = 0.8f;
    ASSERT_TRUE(WriteExcellon(a, drills));

    World second;
    ASSERT_TRUE(second.Load(gerber, drills));
    const Board& b = second.app.board;
    ASSERT_EQ(CountOf(b.Pads[0]), CountOf(a.Pads[0]));
    ASSERT_EQ(CountOf(b.Tracks[0]), CountOf(a.Tracks[0]));
    // The file holds the items code by code, each code in list order.
    // The D codes repeat every 24 apertures, so the sizes come back only on layers with fewer.
    const std::string text = test::ReadAll(gerber);
    int apertures = 0;
    for (std::size_t at = text.find("%ADD"); at != std::string::npos;
         at = text.find("%ADD", at + 1))
      ++apertures;
    const bool sizes = apertures <= 24;
    const std::vector<const TPad*> padsByCode = ByCode(a.Pads[0]);
    const std::vector<const TTrack*> tracksByCode = ByCode(a.Tracks[0]);
    int pads = 0, tracks = 0, holes = 0, i = 0;
    for (const TPad* q = b.Pads[0]; q; q = q->next) {
      const TPad* p = padsByCode[i++];
      const bool same =
          Near(p->x, q->x, kGerberMm) && Near(p->y, q->y, kGerberMm) &&
          (!sizes || (a.PadShape[0][p->code] == b.PadShape[0][q->code] &&
                      Near(a.PadSizeX[0][p->code], b.PadSizeX[0][q->code], kApertureMm) &&
                      Near(a.PadSizeY[0][p->code], b.PadSizeY[0][q->code], kApertureMm)));
      pads += same ? 0 : 1;
    }
    i = 0;
    for (const TTrack* u = b.Tracks[0]; u; u = u->next) {
      const TTrack* t = tracksByCode[i++];
      const bool same =
          Near(t->x1, u->x1, kGerberMm) && Near(t->y1, u->y1, kGerberMm) &&
          Near(t->x2, u->x2, kGerberMm) && Near(t->y2, u->y2, kGerberMm) &&
          (!sizes || Near(a.TrackWidth[0][t->code], b.TrackWidth[0][u->code], kApertureMm));
      tracks += same ? 0 : 1;
    }
    // The holes come in tool order, the pads in file order: each hole must sit on a pad.
    EXPECT_EQ(CountOf(b.Drills), CountOf(a.Pads[0]));
    for (const TDrill* d = b.Drills; d; d = d->next) {
      bool onPad = false;
      for (const TPad* p = a.Pads[0]; p && !onPad; p = p->next)
        onPad = Near(p->x, d->x, kExcellonMm) && Near(p->y, d->y, kExcellonMm);
      holes += onPad ? 0 : 1;
    }
    EXPECT_EQ(pads, 0) << "pads differ after the round trip";
    EXPECT_EQ(tracks, 0) << "tracks differ after the round trip";
    EXPECT_EQ(holes, 0) << "holes off their pads";
    EXPECT_TRUE(second.platform.messages.empty()) << second.platform.messages[0].text;
    checkedSizes += sizes ? 1 : 0;
  }
  EXPECT_EQ(checkedSizes, 3);
}

}  // namespace
}  // namespace isolith
