#include "toolpath/ContourDraft.h"

#include <cmath>

#include "core/board/BoardOps.h"
#include "toolpath/SegmentList.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

// A pen that draws chords from its current point.
struct Pen {
  SegmentBuilder& out;
  float x = 0, y = 0;
  void MoveTo(float nx, float ny) {
    x = nx;
    y = ny;
  }
  // A chord to the point, drawn unless `skip`; the pen moves either way.
  void LineTo(float nx, float ny, bool skip = false) {
    if (!skip) out.Add(x, y, nx, ny);
    MoveTo(nx, ny);
  }
  // A chord to the point at angle `a` round (cx, cy).
  void ArcTo(float cx, float cy, float r, float a, bool skip = false) {
    float nx, ny;
    PolarPoint(cx, cy, r, a, nx, ny);
    LineTo(nx, ny, skip);
  }
};

float SixteenthAngle(int i) {
  return static_cast<float>(i * double(SixteenthPi));
}

void CircleDraft(Pen& pen, float x, float y, float r, bool thermal) {
  pen.MoveTo(x + r, y);
  for (int i = 1; i <= 32; ++i) {
    int m = i % 8;
    pen.ArcTo(x, y, r, SixteenthAngle(i), thermal && (m == 0 || m == 1 || m == 2 || m == 7));
  }
}

void RectangleDraft(Pen& pen, float x, float y, float hx, float hy, bool thermal) {
  const float l = x - hx, r = x + hx, bo = y - hy, t = y + hy;
  if (!thermal) {
    pen.MoveTo(r, t);
    pen.LineTo(l, t);
    pen.LineTo(l, bo);
    pen.LineTo(r, bo);
    pen.LineTo(r, t);
    return;
  }
  // Each side in two pieces, leaving a centred gap for the bridge.
  const float gx = static_cast<float>(0.4 * hx), gy = static_cast<float>(0.4 * hy);
  pen.out.Add(r, t, x + gx, t);
  pen.out.Add(x - gx, t, l, t);
  pen.out.Add(l, t, l, y + gy);
  pen.out.Add(l, y - gy, l, bo);
  pen.out.Add(l, bo, x - gx, bo);
  pen.out.Add(x + gx, bo, r, bo);
  pen.out.Add(r, bo, r, y - gy);
  pen.out.Add(r, y + gy, r, t);
}

void TallObroundDraft(Pen& pen, float x, float y, float hx, float hy, bool thermal) {
  const float top = y + hy - hx, bottom = y - hy + hx;
  pen.MoveTo(x + hx, top);
  for (int i = 1; i <= 16; ++i)
    pen.ArcTo(x, top, hx, SixteenthAngle(i), thermal && i >= 7 && i <= 10);
  if (thermal) {
    pen.LineTo(pen.x, static_cast<float>(y + 0.25 * hy));
    pen.MoveTo(pen.x, static_cast<float>(y - 0.25 * hy));
  }
  for (int i = 16; i <= 32; ++i)
    pen.ArcTo(x, bottom, hx, SixteenthAngle(i), thermal && i >= 23 && i <= 26);
  if (thermal) {
    pen.LineTo(pen.x, static_cast<float>(y - 0.25 * hy));
    pen.MoveTo(pen.x, static_cast<float>(y + 0.25 * hy));
  }
  pen.LineTo(x + hx, top);
}

void WideObroundDraft(Pen& pen, float x, float y, float hx, float hy, bool thermal) {
  const float right = x + hx - hy, left = x - hx + hy;
  pen.MoveTo(right, y - hy);
  for (int i = -7; i <= 8; ++i)
    pen.ArcTo(right, y, hy, SixteenthAngle(i), thermal && i >= -1 && i <= 2);
  if (thermal) {
    pen.LineTo(static_cast<float>(x + 0.25 * hx), pen.y);
    pen.MoveTo(static_cast<float>(x - 0.25 * hx), pen.y);
  }
  float beforeLastY = pen.y;
  for (int i = 8; i <= 24; ++i) {
    beforeLastY = pen.y;
    pen.ArcTo(left, y, hy, SixteenthAngle(i), thermal && i >= 15 && i <= 18);
  }
  if (thermal) {
    // The bottom piece runs at the height of the arc's last but one point, a little inside the
    // true edge; toolpaths of thermal pads have always been cut this way.
    pen.MoveTo(pen.x, beforeLastY);
    pen.LineTo(static_cast<float>(x - 0.25 * hx), beforeLastY);
    pen.MoveTo(static_cast<float>(x + 0.25 * hx), beforeLastY);
  }
  pen.LineTo(right, y - hy);
}

