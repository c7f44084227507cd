#include "toolpath/CardContour.h"

#include <cmath>

#include "core/board/BoardOps.h"
#include "toolpath/CopperPlanes.h"
#include "toolpath/TrackNets.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

inline double W(float v) {
  return static_cast<double>(v);
}

// How far apart two track ends may be and still follow on in the card edge.
constexpr float kChainTolerance = 0.01f;

void TurnTrack(TTrack& t) {
  SwapF(t.x1, t.x2);
  SwapF(t.y1, t.y2);
}

// Takes a track into the outline's end and removes it, with its twins, from all circuit layers.
// The track itself goes in any case, so that the walk always ends.
void TakeTrack(Board& board, int layer, TPolygon& outline, TXY*& tail, TTrack* track,
               bool startsOutline) {
  const float x1 = track->x1, y1 = track->y1, x2 = track->x2, y2 = track->y2;
  if (startsOutline) AppendPoint(outline, tail, x1, y1);
  AppendPoint(outline, tail, x2, y2);
  RemoveTracksAt(board, x1, y1, x2, y2, true, track);
  RemoveTrack(board, layer, track);
}

}  // namespace

bool DetectCardContour(CutContext& context, int layer) {
  Board& board = context.board;
  if (!IsCircuitLayer(layer)) return false;
  ClearTrackMarks(board, layer);
  TTrack *left = nullptr, *right = nullptr, *bottom = nullptr, *top = nullptr;
  float minX = 1.0e9f, maxX = -1.0e9f, minY = 1.0e9f, maxY = -1.0e9f;
  for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
    const bool vertical = std::fabs(W(t->x2) - t->x1) < kFineTolerance;
    const bool horizontal = std::fabs(W(t->y2) - t->y1) < kFineTolerance;
    if (vertical == horizontal) continue;
    if (vertical) {
      if (t->x1 < minX) minX = t->x1, left = t;
      if (t->x1 > maxX) maxX = t->x1, right = t;
    } else {
      if (t->y1 < minY) minY = t->y1, bottom = t;
      if (t->y1 > maxY) maxY = t->y1, top = t;
    }
  }
  bool taken = false;
  if (left && right && bottom && top && left != right && bottom != top) {
    TraceTrack(board, layer, false, left);
    if (TestFlags(*left, kVisited) && TestFlags(*right, kVisited) && TestFlags(*bottom, kVisited) &&
        TestFlags(*top, kVisited)) {
      board.HoverTrack = left;
      CardContourFromNet(context, layer, false);
      taken = true;
    }
  }
  ClearTrackMarks(board, layer);
  return taken;
}

TCutout* CardContourFromNet(CutContext& context, int layer, bool askSide) {
  Board& board = context.board;
  Platform& platform = context.platform;
  if (!IsCircuitLayer(layer)) return nullptr;

  bool takenForCopper = false;
  for (const TTrack* t = board.Tracks[layer]; t; t = t->next) {
    if (TestFlags(*t, kVisited) && !TestFlags(*t, kTrackDisabled | kTrackCopperPlane)) {
      takenForCopper = true;
    }
  }
  // The marked tracks are what the view shows highlighted while the question stands.
  platform.Repaint(RepaintLevel::View);
  if (context.confirm &&
      platform.Ask("Tracks",
                   "Please confirm that the highlighted track net\ndefines a card contour path.",
                   false, Answer::Yes) != Answer::Yes) {
    platform.Repaint(RepaintLevel::View);
    return nullptr;
  }

  TTrack* start = nullptr;
  bool startTurned = false;
  float best = 0;
  for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
    if (!TestFlags(*t, kVisited)) continue;
    const float d1 = Distance(0, 0, t->x1, t->y1);
    if (!start || d1 < best) best = d1, start = t, startTurned = false;
    const float d2 = Distance(0, 0, t->x2, t->y2);
    if (d2 < best) best = d2, start = t, startTurned = true;
  }
  if (!start) return nullptr;

  TCutout* cutout = new TCutout;
  cutout->side = 0;
  cutout->outline = new TPolygon;
  TCutout* cutoutTail = nullptr;
  AppendTo(board.Cutouts, cutoutTail, cutout);
  TPolygon& outline = *cutout->outline;
  TXY* tail = nullptr;
  if (startTurned) TurnTrack(*start);
  TakeTrack(board, layer, outline, tail, start, true);

  for (;;) {
    TTrack* next = nullptr;
    bool nextTurned = false;
    for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
      if (!TestFlags(*t, kVisited)) continue;
      if (Distance(t->x1, t->y1, tail->x, tail->y) <= kChainTolerance) {
        next = t, nextTurned = false;
      }
      if (Distance(t->x2, t->y2, tail->x, tail->y) <= kChainTolerance) {
        next = t, nextTurned = true;
      }
    }
    if (!next) break;
    if (nextTurned) TurnTrack(*next);
    TakeTrack(board, layer, outline, tail, next, false);
  }

  if (takenForCopper) FreeContours(board, true);
  CalculateCutPath(context, *cutout, askSide);
  return cutout;
}

TCutout* DefineCardContour(CutContext& context) {
  Board& board = context.board;
  const int layer = board.ActiveLayer;
  if (!IsCircuitLayer(layer) || !board.HoverTrack) return nullptr;
  ClearTrackMarks(board, layer);
  TraceTrack(board, layer, false, board.HoverTrack);
  TCutout* cutout = CardContourFromNet(context, layer, true);
  ClearTrackMarks(board, layer);
  return cutout;
}

void DetectAfterLoad(CutContext& context, int layer, int previousLayer) {
  Board& board = context.board;
  if (!IsCircuitLayer(layer) || !board.Tracks[layer]) return;
  if (context.settings.DetectGndPlanes) {
    DetectCopperPlanes(board, context.platform, layer, true);
  }
  if (context.settings.DetectCutOut && board.Tracks[layer]) {
    DetectCardContour(context, layer);
    if (!board.Pads[layer] && !board.Tracks[layer]) board.ActiveLayer = previousLayer;
  }
}

}  // namespace isolith
