// The state of one output file while a walk writes it: the stream, the position and pen of the
// cutter, the active tool, speeds and the scales of the machine. It lives on the stack of a walk
// and dies with it; every field starts at the value the pen machine expects at the top of a file.
#pragma once

#include <string>

#include "output/driver/OutputStream.h"

namespace isolith {

// The position of the pen before anything placed it.
inline constexpr float kUnknownPosition = -12021962.0f;

// Motion modes of the pen machine.
enum MotionMode : int {
  kModeRapid = 0,   // rapid in the plane
  kModeRapidZ = 1,  // rapid along Z on the way down
  kModePlunge = 2,  // plunge into the material
  kModeFeed = 3,    // feed in the plane
  kModeLift = 4,    // lift out of the material
};

// Motion types, as the user's format templates see them.
enum MotionType : int {
  kTypeNone = -1,
  kTypeRapid = 0,
  kTypeLinear = 1,
  kTypeArcClockwise = 2,
  kTypeArcCounterClockwise = 3,
};

struct TOutputState {
  TOutputStream* Stream = nullptr;  // owned by the walk
  std::string FileName;             // the target path; also shown in header comments
  std::string MotionTemplate;       // user's format only: the template of the present mode
  int Format = 0;                   // format code 0..34
  int LineNumber = 0;               // running block number of the numbered formats
  int Slot = 0;                     // pen or section number handed to SelectTool
  int DxfColour = 0;                // DXF colour of the present tool
  int Tool = -1;                    // tool index, -1 when no tool is active
  int MotionMode = kModeRapid;
  int PrevMotionType = kTypeNone, MotionType = kTypeNone;
  float ScaleX = 1, ScaleY = 1;           // machine units per mm
  float ScaleZ = 1;                       // 0: this machine has no Z output
  float ScaleVxy = 1, ScaleVz = 1;        // factor on speeds; 0: no speed output
  float ZeroX = 0, ZeroY = 0, ZeroZ = 0;  // the board point that becomes machine zero
  // Position of the pen on the board; Z positive into the board, negative above it.
  float CurX = kUnknownPosition, CurY = kUnknownPosition, CurZ = kUnknownPosition;
  float ClearHeight = 0;  // ExportClearHeight
  float ZeroHeight = 0;   // ExportZeroHeight: down to here the tool still moves at rapid speed
  float LastPlungeZ = kUnknownPosition;  // depth of the last plunge (HPGL filters on it)
  float ClearSpeed = 0;                  // mm/s
  float PlungeSpeed = 0, FeedSpeed = 0;  // mm/s, set by SetToolSpeeds
  float LastV = 0;                       // mm/s, speed last written to the file
  float CurV = 0;                        // mm/s, speed wanted now
  bool UseArcs = true;                   // circles as arc commands; false gives polygons
};

}  // namespace isolith
