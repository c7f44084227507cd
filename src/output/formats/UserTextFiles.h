// The user's header and footer files ("HPGL-Top.txt", "ISO-Bottom.txt" and their like) in the
// program folder, which replace the default words of a format's top or bottom when they hold
// at least one complete line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace isolith {

// A file is read up to this size; anything behind it is not looked at.
inline constexpr std::size_t kUserTextLimit = 1 << 20;
// Characters kept of one line.
inline constexpr std::size_t kUserLineLimit = 255;

// The complete lines of the file `name` in `folder`: characters below 32 skipped, each line
// ended by its LF, cut to 255 characters and cut of trailing blanks; the text after the last
// LF ignored. Nothing when the file cannot be read or holds no complete line.
std::optional<std::vector<std::string>> ReadUserLines(const std::string& folder,
                                                      std::string_view name);

// The same reading over text in memory.
std::vector<std::string> UserLinesOf(std::string_view text);

}  // namespace isolith
