#include "ui/MainWindow.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <set>

#include <QToolBar>
#include "QtTestApp.h"
#include "commands/ToolbarRows.h"
#include "support/FakePlatform.h"
#include "ui/Hints.h"

namespace isolith {
namespace {

// A window over a fresh application with no settings folder: nothing is read or written.
struct World {
  QApplication& qt = test::QtTestApp();  // before any widget
  QtPlatform platform;
  Application app{platform};
  MainWindow window{app, platform};
  World() {
    InitSettings(app);
    window.RefreshCommandStates();
  }
};

QAction* Row(const MainWindow& w, int id, int index = 0) {
  const QList<QAction*> rows = w.ActionsOf(id);
  return index < rows.size() ? rows[index] : nullptr;
}

TEST(MainWindow, MenuRowsCarryTheTableTextsShortcutsAndChecks) {
  test::QtTestApp();
  World w;
  QStringList titles;
  for (QAction* top : w.window.menuBar()->actions()) titles << top->text();
  EXPECT_EQ(titles,
            QStringList({"&File", "&Toolpaths", "&Edit", "&Display", "&Parameters", "&Help"}));
  EXPECT_EQ(w.window.menuBar()->actions()[0]->statusTip(),
            "Global management functions for the card");

  std::set<int> seen;
  for (const CommandInfo& c : CommandTable()) {
    if (*c.text == '\0' || !seen.insert(c.id).second) continue;  // recent rows; 12102 below
    QAction* row = Row(w.window, c.id);
    ASSERT_NE(row, nullptr) << c.id;
    if (c.bindShortcut) {
      EXPECT_EQ(row->text(), QString::fromUtf8(c.text)) << c.id;
      EXPECT_EQ(row->shortcut(), QKeySequence(QString::fromUtf8(c.shortcut))) << c.id;
    }
    EXPECT_EQ(row->isCheckable(), c.checkable) << c.id;
  }
  EXPECT_EQ(Row(w.window, cmd::NewCircuit)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));
  EXPECT_EQ(Row(w.window, cmd::Dimensions)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_D));
  EXPECT_EQ(Row(w.window, cmd::GeneralHelp)->shortcut(), QKeySequence(Qt::Key_F1));
  EXPECT_EQ(Row(w.window, cmd::Rotate90)->text(), QString::fromUtf8("Rotate &90°"));
  // Tab is shown beside "Layer #1" but cycles the layers: it is not bound to the row.
  EXPECT_EQ(Row(w.window, cmd::Layer1)->text(), "Layer #&1\tTab");
  EXPECT_TRUE(Row(w.window, cmd::Layer1)->shortcut().isEmpty());
  // The two rows of 12102, each with its own text.
  EXPECT_EQ(Row(w.window, cmd::Simulate, 0)->text(), "&Simulate...");
  EXPECT_EQ(Row(w.window, cmd::Simulate, 1)->text(), "M&anual control...");
  EXPECT_EQ(Row(w.window, cmd::Information)->statusTip(), "Display information about active layer");
  EXPECT_EQ(Row(w.window, cmd::NewCircuit)->statusTip(), "Open a new PCB project");

  // Ticks follow the state they show.
  EXPECT_TRUE(Row(w.window, cmd::VisualGrid)->isChecked());
  EXPECT_TRUE(Row(w.window, cmd::Millimeters)->isChecked());
  EXPECT_FALSE(Row(w.window, cmd::Inches)->isChecked());
  EXPECT_TRUE(Row(w.window, cmd::SpeedUnitFirst + kSpeedMmPerS)->isChecked());
  EXPECT_TRUE(Row(w.window, cmd::GreenBackground)->isChecked());
  w.window.Dispatch(cmd::VisualGrid);
  EXPECT_FALSE(w.app.settings.ShowGrid);
  EXPECT_FALSE(Row(w.window, cmd::VisualGrid)->isChecked());
}

