#include "commands/MouseInput.h"

#include <algorithm>
#include <cmath>

#include "commands/Commands.h"
#include "commands/DisplayCommands.h"
#include "commands/EditCommands.h"
#include "commands/OutputCommands.h"
#include "commands/PendingCommands.h"
#include "commands/Picking.h"
#include "commands/ToolpathCommands.h"
#include "commands/TransformCommands.h"
#include "core/board/BoardOps.h"

namespace isolith {

namespace {

bool AnyHoverItem(const Board& b) {
  return b.HoverPad || b.HoverTrack || b.HoverDrill || b.HoverCutout;
}

bool InBoard(const Application& app, int px, int py) {
  const PixelRect& r = app.view.BoardRect;
  return px >= r.left && px <= r.right && py >= r.top && py <= r.bottom;
}

double CardX(const Application& app, int px) {
  return ScreenToWorldX(app.view, app.board, px);
}
double CardY(const Application& app, int py) {
  return ScreenToWorldY(app.view, app.board, py);
}

// Panning moves the four edges together, axis by axis, as long as the box stays on the card.
void Pan(Application& app, MouseState& m, int px, int py) {
  Board& b = app.board;
  const double dx = m.GrabX - CardX(app, px), dy = m.GrabY - CardY(app, py);
  if (b.ViewLeft + dx >= 0 && b.ViewRight + dx <= b.CardWidth) {
    b.ViewLeft += static_cast<float>(dx);
    b.ViewRight += static_cast<float>(dx);
  } else {
    m.GrabX = static_cast<float>(CardX(app, px));
  }
  if (b.ViewBottom + dy >= 0 && b.ViewTop + dy <= b.CardHeight) {
    b.ViewBottom += static_cast<float>(dy);
    b.ViewTop += static_cast<float>(dy);
  } else {
    m.GrabY = static_cast<float>(CardY(app, py));
  }
}

}  // namespace

bool MouseMoved(Application& app, MouseState& m, int px, int py, bool leftHeld) {
  Board& b = app.board;
  if (b.Busy) return false;
  m.Panning = false;
  if (!leftHeld) return UpdateHover(app, px, py);
  if (b.PendingCommand == 0 && b.ZoomDepth > 0) {
    Pan(app, m, px, py);
    ClearHover(b);
    m.Panning = true;
    RequestRepaint(app, RepaintLevel::View);
    return true;
  }
  if (m.DragActive == 1 && IsRectangleCommand(b.PendingCommand)) {
    m.DragEndX = px, m.DragEndY = py;
    return true;
  }
  return false;
}

void LeftPressed(Application& app, MouseState& m, int px, int py, bool ctrl) {
  Board& b = app.board;
  if (b.Busy) return;
  m.LeftDown = true;
  m.LastClickX = px, m.LastClickY = py;
  if (m.DragActive == 0) {
    m.DragStartX = m.DragEndX = px;
    m.DragStartY = m.DragEndY = py;
    m.GrabX = static_cast<float>(CardX(app, px));
    m.GrabY = static_cast<float>(CardY(app, py));
  }
  const int pending = b.PendingCommand;
  if (pending == 0) return;
  const bool inside = InBoard(app, px, py);
  if (IsRectangleCommand(pending)) {
    if (inside) {
      m.DragActive = 1;
      b.Dragging = true;
    } else {
      Refuse(app);
    }
    return;
  }
  if (!inside) {
    ClickOutsideBoard(app);
    return;
  }
  const float x = static_cast<float>(CardX(app, px)), y = static_cast<float>(CardY(app, py));
  const float perMm = static_cast<float>(1 / app.view.PixelSize);
  if (TransformClickAction(app, pending, x, y)) return;
  if (ToolpathClickAction(app, pending, x, y)) return;
  if (OutputClickAction(app, pending, x, y, ctrl ? 0 : app.view.GridStep)) return;
  if (ContourClickAction(app, pending, x, y, perMm, false)) return;
  EditClickAction(app, pending);
}

void LeftReleased(Application& app, MouseState& m, int px, int py, bool ctrl) {
  Board& b = app.board;
  m.LeftDown = m.RightDown = false;
  // A key or the right button may have cancelled the rectangle meanwhile.
  const bool dragging = m.DragActive == 1 && b.Dragging;
  m.DragActive = 0;
  b.Dragging = false;
  if (!dragging) return;
  m.DragEndX = px, m.DragEndY = py;
  const int pending = b.PendingCommand;
  const float x1 = static_cast<float>(CardX(app, m.DragStartX));
  const float y1 = static_cast<float>(CardY(app, m.DragStartY));
  const float x2 = static_cast<float>(CardX(app, px)), y2 = static_cast<float>(CardY(app, py));
  if (pending == cmd::ZoomIn) {
    // The rectangle becomes the view, no side under 12.7 mm.
    PushZoom(b);
    b.ViewLeft = std::min(x1, x2), b.ViewRight = std::max(x1, x2);
    b.ViewBottom = std::min(y1, y2), b.ViewTop = std::max(y1, y2);
    const float half = kMinimumZoom / 2;
    if (b.ViewRight - b.ViewLeft <= kMinimumZoom) {
      const float c = (b.ViewLeft + b.ViewRight) / 2;
      b.ViewLeft = c - half, b.ViewRight = c + half;
    }
    if (b.ViewTop - b.ViewBottom <= kMinimumZoom) {
      const float c = (b.ViewBottom + b.ViewTop) / 2;
      b.ViewBottom = c - half, b.ViewTop = c + half;
    }
    b.PendingCommand = 0;
    RequestRepaint(app, RepaintLevel::Full);
    return;
  }
  if (ToolpathRectangleAction(app, pending, x1, y1, x2, y2)) return;
  EditRectangleAction(app, pending, x1, y1, x2, y2, ctrl);
}

bool RightPressed(Application& app, MouseState& m, int px, int py) {
  Board& b = app.board;
  if (b.Busy) return false;
  m.LastClickX = px, m.LastClickY = py;
  if (m.DragActive == 1 && b.Dragging) {
    m.DragActive = 0;
    b.Dragging = false;
    ResetHover(app);
    RequestRepaint(app);
    return false;
  }
  const int pending = b.PendingCommand;
  if (pending == cmd::AddContourSegments || pending == cmd::AddContourSegmentsSecond) {
    ContourClickAction(app, pending, static_cast<float>(CardX(app, px)),
                       static_cast<float>(CardY(app, py)),
                       static_cast<float>(1 / app.view.PixelSize), true);
    return false;
  }
  m.RightDown = true;
  b.PendingCommand = 0;
  app.PopupX = static_cast<float>(CardX(app, px));
  app.PopupY = static_cast<float>(CardY(app, py));
  if (!InBoard(app, px, py)) {
    Refuse(app);
    return false;
  }
  return AnyHoverItem(b);
}

BoardCursor CursorAt(const Application& app, const MouseState& m, int px, int py) {
  const Board& b = app.board;
  if (m.Panning) return BoardCursor::ClosedHand;
  if (!InBoard(app, px, py)) return BoardCursor::Arrow;
  if (b.PendingCommand == cmd::ZoomIn)
    return (app.settings.BoardBackground & 0xFFFFFF) == 0xFFFFFF ? BoardCursor::ZoomOnWhite
                                                                 : BoardCursor::ZoomOnColour;
  if (const PendingInfo* pending = FindPending(b.PendingCommand)) {
    switch (pending->target) {
      case PickTarget::Rectangle:
        return BoardCursor::PickRectangle;
      case PickTarget::Point:
      case PickTarget::PointOnCutout:
      case PickTarget::ContourPoints:
        return BoardCursor::PickPoint;
      default:
        return BoardCursor::PickItem;
    }
  }
  return b.ZoomDepth > 0 && !AnyHoverItem(b) ? BoardCursor::OpenHand : BoardCursor::Arrow;
}

void DoubleClicked(Application& app, MouseState&, int px, int py, bool left) {
  if (app.board.Busy) return;
  if (left) {
    if (InBoard(app, px, py)) ZoomStepCommand(app, true, px, py);
    return;
  }
  ResetZoom(app.board);
  RequestRepaint(app, RepaintLevel::Full);
}

bool RubberRectangle(const Application& app, const MouseState& m, PixelRect& rect,
                     uint32_t& colour) {
  if (m.DragActive != 1 || !app.board.Dragging) return false;
  rect = {std::min(m.DragStartX, m.DragEndX), std::min(m.DragStartY, m.DragEndY),
          std::max(m.DragStartX, m.DragEndX), std::max(m.DragStartY, m.DragEndY)};
  const Settings& s = app.settings;
  switch (app.board.PendingCommand) {
    case cmd::CalculateHatches:
      colour = s.BoardHatch;
      break;
    case cmd::DisableZone:
    case cmd::EnableZone:
      colour = s.DisableSelect;
      break;
    case cmd::ZoomIn:
      colour = s.ZoomSelect;
      break;
    default:
      colour = s.BoardSelect;
  }
  return true;
}

}  // namespace isolith
