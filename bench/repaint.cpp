// A full repaint of the largest copper layer of the sample boards, with its contours: the
// display list built from the model and painted into an image of a large window, in the
// working view and in the final rendering.
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "SampleLayers.h"
#include "toolpath/Contours.h"
#include "ui/BoardView.h"

namespace {

using namespace isolith;
using namespace isolith::bench;

const QSize kClient(1600, 1000);

int Items(const Board& b) {
  return CountOf(b.Pads[0]) + CountOf(b.Tracks[0]);
}

void Repaint(benchmark::State& state, Layer& layer, bool final) {
  Application& app = layer.app;
  app.board.FinalRendering = final;
  QImage image(kClient, QImage::Format_RGB32);
  app.view.ClientRect = {0, 0, kClient.width(), kClient.height()};
  DisplayList list;
  double ms = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    BuildDisplayList(app, kRepaintFull, true, list);
    QPainter painter(&image);
    PaintDisplayList(painter, list, Qt::lightGray);
    painter.end();
    ms +=
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    benchmark::DoNotOptimize(image.constBits());
  }
  state.counters["pads_tracks"] = Items(app.board);
  state.counters["contour_paths"] = CountOf(app.board.Contours[0]);
  state.counters["draw_items"] = static_cast<double>(list.items.size());
  state.counters["ms"] = ms / static_cast<double>(state.iterations());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::unique_ptr<Layer> largest;
  for (const fs::path& path : CopperLayers()) {
    auto layer = LoadLayer(path);
    if (layer && (!largest || Items(layer->app.board) > Items(largest->app.board)))
      largest = std::move(layer);
  }
  if (!largest) {
    NoSampleBoards();
    return 1;
  }
  ContourSettings s;  // one pass at the program's default distance, indexed
  CalculateContours(largest->app.board, 0, s, nullptr);
  Layer* layer = largest.get();
  benchmark::RegisterBenchmark(("Repaint/working/" + layer->name).c_str(),
                               [layer](benchmark::State& st) { Repaint(st, *layer, false); })
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark(("Repaint/final/" + layer->name).c_str(), [layer](
                                                                             benchmark::State& st) {
    Repaint(st, *layer, true);
  })->Unit(benchmark::kMillisecond);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
