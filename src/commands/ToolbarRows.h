// The icon bar: its buttons in id order, each with its picture and tooltip; the command a button
// runs is the menu command of ToolbarCommand, and its hint that of the bar.
#pragma once

#include <span>

namespace isolith {

struct ToolbarRow {
  int id;               // 100 to 136
  const char* bitmap;   // the picture's name, "PCBOPEN1" and the like
  const char* tooltip;  // "Open project" and the like
};

std::span<const ToolbarRow> ToolbarRows();

// Whether the classic tool box is built beside the icon bar, by `TopBarStyle` and the colours of
// the screen: with style 0 only on a screen of 256 colours or fewer, always with 2 and 3, never
// with 1.
bool ClassicToolBox(int topBarStyle, int screenColours);

}  // namespace isolith
