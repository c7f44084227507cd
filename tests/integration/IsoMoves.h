// Replays an ISO G-code file as the machine would run it, and gives back the paths that the tool
// cut: runs of linear feeds while the tool stands below the surface (Z below 0).
#pragma once

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace isolith::test {

struct CutPoint {
  double x, y;
};
using CutPath = std::vector<CutPoint>;

// Calls `block(words)` for each line of a G-code program that is not a comment or a "%", with
// a stream of its words.
template <typename Block>
void ForEachBlock(const std::string& program, Block block) {
  std::istringstream lines(program);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.empty() || line[0] == '(' || line[0] == '%') continue;
    std::istringstream words(line);
    block(words);
  }
}

inline std::vector<CutPath> IsoCuttingPaths(const std::string& program) {
  std::vector<CutPath> paths;
  double x = 0, y = 0, z = 1;
  bool feeding = false;
  ForEachBlock(program, [&](std::istringstream& words) {
    std::string word;
    double nx = x, ny = y, nz = z;
    bool moves = false;
    while (words >> word) {
      const char letter = word[0];
      const double value = std::strtod(word.c_str() + 1, nullptr);
      if (letter == 'G') feeding = value == 1;
      if (letter == 'G' && (value == 2 || value == 3)) feeding = false;  // drilled circles
      if (letter == 'X') nx = value, moves = true;
      if (letter == 'Y') ny = value, moves = true;
      if (letter == 'Z') nz = value;
    }
    const bool cutting = feeding && z < 0 && nz < 0 && moves;
    if (cutting) {
      if (paths.empty() || paths.back().empty() || paths.back().back().x != x ||
          paths.back().back().y != y)
        paths.push_back({{x, y}});
      paths.back().push_back({nx, ny});
    }
    if (nz != z && !paths.empty() && !paths.back().empty()) paths.push_back({});
    x = nx, y = ny, z = nz;
  });
  std::erase_if(paths, [](const CutPath& p) { return p.size() < 2; });
  return paths;
}

}  // namespace isolith::test
