#include "commands/Picking.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "commands/EditCommands.h"
#include "toolpath/CentringHoles.h"

namespace isolith {

namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();
constexpr int kCutoutPixels = 5;
constexpr int kEngravedPixels = 2;

// The true distance from P to the segment AB, its ends included.
double SegmentDistance(double px, double py, double ax, double ay, double bx, double by) {
  const double dx = bx - ax, dy = by - ay, length2 = dx * dx + dy * dy;
  double t = length2 > 0 ? ((px - ax) * dx + (py - ay) * dy) / length2 : 0;
  t = t < 0 ? 0 : (t > 1 ? 1 : t);
  return std::hypot(px - (ax + t * dx), py - (ay + t * dy));
}

double CentreDistance(double x, double y, double cx, double cy) {
  return std::hypot(x - cx, y - cy);
}

bool InBox(double x, double y, double cx, double cy, double halfX, double halfY) {
  return std::fabs(x - cx) <= halfX && std::fabs(y - cy) <= halfY;
}

std::string Format(const char* format, double a, double b = 0, double c = 0, double d = 0) {
  char text[160];
  std::snprintf(text, sizeof text, format, a, b, c, d);
  return text;
}

}  // namespace

TPad* PickPad(const Board& b, int layer, double x, double y) {
  if (!IsCircuitLayer(layer)) return nullptr;
  TPad* best = nullptr;
  double nearest = kFar;
  for (TPad* p = b.Pads[layer]; p; p = p->next) {
    const double halfX = b.PadSizeX[layer][p->code] / 2, halfY = b.PadSizeY[layer][p->code] / 2;
    if (!InBox(x, y, p->x, p->y, halfX, halfY)) continue;
    const double d = CentreDistance(x, y, p->x, p->y);
    if (d < nearest) nearest = d, best = p;
  }
  return best;
}

TTrack* PickTrack(const Board& b, int layer, double x, double y, double pixelSize,
                  TrackFilter filter) {
  if (!IsCircuitLayer(layer)) return nullptr;
  TTrack* best = nullptr;
  double nearest = kFar;
  for (TTrack* t = b.Tracks[layer]; t; t = t->next) {
    if ((t->flags & filter.mask) != filter.want) continue;
    // The tolerance is the full width from the axis, not half of it.
    const double tolerance =
        (t->flags & kTrackEngraved) ? kEngravedPixels * pixelSize : b.TrackWidth[layer][t->code];
    if (x < std::min(t->x1, t->x2) - tolerance || x > std::max(t->x1, t->x2) + tolerance ||
        y < std::min(t->y1, t->y2) - tolerance || y > std::max(t->y1, t->y2) + tolerance)
      continue;
    const double d = SegmentDistance(x, y, t->x1, t->y1, t->x2, t->y2);
    if (d < tolerance && d < nearest) nearest = d, best = t;
  }
  return best;
}

TDrill* PickDrill(const Board& b, double x, double y) {
  TDrill* best = nullptr;
  double nearest = kFar;
  for (TDrill* d = b.Drills; d; d = d->next) {
    const double half = b.DrillDiameter[d->code] / 2;
    if (!InBox(x, y, d->x, d->y, half, half)) continue;
    const double dist = CentreDistance(x, y, d->x, d->y);
    if (dist < nearest) nearest = dist, best = d;
  }
  return best;
}

TCutout* PickCutout(const Board& b, double x, double y, double pixelSize) {
  TCutout* best = nullptr;
  double nearest = kCutoutPixels * pixelSize;
  for (TCutout* c = b.Cutouts; c; c = c->next) {
    if (!c->outline) continue;
    for (const TXY* v = c->outline->first; v && v->next; v = v->next) {
      const double d = SegmentDistance(x, y, v->x, v->y, v->next->x, v->next->y);
      if (d < nearest) nearest = d, best = c;
    }
  }
  return best;
}

