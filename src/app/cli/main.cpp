// isolith-cli: the command flows of the desktop program, without a window.
#include <iostream>
#include <string>
#include <vector>

#include "cli/CliMain.h"
#include "commands/ConfigFolder.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  return isolith::CliMain(args, isolith::ExecutableFolder(), std::cout, std::cerr);
}
