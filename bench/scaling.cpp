// Growth with size: the largest sample copper layer alone and tiled 2 x 2 and 4 x 4 (copies side
// by side on a card as many times larger), with the time of every phase of the contours and of
// the hatches, of the plane detection, and of a whole `isolith-cli mill --hatches` (read,
// contours, hatches, walk, write). The table ends with each phase's growth exponent from the
// single layer to the 4 x 4 tiling: time grows as items^exponent, 1 being linear.
//
//   bench_scaling [--tilings 1,2,4]
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "SampleLayers.h"
#include "cli/CliMain.h"
#include "output/export/BoardExport.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/Contours.h"
#include "toolpath/CopperPlanes.h"
#include "toolpath/Hatches.h"

namespace {

using namespace isolith;
using namespace isolith::bench;
using Clock = std::chrono::steady_clock;

double Ms(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

// A console platform that times the phases a calculation announces in its status line.
class PhaseClock : public ConsolePlatform {
 public:
  explicit PhaseClock(std::FILE* out) : ConsolePlatform(out) {}
  void SetStatus(std::string_view text) override {
    Close();
    phase_ = std::string(text);
    start_ = Clock::now();
  }
  // Ends the running phase; its time goes to `prefix` + its text.
  void Close() {
    if (!phase_.empty()) times[prefix + phase_] += Ms(start_);
    phase_.clear();
  }
  std::string prefix;
  std::map<std::string, double> times;

 private:
  std::string phase_;
  Clock::time_point start_;
};

// `layer`'s pads and tracks copied `n` x `n` times, card by card.
void Tile(Board& b, int n) {
  const float w = b.CardWidth, h = b.CardHeight;
  TPad* pads = b.Pads[0];
  TTrack* tracks = b.Tracks[0];
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) {
      if (i == 0 && j == 0) continue;
      for (const TPad* p = pads; p; p = p->next) {
        auto* copy = new TPad(*p);
        copy->x += i * w, copy->y += j * h;
        copy->next = b.Pads[0], b.Pads[0] = copy;
      }
      for (const TTrack* t = tracks; t; t = t->next) {
        auto* copy = new TTrack(*t);
        copy->x1 += i * w, copy->x2 += i * w, copy->y1 += j * h, copy->y2 += j * h;
        copy->next = b.Tracks[0], b.Tracks[0] = copy;
      }
    }
  b.CardWidth = n * w, b.CardHeight = n * h;
}

struct Row {
  int tiling = 0;
  long long items = 0, segments = 0;
  std::map<std::string, double> ms;
};

Row Measure(const fs::path& source, int n, const fs::path& folder) {
  Row row;
  row.tiling = n;
  // The tiling goes through a Gerber file of its own, so that every phase, and the whole mill,
  // starts from a read as a person's file would.
  const fs::path tiled = folder / ("tiled-" + std::to_string(n) + ".gbr");
  {
    auto layer = LoadLayer(source);
    Tile(layer->app.board, n);
    WriteGerber(layer->app.board, tiled.string(), 0);
  }
  auto start = Clock::now();
  auto layer = LoadLayer(tiled);
  row.ms["read"] = Ms(start);
  Board& b = layer->app.board;
  row.items = CountOf(b.Pads[0]) + CountOf(b.Tracks[0]);

  PhaseClock clock(layer->quiet);
  start = Clock::now();
  DetectCopperPlanes(b, clock, 0, false);
  row.ms["plane detection"] = Ms(start);

  ContourSettings cs;  // one pass, distance 0.25: the program's default without a tool
  ContourStats stats;
  clock.prefix = "contours: ";
  start = Clock::now();
  CalculateContours(b, 0, cs, &clock, &stats);
  clock.Close();
  row.ms["contours"] = Ms(start);
  row.segments = stats.draftSegments;

  HatchSettings hs;
  hs.pitch = 0.2f;
  HatchSession session;
  clock.prefix = "hatches: ";
  start = Clock::now();
  CalculateHatches(b, 0, hs, session, &clock);
  clock.Close();
  row.ms["hatches"] = Ms(start);
  for (const auto& [phase, ms] : clock.times) row.ms[phase] = ms;

  // The whole job as a person runs it from the command line.
  const std::string config = (folder / "config").string() + "/";
  std::ostringstream out, err;
  start = Clock::now();
  const int status = CliMain({"--config", config, "--set", "HatchingTool=0", "mill", "--hatches",
                              tiled.string(), "-o", (folder / "job.iso").string()},
                             config, out, err);
  row.ms["whole mill"] = Ms(start);
  if (status != 0) std::fprintf(stderr, "mill of tiling %d failed: %s", n, err.str().c_str());
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<int> tilings = {1, 2, 4};
  if (argc == 3 && std::string(argv[1]) == "--tilings") {
    tilings.clear();
    std::stringstream list(argv[2]);
    for (std::string n; std::getline(list, n, ',');) tilings.push_back(std::stoi(n));
  }
  // The largest layer by draft segments.
  fs::path largest;
  long long most = -1;
  for (const fs::path& path : CopperLayers()) {
    auto layer = LoadLayer(path);
    if (!layer) continue;
    const ContourSettings s;
    float padOffset, trackOffset;
    PassOffsets(s, 0, padOffset, trackOffset);
    TSeg* draft = BuildDraftContours(layer->app.board, 0, padOffset, trackOffset, s.fast);
    const long long count = CountOf(draft);
    FreeChain(draft);
    if (count > most) most = count, largest = path;
  }
  if (largest.empty()) {
    NoSampleBoards();
    return 1;
  }
  const fs::path folder =
      fs::temp_directory_path() / ("isolith-scaling-" + std::to_string(getpid()));
  fs::create_directories(folder / "config");
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", folder / "config/Isolith.too");

  std::printf("%s, tiled n x n\n", largest.filename().string().c_str());
  std::vector<Row> rows;
  for (int n : tilings) rows.push_back(Measure(largest, n, folder));
  std::printf("%-44s", "ms");
  for (const Row& r : rows)
    std::printf("%12s", (std::to_string(r.tiling) + "x" + std::to_string(r.tiling)).c_str());
  std::printf("%10s\n", "exponent");
  std::printf("%-44s", "items (pads and tracks)");
  for (const Row& r : rows) std::printf("%12lld", r.items);
  std::printf("\n%-44s", "draft segments");
  for (const Row& r : rows) std::printf("%12lld", r.segments);
  std::printf("\n");
  for (const auto& [phase, unused] : rows.back().ms) {
    std::printf("%-44s", phase.c_str());
    for (const Row& r : rows) {
      const auto at = r.ms.find(phase);
      std::printf("%12.0f", at == r.ms.end() ? 0.0 : at->second);
    }
    const Row& a = rows.front();
    const Row& z = rows.back();
    const auto t0 = a.ms.find(phase), t1 = z.ms.find(phase);
    if (rows.size() > 1 && t0 != a.ms.end() && t1 != z.ms.end() && t0->second > 1)
      std::printf("%10.2f", std::log(t1->second / t0->second) /
                                std::log(static_cast<double>(z.items) / a.items));
    std::printf("\n");
  }
  fs::remove_all(folder);
  return 0;
}
