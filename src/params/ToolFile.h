// Tool files: the program's own "Isolith.too" (compact form) and the suite's "Torvane.too" (full
// form), one "Key=Value" to a line, a "[Tool #n]" section line before each tool.
//
// Reading is an overlay: the keys of a file change only what they name, so slots and keys that
// the file does not mention keep what memory holds. A damaged file is never refused: unknown
// keys are dropped, numbers take their fallback and are clamped, and reading is byte by byte
// with bounded key and value lengths, so any file, binary or huge, reads safely.
#pragma once

#include <string>
#include <string_view>

#include "params/ToolLibrary.h"

namespace isolith {

inline constexpr const char* kToolBaseName = "Isolith";   // the program's own library
inline constexpr const char* kSuiteBaseName = "Torvane";  // the suite's shared library
inline constexpr const char* kToolExtension = "too";

// "directory" + "base" + ".too"; a separator is put between when the directory lacks one.
std::string ToolFilePath(const std::string& directory, const std::string& baseName);

// Reads the file over the table. The first slot gets a 1 mm diameter beforehand when it is
// empty, so the table is never wholly empty. False when the file cannot be opened (no message;
// the table is otherwise unchanged). The table is normalised after a read.
bool ReadTools(ToolTable& tools, const std::string& directory, const std::string& baseName);

// What ReadTools does once the file is open, over text already in memory.
void ReadToolsText(ToolTable& tools, std::string_view text);

// Reads the program's "Isolith.too" from `directory` and locks the plunge speeds
// (LockPlungeSpeeds), as at start-up and when the library dialog opens.
bool ReadToolLibrary(ToolTable& tools, const std::string& directory);

// The file text, byte for byte as WriteTools writes it (CR LF line ends), after normalising the
// table. The compact form keeps only Number, Name, Diameter, Profile, ConicalAngle,
// RotationSpeed, AbsDrillSpeed and RelDrillSpeed.
std::string FormatTools(ToolTable& tools, bool compact);

// Writes the table (normalised first) to a temporary file beside the target and renames it over
// the target once complete. False when it could not be written; the old file then stands.
bool WriteTools(ToolTable& tools, const std::string& directory, const std::string& baseName,
                bool compact);

}  // namespace isolith
