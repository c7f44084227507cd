#include "core/board/Records.h"

namespace isolith {

TPolygon::~TPolygon() {
  FreeChain(first);
}

TCutout::~TCutout() {
  delete outline;
  FreeChain(paths);
}

}  // namespace isolith