TEST(MainWindow, EmptyJobEnablesOnlyWhatMayRun) {
  test::QtTestApp();
  World w;
  // The rows whose rule allows them on an empty job; of these, the built ones are enabled.
  std::set<int> always = {cmd::NewCircuit,
                          cmd::AdditionalLayer,
                          cmd::Drills,
                          cmd::Exit,
                          cmd::DetectCopperPlanesOnOpen,
                          cmd::AutoDetectCardContour,
                          cmd::DetectCardContourOnOpen,
                          cmd::RotatePads90,
                          cmd::Layer1,
                          cmd::VisualGrid,
                          cmd::ToolLibrary,
                          cmd::SelectedTools,
                          cmd::OutputDataFormat,
                          cmd::AutomaticReframing,
                          cmd::Millimeters,
                          cmd::Inches,
                          cmd::UsersManual,
                          cmd::GeneralHelp,
                          cmd::About};
  for (int id = cmd::Recent1; id <= cmd::Recent5; ++id) always.insert(id);
  for (int id = cmd::BlackBackground; id <= cmd::CustomiseColours; ++id) always.insert(id);
  for (int id = cmd::MachineBasicData; id <= cmd::ExternalDriver; ++id) always.insert(id);
  for (int id = cmd::ImportScaleFirst; id <= cmd::ImportScaleLast; ++id) always.insert(id);
  for (int id = cmd::SpeedUnitFirst; id <= cmd::SpeedUnitLast; ++id) always.insert(id);
  for (const CommandInfo& c : CommandTable()) {
    for (QAction* row : w.window.ActionsOf(c.id))
      EXPECT_EQ(row->isEnabled(), always.count(c.id) == 1 && CommandImplemented(c.id)) << c.id;
  }
  EXPECT_TRUE(Row(w.window, cmd::Exit)->isEnabled());
  EXPECT_TRUE(Row(w.window, cmd::Layer1)->isEnabled());
  EXPECT_FALSE(Row(w.window, cmd::Layer1 + 1)->isEnabled());
  EXPECT_FALSE(Row(w.window, cmd::FinalRendering)->isEnabled());
  EXPECT_EQ(w.window.windowTitle(), "Isolith");

  // A pad on the first layer, without a repaint: opening the menu applies the rule again.
  w.app.board.Pads[0] = new TPad{};
  w.app.board.LayerName[0] = "TOP.GBR";
  w.app.board.LayerCount = 1;
  EXPECT_FALSE(Row(w.window, cmd::CloseLayer)->isEnabled());
  QMenu* file = w.window.menuBar()->actions()[0]->menu();
  emit file->aboutToShow();
  EXPECT_TRUE(Row(w.window, cmd::CloseLayer)->isEnabled());
  EXPECT_TRUE(Row(w.window, cmd::Information)->isEnabled());
  EXPECT_EQ(Row(w.window, cmd::Save)->isEnabled(), CommandImplemented(cmd::Save));

  // A command brings the rows and the title up to date.
  w.window.Dispatch(cmd::FinalRendering);
  EXPECT_TRUE(w.app.board.FinalRendering);
  EXPECT_TRUE(Row(w.window, cmd::FinalRendering)->isChecked());
  EXPECT_EQ(w.window.windowTitle(), "Isolith  -  TOP.GBR   (Layer 1/1)");

  // While a reader runs, nothing is enabled.
  w.app.board.Busy = true;
  w.window.RefreshCommandStates();
  for (const CommandInfo& c : CommandTable())
    for (QAction* row : w.window.ActionsOf(c.id)) EXPECT_FALSE(row->isEnabled()) << c.id;
}

TEST(MainWindow, RecentFilesStandBeforeExit) {
  test::QtTestApp();
  World w;
  w.app.settings.RecentName[0] = "BOARD.GBR";
  w.app.settings.RecentName[1] = "OTHER.CMP";
  w.window.RefreshRecentFiles();
  w.window.RefreshRecentFiles();  // rebuilt, not doubled
  QMenu* file = w.window.menuBar()->actions()[0]->menu();
  QList<QAction*> rows;
  for (QAction* a : file->actions())
    if (a->isVisible()) rows << a;
  const qsizetype exit = rows.indexOf(Row(w.window, cmd::Exit));
  ASSERT_GE(exit, 3);
  EXPECT_TRUE(rows[exit - 1]->isSeparator());
  EXPECT_EQ(rows[exit - 2]->text(), "&2 - OTHER.CMP");
  EXPECT_EQ(rows[exit - 3]->text(), "&1 - BOARD.GBR");
  EXPECT_TRUE(rows[exit - 4]->isSeparator());
  EXPECT_EQ(Row(w.window, cmd::Recent1)->statusTip(), "Open a recent file directly");
  EXPECT_EQ(w.window.ActionsOf(cmd::Recent1).size(), 1);
  EXPECT_EQ(Row(w.window, cmd::Recent1)->isEnabled(), CommandImplemented(cmd::Recent1));

  w.app.settings.RecentName[1].clear();
  w.window.RepaintBoard(RepaintLevel::Status);
  EXPECT_EQ(file->actions().size(), rows.size());  // one row fewer, plus the hidden mark
  EXPECT_TRUE(w.window.ActionsOf(cmd::Recent1 + 1).isEmpty());
}

TEST(MainWindow, StatusLineAndTitle) {
  test::QtTestApp();
  World w;
  w.platform.SetStatus("Building draft contours...");
  EXPECT_EQ(w.window.statusBar()->currentMessage(), "Building draft contours...");

  // The title bar shows the job as the command layer spells it.
  Board& b = w.app.board;
  b.Pads[0] = new TPad{};
  b.Tracks[1] = new TTrack{};
  b.Drills = new TDrill{};
  b.LayerName = {"TOP.GBR", "BOTTOM.GBR", "", "", "BOARD.DRL", ""};
  b.ActiveLayer = 1;
  RequestRepaint(w.app);
  EXPECT_EQ(w.window.windowTitle(), "Isolith  -  BOTTOM.GBR   (Layer 2/2)");
  b.ActiveLayer = kDrillLayer;
  RequestRepaint(w.app);
  EXPECT_EQ(w.window.windowTitle(), "Isolith  -  BOARD.DRL   (Drills)");
}

