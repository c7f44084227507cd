// "Isolith.too" on any bytes: read over the table, written in both forms, the compact form read
// back.
#include <string>

#include "FuzzInput.h"
#include "params/ToolFile.h"
#include "params/ToolLibrary.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  ToolTable tools{};
  ReadToolsText(tools, fuzz::Text(data, size));
  FormatTools(tools, false);
  const std::string written = FormatTools(tools, true);
  ToolTable reread{};
  ReadToolsText(reread, written);
  return 0;
}
