// The toolpath commands of the menus.
#include "core/application/CommandHandlers.h"

namespace isolith {

std::span<const CommandHandler> ToolpathCommandHandlers() {
  return {};
}

}  // namespace isolith
