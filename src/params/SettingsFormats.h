// How the settings file names a dialect (import format) and an output format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace isolith {

// "GERBER" 19, "ARES" 29, ... "WINTYPON" 36, "EXCELLON-1" 17, "EXCELLON-2" 18 (any case);
// any other text gives `fallback`.
int32_t ReadImportFormatValue(std::string_view text, int32_t fallback);
// The written name of a dialect id ("Gerber", "PCB-Wizard", "Excellon-1", ...). An id that has
// no name is tried again with `fallback`, and when that has none either, "Gerber" stands.
std::string ImportFormatName(int32_t id, int32_t fallback);
void WriteImportFormatLine(std::string& out, std::string_view key, int32_t id, int32_t fallback);

// The default extension of an output format code 0..34 ("tvn", "oxb", "plt", ...); empty for a
// code outside the table.
std::string_view OutputFormatExtension(int32_t code);
// "TVN" 0, then the extensions of codes 1 upward (the first equal one wins, so codes that share
// an extension come back as the first of them), then "POST-PROCESSOR" 33; anything else 1.
int32_t ReadOutputFormatValue(std::string_view text);
// 0 as "TVN", 33 as "POST-PROCESSOR", the others as their extension in upper case. A code
// outside the table is written as code 1, which is what the reader makes of it anyway.
std::string OutputFormatName(int32_t code);
void WriteOutputFormatLine(std::string& out, std::string_view key, int32_t code);

}  // namespace isolith
