#include "ui/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include "commands/Commands.h"
#include "commands/LayerCommands.h"
#include "commands/Startup.h"
#include "commands/ToolbarRows.h"
#include "commands/WindowTitle.h"
#include "core/board/BoardOps.h"
#include "ui/Hints.h"

// The icons and cursors are resources of this static library: the program registers them once.
static void InitIcons() {
  Q_INIT_RESOURCE(icons);
  Q_INIT_RESOURCE(cursors);
}

namespace isolith {

namespace {

constexpr int kSnapshotWidth = 850;
constexpr int kSnapshotHeight = 714;

// Menu texts of the table are UTF-8 ("Rotate &90°").
QString Text(const char* text) {
  return QString::fromUtf8(text);
}

}  // namespace

bool KeyIsTaken(int key) {
  switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Back:
    case Qt::Key_Forward:
    case Qt::Key_Refresh:
    case Qt::Key_Stop:
    case Qt::Key_Search:
    case Qt::Key_Favorites:
    case Qt::Key_HomePage:
    case Qt::Key_VolumeMute:
    case Qt::Key_VolumeDown:
    case Qt::Key_VolumeUp:
    case Qt::Key_MediaNext:
    case Qt::Key_MediaPrevious:
    case Qt::Key_MediaStop:
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaTogglePlayPause:
    case Qt::Key_LaunchMail:
    case Qt::Key_LaunchMedia:
    case Qt::Key_Launch0:
    case Qt::Key_Launch1:
    case Qt::Key_Semicolon:
    case Qt::Key_Colon:
    case Qt::Key_Equal:
    case Qt::Key_Plus:
    case Qt::Key_Comma:
    case Qt::Key_Less:
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
    case Qt::Key_Period:
    case Qt::Key_Greater:
    case Qt::Key_Slash:
    case Qt::Key_Question:
      return true;
    default:
      return false;
  }
}

MainWindow::MainWindow(Application& app, QtPlatform& platform, QWidget* parent)
    : QMainWindow(parent), app_(app), platform_(platform) {
  setObjectName("MainWindow");
  view_ = new BoardView(app_, this);
  view_->installEventFilter(this);
  setCentralWidget(view_);
  statusBar()->setSizeGripEnabled(true);
  position_ = new QLabel(this);
  position_->setObjectName("Position");
  position_->setFont(QFont(QStringLiteral("arial"), 14, QFont::Bold));
  position_->setMinimumWidth(position_->fontMetrics().horizontalAdvance("X 0000.00   Y 0000.00"));
  statusBar()->addPermanentWidget(position_);
  connect(view_, &BoardView::positionChanged, position_, &QLabel::setText);
  // What the paint drew decides some rows (the re-enable commands).
  connect(view_, &BoardView::painted, this, &MainWindow::RefreshCommandStates);

  BuildMenus();
  BuildToolbars();
  RefreshRecentFiles();
  RefreshCommandStates();
  UpdateTitle();
  platform_.AttachWindow(this);
  view_->setFocus();
}

MainWindow::~MainWindow() {
  platform_.AttachWindow(nullptr);
}

void MainWindow::BuildMenus() {
  for (const MenuNode& top : MenuBar()) {
    if (top.kind != MenuNode::Submenu) continue;
    QMenu* menu = menuBar()->addMenu(Text(top.text));
    menu->menuAction()->setStatusTip(Text(top.hintGroup));
    AddNodes(menu, top.children);
  }
}

void MainWindow::BuildToolbars() {
  InitIcons();
  const QScreen* screen = QGuiApplication::primaryScreen();
  const int depth = screen ? screen->depth() : 24;
  const bool classic =
      ClassicToolBox(app_.settings.TopBarStyle, depth >= 24 ? 1 << 24 : 1 << depth);
  QToolBar* icons = addToolBar(QStringLiteral("Icon bar"));
  icons->setObjectName("IconBar");
  icons->setIconSize(QSize(32, 32));
  icons->setMovable(false);
  QToolBar* box = nullptr;
  if (classic) {
    // The classic box takes the layers and the editing tools; the icon bar the rest.
    box = new QToolBar(QStringLiteral("Tool box"), this);
    box->setObjectName("ToolBox");
    box->setIconSize(QSize(24, 24));
    addToolBar(Qt::LeftToolBarArea, box);
  }
  for (const ToolbarRow& row : ToolbarRows()) {
    QToolBar* bar = box && row.id >= 119 && row.id != 125 ? box : icons;
    if (row.id == 119 || row.id == 125 || row.id == 126) bar->addSeparator();
    QAction* action =
        bar->addAction(QIcon(QStringLiteral(":/icons/%1.svg").arg(row.bitmap)), Text(row.tooltip));
    action->setToolTip(Text(row.tooltip));
    action->setStatusTip(Text(ToolbarHint(row.id)));
    action->setData(row.id);
    action->setObjectName(QStringLiteral("Bar%1").arg(row.id));
    const int command = ToolbarCommand(row.id);
    const CommandInfo* info = FindCommand(command);
    action->setCheckable(info != nullptr && info->checkable);
    const int id = row.id;
    connect(action, &QAction::triggered, this, [this, id] { Dispatch(id); });
    barActions_.emplace(command, action);
  }
}

