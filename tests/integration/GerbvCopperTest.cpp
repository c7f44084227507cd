// The modern reading of the sample boards' copper layers judged by another program: gerbv
// renders each layer at 600 dpi, the pads and tracks that the reading makes are rasterised in
// the same window, and the copper pixels of the two must agree (intersection over union, a
// difference within two pixels of the other's copper counting as a raster edge), with no
// connected patch of difference the size of a small pad.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <string>
#include <vector>

#include "core/board/Board.h"
#include "import/GerberReader.h"
#include "import/modern/ModernGerberReader.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::ReadAll;
using test::TempFolder;

constexpr double kDpi = 600;
constexpr double kPixel = 25.4 / kDpi;  // mm
constexpr int kForgiven = 2;            // pixels

struct Mask {
  int w = 0, h = 0;
  std::vector<uint8_t> on;
  uint8_t& at(int x, int y) { return on[size_t(y) * size_t(w) + size_t(x)]; }
};

// The window of the picture, in mm: the items' extent with their sizes, and a margin.
struct Window {
  double left = 0, bottom = 0;
  int w = 0, h = 0;  // pixels
};

double PadRadius(const Board& b, int layer, const TPad& p) {
  return std::hypot(b.PadSizeX[layer][p.code], b.PadSizeY[layer][p.code]) / 2;
}

Window WindowOf(const Board& b, int layer) {
  double xmin = 1e9, ymin = 1e9, xmax = -1e9, ymax = -1e9;
  auto take = [&](double x, double y, double r) {
    xmin = std::min(xmin, x - r);
    xmax = std::max(xmax, x + r);
    ymin = std::min(ymin, y - r);
    ymax = std::max(ymax, y + r);
  };
  for (const TPad* p = b.ImportPads; p; p = p->next) take(p->x, p->y, PadRadius(b, layer, *p));
  for (const TTrack* t = b.ImportTracks; t; t = t->next) {
    const double r = b.TrackWidth[layer][t->code] / 2;
    take(t->x1, t->y1, r);
    take(t->x2, t->y2, r);
  }
  // Whole hundredths of an inch, so that both programs meet the same pixel grid.
  auto down = [](double mm) { return std::floor(mm / 0.254 - 1) * 0.254; };
  auto up = [](double mm) { return std::ceil(mm / 0.254 + 1) * 0.254; };
  Window win;
  win.left = down(xmin);
  win.bottom = down(ymin);
  win.w = int(std::lround((up(xmax) - win.left) / kPixel));
  win.h = int(std::lround((up(ymax) - win.bottom) / kPixel));
  return win;
}

// Our reading, pixel by pixel: a pixel is copper when its centre lies in a pad or a track.
Mask Rasterise(const Board& b, int layer, const Window& win) {
  Mask m{win.w, win.h, std::vector<uint8_t>(size_t(win.w) * size_t(win.h), 0)};
  auto span = [&](double lo, double hi, double origin, int n, int& a, int& z) {
    a = std::max(0, int(std::floor((lo - origin) / kPixel)));
    z = std::min(n - 1, int(std::ceil((hi - origin) / kPixel)));
  };
  auto paint = [&](double x0, double y0, double x1, double y1, auto inside) {
    int i0, i1, j0, j1;
    span(x0, x1, win.left, win.w, i0, i1);
    span(y0, y1, win.bottom, win.h, j0, j1);
    for (int j = j0; j <= j1; ++j)
      for (int i = i0; i <= i1; ++i) {
        const double x = win.left + (i + 0.5) * kPixel, y = win.bottom + (j + 0.5) * kPixel;
        if (inside(x, y)) m.at(i, win.h - 1 - j) = 1;
      }
  };
  for (const TPad* p = b.ImportPads; p; p = p->next) {
    const double sx = b.PadSizeX[layer][p->code] / 2, sy = b.PadSizeY[layer][p->code] / 2;
    const int shape = b.PadShape[layer][p->code];
    paint(p->x - sx, p->y - sy, p->x + sx, p->y + sy, [&](double x, double y) {
      const double dx = std::fabs(x - p->x), dy = std::fabs(y - p->y);
      switch (shape) {
        case kShapeCircle:
          return std::hypot(dx, dy) <= sx;
        case kShapeObround: {
          const double r = std::min(sx, sy);
          return std::hypot(std::max(0.0, dx - (sx - r)), std::max(0.0, dy - (sy - r))) <= r;
        }
        case kShapeOctagon: {  // corners on the circle of the size, sides upright
          const double flat = sx * std::cos(std::numbers::pi / 8);
          return dx <= flat && dy <= flat &&
                 (dx + dy) <= flat * (1 + std::tan(std::numbers::pi / 8));
        }
        default:
          return dx <= sx && dy <= sy;
      }
    });
  }
  for (const TTrack* t = b.ImportTracks; t; t = t->next) {
    const double r = b.TrackWidth[layer][t->code] / 2;
    const double ax = t->x1, ay = t->y1, bx = t->x2, by = t->y2;
    paint(std::min(ax, bx) - r, std::min(ay, by) - r, std::max(ax, bx) + r, std::max(ay, by) + r,
          [&](double x, double y) {
            const double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
            const double u =
                len2 > 0 ? std::clamp(((x - ax) * dx + (y - ay) * dy) / len2, 0.0, 1.0) : 0;
            return std::hypot(x - ax - u * dx, y - ay - u * dy) <= r;
          });
  }
  return m;
}

