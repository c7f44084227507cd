// Isolation on real boards, measured: on every copper layer of the sample boards, the contours
// that `isolith-cli render --contours` writes keep the cutter's edge off the copper (the path
// runs at least half a cutting width from it) and enclose every pad and track.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cli/CliMain.h"
#include "core/application/Application.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"
#include "toolpath/ContourForm.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

struct Pt {
  double x, y;
};
using Path = std::vector<Pt>;

// The polylines of each group of an SVG that the program wrote, by class and layer.
std::map<std::string, std::vector<Path>> ReadSvgGroups(const std::string& svg) {
  std::map<std::string, std::vector<Path>> groups;
  const std::regex tag(
      R"re(<g class="([a-z]+)"(?: data-layer="(\d)")?>|<polyline points="([^"]*)"/>)re");
  std::string current;
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), tag); it != std::sregex_iterator();
       ++it) {
    const std::smatch& m = *it;
    if (m[1].matched) {
      current = m[1].str() + (m[2].matched ? m[2].str() : "");
      continue;
    }
    Path path;
    std::istringstream in(m[3].str());
    std::string pair;
    while (in >> pair) {
      const size_t comma = pair.find(',');
      path.push_back({std::stod(pair.substr(0, comma)), std::stod(pair.substr(comma + 1))});
    }
    groups[current].push_back(std::move(path));
  }
  return groups;
}

double SegmentDistance(Pt p, Pt a, Pt b) {
  const double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / len2 : 0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// Even-odd test of a point against a path taken as closed.
bool Inside(const Path& poly, Pt p) {
  bool in = false;
  for (size_t i = 0, j = poly.size() - 1; i < poly.size(); j = i++) {
    const Pt a = poly[i], b = poly[j];
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) in = !in;
  }
  return in;
}

// Copper outlines on a coarse grid, so that each probe looks only at what is near it.
class CopperIndex {
 public:
  CopperIndex(const std::vector<Path>& outlines, double cell) : outlines_(outlines), cell_(cell) {
    for (size_t n = 0; n < outlines_.size(); ++n) {
      double x0 = 1e18, y0 = 1e18, x1 = -1e18, y1 = -1e18;
      for (const Pt& p : outlines_[n]) {
        x0 = std::min(x0, p.x), y0 = std::min(y0, p.y);
        x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
      }
      for (long i = Cell(x0); i <= Cell(x1); ++i)
        for (long j = Cell(y0); j <= Cell(y1); ++j) cells_[Key(i, j)].push_back(n);
    }
  }

  // The distances from p to the nearest copper item and to the nearest other item, each at most
  // `reach`; the first is negative when p lies inside copper.
  std::pair<double, double> Clearance(Pt p, double reach) const {
    double first = reach, second = reach;
    size_t firstItem = SIZE_MAX;
    std::vector<size_t> seen;
    for (long i = Cell(p.x - reach); i <= Cell(p.x + reach); ++i)
      for (long j = Cell(p.y - reach); j <= Cell(p.y + reach); ++j) {
        auto it = cells_.find(Key(i, j));
        if (it == cells_.end()) continue;
        for (size_t n : it->second) {
          if (std::find(seen.begin(), seen.end(), n) != seen.end()) continue;
          seen.push_back(n);
          const Path& poly = outlines_[n];
          double d = reach;
          for (size_t k = 0; k + 1 < poly.size(); ++k)
            d = std::min(d, SegmentDistance(p, poly[k], poly[k + 1]));
          if (Inside(poly, p)) d = -d;
          if (d < first) {
            if (firstItem != SIZE_MAX) second = std::min(second, first);
            first = d;
            firstItem = n;
          } else {
            second = std::min(second, d);
          }
        }
      }
    return {first, second};
  }

 private:
  long Cell(double v) const { return static_cast<long>(std::floor(v / cell_)); }
  static long long Key(long i, long j) {
    return (static_cast<long long>(i) << 32) ^ (j & 0xffffffff);
  }

