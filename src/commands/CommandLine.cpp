#include "commands/CommandLine.h"

#include "params/SettingsFile.h"

namespace isolith {

namespace {

// True when the upper-cased word ends in "." and the extension.
bool EndsWithExtension(const std::string& upper, std::string_view extension) {
  if (extension.empty() || upper.size() < 4) return false;
  const std::string tail = upper.substr(upper.size() - 4);
  return tail == "." + UpperAscii(extension);
}

struct FixedExtensions {
  const char* first;
  const char* second;
  int format;
};

constexpr FixedExtensions kFixed[] = {
    {"GRB", "GBR", kFormatGerber}, {"TOP", "BOT", kFormatAres},      {"CMP", "SOL", kFormatEagle},
    {"PHO", "ART", kFormatPads},   {"GB0", "GB1", kFormatWizard},    {"GTL", "GBL", kFormatProtel},
    {"WT5", "", kFormatWinTypon},  {"EXL", "DRL", kFormatExcellon1},
};

// Rows whose user extensions name a layer file, in the order they are tested.
constexpr ImportRow kUserRows[] = {kRowGerber, kRowAres,   kRowEagle,    kRowPads,
                                   kRowWizard, kRowProtel, kRowWinTypon, kRowExcellon};

int FormatOfRow(ImportRow row) {
  switch (row) {
    case kRowGerber:
      return kFormatGerber;
    case kRowAres:
      return kFormatAres;
    case kRowEagle:
      return kFormatEagle;
    case kRowPads:
      return kFormatPads;
    case kRowWizard:
      return kFormatWizard;
    case kRowProtel:
      return kFormatProtel;
    case kRowWinTypon:
      return kFormatWinTypon;
    default:
      return kFormatExcellon1;
  }
}

}  // namespace

int FormatOfCommandLineFile(const std::string& word, const Settings& settings) {
  const std::string upper = UpperAscii(word);
  for (const FixedExtensions& f : kFixed)
    if (EndsWithExtension(upper, f.first) || EndsWithExtension(upper, f.second)) return f.format;
  for (ImportRow row : kUserRows)
    for (const std::string& extension : settings.ImportFormat[row].Extension)
      if (EndsWithExtension(upper, extension)) return FormatOfRow(row);
  return 0;
}

CommandLineOptions ParseCommandLine(const std::vector<std::string>& words, Settings& settings,
                                    const std::function<bool(const std::string&)>& exists) {
  CommandLineOptions options;
  int notedLayerFormat = 0;
  for (const std::string& word : words) {
    const std::string upper = UpperAscii(word);
    const int format = FormatOfCommandLineFile(word, settings);
    if (format == kFormatExcellon1) {
      // A drill file takes the layer format seen so far as its drill format: the words never
      // choose an Excellon kind themselves.
      options.StartFile = word;
      settings.DrillImportFormat = notedLayerFormat;
    } else if (format != 0) {
      options.StartFile = word;
      settings.LayerImportFormat = format;
      notedLayerFormat = format;
    } else if (upper == "DEBUG") {
      options.DebugMode = true;
    } else if (upper == "SNAPSHOT") {
      options.Snapshot = true;
    } else if (upper == "NOSPLASH") {
      options.NoSplash = true;
    } else if (upper == "AUTOSTART") {
      options.AutoStart = true;
    } else if (upper == "AUTOMILL") {
      options.AutoMill = true;
    }
  }
  if (words.size() > 1 && !options.StartFile.empty() && !exists(options.StartFile))
    options.StartFile.clear();
  return options;
}

}  // namespace isolith
