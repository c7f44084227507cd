// Reading the moves back out of an ISO file.
#pragma once

#include <string>
#include <vector>

namespace isolith::test {

inline std::vector<std::string> IsoLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t at; (at = text.find("\r\n", start)) != std::string::npos; start = at + 2)
    lines.push_back(text.substr(start, at - start));
  return lines;
}

// Rapids in the plane and feeds, with their F words taken out.
inline std::vector<std::string> IsoMoves(const std::string& text) {
  std::vector<std::string> moves;
  for (std::string line : IsoLines(text)) {
    if (line.rfind("G00 X", 0) != 0 && line.rfind("G00 Y", 0) != 0 && line.rfind("G01", 0) != 0)
      continue;
    if (line.find(" Z") != std::string::npos) continue;
    const std::size_t f = line.find(" F");
    if (f != std::string::npos) line.erase(f, line.find(' ', f + 1) - f);
    moves.push_back(line);
  }
  return moves;
}

}  // namespace isolith::test
