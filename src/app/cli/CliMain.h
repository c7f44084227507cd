// The command-line program as a function, so that tests run it without a process:
//   isolith-cli [--config DIR] [--set Key=Value]... COMMAND [ARGS]
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace isolith {

// Exit statuses.
inline constexpr int kCliOk = 0;
inline constexpr int kCliFailed = 1;  // the command ran and failed (a folder or file problem)
inline constexpr int kCliUsage = 2;   // the command line was wrong; nothing was touched

// The usage text, printed by --help and after a usage error's one-line message is not needed.
const char* CliUsage();

// Runs the program with its arguments (without the program's name). `programFolder` is the
// folder of the executable. Normal output goes to `out`, messages to `err`.
int CliMain(const std::vector<std::string>& args, const std::string& programFolder,
            std::ostream& out, std::ostream& err);

}  // namespace isolith
