// The hint strip's texts: what the status line says while the mouse is on a menu row.
#pragma once

namespace isolith {

// The hint of a toolbar button (ids 100 to 136); empty for a button without one.
const char* ToolbarHint(int toolbarId);

// The hint of a menu row: its own text where it has one, else the hint of the toolbar button
// that issues the same command; empty when neither exists.
const char* MenuHint(int commandId);

}  // namespace isolith
