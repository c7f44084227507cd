// The edits that act on every item of one aperture code: delete, rotate, engrave at centre, and
// the thermal pad. Each is one function over the model; the command repaints.
#pragma once

#include "core/board/Board.h"
#include "core/platform/Platform.h"

namespace isolith {

// The majority toggle of "engraved at centre" over the tracks of `code` on layers `first` to
// `last`: when more than half (whole division) carry flag 0x04 it is cleared from all; otherwise
// it is set on all and their flags 0x01 and 0x02 are cleared. False when no track has the code.
bool ToggleEngraving(Board& board, int code, int first, int last);

// "Delete all identical pads": the pads of HoverPad's code on all four circuit layers (the code
// number alone compared, whichever layer's table it means) go after "Delete these pads?" (title
// "Pads") is answered Yes. Contours stay until recalculated. False when nothing was removed.
bool DeleteIdenticalPads(Board& board, Platform& platform);
// The same for HoverTrack's code: "Delete these tracks?", title "Tracks".
bool DeleteIdenticalTracks(Board& board, Platform& platform);

// "Rotate all identical pads of 90°": PadSizeX and PadSizeY of HoverPad's code on the active
// layer are exchanged. False without a hovered pad.
bool RotateIdenticalPads(Board& board);

// "Transform to thermal pad": HoverPad gets flag 0x08 and the active layer's contours go.
bool MakeThermal(Board& board);

// "Engrave tracks as centerlines": after "Engrave these tracks at centre?" (title "Tracks") is
// answered Yes, the toggle over HoverTrack's code on all four layers; then the contours and
// hatches of all layers go. False when not done.
bool EngraveIdenticalTracks(Board& board, Platform& platform);

}  // namespace isolith