  const std::vector<Path>& outlines_;
  double cell_;
  std::unordered_map<long long, std::vector<size_t>> cells_;
};

// The grooves that the cutter mills along the contours, on a fine raster of the card, and the
// ground that stays connected to the card's edge: copper that this ground reaches is not
// isolated.
class Grooves {
 public:
  Grooves(double width, double height, double cell) : cell_(cell) {
    nx_ = static_cast<long>(width / cell) + 3;
    ny_ = static_cast<long>(height / cell) + 3;
    cut_.assign(nx_ * ny_, 0);
  }

  // Mills a path with a cutter of the given width.
  void Mill(const Path& path, double width) {
    const double r = width / 2;
    for (size_t k = 0; k + 1 < path.size(); ++k) {
      const Pt a = path[k], b = path[k + 1];
      for (long i = Index(std::min(a.x, b.x) - r); i <= Index(std::max(a.x, b.x) + r); ++i)
        for (long j = Index(std::min(a.y, b.y) - r); j <= Index(std::max(a.y, b.y) + r); ++j)
          if (In(i, j) && SegmentDistance(Centre(i, j), a, b) <= r) cut_[i * ny_ + j] = 1;
    }
  }

  // Floods the uncut ground from the raster's border.
  void FloodFromEdge() {
    std::vector<std::pair<long, long>> stack;
    auto push = [&](long i, long j) {
      if (In(i, j) && cut_[i * ny_ + j] == 0) {
        cut_[i * ny_ + j] = 2;
        stack.push_back({i, j});
      }
    };
    for (long i = 0; i < nx_; ++i) push(i, 0), push(i, ny_ - 1);
    for (long j = 0; j < ny_; ++j) push(0, j), push(nx_ - 1, j);
    while (!stack.empty()) {
      auto [i, j] = stack.back();
      stack.pop_back();
      push(i + 1, j), push(i - 1, j), push(i, j + 1), push(i, j - 1);
    }
  }

  bool ReachedFromEdge(Pt p) const {
    const long i = Index(p.x), j = Index(p.y);
    return In(i, j) && cut_[i * ny_ + j] == 2;
  }

 private:
  long Index(double v) const { return static_cast<long>(std::floor(v / cell_)) + 1; }
  Pt Centre(long i, long j) const { return {(i - 0.5) * cell_, (j - 0.5) * cell_}; }
  bool In(long i, long j) const { return i >= 0 && j >= 0 && i < nx_ && j < ny_; }

  double cell_;
  long nx_ = 0, ny_ = 0;
  std::vector<uint8_t> cut_;  // 0 ground, 1 milled, 2 ground reached from the edge
};

Pt Centre(const Path& poly) {
  double x0 = 1e18, y0 = 1e18, x1 = -1e18, y1 = -1e18;
  for (const Pt& p : poly) {
    x0 = std::min(x0, p.x), y0 = std::min(y0, p.y);
    x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
  }
  return {(x0 + x1) / 2, (y0 + y1) / 2};
}

std::vector<fs::path> CopperLayers() {
  std::vector<fs::path> layers;
  for (const auto& board : fs::directory_iterator(ISOLITH_FIXTURES)) {
    std::ifstream in(board.path() / "manifest.json");
    const nlohmann::json manifest = nlohmann::json::parse(in, nullptr, false);
    if (manifest.is_discarded()) continue;
    for (const auto& layer : manifest["layers"])
      if (layer["type"] == "copper")
        layers.push_back(board.path() / layer["name"].get<std::string>());
  }
  std::sort(layers.begin(), layers.end());
  // ISOLITH_LAYERS=name narrows a run to the layers whose path contains it, to study one board.
  if (const char* only = std::getenv("ISOLITH_LAYERS"))
    std::erase_if(layers,
                  [&](const fs::path& p) { return p.string().find(only) == std::string::npos; });
  return layers;
}

