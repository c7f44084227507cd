// The template language of the user's format: the first line is a number format, the rest a
// template as an edit field gives it; the brackets are checked, the groups applied and every
// tag replaced, as a section walk does for one move.
#include <cstring>
#include <string>

#include "FuzzInput.h"
#include "output/postprocessor/PostProcessorForm.h"
#include "output/postprocessor/PostProcessorTemplates.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  const std::string_view text = fuzz::Text(data, size);
  const size_t cut = std::min(text.find('\n'), text.size());
  const TNumberFormat format = ParseNumberFormat(text.substr(0, cut));
  const std::string_view edit = cut < text.size() ? text.substr(cut + 1) : std::string_view();
  CheckTemplateBrackets(edit, 255);
  std::string line =
      ApplyOptionalGroups(TemplateFromEdit(edit, 255), 0, 1, 10, 20, 0, 1.5, 0, -2.25, 0, -0.1);
  const double value = size > 0 ? (data[0] - 128) * 1234.5678 : 0;
  for (const char* tag : {"X", "Y", "Z", "V", "R", "A", "N", "T", "S"})
    SubstituteTag(line, tag, value, format, (size & 1) != 0, (size & 2) != 0);
  FormatTagValue(1e300, format, false, true);
  FormatTagValue(-1e300, format, true, false);
  return 0;
}
