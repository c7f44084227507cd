// The four standard colour sets of the "&Display" menu and the colours that "&Customise..."
// lets the person choose.
#pragma once

#include <cstdint>
#include <span>

#include "params/Settings.h"

namespace isolith {

// One standard set: the menu row's name, the value of `BoardBackground` by which the row shows
// its tick, and the eleven board colours it writes.
struct ColourSet {
  const char* name;
  uint32_t tickBackground;
  uint32_t BoardBackground, BoardBorder, BoardThinLines, BoardGrid, BoardOrigin, BoardTrace1,
      BoardTrace2, BoardDrill, BoardHilight, BoardContour, BoardHatch;
};

// "Black background", "Green background", "Orange background", "White background", in menu
// order. The orange set writes 0x006060 while its tick looks for 0x006080, so that tick never
// shows: kept as the program has always behaved.
std::span<const ColourSet> StandardColourSets();

// Writes a set: its eleven colours, the client area back to the system's colour and its frame
// to black.
void ApplyColourSet(Settings& s, const ColourSet& set);

// A colour the person may choose in "&Customise...": its button text and its setting.
struct CustomColour {
  const char* label;
  uint32_t Settings::*value;
};
// The twelve buttons, in the dialog's order.
std::span<const CustomColour> CustomColours();

}  // namespace isolith
