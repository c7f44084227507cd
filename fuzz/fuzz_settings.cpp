// "Isolith.ini" on any bytes: read, written and read back.
#include <string>

#include "FuzzInput.h"
#include "core/board/Board.h"
#include "params/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  Board board;
  Settings settings;
  ReadSettingsText(fuzz::Text(data, size), settings, LayerZeroApertures(board));
  const std::string written = FormatSettings(settings, LayerZeroApertures(board));
  Board again;
  Settings reread;
  ReadSettingsText(written, reread, LayerZeroApertures(again));
  return 0;
}
