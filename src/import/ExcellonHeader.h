// What the header of a drill file says about its own numbers, read the way a person reads it
// before answering the "Excellon import" dialog. The desktop leaves this reading to the person;
// the command line, which has nobody to ask, uses it for its "auto" answers.
#pragma once

#include <istream>
#include <optional>

namespace isolith {

enum class HeaderUnit {
  Unstated,
  Inch,    // "INCH", M70 or M72
  Metric,  // "METRIC" or M71
};

enum class HeaderZeros {
  Unstated,
  LeadingKept,   // ",LZ": numbers keep their leading zeros and leave out trailing ones
  TrailingKept,  // ",TZ": numbers keep their trailing zeros and leave out leading ones
};

struct ExcellonHeader {
  HeaderUnit unit = HeaderUnit::Unstated;
  HeaderZeros zeros = HeaderZeros::Unstated;
};

// Reads the lines before the first hole (at most the first 64 KiB of the file) and notes the
// unit and zero words they give; where they repeat, the last one stands, as it would for the
// reader. Any bytes at all are accepted; a header that says nothing gives `Unstated`.
ExcellonHeader ReadExcellonHeader(std::istream& file);

// The "Zero suppression :" answer for what the header says: a file that keeps its trailing
// zeros writes its numbers in full at the right and is read as written ("&trailing", format
// 18); one that keeps its leading zeros is left-justified in six digits ("&leading", format 17).
// Empty when the header does not say.
std::optional<int> ZeroSuppressionAnswer(const ExcellonHeader& header);

// The "Units :" answer for what the header says: "i&mperial" (false) whenever the header names
// its unit, because the reader starts from inches and follows the file's own METRIC or M71 word
// from there, whereas with "&metric" it would no longer follow them and would keep the inch
// scale. Empty when the header does not say.
std::optional<bool> MetricAnswer(const ExcellonHeader& header);

}  // namespace isolith
