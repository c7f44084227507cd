#include "params/ColourSets.h"

namespace isolith {

namespace {

constexpr ColourSet kSets[] = {
    {"Black background", 0x000000, 0x000000, 0x808080, 0x808080, 0xD0D0D0, 0xFFFFFF, 0x00FF00,
     0x008000, 0x606060, 0x00FFFF, 0xFF8080, 0xFF8080},
    {"Green background", 0x008000, 0x008000, 0x000000, 0x000000, 0xFFFFFF, 0xFFFFFF, 0x80FF80,
     0x00A000, 0x000000, 0x00FFFF, 0x00FFFF, 0xFF0000},
    {"Orange background", 0x006080, 0x006060, 0x000000, 0x000000, 0x00FFFF, 0xFFFFFF, 0x80B0FF,
     0x0080A0, 0x000000, 0x00FFFF, 0xC0C0C0, 0xC0C0C0},
    {"White background", 0xFFFFFF, 0xFFFFFF, 0x000000, 0x000000, 0x808080, 0x808000, 0x000000,
     0xC0C0C0, 0x00FFFF, 0xFFFF00, 0xFF8080, 0xFF8080},
};

constexpr CustomColour kCustom[] = {
    {"Board background", &Settings::BoardBackground},
    {"Board borders", &Settings::BoardBorder},
    {"Visual grid", &Settings::BoardGrid},
    {"Foreground trace", &Settings::BoardTrace1},
    {"Background trace", &Settings::BoardTrace2},
    {"Drills", &Settings::BoardDrill},
    {"Contours", &Settings::BoardContour},
    {"Hatches", &Settings::BoardHatch},
    {"Origin point", &Settings::BoardOrigin},
    {"Final trace", &Settings::BoardFinalFg},
    {"Final background", &Settings::BoardFinalBg},
    {"Final drills", &Settings::BoardFinalHole},
};

}  // namespace

std::span<const ColourSet> StandardColourSets() {
  return kSets;
}

void ApplyColourSet(Settings& s, const ColourSet& set) {
  s.ClientBackground = kColourAuto;
  s.ClientBorder = 0x000000;
  s.BoardBackground = set.BoardBackground;
  s.BoardBorder = set.BoardBorder;
  s.BoardThinLines = set.BoardThinLines;
  s.BoardGrid = set.BoardGrid;
  s.BoardOrigin = set.BoardOrigin;
  s.BoardTrace1 = set.BoardTrace1;
  s.BoardTrace2 = set.BoardTrace2;
  s.BoardDrill = set.BoardDrill;
  s.BoardHilight = set.BoardHilight;
  s.BoardContour = set.BoardContour;
  s.BoardHatch = set.BoardHatch;
}

std::span<const CustomColour> CustomColours() {
  return kCustom;
}

}  // namespace isolith
