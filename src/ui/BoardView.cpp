#include "ui/BoardView.h"

#include <QCursor>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>
#include <QWheelEvent>

#include "commands/Commands.h"
#include "commands/DisplayCommands.h"
#include "commands/MouseInput.h"
#include "commands/Picking.h"
#include "commands/PopupMenu.h"

namespace isolith {

namespace {

QPolygon PolygonOf(const DisplayList& list, const DrawItem& item) {
  QPolygon polygon(item.count);
  const ScreenPoint* p = list.PointsOf(item);
  for (int i = 0; i < item.count; ++i) polygon.setPoint(i, p[i].x, p[i].y);
  return polygon;
}

// The rectangle of an item's two corners, both inside.
QRect CornersOf(const DisplayList& list, const DrawItem& item) {
  const ScreenPoint* p = list.PointsOf(item);
  return QRect(QPoint(p[0].x, p[0].y), QPoint(p[1].x, p[1].y)).normalized();
}

}  // namespace

QColor ToQColor(uint32_t colour, const QColor& automatic) {
  if (colour == kColourAuto) return automatic;
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                static_cast<int>((colour >> 16) & 0xFF));
}

void PaintDisplayList(QPainter& painter, const DisplayList& list, const QColor& windowColour) {
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const DrawItem& item : list.items) {
    const QColor colour = ToQColor(item.colour, windowColour);
    const ScreenPoint* p = list.PointsOf(item);
    switch (item.shape) {
      case DrawShape::FillRect:
        painter.fillRect(CornersOf(list, item), colour);
        break;
      case DrawShape::FrameRect: {
        // A one-pixel outline on the corners' own pixels.
        const QRect r = CornersOf(list, item);
        painter.setPen(QPen(colour, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRect(r.left(), r.top(), r.width() - 1, r.height() - 1));
        break;
      }
      case DrawShape::Clip:
        painter.setClipRect(CornersOf(list, item));
        break;
      case DrawShape::Unclip:
        painter.setClipping(false);
        break;
      case DrawShape::Points:
        painter.setPen(QPen(colour, 1));
        painter.drawPoints(PolygonOf(list, item));
        break;
      case DrawShape::Polyline:
        painter.setPen(QPen(colour, item.width, item.style == 1 ? Qt::DotLine : Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(PolygonOf(list, item));
        break;
      case DrawShape::Polygon:
        painter.setPen(QPen(colour, 1));
        painter.setBrush(colour);
        painter.drawPolygon(PolygonOf(list, item));
        break;
      case DrawShape::Disc:
        painter.setPen(QPen(colour, 1));
        painter.setBrush(colour);
        painter.drawEllipse(QPoint(p[0].x, p[0].y), item.radius, item.radius);
        break;
      case DrawShape::Circle:
        painter.setPen(QPen(colour, item.width));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QPoint(p[0].x, p[0].y), item.radius, item.radius);
        break;
    }
  }
}

QImage RenderBoard(Application& app, QSize size, const QColor& windowColour) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(windowColour);
  app.view.ClientRect = {0, 0, size.width(), size.height()};
  DisplayList list;
  BuildDisplayList(app, kRepaintFull, true, list);
  QPainter painter(&image);
  PaintDisplayList(painter, list, windowColour);
  return image;
}

BoardView::BoardView(Application& app, QWidget* parent) : QWidget(parent), app_(app) {
  setObjectName("ViewArea");
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(1, 1);
}

void BoardView::paintEvent(QPaintEvent*) {
  // Every paint is a full repaint with a new scale: the fit is stable, so the same model and
  // client give the same picture, and a resize needs nothing more.
  app_.view.ClientRect = {0, 0, width(), height()};
  BuildDisplayList(app_, kRepaintFull, true, list_);
  QPainter painter(this);
  PaintDisplayList(painter, list_, palette().color(QPalette::Window));
  PaintPointer(painter);
  painter.end();
  emit painted();
}

void BoardView::ZoomStepAtCursor(bool in) {
  const QPoint at = mapFromGlobal(QCursor::pos());
  ZoomStepCommand(app_, in, at.x(), at.y());
}

void BoardView::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int turn = event->angleDelta().y();
  if (!app_.settings.ForceMouseWheel || turn == 0 || app_.board.Busy) return;
  // A turn towards the person (negative) zooms in, away zooms out.
  const QPoint at = event->position().toPoint();
  ZoomStepCommand(app_, turn < 0, at.x(), at.y());
}