int PickCentreHole(Application& app, double x, double y) {
  const Board& b = app.board;
  const double half = CenteringHoleDiameter(app.settings, app.tools) / 2;
  int best = 0;
  double nearest = kFar;
  for (int number : {1, 3, 7, 9}) {
    float cx, cy;
    if (!CenteringHole(b, number, cx, cy) || !InBox(x, y, cx, cy, half, half)) continue;
    const double d = CentreDistance(x, y, cx, cy);
    if (d < nearest) nearest = d, best = number;
  }
  return best;
}

bool IsRectangleCommand(int id) {
  return id == cmd::CalculateHatches || id == cmd::DisableZone || id == cmd::EnableZone ||
         id == cmd::DeleteZone || id == cmd::ZoomIn;
}

bool IsPickCommand(int id) {
  switch (id) {
    case cmd::Origin:
    case cmd::ReferencePad:
    case cmd::AdjustOnReference:
    case cmd::DeleteSelectedContours:
    case cmd::AddContourSegments:
    case cmd::AddContourSegmentsSecond:
    case cmd::DeleteContourSegments:
    case cmd::DefineCopperPlane:
    case cmd::DisableCopperPlane:
    case cmd::DefineCardContour:
    case cmd::ChangeToolSide:
    case cmd::AddCuttingTabs:
    case cmd::ModifySinglePad:
    case cmd::ModifySingleTrack:
    case cmd::ThermalPad:
    case cmd::DisablePad:
    case cmd::DisableTrack:
    case cmd::DisableTrackNet:
    case cmd::DisableDrill:
    case cmd::EnablePad:
    case cmd::EnableTrack:
    case cmd::EnableTrackNet:
    case cmd::EnableDrill:
    case cmd::DeletePad:
    case cmd::DeleteTrack:
    case cmd::DeleteTrackNet:
    case cmd::DeleteDrill:
    case cmd::DeleteCardContour:
      return true;
    default:
      return false;
  }
}

bool UpdateHover(Application& app, int px, int py) {
  Board& b = app.board;
  const TPad* pad = b.HoverPad;
  const TTrack* track = b.HoverTrack;
  const TDrill* drill = b.HoverDrill;
  const TCutout* cutout = b.HoverCutout;
  const int hole = b.HoverCentreHole;
  const TPolygon* contour = b.HoverContour;
  const TXY* segment = b.HoverContourSegment;
  const TXY* vertex = b.HoverContourVertex;

  const int pending = b.PendingCommand;
  const double x = ScreenToWorldX(app.view, b, px), y = ScreenToWorldY(app.view, b, py);
  const double pixel = app.view.PixelSize;
  const int layer = b.ActiveLayer;
  const bool drills = layer == kDrillLayer, cutouts = layer == kCutoutLayer;
  if (pending == 0 || IsPickCommand(pending)) {
    b.HoverPad = nullptr;
    b.HoverTrack = nullptr;
    b.HoverDrill = nullptr;
    b.HoverCutout = nullptr;
    b.HoverCentreHole = 0;
  }
  if (b.FinalRendering) {
    // Nothing is picked in the final rendering.
  } else if (pending == 0) {
    if (drills)
      b.HoverDrill = PickDrill(b, x, y);
    else if (cutouts)
      b.HoverCutout = PickCutout(b, x, y, pixel);
    else if (!(b.HoverPad = PickPad(b, layer, x, y)))
      b.HoverTrack = PickTrack(b, layer, x, y, pixel);
  } else {
    switch (pending) {
      case cmd::Origin:
        if (drills) {
          b.HoverDrill = PickDrill(b, x, y);
        } else if (!(b.HoverPad = PickPad(b, layer, x, y)) &&
                   !(b.HoverCentreHole = PickCentreHole(app, x, y))) {
          b.HoverTrack = PickTrack(b, layer, x, y, pixel);
        }
        break;
      case cmd::ReferencePad:
      case cmd::ModifySinglePad:
      case cmd::ThermalPad:
      case cmd::DisablePad:
      case cmd::EnablePad:
      case cmd::DeletePad:
        b.HoverPad = PickPad(b, layer, x, y);
        break;
      case cmd::AdjustOnReference:
        if (drills)
          b.HoverDrill = PickDrill(b, x, y);
        else
          b.HoverPad = PickPad(b, layer, x, y);
        break;
      // The drill picks of the editing commands, which would otherwise never find their item.
      case cmd::DisableDrill:
      case cmd::EnableDrill:
      case cmd::DeleteDrill:
        b.HoverDrill = PickDrill(b, x, y);
        break;
      case cmd::DeleteSelectedContours:
      case cmd::AddContourSegments:
      case cmd::DeleteContourSegments:
        ContourHover(app, pending, static_cast<float>(x), static_cast<float>(y),
                     static_cast<float>(1 / pixel));
        break;
      case cmd::DefineCopperPlane:
        b.HoverTrack = PickTrack(b, layer, x, y, pixel, {kTrackCopperPlane, 0});
        break;
      case cmd::DisableCopperPlane:
        b.HoverTrack = PickTrack(b, layer, x, y, pixel, {kTrackCopperPlane, kTrackCopperPlane});
        break;
      case cmd::DisableTrack:
      case cmd::DisableTrackNet:
        b.HoverTrack = PickTrack(b, layer, x, y, pixel, {kTrackDisabled, 0});
        break;
      case cmd::EnableTrack:
      case cmd::EnableTrackNet:
        b.HoverTrack = PickTrack(b, layer, x, y, pixel, {kTrackDisabled, kTrackDisabled});
        break;
      case cmd::DefineCardContour:
      case cmd::ModifySingleTrack:
      case cmd::DeleteTrack:
      case cmd::DeleteTrackNet:
        b.HoverTrack = PickTrack(b, layer, x, y, pixel);
        break;
      case cmd::ChangeToolSide:
      case cmd::DeleteCardContour:
        if (cutouts) b.HoverCutout = PickCutout(b, x, y, pixel);
        break;
      default:
        break;
    }
  }
  return pad != b.HoverPad || track != b.HoverTrack || drill != b.HoverDrill ||
         cutout != b.HoverCutout || hole != b.HoverCentreHole || contour != b.HoverContour ||
         segment != b.HoverContourSegment || vertex != b.HoverContourVertex;
}

