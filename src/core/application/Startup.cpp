#include "core/application/Startup.h"

#include <filesystem>
#include <system_error>

#include "core/application/CommandLine.h"
#include "core/application/Commands.h"
#include "core/application/ConfigFolder.h"
#include "core/application/ImportSteps.h"

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
  if (app.StartFile.empty()) {
    if (CommandImplemented(cmd::NewCircuit)) RunCommand(app, cmd::NewCircuit);
  } else {
    // Whatever its extension, a file named on the command line is read as a circuit layer.
    ImportContext context = MakeImportContext(app);
    OpenGerberFile(context, app.StartFile, 0);
    RequestRepaint(app, RepaintLevel::Full);
  }
  // The AUTOSTART and AUTOMILL steps (contours without their dialog, then "Mill" confirmed)
  // join here with the contour command and the output.
  ResetHover(app);
  app.AutoStart = false;
  app.AutoMill = false;
}

}  // namespace isolith
