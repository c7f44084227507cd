// The post-processors that come with the program: one ".ppf" file for each common controller
// (GRBL, LinuxCNC, Mach3/Mach4, Marlin), in the folder "postprocessors" beside the executable.
// They are offered beside the user's own format; choosing one copies it into "Isolith.ppf", and
// `isolith-cli mill --post NAME` uses one for a single run.
//
// Their feed words are in mm/min, each on a line of its own: the "ClearV" line, written at every
// change of speed, which shows 60 times the speed of the unit in force; the motion templates
// carry no F, since a change from plunge to feed would not write one. With `ScaleV` 1 that is
// mm/min for the program's default unit (mm/s), so the files are written for it and their
// `ScaleV` is fitted to the unit in force when one is loaded.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "output/postprocessor/PostProcessor.h"

namespace isolith {

inline constexpr const char* kShippedPostFolder = "postprocessors";

struct TShippedPostProcessor {
  std::string name;   // the file's base name, as `--post` spells it ("grbl")
  std::string title;  // the format title of the file ("GRBL 1.1")
  std::string path;
};

// The readable ".ppf" files of `programFolder` (with its final separator) + "postprocessors",
// sorted by name; none when the folder is missing.
std::vector<TShippedPostProcessor> ShippedPostProcessors(const std::string& programFolder);

// The one of `name`, compared without regard to case; nullptr when none has it.
const TShippedPostProcessor* FindShippedPostProcessor(
    const std::vector<TShippedPostProcessor>& shipped, std::string_view name);

// Reads a shipped file over the defaults into `pp`, its `ScaleV` fitted to `speedUnit` (an index
// of kSpeed...); false, with `pp` untouched, when the file cannot be read.
bool LoadShippedPostProcessor(TPostProcessor& pp, const TShippedPostProcessor& shipped,
                              int speedUnit);

}  // namespace isolith
