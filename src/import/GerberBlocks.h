// Cuts a photoplot file into blocks: a block ends at a line feed or a "*".
#pragma once

#include <streambuf>

#include "import/GerberState.h"

namespace isolith {

// Reads the next block into reader.line and reader.len. Only bytes above the blank are kept
// (bytes with the high bit set are not plotter text), "+" is dropped, lower case is folded to
// upper case, and bytes beyond the first kBlockBytes of a block are dropped. At the end of the
// file `atEnd` is set and what was read so far stands as the block. A block that is only "%" is
// made empty, so the closing "%" of a parameter is no block at all.
void ReadBlock(GerberReader& reader, std::streambuf& file);

}  // namespace isolith
