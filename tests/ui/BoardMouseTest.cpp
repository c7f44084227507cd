// The real main window driven by the mouse, offscreen: the example board loaded and milled by
// its contours, hover hints, the context menu, rubber rectangles, zoom, and the picks that
// complete the pending commands. Every box that comes up is answered as a person in a hurry
// would: the default button, OK.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "QtTestApp.h"
#include "commands/Commands.h"
#include "commands/Startup.h"
#include "support/TempFolder.h"
#include "ui/BoardView.h"
#include "ui/MainWindow.h"
#include "ui/QtPlatform.h"
#include "ui/dialogs/DialogViews.h"

namespace isolith {
namespace {

// Accepts every modal box while it lives: a message box by its default button, a dialog by OK.
class AnswerEverything {
 public:
  AnswerEverything() {
    timer_.setInterval(20);
    QObject::connect(&timer_, &QTimer::timeout, [] {
      QWidget* modal = QApplication::activeModalWidget();
      if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        if (QAbstractButton* yes = box->button(QMessageBox::Yes))
          yes->click();
        else
          box->accept();
      } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
        dialog->accept();
      }
    });
    timer_.start();
  }

 private:
  QTimer timer_;
};

struct World {
  QApplication& qt = test::QtTestApp();
  test::TempFolder folder;
  QtPlatform platform;
  std::unique_ptr<Application> app;
  std::unique_ptr<MainWindow> window;
  BoardView* view = nullptr;

  World() {
    namespace fs = std::filesystem;
    fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", folder.path() + "Isolith.too");
    std::ofstream(folder.path() + "Isolith.ini")
        << "[Toolset]\r\nMillingTool=2\r\nHatchingTool=2\r\nCuttingTool=6\r\nPlottingTool=6\r\n"
           "DrillingTool=1\r\n";
    RegisterDialogViews(platform);
    app = std::make_unique<Application>(platform, folder.path(), folder.path());
    InitSettings(*app);
    ApplyCommandLine(*app, {std::string(ISOLITH_SOURCE_DIR) + "/examples/blinky/blinky.gtl",
                            "AUTOSTART", "NOSPLASH"});
    window = std::make_unique<MainWindow>(*app, platform);
    window->resize(900, 700);
    window->show();
    view = window->ViewArea();
    Settle();
  }
  void Settle() {
    for (int i = 0; i < 20; ++i) QApplication::processEvents();
    view->repaint();
  }
  QPoint At(double x, double y) const {
    return {WorldToScreenX(app->view, app->board, x), WorldToScreenY(app->view, app->board, y)};
  }
  void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, QPointF(at), view->mapToGlobal(QPointF(at)), button, held,
                      Qt::NoModifier);
    QApplication::sendEvent(view, &event);
    Settle();
  }
  void Move(QPoint at) { Mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton); }
  void Click(QPoint at) {
    Move(at);
    Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
  }
  void Drag(QPoint from, QPoint to) {
    Move(from);
    Mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
  }
  // With ISOLITH_SHOTS set to a folder, the window as it stands is kept there as NAME.png
  // (scripts/screenshots.sh runs this test under Xvfb for the pictures of the main states).
  void Shot(const char* name) {
    if (const char* folder = std::getenv("ISOLITH_SHOTS"))
      window->grab().save(QString::fromUtf8(folder) + "/" + name + ".png");
  }
  // Right-clicks and returns the rows of the menu that opened (closing it unchosen).
  QStringList Popup(QPoint at) {
    Move(at);
    QStringList rows;
    QTimer poll;
    poll.setInterval(10);
    QObject::connect(&poll, &QTimer::timeout, [&rows, &poll] {
      if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        for (QAction* a : menu->actions())
          if (!a->isSeparator()) rows << a->text();
        if (const char* folder = std::getenv("ISOLITH_SHOTS"))
          menu->grab().save(QString::fromUtf8(folder) + "/popup.png");
        menu->close();
        poll.stop();
      }
    });
    poll.start();
    Mouse(QEvent::MouseButtonPress, at, Qt::RightButton, Qt::RightButton);
    Mouse(QEvent::MouseButtonRelease, at, Qt::RightButton, Qt::NoButton);
    return rows;
  }
};

