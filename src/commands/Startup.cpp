#include "commands/Startup.h"

#include <filesystem>
#include <system_error>

#include "commands/CommandLine.h"
#include "commands/Commands.h"
#include "commands/ConfigFolder.h"
#include "commands/ImportSteps.h"
#include "commands/OutputCommands.h"
#include "commands/ToolpathCommands.h"
#include "core/board/BoardOps.h"

namespace isolith {

std::string PrepareConfigFolder(const std::string& programFolder,
                                const std::string& requestedConfig, std::string& error) {
  const std::string folder = ChooseConfigFolder(programFolder, requestedConfig, error);
  if (!folder.empty()) InstallStarterTools(programFolder, folder);
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
  // AUTOSTART and AUTOMILL: the contours of what was read, without their dialog (the command
  // leaves the dialog out while either word is in force).
  if ((app.AutoStart || app.AutoMill) && CountLayers(app.board) != 0) {
    CalculateContoursCommand(app);
  }
  // AUTOMILL, second step: with contours on layer 0, "Mill" runs with its dialogs confirmed by
  // themselves.
  if (app.AutoMill && app.board.Contours[0]) MillCommand(app);
  ResetHover(app);
  app.AutoStart = false;
  app.AutoMill = false;
}

}  // namespace isolith