TEST(ContourClearance, EveryCopperLayerOfTheSampleBoardsIsIsolated) {
  const std::vector<fs::path> layers = CopperLayers();
  ASSERT_GE(layers.size(), std::getenv("ISOLITH_LAYERS") ? 1u : 16u)
      << "sample boards missing from " << ISOLITH_FIXTURES;

  TempFolder program, config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  // The cutting width of the contour tool that the first run chooses.
  test::FakePlatform platform;
  Application app(platform, program.path(), config.path());
  InitSettings(app);

  for (const fs::path& layer : layers) {
    SCOPED_TRACE(layer.filename().string());
    const std::string svgPath = config.path() + "layer.svg";
    std::ostringstream out, err;
    // Copper planes and card outlines stay copper here, so that every track must be enclosed.
    const int status =
        CliMain({"--config", config.path(), "--set", "DetectGndPlanes=No", "--set",
                 "DetectCutOut=No", "render", "--contours", layer.string(), "-o", svgPath},
                program.path(), out, err);
    ASSERT_EQ(status, kCliOk) << err.str();
    // The run and this test read the same settings file.
    ReadSettings(config.path(), kSettingsBaseName, app.settings, LayerZeroApertures(app.board));
    const double half = ContourDistance(app.settings, app.tools) / 2;
    ASSERT_GT(half, 0.01);

    auto groups = ReadSvgGroups(test::ReadAll(svgPath));
    std::vector<Path> copper = groups["pads0"];
    const std::vector<Path>& tracks = groups["tracks0"];
    copper.insert(copper.end(), tracks.begin(), tracks.end());
    const std::vector<Path>& contours = groups["contours0"];
    ASSERT_FALSE(contours.empty());
    CopperIndex index(copper, 1.0);

    // Every vertex and every midpoint of a contour keeps at least half a cutting width from
    // copper, less what the calculator's own tolerances allow (chords of round ends, the 0.98
    // and 0.49 factors, the 0.01 margins). Two exceptions follow from the calculation's rules:
    // where two copper items stand closer than a cutting width the tool cannot keep off both,
    // and short open pieces survive near the edge of a ring (between the 0.49 removal radius and
    // the ring itself) or beside a pad whose removal test skips their far end. Those pieces must
    // stay outside the copper.
    const double slack = 0.02 + 0.02 * half;
    double worst = half, worstStray = half;
    for (const Path& c : contours) {
      const bool stray = c.size() == 2;
      for (size_t k = 0; k < c.size(); ++k) {
        std::vector<Pt> probes{c[k]};
        if (k + 1 < c.size())
          probes.push_back({(c[k].x + c[k + 1].x) / 2, (c[k].y + c[k + 1].y) / 2});
        for (const Pt& p : probes) {
          const auto [first, second] = index.Clearance(p, 2 * half);
          if (stray) {
            worstStray = std::min(worstStray, first);
          } else if (first + second >= 2 * half + slack) {
            worst = std::min(worst, first);
          } else {
            EXPECT_GE(first, 0) << "a contour enters copper at " << p.x << ", " << p.y;
          }
        }
      }
    }
    EXPECT_GE(worst, half - slack) << "a contour comes within " << worst << " mm of copper";
    EXPECT_GT(worstStray, 0) << "a short piece touches copper";

    // The grooves milled along the contours isolate every pad and track from the rest of the
    // card: the ground connected to the card's edge reaches no copper item's centre.
    const auto& card = groups["card"];
    ASSERT_EQ(card.size(), 1u);
    Grooves grooves(card[0][2].x, card[0][2].y, 0.02);
    for (const Path& c : contours) grooves.Mill(c, 2 * half);
    grooves.FloodFromEdge();
    int reached = 0;
    for (const Path& item : copper) reached += grooves.ReachedFromEdge(Centre(item)) ? 1 : 0;
    EXPECT_EQ(reached, 0) << "of " << copper.size() << " pads and tracks are not isolated";
  }
}

}  // namespace
}  // namespace isolith
