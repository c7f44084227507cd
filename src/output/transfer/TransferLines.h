// The lines a machine file is sent in, to a printer queue or a port: the bytes from 32 up of each
// line, at most `limit` of them (the rest of a longer line is cut), closed by one LF. CR, LF and
// CR LF all end a line; a line left empty is not sent. The file's own line end (and
// `MachineEol`) has no say here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace isolith {

inline constexpr std::size_t kPrinterLineLimit = 100;
inline constexpr std::size_t kPortLineLimit = 1024;

std::vector<std::string> TransferLines(std::string_view text, std::size_t limit);

// The whole file, as bytes; false when it cannot be read.
bool ReadTransferFile(const std::string& path, std::string& text);

}  // namespace isolith
