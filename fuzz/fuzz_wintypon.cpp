// The WinTypon reader on any bytes, then the split of the two sides as the load does it.
#include <sstream>
#include <string>

#include "FuzzInput.h"
#include "core/board/Board.h"
#include "core/board/BoardOps.h"
#include "import/WinTyponReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  Board board;
  std::istringstream file{std::string(fuzz::Text(data, size))};
  ReadWinTypon(file, 1.0f, board);
  // The load moves the read lists to the first layer before it cuts them at the seam.
  board.Pads[0] = board.ImportPads;
  board.Tracks[0] = board.ImportTracks;
  board.ImportPads = nullptr;
  board.ImportTracks = nullptr;
  SplitWinTyponSides(board);
  return 0;
}
