// The user's own output format (format code 33): a set of line templates, scales and number
// formats, kept in a ".ppf" file. One record lives for the whole run; the run's own copy is the
// file "Isolith.ppf" in the configuration folder.
//
// Templates use a pair of backslashes as their line break, in memory and in the file alike.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace isolith {

inline constexpr const char* kPostProcessorBaseName = "Isolith";
inline constexpr const char* kPostProcessorExtension = "ppf";
inline constexpr const char* kPostProcessorSection = "Post-Processor";
// The line break of a template: two backslashes.
inline constexpr std::string_view kTemplateBreak = "\\\\";

// How many characters each text field holds.
inline constexpr size_t kTitleWidth = 50;
inline constexpr size_t kFileExtWidth = 5;
inline constexpr size_t kLineNbWidth = 19;
inline constexpr size_t kFileTopWidth = 500;
inline constexpr size_t kFileBottomWidth = 200;
inline constexpr size_t kTemplateWidth = 100;

// Limits of the numeric fields.
inline constexpr int32_t kLineNumberMax = 10000;  // BeginNb and IncNb
inline constexpr int32_t kEndNbMax = 2147483647;
inline constexpr double kScaleLimit = 1000000;    // scales of X..A and the offsets of X, Y, Z
inline constexpr double kAngleOffsetLimit = 360;  // OffsetA
inline constexpr int kNumberFormatDigits = 12;    // at most on each side of the point

// A number format: pad character, digits left of the point, decimal character, digits right.
// Written as text, "0.00" is a blank pad, one left digit, "." and two decimals; "000" pads with
// zeros to three digits.
struct TNumberFormat {
  char pad = ' ';
  int leftDigits = 1;
  char decimalChar = '.';
  int rightDigits = 0;
};

// The text of a number format: the pad repeated, the last of them "0", then the decimal
// character and as many "0" as decimals when there are any.
std::string NumberFormatText(const TNumberFormat& format);
// A number format from its text. The pad is the first character, except that a "0" followed by
// anything but "0" (or by nothing) gives a blank pad; the run of "0" or pad characters is the
// left digit count, the character after it the decimal character ("." when the text ends) and
// the run of "0" behind that the decimals. Counts are held to 1..12 on the left, 0..12 on the
// right. Any text gives a format.
TNumberFormat ParseNumberFormat(std::string_view text);

// Choices of `OriginXY`: the board point that becomes machine zero in the section walk.
enum OriginXYChoice : int {
  kOriginSouthWest = 0,
  kOriginNorthWest,
  kOriginSouthEast,
  kOriginNorthEast,
  kOriginCentre,
  kOriginCentreWest,
  kOriginCentreEast,
  kOriginCentreSouth,
  kOriginCentreNorth,
  kOriginRedCross,
  kOriginRedPoint,
  kOriginXYChoices
};
inline constexpr const char* kOriginXYTexts[kOriginXYChoices] = {
    "south-west",  "north-west",   "south-east",   "north-east", "centre",   "centre-west",
    "centre-east", "centre-south", "centre-north", "red cross",  "red point"};
// Choices of `OriginZ`: which face of the card is Z zero.
inline constexpr int kOriginZChoices = 2;
inline constexpr const char* kOriginZTexts[kOriginZChoices] = {"upper surface", "lower surface"};

