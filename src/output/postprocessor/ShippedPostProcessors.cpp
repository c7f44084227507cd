#include "output/postprocessor/ShippedPostProcessors.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "output/postprocessor/PostProcessorWords.h"
#include "params/Settings.h"
#include "params/SettingsFile.h"

namespace isolith {

std::vector<TShippedPostProcessor> ShippedPostProcessors(const std::string& programFolder) {
  namespace fs = std::filesystem;
  std::vector<TShippedPostProcessor> found;
  std::error_code error;
  // Beside the program in a build, under ../share/isolith/ once installed.
  fs::path folder = fs::path(programFolder) / kShippedPostFolder;
  if (!fs::is_directory(folder, error))
    folder = fs::path(programFolder) / ".." / "share" / "isolith" / kShippedPostFolder;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const fs::path& path = entry.path();
    if (path.extension() != std::string(".") + kPostProcessorExtension) continue;
    TPostProcessor pp;
    if (!entry.is_regular_file(error) || !ReadPostProcessor(pp, path.string(), "")) continue;
    found.push_back({path.stem().string(), pp.Title, path.string()});
  }
  std::sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  return found;
}

const TShippedPostProcessor* FindShippedPostProcessor(
    const std::vector<TShippedPostProcessor>& shipped, std::string_view name) {
  for (const TShippedPostProcessor& p : shipped)
    if (UpperAscii(p.name) == UpperAscii(name)) return &p;
  return nullptr;
}

bool LoadShippedPostProcessor(TPostProcessor& pp, const TShippedPostProcessor& shipped,
                              int speedUnit) {
  TPostProcessor read;
  if (!ReadPostProcessor(read, shipped.path, "")) return false;
  // Written for mm/s: the same mm/min come out whatever unit the settings hold.
  TPostProcessor unitOnly;
  unitOnly.ScaleV = 1;
  read.ScaleV = static_cast<float>(double(read.ScaleV) * PostSpeed(1, kSpeedMmPerS, unitOnly) /
                                   PostSpeed(1, speedUnit, unitOnly));
  pp = std::move(read);
  return true;
}

}  // namespace isolith
