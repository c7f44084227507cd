// The drill file reader: turns the lines of an Excellon drill file into holes of the import
// list and sizes of the job's drill table. Drill files say little about their units and number
// format, so the reader works from the assumptions it is given, and the load flow
// (OpenExcellon.h) asks the person whether the result looks right.
#pragma once

#include <istream>

#include "core/board/Board.h"

namespace isolith {

// The two kinds of drill file, as the dialect table names them.
inline constexpr int kExcellonNoTrailingZeros = 17;   // numbers left-justified in six digits
inline constexpr int kExcellonBasicCoordinates = 18;  // numbers as written

// The assumptions a drill file is read with.
struct ExcellonFormat {
  int format = kExcellonNoTrailingZeros;  // 17 or 18; anything but 17 reads as written
  bool relative = false;                  // co-ordinates are increments
  bool metric = false;                    // the file starts in millimetres
  // The decimal format as whole digits, a point, decimals; 0 for automatic. Only the zero
  // suppression above changes how numbers read: this is carried for the dialog's sake.
  float digits = 0;
  float scaleIn = 0.1f;       // the dialect's co-ordinate scale ("ExlScaleIn")
  float drillScaleIn = 1.0f;  // the dialect's hole scale ("ExlDrillScaleIn")
};

// Appends every hole of `file` to `ImportDrills` (in file order, after what is there) and fills
// `DrillDiameter` and `ApertureFlags` from the tool sizes the file gives. Any bytes at all are
// read: what is not understood changes nothing, a number that is not one reads as 0, and every
// stored value is a finite float. Stops early when `StopImport` is set. Returns the number of
// holes appended.
int ReadExcellon(std::istream& file, const ExcellonFormat& format, Board& board);

}  // namespace isolith