// gerbv's picture of `file` in the same window, read back through netpbm's converter. gerbv
// refuses pictures of more than 2000 pixels a side: the window is taken in tiles.
constexpr int kTile = 2000;

bool GerbvTile(const fs::path& file, const Window& win, int x0, int y0, int w, int h,
               const std::string& folder, Mask& m) {
  const std::string png = folder + "layer.png", ppm = folder + "layer.ppm";
  char origin[64], size[64];
  std::snprintf(origin, sizeof origin, "%.6f;%.6f", (win.left + x0 * kPixel) / 25.4,
                (win.bottom + y0 * kPixel) / 25.4);
  std::snprintf(size, sizeof size, "%dx%d", w, h);
  const std::string command = "gerbv -x png --dpi 600 -B 0 -b '#000000' -f '#FFFFFFFF' -O '" +
                              std::string(origin) + "' -w " + size + " -o '" + png + "' '" +
                              file.string() + "' >/dev/null 2>&1 && pngtopnm '" + png + "' > '" +
                              ppm + "' 2>/dev/null";
  if (std::system(command.c_str()) != 0) return false;
  const std::string data = ReadAll(ppm);
  std::istringstream in(data);
  std::string magic;
  int tw = 0, th = 0, maxValue = 0;
  in >> magic >> tw >> th >> maxValue;
  in.get();
  if (magic != "P6" || tw != w || th != h) return false;
  const size_t start = size_t(in.tellg());
  if (data.size() < start + size_t(3 * w) * size_t(h)) return false;
  // The tile's top row is the window's row (height - y0 - h) counted from the top.
  for (int row = 0; row < h; ++row)
    for (int x = 0; x < w; ++x)
      m.at(x0 + x, m.h - y0 - h + row) =
          static_cast<unsigned char>(data[start + 3 * (size_t(row) * size_t(w) + size_t(x)) + 1]) >
          127;
  return true;
}

Mask Gerbv(const fs::path& file, const Window& win, const std::string& folder) {
  Mask m{win.w, win.h, std::vector<uint8_t>(size_t(win.w) * size_t(win.h), 0)};
  for (int y0 = 0; y0 < win.h; y0 += kTile)
    for (int x0 = 0; x0 < win.w; x0 += kTile)
      if (!GerbvTile(file, win, x0, y0, std::min(kTile, win.w - x0), std::min(kTile, win.h - y0),
                     folder, m))
        return {};
  return m;
}

// Each pixel within kForgiven pixels of a copper pixel.
Mask Grown(Mask m) {
  Mask rows = m;
  for (int y = 0; y < m.h; ++y)
    for (int x = 0; x < m.w; ++x) {
      uint8_t v = 0;
      for (int d = -kForgiven; d <= kForgiven && !v; ++d)
        if (x + d >= 0 && x + d < m.w) v = m.at(x + d, y);
      rows.at(x, y) = v;
    }
  Mask out = rows;
  for (int y = 0; y < m.h; ++y)
    for (int x = 0; x < m.w; ++x) {
      uint8_t v = 0;
      for (int d = -kForgiven; d <= kForgiven && !v; ++d)
        if (y + d >= 0 && y + d < m.h) v = rows.at(x, y + d);
      out.at(x, y) = v;
    }
  return out;
}

struct Agreement {
  double iou = 0;
  long ours = 0, theirs = 0;
  long largestDifference = 0;  // pixels of the largest connected patch of unforgiven difference
};

