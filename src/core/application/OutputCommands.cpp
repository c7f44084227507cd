// The output commands of the menus.
#include "core/application/CommandHandlers.h"

namespace isolith {

std::span<const CommandHandler> OutputCommandHandlers() {
  return {};
}

}  // namespace isolith
