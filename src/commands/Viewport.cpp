#include "commands/Viewport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "core/board/BoardOps.h"

namespace isolith {

namespace {

constexpr double kEdgeTolerance = 0.001;  // mm: a view edge this near the card's edge meets it
constexpr double kSnapShare = 0.95;       // a view this much of the card shows the whole card
constexpr float kGridStart = 2.54f;
constexpr int kGridMaxPixels = 50, kGridMinPixels = 5;
constexpr double kInchPerMm = 0.0393700787;

// The pixels a length spans at a scale. A box widened to whole pixels spans them again at the
// next fit, but for the float's last bit: a near-whole count is taken as whole, so that the fit
// stays where it is from one repaint to the next.
double SpannedPixels(double length, float pixelSize) {
  const double pixels = length / pixelSize;
  const double whole = std::round(pixels);
  return std::abs(pixels - whole) < 1e-3 ? whole : pixels;
}

bool ReachesAllCardEdges(const Board& b) {
  return b.ViewLeft < kEdgeTolerance && b.ViewBottom < kEdgeTolerance &&
         b.ViewRight > b.CardWidth - kEdgeTolerance && b.ViewTop > b.CardHeight - kEdgeTolerance;
}

}  // namespace

int WorldToScreenX(const Viewport& v, const Board& b, double x) {
  return static_cast<int>((x - b.ViewLeft) / v.PixelSize + 0.5) + v.BoardRect.left;
}

int WorldToScreenY(const Viewport& v, const Board& b, double y) {
  const double up = static_cast<int>((y - b.ViewBottom) / v.PixelSize);
  return static_cast<int>(v.BoardRect.bottom - up + 0.5);
}

double ScreenToWorldX(const Viewport& v, const Board& b, int px) {
  return (px - v.BoardRect.left) * static_cast<double>(v.PixelSize) + b.ViewLeft;
}

double ScreenToWorldY(const Viewport& v, const Board& b, int py) {
  return b.ViewBottom - (py - v.BoardRect.bottom) * static_cast<double>(v.PixelSize);
}

void ResetZoom(Board& b) {
  ResetView(b);
}

void PushZoom(Board& b) {
  if (b.ZoomDepth < static_cast<int>(b.ZoomHistory.size()))
    b.ZoomHistory[b.ZoomDepth++] = {b.ViewLeft, b.ViewBottom, b.ViewRight, b.ViewTop};
}

void FitView(Viewport& v, Board& b, bool newScale) {
  if (b.ViewRight < b.ViewLeft) std::swap(b.ViewLeft, b.ViewRight);
  if (b.ViewTop < b.ViewBottom) std::swap(b.ViewBottom, b.ViewTop);
  auto clamp = [&newScale](float& edge, float limit, bool raise) {
    if (raise ? edge < limit : edge > limit) {
      edge = limit;
      newScale = true;
    }
  };
  clamp(b.ViewLeft, 0, true);
  clamp(b.ViewBottom, 0, true);
  clamp(b.ViewRight, b.CardWidth, false);
  clamp(b.ViewTop, b.CardHeight, false);

  double w = static_cast<double>(b.ViewRight) - b.ViewLeft;
  double h = static_cast<double>(b.ViewTop) - b.ViewBottom;
  // A box that the clamps emptied (it lay wholly off the card) shows the whole card.
  v.Zoomed = w > 0 && h > 0 && (w < kSnapShare * b.CardWidth || h < kSnapShare * b.CardHeight);
  int marginLeft = 0, marginTop = 0, marginRight = 0, marginBottom = 0;
  if (!v.Zoomed) {
    ResetZoom(b);
    newScale = true;
    w = b.CardWidth;
    h = b.CardHeight;
    marginLeft = marginTop = marginRight = marginBottom = kViewMargin;
  } else {
    // Right and top are tested by the box's left and bottom edges, as the program always has:
    // a zoomed box meets those margins only when it is a sliver at the card's far side.
    if (b.ViewLeft < kEdgeTolerance) marginLeft = kViewMargin;
    if (b.ViewBottom < kEdgeTolerance) marginBottom = kViewMargin;
    if (b.ViewLeft > b.CardWidth - kEdgeTolerance) marginRight = kViewMargin;
    if (b.ViewBottom > b.CardHeight - kEdgeTolerance) marginTop = kViewMargin;
  }

  const PixelRect& c = v.ClientRect;
  int width = c.right - c.left - marginLeft - marginRight;
  int height = c.bottom - c.top - marginTop - marginBottom;
  if (width < 1 || height < 1) {
    // A client too small for the margins shows the board in what there is.
    marginLeft = marginTop = 0;
    width = std::max(1, c.right - c.left);
    height = std::max(1, c.bottom - c.top);
  }
  PixelRect r;
  if (w <= 0 || h <= 0 || !std::isfinite(w / h)) {
    // A card of no size: one pixel per nothing, kept finite for the drawing.
    v.PixelSize = 1;
    r = {c.left + marginLeft, c.top + marginTop, c.left + marginLeft, c.top + marginTop};
  } else if (newScale || !(v.PixelSize > 0)) {
    if (w / h <= static_cast<double>(width) / height) {
      v.PixelSize = static_cast<float>(h / height);
      const int spare = static_cast<int>((width - SpannedPixels(w, v.PixelSize)) / 2);
      r = {c.left + marginLeft + spare, c.top + marginTop, c.left + marginLeft + width - spare,
           c.top + marginTop + height};
    } else {
      v.PixelSize = static_cast<float>(w / width);
      const int spare = static_cast<int>((height - SpannedPixels(h, v.PixelSize)) / 2);
      r = {c.left + marginLeft, c.top + marginTop + spare, c.left + marginLeft + width,
           c.top + marginTop + height - spare};
    }
  } else {
    // The present scale, the box's lower-left corner at the margins' corner.
    r.left = c.left + marginLeft;
    r.bottom = c.top + marginTop + height;
    r.right = r.left + static_cast<int>(std::ceil(w / v.PixelSize));
    r.top = r.bottom - static_cast<int>(std::ceil(h / v.PixelSize));
  }
  // Edges outside the client are pulled in; then the box is widened (or narrowed) to what the
  // pixels show, from its lower-left corner, which the mapping holds fixed.
  r.right = std::min(r.right, c.right);
  r.top = std::max(r.top, c.top);
  v.BoardRect = r;
  b.ViewRight = static_cast<float>(ScreenToWorldX(v, b, r.right));
  b.ViewTop = static_cast<float>(ScreenToWorldY(v, b, r.top));
}

ZoomStep ZoomStepIn(const Viewport& v, Board& b, int px, int py) {
  const PixelRect& c = v.ClientRect;
  if (px < c.left || px >= c.right || py < c.top || py >= c.bottom) return ZoomStep::Outside;
  const double w = static_cast<double>(b.ViewRight) - b.ViewLeft;
  const double h = static_cast<double>(b.ViewTop) - b.ViewBottom;
  if (w <= kMinimumZoom || h <= kMinimumZoom) return ZoomStep::Refused;
  PushZoom(b);
  const double x = ScreenToWorldX(v, b, px), y = ScreenToWorldY(v, b, py);
  b.ViewLeft = static_cast<float>(x - w / 4);
  b.ViewRight = static_cast<float>(x + w / 4);
  b.ViewBottom = static_cast<float>(y - h / 4);
  b.ViewTop = static_cast<float>(y + h / 4);
  return ZoomStep::Done;
}

ZoomStep ZoomStepOut(Board& b) {
  if (ReachesAllCardEdges(b)) return ZoomStep::Refused;
  const double w = static_cast<double>(b.ViewRight) - b.ViewLeft;
  const double h = static_cast<double>(b.ViewTop) - b.ViewBottom;
  // Only the right edge moves horizontally: the one-sided growth the program has always had.
  b.ViewRight = static_cast<float>(b.ViewRight + w / 2);
  b.ViewBottom = static_cast<float>(b.ViewBottom - h / 2);
  b.ViewTop = static_cast<float>(b.ViewTop + h / 2);
  b.ZoomDepth = 0;
  return ZoomStep::Done;
}

bool ZoomOut(Board& b) {
  if (ReachesAllCardEdges(b)) {
    ResetZoom(b);
    return false;
  }
  if (b.ZoomDepth <= 0) {
    ResetZoom(b);
    return true;
  }
  const ViewBox box = b.ZoomHistory[--b.ZoomDepth];
  b.ViewLeft = box.left;
  b.ViewBottom = box.bottom;
  b.ViewRight = box.right;
  b.ViewTop = box.top;
  return true;
}

float GridStepFor(float pixelSize) {
  float step = kGridStart;
  if (!(pixelSize > 0) || !std::isfinite(pixelSize)) return step;
  auto pixels = [&] { return static_cast<long long>(static_cast<double>(step) / pixelSize); };
  // Bounded, so that no scale can keep the loops going.
  for (int i = 0; i < 64 && pixels() > kGridMaxPixels; ++i) step /= 2;
  for (int i = 0; i < 64 && pixels() < kGridMinPixels; ++i) step *= 2;
  return step;
}

std::vector<ScreenPoint> GridPoints(const Viewport& v, const Board& b, float step) {
  std::vector<ScreenPoint> points;
  if (!(step > 0) || !(v.PixelSize > 0)) return points;
  const PixelRect& r = v.BoardRect;
  // The multiples of the step from the origin that fall between two edges, as k range.
  auto range = [step](double origin, double low, double high) {
    return std::pair<long long, long long>{
        static_cast<long long>(std::ceil((low - origin) / step)),
        static_cast<long long>(std::floor((high - origin) / step))};
  };
  const auto [i0, i1] =
      range(b.OriginX, ScreenToWorldX(v, b, r.left), ScreenToWorldX(v, b, r.right));
  const auto [j0, j1] =
      range(b.OriginY, ScreenToWorldY(v, b, r.bottom), ScreenToWorldY(v, b, r.top));
  if (i1 < i0 || j1 < j0) return points;
  points.reserve(static_cast<size_t>((i1 - i0 + 1) * (j1 - j0 + 1)));
  for (long long j = j0; j <= j1; ++j) {
    if (j == 0 && b.OriginY == 0) continue;
    const int y = WorldToScreenY(v, b, b.OriginY + static_cast<double>(j) * step);
    for (long long i = i0; i <= i1; ++i) {
      if (i == 0 && b.OriginX == 0) continue;
      points.push_back({WorldToScreenX(v, b, b.OriginX + static_cast<double>(i) * step), y});
    }
  }
  return points;
}

std::string PositionText(const Board& b, const Settings& s, double x, double y) {
  if (x < 0 || y < 0) return {};
  const double f = s.LengthUnit == kLengthInch ? kInchPerMm : 1.0;
  char text[96];
  std::snprintf(text, sizeof text, "X %.2f   Y %.2f", (x - b.OriginX) * f, (y - b.OriginY) * f);
  return text;
}

}  // namespace isolith
