// Running a command by its id, and the keys and clicks that the application answers itself.
#pragma once

#include "commands/Application.h"

namespace isolith {

// Runs the command if it is enabled now (CommandEnabled); a disabled command is refused with
// the beep. Toolbar ids (100 to 136) are accepted and run their command. True when it ran.
bool RunCommand(Application& app, int id);

// Esc: leaves final rendering (with a repaint) and cancels a pending pick (ResetHover and a
// repaint), both in the one press; the arrow cursor returns. False when there was nothing to
// do: the key then stays open and the window beeps when it is released.
bool EscapeKey(Application& app);

// A left click outside the board while a command is pending: an item pick ends with
// ResetHover; a rectangle pick, and the points of a new contour segment, beep and stay.
void ClickOutsideBoard(Application& app);

}  // namespace isolith
