// The five most recent circuit files, newest first, kept in the settings.
#pragma once

#include <string>
#include <string_view>

#include "params/Settings.h"

namespace isolith {

// Puts a file that was read on layer 0 at the head of the list. The same file already in the
// list (the whole path compared in capitals) or, failing that, the oldest entry leaves it, the
// others move down one. A format of 0 ("All files") is kept as Gerber.
void AddRecentFile(Settings& settings, std::string_view folder, std::string_view name,
                   int formatId);

// The number of filled entries at the head of the list.
int RecentFileCount(const Settings& settings);

// The file menu's text of entry `index` (0-based): "&1 - NAME"; empty for an empty entry.
std::string RecentMenuText(const Settings& settings, int index);

}  // namespace isolith
