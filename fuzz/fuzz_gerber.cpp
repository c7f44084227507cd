// The photoplot reader on any bytes, in the plain Gerber dialect, on the first layer.
#include <sstream>
#include <string>

#include "FuzzInput.h"
#include "core/board/Board.h"
#include "import/GerberReader.h"
#include "params/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  Board board;
  std::istringstream file{std::string(fuzz::Text(data, size))};
  ReadGerber(file, TImportFormat{}, 0, board);
  return 0;
}
