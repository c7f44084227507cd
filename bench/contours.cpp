// The contour calculation on the copper layers of the real sample boards: the indexed phases on
// the largest layer, and the full scans they replace on a layer small enough for them, with the
// indexed phases on that same layer for comparison.
//
// The sample boards are installed by `bash scripts/fetch-fixtures.sh <build>/fixtures` (ctest
// does it before the tests).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/Application.h"
#include "commands/ImportSteps.h"
#include "core/board/BoardOps.h"
#include "core/platform/ConsolePlatform.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/Contours.h"

namespace {

using namespace isolith;
namespace fs = std::filesystem;

const fs::path kBoards =
    fs::path(ISOLITH_BINARY_DIR) / "fixtures/node_modules/@tracespace/fixtures/boards";

// The full scans are timed only on layers of at most this many draft segments: a few seconds.
constexpr long long kReferenceLimit = 25000;

// The string value of `key` in a flat JSON object's text, empty when absent.
std::string JsonValue(const std::string& object, const std::string& key) {
  const size_t k = object.find("\"" + key + "\"");
  if (k == std::string::npos) return {};
  const size_t open = object.find('"', object.find(':', k) + 1);
  const size_t close = object.find('"', open + 1);
  return open == std::string::npos || close == std::string::npos
             ? std::string()
             : object.substr(open + 1, close - open - 1);
}

// The copper layer files of every board, as each board's manifest names them.
std::vector<fs::path> CopperLayers() {
  std::vector<fs::path> layers;
  std::error_code ec;
  for (const auto& board : fs::directory_iterator(kBoards, ec)) {
    std::ifstream in(board.path() / "manifest.json");
    std::stringstream text;
    text << in.rdbuf();
    const std::string manifest = text.str();
    for (size_t open = manifest.find('{', 1); open != std::string::npos;
         open = manifest.find('{', open + 1)) {
      const std::string object = manifest.substr(open, manifest.find('}', open) - open);
      if (JsonValue(object, "type") == "copper")
        layers.push_back(board.path() / JsonValue(object, "name"));
    }
  }
  return layers;
}

// One layer read through the program's Gerber load flow, as layer 0 of its own job.
struct Layer {
  std::FILE* quiet = std::fopen("/dev/null", "w");
  ConsolePlatform platform{quiet ? quiet : stderr};
  Application app{platform};
  std::string name;
  long long draftSegments = 0;

  ~Layer() {
    if (quiet) std::fclose(quiet);
  }
};

std::unique_ptr<Layer> Load(const fs::path& path) {
  auto layer = std::make_unique<Layer>();
  layer->name = path.filename().string();
  ResetJob(layer->app.board);
  ImportContext context = MakeImportContext(layer->app);
  layer->app.settings.LayerImportFormat = kFormatGerber;
  if (OpenGerberFile(context, path.string(), 0) != LoadResult::Loaded) return nullptr;
  // The first draft purges the short tracks for good: done now, every timed run works on the
  // same copper.
  const ContourSettings s;
  float padOffset, trackOffset;
  PassOffsets(s, 0, padOffset, trackOffset);
  TSeg* draft = BuildDraftContours(layer->app.board, 0, padOffset, trackOffset, s.fast);
  layer->draftSegments = CountOf(draft);
  FreeChain(draft);
  return layer;
}

void RunContours(benchmark::State& state, Layer& layer, bool indexed) {
  ContourStats stats;
  double ms = 0;
  for (auto _ : state) {
    ContourSettings s;  // one pass, distance 0.25: the program's default without a tool
    s.indexed = indexed;
    stats = ContourStats();
    const auto start = std::chrono::steady_clock::now();
    CalculateContours(layer.app.board, 0, s, nullptr, &stats);
    ms +=
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    benchmark::DoNotOptimize(layer.app.board.Contours[0]);
  }
  state.counters["draft_segments"] = static_cast<double>(stats.draftSegments);
  state.counters["paths"] = CountOf(layer.app.board.Contours[0]);
  if (indexed) {
    state.counters["pairs_tested"] = static_cast<double>(stats.pairsTested);
    state.counters["element_tests"] = static_cast<double>(stats.elementTests);
  }
  state.counters["ms"] = ms / static_cast<double>(state.iterations());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<std::unique_ptr<Layer>> layers;
  for (const fs::path& path : CopperLayers())
    if (auto layer = Load(path)) layers.push_back(std::move(layer));
  if (layers.empty()) {
    std::fprintf(stderr,
                 "No sample boards under %s: run scripts/fetch-fixtures.sh %s/fixtures first.\n",
                 kBoards.string().c_str(), ISOLITH_BINARY_DIR);
    return 1;
  }
  Layer* largest = nullptr;
  Layer* reference = nullptr;
  for (auto& layer : layers) {
    if (!largest || layer->draftSegments > largest->draftSegments) largest = layer.get();
    if (layer->draftSegments <= kReferenceLimit &&
        (!reference || layer->draftSegments > reference->draftSegments))
      reference = layer.get();
  }
  benchmark::RegisterBenchmark(("Contours/indexed/" + largest->name).c_str(),
                               [largest](benchmark::State& s) { RunContours(s, *largest, true); })
      ->Unit(benchmark::kMillisecond)
      ->Iterations(3);
  if (reference) {
    benchmark::RegisterBenchmark(
        ("Contours/indexed/" + reference->name).c_str(),
        [reference](benchmark::State& s) { RunContours(s, *reference, true); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        ("Contours/reference/" + reference->name).c_str(),
        [reference](benchmark::State& s) { RunContours(s, *reference, false); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
