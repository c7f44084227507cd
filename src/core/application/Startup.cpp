#include "core/application/Startup.h"

#include <filesystem>
#include <system_error>

#include "core/application/CommandLine.h"
#include "core/application/Commands.h"
#include "core/application/ConfigFolder.h"

namespace isolith {

std::string PrepareConfigFolder(const std::string& programFolder,
                                const std::string& requestedConfig, std::string& error) {
  const std::string folder = ChooseConfigFolder(programFolder, requestedConfig, error);
  if (!folder.empty() && requestedConfig.empty()) InstallStarterTools(programFolder, folder);
  return folder;
}

void ApplyCommandLine(Application& app, const std::vector<std::string>& words) {
  const CommandLineOptions options =
      ParseCommandLine(words, app.settings, [](const std::string& path) {
        std::error_code ec;
        return std::filesystem::is_regular_file(path, ec);
      });
  app.StartFile = options.StartFile;
  app.DebugMode = options.DebugMode;
  app.Snapshot = options.Snapshot;
  app.NoSplash = options.NoSplash;
  app.AutoStart = options.AutoStart;
  app.AutoMill = options.AutoMill;
}

void RunFirstShow(Application& app) {
  if (!app.FirstShow) return;
  app.FirstShow = false;
  // Reading a named StartFile, and the AUTOSTART / AUTOMILL steps, join the chain with the Gerber
  // reader, the contour calculation and the output; until then only "New circuit" can run.
  if (app.StartFile.empty() && CommandImplemented(cmd::NewCircuit))
    RunCommand(app, cmd::NewCircuit);
  ResetHover(app);
  app.AutoStart = false;
  app.AutoMill = false;
}

}  // namespace isolith