// The largest 4-connected patch of marked pixels.
long LargestPatch(Mask& m) {
  long largest = 0;
  std::vector<size_t> stack;
  for (size_t start = 0; start < m.on.size(); ++start) {
    if (m.on[start] != 1) continue;
    long size = 0;
    m.on[start] = 2;
    stack.push_back(start);
    while (!stack.empty()) {
      const size_t i = stack.back();
      stack.pop_back();
      ++size;
      const int x = int(i % size_t(m.w)), y = int(i / size_t(m.w));
      const int nx[] = {x - 1, x + 1, x, x}, ny[] = {y, y, y - 1, y + 1};
      for (int k = 0; k < 4; ++k) {
        if (nx[k] < 0 || ny[k] < 0 || nx[k] >= m.w || ny[k] >= m.h || m.at(nx[k], ny[k]) != 1)
          continue;
        m.at(nx[k], ny[k]) = 2;
        stack.push_back(size_t(ny[k]) * size_t(m.w) + size_t(nx[k]));
      }
    }
    largest = std::max(largest, size);
  }
  return largest;
}

Agreement Compare(Mask& ours, Mask& theirs) {
  Mask nearOurs = Grown(ours), nearTheirs = Grown(theirs);
  long both = 0, differ = 0;
  Agreement a;
  Mask difference{ours.w, ours.h, std::vector<uint8_t>(ours.on.size(), 0)};
  for (size_t i = 0; i < ours.on.size(); ++i) {
    a.ours += ours.on[i];
    a.theirs += theirs.on[i];
    if (ours.on[i] && theirs.on[i]) {
      ++both;
    } else if ((ours.on[i] && !nearTheirs.on[i]) || (theirs.on[i] && !nearOurs.on[i])) {
      ++differ;
      difference.on[i] = 1;
    }
  }
  a.iou = both + differ > 0 ? double(both) / double(both + differ) : 0;
  a.largestDifference = LargestPatch(difference);
  return a;
}

bool ToolsInstalled() {
  return std::system("command -v gerbv >/dev/null 2>&1 && command -v pngtopnm >/dev/null 2>&1") ==
         0;
}

TEST(GerbvCopper, EveryCopperLayerOfTheSampleBoardsMatchesGerbvsPicture) {
  const fs::path boards = ISOLITH_FIXTURES;
  ASSERT_TRUE(fs::is_directory(boards)) << "the sample boards are not installed";
  ASSERT_TRUE(ToolsInstalled()) << "gerbv and netpbm: scripts/install-deps.sh installs them";
  TempFolder folder;
  int layers = 0, classicShort = 0;
  for (const auto& entry : fs::directory_iterator(boards)) {
    const nlohmann::json manifest =
        nlohmann::json::parse(ReadAll(entry.path() / "manifest.json"), nullptr, false);
    if (!manifest.is_object()) continue;
    for (const auto& layer : manifest["layers"]) {
      if (layer.value("type", "") != "copper") continue;
      const fs::path file = entry.path() / layer.value("name", "");
      SCOPED_TRACE(file.string());
      Board b;
      std::ifstream in(file, std::ios::binary);
      ReadModernGerber(in, DefaultImportFormats()[kRowGerber], 0, 0.01, b);
      const Window win = WindowOf(b, 0);
      Mask ours = Rasterise(b, 0, win);
      Mask theirs = Gerbv(file, win, folder.path());
      ASSERT_EQ(theirs.w, ours.w);
      ASSERT_EQ(theirs.h, ours.h);
      const Agreement a = Compare(ours, theirs);
      EXPECT_GE(a.iou, 0.98) << "copper pixels: ours " << a.ours << ", gerbv's " << a.theirs;
      // No piece missing or added: a pad of 0.6 mm left out would leave about a hundred pixels
      // beyond the forgiven edges.
      EXPECT_LE(a.largestDifference, 100);
      // The judge tells the readings apart: the classic one, which draws a region's outline
      // with the pen of the moment, misses poured copper.
      Board classic;
      std::ifstream again(file, std::ios::binary);
      ReadGerber(again, DefaultImportFormats()[kRowGerber], 0, classic);
      Mask plain = Rasterise(classic, 0, win);
      const Agreement before = Compare(plain, theirs);
      std::printf("%s: IoU %.4f, largest difference %ld px (classic %.4f)\n",
                  file.filename().c_str(), a.iou, a.largestDifference, before.iou);
      classicShort += before.iou < 0.98;
      ++layers;
    }
  }
  EXPECT_GE(layers, 16);
  // The layers with poured copper: mchck (2), usbvil's bottom, clockblock (2), core's bottom.
  EXPECT_GE(classicShort, 6);
}

}  // namespace
}  // namespace isolith