// The post-processor, with the defaults of the "ISO standard" format.
struct TPostProcessor {
  std::string Title = "ISO standard";
  std::string FileExt = "iso";
  // Bytes put before and after every line; 0 is no byte.
  uint8_t Header1 = 0, Header2 = 0, Header3 = 0;
  uint8_t Trailer1 = 13, Trailer2 = 10, Trailer3 = 0;
  // Line numbering: each run of "0" in `LineNb` shows the number.
  std::string LineNb = "N0 ";
  int32_t BeginNb = 2;
  int32_t EndNb = 999999;
  int32_t IncNb = 1;
  std::string FileTop = "( Torvane / ISO Post-Processor )\\\\%1\\\\N1 G00 G90 G94 G71 G40 G54 G80";
  std::string FileBottom = "M02";
  std::string ToolChg = "T<T> M06";
  std::string SpindleOn = "M03 S<RPM>";
  std::string SpindleOff = "M05";
  // Edited, checked and kept, but never written by this program.
  std::string Home = "M34\\\\M33\\\\M32";
  std::string Delay = "G04T<cS>";
  std::string OutputOn, OutputOff;
  std::string OpenBuffer, CloseBuffer;
  float ScaleRPM = 1, ScaleS = 1;
  TNumberFormat FormatRPM{' ', 1, '.', 0};  // "0"
  TNumberFormat FormatS{' ', 1, '.', 0};    // "0"
  // Motion templates.
  std::string ClearV;
  std::string ClearXYZ = "G00[ F<V>][ X<X>][ Y<Y>][ Z<Z>]";
  std::string ActiveV;
  std::string PlungeZ = "G01[ F<V>][ Z<Z>]";
  std::string FeedXYZ = "G01[ F<V>][ X<X>][ Y<Y>][ Z<Z>]";
  std::string LiftUpZ = "G00[ F<V>][ Z<Z>]";
  bool Arcs = true;     // circles as one arc command
  bool NoZeros = true;  // trailing zeros after the decimal point suppressed
  bool RelCoords = false;
  bool Hexa = false;  // every number as a whole number in upper-case hexadecimal
  std::string FeedArc2 = "G02[ F<V>] I<CX> J<CY> X<X2> Y<Y2>";
  std::string FeedArc3 = "G03[ F<V>] I<CX> J<CY> X<X2> Y<Y2>";
  float ScaleX = 1, ScaleY = 1, ScaleZ = 1, ScaleV = 0.001f, ScaleR = 1, ScaleA = 1;
  TNumberFormat FormatXY{' ', 1, '.', 2};  // "0.00"
  TNumberFormat FormatZ{' ', 1, '.', 2};   // "0.00"
  TNumberFormat FormatV{' ', 1, '.', 3};   // "0.000"
  TNumberFormat FormatR{' ', 1, '.', 2};   // "0.00"
  TNumberFormat FormatA{' ', 1, '.', 1};   // "0.0"
  int32_t OriginXY = kOriginSouthWest;
  int32_t OriginZ = 0;
  float OffsetX = 0, OffsetY = 0, OffsetZ = 0;
  float OffsetA = 0;
};

// The path of a post-processor file: with an empty `name`, `folder` is the whole path;
// otherwise folder + name + "." + "ppf".
std::string PostProcessorPath(const std::string& folder, const std::string& name);

// The file's text: "[Post-Processor]", then one "Key=value" line per field in the record's
// order, CR LF line ends, floats "%.6f" with trailing zeros cut, "." whatever the locale.
std::string PostProcessorFileText(const TPostProcessor& pp);
// Reads "Key=value" lines into the record (keys in any case, a line split at its first "=",
// keys of at most 40 and values of at most 255 characters, control characters dropped, section
// lines and unknown keys passed over). A value that cannot be read, such as a number that is no
// number, leaves the field as it was; numbers are held to their field's limits and texts to
// their field's width.
void ReadPostProcessorText(TPostProcessor& pp, std::string_view text);

// Reads the file at PostProcessorPath(folder, name) into the record; false, with the record
// untouched, when the file cannot be opened.
bool ReadPostProcessor(TPostProcessor& pp, const std::string& folder, const std::string& name);
// Writes the record to PostProcessorPath(folder, name) through a temporary file beside it, which
// replaces the target (read-only or not) only once complete; false, with the old file still in
// place, when that fails.
bool WritePostProcessor(const TPostProcessor& pp, const std::string& folder,
                        const std::string& name);

}  // namespace isolith
