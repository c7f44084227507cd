// The job file of the suite's machining module (extension "tvn"): binary, little-endian, a
// stream of 17-byte blocks. The first holds the text "Torvane 3 <title>"; every other a type byte
// and four 32-bit words, or for a text block 16 bytes of text. A word marked fixed holds a length
// in hundred-thousandths of a millimetre. The blocks describe the card, the tools in use and then
// the paths of one layer in machining order.
#pragma once

#include <cstdint>
#include <string>

#include "output/driver/OutputContext.h"

namespace isolith {

inline constexpr int kJobBlockSize = 17;

// Block types.
enum JobBlock : uint8_t {
  kJobSetup = 0,     // card, work area, flag words, engraving, origin
  kJobTool = 2,      // a tool in use: index, diameter, profile, point angle
  kJobToolMore = 3,  // the tool's further words, then its name 16 characters a block
  kJobPath = 10,     // starts a path: speed mm/min, 0, 0, tool and flags
  kJobPoint = 11,    // a point of the path: x, y, z
  kJobArc = 20,      // the exact circle behind the points of a bored hole
};

// Flags of a path block's last word, above the tool index in its low byte.
inline constexpr int32_t kJobPlunge = 0x80;     // a spot or plain drill: a plunge, no path
inline constexpr int32_t kJobCircle = 0x10000;  // the points approximate a circle
inline constexpr int32_t kJobHatch = 0x400000;  // a hatch path

// A length as a fixed word: value x 100000, rounded to the nearest.
int32_t JobFixed(double value);

// Writes the job of `layer`: drills and contours by `sequence` (the values of the "File export"
// choice), the nearest path next from the last point written when `contourOptim` (and the
// nearest hole when `drillOptim`), bored holes as chords of `arcStep` degrees, the cut paths when
// the layer is 0 or 5 and the "card contour" choice is set. False when the file could not be
// written completely; a failed file is removed, so that no half job is left behind.
bool WriteJobFile(OutputContext& context, const std::string& path, int layer, int sequence,
                  bool contourOptim, bool drillOptim, float arcStep);

}  // namespace isolith
