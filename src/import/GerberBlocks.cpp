#include "import/GerberBlocks.h"

namespace isolith {

void ReadBlock(GerberReader& reader, std::streambuf& file) {
  using Traits = std::streambuf::traits_type;
  reader.len = 0;
  for (;;) {
    const Traits::int_type c = file.sbumpc();
    if (Traits::eq_int_type(c, Traits::eof())) {
      reader.atEnd = true;
      break;
    }
    if (c == '\n' || c == '*') break;
    if (c <= ' ' || c >= 0x80 || c == '+' || reader.len >= kBlockBytes) continue;
    char ch = static_cast<char>(c);
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
    reader.line[reader.len++] = ch;
  }
  if (reader.len == 1 && reader.line[0] == '%') reader.len = 0;
}

}  // namespace isolith
