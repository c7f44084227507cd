#include "params/SettingsOverrides.h"

#include "params/SettingsKeys.h"

namespace isolith {

bool SettingsOverrides::Add(std::string_view key, std::string_view value, std::string& error) {
  Settings scratch;
  if (!ApplySettingOverride(scratch, key, value, error)) return false;
  pairs_.emplace_back(std::string(key), std::string(value));
  return true;
}

bool SettingsOverrides::AddAssignment(std::string_view assignment, std::string& error) {
  const size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    error = "Setting \"" + std::string(assignment) + "\" is not of the form Key=Value";
    return false;
  }
  return Add(assignment.substr(0, equals), assignment.substr(equals + 1), error);
}

void SettingsOverrides::Apply(Settings& settings) {
  beforeApply_ = settings;
  std::string ignored;
  for (const auto& [key, value] : pairs_) ApplySettingOverride(settings, key, value, ignored);
  afterApply_ = settings;
  applied_ = true;
}

Settings SettingsOverrides::ForFile(const Settings& current) const {
  Settings file = current;
  if (!applied_) return file;
  for (const auto& pair : pairs_) {
    const SettingsKey* key = FindSettingsKey(ReaderKey(pair.first));
    if (key && key->same(current, afterApply_)) key->copy(file, beforeApply_);
  }
  return file;
}

}  // namespace isolith
