#include "cli/CliMain.h"

#include <cstdio>

#include "cli/CliInfo.h"
#include "cli/CliJob.h"
#include "commands/Application.h"
#include "commands/OutputCommands.h"
#include "commands/Startup.h"
#include "commands/ToolpathCommands.h"
#include "core/board/BoardOps.h"
#include "core/platform/ConsolePlatform.h"
#include "output/BoardSvg.h"
#include "output/OutputFormatForm.h"
#include "output/formats/FileTypes.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "params/Settings.h"
#include "params/SettingsFile.h"
#include "params/SettingsFormats.h"
#include "params/SettingsOverrides.h"

namespace isolith {

namespace {

constexpr const char* kName = "isolith-cli";

// A command line understood, before anything is read or written.
struct CliRequest {
  std::string configFolder;
  SettingsOverrides overrides;
  std::string command;
  bool json = false;
  JobArguments job;
  std::string outputPath;  // -o FILE of "render", "mill" and "export"
  std::string post;        // --post NAME of "mill": a shipped post-processor for this run
  int exportFormat = -1;   // --format of "export"
  std::string sendFile;    // FILE of "send"
  std::string port;        // --port of "send"
  std::string printer;     // --printer of "send"
  bool toPrinter = false;
};

// The formats of "Output data format", as the settings spell them.
constexpr const char* kMachineFormatNames =
    "PLT, DXF, ISO, NCP, CM3, EGX, SML, CBR, POST-PROCESSOR";

bool MachineFormatWritten(int format) {
  for (int code : TDialogCopOutput::kFormats)
    if (code == format) return true;
  return false;
}

// The shipped post-processor `name` in memory for this run; "Isolith.ppf" stays as it is. The
// classical export of one layer writes the user's format without its Z scale, which would put
// every depth above the card, so the sections are required.
bool UseShippedPostProcessor(Application& app, const std::string& name, std::ostream& err) {
  const std::vector<TShippedPostProcessor> shipped = ShippedPostProcessors(app.ProgramFolder);
  const TShippedPostProcessor* found = FindShippedPostProcessor(shipped, name);
  if (!found) {
    err << kName << ": no post-processor '" << name << "' in " << app.ProgramFolder
        << kShippedPostFolder << " (";
    if (shipped.empty()) err << "none there";
    for (size_t i = 0; i < shipped.size(); ++i) err << (i ? ", " : "one of ") << shipped[i].name;
    err << ")\n";
    return false;
  }
  if (!app.settings.MachineSetSeq) {
    err << kName << ": --post needs MachineSetSeq=Yes (" << TDialogCopOutput::kSectionsText
        << ")\n";
    return false;
  }
  if (!LoadShippedPostProcessor(app.postProcessor, *found, app.settings.SpeedUnit)) {
    err << kName << ": unable to read '" << found->path << "'\n";
    return false;
  }
  return true;
}

int UsageError(std::ostream& err, const std::string& message) {
  err << kName << ": " << message << " (see " << kName << " --help)\n";
  return kCliUsage;
}

// A run that stops: what failed and, when known, why.
int Refused(std::ostream& err, const std::string& what, const std::string& why) {
  err << kName << ": " << what << (why.empty() ? "" : ": " + why) << "\n";
  return kCliFailed;
}

// Splits "--name=value" or "--name value"; false when the value is missing.
bool OptionValue(const std::vector<std::string>& args, size_t& i, const std::string& name,
                 std::string& value) {
  const std::string& word = args[i];
  if (word.size() > name.size() && word.compare(0, name.size() + 1, name + "=") == 0) {
    value = word.substr(name.size() + 1);
    return true;
  }
  if (i + 1 >= args.size()) return false;
  value = args[++i];
  return true;
}

// "send FILE --port DEV|--printer QUEUE".
int ParseSend(const std::vector<std::string>& args, size_t i, CliRequest& request,
              std::ostream& err) {
  bool port = false;
  for (; i < args.size(); ++i) {
    std::string value;
    if (args[i] == "--port" || args[i].rfind("--port=", 0) == 0) {
      if (!OptionValue(args, i, "--port", value) || value.empty())
        return UsageError(err, "--port needs a port or device");
      request.port = value;
      port = true;
    } else if (args[i] == "--printer" || args[i].rfind("--printer=", 0) == 0) {
      if (!OptionValue(args, i, "--printer", value))
        return UsageError(err, "--printer needs a queue");
      request.printer = value;
      request.toPrinter = true;
    } else if (request.sendFile.empty() && !args[i].empty() && args[i][0] != '-') {
      request.sendFile = args[i];
    } else {
      return UsageError(err, "unexpected word '" + args[i] + "' after send");
    }
  }
  if (request.sendFile.empty()) return UsageError(err, "send needs a file");
  if (port == request.toPrinter) return UsageError(err, "send needs --port or --printer");
  return -1;
}

// Reads the options and the command; returns -1 when the run should go on, else the status.
int ParseArguments(const std::vector<std::string>& args, CliRequest& request, std::ostream& out,
                   std::ostream& err) {
  size_t i = 0;
  for (; i < args.size(); ++i) {
    const std::string& word = args[i];
    if (word == "--config" || word.rfind("--config=", 0) == 0) {
      if (!OptionValue(args, i, "--config", request.configFolder) || request.configFolder.empty())
        return UsageError(err, "--config needs a folder");
    } else if (word == "--set" || word.rfind("--set=", 0) == 0) {
      std::string assignment, error;
      if (!OptionValue(args, i, "--set", assignment))
        return UsageError(err, "--set needs Key=Value");
      if (!request.overrides.AddAssignment(assignment, error))
        return UsageError(err, "--set " + assignment + ": " + error);
    } else if (word == "--version") {
      out << kName << " " << kProgramVersion << "\n";
      return kCliOk;
    } else if (word == "--help" || word == "-h") {
      out << CliUsage();
      return kCliOk;
    } else if (!word.empty() && word[0] == '-') {
      return UsageError(err, "unknown option '" + word + "'");
    } else {
      break;
    }
  }
  if (i == args.size()) return UsageError(err, "no command given");
  request.command = args[i++];
  const bool writes =
      request.command == "render" || request.command == "mill" || request.command == "export";
  const bool jobCommand = request.command == "info" || writes;
  if (request.command == "send") return ParseSend(args, i, request, err);
  if (request.command != "settings" && !jobCommand)
    return UsageError(err, "unknown command '" + request.command + "'");
  for (; i < args.size(); ++i) {
    if (!jobCommand)
      return UsageError(err, "unexpected word '" + args[i] + "' after " + request.command);
    std::string error;
    if (request.command == "info" && args[i] == "--json") {
      request.json = true;
    } else if (request.command == "export" &&
               (args[i] == "--format" || args[i].rfind("--format=", 0) == 0)) {
      std::string name;
      if (!OptionValue(args, i, "--format", name)) return UsageError(err, "--format needs a name");
      if (name == "gerber")
        request.exportFormat = kFormatGerberOut;
      else if (name == "excellon")
        request.exportFormat = kFormatExcellon;
      else if (name == "job")
        request.exportFormat = kFormatJobFile;
      else
        return UsageError(err, "--format " + name + ": one of gerber, excellon, job");
    } else if (writes && (args[i] == "-o" || args[i] == "--output")) {
      if (i + 1 >= args.size()) return UsageError(err, args[i] + " needs a file");
      request.outputPath = args[++i];
    } else if (request.command == "mill" && args[i] == "--post") {
      if (i + 1 >= args.size()) return UsageError(err, "--post needs a post-processor name");
      request.post = args[++i];
      // Written in the user's format, which the shipped file stands in for in this run only.
      std::string ignored;
      request.overrides.AddAssignment("MachineFormat=POST-PROCESSOR", ignored);
    } else if (!ParseJobWord(args, i, request.job, true, error)) {
      return UsageError(err, error);
    }
  }
  if (request.command == "render" && request.outputPath.empty())
    return UsageError(err, "render needs -o OUT.svg");
  if (request.command == "mill") {
    if (request.job.layerFiles.empty() && request.job.drillFile.empty())
      return UsageError(err, "mill needs a layer file or --drills FILE");
    if (request.outputPath.empty()) return UsageError(err, "mill needs -o OUT");
    // The layers are milled from their contours, so they are always calculated; a drill file
    // alone is drilled as it stands.
    request.job.contours = !request.job.layerFiles.empty();
  }
  if (request.command == "export") {
    if (request.exportFormat < 0)
      return UsageError(err, "export needs --format gerber|excellon|job");
    if (request.job.layerFiles.empty()) return UsageError(err, "export needs a layer file");
    if (request.outputPath.empty()) return UsageError(err, "export needs -o OUT");
  }
  return -1;
}

}  // namespace

const char* CliUsage() {
  return "Usage: isolith-cli [--config DIR] [--set Key=Value]... COMMAND [ARGS]\n"
         "\n"
         "Options:\n"
         "  --config DIR      folder of Isolith.ini, Isolith.too and Isolith.ppf\n"
         "                    (default: the program's folder, or ~/.config/isolith when\n"
         "                    that is not writable)\n"
         "  --set Key=Value   a setting for this run only; the file never keeps it\n"
         "  --version         the program's version\n"
         "  --help            this text\n"
         "\n"
         "Commands:\n"
         "  settings          print the settings in force, as Isolith.ini holds them\n"
         "  info [--json] [JOB]\n"
         "                    print the job: card, origin, layers, drills, cutouts\n"
         "  render [JOB] -o OUT.svg\n"
         "                    write the job as an SVG picture (card mm, X right, Y up)\n"
         "  mill JOB -o OUT   write the machine file of the job as the Mill command does,\n"
         "                    contours always calculated: in MachineFormat (e.g. --set\n"
         "                    MachineFormat=ISO; also PLT, DXF, NCP, CM3, EGX, SML, CBR,\n"
         "                    POST-PROCESSOR for the user's format of Isolith.ppf), the\n"
         "                    sections of MachineSetSeq=Yes or the first layer with\n"
         "                    MachineSetSeq=No; the dialogs are taken as they stand.\n"
         "                    Exit status 0 only when OUT was written whole; a failed\n"
         "                    write leaves the file that stood there.\n"
         "                    --post NAME writes with the shipped post-processor NAME\n"
         "                    (grbl, linuxcnc, mach, marlin) for this run only.\n"
         "                    With MachineOutput=2 or 3 the file is then printed on\n"
         "                    MachinePrn or sent to MachinePort, as send does.\n"
         "  export --format gerber|excellon|job JOB -o OUT\n"
         "                    write the first layer back as a board file, as Save... does:\n"
         "                    Gerber (its tracks, pads and card contours) or Excellon (its\n"
         "                    pads as drill holes), in inches; or as the machining module's\n"
         "                    binary job file (\".tvn\": tools, holes, and the contours and\n"
         "                    hatches that --contours and --hatches calculate)\n"
         "  send FILE --port PORT|--printer QUEUE\n"
         "                    send a machine file line by line to a port (COM1..COM32,\n"
         "                    LPT1..LPT3 or a device path such as /dev/ttyUSB0) with the\n"
         "                    port parameters of Isolith.ini (MachineBaudrate ...), or as\n"
         "                    a raw job to a printer queue (\"\" for the default queue).\n"
         "                    COMn is the n-th serial port present: USB adapters\n"
         "                    (ttyUSB*), then ttyACM*, then the built-in ttyS* ports.\n"
         "                    Exit status 0 only when every line went out.\n"
         "\n"
         "JOB: [--dialect NAME] [--modern] [--contours] [--hatches] [LAYER-FILE...]\n"
         "     [--drills FILE [DRILL ANSWERS]]\n"
         "  the first file opens as New circuit, the others as Additional layer, the drill\n"
         "  file as Drills... (alone, on an empty job); --contours and --hatches calculate\n"
         "  them on every circuit layer with copper, as the commands do with \"Apply to all\n"
         "  layers\".\n"
         "  --modern reads as ModernImport=Yes does: filled regions, arcs, aperture macros,\n"
         "  polarity and step and repeat, and drill files by their own header (the drill\n"
         "  answers are then not needed).\n"
         "\n"
         "DRILL ANSWERS: what a person answers in the \"Excellon import\" dialog, for the\n"
         "drill file of this run only (Isolith.ini never keeps them; without them the\n"
         "stored drill format and dialog defaults stand):\n"
         "  --drill-zeros leading|trailing|auto\n"
         "                    \"Zero suppression\": leading reads each number left-justified\n"
         "                    in six digits (files that keep leading zeros, \",LZ\");\n"
         "                    trailing reads numbers as written (files that keep trailing\n"
         "                    zeros, \",TZ\"); auto takes the file header's \",LZ\" or \",TZ\"\n"
         "  --drill-units inch|metric|auto\n"
         "                    \"Units\": the reader starts from inches and follows the file's\n"
         "                    own METRIC or M71 word only with inch; with metric it keeps the\n"
         "                    inch scale; auto answers inch when the header names its unit\n"
         "  --drill-coordinates absolute|incremental\n"
         "                    \"Co-ordinates\"\n"
         "  An auto answer whose header says nothing leaves the stored one.\n"
         "\n"
         "Dialects: gerber, ares, eagle, orcad, osmond, pads, pcb-wizard, protel, wintypon\n"
         "(by default the extension of each file chooses, as on the desktop command line).\n";
}

int CliMain(const std::vector<std::string>& args, const std::string& programFolder,
            std::ostream& out, std::ostream& err) {
  CliRequest request;
  if (const int status = ParseArguments(args, request, out, err); status >= 0) return status;

  std::string error;
  const std::string configFolder = PrepareConfigFolder(programFolder, request.configFolder, error);
  if (configFolder.empty()) {
    err << kName << ": " << error << "\n";
    return kCliFailed;
  }

  ConsolePlatform platform(stderr);
  Application app(platform, programFolder, configFolder);
  app.overrides = request.overrides;
  InitSettings(app);

  if (request.command == "settings") {
    out << FormatSettings(app.settings, LayerZeroApertures(app.board));
  } else if (request.command == "send") {
    const SendStatus sent = request.toPrinter
                                ? app.transfer->SendToPrinter(request.sendFile, request.printer)
                                : app.transfer->SendToPort(request.sendFile, request.port,
                                                           PortSettingsOf(app.settings));
    if (sent != SendStatus::Sent) {
      err << kName << ": " << SendStatusText(sent) << " (" << request.sendFile << ")\n";
      return kCliFailed;
    }
  } else {
    if (request.command == "mill" && !MachineFormatWritten(app.settings.MachineFormat)) {
      err << kName << ": MachineFormat " << OutputFormatName(app.settings.MachineFormat)
          << " is not a machine format (one of " << kMachineFormatNames << ")\n";
      return kCliFailed;
    }
    if (!request.post.empty() && !UseShippedPostProcessor(app, request.post, err))
      return kCliFailed;
    std::vector<LoadedFile> loaded;
    if (!LoadJob(app, request.job, loaded)) return kCliFailed;
    if (request.job.contours && !CalculateContoursOnAllLayers(app))
      return Refused(err, "no contours could be calculated", MissingToolReason(app, false));
    if (request.job.hatches && !CalculateHatchesOnAllLayers(app))
      return Refused(err, "no hatches could be calculated", MissingToolReason(app, true));
    if (request.command == "mill") {
      // Milled as AUTOMILL mills a start file: from the first layer.
      if (LayerHasContent(app.board, 0)) app.board.ActiveLayer = 0;
      std::string reason;
      if (!MillJob(app, request.outputPath, &reason)) return Refused(err, reason, "");
    } else if (request.command == "export") {
      if (LayerHasContent(app.board, 0)) app.board.ActiveLayer = 0;
      if (!ExportLayerFile(app, request.exportFormat, request.outputPath)) return kCliFailed;
    } else if (request.command == "render") {
      if (!WriteFileAtomically(request.outputPath, BoardToSvg(app.board))) {
        err << kName << ": unable to write '" << request.outputPath << "'\n";
        return kCliFailed;
      }
    } else if (request.json) {
      out << JobInfoJson(app.board, loaded)
                 .dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
          << "\n";
    } else {
      out << JobInfoText(app.board);
    }
  }
  out.flush();
  return out ? kCliOk : kCliFailed;
}

}  // namespace isolith
