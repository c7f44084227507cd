// The user's format file (".ppf") on any bytes: read over the defaults, written
// and read back.
#include <string>

#include "FuzzInput.h"
#include "output/postprocessor/PostProcessor.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  TPostProcessor pp;
  ReadPostProcessorText(pp, fuzz::Text(data, size));
  const std::string written = PostProcessorFileText(pp);
  TPostProcessor reread;
  ReadPostProcessorText(reread, written);
  return 0;
}
