// Moving between layers, and emptying one.
#pragma once

#include "commands/Application.h"

namespace isolith {

// The layer after / before the active one in the cycle 0, 1, 2, 3, 4, 5, 0, skipping empty
// circuit layers, a drill layer without drills and a cutout layer without cutouts. Both set
// PendingCommand to 0 (the caller restores it) and return whether the active layer changed.
bool NextLayer(Board& b);
bool PreviousLayer(Board& b);

// Tab (forward) and Shift+Tab: nothing at all unless LayerCount is above 1. Otherwise the
// pending pick survives the switch; a switch that goes nowhere beeps.
void SwitchLayer(Application& app, bool forward);

// "Layer #1" to "Layer #6": shows that layer (0..5), keeping the pending pick.
void ShowLayer(Application& app, int layer);

// "&Close layer...": empties the active layer, compacts the circuit layers, moves to the
// previous layer, then fits the card to what is left (or starts a new job when nothing is).
void CloseLayer(Application& app);

}  // namespace isolith
