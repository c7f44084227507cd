#include "import/ExcellonHeader.h"

#include <string>
#include <string_view>

#include "import/ExcellonReader.h"

namespace isolith {

namespace {

constexpr size_t kHeaderBytes = 64 * 1024;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool StartsWith(std::string_view text, std::string_view word) {
  return text.substr(0, word.size()) == word;
}

// A line as the reader sees it: no blanks or control bytes, upper case.
std::string CleanLine(std::string_view raw) {
  std::string line;
  for (char c : raw) {
    auto u = static_cast<unsigned char>(c);
    if (u <= 0x20 || u >= 0x80) continue;
    if (u >= 'a' && u <= 'z') u = static_cast<unsigned char>(u - 'a' + 'A');
    line += static_cast<char>(u);
  }
  return line;
}

// The first hole ends the header: a line with an X or Y that is followed by a number, as the
// reader counts a position.
bool GivesPosition(std::string_view line) {
  for (size_t i = 0; i + 1 < line.size(); ++i) {
    if (line[i] == ';' || line[i] == '$') return false;  // a comment line, or its rest
    const char next = line[i + 1];
    if ((line[i] == 'X' || line[i] == 'Y') && (IsDigit(next) || next == '.' || next == '-'))
      return true;
  }
  return false;
}

// "M71" and the like, alone or followed by other words; never M710.
bool IsMCode(std::string_view line, std::string_view code) {
  return StartsWith(line, code) && (line.size() == code.size() || !IsDigit(line[code.size()]));
}

void NoteLine(std::string_view line, ExcellonHeader& header) {
  const bool inch = StartsWith(line, "INCH");
  const bool metric = StartsWith(line, "METRIC");
  if (inch || IsMCode(line, "M72") || IsMCode(line, "M70")) header.unit = HeaderUnit::Inch;
  if (metric || IsMCode(line, "M71")) header.unit = HeaderUnit::Metric;
  if (inch || metric) {
    // "INCH,TZ", "METRIC,LZ,000.000": the zero word stands among the unit's options.
    if (line.find(",TZ") != std::string_view::npos) header.zeros = HeaderZeros::TrailingKept;
    if (line.find(",LZ") != std::string_view::npos) header.zeros = HeaderZeros::LeadingKept;
  }
}

}  // namespace

ExcellonHeader ReadExcellonHeader(std::istream& file) {
  ExcellonHeader header;
  std::streambuf* bytes = file.rdbuf();
  if (!bytes) return header;
  std::string raw;
  for (size_t read = 0; read < kHeaderBytes; ++read) {
    const int c = bytes->sbumpc();
    const bool end = c == std::char_traits<char>::eof();
    if (!end && c != '\n' && c != '\r') {
      raw += static_cast<char>(c);
      continue;
    }
    const std::string line = CleanLine(raw);
    raw.clear();
    if (GivesPosition(line)) break;
    NoteLine(line, header);
    if (end) break;
  }
  return header;
}

std::optional<int> ZeroSuppressionAnswer(const ExcellonHeader& header) {
  switch (header.zeros) {
    case HeaderZeros::TrailingKept:
      return kExcellonBasicCoordinates;
    case HeaderZeros::LeadingKept:
      return kExcellonNoTrailingZeros;
    case HeaderZeros::Unstated:
      break;
  }
  return std::nullopt;
}

std::optional<bool> MetricAnswer(const ExcellonHeader& header) {
  if (header.unit == HeaderUnit::Unstated) return std::nullopt;
  return false;
}

}  // namespace isolith
