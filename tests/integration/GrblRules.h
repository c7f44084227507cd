// The rules by which GRBL 1.1 refuses a line, as far as a file of ours can break them, each with
// the number of GRBL's own error message. No GRBL build runs on this machine, so the rules are
// written down from GRBL's list of supported commands and errors.
#pragma once

#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace isolith::test {

enum GrblError {
  kGrblNoLetter = 1,           // a character that starts no word
  kGrblBadNumber = 2,          // a word without its number
  kGrblNegative = 4,           // F, S, T, P or N below zero
  kGrblLineOverflow = 11,      // more than 79 characters once blanks and comments are gone
  kGrblUnsupported = 20,       // a G or M command GRBL does not have
  kGrblModalGroup = 21,        // two commands of one modal group
  kGrblNoFeedRate = 22,        // a feed move before any F
  kGrblRepeatedWord = 25,      // a value word twice in a line
  kGrblNoAxisWords = 26,       // an arc without its end point
  kGrblMissingValue = 28,      // G4 without P, an arc without its centre
  kGrblUnusedWords = 36,       // I, J, K, R, P, L that no command of the line uses
  kGrblToolNumberTooHigh = 38  // T above 255
};

struct GrblFault {
  int line;
  int error;
};

// The modal group of a G command (times ten, so that 91.1 is 911), or -1 when unsupported.
inline int GrblGGroup(int g10) {
  static const std::map<int, int> groups = {
      {0, 1},    {10, 1},   {20, 1},   {30, 1},   {382, 1},  {383, 1}, {384, 1},  {385, 1},
      {800, 1},  {170, 2},  {180, 2},  {190, 2},  {900, 3},  {910, 3}, {911, 4},  {930, 5},
      {940, 5},  {200, 6},  {210, 6},  {400, 7},  {431, 8},  {490, 8}, {540, 12}, {550, 12},
      {560, 12}, {570, 12}, {580, 12}, {590, 12}, {610, 13}, {40, 0},  {100, 0},  {280, 0},
      {281, 0},  {300, 0},  {301, 0},  {530, 0},  {920, 0},  {921, 0}};
  const auto it = groups.find(g10);
  return it == groups.end() ? -1 : it->second;
}

inline int GrblMGroup(int m) {
  static const std::map<int, int> groups = {{0, 4}, {1, 4}, {2, 4}, {30, 4}, {3, 7}, {4, 7},
                                            {5, 7}, {7, 8}, {8, 8}, {9, 8},  {56, 9}};
  const auto it = groups.find(m);
  return it == groups.end() ? -1 : it->second;
}

// Every line of `program` that GRBL 1.1 would refuse, in order.
inline std::vector<GrblFault> GrblFaults(const std::string& program) {
  std::vector<GrblFault> faults;
  bool feedRateSet = false;
  int motion = 0;  // G0 at power-up
  std::istringstream lines(program);
  std::string raw;
  for (int number = 1; std::getline(lines, raw); ++number) {
    auto fault = [&](int error) { faults.push_back({number, error}); };
    // Blanks, comments in parentheses and after ";" go before GRBL counts or parses.
    std::string line;
    for (size_t i = 0; i < raw.size() && raw[i] != ';'; ++i) {
      if (raw[i] == '(') {
        while (i < raw.size() && raw[i] != ')') ++i;
      } else if (raw[i] != ' ' && raw[i] != '\r' && raw[i] != '\t') {
        line.push_back(raw[i]);
      }
    }
    if (line.empty()) continue;
    if (line.size() > 79) {
      fault(kGrblLineOverflow);
      continue;
    }
    std::set<int> groups;
    std::set<char> words;
    bool dwell = false, bad = false;
    size_t i = 0;
    while (i < line.size() && !bad) {
      const char letter = line[i++];
      // A number as GRBL reads it: a sign, digits and one point.
      size_t used = 0;
      if (i + used < line.size() && (line[i] == '-' || line[i] == '+')) ++used;
      while (i + used < line.size() &&
             (std::isdigit(static_cast<unsigned char>(line[i + used])) || line[i + used] == '.'))
        ++used;
      const double value = used ? std::strtod(line.substr(i, used).c_str(), nullptr) : 0;
      if (!std::isalpha(static_cast<unsigned char>(letter))) {
        fault(kGrblNoLetter), bad = true;
      } else if (used == 0) {
        fault(kGrblBadNumber), bad = true;
      } else if (letter == 'G' || letter == 'M') {
        const int code = letter == 'G' ? static_cast<int>(std::lround(value * 10))
                                       : static_cast<int>(std::lround(value));
        const int group = letter == 'G' ? GrblGGroup(code) : GrblMGroup(code) + 100;
        if (group < 0 || group == 99) {
          fault(kGrblUnsupported), bad = true;
        } else if (!groups.insert(group).second) {
          fault(kGrblModalGroup), bad = true;
        }
        if (letter == 'G' && group == 1) motion = code / 10;
        dwell = dwell || (letter == 'G' && code == 40);
      } else if (std::string("FIJKLNPRSTXYZ").find(letter) == std::string::npos) {
        fault(kGrblUnsupported), bad = true;
      } else if (!words.insert(letter).second) {
        fault(kGrblRepeatedWord), bad = true;
      } else if (value < 0 && std::string("FNPST").find(letter) != std::string::npos) {
        fault(kGrblNegative), bad = true;
      } else if (letter == 'T' && value > 255) {
        fault(kGrblToolNumberTooHigh), bad = true;
      }
      i += used;
    }
    if (bad) continue;
    if (words.count('F')) feedRateSet = true;
    const bool axes = words.count('X') || words.count('Y') || words.count('Z');
    const bool arc = motion == 2 || motion == 3;
    const bool centre = words.count('I') || words.count('J') || words.count('R');
    if (dwell && !words.count('P')) {
      fault(kGrblMissingValue);
    } else if (axes && motion != 0 && !feedRateSet) {
      fault(kGrblNoFeedRate);
    } else if (arc && groups.count(1) && !axes) {
      fault(kGrblNoAxisWords);
    } else if (arc && axes && !centre) {
      fault(kGrblMissingValue);
    } else if ((centre && !(arc && axes)) || (words.count('P') && !dwell) || words.count('L')) {
      fault(kGrblUnusedWords);
    }
  }
  return faults;
}

}  // namespace isolith::test
