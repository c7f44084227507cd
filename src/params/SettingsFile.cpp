#include "params/SettingsFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace isolith {

void SettingsLineReader::Feed(std::string_view bytes) {
  for (char ch : bytes) {
    const auto code = static_cast<unsigned char>(ch);
    if (code == '\n') {
      if (seenEquals_) handler_(key_, value_);
      key_.clear();
      value_.clear();
      seenEquals_ = false;
      continue;
    }
    if (code < 32) continue;
    if (!seenEquals_ && code == '=') {
      seenEquals_ = true;
      continue;
    }
    if (!seenEquals_) {
      if (key_.size() < kMaxKeyLength)
        key_.push_back(static_cast<char>(code >= 'a' && code <= 'z' ? code - 32 : code));
    } else if (value_.size() < kMaxValueLength) {
      value_.push_back(ch);
    }
  }
}

bool ReadSettingsFile(const std::string& path, const SettingsPairHandler& handler) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) return false;
  SettingsLineReader reader(handler);
  char buffer[4096];
  size_t got;
  while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) reader.Feed({buffer, got});
  std::fclose(file);
  return true;
}

std::string UpperAscii(std::string_view text) {
  std::string upper(text);
  for (char& ch : upper) {
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
  }
  return upper;
}

namespace {

bool IsAutoWord(std::string_view text) {
  const std::string upper = UpperAscii(text);
  return upper == "AUTO" || upper == "NONE";
}

// Leading blanks are passed over, as the C conversions do.
std::string_view SkipBlanks(std::string_view text) {
  size_t pos = 0;
  while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
  return text.substr(pos);
}

// The number at the start of the text, 0 when there is none.
double LeadingDouble(std::string_view text) {
  text = SkipBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
    // A second sign is not a number.
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) return 0;
  }
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // Too large comes back as infinity, too small as zero, as the C conversion gives them.
    const std::string_view digits = text.substr(0, result.ptr - text.data());
    const bool tiny = digits.find_first_of("eE") != std::string_view::npos &&
                      digits.find('-', digits.find_first_of("eE")) != std::string_view::npos;
    value = tiny ? 0 : std::numeric_limits<double>::infinity();
  } else if (result.ec != std::errc()) {
    return 0;
  }
  if (std::isnan(value)) return 0;
  return negative ? -value : value;
}

// The whole number at the start of the text, held within the 32-bit range; 0 when none.
int64_t LeadingInteger(std::string_view text) {
  text = SkipBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  int64_t value = 0;
  for (char ch : text) {
    if (ch < '0' || ch > '9') break;
    value = value * 10 + (ch - '0');
    if (value > int64_t{1} << 32) value = int64_t{1} << 32;  // far enough to saturate below
  }
  value = negative ? -value : value;
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return value;
}

// Hexadecimal as "%X" reads it: blanks, a sign, an optional "0x", then at least one digit.
bool ReadHexNumber(std::string_view text, uint32_t& value) {
  text = SkipBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    const char next = text[2];
    if (std::isxdigit(static_cast<unsigned char>(next))) text.remove_prefix(2);
  }
  uint64_t number = 0;
  size_t digits = 0;
  for (char ch : text) {
    int digit;
    if (ch >= '0' && ch <= '9') {
      digit = ch - '0';
    } else if (ch >= 'a' && ch <= 'f') {
      digit = ch - 'a' + 10;
    } else if (ch >= 'A' && ch <= 'F') {
      digit = ch - 'A' + 10;
    } else {
      break;
    }
    ++digits;
    number = number > (std::numeric_limits<uint64_t>::max() >> 4)
                 ? std::numeric_limits<uint64_t>::max()
                 : (number << 4) | digit;
  }
  if (digits == 0) return false;
  if (negative) number = 0 - number;
  value = static_cast<uint32_t>(number);
  return true;
}

}  // namespace

float ReadFloatValue(std::string_view text, float fallback, float minimum, float maximum) {
  if (IsAutoWord(text)) return fallback;
  double value = LeadingDouble(text);
  if (value == 0) value = fallback;
  if (value < minimum) value = minimum;
  if (value > maximum) value = maximum;
  return static_cast<float>(value);
}

int32_t ReadIntValue(std::string_view text, int32_t fallback, int32_t minimum, int32_t maximum) {
  if (IsAutoWord(text)) return fallback;
  int64_t value = LeadingInteger(text);
  if (value == 0) value = fallback;
  if (value < minimum) value = minimum;
  if (value > maximum) value = maximum;
  return static_cast<int32_t>(value);
}

uint32_t ReadUnsignedValue(std::string_view text, uint32_t fallback, uint32_t minimum,
                           uint32_t maximum) {
  if (IsAutoWord(text)) return fallback;
  uint32_t value = static_cast<uint32_t>(static_cast<int32_t>(LeadingInteger(text)));
  if (value == 0) value = fallback;
  if (value < minimum) value = minimum;
  if (value > maximum) value = maximum;
  return value;
}