void MainWindow::AddNodes(QMenu* menu, const std::vector<MenuNode>& nodes) {
  // The rows are enabled by the rule each time their menu opens, so that what the menu shows
  // is what the model holds at that moment.
  connect(menu, &QMenu::aboutToShow, this, &MainWindow::RefreshCommandStates);
  for (const MenuNode& node : nodes) {
    switch (node.kind) {
      case MenuNode::Command:
        AddCommandRow(menu, node);
        break;
      case MenuNode::Separator:
        menu->addSeparator();
        break;
      case MenuNode::Submenu:
        AddNodes(menu->addMenu(Text(node.text)), node.children);
        break;
      case MenuNode::RecentFiles:
        // An invisible mark where the rows go once the list is known.
        fileMenu_ = menu;
        recentPlace_ = menu->addAction(QString());
        recentPlace_->setVisible(false);
        break;
    }
  }
}

void MainWindow::AddCommandRow(QMenu* menu, const MenuNode& node) {
  const CommandInfo* info = FindCommand(node.id);
  QString text = Text(node.text);
  QAction* action = new QAction(menu);
  if (info != nullptr && *info->shortcut != '\0') {
    if (info->bindShortcut) {
      action->setShortcut(QKeySequence(Text(info->shortcut)));
      // The window answers the key itself when the row may not run, so that the refusal beeps.
      action->setShortcutContext(Qt::WindowShortcut);
    } else {
      // Shown beside the row, answered by the key handler.
      text += QLatin1Char('\t') + Text(info->shortcut);
    }
  }
  action->setText(text);
  action->setCheckable(info != nullptr && info->checkable);
  action->setStatusTip(Text(MenuHint(node.id)));
  action->setData(node.id);
  const int id = node.id;
  connect(action, &QAction::triggered, this, [this, id] { Dispatch(id); });
  menu->addAction(action);
  actions_.emplace(id, action);
}

void MainWindow::RefreshRecentFiles() {
  if (fileMenu_ == nullptr || recentPlace_ == nullptr) return;
  const Settings& s = app_.settings;
  QStringList texts;
  for (int slot = 0; slot < kRecentFiles; ++slot)
    texts << (s.RecentName[slot].empty()
                  ? QString()
                  : QString::fromStdString(RecentFileText(slot, s.RecentName[slot])));
  // Rebuilt only when the list changed: the row that issued the running command may be one.
  if (texts == recentTexts_) return;
  recentTexts_ = texts;
  for (QAction* row : recentRows_) {
    for (auto it = actions_.begin(); it != actions_.end();) {
      if (it->second == row)
        it = actions_.erase(it);
      else
        ++it;
    }
    fileMenu_->removeAction(row);
    row->deleteLater();
  }
  recentRows_.clear();
  for (int slot = 0; slot < kRecentFiles; ++slot) {
    if (texts[slot].isEmpty()) continue;
    const int id = cmd::Recent1 + slot;
    QAction* row = new QAction(texts[slot], fileMenu_);
    row->setStatusTip(Text(MenuHint(id)));
    row->setData(id);
    connect(row, &QAction::triggered, this, [this, id] { Dispatch(id); });
    fileMenu_->insertAction(recentPlace_, row);
    recentRows_ << row;
    actions_.emplace(id, row);
  }
  if (!recentRows_.isEmpty()) {
    QAction* line = new QAction(fileMenu_);
    line->setSeparator(true);
    fileMenu_->insertAction(recentPlace_, line);
    recentRows_ << line;
  }
  RefreshCommandStates();
}

void MainWindow::RefreshCommandStates() {
  for (const auto* rows : {&actions_, &barActions_})
    for (const auto& [id, action] : *rows) {
      action->setEnabled(CommandEnabled(id, app_));
      if (action->isCheckable()) action->setChecked(CommandChecked(id, app_));
    }
}

QList<QAction*> MainWindow::BarActions() const {
  QList<QAction*> buttons;
  for (const auto& [command, action] : barActions_) buttons << action;
  return buttons;
}

QList<QAction*> MainWindow::ActionsOf(int id) const {
  QList<QAction*> rows;
  const auto [first, last] = actions_.equal_range(id);
  for (auto it = first; it != last; ++it) rows << it->second;
  // In menu order: the menus were built top to bottom and the map keeps insertion order.
  return rows;
}

void MainWindow::ShowStatus(const QString& text) {
  statusBar()->showMessage(text);
}

void MainWindow::RepaintBoard(RepaintLevel level) {
  // The frame's place is taken at every repaint, so that the one saved is the last one drawn.
  if (isVisible()) StoreFramePosition();
  if (level != RepaintLevel::Status) view_->update();
  RefreshRecentFiles();
  RefreshCommandStates();
  UpdateTitle();
}

void MainWindow::Dispatch(int id) {
  openKey_ = 0;
  RunCommand(app_, id);
  AfterCommand();
}