TEST(MainWindow, KeysSwitchLayersAndUnusedKeysBeepOnRelease) {
  test::QtTestApp();
  test::FakePlatform fake;
  Application app(fake);
  QtPlatform platform;
  MainWindow window(app, platform);
  InitSettings(app);
  auto press = [&](int key, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QKeyEvent down(QEvent::KeyPress, key, mods);
    QKeyEvent up(QEvent::KeyRelease, key, mods);
    QCoreApplication::sendEvent(window.ViewArea(), &down);
    QCoreApplication::sendEvent(window.ViewArea(), &up);
  };
  // An empty job: "Dimensions" is refused by its rule, and the refusal beeps.
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(fake.beeps, 1);

  // A single layer: Tab does nothing, not even a beep.
  app.board.Pads[0] = new TPad{};
  app.board.LayerCount = 1;
  press(Qt::Key_Tab);
  EXPECT_EQ(app.board.ActiveLayer, 0);
  EXPECT_EQ(fake.beeps, 1);

  app.board.Tracks[1] = new TTrack{};
  app.board.LayerCount = 2;
  press(Qt::Key_Tab);
  EXPECT_EQ(app.board.ActiveLayer, 1);
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(app.board.ActiveLayer, 0);
  EXPECT_EQ(fake.beeps, 1);

  press(Qt::Key_Shift);
  press(Qt::Key_Comma);
  EXPECT_EQ(fake.beeps, 1);
  press(Qt::Key_X);  // nothing answers it
  EXPECT_EQ(fake.beeps, 2);
  press(Qt::Key_Escape);  // nothing to leave or cancel
  EXPECT_EQ(fake.beeps, 3);

  app.board.FinalRendering = true;
  press(Qt::Key_Escape);
  EXPECT_FALSE(app.board.FinalRendering);
  EXPECT_EQ(fake.beeps, 3);
}

TEST(MainWindow, FramePositionGoesIntoTheSettings) {
  test::QtTestApp();
  World w;
  w.app.settings.FrameWinX = 40;
  w.app.settings.FrameWinY = 30;
  w.app.settings.FrameWinW = 640;
  w.app.settings.FrameWinH = 480;
  w.window.RestoreFramePosition();
  EXPECT_EQ(w.window.size(), QSize(640, 480));
  w.window.resize(700, 500);
  w.window.StoreFramePosition();
  EXPECT_EQ(w.app.settings.FrameWinW, 700);
  EXPECT_EQ(w.app.settings.FrameWinH, 500);

  w.app.Snapshot = true;
  w.window.RestoreFramePosition();
  EXPECT_EQ(w.window.size(), QSize(850, 714));
}

}  // namespace
}  // namespace isolith

namespace isolith {
namespace {

TEST(MainWindow, TheBarsHoldEveryButtonWithItsTooltipHintAndCommand) {
  World w;
  const QList<QAction*> buttons = w.window.BarActions();
  ASSERT_EQ(buttons.size(), static_cast<int>(ToolbarRows().size()));
  for (const ToolbarRow& row : ToolbarRows()) {
    QAction* b = w.window.findChild<QAction*>(QStringLiteral("Bar%1").arg(row.id));
    ASSERT_NE(b, nullptr) << row.id;
    EXPECT_EQ(b->toolTip(), QString::fromUtf8(row.tooltip)) << row.id;
    EXPECT_EQ(b->statusTip(), QString::fromUtf8(ToolbarHint(row.id))) << row.id;
    EXPECT_FALSE(b->icon().pixmap(32).isNull()) << row.bitmap;  // the picture is found and drawn
    // On an empty job a button is enabled exactly as its menu row.
    EXPECT_EQ(b->isEnabled(), CommandEnabled(ToolbarCommand(row.id), w.app)) << row.id;
  }
  // The classic box only with the styles that ask for it.
  EXPECT_EQ(w.window.findChild<QToolBar*>("ToolBox"), nullptr);
  struct Style {
    int style, colours;
    bool classic;
  } styles[] = {
      {0, 256, true}, {0, 1 << 24, false}, {1, 16, false}, {2, 1 << 24, true}, {3, 1 << 24, true}};
  for (const Style& s : styles) EXPECT_EQ(ClassicToolBox(s.style, s.colours), s.classic);

  // A button runs its command: "Reframe" (a bar-only command) fits the card round the pads.
  TPad* pad = new TPad;
  pad->x = 40, pad->y = 30;
  w.app.board.Pads[0] = pad;
  RepaintBookkeeping(w.app.board);
  w.window.RefreshCommandStates();
  QAction* reframe = w.window.findChild<QAction*>("Bar103");
  ASSERT_TRUE(reframe->isEnabled());
  reframe->trigger();
  EXPECT_LT(w.app.board.CardWidth, 100);
  QAction* final = w.window.findChild<QAction*>("Bar115");
  final->trigger();
  EXPECT_TRUE(w.app.board.FinalRendering);
  EXPECT_TRUE(final->isChecked());
}

}  // namespace
}  // namespace isolith
