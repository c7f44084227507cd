#include "import/modern/ModernGerberReader.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "import/modern/ApertureSlots.h"
#include "import/modern/GerberImage.h"
#include "import/modern/RegionFill.h"

namespace isolith {

namespace {

using Outlines = std::vector<Outline>;

// Share of a macro's box that its figure covers, from a grid of samples; later off primitives
// clear what earlier on ones drew.
double BoxCover(const std::vector<MacroShape>& shapes, double xmin, double ymin, double xmax,
                double ymax) {
  constexpr int kSamples = 24;
  int covered = 0;
  for (int i = 0; i < kSamples; ++i)
    for (int j = 0; j < kSamples; ++j) {
      const OutlinePoint p{xmin + (xmax - xmin) * (i + 0.5) / kSamples,
                           ymin + (ymax - ymin) * (j + 0.5) / kSamples};
      bool in = false;
      for (const MacroShape& s : shapes)
        if (InsideOutlines(s.outlines, p)) in = s.on;
      covered += in;
    }
  return double(covered) / (kSamples * kSamples);
}

bool AxisRectangle(const Outline& o) {
  if (o.size() != 4) return false;
  for (size_t i = 0; i < 4; ++i) {
    const OutlinePoint& a = o[i];
    const OutlinePoint& b = o[(i + 1) % 4];
    if (std::fabs(a.x - b.x) > 1e-6 && std::fabs(a.y - b.y) > 1e-6) return false;
  }
  return true;
}

struct Emitter {
  Board& board;
  int layer;
  ApertureSlots slots;
  double tolerance;
  TPad* padTail = nullptr;
  TTrack* trackTail = nullptr;
  TDrill* drillTail = nullptr;

  void PadAt(OutlinePoint p, uint8_t shape, double sx, double sy, double hole) {
    if (sx <= 0 || sy <= 0) return;
    TPad* pad = new TPad;
    pad->code = slots.Pad(shape, sx, sy, hole);
    pad->x = float(p.x);
    pad->y = float(p.y);
    AppendTo(board.ImportPads, padTail, pad);
    if (layer == 0 && hole > 0) {
      TDrill* d = new TDrill;
      d->code = pad->code;
      d->x = pad->x;
      d->y = pad->y;
      AppendTo(board.ImportDrills, drillTail, d);
    }
  }

  void TrackFrom(OutlinePoint a, OutlinePoint b, double width) {
    if (width <= 0) return;
    TTrack* t = new TTrack;
    t->code = slots.Track(width);
    t->x1 = float(a.x);
    t->y1 = float(a.y);
    t->x2 = float(b.x);
    t->y2 = float(b.y);
    AppendTo(board.ImportTracks, trackTail, t);
  }

  void Fill(const Outlines& region, const std::vector<const Outlines*>& cleared) {
    for (const FillStroke& s : FillRegion(region, cleared)) TrackFrom(s.a, s.b, s.width);
  }

  // A macro flash: one pad when a single shape fits its figure, else a pad or a filled area for
  // each primitive that exposes.
  void MacroFlash(const ImageAperture& a, OutlinePoint at,
                  const std::vector<const Outlines*>& cleared) {
    double xmin = 1e300, ymin = 1e300, xmax = -1e300, ymax = -1e300;
    int on = 0;
    for (const MacroShape& s : a.shapes) {
      if (!s.on) continue;
      ++on;
      for (const Outline& o : s.outlines)
        for (const OutlinePoint& p : o) {
          xmin = std::min(xmin, p.x);
          xmax = std::max(xmax, p.x);
          ymin = std::min(ymin, p.y);
          ymax = std::max(ymax, p.y);
        }
    }
    if (on == 0) return;
    const OutlinePoint centre{at.x + (xmin + xmax) / 2, at.y + (ymin + ymax) / 2};
    const double w = xmax - xmin, h = ymax - ymin;
    if (on == 1 && a.shapes.size() == 1) {
      const MacroShape& s = a.shapes[0];
      if (s.circle)
        return PadAt({at.x + s.centre.x, at.y + s.centre.y}, kShapeCircle, s.diameter, s.diameter,
                     0);
      if (s.outlines.size() == 1 && s.outlines[0].size() == 8 &&
          std::fabs(w - h) < 1e-3 * std::max(w, 1.0)) {
        // A regular octagon: its size is the diameter through its corners.
        double radius = 0;
        for (const OutlinePoint& p : s.outlines[0])
          radius = std::max(radius, std::hypot(p.x - (xmin + xmax) / 2, p.y - (ymin + ymax) / 2));
        return PadAt(centre, kShapeOctagon, 2 * radius, 2 * radius, 0);
      }
    }
    if (BoxCover(a.shapes, xmin, ymin, xmax, ymax) >= 0.97)
      return PadAt(centre, kShapeRectangle, w, h, 0);
    for (const MacroShape& s : a.shapes) {
      if (!s.on) continue;
      if (s.circle) {
        PadAt({at.x + s.centre.x, at.y + s.centre.y}, kShapeCircle, s.diameter, s.diameter, 0);
      } else if (s.outlines.size() == 1 && AxisRectangle(s.outlines[0])) {
        const Outline& o = s.outlines[0];
        const double rx = std::fabs(o[2].x - o[0].x), ry = std::fabs(o[2].y - o[0].y);
        PadAt({at.x + (o[0].x + o[2].x) / 2, at.y + (o[0].y + o[2].y) / 2}, kShapeRectangle, rx, ry,
              0);
      } else {
        Outlines placed = s.outlines;
        for (Outline& o : placed)
          for (OutlinePoint& p : o) p = {p.x + at.x, p.y + at.y};
        Fill(placed, cleared);
      }
    }
  }

