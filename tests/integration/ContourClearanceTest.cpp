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
#include <memory>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cli/CliJob.h"
#include "cli/CliMain.h"
#include "commands/Application.h"
#include "integration/SampleBoards.h"
#include "integration/SvgGroups.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/ContourForm.h"
#include "toolpath/Contours.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

using Pt = test::SvgPt;
using Path = test::SvgPath;
using test::ReadSvgGroups;

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

double Length(Pt a, Pt b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

// Where segment ab crosses segment cd, as the fraction `t` along ab; false when they do not
// cross or are parallel.
bool Crossing(Pt a, Pt b, Pt c, Pt d, double& t) {
  const double rx = b.x - a.x, ry = b.y - a.y, sx = d.x - c.x, sy = d.y - c.y;
  const double den = rx * sy - ry * sx;
  if (den == 0) return false;
  t = ((c.x - a.x) * sy - (c.y - a.y) * sx) / den;
  const double w = ((c.x - a.x) * ry - (c.y - a.y) * rx) / den;
  return t >= 0 && t <= 1 && w >= 0 && w <= 1;
}

// Ids of things on a coarse grid of the card, each registered in the cells its box covers.
class BoxGrid {
 public:
  explicit BoxGrid(double cell) : cell_(cell) {}

  void Add(double x0, double y0, double x1, double y1, size_t id) {
    for (long i = Cell(x0); i <= Cell(x1); ++i)
      for (long j = Cell(y0); j <= Cell(y1); ++j) cells_[Key(i, j)].push_back(id);
    stamp_.push_back(0);
  }

  // Calls `f` once with each id registered in a cell that the box touches.
  template <class F>
  void Query(double x0, double y0, double x1, double y1, F&& f) const {
    ++round_;
    for (long i = Cell(x0); i <= Cell(x1); ++i)
      for (long j = Cell(y0); j <= Cell(y1); ++j) {
        auto it = cells_.find(Key(i, j));
        if (it == cells_.end()) continue;
        for (size_t id : it->second)
          if (stamp_[id] != round_) {
            stamp_[id] = round_;
            f(id);
          }
      }
  }

 private:
  long Cell(double v) const { return static_cast<long>(std::floor(v / cell_)); }
  static long long Key(long i, long j) {
    return (static_cast<long long>(i) << 32) ^ (j & 0xffffffff);
  }

  double cell_;
  std::unordered_map<long long, std::vector<size_t>> cells_;
  mutable std::vector<uint64_t> stamp_;  // ids are added in order 0, 1, 2...
  mutable uint64_t round_ = 0;
};

// The layer as the program reads it, as the calculation saw it (short tracks purged), and the
// draft of the contours of each pass: what the exceptions below are measured against.
struct LayerModel {
  test::FakePlatform platform;
  Application app;
  std::vector<std::pair<Pt, Pt>> draft;

  LayerModel(const fs::path& layer, const std::string& program, const std::string& config)
      : app(platform, program, config) {
    std::string error;
    app.overrides.AddAssignment("DetectGndPlanes=No", error);
    app.overrides.AddAssignment("DetectCutOut=No", error);
    InitSettings(app);
    JobArguments job;
    job.layerFiles.push_back(layer.string());
    std::vector<LoadedFile> loaded;
    if (!LoadJob(app, job, loaded)) return;
    Board& b = app.board;
    PurgeShortTracks(b, 0);
    ContourSettings s = ContourSettingsFrom(app.settings, app.tools);
    for (int p = 0; p < std::max(s.passes, 1) + std::max(s.padPasses, 0); ++p) {
      float padOffset, trackOffset;
      PassOffsets(s, p, padOffset, trackOffset);
      TSeg* list = BuildDraftContours(b, 0, padOffset, trackOffset, s.fast);
      for (const TSeg* d = list; d; d = d->next) draft.push_back({{d->x1, d->y1}, {d->x2, d->y2}});
      FreeChain(list);
    }
  }
  const Board& board() const { return app.board; }
};

// The removal tests measure a contour piece's midpoint against the centre line of a track only
// where the perpendicular foot falls on the track, never against the track's ends (its two end
// points are measured against both). A piece that cuts across the round end of a track thus
// stays, its midpoint inside the end. True when every track that `m` comes within `reach` of
// has its end, not its side, nearest to it (pads, which do measure midpoints, are the caller's).
class TrackEnds {
 public:
  TrackEnds(const Board& b, double reach) : reach_(reach), grid_(1.0) {
    for (const TTrack* t = b.Tracks[0]; t; t = t->next) {
      const double w = b.TrackWidth[0][t->code];
      const double r = w / 2 + reach;
      tracks_.push_back({{t->x1, t->y1}, {t->x2, t->y2}, w});
      grid_.Add(std::min(t->x1, t->x2) - r, std::min(t->y1, t->y2) - r, std::max(t->x1, t->x2) + r,
                std::max(t->y1, t->y2) + r, tracks_.size() - 1);
    }
  }

  bool OnlyBeyondEnds(Pt m) const {
    bool beyond = false, beside = false;
    grid_.Query(m.x, m.y, m.x, m.y, [&](size_t id) {
      const Track& t = tracks_[id];
      if (SegmentDistance(m, t.a, t.b) >= t.w / 2 + reach_) return;
      const double dx = t.b.x - t.a.x, dy = t.b.y - t.a.y;
      const double u = ((m.x - t.a.x) * dx + (m.y - t.a.y) * dy) / (dx * dx + dy * dy);
      (u < 0 || u > 1 ? beyond : beside) = true;
    });
    return beyond && !beside;
  }

 private:
  struct Track {
    Pt a, b;
    double w;
  };
  double reach_;
  std::vector<Track> tracks_;
  BoxGrid grid_;
};

// Runs of the draft that the calculation drops whole, as its rules say. A draft piece is split at
// a crossing only when the crossing lies more than 0.01 mm (on either axis) from both ends the
// piece has at that moment: a corner of the draft, or a split made just before at another
// crossing. A crossing that close leaves the piece running on past it by that little, into the
// grown copper of the neighbour it crosses; the removal finds that end inside and drops the whole
// piece, and the contour stays open from the end of a chain, along the draft, to the crossing.
// Recognised here as a run along a draft segment from an open chain end to the first contour
// vertex ahead (the crossing, where the neighbour's contour was split), which is not milled,
// keeps the cutter's clearance and borders open ground, while the draft segment ends or is
// crossed beyond that vertex, within 0.01 mm on each axis, inside grown copper. These are the
// grooves the cutter would have milled had the split been made.
std::vector<std::pair<Pt, Pt>> DroppedDraftRuns(const LayerModel& model,
                                                const std::vector<Path>& contours,
                                                const CopperIndex& copper, double half) {
  constexpr double tol = 0.01;
  BoxGrid draftGrid(0.5), segmentGrid(0.5), vertexGrid(0.5);
  for (size_t i = 0; i < model.draft.size(); ++i) {
    const auto& [a, b] = model.draft[i];
    draftGrid.Add(std::min(a.x, b.x) - tol, std::min(a.y, b.y) - tol, std::max(a.x, b.x) + tol,
                  std::max(a.y, b.y) + tol, i);
  }
  std::vector<std::pair<Pt, Pt>> segments;
  std::vector<Pt> vertices;
  for (const Path& c : contours)
    for (size_t k = 0; k < c.size(); ++k) {
      vertices.push_back(c[k]);
      vertexGrid.Add(c[k].x, c[k].y, c[k].x, c[k].y, vertices.size() - 1);
      if (k + 1 == c.size()) continue;
      segments.push_back({c[k], c[k + 1]});
      segmentGrid.Add(std::min(c[k].x, c[k + 1].x), std::min(c[k].y, c[k + 1].y),
                      std::max(c[k].x, c[k + 1].x), std::max(c[k].y, c[k + 1].y),
                      segments.size() - 1);
    }
  auto milled = [&](Pt p) {
    bool hit = false;
    segmentGrid.Query(p.x - tol, p.y - tol, p.x + tol, p.y + tol, [&](size_t id) {
      hit = hit || SegmentDistance(p, segments[id].first, segments[id].second) <= tol;
    });
    return hit;
  };
  auto clearance = [&](Pt p) { return copper.Clearance(p, 2 * half).first; };

  std::vector<std::pair<Pt, Pt>> runs;
  for (const Path& c : contours) {
    if (c.size() < 2 ||
        (std::abs(c.front().x - c.back().x) <= tol && std::abs(c.front().y - c.back().y) <= tol))
      continue;
    for (const Pt e : {c.front(), c.back()}) {
      draftGrid.Query(e.x, e.y, e.x, e.y, [&](size_t id) {
        const auto [a, b] = model.draft[id];
        if (SegmentDistance(e, a, b) > tol) return;
        for (const Pt end : {a, b}) {
          const double length = Length(e, end);
          if (length < 2 * tol) continue;
          const Pt u{(end.x - e.x) / length, (end.y - e.y) / length};
          auto at = [&](double t) { return Pt{e.x + t * u.x, e.y + t * u.y}; };
          double ahead = length + 2 * tol;
          Pt v{};
          vertexGrid.Query(std::min(e.x, end.x) - tol, std::min(e.y, end.y) - tol,
                           std::max(e.x, end.x) + tol, std::max(e.y, end.y) + tol, [&](size_t vid) {
                             const Pt q = vertices[vid];
                             const double along = (q.x - e.x) * u.x + (q.y - e.y) * u.y;
                             const double across = std::abs((q.x - e.x) * u.y - (q.y - e.y) * u.x);
                             if (along > 2 * tol && along < ahead && across <= tol) {
                               ahead = along;
                               v = q;
                             }
                           });
          if (ahead > length + tol || milled({(e.x + v.x) / 2, (e.y + v.y) / 2})) continue;
          // Where the piece ended: the draft segment's own end or a crossing with another draft
          // segment, beyond V and within 0.01 of it on each axis, inside grown copper.
          const double reach = ahead + tol / std::max(std::abs(u.x), std::abs(u.y));
          bool endsInside = length <= reach && clearance(end) < half - 0.001;
          draftGrid.Query(v.x - tol, v.y - tol, v.x + tol, v.y + tol, [&](size_t other) {
            if (endsInside || other == id) return;
            double t;
            if (Crossing(e, end, model.draft[other].first, model.draft[other].second, t) &&
                t * length > ahead && t * length <= reach)
              endsInside = clearance(at(t * length)) < half - 0.001;
          });
          if (!endsInside) continue;
          // The run is an edge of the grown copper: open ground lies beside its middle.
          const Pt m = at(ahead / 2);
          const double side = 3 * tol;
          if (std::max(clearance({m.x - side * u.y, m.y + side * u.x}),
                       clearance({m.x + side * u.y, m.y - side * u.x})) < half + side / 2)
            continue;
          bool clear = true;
          const int steps = static_cast<int>(std::ceil(ahead / tol));
          for (int k = 0; k < steps && clear; ++k)
            clear = clearance(at(ahead * k / steps)) >= half - tol;
          const bool known = std::any_of(runs.begin(), runs.end(), [&](const auto& r) {
            return (Length(r.first, e) < tol && Length(r.second, v) < tol) ||
                   (Length(r.first, v) < tol && Length(r.second, e) < tol);
          });
          if (clear && !known) runs.push_back({e, v});
        }
      });
    }
  }
  return runs;
}

Pt Centre(const Path& poly) {
  double x0 = 1e18, y0 = 1e18, x1 = -1e18, y1 = -1e18;
  for (const Pt& p : poly) {
    x0 = std::min(x0, p.x), y0 = std::min(y0, p.y);
    x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
  }
  return {(x0 + x1) / 2, (y0 + y1) / 2};
}

std::vector<fs::path> CopperLayers() {
  std::vector<fs::path> layers = test::SampleCopperLayers(false);
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
    const std::vector<Path>& pads = groups["pads0"];
    std::vector<Path> copper = pads;
    const std::vector<Path>& tracks = groups["tracks0"];
    copper.insert(copper.end(), tracks.begin(), tracks.end());
    const std::vector<Path>& contours = groups["contours0"];
    ASSERT_FALSE(contours.empty());
    CopperIndex index(copper, 1.0), padIndex(pads, 1.0);
    const LayerModel model(layer, program.path(), config.path());
    ASSERT_FALSE(model.draft.empty());

    // Every vertex and every midpoint of a contour keeps at least half a cutting width from
    // copper, less what the calculator's own tolerances allow (chords of round ends, the 0.98
    // and 0.49 factors, the 0.01 margins). The exceptions follow from the calculation's rules:
    // where two copper items stand closer than a cutting width the tool cannot keep off both;
    // short open pieces survive near the edge of a ring (between the 0.49 removal radius and
    // the ring itself) or beside a pad whose removal test skips their far end, and those pieces
    // must stay outside the copper; a midpoint beyond the end of a track is not measured
    // against it (TrackEnds).
    const double slack = 0.02 + 0.02 * half;
    const TrackEnds trackEnds(model.board(), half - slack);
    double worst = half, worstStray = half;
    int midpointsBeyondEnds = 0;
    for (const Path& c : contours) {
      const bool stray = c.size() == 2;
      for (size_t k = 0; k < c.size(); ++k) {
        std::vector<Pt> probes{c[k]};
        if (k + 1 < c.size())
          probes.push_back({(c[k].x + c[k + 1].x) / 2, (c[k].y + c[k + 1].y) / 2});
        for (size_t n = 0; n < probes.size(); ++n) {
          const Pt p = probes[n];
          const auto [first, second] = index.Clearance(p, 2 * half);
          if (n == 1 && !stray && first < half - slack &&
              padIndex.Clearance(p, 2 * half).first >= half - slack &&
              trackEnds.OnlyBeyondEnds(p)) {
            ++midpointsBeyondEnds;
            continue;
          }
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
    // A few on a board (at most 5 on the sample boards); many would be a fault of our own.
    EXPECT_LE(midpointsBeyondEnds, static_cast<int>(5 + copper.size() / 500))
        << "midpoints inside the round ends of tracks";

    // The grooves milled along the contours isolate every pad and track from the rest of the
    // card: the ground connected to the card's edge reaches no copper item's centre. Where the
    // calculation drops a piece of the draft whole (DroppedDraftRuns), the groove it would have
    // cut is added.
    const auto& card = groups["card"];
    ASSERT_EQ(card.size(), 1u);
    Grooves grooves(card[0][2].x, card[0][2].y, 0.02);
    for (const Path& c : contours) grooves.Mill(c, 2 * half);
    const auto dropped = DroppedDraftRuns(model, contours, index, half);
    // About one in 150 items on the sample boards (9 of the 1243 of core.GBL, 65 of the 19287 of
    // clockblock's front); many more would be a fault of our own.
    EXPECT_LE(dropped.size(), 10 + copper.size() / 100) << "draft runs dropped whole";
    for (const auto& [from, to] : dropped) grooves.Mill({from, to}, 2 * half);
    grooves.FloodFromEdge();
    int reached = 0;
    std::ostringstream where;
    for (const Path& item : copper)
      if (grooves.ReachedFromEdge(Centre(item)) && ++reached <= 5)
        where << " (" << Centre(item).x << ", " << Centre(item).y << ")";
    EXPECT_EQ(reached, 0) << "of " << copper.size() << " pads and tracks are not isolated, e.g."
                          << where.str();
  }
}

}  // namespace
}  // namespace isolith
