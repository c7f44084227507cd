// The board on the screen: a thin widget that has the logic build the picture as a display
// list and paints it, and that turns the wheel into zoom steps and the mouse position into the
// read-out. Picking, hover and the context menu come over the same list and viewport.
#pragma once

#include <QCursor>
#include <QImage>
#include <QString>
#include <QWidget>

#include "commands/Application.h"
#include "commands/DisplayList.h"
#include "commands/MouseInput.h"

class QPainter;

namespace isolith {

// The Qt colour of a 0x00BBGGRR value; 1, the automatic colour, is `automatic`.
QColor ToQColor(uint32_t colour, const QColor& automatic);

// Paints the list's orders in turn, with no smoothing, so that the pixels are the list's.
void PaintDisplayList(QPainter& painter, const DisplayList& list, const QColor& windowColour);

// The job as the window shows it in a client of `size`: a full repaint with a new scale.
QImage RenderBoard(Application& app, QSize size, const QColor& windowColour);

class BoardView : public QWidget {
  Q_OBJECT

 public:
  explicit BoardView(Application& app, QWidget* parent = nullptr);

  // A zoom step at the mouse's present place (Page Down in, Page Up out).
  void ZoomStepAtCursor(bool in);
  // The list of the last paint.
  const DisplayList& Shown() const { return list_; }
  // The text of the hint box of the hover item; empty when none is shown.
  QString HintText() const;
  // The context menu key: the menu of the hover items at the last click's place.
  void ContextMenuAtLastClick();
  // The mouse and rectangle state, for the tests.
  const MouseState& Mouse() const { return mouse_; }
  // The cursor the board shows for each of its shapes.
  static QCursor CursorShape(BoardCursor cursor);

 signals:
  // The read-out of the card position under the mouse; empty off the card.
  void positionChanged(const QString& text);
  // A paint has set the marks that the enabling rules read.
  void painted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  // The rubber rectangle and the hint box over the picture.
  void PaintPointer(QPainter& painter);
  // The context menu of the hover items at a screen position; the chosen row runs.
  void ShowPopup(QPoint globalAt);

  Application& app_;
  DisplayList list_;
  MouseState mouse_;
  QPoint hintAt_;
  bool showHint_ = true;
};

}  // namespace isolith
