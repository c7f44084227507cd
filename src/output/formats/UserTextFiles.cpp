#include "output/formats/UserTextFiles.h"

#include <cstdio>

namespace isolith {

std::vector<std::string> UserLinesOf(std::string_view text) {
  std::vector<std::string> lines;
  std::string line;
  for (char c : text) {
    if (c == '\n') {
      while (!line.empty() && line.back() == ' ') line.pop_back();
      lines.push_back(line);
      line.clear();
    } else if (static_cast<unsigned char>(c) >= 32 && line.size() < kUserLineLimit) {
      line.push_back(c);
    }
  }
  return lines;
}

std::optional<std::vector<std::string>> ReadUserLines(const std::string& folder,
                                                      std::string_view name) {
  std::string path = folder;
  if (!path.empty() && path.back() != '/') path.push_back('/');
  path.append(name);
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) return std::nullopt;
  std::string text;
  char buffer[4096];
  while (text.size() < kUserTextLimit) {
    const std::size_t n = std::fread(buffer, 1, sizeof buffer, file);
    if (n == 0) break;
    text.append(buffer, n);
  }
  std::fclose(file);
  if (text.size() > kUserTextLimit) text.resize(kUserTextLimit);
  std::vector<std::string> lines = UserLinesOf(text);
  if (lines.empty()) return std::nullopt;
  return lines;
}

}  // namespace isolith
