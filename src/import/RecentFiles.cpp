#include "import/RecentFiles.h"

#include <cstdio>

namespace isolith {

namespace {

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

}  // namespace

void AddRecentFile(Settings& s, std::string_view folder, std::string_view name, int formatId) {
  const std::string path = Upper(std::string(folder) + std::string(name));
  int removed = kRecentFiles - 1;
  for (int i = 0; i < kRecentFiles; ++i)
    if (!s.RecentName[i].empty() && Upper(s.RecentPath[i] + s.RecentName[i]) == path) {
      removed = i;
      break;
    }
  for (int i = removed; i > 0; --i) {
    s.RecentPath[i] = s.RecentPath[i - 1];
    s.RecentName[i] = s.RecentName[i - 1];
    s.RecentFormat[i] = s.RecentFormat[i - 1];
  }
  s.RecentPath[0] = std::string(folder);
  s.RecentName[0] = std::string(name);
  s.RecentFormat[0] = formatId == 0 ? kFormatGerber : formatId;
}

int RecentFileCount(const Settings& s) {
  int n = 0;
  while (n < kRecentFiles && !s.RecentName[n].empty()) ++n;
  return n;
}

std::string RecentMenuText(const Settings& s, int index) {
  if (index < 0 || index >= kRecentFiles || s.RecentName[index].empty()) return {};
  char number[16];
  std::snprintf(number, sizeof number, "&%d - ", index + 1);
  return number + s.RecentName[index];
}

}  // namespace isolith
