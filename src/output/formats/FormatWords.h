// The words of one output format family. The pen machine (driver/PenMachine.h) decides when a
// word is due and keeps the state; an implementation of this interface only says the word, in
// its machine's language, through the line writer or the raw writer (formats/Writers.h).
//
// Every hook gets the state as it stands *before* the move: `CurX`, `CurY`, `CurZ` are the old
// position, the arguments the new one, both in board millimetres. Machine values are
// (board - Zero) * Scale. `MotionMode`, `MotionType`, `PrevMotionType`, `LastV`, `CurV` and
// `MotionTemplate` are already those of the move (the pen machine sets the mode first), and
// `LineNumber` is free for the words to use and advance.
//
// The built-in families are made by `MakeFormatWords` (formats/BuiltinFormats.h). The user's own
// format (code 33) is one more implementation of this interface, handed to the walks by the
// caller: it takes the templates of the present mode from `MotionTemplate` (filled through
// `MotionTemplate(mode)` below), the numbers from `LineNumber` (set at `Header`), and the circle
// from `ArcWords`.
#pragma once

#include <cstdint>
#include <string>

#include "core/board/Board.h"
#include "output/driver/OutputState.h"
#include "params/ToolLibrary.h"

namespace isolith {

// What every format's words may need beyond the state: the board (card size in header comments
// and DXF extents, the card height that SML mirrors about), the folder where the user's header
// and footer files ("ISO-Top.txt" and the like) are looked for, and the moment of the header
// comments in seconds since the epoch (shown in local time).
struct FormatContext {
  const Board* board = nullptr;
  std::string programFolder;
  int64_t now = 0;
};

// A tool change: the tool index (the machine's tool number is index + 1), the spindle speed in
// rpm (the tool's `RotationSpeed`, or 10000 when that is 0) and the tool's record (an all-zero
// record when the index names no slot).
struct ToolChangeWords {
  int tool = -1;
  int spindleSpeed = 0;
  const TToolData* data = nullptr;
};

// A full circle, started and ended at the point at angle 0 (the present position of the pen).
struct ArcWords {
  float centreX = 0, centreY = 0;             // board mm
  float radius = 0;                           // board mm
  int motionType = kTypeArcCounterClockwise;  // kTypeArcClockwise or kTypeArcCounterClockwise
  float sweep = 360;                          // degrees: +360 counter-clockwise, -360 clockwise
};

class FormatWords {
 public:
  virtual ~FormatWords() = default;

  // Top of file; `WriteHeader` of the pen machine. A numbered format sets `LineNumber` here.
  virtual void Header(TOutputState& state) = 0;
  // Bottom of file, before the walk's last line end.
  virtual void Footer(TOutputState& state) = 0;
  // The words of a tool change, after `Slot` and `Tool` were stored. The DXF words set
  // `DxfColour` here instead of writing anything.
  virtual void ToolChange(TOutputState& state, const ToolChangeWords& change) = 0;
  // The words that stop the present tool (the lift before them is the pen machine's).
  virtual void ToolStop(TOutputState& state) = 0;

  // True for formats that carry the speed on the move itself (Isel NCP, ISO, NUM): a change of
  // speed then clears `LastV`, so that the next move writes its F word.
  virtual bool SpeedOnMove() const { return false; }
  // A change of speed, `v` = `CurV` times the factor of the mode, in mm/s. Not called when
  // `SpeedOnMove`.
  virtual void Speed(TOutputState& state, float v) {
    (void)state;
    (void)v;
  }
  // The template of a motion mode (kModeRapid..kModeLift) for `MotionTemplate`; empty for the
  // built-in formats.
  virtual std::string MotionTemplate(int mode) const {
    (void)mode;
    return {};
  }

  // A rapid along Z to board depth `z`; called only when the machine has Z and z changed.
  virtual void ZRapid(TOutputState& state, float z) = 0;
  // A rapid in the plane to (x, y), called when the position changed; the axes that did not
  // change are left out where the format allows.
  virtual void Rapid(TOutputState& state, float x, float y) = 0;
  // A rapid that ends where it started: the pen-up word of the plotter formats, else nothing.
  virtual void PenUp(TOutputState& state) { (void)state; }
  // A plunge to board depth `z`; called only when the machine has Z and z changed.
  virtual void Plunge(TOutputState& state, float z) = 0;
  // A feed in the plane to (x, y); called only when the position changed.
  virtual void Feed(TOutputState& state, float x, float y) = 0;
  // A full circle as one arc command (with arcs on and a radius above 0.01).
  virtual void FullCircle(TOutputState& state, const ArcWords& arc) = 0;
  // A hole with no circle at the present position: plotters put the pen down, DXF a POINT.
  virtual void Point(TOutputState& state) { (void)state; }

  // Section walk only, after the fixed scale table (code 33: 1, 1, -1, 1, 1) was multiplied by
  // the machine's scales and `UseArcs` set from `MachineArcs`: a format that carries its own
  // scales, arc choice or zero point applies them here. The centering-hole zero point, when it
  // applies, overrides this afterwards.
  virtual void AdjustSectionWalk(TOutputState& state, const Board& board) {
    (void)state;
    (void)board;
  }
};

}  // namespace isolith
