#include "ui/Hints.h"

#include <array>
#include <utility>

#include "commands/CommandTable.h"

namespace isolith {

namespace {

constexpr int kFirstToolbarId = 100;

// Indexed by toolbar id - 100.
constexpr std::array<const char*, 37> kToolbarHints = {
    "Open a new PCB project",                                                // 100
    "Open and add a new PCB layer",                                          // 101
    "Open a drilling layer file",                                            // 102
    "Adjust automatically the dimensions of the card",                       // 103
    "Invert active layer horizontally",                                      // 104
    "Rotate active layer of 90° counter-clockwise",                          // 105
    "Select a reference pad",                                                // 106
    "Disable all items in a zone to be pointed",                             // 107
    "Calculate isolating toolpaths for pads and tracks",                     // 108
    "Add manually lacking segments in contour toolpaths",                    // 109
    "Calculate hatching toolpaths for empty zones",                          // 110
    "Add centering holes around the card",                                   // 111
    "Display the list of drills and corresponding tools",                    // 112
    "Run milling module",                                                    // 113
    "Magnify a zone to be pointed",                                          // 114
    "Display final rendering of the active layer",                           // 115
    "Change shapes and dimensions of pads",                                  // 116
    "Change dimensions of tracks",                                           // 117
    "Define manually a set of tracks that corresponds to the card contour",  // 118
    "Display layer #1 as active layer",                                      // 119
    "Display layer #2 as active layer",                                      // 120
    "Display layer #3 as active layer",                                      // 121
    "Display layer #4 as active layer",                                      // 122
    "Display layer #5 (drills) as active layer",                             // 123
    "Display layer #6 (card cutout) as active layer",                        // 124
    "Save milling toolpaths of the active layer",                            // 125
    "",                                                                      // 126
    "Invert active layer vertically",                                        // 127
    "",                                                                      // 128
    "Delete all items in a zone to be pointed",                              // 129
    "Delete manually selected contour toolpaths",                            // 130
    "Delete manually selected extra segments in contour toolpaths",          // 131
    "Delete calculated hatches",                                             // 132
    "Return to previous zoom level",                                         // 133
    "",                                                                      // 134
    "Change pads into thermal pads",                                         // 135
    "Add cutting tabs on the card contour",                                  // 136
};

// Menu rows with a hint of their own.
constexpr std::pair<int, const char*> kMenuHints[] = {
    {cmd::Information, "Display information about active layer"},
    {cmd::Dimensions, "Change global dimensions of the card"},
    {cmd::VisualGrid, "Show/Hide background grid"},
    {cmd::ToolLibrary, "Define parameters of all available tools"},
    {cmd::SelectedTools, "Select active tools from the library"},
    {cmd::BlackBackground, "Use standard colour set for black background"},
    {cmd::GreenBackground, "Use standard colour set for green background"},
    {cmd::OrangeBackground, "Use standard colour set for orange background"},
    {cmd::WhiteBackground, "Use standard colour set for white background"},
    {cmd::Millimeters, "Use millimeter as distance unit"},
    {cmd::Inches, "Use inch as distance unit"},
    {cmd::SpeedUnitFirst, "Use meter per minute as speed unit"},
    {cmd::SpeedUnitFirst + 1, "Use millimeter per minute as speed unit"},
    // The row of millimetres per second says "meter": the wording is kept as it is.
    {cmd::SpeedUnitFirst + 2, "Use meter per second as speed unit"},
    {cmd::SpeedUnitFirst + 3, "Use inch per minute as speed unit"},
    {cmd::SpeedUnitFirst + 4, "Use inch per second as speed unit"},
};

}  // namespace

const char* ToolbarHint(int toolbarId) {
  const int index = toolbarId - kFirstToolbarId;
  if (index < 0 || index >= static_cast<int>(kToolbarHints.size())) return "";
  return kToolbarHints[static_cast<size_t>(index)];
}

const char* MenuHint(int commandId) {
  if (commandId >= cmd::Recent1 && commandId <= cmd::Recent5) return "Open a recent file directly";
  for (const auto& [id, hint] : kMenuHints) {
    if (id == commandId) return hint;
  }
  for (int toolbarId = kFirstToolbarId;
       toolbarId < kFirstToolbarId + static_cast<int>(kToolbarHints.size()); ++toolbarId) {
    if (ToolbarCommand(toolbarId) == commandId && *ToolbarHint(toolbarId) != '\0')
      return ToolbarHint(toolbarId);
  }
  return "";
}

}  // namespace isolith