  void Flash(const ImageAperture& a, OutlinePoint at, const std::vector<const Outlines*>& cleared) {
    using Kind = ImageAperture::Kind;
    switch (a.kind) {
      case Kind::Circle:
        return PadAt(at, kShapeCircle, a.sizeX, a.sizeX, a.hole);
      case Kind::Rectangle:
        return PadAt(at, kShapeRectangle, a.sizeX, a.sizeY, a.hole);
      case Kind::Obround:
        return PadAt(at, kShapeObround, a.sizeX, a.sizeY, a.hole);
      case Kind::Polygon:
        if (a.vertices >= 8)
          return PadAt(at, a.vertices == 8 ? kShapeOctagon : kShapeCircle, a.sizeX, a.sizeX,
                       a.hole);
        {
          Outline o;
          const int n = std::max(3, a.vertices);
          for (int i = 0; i < n; ++i) {
            const double t = a.rotation * std::numbers::pi / 180 + 2 * std::numbers::pi * i / n;
            o.push_back({at.x + a.sizeX / 2 * std::cos(t), at.y + a.sizeX / 2 * std::sin(t)});
          }
          return Fill({o}, cleared);
        }
      case Kind::Macro:
        return MacroFlash(a, at, cleared);
    }
  }
};

// The stroke width of an aperture drawn with: its diameter, or the narrower side.
double StrokeWidth(const ImageAperture& a) {
  if (a.kind == ImageAperture::Kind::Rectangle || a.kind == ImageAperture::Kind::Obround)
    return std::min(a.sizeX, a.sizeY);
  return a.sizeX;
}

// The area an object clears when it is drawn with clear polarity.
Outlines ClearedArea(const ImageObject& o, const GerberImage& image, double tolerance) {
  if (o.kind == ImageObject::Kind::Region) return o.outlines;
  const auto found = image.apertures.find(o.aperture);
  if (found == image.apertures.end()) return {};
  const ImageAperture& a = found->second;
  if (o.kind == ImageObject::Kind::Stroke)
    return {StrokeOutline(o.a, o.b, StrokeWidth(a), tolerance)};
  switch (a.kind) {
    case ImageAperture::Kind::Rectangle:
      return {RectangleOutline(o.a, a.sizeX, a.sizeY)};
    case ImageAperture::Kind::Obround:
      return {ObroundOutline(o.a, a.sizeX, a.sizeY, tolerance)};
    case ImageAperture::Kind::Macro: {
      Outlines all;
      for (const MacroShape& s : a.shapes)
        for (const Outline& c : s.outlines) {
          Outline placed = c;
          for (OutlinePoint& p : placed) p = {p.x + o.a.x, p.y + o.a.y};
          all.push_back(std::move(placed));
        }
      return all;
    }
    default:
      return {CircleOutline(o.a, a.sizeX, tolerance)};
  }
}

}  // namespace

void ReadModernGerber(std::istream& file, const TImportFormat& format, int layer,
                      double arcTolerance, Board& b) {
  if (layer < 0 || layer >= kCircuitLayers) return;
  ImageScales scales;
  scales.coordinates = format.ScaleIn;
  scales.apertures = format.AperScaleIn;
  scales.holes = format.DrillScaleIn;
  scales.tolerance = arcTolerance > 0 ? arcTolerance : 0.01;
  const GerberImage image = ReadGerberImage(file, scales);

  // Every clear object, in file order, as the area it takes away from the regions before it.
  std::vector<std::pair<size_t, Outlines>> clears;
  for (size_t i = 0; i < image.objects.size(); ++i)
    if (image.objects[i].clear)
      clears.push_back({i, ClearedArea(image.objects[i], image, scales.tolerance)});
  auto clearedAfter = [&](size_t index) {
    std::vector<const Outlines*> after;
    for (const auto& [at, area] : clears)
      if (at > index) after.push_back(&area);
    return after;
  };

  Emitter e{b, layer, ApertureSlots(b, layer), scales.tolerance};
  e.padTail = LastOf(b.ImportPads);
  e.trackTail = LastOf(b.ImportTracks);
  e.drillTail = LastOf(b.ImportDrills);
  for (size_t i = 0; i < image.objects.size() && !b.StopImport; ++i) {
    const ImageObject& o = image.objects[i];
    if (o.clear) continue;
    if (o.kind == ImageObject::Kind::Region) {
      e.Fill(o.outlines, clearedAfter(i));
      continue;
    }
    const auto found = image.apertures.find(o.aperture);
    if (found == image.apertures.end()) continue;
    // A stroke that does not move is a dot of the aperture's shape: a pad, as a flash is.
    const bool dot = o.kind == ImageObject::Kind::Stroke && o.a.x == o.b.x && o.a.y == o.b.y;
    if (o.kind == ImageObject::Kind::Flash || dot)
      e.Flash(found->second, o.a, clearedAfter(i));
    else
      e.TrackFrom(o.a, o.b, StrokeWidth(found->second));
  }
}

}  // namespace isolith
