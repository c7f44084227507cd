// The context menu of the board: the rows offered for what the mouse points at, pad, track,
// drill and card contour in that order (a pad on a track offers both), each enabled by its
// command's rule.
#pragma once

#include <string>
#include <vector>

#include "commands/Application.h"

namespace isolith {

struct PopupRow {
  int id = 0;  // 0: a separating line
  std::string text;
  bool enabled = false;
};

// The rows for the present hover items; empty when nothing is hovered.
std::vector<PopupRow> PopupRows(const Application& app);

}  // namespace isolith
