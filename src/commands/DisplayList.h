// The picture of the job as a list of drawing orders in pixels: what to draw, in which colour,
// at which width and in which order. One repaint function builds it from the model, in the two
// forms of the display (the working view, and the final rendering that shows what the tools
// leave); the window only paints the list. It also sets the marks the enabling rules read.
#pragma once

#include <cstdint>
#include <vector>

#include "commands/Application.h"

namespace isolith {

// How much a repaint redoes.
enum RepaintDepth : int {
  kRepaintFull = 0,   // the client area, the fit of the view, the card, grid and items
  kRepaintBoard = 1,  // the card, grid and items
  kRepaintPaths = 2,  // the items above the traces: calculated paths, drills, overlays
};

// The steps of a repaint, in the order they are drawn.
enum class DrawStep : uint8_t {
  Client,        // the area round the card and its frame
  Card,          // the card and its frame
  Grid,          // the visual grid
  CardContours,  // cut paths and card outlines under the traces (cutout layer not active)
  OtherLayers,   // the inactive circuit layers
  ActiveTracks,  // the active circuit layer's tracks
  ActivePads,    // and its pads
  Hatches,
  Contours,
  Drills,
  FinalCut,     // final rendering: the card's cut at the cutter's double width, the frame
  CutoutLayer,  // the cutout layer when it is the active one
  Overlays,     // reference pad and the items under the mouse
  Origin,
  CentreHoles,
};

enum class DrawShape : uint8_t {
  FillRect,   // two points: opposite corners, both inside
  FrameRect,  // the same, outlined one pixel wide
  Clip,       // the same: what follows stays inside it, until Unclip
  Unclip,
  Points,    // single pixels
  Polyline,  // `width` pixels wide, round ends and joints
  Polygon,   // filled
  Disc,      // one point, the centre; filled, of `radius`
  Circle,    // one point, the centre; outlined `width` wide, of `radius`
};

struct DrawItem {
  DrawStep step;
  DrawShape shape;
  uint8_t style = 0;    // lines: 0 solid, 1 dotted
  uint32_t colour = 0;  // 0x00BBGGRR; 1 is the system's window colour
  int width = 1;
  int radius = 0;
  int first = 0;  // the item's points in DisplayList::points
  int count = 0;
};

struct DisplayList {
  std::vector<DrawItem> items;
  std::vector<ScreenPoint> points;

  void Clear() {
    items.clear();
    points.clear();
  }
  const ScreenPoint* PointsOf(const DrawItem& item) const { return points.data() + item.first; }
};

// The repaint: the bookkeeping of every repaint (LayerCount, RefPad), the fit of `app.view` at
// depth 0 (`newScale` asks for a new scale; its ClientRect must be set), then the picture into
// `out`. In final rendering the depth is 0 and the pending command ends. `app.drawn` is set
// from what was drawn on the active layer. A circle or octagon pad whose table sizes differ
// gets its Y size set to its X size, as drawing it always has.
void BuildDisplayList(Application& app, int depth, bool newScale, DisplayList& out);

}  // namespace isolith
