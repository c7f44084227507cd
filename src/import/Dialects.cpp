#include "import/Dialects.h"

#include <array>

namespace isolith {

namespace {

constexpr std::array<DialectInfo, kImportRows> kDialects = {{
    {kFormatGerber,
     "Grb",
     "Gerber Scientific Intruments Flasher",
     "GERBER",
     {"grb", "gbr"},
     {"grb", "gbr"}},
    {kFormatAres, "Ars", "Ares Gerber File", "ARES", {"top", "bot"}, {"top", "bot"}},
    {kFormatEagle, "Eag", "Eagle Gerber File", "EAGLE", {"cmp", "sol"}, {"cmp", "sol"}},
    {kFormatOrcad, "Orc", "Orcad Gerber File", "ORCAD", {"top", "bot"}, {"top", "bot"}},
    {kFormatOsmond, "Osm", "Osmond Gerber File", "OSMOND", {"grb", "gbr"}, {"cmp", "sol"}},
    {kFormatPads, "Pds", "Pads Gerber File", "PADS", {"pho", "art"}, {"pho", "art"}},
    {kFormatWizard, "Wiz", "PCB-Wizard Gerber File", "PCB-WIZARD", {"gb0", "gb1"}, {"gb0", "gb1"}},
    {kFormatProtel, "Ptl", "Protel Gerber File", "PROTEL", {"gtl", "gbl"}, {"gtl", "gbl"}},
    {kFormatWinTypon, "Wty", "WinTypon-5 File", "WINTYPON", {"wt5", ""}, {"wt5", ""}},
    {kFormatExcellon1,
     "Exl",
     "Excellon-Automation, no trailing zeros",
     "EXCELLON",
     {"exl", "drl"},
     {"exl", "drl"}},
}};

constexpr const char* kExcellon2Text = "Excellon-Automation, basic co-ordinates";

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

bool SameWithoutCase(std::string_view a, std::string_view b) {
  return Upper(a) == Upper(b);
}

// The two user extensions of a row, flattened: entry 2 * row + slot.
std::string* HistoryEntry(Settings& s, int index) {
  if (index < 0 || index >= 2 * kImportRows) return nullptr;
  return &s.ImportFormat[index / 2].Extension[index % 2];
}

}  // namespace

const DialectInfo& Dialect(int row) {
  if (row < 0 || row >= kImportRows) row = kRowGerber;
  return kDialects[row];
}

int ReaderRow(int formatId) {
  const int row = ImportRowOfFormat(formatId);
  return row < 0 ? kRowGerber : row;
}

FileFilter MakeFilter(std::string_view text, std::string_view ext1, std::string_view ext2,
                      std::string_view ext3, std::string_view ext4) {
  FileFilter filter;
  std::string shown, patterns;
  for (std::string_view ext : {ext1, ext2, ext3, ext4}) {
    if (ext.empty()) continue;
    if (!shown.empty()) {
      shown += " / *.";
      patterns += ";*.";
    }
    shown += Upper(ext);
    patterns += ext;
  }
  filter.description = std::string(text) + "  (*." + shown + ")";
  filter.patterns = "*." + patterns;
  return filter;
}

void AddFilter(std::string& buffer, std::string_view text, std::string_view ext1,
               std::string_view ext2, std::string_view ext3, std::string_view ext4) {
  const FileFilter f = MakeFilter(text, ext1, ext2, ext3, ext4);
  buffer += f.description + "|" + f.patterns + "|";
}

std::vector<FileFilter> LayerFilters(const Settings& settings, bool drillLayer) {
  std::vector<FileFilter> filters;
  filters.push_back(MakeFilter("All files", "*", "", "", ""));
  if (drillLayer) {
    const auto& user = settings.ImportFormat[kRowExcellon].Extension;
    filters.push_back(
        MakeFilter(kDialects[kRowExcellon].filterText, "exl", "drl", user[0], user[1]));
    filters.push_back(MakeFilter(kExcellon2Text, "drl", "exl", user[0], user[1]));
    return filters;
  }
  for (int row = kRowGerber; row <= kRowWinTypon; ++row) {
    const DialectInfo& d = kDialects[row];
    const auto& user = settings.ImportFormat[row].Extension;
    filters.push_back(MakeFilter(d.filterText, d.filterExt[0], d.filterExt[1], user[0], user[1]));
  }
  return filters;
}

int FilterRowOfFormat(int formatId, bool drillLayer) {
  if (drillLayer) {
    if (formatId == kFormatExcellon1) return 2;
    if (formatId == kFormatExcellon2) return 3;
    return 1;
  }
  if (formatId == kFormatGerber) return 2;
  if (formatId >= kFormatAres && formatId <= kFormatWinTypon) return formatId - kFormatAres + 3;
  return 1;
}

int FormatOfFilterRow(int filterRow, bool drillLayer) {
  if (drillLayer) return filterRow == 3 ? kFormatExcellon2 : kFormatExcellon1;
  if (filterRow == 2) return kFormatGerber;
  if (filterRow >= 3 && filterRow <= 10) return kFormatAres + filterRow - 3;
  return 0;
}

ImportPathParts SplitImportPath(std::string_view path) {
  ImportPathParts parts;
  const size_t slash = path.find_last_of('/');
  const size_t nameStart = slash == std::string_view::npos ? 0 : slash + 1;
  parts.folder = std::string(path.substr(0, nameStart));
  parts.name = std::string(path.substr(nameStart));
  const size_t dot = parts.name.find_last_of('.');
  if (dot != std::string::npos) {
    std::string_view after = std::string_view(parts.name).substr(dot + 1);
    if (after.size() > 3) after = after.substr(after.size() - 3);
    parts.extension = std::string(after);
  }
  return parts;
}

void RememberExtension(Settings& settings, int row, std::string_view extension) {
  if (row < 0 || row >= kImportRows || extension.empty()) return;
  const DialectInfo& d = kDialects[row];
  if (SameWithoutCase(extension, d.historyExt[0]) || SameWithoutCase(extension, d.historyExt[1]))
    return;
  std::string entry = Upper(extension.substr(0, 3));
  const int first = 2 * row;
  if (std::string* third = HistoryEntry(settings, first + 2))
    *third = *HistoryEntry(settings, first + 1);
  *HistoryEntry(settings, first + 1) = *HistoryEntry(settings, first);
  *HistoryEntry(settings, first) = std::move(entry);
}

}  // namespace isolith
