// The table of "Isolith.ini": its sections in file order, and for each key how it is read, how
// it is written and which value in memory it stands for. Reading, writing and the command-line
// overrides all go through this one table, so they cannot drift apart.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "params/Settings.h"

namespace isolith {

struct SettingsKey {
  std::string name;                // as written, mixed case
  const char* zeroText = nullptr;  // numeric keys: what is written for 0; nullptr otherwise
  // Reads the value text into the record; empty for a key that is only written.
  std::function<void(Settings&, std::string_view)> read;
  // Appends the key's line(s); empty for a key that is only read.
  std::function<void(std::string&, const Settings&)> write;
  // Whether two records hold the same value for what `read` changes, and copying that value.
  std::function<bool(const Settings&, const Settings&)> same;
  std::function<void(Settings&, const Settings&)> copy;
};

struct SettingsSection {
  std::string name;
  std::vector<SettingsKey> keys;
};

// The sections before "Apertures", in file order, keys in file order.
const std::vector<SettingsSection>& SettingsTable();

// The key of that upper-case name, or nullptr.
const SettingsKey* FindSettingsKey(std::string_view upperKey);

// An aperture key: "PADSHAPE", "PADSIZEX", "PADSIZEY", "PADDRILL" or "TRACKWIDTH" followed by a
// number. Sets `field` (0..4 in that order) and `code` (the number behind the prefix, as a C
// conversion reads it, which may be outside 1..100). False for any other key.
bool SplitApertureKey(std::string_view upperKey, int& field, int& code);

// A key and a value given apart from a file, made what the file reader would hold: characters
// below 32 dropped, the key upper-cased and cut to 40 characters, the value cut to 255.
std::string ReaderKey(std::string_view key);
std::string ReaderValue(std::string_view value);

}  // namespace isolith
