#include "toolpath/CopperPlanes.h"

#include "core/board/BoardOps.h"

namespace isolith {

bool DetectCopperPlanes(Board& board, Platform& platform, int layer, bool show, NetSearch search) {
  if (!IsCircuitLayer(layer)) return false;
  ClearTrackMarks(board, layer);
  TraceTracksFedByPads(board, layer, search);
  bool found = false;
  for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
    if (TestFlags(*t, kVisited)) {
      ClearFlags(*t, kVisited);
    } else {
      SetFlags(*t, kTrackCopperPlane);
      found = true;
    }
  }
  if (show) platform.Repaint(RepaintLevel::View);
  return found;
}

bool CopperPlaneFromNet(Board& board, Platform& platform, int sound, bool define) {
  const int layer = board.ActiveLayer;
  if (!IsCircuitLayer(layer)) {
    platform.Beep(sound);
    return false;
  }
  if (!board.Tracks[layer] || !board.HoverTrack) return false;
  ClearTrackMarks(board, layer);
  TraceTrack(board, layer, false, board.HoverTrack);
  ClearHover(board);
  // The marked tracks are what the view shows highlighted while the question stands.
  platform.Repaint(RepaintLevel::View);
  const Answer answer =
      platform.Ask("Tracks",
                   define ? "Define this track zone as copper plane?"
                          : "Define this zone as active tracks (i.e. not copper plane) ?",
                   false, Answer::Yes);
  const bool changed = answer == Answer::Yes;
  if (changed) {
    for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
      if (!TestFlags(*t, kVisited)) continue;
      if (define) {
        SetFlags(*t, kTrackCopperPlane);
      } else {
        ClearFlags(*t, kTrackCopperPlane);
      }
    }
    FreeContours(board, false);
  }
  ClearTrackMarks(board, layer);
  platform.Repaint(RepaintLevel::View);
  return changed;
}

void DetectAllCopperPlanes(Board& board, Platform& platform) {
  const int layer = board.ActiveLayer;
  if (!IsCircuitLayer(layer) || !board.Tracks[layer]) return;
  DetectCopperPlanes(board, platform, layer, true);
  FreeContours(board, false);
  platform.Repaint(RepaintLevel::View);
}

void DisableAllCopperPlanes(Board& board, Platform& platform) {
  const int layer = board.ActiveLayer;
  if (!IsCircuitLayer(layer) || !board.Tracks[layer]) return;
  for (TTrack* t = board.Tracks[layer]; t; t = t->next) ClearFlags(*t, kTrackCopperPlane);
  FreeContours(board, false);
  platform.Repaint(RepaintLevel::View);
}

}  // namespace isolith