std::string HoverHint(const Application& app) {
  const Board& b = app.board;
  const int layer = b.ActiveLayer;
  const auto position = [&b](double x, double y) {
    return Format("Position  X%.2f / Y%.2f", x - b.OriginX, y - b.OriginY);
  };
  if (b.HoverPad && IsCircuitLayer(layer)) {
    const TPad& p = *b.HoverPad;
    const uint8_t shape = b.PadShape[layer][p.code];
    const float sx = b.PadSizeX[layer][p.code], sy = b.PadSizeY[layer][p.code];
    std::string text = shape == kShapeRectangle || shape == kShapeObround
                           ? Format("Pad  %.2f \xC3\x97 %.2f", sx, sy)
                           : Format("Pad  \xC3\x98 %.2f", sx);
    if (p.flags & kPadThermal) text += " thermal";
    for (const TDrill* d = b.Drills; d; d = d->next)
      if (std::fabs(d->x - p.x) <= 0.001 && std::fabs(d->y - p.y) <= 0.001) {
        text += Format("  /  Drill \xC3\x98 %.2f", b.DrillDiameter[d->code]);
        break;
      }
    return text + "\n" + position(p.x, p.y);
  }
  if (b.HoverTrack && IsCircuitLayer(layer)) {
    const TTrack& t = *b.HoverTrack;
    const std::string first = (t.flags & kTrackEngraved)
                                  ? std::string("Line")
                                  : Format("Track  \xC3\x98 %.2f", b.TrackWidth[layer][t.code]);
    return first + "\n" +
           Format("Position  X%.2f / Y%.2f  ---  X%.2f / Y%.2f", t.x1 - b.OriginX, t.y1 - b.OriginY,
                  t.x2 - b.OriginX, t.y2 - b.OriginY);
  }
  if (b.HoverDrill) {
    const TDrill& d = *b.HoverDrill;
    return Format("Drill  \xC3\x98 %.2f", b.DrillDiameter[d.code]) + "\n" + position(d.x, d.y);
  }
  if (b.HoverCentreHole) {
    float x, y;
    if (CenteringHole(b, b.HoverCentreHole, x, y)) return position(x, y);
  }
  return {};
}

}  // namespace isolith
