// The "info" command: what the job holds, as text or as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cli/CliJob.h"
#include "core/board/Board.h"

namespace isolith {

// The card, the origin, each circuit layer in use (index, name, pads, tracks, contours,
// hatches), then the drill and cutout counts; one fact to a line.
std::string JobInfoText(const Board& b);

// The same as an object: "card" {"width", "height", "thickness"}, "origin" {"x", "y"},
// "layers" [{"index", "name", "pads", "tracks", "contours", "hatches", "overlap"}] for the
// circuit layers in use, "drills", "cutouts". "overlap" is the layer's PadOverlap. Also
// "drillOverlap", the PadOverlap of the drills against layer 0, per layer "cardContour" (a card
// contour was taken from the file loaded on it), and "files" [{"file", "layer", "cardContour"}]
// for the files read, since a file taken whole as card contour leaves no layer behind.
nlohmann::json JobInfoJson(const Board& b, const std::vector<LoadedFile>& loaded = {});

}  // namespace isolith
