#include "ui/BoardView.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>
#include <QWheelEvent>

#include "commands/DisplayCommands.h"

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

void BoardView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  const double x = ScreenToWorldX(app_.view, app_.board, at.x());
  const double y = ScreenToWorldY(app_.view, app_.board, at.y());
  emit positionChanged(QString::fromStdString(PositionText(app_.board, app_.settings, x, y)));
  QWidget::mouseMoveEvent(event);
}

void BoardView::leaveEvent(QEvent* event) {
  emit positionChanged(QString());
  QWidget::leaveEvent(event);
}

}  // namespace isolith