TEST(BoardMouse, TheExampleBoardIsWorkedWithTheMouse) {
  World w;
  AnswerEverything answers;
  Board& b = w.app->board;
  ASSERT_NE(b.Pads[0], nullptr) << "the example board did not load";
  // The start file's contours come with AUTOSTART; the command would take them away again.
  if (!b.Contours[0]) {
    ASSERT_TRUE(RunCommand(*w.app, cmd::CalculateContours));
  }
  ASSERT_NE(b.Contours[0], nullptr);
  w.Settle();
  // The cursors drawn for this program are found among the window's resources.
  for (BoardCursor c : {BoardCursor::ZoomOnWhite, BoardCursor::ZoomOnColour, BoardCursor::PickItem,
                        BoardCursor::PickPoint, BoardCursor::PickRectangle})
    EXPECT_FALSE(BoardView::CursorShape(c).pixmap().isNull()) << static_cast<int>(c);

  w.Shot("working-view");
  // Final rendering on and off: nothing is picked while it shows.
  const TPad* pad = b.Pads[0];
  RunCommand(*w.app, cmd::FinalRendering);
  w.Settle();
  w.Shot("final-rendering");
  w.Move(w.At(pad->x, pad->y));
  EXPECT_TRUE(w.view->HintText().isEmpty());
  RunCommand(*w.app, cmd::FinalRendering);
  EXPECT_FALSE(b.FinalRendering);

  // Hover over a pad: its hint.
  w.Move(w.At(pad->x, pad->y));
  EXPECT_EQ(b.HoverPad, pad);
  EXPECT_TRUE(w.view->HintText().startsWith("Pad  ")) << w.view->HintText().toStdString();
  EXPECT_TRUE(w.view->HintText().contains("Position  X"));
  w.Shot("hint");

  // The context menu of a track, away from its pads.
  const TTrack* track = nullptr;
  for (const TTrack* t = b.Tracks[0]; t && !track; t = t->next)
    if (std::hypot(t->x2 - t->x1, t->y2 - t->y1) > 5) track = t;
  ASSERT_NE(track, nullptr);
  const QStringList rows = w.Popup(w.At((track->x1 + track->x2) / 2, (track->y1 + track->y2) / 2));
  ASSERT_FALSE(rows.isEmpty());
  EXPECT_EQ(rows.front(), "Define as card contour");
  EXPECT_TRUE(rows.contains("Disable track net"));

  // A disable zone round the first pad: it is disabled on the model.
  RunCommand(*w.app, cmd::DisableZone);
  w.Drag(w.At(pad->x - 1, pad->y - 1), w.At(pad->x + 1, pad->y + 1));
  EXPECT_TRUE(pad->flags & kPadDisabled);
  // Esc in the middle of a drag drops the rectangle and the command, and changes nothing.
  const TPad* next = pad->next;
  w.Move(w.At(next->x - 1, next->y - 1));
  w.Mouse(QEvent::MouseButtonPress, w.At(next->x - 1, next->y - 1), Qt::LeftButton, Qt::LeftButton);
  w.Mouse(QEvent::MouseMove, w.At(next->x + 1, next->y + 1), Qt::NoButton, Qt::LeftButton);
  QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(w.view, &esc);
  w.Mouse(QEvent::MouseButtonRelease, w.At(next->x + 1, next->y + 1), Qt::LeftButton, Qt::NoButton);
  EXPECT_FALSE(next->flags & kPadDisabled);
  EXPECT_EQ(b.PendingCommand, 0);

  // Zoom in by a rectangle, then out again.
  const float width = b.ViewRight - b.ViewLeft;
  RunCommand(*w.app, cmd::ZoomIn);
  w.Drag(w.At(10, 10), w.At(30, 25));
  EXPECT_LT(b.ViewRight - b.ViewLeft, width / 2);
  RunCommand(*w.app, cmd::ZoomOut);
  w.Settle();
  EXPECT_NEAR(b.ViewRight - b.ViewLeft, width, 0.5);

  // The origin picked on a pad, as "Plot manually" in the origin's box starts it.
  const TPad* second = pad->next;
  b.PendingCommand = cmd::Origin;
  w.Click(w.At(second->x, second->y));
  EXPECT_FLOAT_EQ(b.OriginX, second->x);
  EXPECT_FLOAT_EQ(b.OriginY, second->y);

  // A centering hole placed by a click.
  RunCommand(*w.app, cmd::CenteringHoles);
  w.Click(w.At(5, 5));
  EXPECT_TRUE(IsSet(b.CentreHole1X));
  EscapeKey(*w.app);

  // Editing by the mouse, one of each kind: a pad's own dialog by a click (the pick then stays
  // for the next pad), a thermal pad from the context menu's row, a contour deleted by a click.
  RunCommand(*w.app, cmd::ModifySinglePad);
  w.Click(w.At(second->x, second->y));
  EXPECT_EQ(b.PendingCommand, cmd::ModifySinglePad);
  EscapeKey(*w.app);
  w.Move(w.At(second->x, second->y));
  ASSERT_EQ(b.HoverPad, second);
  RunCommand(*w.app, 12607);  // "Transform to thermal pad"
  EXPECT_TRUE(second->flags & kPadThermal);
  if (!b.Contours[0]) {
    ASSERT_TRUE(RunCommand(*w.app, cmd::CalculateContours));
  }
  size_t contours = 0;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) ++contours;
  const TXY* a = b.Contours[0]->first;
  RunCommand(*w.app, cmd::DeleteSelectedContours);
  w.Click(w.At((a->x + a->next->x) / 2, (a->y + a->next->y) / 2));
  size_t left = 0;
  for (const TPolygon* p = b.Contours[0]; p; p = p->next) ++left;
  EXPECT_EQ(left, contours - 1);
  EscapeKey(*w.app);

  // The card contour defined by a click on the board's outline.
  if (b.Cutouts) RunCommand(*w.app, cmd::DeleteCardContour);
  ASSERT_EQ(b.Cutouts, nullptr);
  RunCommand(*w.app, cmd::DefineCardContour);
  const TTrack* outline = nullptr;
  for (const TTrack* t = b.Tracks[0]; t; t = t->next)
    if (t->y1 == t->y2 && (!outline || t->y1 < outline->y1)) outline = t;  // the lowest line
  ASSERT_NE(outline, nullptr);
  w.Click(w.At((outline->x1 + outline->x2) / 2, outline->y1));
  ASSERT_NE(b.Cutouts, nullptr);

  // A cutting tab on the card's cut path.
  b.ActiveLayer = kCutoutLayer;
  size_t pieces = 0;
  for (const TPolygon* p = b.Cutouts->paths; p; p = p->next) ++pieces;
  RunCommand(*w.app, cmd::AddCuttingTabs);
  const TXY* v = b.Cutouts->paths->first;
  w.Click(w.At((v->x + v->next->x) / 2, (v->y + v->next->y) / 2));
  size_t after = 0;
  for (const TPolygon* p = b.Cutouts->paths; p; p = p->next) ++after;
  EXPECT_GT(after, pieces);
}

}  // namespace
}  // namespace isolith