void ReadColourValue(std::string_view text, uint32_t& value) {
  if (IsAutoWord(text)) {
    value = 1;
    return;
  }
  ReadHexValue(text, value);
}

void ReadHexValue(std::string_view text, uint32_t& value) {
  if (text.size() <= 2) return;
  ReadHexNumber(text.substr(2), value);
}

void ReadYesNoValue(std::string_view text, bool& value) {
  const std::string upper = UpperAscii(text);
  if (upper == "YES") value = true;
  if (upper == "NO") value = false;
}

void ReadPadShapeValue(std::string_view text, uint8_t& value) {
  const std::string upper = UpperAscii(text);
  if (upper == "RECTANGLE") {
    value = 1;
  } else if (upper == "OBROUND") {
    value = 2;
  } else if (upper == "OCTAGON") {
    value = 3;
  } else {
    value = 0;
  }
}

uint8_t ReadSmallNumberValue(std::string_view text) {
  const int64_t value = LeadingInteger(text);
  return value > 32 ? 0 : static_cast<uint8_t>(value);
}

bool ReadFlagValue(std::string_view text) {
  return !text.empty() && text[0] == '1';
}

std::string FormatFloat(double value) {
  char buffer[400];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
  std::string text(buffer, result.ec == std::errc() ? result.ptr : buffer);
  if (text.find('.') != std::string::npos) {
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
  }
  return text;
}

namespace {

void AppendLine(std::string& out, std::string_view key, std::string_view value) {
  out.append(key);
  out.push_back('=');
  out.append(value);
  out.append(kLineEnd);
}

}  // namespace

void WriteSectionLine(std::string& out, std::string_view name, bool blankLineFirst) {
  if (blankLineFirst) out.append(kLineEnd);
  out.push_back('[');
  out.append(name);
  out.push_back(']');
  out.append(kLineEnd);
}

void WriteTextLine(std::string& out, std::string_view key, std::string_view value) {
  AppendLine(out, key, value);
}

void WriteFloatLine(std::string& out, std::string_view key, float value,
                    std::string_view zeroText) {
  if (value == 0) {
    AppendLine(out, key, zeroText);
  } else {
    AppendLine(out, key, FormatFloat(value));
  }
}

void WriteIntLine(std::string& out, std::string_view key, int32_t value,
                  std::string_view zeroText) {
  if (value == 0) {
    AppendLine(out, key, zeroText);
  } else {
    AppendLine(out, key, std::to_string(value));
  }
}

void WriteUnsignedLine(std::string& out, std::string_view key, uint32_t value,
                       std::string_view zeroText) {
  // Written with "%d", as the other whole numbers.
  WriteIntLine(out, key, static_cast<int32_t>(value), zeroText);
}

void WriteColourLine(std::string& out, std::string_view key, uint32_t value) {
  if (value == 1) {
    AppendLine(out, key, "Auto");
    return;
  }
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%06X", static_cast<unsigned>(value));
  AppendLine(out, key, buffer);
}

void WriteYesNoLine(std::string& out, std::string_view key, bool value) {
  AppendLine(out, key, value ? "Yes" : "No");
}

void WriteHexLine(std::string& out, std::string_view key, uint32_t value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%08X", static_cast<unsigned>(value));
  AppendLine(out, key, buffer);
}

void WritePadShapeLine(std::string& out, std::string_view key, uint8_t value) {
  switch (value) {
    case 1:
      AppendLine(out, key, "Rectangle");
      break;
    case 2:
      AppendLine(out, key, "Obround");
      break;
    case 3:
      AppendLine(out, key, "Octagon");
      break;
    default:
      AppendLine(out, key, "Circle");
      break;
  }
}

namespace {

// The permissions the new file gets: those of the file it replaces, made writable for its
// owner (a read-only file is replaced all the same), or the usual ones for a new file.
mode_t ModeForReplacement(const std::string& path) {
  struct stat info;
  if (::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode)) {
    return (info.st_mode & 07777) | S_IWUSR;
  }
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

bool WriteAll(int fd, std::string_view content) {
  const char* data = content.data();
  size_t left = content.size();
  while (left > 0) {
    const ssize_t written = ::write(fd, data, left);
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (written == 0) return false;
    data += written;
    left -= static_cast<size_t>(written);
  }
  return true;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, std::string_view content) {
  std::string temporary = path + ".XXXXXX";
  const int fd = ::mkstemp(temporary.data());
  if (fd < 0) return false;
  bool good = WriteAll(fd, content);
  good = good && ::fchmod(fd, ModeForReplacement(path)) == 0;
  good = good && ::fsync(fd) == 0;
  good = (::close(fd) == 0) && good;
  good = good && ::rename(temporary.c_str(), path.c_str()) == 0;
  if (!good) ::unlink(temporary.c_str());
  return good;
}

}  // namespace isolith
