// A ground pour read the modern way is copper: the contours go round the pour, and a via that
// stands inside it stays joined to it instead of getting an isolation ring of its own, as it
// does when the classic reading leaves only the pour's outline.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "cli/CliJob.h"
#include "commands/Application.h"
#include "commands/ToolpathCommands.h"
#include "import/modern/GerberImage.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

const fs::path kPour = fs::path(ISOLITH_FIXTURES) / "usbvil" / "pic18f14k50.gbl";

// The flashes of the file that stand in poured copper: every point a little way round the pad
// lies in a poured region and in no area cleared from it.
std::vector<OutlinePoint> PadsInThePour() {
  std::ifstream in(kPour, std::ios::binary);
  const GerberImage image = ReadGerberImage(in, ImageScales{});
  auto copper = [&](OutlinePoint p) {
    bool poured = false, cleared = false;
    for (const ImageObject& r : image.objects)
      if (r.kind == ImageObject::Kind::Region && InsideOutlines(r.outlines, p))
        (r.clear ? cleared : poured) = true;
    return poured && !cleared;
  };
  std::vector<OutlinePoint> pads;
  for (const ImageObject& o : image.objects) {
    if (o.kind != ImageObject::Kind::Flash) continue;
    const ImageAperture& a = image.apertures.at(o.aperture);
    const double reach = std::hypot(a.sizeX, a.sizeY) / 2 + 0.3;
    bool inside = true;
    for (int k = 0; k < 16 && inside; ++k)
      inside = copper({o.a.x + reach * std::cos(k * 0.3927), o.a.y + reach * std::sin(k * 0.3927)});
    if (inside) pads.push_back(o.a);
  }
  return pads;
}

OutlinePoint FirstFlash() {
  std::ifstream in(kPour, std::ios::binary);
  for (const ImageObject& o : ReadGerberImage(in, ImageScales{}).objects)
    if (o.kind == ImageObject::Kind::Flash) return o.a;
  return {};
}

// How many of `pads` (in the file's frame) a contour rings on its own: a closed contour whose
// every vertex lies within a millimetre and a half of the pad.
int RingedPads(bool modern, const std::vector<OutlinePoint>& pads) {
  test::TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  test::FakePlatform platform;
  Application app(platform, program.path(), config.path());
  InitSettings(app);
  JobArguments job;
  job.modern = modern;
  job.layerFiles = {kPour.string()};
  std::vector<LoadedFile> loaded;
  if (!LoadJob(app, job, loaded) || !CalculateContoursOnAllLayers(app)) return -1;
  // The load moved the copper: the first pad is the file's first flash.
  const OutlinePoint first = FirstFlash();
  const double dx = app.board.Pads[0]->x - first.x, dy = app.board.Pads[0]->y - first.y;
  int ringed = 0;
  for (const OutlinePoint& p : pads) {
    bool ring = false;
    for (const TPolygon* c = app.board.Contours[0]; c && !ring; c = c->next) {
      bool near = c->first != nullptr;
      for (const TXY* v = c->first; v && near; v = v->next)
        near = std::hypot(v->x - (p.x + dx), v->y - (p.y + dy)) <= 1.5;
      ring = near;
    }
    ringed += ring;
  }
  return ringed;
}

TEST(GroundPour, ViasInsideThePourStayJoinedToIt) {
  ASSERT_TRUE(fs::exists(kPour)) << "the sample boards are not installed";
  const std::vector<OutlinePoint> pads = PadsInThePour();
  ASSERT_GE(pads.size(), 3u);
  EXPECT_EQ(RingedPads(true, pads), 0);
  EXPECT_GT(RingedPads(false, pads), 0);
}

}  // namespace
}  // namespace isolith