void OctagonDraft(Pen& pen, float x, float y, float offset, float w, bool thermal) {
  const float r = static_cast<float>((double(offset) + w) * 0.49);
  const float q = static_cast<float>(0.25 * r);
  auto vertex = [&](int i, float& vx, float& vy) {
    PolarPoint(x, y, r, static_cast<float>(i * double(QuarterPi) + EighthPi), vx, vy);
  };
  float vx, vy;
  vertex(0, vx, vy);
  pen.MoveTo(vx, vy);
  for (int i = 1; i <= 8; ++i) {
    vertex(i, vx, vy);
    if (thermal && i % 2 == 0) {
      // The side on an axis is cut in two round the bridge.
      switch (i) {
        case 2:
          pen.LineTo(x + q, pen.y);
          pen.MoveTo(x - q, pen.y);
          break;
        case 4:
          pen.LineTo(pen.x, y + q);
          pen.MoveTo(pen.x, y - q);
          break;
        case 6:
          pen.LineTo(x - q, pen.y);
          pen.MoveTo(x + q, pen.y);
          break;
        default:
          pen.LineTo(pen.x, y - q);
          pen.MoveTo(pen.x, y + q);
          break;
      }
    }
    pen.LineTo(vx, vy);
  }
}

}  // namespace

TSeg* BuildPadDraft(const Board& b, int layer, const TPad& pad, float offset) {
  const uint8_t shape = b.PadShape[layer][pad.code];
  const float w = b.PadSizeX[layer][pad.code], h = b.PadSizeY[layer][pad.code];
  if (IsExcluded(pad.flags) || w == 0 || h == 0 || shape > kShapeOctagon) return nullptr;
  const bool thermal = TestFlags(pad, kPadThermal);
  const float hx = static_cast<float>((double(offset) + w) * 0.5);
  const float hy = static_cast<float>((double(offset) + h) * 0.5);
  SegmentBuilder out;
  Pen pen{out};
  switch (shape) {
    case kShapeCircle:
      CircleDraft(pen, pad.x, pad.y, hx, thermal);
      break;
    case kShapeRectangle:
      RectangleDraft(pen, pad.x, pad.y, hx, hy, thermal);
      break;
    case kShapeObround:
      if (w <= h)
        TallObroundDraft(pen, pad.x, pad.y, hx, hy, thermal);
      else
        WideObroundDraft(pen, pad.x, pad.y, hx, hy, thermal);
      break;
    default:
      OctagonDraft(pen, pad.x, pad.y, offset, w, thermal);
      break;
  }
  return RemoveDegenerateSegments(out.Release());
}

TSeg* BuildTrackDraft(const Board& b, int layer, const TTrack& track, float offset, bool fast) {
  const float w = b.TrackWidth[layer][track.code];
  if (TestFlags(track, kTrackEngraved) || w < 0.001) return nullptr;
  const float half = static_cast<float>((double(offset) + w) * 0.5);
  SegmentBuilder out;
  Pen pen{out};

  float a =
      static_cast<float>(double(SegmentAngle(track.x1, track.y1, track.x2, track.y2)) - HalfPi);
  float sx, sy, ex, ey;
  PolarPoint(track.x1, track.y1, half, a, sx, sy);
  PolarPoint(track.x2, track.y2, half, a, ex, ey);
  pen.MoveTo(sx, sy);
  pen.LineTo(ex, ey);

  // Caps on a global 45-degree grid, so that the caps of tracks meeting at one point share
  // their vertices.
  float g = static_cast<float>(std::floor((4.0 / Pi) * (double(a) + QuarterPi - OneDegree)) *
                               double(QuarterPi));
  if (g < a) g = a;
  const int start = std::fabs(double(g) - a) <= OneDegree ? 1 : 0;
  const float step = fast ? QuarterPi : EighthPi;
  const int n = fast ? 4 : 8;
  auto cap = [&](float cx, float cy) {
    for (int i = start; i < n; ++i)
      pen.ArcTo(cx, cy, half, static_cast<float>(g + i * double(step)));
  };

  cap(track.x2, track.y2);
  a = static_cast<float>(double(a) + Pi);
  g = static_cast<float>(double(g) + Pi);
  pen.ArcTo(track.x2, track.y2, half, a);
  pen.ArcTo(track.x1, track.y1, half, a);
  cap(track.x1, track.y1);
  pen.ArcTo(track.x1, track.y1, half, static_cast<float>(double(a) + Pi));
  return RemoveDegenerateSegments(out.Release());
}

void PurgeShortTracks(Board& b, int layer) {
  RemoveTracksWhere(b, layer, [&b, layer](const TTrack& t) {
    return Distance(t.x1, t.y1, t.x2, t.y2) < 0.1 * b.TrackWidth[layer][t.code];
  });
}

TSeg* BuildDraftContours(Board& b, int layer, float padOffset, float trackOffset, bool fast) {
  PurgeShortTracks(b, layer);
  SegmentBuilder out;
  for (const TPad* p = b.Pads[layer]; p; p = p->next)
    if (!IsExcluded(p->flags)) out.Take(BuildPadDraft(b, layer, *p, padOffset));
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next)
    if (!IsExcluded(t->flags)) out.Take(BuildTrackDraft(b, layer, *t, trackOffset, fast));
  return out.Release();
}

}  // namespace isolith
