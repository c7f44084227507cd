#include "commands/DisplayList.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "params/ToolLibrary.h"
#include "toolpath/TrackNets.h"

namespace isolith {

namespace {

constexpr double kEdgeTolerance = 0.001;
constexpr float kNoToolWidth = 0.5f;  // the width of a path whose tool is unknown, in mm
constexpr float kNoPlotWidth = 1.0f;  // a centering hole without a tool, in mm
constexpr int kOriginArm = 30, kOriginRing = 15, kVertexRing = 4;
constexpr double kOctagonCorner = 0.92, kOctagonSide = 0.41;

// What one repaint works with: the model, the scale, the colours, the list it fills.
struct Painter {
  Application& app;
  Board& b;
  const Settings& s;
  const Viewport& v;
  DisplayList& out;
  bool final;
  DrawStep step = DrawStep::Client;

  int X(double x) const { return WorldToScreenX(v, b, x); }
  int Y(double y) const { return WorldToScreenY(v, b, y); }
  int Pixels(double mm) const { return static_cast<int>(mm / v.PixelSize); }

  DrawItem& Add(DrawShape shape, uint32_t colour, int width = 1, int radius = 0) {
    DrawItem item{step, shape};
    item.colour = colour;
    item.width = width;
    item.radius = radius;
    item.first = static_cast<int>(out.points.size());
    out.items.push_back(item);
    return out.items.back();
  }
  void Point(DrawItem& item, int x, int y) {
    out.points.push_back({x, y});
    ++item.count;
  }
  void Rect(DrawShape shape, uint32_t colour, int left, int top, int right, int bottom) {
    DrawItem& item = Add(shape, colour);
    Point(item, left, top);
    Point(item, right, bottom);
  }
  void WorldRect(uint32_t colour, double x1, double y1, double x2, double y2) {
    Rect(DrawShape::FillRect, colour, X(x1), Y(y2), X(x2), Y(y1));
  }
  void Disc(uint32_t colour, double x, double y, double radius) {
    Point(Add(DrawShape::Disc, colour, 1, Pixels(radius)), X(x), Y(y));
  }
  void Circle(uint32_t colour, int x, int y, int radius, int width = 1) {
    Point(Add(DrawShape::Circle, colour, width, radius), x, y);
  }
  void Line(uint32_t colour, int width, int x1, int y1, int x2, int y2) {
    DrawItem& item = Add(DrawShape::Polyline, colour, width);
    Point(item, x1, y1);
    Point(item, x2, y2);
  }
  void Path(const TPolygon& path, uint32_t colour, int width, uint8_t style = 0) {
    // Only points are added meanwhile: the item stays where it is.
    DrawItem& item = Add(DrawShape::Polyline, colour, width);
    item.style = style;
    for (const TXY* p = path.first; p; p = p->next) Point(item, X(p->x), Y(p->y));
  }
  // The width of a tool at a depth in mm; the fallback when none is chosen or it cuts nothing.
  float ToolWidth(int tool, float depth, float fallback) {
    const float w = ToolCutWidthByIndex(app.tools, tool, depth, fallback);
    return w > 0 ? w : fallback;
  }
};

void DrawPad(Painter& p, int layer, const TPad& pad, uint32_t colour) {
  Board& b = p.b;
  const int code = pad.code;
  const uint8_t shape = b.PadShape[layer][code];
  float& sizeY = b.PadSizeY[layer][code];
  const float sizeX = b.PadSizeX[layer][code];
  if ((shape == kShapeCircle || shape == kShapeOctagon) && sizeY != sizeX) sizeY = sizeX;
  const double hx = sizeX / 2.0, hy = sizeY / 2.0, x = pad.x, y = pad.y;
  switch (shape) {
    case kShapeCircle:
      p.Disc(colour, x, y, hx);
      break;
    case kShapeObround:
      if (sizeX <= sizeY) {
        p.WorldRect(colour, x - hx, y - hy + hx, x + hx, y + hy - hx);
        p.Disc(colour, x, y - hy + hx, hx);
        p.Disc(colour, x, y + hy - hx, hx);
      } else {
        p.WorldRect(colour, x - hx + hy, y - hy, x + hx - hy, y + hy);
        p.Disc(colour, x - hx + hy, y, hy);
        p.Disc(colour, x + hx - hy, y, hy);
      }
      break;
    case kShapeOctagon: {
      const double a = hx * kOctagonCorner, c = a * kOctagonSide;
      const double corners[8][2] = {{a, c},   {c, a},   {-c, a}, {-a, c},
                                    {-a, -c}, {-c, -a}, {c, -a}, {a, -c}};
      DrawItem& item = p.Add(DrawShape::Polygon, colour);
      for (const auto& k : corners) p.Point(item, p.X(x + k[0]), p.Y(y + k[1]));
      break;
    }
    default:  // kShapeRectangle, and any other code a file may carry
      p.WorldRect(colour, x - hx, y - hy, x + hx, y + hy);
      break;
  }
  if (TestFlags(pad, kPadThermal)) {
    // Two bars of the card's colour across the pad, one pixel short at the top and left.
    const uint32_t card = p.final ? p.s.BoardFinalBg : p.s.BoardBackground;
    const int left = p.X(x - hx), right = p.X(x + hx), top = p.Y(y + hy), bottom = p.Y(y - hy);
    p.Rect(DrawShape::FillRect, card, p.X(x - sizeX / 10.0), top + 1, p.X(x + sizeX / 10.0),
           bottom);
    p.Rect(DrawShape::FillRect, card, left + 1, p.Y(y + sizeY / 10.0), right,
           p.Y(y - sizeY / 10.0));
  }
}

void DrawTrack(Painter& p, int layer, const TTrack& t, uint32_t colour) {
  const int width =
      TestFlags(t, kTrackEngraved) ? 1 : std::max(1, p.Pixels(p.b.TrackWidth[layer][t.code]));
  p.Line(colour, width, p.X(t.x1), p.Y(t.y1), p.X(t.x2), p.Y(t.y2));
}

// The cut paths of the card contours with the cutter's ends, then their outlines.
void DrawCutouts(Painter& p, uint32_t pathColour, uint32_t outlineColour) {
  const Settings& s = p.s;
  const int r =
      s.CuttingTool >= 0 ? p.Pixels(p.ToolWidth(s.CuttingTool, s.CuttingDepth, 0) / 2) : -1;
  for (const TCutout* c = p.b.Cutouts; c; c = c->next) {
    for (const TPolygon* path = c->paths; path; path = path->next) {
      p.Path(*path, pathColour, 1);
      if (r < 0 || !path->first) continue;
      const TXY* last = LastOf(path->first);
      p.Circle(pathColour, p.X(path->first->x), p.Y(path->first->y), r);
      p.Circle(pathColour, p.X(last->x), p.Y(last->y), r);
    }
  }
  for (const TCutout* c = p.b.Cutouts; c; c = c->next)
    if (c->outline) p.Path(*c->outline, c == p.b.HoverCutout ? s.BoardSelect : outlineColour, 3);
}

void DrawLayers(Painter& p) {
  Board& b = p.b;
  const Settings& s = p.s;
  DrawnMarks& drawn = p.app.drawn;
  if (b.ActiveLayer != kCutoutLayer) {
    p.step = DrawStep::CardContours;
    DrawCutouts(p, s.BoardDrill, s.BoardDrill);
  }
  p.step = DrawStep::OtherLayers;
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (layer == b.ActiveLayer) continue;
    for (const TTrack* t = b.Tracks[layer]; t; t = t->next) DrawTrack(p, layer, *t, s.BoardTrace2);
    for (const TPad* q = b.Pads[layer]; q; q = q->next) DrawPad(p, layer, *q, s.BoardTrace2);
  }
  const int layer = b.ActiveLayer;
  if (!IsCircuitLayer(layer)) return;
  p.step = DrawStep::ActiveTracks;
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
    uint32_t colour = s.BoardTrace1;
    if (TestFlags(*t, kTrackDisabled)) {
      colour = s.BoardTrace3;
      drawn.disabledTrack = true;
    } else if (TestFlags(*t, kTrackCopperPlane)) {
      colour = s.BoardTrace3;
      drawn.copperPlane = true;
    } else if (TestFlags(*t, kTrackEngraved)) {
      colour = s.BoardThinLines;
      drawn.engravedTrack = true;
    }
    DrawTrack(p, layer, *t, colour);
  }
  p.step = DrawStep::ActivePads;
  for (const TPad* q = b.Pads[layer]; q; q = q->next) {
    const bool disabled = TestFlags(*q, kPadDisabled | kPadExcluded);
    if (disabled) drawn.disabledPad = true;
    DrawPad(p, layer, *q, disabled ? s.BoardTrace3 : s.BoardTrace1);
  }
}

