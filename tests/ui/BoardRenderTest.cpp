// The example board as the window shows it, working view and final rendering, painted off the
// screen and compared with the pictures kept beside this test (scripts/make-render-pictures.sh
// makes them anew), so that a change of drawing order, colour or width fails here.
#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <filesystem>

#include "QtTestApp.h"
#include "commands/Startup.h"
#include "support/FakePlatform.h"
#include "support/TempFolder.h"
#include "ui/BoardView.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

const QColor kWindow(0xF0, 0xF0, 0xF0);
const QSize kClient(640, 480);

// How many pixels differ in any channel by more than a few levels.
int DifferentPixels(const QImage& a, const QImage& b) {
  int n = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      n += std::abs(qRed(p) - qRed(q)) > 8 || std::abs(qGreen(p) - qGreen(q)) > 8 ||
           std::abs(qBlue(p) - qBlue(q)) > 8;
    }
  return n;
}

void Compare(const QImage& image, const char* name) {
  const QString path = QString(ISOLITH_TEST_DATA) + "/" + name;
  if (std::getenv("ISOLITH_WRITE_PICTURES") != nullptr) {
    ASSERT_TRUE(image.save(path, "PNG")) << path.toStdString();
    return;
  }
  QImage expected(path);
  ASSERT_FALSE(expected.isNull()) << "missing " << path.toStdString();
  expected = expected.convertToFormat(image.format());
  ASSERT_EQ(expected.size(), image.size());
  // A few pixels may fall otherwise with another rasteriser; a change of order or colour moves
  // thousands.
  EXPECT_LE(DifferentPixels(image, expected), image.width() * image.height() / 500) << name;
}

TEST(BoardRender, ExampleBoardWorkingViewAndFinalRendering) {
  test::QtTestApp();
  test::TempFolder config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  test::FakePlatform platform;
  Application app(platform, config.path(), config.path());
  InitSettings(app);
  // The starter library's engraving V-bit, card cutter and 1 mm drill.
  Settings& s = app.settings;
  s.MillingTool = s.HatchingTool = 1;
  s.CuttingTool = s.PlottingTool = 5;
  s.DrillingTool = 0;
  const std::string board = std::string(ISOLITH_SOURCE_DIR) + "/examples/blinky/blinky.gtl";
  ApplyCommandLine(app, {board, "AUTOSTART"});
  RunFirstShow(app);
  ASSERT_NE(app.board.Contours[0], nullptr);

  Compare(RenderBoard(app, kClient, kWindow), "blinky-working.png");
  app.board.FinalRendering = true;
  Compare(RenderBoard(app, kClient, kWindow), "blinky-final.png");
}

}  // namespace
}  // namespace isolith
