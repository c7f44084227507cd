// From the command line to the first picture: the program and configuration folders, the
// settings, the command line, and the chain that runs when the window first shows.
#pragma once

#include <string>
#include <vector>

#include "commands/Application.h"

namespace isolith {

// Settles where the program's files live (ConfigFolder.h): `requestedConfig` when given, else
// the program folder when writable, else the user's configuration folder. Whichever it is, a
// folder without a tool library then gets the starter one. Empty with `error` set when no
// folder can be used.
std::string PrepareConfigFolder(const std::string& programFolder,
                                const std::string& requestedConfig, std::string& error);

// Reads the desktop program's command line into the application: StartFile, the option words
// and the import formats the file implies (CommandLine.h).
void ApplyCommandLine(Application& app, const std::vector<std::string>& words);

// The first show of the window (only while FirstShow is set): with no StartFile the
// "New circuit" command runs, otherwise the file is read on layer 0; then, when a layer exists
// and AUTOSTART or AUTOMILL was given, contours are calculated without their dialog; with
// contours on layer 0 and AUTOMILL, "Mill" runs confirmed. Then ResetHover, and FirstShow,
// AutoStart and AutoMill are cleared. Steps whose commands are not built are skipped.
void RunFirstShow(Application& app);

}  // namespace isolith
