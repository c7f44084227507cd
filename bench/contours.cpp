// The contour calculation on the copper layers of the real sample boards: the indexed phases on
// the largest layer, and the full scans they replace on a layer small enough for them, with the
// indexed phases on that same layer for comparison.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "SampleLayers.h"
#include "toolpath/ContourDraft.h"
#include "toolpath/Contours.h"

namespace {

using namespace isolith;
using namespace isolith::bench;

// The full scans are timed only on layers of at most this many draft segments: a few seconds.
constexpr long long kReferenceLimit = 25000;

std::unique_ptr<Layer> Load(const fs::path& path) {
  auto layer = LoadLayer(path);
  if (!layer) return nullptr;
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
    NoSampleBoards();
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
