// The transform commands of the menus.
#include "core/application/CommandHandlers.h"

namespace isolith {

std::span<const CommandHandler> TransformCommandHandlers() {
  return {};
}

}  // namespace isolith
