// The views of "Pad apertures" and "Track apertures": the number chosen from the codes in use,
// "<" and ">" to step, the fields that edit the tables live (the board behind is repainted at
// each change), and the buttons that apply to all codes or delete a type.
#pragma once

#include "core/platform/Platform.h"

class QWidget;

namespace isolith {

// Show the dialog over `form` (a TDialogChgPads or TDialogChgTracks); true when OK was pressed.
bool TDialogChgPadsView(DialogForm& form, Platform& platform, QWidget* parent);
bool TDialogChgTracksView(DialogForm& form, Platform& platform, QWidget* parent);

// The same for "Unique pad" and "Unique track".
bool TDialogChgOnePadView(DialogForm& form, Platform& platform, QWidget* parent);
bool TDialogChgOneTrackView(DialogForm& form, Platform& platform, QWidget* parent);

}  // namespace isolith