void MainWindow::AfterCommand() {
  RefreshCommandStates();
  UpdateTitle();
  if (app_.ExitRequested) {
    // Closed at the next turn, so that the menu that issued the command has gone first.
    QTimer::singleShot(0, this, &QWidget::close);
  }
}

void MainWindow::UpdateTitle() {
  setWindowTitle(QString::fromStdString(WindowTitle(app_.board)));
}

void MainWindow::RestoreFramePosition() {
  const Settings& s = app_.settings;
  if (app_.Snapshot) {
    resize(kSnapshotWidth, kSnapshotHeight);
    return;
  }
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
  if (s.FrameWinW > 0 && s.FrameWinH > 0) {
    resize(s.FrameWinW, s.FrameWinH);
    // A place kept from another screen arrangement may lie outside every screen now.
    const QPoint corner(s.FrameWinX, s.FrameWinY);
    if (QGuiApplication::screenAt(corner + QPoint(20, 20)) != nullptr) move(corner);
    return;
  }
  const QSize size = available.size() * 3 / 4;
  resize(size);
  move(available.center() - QPoint(size.width() / 2, size.height() / 2));
}

void MainWindow::StoreFramePosition() {
  Settings& s = app_.settings;
  if (isMaximized() || isMinimized() || isFullScreen()) {
    const QRect normal = normalGeometry();
    if (!normal.isValid()) return;
    s.FrameWinX = normal.x();
    s.FrameWinY = normal.y();
    s.FrameWinW = normal.width();
    s.FrameWinH = normal.height();
    return;
  }
  // The frame's corner and the size inside the frame: what move() and resize() take back.
  s.FrameWinX = pos().x();
  s.FrameWinY = pos().y();
  s.FrameWinW = width();
  s.FrameWinH = height();
}

void MainWindow::BringToFront() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (app_.FirstShow && !firstShowQueued_) {
    firstShowQueued_ = true;
    // After the window stands on the screen, so that a dialog of the chain has it as parent.
    QTimer::singleShot(0, this, &MainWindow::RunStartupChain);
  }
}

void MainWindow::RunStartupChain() {
  RefreshRecentFiles();
  RefreshCommandStates();
  RunFirstShow(app_);
  RequestRepaint(app_);
  AfterCommand();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  StoreFramePosition();
  SaveSettings(app_);
  event->accept();
}

bool MainWindow::KeyPressed(QKeyEvent* event) {
  Board& b = app_.board;
  const int key = event->key();
  if (event->isAutoRepeat() && key == openKey_) return true;
  openKey_ = 0;
  if (key == Qt::Key_Shift || key == Qt::Key_Control) return true;
  if (b.Busy) {
    Refuse(app_);
    return true;
  }
  if (b.Dragging) {
    // Any key ends a rubber rectangle, and nothing else.
    b.Dragging = false;
    ResetHover(app_);
    RequestRepaint(app_);
    return true;
  }
  const Qt::KeyboardModifiers mods =
      event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
  if ((key == Qt::Key_Tab || key == Qt::Key_Backtab) && !(mods & ~Qt::ShiftModifier)) {
    SwitchLayer(app_, key == Qt::Key_Tab && !(mods & Qt::ShiftModifier));
    AfterCommand();
    return true;
  }
  if (key == Qt::Key_Escape && mods == Qt::NoModifier) {
    if (!EscapeKey(app_)) openKey_ = key;
    AfterCommand();
    return true;
  }
  if ((key == Qt::Key_PageUp || key == Qt::Key_PageDown) && mods == Qt::NoModifier) {
    view_->ZoomStepAtCursor(key == Qt::Key_PageDown);
    AfterCommand();
    return true;
  }
  int command = 0;
  if (key == Qt::Key_F1 && mods == Qt::NoModifier) command = cmd::GeneralHelp;
  if (key == Qt::Key_D && mods == Qt::ControlModifier) command = cmd::Dimensions;
  if (key == Qt::Key_O && mods == Qt::ControlModifier) command = cmd::NewCircuit;
  if (command != 0) {
    Dispatch(command);
    return true;
  }
  if (key == Qt::Key_Menu) {
    view_->ContextMenuAtLastClick();
    return true;
  }
  if (KeyIsTaken(key)) return true;
  // Nothing answers the key: the beep sounds when it is released.
  openKey_ = key;
  return true;
}

bool MainWindow::KeyReleased(QKeyEvent* event) {
  if (event->isAutoRepeat()) return true;
  if (event->key() != 0 && event->key() == openKey_) {
    openKey_ = 0;
    // A dialog that came up meanwhile takes the key; the beep is only for this window.
    if (QApplication::activeModalWidget() == nullptr) Refuse(app_);
  }
  return true;
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (!KeyPressed(event)) QMainWindow::keyPressEvent(event);
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
  if (!KeyReleased(event)) QMainWindow::keyReleaseEvent(event);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  // The view takes the keys before Qt's focus chain, which would spend Tab on moving the focus.
  if (watched == view_) {
    if (event->type() == QEvent::KeyPress) return KeyPressed(static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::KeyRelease) return KeyReleased(static_cast<QKeyEvent*>(event));
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace isolith
