// Removing every record of a list that a test picks, in one pass: a zone or a net may hold
// tens of thousands of tracks, and unlinking them one by one from the head would walk the list
// again for each. The hover and reference names that point at a removed record are cleared.
#pragma once

#include "core/board/Board.h"

namespace isolith {

inline void ForgetNames(Board& b, const TPad* p) {
  if (b.HoverPad == p) b.HoverPad = nullptr;
  if (b.RefPad == p) b.RefPad = nullptr;
}
inline void ForgetNames(Board& b, const TTrack* t) {
  if (b.HoverTrack == t) b.HoverTrack = nullptr;
}
inline void ForgetNames(Board& b, const TDrill* d) {
  if (b.HoverDrill == d) b.HoverDrill = nullptr;
}

// Removes and frees the records for which `pick(record)` is true; returns how many went.
template <typename R, typename Pick>
int RemoveWhere(Board& b, R*& head, Pick pick) {
  int removed = 0;
  R** link = &head;
  while (R* r = *link) {
    if (pick(*r)) {
      *link = r->next;
      ForgetNames(b, r);
      delete r;
      ++removed;
    } else {
      link = &r->next;
    }
  }
  return removed;
}

}  // namespace isolith
