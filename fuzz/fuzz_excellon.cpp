// The drill file reader on any bytes, with the assumptions chosen by the first byte.
#include <sstream>
#include <string>

#include "FuzzInput.h"
#include "core/board/Board.h"
#include "import/ExcellonReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  if (size == 0) return 0;
  ExcellonFormat format;
  format.format = (data[0] & 1) ? kExcellonNoTrailingZeros : kExcellonBasicCoordinates;
  format.relative = (data[0] & 2) != 0;
  format.metric = (data[0] & 4) != 0;
  Board board;
  std::istringstream file{std::string(fuzz::Text(data + 1, size - 1))};
  ReadExcellon(file, format, board);
  return 0;
}