void DrawPaths(Painter& p) {
  Board& b = p.b;
  const Settings& s = p.s;
  const int layer = b.ActiveLayer;
  if (!IsCircuitLayer(layer)) return;
  int hatchWidth = 1, contourWidth = 1;
  if (p.final) {
    hatchWidth = p.Pixels(p.ToolWidth(s.HatchingTool, s.HatchingDepth, kNoToolWidth)) + 1;
    contourWidth = p.Pixels(p.ToolWidth(s.MillingTool, s.MillingDepth, kNoToolWidth)) + 1;
  }
  p.step = DrawStep::Hatches;
  for (const TPolygon* h = b.Hatches[layer]; h; h = h->next)
    p.Path(*h, p.final ? s.BoardFinalFg : s.BoardHatch, hatchWidth);
  p.step = DrawStep::Contours;
  for (const TPolygon* c = b.Contours[layer]; c; c = c->next)
    p.Path(*c, p.final ? s.BoardFinalFg : s.BoardContour, contourWidth);
}

void DrawDrills(Painter& p) {
  p.step = DrawStep::Drills;
  for (const TDrill* d = p.b.Drills; d; d = d->next) {
    uint32_t colour = p.final ? p.s.BoardFinalHole : p.s.BoardDrill;
    if (TestFlags(*d, kDrillDisabled)) {
      if (p.final) continue;
      colour = p.s.BoardTrace3;
      p.app.drawn.disabledDrill = true;
    }
    p.Disc(colour, d->x, d->y, p.b.DrillDiameter[d->code] / 2.0);
  }
}

