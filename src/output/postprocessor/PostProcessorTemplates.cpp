#include "output/postprocessor/PostProcessorTemplates.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "params/SettingsFile.h"

namespace isolith {

namespace {

// What the tags of one group note.
struct GroupTags {
  bool x = false, y = false, z = false, v = false, r = false, a = false;
};

void NoteTags(std::string_view group, GroupTags& tags) {
  for (size_t i = 0; i + 2 < group.size(); ++i) {
    if (group[i] != '<' || group[i + 2] != '>') continue;
    switch (group[i + 1]) {
      case 'x':
      case 'X':
        tags.x = true;
        break;
      case 'y':
      case 'Y':
        tags.y = true;
        break;
      case 'z':
      case 'Z':
        tags.z = true;
        break;
      case 'v':
      case 'V':
        tags.v = true;
        break;
      case 'r':
      case 'R':
        tags.r = true;
        break;
      case 'a':
      case 'A':
        tags.a = true;
        break;
      default:
        break;
    }
  }
}

}  // namespace

std::string ApplyOptionalGroups(std::string_view pattern, int prevType, int newType, double lastV,
                                double newV, double x0, double x1, double y0, double y1, double z0,
                                double z1) {
  std::string result;
  result.reserve(pattern.size());
  int groups = 0;
  GroupTags tags;
  size_t pos = 0;
  while (pos < pattern.size()) {
    const char ch = pattern[pos];
    if (ch != '[') {
      result.push_back(ch);
      ++pos;
      continue;
    }
    const size_t close = pattern.find(']', pos + 1);
    const size_t end = close == std::string_view::npos ? pattern.size() : close;
    const std::string_view group = pattern.substr(pos + 1, end - pos - 1);
    ++groups;
    // R and A are kept from one group to the next within the template.
    tags.x = tags.y = tags.z = tags.v = false;
    NoteTags(group, tags);
    const bool changeGroup =
        groups == 1 && !(tags.x && tags.y && tags.z && tags.v && tags.r && tags.a);
    const bool xChanged = x0 != x1, yChanged = y0 != y1;
    const bool keep = (changeGroup && prevType != newType) || (tags.x && xChanged) ||
                      (tags.y && yChanged) || (tags.z && z0 != z1) || (tags.v && lastV != newV) ||
                      ((tags.r || tags.a) && (xChanged || yChanged));
    if (keep) result.append(group);
    pos = close == std::string_view::npos ? pattern.size() : close + 1;
  }
  return result;
}

std::string FormatTagValue(double value, const TNumberFormat& format, bool noZeros, bool hexa) {
  if (hexa) {
    // Truncated to a whole number, held within the 32-bit range, shown as "%X" shows it.
    double whole = std::isnan(value) ? 0 : std::trunc(value);
    whole = std::clamp(whole, -2147483648.0, 2147483647.0);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%X", static_cast<unsigned>(static_cast<int32_t>(whole)));
    return buffer;
  }
  const int left = std::clamp(format.leftDigits, 0, kNumberFormatDigits);
  const int right = std::clamp(format.rightDigits, 0, kNumberFormatDigits);
  // Large enough for any double in fixed notation with 12 decimals.
  char buffer[400];
  const auto done =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, right);
  std::string text = done.ec == std::errc() ? std::string(buffer, done.ptr) : "0";
  if (left >= 2) {
    // "% W.Rf": a blank in place of a plus sign, then blanks up to the width.
    if (text[0] != '-') text.insert(text.begin(), ' ');
    const size_t width = static_cast<size_t>(left + right + (right != 0 ? 1 : 0));
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
  }
  if (noZeros && text.find('.') != std::string::npos) {
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
  }
  if (format.pad != ' ') {
    for (char& ch : text) {
      if (ch != ' ') break;
      ch = format.pad;
    }
  }
  std::replace(text.begin(), text.end(), '.', format.decimalChar);
  return text;
}

void SubstituteTag(std::string& line, std::string_view tag, double value,
                   const TNumberFormat& format, bool noZeros, bool hexa) {
  constexpr size_t kLongestTag = 9;
  const std::string wanted = UpperAscii(tag);
  std::string result;
  result.reserve(line.size());
  size_t pos = 0;
  while (pos < line.size()) {
    if (line[pos] != '<') {
      result.push_back(line[pos++]);
      continue;
    }
    const size_t limit = std::min(line.size(), pos + 2 + kLongestTag);
    size_t close = pos + 1;
    while (close < limit && line[close] != '>') ++close;
    if (close < limit &&
        UpperAscii(std::string_view(line).substr(pos + 1, close - pos - 1)) == wanted) {
      result.append(FormatTagValue(value, format, noZeros, hexa));
      pos = close + 1;
    } else {
      result.push_back('<');
      ++pos;
    }
  }
  line = std::move(result);
}

}  // namespace isolith
