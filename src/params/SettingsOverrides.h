// Settings given for one run only (`isolith-cli --set Key=Value`), kept apart from the file.
//
// The application holds one `SettingsOverrides` beside its `Settings`:
//   StartSettings(folder, kSettingsBaseName, settings, apertures);  // file as it stands
//   overrides.Apply(settings);                    // after start-up and after every ReadSettings
//   WriteSettings(folder, kSettingsBaseName, overrides.ForFile(settings), apertures);
// `Apply` notes each overridden value as the file gave it and as the override made it;
// `ForFile` puts the file's value back for every key that still holds its overridden value, so
// the file never learns of an override, while a value the run itself changed later is saved.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "params/Settings.h"

namespace isolith {

class SettingsOverrides {
 public:
  // Adds one pair, checked at once: false with a one-line `error` for a key that cannot be set
  // (see ApplySettingOverride).
  bool Add(std::string_view key, std::string_view value, std::string& error);
  // The same from "Key=Value" (split at the first "="): a text without "=" is an error.
  bool AddAssignment(std::string_view assignment, std::string& error);

  // Applies every pair in the order given; the last pair of a key wins.
  void Apply(Settings& settings);
  // The record to write: `current` with the file's values for the overridden keys.
  Settings ForFile(const Settings& current) const;

  bool Empty() const { return pairs_.empty(); }
  const std::vector<std::pair<std::string, std::string>>& Pairs() const { return pairs_; }

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
  Settings beforeApply_;  // as the file gave them, at the last Apply
  Settings afterApply_;   // as the overrides made them
  bool applied_ = false;
};

}  // namespace isolith
