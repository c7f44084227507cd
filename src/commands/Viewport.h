// The board on the screen: the one scale that maps card millimetres to pixels, the fit of the
// view box into the client area, the zoom history, the grid of points and the read-out of the
// mouse position. Everything that draws or picks goes through the four mapping functions.
#pragma once

#include <string>
#include <vector>

#include "core/board/Board.h"
#include "params/Settings.h"

namespace isolith {

// A rectangle of pixels; right and bottom are the last pixel's edge (a client of 800 pixels
// runs from 0 to 800).
struct PixelRect {
  int left = 0, top = 0, right = 0, bottom = 0;
};

struct ScreenPoint {
  int x = 0, y = 0;
};

struct Viewport {
  float PixelSize = 1;     // mm per pixel, the same on both axes
  PixelRect ClientRect;    // where the board may appear
  PixelRect BoardRect;     // the image of the view box
  float GridStep = 2.54f;  // mm between grid points, as last drawn
  bool Zoomed = false;     // the view box is under 95 % of the card in width or height
};

// The smallest view box side that a zoom step in still halves.
inline constexpr float kMinimumZoom = 12.7f;
// Margin kept between the client's edge and the card's edge that the view reaches.
inline constexpr int kViewMargin = 4;

int WorldToScreenX(const Viewport& v, const Board& b, double x);
int WorldToScreenY(const Viewport& v, const Board& b, double y);
double ScreenToWorldX(const Viewport& v, const Board& b, int px);
double ScreenToWorldY(const Viewport& v, const Board& b, int py);

// The view box becomes the whole card and the zoom history is emptied.
void ResetZoom(Board& b);
// Keeps the present box on the history while it holds fewer than five.
void PushZoom(Board& b);

// The start of every full repaint: the box put in order and onto the card, the snap back to
// the whole card at 95 %, the margins, a new scale when `newScale` or a clamp asks for it, and
// the box widened to what the pixels show.
void FitView(Viewport& v, Board& b, bool newScale);

// One step of the wheel, Page Up / Page Down and the double click. In: half the box, centred
// on the card position under the pixel; Outside (nothing done) when the pixel is outside the
// client; Refused (for the beep) when the box is 12.7 mm or less in either direction. Out: the
// box grows by half to the right and by half up and down (its left edge stays), the history
// is emptied; Refused when the view already reaches all four card edges.
enum class ZoomStep { Done, Refused, Outside };
ZoomStep ZoomStepIn(const Viewport& v, Board& b, int px, int py);
ZoomStep ZoomStepOut(Board& b);

// "Zoom &out": the box pushed last comes back, or the whole card when none is kept. False (for
// the beep) when the view is already the whole card.
bool ZoomOut(Board& b);

// The grid step for a scale: 2.54 mm halved while it spans more than 50 whole pixels, then
// doubled while it spans fewer than 5.
float GridStepFor(float pixelSize);

// The grid points inside BoardRect: every multiple of the step from the origin, leaving out
// the column through an origin X of 0 and the row through an origin Y of 0 (the card's edge).
std::vector<ScreenPoint> GridPoints(const Viewport& v, const Board& b, float step);

// The read-out of a card position: "X %.2f   Y %.2f" from the origin, in mm or in inches by
// the length unit; empty for a position left of or below the card.
std::string PositionText(const Board& b, const Settings& s, double x, double y);

}  // namespace isolith
