#include "output/transfer/TransferLines.h"

#include <fstream>
#include <iterator>

namespace isolith {

std::vector<std::string> TransferLines(std::string_view text, std::size_t limit) {
  std::vector<std::string> lines;
  std::string line;
  const auto end = [&] {
    if (!line.empty()) lines.push_back(line + "\n");
    line.clear();
  };
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte == '\r' || byte == '\n')
      end();
    else if (byte >= 32 && line.size() < limit)
      line.push_back(c);
  }
  end();
  return lines;
}

bool ReadTransferFile(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

}  // namespace isolith
