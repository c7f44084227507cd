// The pen machine: the small state machine that every output walk drives. A walk says where the
// cutter goes (rapid to a point and depth, feed to a point, drill or bore a circle, change tool);
// the pen machine decides the lifts, the rapid approach down to the surface margin, the plunge,
// the speed changes and which axes are worth writing, and hands each word to the format.
#pragma once

#include "output/driver/OutputState.h"
#include "output/formats/FormatWords.h"
#include "params/ToolLibrary.h"

namespace isolith {

// Radii up to this are no circle: the plunge was the hole.
inline constexpr float kNoCircleRadius = 0.01f;
// Spindle speed of a tool whose own is 0, rpm.
inline constexpr int kDefaultSpindleSpeed = 10000;

// The state of one file, the words of its format, the tool table, and `BoringDir` (negative:
// circles run clockwise).
struct PenMachine {
  TOutputState& state;
  FormatWords& words;
  const ToolTable& tools;
  int boringDir = 0;
};

// The tool record of an index; an all-zero record for an index that names no slot.
const TToolData& ToolAt(const ToolTable& tools, int index);

void WriteHeader(PenMachine& pen);
void WriteFooter(PenMachine& pen);

// Nothing when both equal the present ones. Otherwise the present tool is stopped, slot and tool
// stored, and the format's tool change written; the pen is then taken to stand at the machine's
// (0, 0, 0) as far as the skipping of unchanged axes goes.
void SelectTool(PenMachine& pen, int slot, int tool);
// Lifts to the clearance height and stops the present tool; nothing when none is active.
void StopTool(PenMachine& pen);
// Feed speed from mm/min; the plunge speed from the present tool: AbsDrillSpeed, else
// RelDrillSpeed percent of the feed, else half the feed, else 1 mm/s.
void SetToolSpeeds(PenMachine& pen, float feedMmPerMin);

// Takes the template, motion type and wanted speed of a mode and writes the speed change.
void SetMotionMode(PenMachine& pen, int mode);
// A rapid along Z to board depth `z` (negative: above the board).
void MoveZ(PenMachine& pen, float z);

// To (x, y) and depth z: lifted when the point changes, rapid in the plane, rapid down to the
// surface margin, then the plunge. A negative z keeps the tool above the surface.
void RapidTo(PenMachine& pen, float x, float y, float z);
// Feed in the plane; zero-length steps vanish.
void FeedTo(PenMachine& pen, float x, float y);
// At the present point: a hole (r at most 0.01), or a circle of radius r bored round it, as an
// arc command or as a 12-sided polygon; the tool comes back to the centre.
void CircleAt(PenMachine& pen, float r);

}  // namespace isolith