void DrawFinalCut(Painter& p) {
  p.step = DrawStep::FinalCut;
  const Settings& s = p.s;
  const int width =
      std::max(1, 2 * p.Pixels(p.ToolWidth(s.CuttingTool, s.CuttingDepth, kNoToolWidth)));
  for (const TCutout* c = p.b.Cutouts; c; c = c->next)
    for (const TPolygon* path = c->paths; path; path = path->next)
      p.Path(*path, s.BoardFinalHole, width);
  const PixelRect& r = p.v.BoardRect;
  p.Rect(DrawShape::FrameRect, s.BoardBorder, r.left, r.top, r.right, r.bottom);
}

void DrawCutoutLayer(Painter& p) {
  p.step = DrawStep::CutoutLayer;
  DrawCutouts(p, p.s.BoardContour, p.s.BoardTrace1);
  for (const TCutout* c = p.b.Cutouts; c; c = c->next)
    if (c->outline) p.Path(*c->outline, p.s.BoardDrill, 1, 1);
}

// The pads and tracks joined to `pad` on every circuit layer: those of the other layers in
// `BoardConnect2`, then those of the active layer in `BoardConnect1`.
void DrawNet(Painter& p, int layer, TPad& pad) {
  Board& b = p.b;
  ClearNetMarks(b);
  TracePad(b, layer, &pad);
  for (const bool active : {false, true}) {
    const uint32_t colour = active ? p.s.BoardConnect1 : p.s.BoardConnect2;
    for (int l = 0; l < kCircuitLayers; ++l) {
      if ((l == layer) != active) continue;
      for (const TTrack* t = b.Tracks[l]; t; t = t->next)
        if (TestFlags(*t, kVisited)) DrawTrack(p, l, *t, colour);
      for (const TPad* q = b.Pads[l]; q; q = q->next)
        if (TestFlags(*q, kVisited)) DrawPad(p, l, *q, colour);
    }
  }
  ClearNetMarks(b);
}

// The reference pad and what the mouse points at: the hooks of picking.
void DrawOverlays(Painter& p) {
  p.step = DrawStep::Overlays;
  Board& b = p.b;
  const Settings& s = p.s;
  if (b.RefPad && IsCircuitLayer(b.RefLayer)) DrawPad(p, b.RefLayer, *b.RefPad, s.BoardRefPad);
  const int layer = b.ActiveLayer;
  if (IsCircuitLayer(layer)) {
    // A pad pointed at with no command pending shows its whole net first.
    if (b.HoverPad && b.PendingCommand == 0) DrawNet(p, layer, *b.HoverPad);
    if (b.HighlightPadCode >= 0)
      for (const TPad* q = b.Pads[layer]; q; q = q->next)
        if (q->code == b.HighlightPadCode) DrawPad(p, layer, *q, s.BoardSelect);
    if (b.HighlightTrackCode >= 0)
      for (const TTrack* t = b.Tracks[layer]; t; t = t->next)
        if (t->code == b.HighlightTrackCode) DrawTrack(p, layer, *t, s.BoardSelect);
    if (b.HoverPad) DrawPad(p, layer, *b.HoverPad, s.BoardSelect);
    if (b.HoverTrack) DrawTrack(p, layer, *b.HoverTrack, s.BoardSelect);
  }
  if (b.HoverContour) p.Path(*b.HoverContour, s.BoardSelect, 2);
  if (b.HighlightPath) p.Path(*b.HighlightPath, s.BoardSelect, 3);
  if (const TXY* a = b.HoverContourSegment; a && a->next)
    p.Line(s.BoardSelect, 3, p.X(a->x), p.Y(a->y), p.X(a->next->x), p.Y(a->next->y));
  if (const TXY* a = b.HoverContourVertex; a && b.PendingCommand != cmd::AddContourSegmentsSecond)
    p.Circle(s.BoardSelect, p.X(a->x), p.Y(a->y), kVertexRing);
}

