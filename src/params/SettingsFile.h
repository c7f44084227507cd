// The engine of the program's parameter files ("Isolith.ini" and its kin): lines of a key, an
// equals sign and a value, grouped under section lines that only the writer cares about.
//
// Reading streams the file through a fixed-size line buffer: a key keeps at most 40 characters
// and a value at most 255, so a damaged or binary file costs no more memory than a good one.
// Every number is read and written with "." as the decimal separator, whatever the locale.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace isolith {

inline constexpr int kMaxKeyLength = 40;
inline constexpr int kMaxValueLength = 255;
inline constexpr const char* kLineEnd = "\r\n";  // the files are text with CR LF line ends

// Called for each complete pair: the key upper-cased, the value as it stands.
using SettingsPairHandler = std::function<void(std::string_view key, std::string_view value)>;

// Splits text into pairs by the reading rules: characters below 32 are dropped; before the
// first "=" characters go to the key (up to 40), after it to the value (up to 255), the rest of
// a long line is dropped; a line feed ends the line and the pair counts only when an "=" was
// seen. A last line without a line feed does not count; section lines have no "=" and vanish.
class SettingsLineReader {
 public:
  explicit SettingsLineReader(SettingsPairHandler handler) : handler_(std::move(handler)) {}
  void Feed(std::string_view bytes);

 private:
  SettingsPairHandler handler_;
  std::string key_;
  std::string value_;
  bool seenEquals_ = false;
};

// Streams a whole file through the reader; false when it cannot be opened.
bool ReadSettingsFile(const std::string& path, const SettingsPairHandler& handler);

// Upper-cases ASCII letters only; other bytes stay as they are.
std::string UpperAscii(std::string_view text);

// A float: "AUTO" and "NONE" give the fallback as it stands; otherwise the number at the start
// of the text (up to the first character that cannot continue it, a comma for instance), with 0
// or no number giving the fallback, then clamped to [minimum, maximum].
float ReadFloatValue(std::string_view text, float fallback, float minimum, float maximum);
// The same for whole numbers (the digits at the start, as a plain C conversion takes them).
int32_t ReadIntValue(std::string_view text, int32_t fallback, int32_t minimum, int32_t maximum);
// The same, the number taken as an unsigned 32-bit value for the clamp (so "-1" is huge).
uint32_t ReadUnsignedValue(std::string_view text, uint32_t fallback, uint32_t minimum,
                           uint32_t maximum);
// "AUTO" and "NONE" give 1 (automatic); otherwise the text after its first two characters is
// read as hexadecimal; when it holds no hexadecimal number the value stays.
void ReadColourValue(std::string_view text, uint32_t& value);
// The text after its first two characters as hexadecimal; the value stays when unreadable.
void ReadHexValue(std::string_view text, uint32_t& value);
// "YES" true, "NO" false (any case); any other text leaves the value unchanged.
void ReadYesNoValue(std::string_view text, bool& value);
// "RECTANGLE" 1, "OBROUND" 2, "OCTAGON" 3 (any case), anything else 0.
void ReadPadShapeValue(std::string_view text, uint8_t& value);
// A whole number; above 32 it becomes 0.
uint8_t ReadSmallNumberValue(std::string_view text);
// True when the first character is "1".
bool ReadFlagValue(std::string_view text);

// "%.6f" with trailing zeros and a trailing point removed.
std::string FormatFloat(double value);

// The writers append one line to `out`. A numeric value of exactly 0 is written as `zeroText`.
void WriteSectionLine(std::string& out, std::string_view name, bool blankLineFirst);
void WriteTextLine(std::string& out, std::string_view key, std::string_view value);
void WriteFloatLine(std::string& out, std::string_view key, float value, std::string_view zeroText);
void WriteIntLine(std::string& out, std::string_view key, int32_t value, std::string_view zeroText);
void WriteUnsignedLine(std::string& out, std::string_view key, uint32_t value,
                       std::string_view zeroText);
void WriteColourLine(std::string& out, std::string_view key, uint32_t value);
void WriteYesNoLine(std::string& out, std::string_view key, bool value);
void WriteHexLine(std::string& out, std::string_view key, uint32_t value);
void WritePadShapeLine(std::string& out, std::string_view key, uint8_t value);

// Writes `content` to a temporary file beside `path` and renames it over `path` once it is
// complete and flushed to disk. False when any step fails; the old file then stands untouched
// and the temporary file is removed. A read-only target is replaced all the same.
bool WriteFileAtomically(const std::string& path, std::string_view content);

}  // namespace isolith
