// Reading Gerber text straight from a string, for the reader's tests.
#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/board/Board.h"
#include "import/GerberReader.h"
#include "params/Settings.h"

namespace isolith::test {

inline TImportFormat GerberFormat(int id = kFormatGerber) {
  TImportFormat f;
  f.id = id;
  return f;
}

inline void ReadText(Board& b, std::string_view text, int layer = 0,
                     const TImportFormat& format = GerberFormat()) {
  std::istringstream in{std::string(text)};
  ReadGerber(in, format, layer, b);
}

template <typename R>
std::vector<const R*> Items(const R* head) {
  std::vector<const R*> out;
  for (; head; head = head->next) out.push_back(head);
  return out;
}

}  // namespace isolith::test
