// The pieces of the comments at the top of a file: the program's title, version and date, the
// file name, the date and time of writing, and the workpiece dimensions.
#pragma once

#include <cstdint>
#include <string>

#include "core/board/Board.h"
#include "output/driver/OutputState.h"

namespace isolith {

inline constexpr const char* kOutputTitle = "Isolith";
inline constexpr const char* kOutputVersion = "3";
inline constexpr const char* kOutputDate = "25/09/2008";

// "<title> <version> - <date>", the start of every comment line that names the program.
std::string ProgramLabel();

// The full path of the file, or "File" when there is none.
std::string FileLabel(const TOutputState& state);

// The local date "dd/mm/yyyy" and time "hh:mm" of `now`, seconds since the epoch.
std::string DateText(int64_t now);
std::string TimeText(int64_t now);

// "Workpiece dimensions: W x H x T mm", each number "%.3f" trimmed: the card's width and
// height times ScaleX and ScaleY, and |thickness times ScaleZ|.
std::string WorkpieceText(const Board& board, const TOutputState& state);

}  // namespace isolith
