// The "info" command: what the job holds, as text or as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "core/board/Board.h"

namespace isolith {

// The card, the origin, each circuit layer in use (index, name, pads, tracks, contours,
// hatches), then the drill and cutout counts; one fact to a line.
std::string JobInfoText(const Board& b);

// The same as an object: "card" {"width", "height", "thickness"}, "origin" {"x", "y"},
// "layers" [{"index", "name", "pads", "tracks", "contours", "hatches", "overlap"}] for the
// circuit layers in use, "drills", "cutouts". "overlap" is the layer's PadOverlap.
nlohmann::json JobInfoJson(const Board& b);

}  // namespace isolith
