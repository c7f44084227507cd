// Who runs which command. Each subject of the program keeps its commands in a table of its own
// file, so that a command exists (and its menu entry is enabled by the rule) exactly when a
// handler for it is there.
#pragma once

#include <span>

#include "commands/Application.h"

namespace isolith {

// Runs the commands with ids from `first` to `last`; `id` says which one.
struct CommandHandler {
  int first;
  int last;
  void (*run)(Application& app, int id);
};

// The tables, one per subject.
std::span<const CommandHandler> FileCommandHandlers();       // files, layers, display, settings
std::span<const CommandHandler> TransformCommandHandlers();  // dimensions, origin, scale, shift
std::span<const CommandHandler> ToolpathCommandHandlers();   // contours, hatches, planes, card
std::span<const CommandHandler> OutputCommandHandlers();     // save, mill, output formats
std::span<const CommandHandler> EditCommandHandlers();       // apertures, items, contour edits
std::span<const CommandHandler> DisplayCommandHandlers();    // zoom, colours, units, help
std::span<const CommandHandler> MachineCommandHandlers();    // the machine parameter file
std::span<const CommandHandler> PopupCommandHandlers();      // the context menu's own rows

// The handler of a command, or null when the command is not built.
const CommandHandler* FindCommandHandler(int id);

}  // namespace isolith
