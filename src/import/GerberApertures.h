// What a photoplot file says about its apertures: standard and macro aperture definitions, the
// macros themselves, and the aperture lists some files give in comments.
#pragma once

#include "core/board/Board.h"
#include "import/GerberState.h"

namespace isolith {

// Aperture flag bits of Board::ApertureFlags.
inline constexpr uint8_t kApertureShapeGiven = 0x01;
inline constexpr uint8_t kApertureSizeGiven = 0x02;
inline constexpr uint8_t kApertureHoleGiven = 0x04;

// The first definition of a file empties the tables it fills: the pad shapes and sizes of
// `layer`, or on layer 0 those of all circuit layers and the drill table too. Track widths stay.
// Only once per read.
void ClearTablesOnce(GerberReader& reader, Board& board, int layer);

// "%ADD": reader.pos is on the "A". A standard aperture (letter and ",") or a macro by name.
void DefineAperture(GerberReader& reader, Board& board, int layer);

// "%AM": reader.pos is on the "A". Takes the first free macro entry (the last one when none is
// free), names it, and waits for the body.
void OpenMacro(GerberReader& reader);

// The block after "%AM": its first primitive decides the macro's shape and size, and the macro
// is closed whatever the block holds.
void ReadMacroBody(GerberReader& reader);

// After "G04": reader.pos is on the last digit of the G word. "DCODE n SIZE s SHAPE w" in the
// comment defines aperture n; reader.pos is left on the last character used, so that the rest of
// the comment is scanned as codes.
void ReadListingComment(GerberReader& reader, Board& board, int layer);

}  // namespace isolith
