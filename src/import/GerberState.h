// The working state of one Gerber read: the block being scanned, the number just parsed, the
// file's format and unit, the macros it has defined, and the plotter's pen. One of each per read;
// nothing survives the read but what it put into the board.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace isolith {

inline constexpr int kBlockBytes = 256;     // a block keeps at most this many bytes
inline constexpr int kNumberChars = 15;     // a number is at most this many characters
inline constexpr int kMacroEntries = 100;   // aperture macros one file may define
inline constexpr int kMacroNameChars = 50;  // characters of a macro name that are kept
inline constexpr int kOsmondFormat = 32;    // the dialect whose FS digits are ignored
// "No position yet" for the previous point, and "not given" for I and J.
inline constexpr float kNoPosition = -12021962.0f;

// One aperture macro as far as the reader understands it: the shape and size of its first
// primitive that counts.
struct GerberMacro {
  std::string name;  // at most kMacroNameChars; empty while the entry is free
  uint8_t shape = 0;
  float width = 0, height = 0;
};

struct GerberReader {
  char line[kBlockBytes] = {};  // the current block, upper case, without blanks
  int32_t pos = 0;              // scan position in `line`
  int32_t len = 0;              // bytes in `line`
  uint8_t aperture = 0;         // the selected aperture
  float value = 0;              // the last number, scaled when it was a coordinate
  int32_t intValue = 0;         // its whole part, 0 when 1000 or more
  bool atEnd = false;           // end of file reached
  bool trailing = false;        // coordinates keep their trailing zeros
  bool tablesCleared = false;   // the file's first aperture definition has emptied the tables
  float unit = 25.4f;           // mm per file unit
  float xFrac = 0.001f;         // weight of the last digit of an X coordinate
  float yFrac = 0.001f;
  float xScale = 0.0254f;  // ScaleIn * xFrac * unit, kept up to date by UpdateScales
  float yScale = 0.0254f;
  float ScaleIn = 1, AperScaleIn = 1, DrillScaleIn = 1;  // the dialect's scales
  int32_t format = 0;                                    // the dialect's id
  std::array<GerberMacro, kMacroEntries> macros{};
  int macroOpen = -1;  // entry whose body the next block gives, -1 when none
};

// The plotter's pen while the blocks are scanned.
struct GerberPen {
  float X = 0, Y = 0;                        // current position
  float PX = kNoPosition, PY = kNoPosition;  // position after the previous block
  int D = 2;                                 // 1 draw, 2 move, 3 flash
  bool incremental = false;
  int G = 0;                               // 2 or 3 when the block named an arc, else 0
  float I = kNoPosition, J = kNoPosition;  // arc centre offsets of the block
};

}  // namespace isolith