void DrawOrigin(Painter& p) {
  const Board& b = p.b;
  if (b.OriginX < -kEdgeTolerance || b.OriginY < -kEdgeTolerance ||
      b.OriginX > b.CardWidth + kEdgeTolerance || b.OriginY > b.CardHeight + kEdgeTolerance)
    return;
  p.step = DrawStep::Origin;
  const int x = p.X(b.OriginX), y = p.Y(b.OriginY);
  for (const auto& [colour, width] :
       {std::pair{p.s.BoardBackground, 3}, std::pair{p.s.BoardOrigin, 1}}) {
    p.Line(colour, width, x - kOriginArm, y, x + kOriginArm, y);
    p.Line(colour, width, x, y - kOriginArm, x, y + kOriginArm);
    p.Circle(colour, x, y, kOriginRing, width);
  }
}

void DrawCentreHoles(Painter& p) {
  const Board& b = p.b;
  const Settings& s = p.s;
  if (!IsSet(b.CentreHole1X)) return;
  p.step = DrawStep::CentreHoles;
  const int r = p.Pixels(p.ToolWidth(s.PlottingTool, s.PlottingDepth, kNoPlotWidth) / 2);
  auto hole = [&](int number, float x, float y) {
    const int cx = p.X(x), cy = p.Y(y);
    if (!p.final) p.Circle(s.BoardSelect, cx, cy, r + 1);
    p.Point(
        p.Add(DrawShape::Disc, b.HoverCentreHole == number ? s.BoardSelect : s.BoardDrill, 1, r),
        cx, cy);
  };
  hole(1, b.CentreHole1X, b.CentreHole1Y);
  if (!IsSet(b.CentreHole2X)) return;
  hole(9, b.CentreHole2X, b.CentreHole2Y);
  if (std::abs(b.CentreHole2X - b.CentreHole1X) >= kEdgeTolerance &&
      std::abs(b.CentreHole2Y - b.CentreHole1Y) >= kEdgeTolerance) {
    hole(3, b.CentreHole2X, b.CentreHole1Y);
    hole(7, b.CentreHole1X, b.CentreHole2Y);
  }
}

}  // namespace

void BuildDisplayList(Application& app, int depth, bool newScale, DisplayList& out) {
  Board& b = app.board;
  const Settings& s = app.settings;
  Viewport& v = app.view;
  out.Clear();
  if (b.FinalRendering) {
    depth = kRepaintFull;
    b.PendingCommand = 0;
  }
  RepaintBookkeeping(b);
  Painter p{app, b, s, v, out, b.FinalRendering};
  if (depth == kRepaintFull) {
    const PixelRect& c = v.ClientRect;
    p.Rect(DrawShape::FillRect, s.ClientBackground, c.left, c.top, c.right, c.bottom);
    p.Rect(DrawShape::FrameRect, s.ClientBorder, c.left, c.top, c.right, c.bottom);
    FitView(v, b, newScale);
  }
  const PixelRect& r = v.BoardRect;
  // The board's right and bottom edges are pixels of the picture too.
  p.Rect(DrawShape::Clip, 0, r.left, r.top, r.right, r.bottom);
  // Only what is drawn again is counted again.
  DrawnMarks& drawn = app.drawn;
  drawn.disabledDrill = false;
  if (depth < kRepaintPaths) {
    drawn.disabledPad = drawn.disabledTrack = drawn.copperPlane = drawn.engravedTrack = false;
    p.step = DrawStep::Card;
    p.Rect(DrawShape::FillRect, p.final ? s.BoardFinalBg : s.BoardBackground, r.left, r.top,
           r.right, r.bottom);
    p.Rect(DrawShape::FrameRect, s.BoardBorder, r.left, r.top, r.right, r.bottom);
    if (s.ShowGrid && !p.final) {
      p.step = DrawStep::Grid;
      v.GridStep = GridStepFor(v.PixelSize);
      DrawItem& grid = p.Add(DrawShape::Points, s.BoardGrid);
      for (const ScreenPoint& q : GridPoints(v, b, v.GridStep)) p.Point(grid, q.x, q.y);
    }
    if (!p.final) DrawLayers(p);
  }
  DrawPaths(p);
  DrawDrills(p);
  if (p.final) {
    DrawFinalCut(p);
  } else {
    if (b.ActiveLayer == kCutoutLayer) DrawCutoutLayer(p);
    DrawOverlays(p);
    DrawOrigin(p);
  }
  DrawCentreHoles(p);
  p.step = DrawStep::CentreHoles;
  p.Add(DrawShape::Unclip, 0);
}

}  // namespace isolith