void BoardView::PaintPointer(QPainter& painter) {
  // The rubber rectangle in the colour of its command.
  PixelRect r;
  uint32_t colour = 0;
  if (RubberRectangle(app_, mouse_, r, colour)) {
    painter.setPen(QPen(ToQColor(colour, Qt::yellow), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRect(QPoint(r.left, r.top), QPoint(r.right, r.bottom)));
  }
  // The hint box of the hover item, beside the mouse.
  const std::string hint = HoverHint(app_);
  if (hint.empty() || !showHint_) return;
  const QString text = QString::fromStdString(hint);
  const QFontMetrics metrics(font());
  const QRect box = metrics.boundingRect(QRect(0, 0, 600, 200), Qt::AlignLeft, text)
                        .adjusted(-4, -3, 4, 3)
                        .translated(hintAt_ + QPoint(14, 18));
  QRect placed = box;
  if (placed.right() > width()) placed.moveRight(hintAt_.x() - 8);
  if (placed.bottom() > height()) placed.moveBottom(hintAt_.y() - 8);
  painter.setPen(QColor(0, 0, 0));
  painter.setBrush(QColor(255, 255, 225));
  painter.drawRect(placed);
  painter.drawText(placed.adjusted(4, 3, -4, -3), Qt::AlignLeft, text);
}

namespace {

// A cursor drawn by us, its hot spot at (x, y) of its 32 pixels.
QCursor Drawn(const char* name, int x, int y) {
  return QCursor(QIcon(QString(":/cursors/") + name + ".svg").pixmap(32, 32), x, y);
}

}  // namespace

QCursor BoardView::CursorShape(BoardCursor cursor) {
  switch (cursor) {
    case BoardCursor::ZoomOnWhite:
      return Drawn("zoom-dark", 12, 12);
    case BoardCursor::ZoomOnColour:
      return Drawn("zoom-light", 12, 12);
    case BoardCursor::OpenHand:
      return Qt::OpenHandCursor;
    case BoardCursor::ClosedHand:
      return Qt::ClosedHandCursor;
    case BoardCursor::PickItem:
      return Drawn("pick-item", 16, 16);
    case BoardCursor::PickPoint:
      return Drawn("pick-point", 16, 16);
    case BoardCursor::PickRectangle:
      return Drawn("pick-rectangle", 9, 9);
    case BoardCursor::Arrow:
      break;
  }
  return Qt::ArrowCursor;
}

QString BoardView::HintText() const {
  return QString::fromStdString(HoverHint(app_));
}

void BoardView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  const double x = ScreenToWorldX(app_.view, app_.board, at.x());
  const double y = ScreenToWorldY(app_.view, app_.board, at.y());
  emit positionChanged(QString::fromStdString(PositionText(app_.board, app_.settings, x, y)));
  const bool left = event->buttons() & Qt::LeftButton;
  const bool changed = MouseMoved(app_, mouse_, at.x(), at.y(), left);
  hintAt_ = at;
  showHint_ = !left;
  if (changed || mouse_.DragActive) update();
  setCursor(CursorShape(CursorAt(app_, mouse_, at.x(), at.y())));
  QWidget::mouseMoveEvent(event);
}

void BoardView::mousePressEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  const bool ctrl = event->modifiers() & Qt::ControlModifier;
  showHint_ = false;
  if (event->button() == Qt::LeftButton) {
    LeftPressed(app_, mouse_, at.x(), at.y(), ctrl);
  } else if (event->button() == Qt::RightButton) {
    if (RightPressed(app_, mouse_, at.x(), at.y())) ShowPopup(event->globalPosition().toPoint());
  }
  update();
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  if (event->button() == Qt::LeftButton)
    LeftReleased(app_, mouse_, at.x(), at.y(), event->modifiers() & Qt::ControlModifier);
  mouse_.RightDown = false;
  update();
}

void BoardView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  DoubleClicked(app_, mouse_, at.x(), at.y(), event->button() == Qt::LeftButton);
  update();
}

void BoardView::ContextMenuAtLastClick() {
  const QPoint at(mouse_.LastClickX, mouse_.LastClickY);
  if (RightPressed(app_, mouse_, at.x(), at.y())) ShowPopup(mapToGlobal(at));
}

void BoardView::ShowPopup(QPoint globalAt) {
  const std::vector<PopupRow> rows = PopupRows(app_);
  if (rows.empty()) return;
  QMenu menu(this);
  menu.setObjectName("BoardPopup");
  for (const PopupRow& row : rows) {
    if (row.id == 0) {
      menu.addSeparator();
      continue;
    }
    QAction* action = menu.addAction(QString::fromStdString(row.text));
    action->setData(row.id);
    action->setEnabled(row.enabled);
  }
  update();
  if (QAction* chosen = menu.exec(globalAt)) RunCommand(app_, chosen->data().toInt());
  update();
}

void BoardView::leaveEvent(QEvent* event) {
  emit positionChanged(QString());
  QWidget::leaveEvent(event);
}

}  // namespace isolith
