#include "edit/IdenticalItems.h"

#include <utility>

#include "core/board/BoardOps.h"
#include "edit/RemoveWhere.h"

namespace isolith {

namespace {

template <typename R>
bool AnyWithCode(const std::array<R*, 5>& lists, int code) {
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    for (const R* r = lists[layer]; r; r = r->next)
      if (r->code == code) return true;
  return false;
}

// Removes the records of `code` from the four circuit layers.
template <typename R>
bool RemoveWithCode(Board& b, std::array<R*, 5>& lists, int code) {
  int removed = 0;
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    removed += RemoveWhere(b, lists[layer], [code](const R& r) { return r.code == code; });
  return removed != 0;
}

}  // namespace

bool ToggleEngraving(Board& board, int code, int first, int last) {
  int n = 0, c = 0;
  for (int layer = first; layer <= last; ++layer)
    for (const TTrack* t = board.Tracks[layer]; t; t = t->next)
      if (t->code == code) {
        ++n;
        if (TestFlags(*t, kTrackEngraved)) ++c;
      }
  if (n == 0) return false;
  const bool clear = c > n / 2;
  for (int layer = first; layer <= last; ++layer)
    for (TTrack* t = board.Tracks[layer]; t; t = t->next) {
      if (t->code != code) continue;
      if (clear) {
        ClearFlags(*t, kTrackEngraved);
      } else {
        SetFlags(*t, kTrackEngraved);
        ClearFlags(*t, kTrackDisabled | kTrackCopperPlane);
      }
    }
  return true;
}

// The question about the items of one code, asked while they show highlighted.
bool AskAbout(Board& board, Platform& platform, int padCode, int trackCode, const char* title,
              const char* question) {
  board.HighlightPadCode = padCode;
  board.HighlightTrackCode = trackCode;
  platform.Repaint(RepaintLevel::View);
  const bool yes = platform.Ask(title, question, false, Answer::Yes) == Answer::Yes;
  board.HighlightPadCode = board.HighlightTrackCode = -1;
  platform.Repaint(RepaintLevel::View);
  return yes;
}

bool DeleteIdenticalPads(Board& board, Platform& platform) {
  if (!board.HoverPad) return false;
  const int code = board.HoverPad->code;
  if (!AnyWithCode(board.Pads, code)) return false;
  if (!AskAbout(board, platform, code, -1, "Pads", "Delete these pads?")) return false;
  return RemoveWithCode(board, board.Pads, code);
}

bool DeleteIdenticalTracks(Board& board, Platform& platform) {
  if (!board.HoverTrack) return false;
  const int code = board.HoverTrack->code;
  if (!AnyWithCode(board.Tracks, code)) return false;
  if (!AskAbout(board, platform, -1, code, "Tracks", "Delete these tracks?")) return false;
  return RemoveWithCode(board, board.Tracks, code);
}

bool RotateIdenticalPads(Board& board) {
  if (!board.HoverPad || !IsCircuitLayer(board.ActiveLayer)) return false;
  const int layer = board.ActiveLayer;
  const int code = board.HoverPad->code;
  std::swap(board.PadSizeX[layer][code], board.PadSizeY[layer][code]);
  return true;
}

bool MakeThermal(Board& board) {
  if (!board.HoverPad) return false;
  SetFlags(*board.HoverPad, kPadThermal);
  FreeContours(board, false);
  return true;
}

bool EngraveIdenticalTracks(Board& board, Platform& platform) {
  if (!board.HoverTrack) return false;
  const int code = board.HoverTrack->code;
  if (!AskAbout(board, platform, -1, code, "Tracks", "Engrave these tracks at centre?"))
    return false;
  if (!ToggleEngraving(board, code, 0, kCircuitLayers - 1)) return false;
  FreeContours(board, true);
  return true;
}

}  // namespace isolith
