// "&Information...": the apertures in use on the active layer, and those of the job's drills.
#pragma once

#include <string>
#include <string_view>

#include "commands/Application.h"

namespace isolith {

// Upper-cases a heading and drops the accents of its letters ("é" becomes "E").
std::string HeadingText(std::string_view text);

// The message box title: "Layer" and the active layer's index ("Layer 0" for the first).
std::string InformationTitle(const Board& b);

// The text: one line per aperture used by a pad of the active layer, in index order, under the
// heading "PADS :"; then the tracks' apertures under "TRACKS :", then the drill sizes under
// "DRILLS :"; sizes in inches with millimetres in brackets. Each line ends "    \n".
std::string InformationText(const Board& b);

// The command: shows the text in a message box.
void ShowInformation(Application& app);

}  // namespace isolith
