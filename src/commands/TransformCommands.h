// The clicks that end the transform commands waiting on the board: the origin picked on an
// item ("Plot manually" of "O&rigin"), the reference pad, and the adjustment on it.
#pragma once

#include "commands/Application.h"

namespace isolith {

// The click at card point (x, y) while `pendingId` waits, with the hover names set by the view:
// - 12010: the origin takes the centre of the hovered pad or drill, the hovered centering hole,
//   or the end of the hovered track nearest to (x, y); then ResetHover and a repaint.
// - 12013: the hovered pad becomes the reference pad of the active layer; ResetHover, repaint.
// - 12014: the active layer moves so that the hovered pad (or drill, on the drill layer) meets
//   the reference pad; ResetHover, repaint. On the reference pad's own layer it is refused with
//   the beep and stays pending.
// False when the id is none of these or the click found nothing to act on (nothing changes).
bool TransformClickAction(Application& app, int pendingId, float x, float y);

}  // namespace isolith
