#include "toolpath/CentringHoles.h"

#include <cmath>

#include "core/board/BoardOps.h"
#include "toolpath/TDialogManuPlot.h"
#include "toolpath/geometry/Scalars.h"

namespace isolith {

namespace {

// A corner coordinate of the holes counts only above this (a hole exists when both do).
constexpr double kHoleExists = -0.1;

float F(double v) {
  return static_cast<float>(v);
}

// A margin in whole pitches: the nearest multiple for a margin that is not negative, halves going
// up; a negative margin is cut toward zero as it always has been.
float RoundToPitch(float margin) {
  return F(std::trunc((double(margin) + kCentringPitch / 2) / kCentringPitch) * kCentringPitch);
}

void Repaint(CentringContext& c, RepaintLevel level) {
  if (c.steps.repaint)
    c.steps.repaint(level);
  else
    c.platform.Repaint(level);
}

void ResetHover(CentringContext& c) {
  if (c.steps.resetHover)
    c.steps.resetHover();
  else
    ClearHover(c.board);
}

// The board fitted round everything, the holes included, with the reframing margin.
void FitBoard(CentringContext& c) {
  if (c.steps.reframe) c.steps.reframe();
  ResetView(c.board);
  ResetHover(c);
  Repaint(c, RepaintLevel::Full);
}

void BeginPlacing(CentringContext& c) {
  c.board.PendingCommand = kCentringCommand;
}

CentringResult RemoveHoles(CentringContext& c) {
  Board& b = c.board;
  for (int number : {1, 3, 7, 9}) {
    float x = 0, y = 0;
    if (!CenteringHole(b, number, x, y)) continue;
    if (std::fabs(double(x) - b.OriginX) < kCentringOriginTolerance &&
        std::fabs(double(y) - b.OriginY) < kCentringOriginTolerance) {
      b.OriginX = 0;
      b.OriginY = 0;
    }
  }
  b.CentreHole1X = b.CentreHole1Y = b.CentreHole2X = b.CentreHole2Y = -1;
  FitBoard(c);
  return CentringResult::Removed;
}

// The first click: hole 1, then the second hole by distance, by a further click, or not at all.
CentringResult PlaceFirstHole(CentringContext& c, float x, float y, float gridStep) {
  Board& b = c.board;
  SnapToGrid(b, gridStep, x, y);
  b.CentreHole1X = x;
  b.CentreHole1Y = y;
  b.PendingCommand = 0;

  // The opposite corner proposed is hole 1 reflected through the card's centre. It stands in
  // the model while the dialog is open so that all four holes are drawn.
  float ox = F(double(b.CardWidth) - x), oy = F(double(b.CardHeight) - y);
  SnapToGrid(b, gridStep, ox, oy);
  b.CentreHole2X = ox;
  b.CentreHole2Y = oy;
  Repaint(c, RepaintLevel::View);

  TDialogManuPlot form(TDialogManuPlot::kCentringTitle, F(double(ox) - x), F(double(oy) - y),
                       -double(x), double(b.CardWidth) - x, -double(y), double(b.CardHeight) - y,
                       c.settings.LengthUnitLabel, c.platform.DecimalSeparator());
  if (c.platform.RunDialog(form)) {
    b.CentreHole2X = F(double(x) + form.x);
    b.CentreHole2Y = F(double(y) + form.y);
    FitBoard(c);
    return CentringResult::Fitted;
  }
  b.CentreHole2X = b.CentreHole2Y = -1;
  if (form.plotManually) {
    BeginPlacing(c);
    Repaint(c, RepaintLevel::View);
    return CentringResult::Placing;
  }
  Repaint(c, RepaintLevel::View);
  return CentringResult::Cancelled;
}

}  // namespace

bool CenteringHole(const Board& b, int number, float& x, float& y) {
  float hx, hy;
  switch (number) {
    case 1:
      hx = b.CentreHole1X, hy = b.CentreHole1Y;
      break;
    case 3:
      hx = b.CentreHole2X, hy = b.CentreHole1Y;
      break;
    case 7:
      hx = b.CentreHole1X, hy = b.CentreHole2Y;
      break;
    case 9:
      hx = b.CentreHole2X, hy = b.CentreHole2Y;
      break;
    default:
      return false;
  }
  x = hx;
  y = hy;
  return hx > kHoleExists && hy > kHoleExists;
}

float CenteringHoleDiameter(const Settings& settings, ToolTable& tools) {
  return ToolCutWidthByIndex(tools, settings.PlottingTool, settings.PlottingDepth, 1);
}

void SnapToGrid(const Board& b, float step, float& x, float& y) {
  if (!(step > 0)) return;
  x = F(b.OriginX + std::floor((double(x) - b.OriginX) / step + 0.5) * step);
  y = F(b.OriginY + std::floor((double(y) - b.OriginY) / step + 0.5) * step);
}

bool MakeCentringRoom(Board& b) {
  float minX, minY, maxX, maxY;
  FullBoundingBox(b, minX, minY, maxX, maxY);
  if (minX > maxX || minY > maxY) return false;
  const float width = b.CardWidth, height = b.CardHeight;
  const float mx = RoundToPitch(MinF(minX, F(double(width) - maxX)));
  const float my = RoundToPitch(MinF(minY, F(double(height) - maxY)));
  const double quarterX = width / 4.0, quarterY = height / 4.0;
  if (!(mx < quarterX || my < quarterY)) return false;
  ShiftLists(b, MaxF(mx, F(quarterX - mx)), MaxF(my, F(quarterY - my)), true, true);
  // The card becomes a blank with the content in its middle: equal margins on both sides.
  FullBoundingBox(b, minX, minY, maxX, maxY);
  b.CardWidth = F(double(maxX) + minX);
  b.CardHeight = F(double(maxY) + minY);
  return true;
}

CentringResult AddCenteringHoles(CentringContext& c) {
  Board& b = c.board;
  if (!LayerHasContent(b, 0)) {
    c.platform.Beep(c.settings.ZapSound);
    return CentringResult::Refused;
  }
  ResetHover(c);
  if (b.CentreHole1X > kHoleExists) return RemoveHoles(c);
  MakeCentringRoom(b);
  ResetView(b);
  BeginPlacing(c);
  Repaint(c, RepaintLevel::Full);
  return CentringResult::Placing;
}

CentringResult PlaceCenteringHole(CentringContext& c, float x, float y, float gridStep) {
  Board& b = c.board;
  if (b.PendingCommand != kCentringCommand) return CentringResult::Ignored;
  if (!(b.CentreHole1X > kHoleExists)) return PlaceFirstHole(c, x, y, gridStep);
  SnapToGrid(b, gridStep, x, y);
  b.CentreHole2X = x;
  b.CentreHole2Y = y;
  b.PendingCommand = 0;
  FitBoard(c);
  return CentringResult::Fitted;
}

}  // namespace isolith
