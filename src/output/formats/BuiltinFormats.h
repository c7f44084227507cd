// The words of the built-in formats by code.
#pragma once

#include <memory>

#include "output/formats/FormatWords.h"

namespace isolith {

// The words of a built-in format (codes 1, 2, 4, 5, 9, 11, 19, 20, 21, 22); null for any other
// code, the user's format 33 included, whose words the caller brings.
std::unique_ptr<FormatWords> MakeFormatWords(int format, const FormatContext& context);

}  // namespace isolith
