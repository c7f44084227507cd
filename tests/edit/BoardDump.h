// A byte-exact text of everything the editing commands may touch: the pads, tracks and drills
// of every layer with their codes and flags, and the aperture tables in use.
#pragma once

#include <cstdio>
#include <string>

#include "core/board/Board.h"

namespace isolith::test {

inline std::string DumpBoard(const Board& b) {
  std::string out;
  char line[160];
  auto add = [&](const char* text) { out += text; };
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    for (const TPad* p = b.Pads[layer]; p; p = p->next) {
      std::snprintf(line, sizeof line, "P%d %d %d %a %a\n", layer, p->code, p->flags, p->x, p->y);
      add(line);
    }
    for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
      std::snprintf(line, sizeof line, "T%d %d %d %a %a %a %a\n", layer, t->code, t->flags, t->x1,
                    t->y1, t->x2, t->y2);
      add(line);
    }
    for (int c = 0; c < kApertures; ++c) {
      std::snprintf(line, sizeof line, "A%d %d %d %a %a %a\n", layer, c, b.PadShape[layer][c],
                    b.PadSizeX[layer][c], b.PadSizeY[layer][c], b.TrackWidth[layer][c]);
      add(line);
    }
  }
  for (const TDrill* d = b.Drills; d; d = d->next) {
    std::snprintf(line, sizeof line, "D %d %d %a %a\n", d->code, d->flags, d->x, d->y);
    add(line);
  }
  for (int c = 0; c < kApertures; ++c) {
    std::snprintf(line, sizeof line, "H %d %a\n", c, b.DrillDiameter[c]);
    add(line);
  }
  return out;
}

}  // namespace isolith::test
