#include "params/Settings.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>

#include "params/SettingsFile.h"
#include "params/SettingsKeys.h"

namespace isolith {

int ImportRowOfFormat(int formatId) {
  switch (formatId) {
    case 0:
    case kFormatGerber:
      return kRowGerber;
    case kFormatExcellon1:
    case kFormatExcellon2:
      return kRowExcellon;
    default:
      if (formatId >= kFormatAres && formatId <= kFormatWinTypon) {
        return kRowAres + (formatId - kFormatAres);
      }
      return -1;
  }
}

std::string SettingsFilePath(const std::string& directory, const std::string& baseName) {
  std::string path = directory;
  if (!path.empty() && path.back() != '/') path.push_back('/');
  return path + baseName + "." + kSettingsExtension;
}

void FillHostFacts(Settings& settings, const std::string& installPath, int screenWidth,
                   int screenHeight) {
  settings.InstallPath = installPath;
  if (!settings.InstallPath.empty() && settings.InstallPath.back() != '/') {
    settings.InstallPath.push_back('/');
  }
  settings.ScreenWidth = screenWidth;
  settings.ScreenHeight = screenHeight;

  struct utsname host;
  int major = 0, minor = 0;
  std::string system = "Unknown";
  std::string machine;
  if (::uname(&host) == 0) {
    system = host.sysname;
    machine = host.machine;
    std::sscanf(host.release, "%d.%d", &major, &minor);
  }
  settings.OpSystem = system + " " + std::to_string(major) + "." + std::to_string(minor);
  // The processor names of the file go only as far as the first Pentium: every later x86 is
  // one of those, and anything else is unknown to them.
  if (machine == "i386") {
    settings.Processor = "80386";
  } else if (machine == "i486") {
    settings.Processor = "i486";
  } else if (machine == "i586" || machine == "i686" || machine == "x86_64") {
    settings.Processor = "Pentium";
  } else {
    settings.Processor = "Unknown";
  }
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  const unsigned long long bytes =
      pages > 0 && pageSize > 0
          ? static_cast<unsigned long long>(pages) * static_cast<unsigned long long>(pageSize)
          : 0;
  settings.PhysMemory = std::to_string(bytes / (1024 * 1024)) + " MB";
}

namespace {

// One pair of the file, as the reader takes it. Aperture keys need the tables; without them
// (an override) they are refused by the caller before coming here.
void ReadPair(std::string_view upperKey, std::string_view value, Settings& settings,
              const SettingsApertures* apertures) {
  if (const SettingsKey* key = FindSettingsKey(upperKey)) {
    if (key->read) key->read(settings, value);
    return;
  }
  int field = 0, code = 0;
  if (!apertures || !SplitApertureKey(upperKey, field, code)) return;
  if (code < 1 || code > kApertures) return;
  const int entry = code - 1;
  switch (field) {
    case 0:
      ReadPadShapeValue(value, apertures->PadShape[entry]);
      break;
    case 1:
      apertures->PadSizeX[entry] = ReadFloatValue(value, 0, 0, 100);
      break;
    case 2:
      apertures->PadSizeY[entry] = ReadFloatValue(value, 0, 0, 100);
      break;
    case 3:
      apertures->DrillDiameter[entry] = ReadFloatValue(value, 0, 0, 100);
      break;
    default:
      apertures->TrackWidth[entry] = ReadFloatValue(value, 0, 0, 100);
      break;
  }
}

}  // namespace

void ReadSettingsText(std::string_view text, Settings& settings,
                      const SettingsApertures& apertures) {
  SettingsLineReader reader([&](std::string_view key, std::string_view value) {
    ReadPair(key, value, settings, &apertures);
  });
  reader.Feed(text);
}

bool ReadSettings(const std::string& directory, const std::string& baseName, Settings& settings,
                  const SettingsApertures& apertures) {
  return ReadSettingsFile(SettingsFilePath(directory, baseName),
                          [&](std::string_view key, std::string_view value) {
                            ReadPair(key, value, settings, &apertures);
                          });
}

std::string FormatSettings(const Settings& settings, const SettingsApertures& apertures) {
  std::string out;
  bool first = true;
  for (const SettingsSection& section : SettingsTable()) {
    WriteSectionLine(out, section.name, !first);
    first = false;
    for (const SettingsKey& key : section.keys) {
      if (key.write) key.write(out, settings);
    }
  }
  WriteSectionLine(out, "Apertures", true);
  for (int entry = 0; entry < kApertures; ++entry) {
    if (!(apertures.PadSizeX[entry] > 0.01)) continue;
    const std::string code = std::to_string(entry + 1);
    WritePadShapeLine(out, "PadShape" + code, apertures.PadShape[entry]);
    WriteFloatLine(out, "PadSizeX" + code, apertures.PadSizeX[entry], "0");
    WriteFloatLine(out, "PadSizeY" + code, apertures.PadSizeY[entry], "0");
    WriteFloatLine(out, "PadDrill" + code, apertures.DrillDiameter[entry], "0");
  }
  for (int entry = 0; entry < kApertures; ++entry) {
    if (!(apertures.TrackWidth[entry] > 0.01)) continue;
    WriteFloatLine(out, "TrackWidth" + std::to_string(entry + 1), apertures.TrackWidth[entry], "0");
  }
  return out;
}

bool WriteSettings(const std::string& directory, const std::string& baseName,
                   const Settings& settings, const SettingsApertures& apertures) {
  return WriteFileAtomically(SettingsFilePath(directory, baseName),
                             FormatSettings(settings, apertures));
}

bool StartSettings(const std::string& directory, const std::string& baseName, Settings& settings,
                   const SettingsApertures& apertures) {
  const bool found = ReadSettings(directory, baseName, settings, apertures);
  if (settings.ImportPath.empty()) settings.ImportPath = settings.InstallPath;
  WriteSettings(directory, baseName, settings, apertures);
  return found;
}

namespace {

// True when the text is a number that is exactly zero ("0", "0.0", "-0", " 0,5" is not).
bool IsNumericZero(std::string_view text) {
  size_t pos = 0;
  while (pos < text.size() && text[pos] == ' ') ++pos;
  if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) ++pos;
  bool digit = false;
  for (; pos < text.size(); ++pos) {
    if (text[pos] == '0') {
      digit = true;
    } else if (text[pos] != '.') {
      return false;
    }
  }
  return digit;
}

}  // namespace

bool ApplySettingOverride(Settings& settings, std::string_view key, std::string_view value,
                          std::string& error) {
  const std::string upperKey = ReaderKey(key);
  std::string text = ReaderValue(value);
  const SettingsKey* found = FindSettingsKey(upperKey);
  if (!found) {
    int field = 0, code = 0;
    if (SplitApertureKey(upperKey, field, code)) {
      error = "Settings key \"" + std::string(key) +
              "\" is an aperture of the board and cannot be set here";
    } else {
      error = "Unknown settings key \"" + std::string(key) + "\"";
    }
    return false;
  }
  if (!found->read) {
    error = "Settings key \"" + found->name + "\" is written for information and never read";
    return false;
  }
  // A zero given for a number stands for the value 0 in memory, which the file holds as the
  // key's zero text: the run takes what that text reads back as, the value a restart would hold.
  if (found->zeroText && IsNumericZero(text)) text = found->zeroText;
  found->read(settings, text);
  return true;
}

}  // namespace isolith
