// The frame window: the menu bar built from the command table, the view area, the status line,
// the keys the window answers itself, and the frame position kept in the settings.
#pragma once

#include <QList>
#include <QMainWindow>
#include <QStringList>
#include <map>
#include <string>

#include "commands/Application.h"
#include "ui/BoardView.h"
#include "ui/QtPlatform.h"

class QAction;
class QLabel;
class QMenu;
class QKeyEvent;

namespace isolith {

// Keys that count as taken and do nothing: the modifiers alone, the browser, volume, media and
// launch keys, and the punctuation keys ; = , - . / (with their shifted forms).
bool KeyIsTaken(int qtKey);

class MainWindow : public QMainWindow, public PlatformWindow {
  Q_OBJECT

 public:
  MainWindow(Application& app, QtPlatform& platform, QWidget* parent = nullptr);
  ~MainWindow() override;

  // PlatformWindow.
  QWidget* DialogParent() override { return this; }
  void ShowStatus(const QString& text) override;
  void RepaintBoard(RepaintLevel level) override;

  // Runs a command as its menu row does (refused with the beep when it may not run now), then
  // brings the menu state and the title up to date; "E&xit" closes the window.
  void Dispatch(int id);
  // Enables every menu row by the enabling rule and sets the check marks from the state.
  void RefreshCommandStates();
  // Puts the filled recent-file slots of the settings into the "&File" menu.
  void RefreshRecentFiles();

  // The frame's place from the settings (a default size when none is kept, or 850 by 714 for
  // a snapshot), and back into the settings.
  void RestoreFramePosition();
  void StoreFramePosition();
  // A later start of the program asked for this window: restore it and bring it forward.
  void BringToFront();

  // The menu rows of a command (two rows may share an id), in menu order.
  QList<QAction*> ActionsOf(int id) const;
  // The buttons of the bars, for the tests.
  QList<QAction*> BarActions() const;
  BoardView* ViewArea() const { return view_; }
  // The read-out of the mouse position in the status strip.
  QLabel* PositionLabel() const { return position_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildMenus();
  // The icon bar and, by TopBarStyle and the screen, the classic tool box.
  void BuildToolbars();
  void AddNodes(QMenu* menu, const std::vector<MenuNode>& nodes);
  void AddCommandRow(QMenu* menu, const MenuNode& node);
  void AfterCommand();
  void UpdateTitle();
  void RunStartupChain();
  bool KeyPressed(QKeyEvent* event);
  bool KeyReleased(QKeyEvent* event);

  Application& app_;
  QtPlatform& platform_;
  BoardView* view_ = nullptr;
  QLabel* position_ = nullptr;
  QMenu* fileMenu_ = nullptr;       // the menu that holds the recent files
  QAction* recentPlace_ = nullptr;  // the recent rows go before this row
  QList<QAction*> recentRows_;
  QStringList recentTexts_;  // what the recent rows show, one entry per slot
  std::multimap<int, QAction*> actions_;
  // The buttons of the icon bar and the classic box, by the menu command they run.
  std::multimap<int, QAction*> barActions_;
  bool firstShowQueued_ = false;
  int openKey_ = 0;  // a key that did nothing: the beep sounds when it is released
};

}  // namespace isolith
