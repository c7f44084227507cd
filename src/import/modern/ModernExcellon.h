// The modern reading of a drill file: its header says its unit, which zeros it keeps and how many
// digits its numbers have ("INCH,LZ", "METRIC,TZ,000.000", ";FILE_FORMAT=2:4", M71, M72), and
// decimal coordinates read as written. What the header leaves unsaid is tried every plausible
// way, and the reading whose holes land best on the pads of the first layer stands.
#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

// How the numbers of a drill file read.
struct DrillNumbers {
  bool metric = false;
  bool leadingKept = false;  // "LZ": read from the left; otherwise from the right ("TZ")
  int integers = 2, decimals = 4;
};

// What a header states; each part empty when it is silent.
struct DrillHeaderWords {
  std::optional<bool> metric;
  std::optional<bool> leadingKept;
  std::optional<std::pair<int, int>> digits;  // integer and decimal digits
};

DrillHeaderWords ReadDrillHeaderWords(const std::string& text);

// The readings to try for a header, the likeliest first.
std::vector<DrillNumbers> DrillReadings(const DrillHeaderWords& header);

struct DrillHole {
  double x = 0, y = 0;  // mm, in the file's frame
  int tool = 0;
};

struct DrillContent {
  std::vector<DrillHole> holes;
  double diameter[kApertures] = {};  // mm, by tool number modulo 100; 0 when not given
};

// The holes and tool sizes of the file's text read with `numbers`. Routed paths (G00 to G03
// with M15/M16) are not holes; a slot (G85) is drilled at its start.
DrillContent ReadDrillContent(const std::string& text, const DrillNumbers& numbers);

// Share of `holes`, moved by (dx, dy), whose centre lies on the copper (a pad or a track) of
// circuit layer `layer`.
double HolesOnCopper(const Board& board, int layer, const std::vector<DrillHole>& holes, double dx,
                     double dy);

// Reads the whole file into ImportDrills, its sizes (multiplied by `drillScale`) into
// DrillDiameter with ApertureFlags bit 4, in the frame of the first layer: the file's
// coordinates moved as the first layer's load moved its copper, found again as the move that
// brings the most holes onto pad centres (the origin's shift when no pad meets a hole). The
// reading chosen is the header's, or, where it is silent, the one that lands most holes on that
// layer's copper. Returns the number of holes.
int ReadModernExcellon(std::istream& file, float drillScale, Board& board);

}  // namespace isolith
