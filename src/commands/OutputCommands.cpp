// The output commands of the menus.
#include "commands/OutputCommands.h"

#include <sys/stat.h>

#include <cctype>
#include <functional>
#include <vector>

#include "commands/CommandHandlers.h"
#include "commands/MachiningModule.h"
#include "edit/Transforms.h"
#include "output/DrillProcessForm.h"
#include "output/ExportCommands.h"
#include "output/OutputFormatForm.h"
#include "output/driver/JobFile.h"
#include "output/driver/PathDirections.h"
#include "output/export/BoardExport.h"
#include "output/formats/FileTypes.h"
#include "output/postprocessor/PostProcessorWords.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "params/ToolForms.h"
#include "toolpath/CentringHoles.h"
#include "toolpath/CutPath.h"

namespace isolith {

namespace {

constexpr const char* kTextViewer = "xdg-open";
constexpr const char* kCannotExecute = "Unable to execute this programme.";

// The platform while a command runs on its own (AUTOMILL, scripts): every dialog is confirmed
// as it stands, its accept rule still checking the values; everything else reaches the person
// as usual.
class ConfirmingPlatform : public Platform {
 public:
  explicit ConfirmingPlatform(Platform& platform) : p_(platform) {}

  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override {
    p_.ShowMessage(title, text, icon);
  }
  Answer Ask(std::string_view title, std::string_view text, bool withCancel,
             Answer preferred) override {
    return p_.Ask(title, text, withCancel, preferred);
  }
  void Beep(int sound) override { p_.Beep(sound); }
  void SetStatus(std::string_view text) override { p_.SetStatus(text); }
  void Repaint(RepaintLevel level) override { p_.Repaint(level); }
  void PumpMessages(int milliseconds) override { p_.PumpMessages(milliseconds); }
  void SetBusyCursor(bool busy) override { p_.SetBusyCursor(busy); }
  void BeginProgress(std::string_view title) override { p_.BeginProgress(title); }
  void EndProgress() override { p_.EndProgress(); }
  bool StopRequested() override { return p_.StopRequested(); }
  std::optional<std::string> OpenFileDialog(FileRequest& request) override {
    return p_.OpenFileDialog(request);
  }
  std::optional<std::string> SaveFileDialog(FileRequest& request) override {
    return p_.SaveFileDialog(request);
  }
  bool RunDialog(DialogForm& form) override {
    if (form.Accept(*this)) return true;
    refusal = form.Refusal();
    if (refusal.empty()) refusal = "\"" + std::string(form.FormName()) + "\" refused its values";
    return false;
  }
  uint64_t TickCount() override { return p_.TickCount(); }
  int64_t Now() override { return p_.Now(); }
  char DecimalSeparator() override { return p_.DecimalSeparator(); }
  bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                    const std::string& workingFolder, int64_t* pid) override {
    return p_.StartProcess(program, args, workingFolder, pid);
  }

  // Why the last dialog refused, for a caller that has no screen to show it.
  std::string refusal;

 private:
  Platform& p_;
};

// Words of a command line: blanks separate them, double quotes hold a word with blanks together.
std::vector<std::string> CommandWords(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  bool quoted = false, inWord = false;
  for (char c : line) {
    if (c == '"') {
      quoted = !quoted;
      inWord = true;
    } else if (!quoted && std::isspace(static_cast<unsigned char>(c))) {
      if (inWord) words.push_back(word);
      word.clear();
      inWord = false;
    } else {
      word.push_back(c);
      inWord = true;
    }
  }
  if (inWord) words.push_back(word);
  return words;
}

std::string Trimmed(const std::string& text) {
  const auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  std::size_t begin = 0, end = text.size();
  while (begin < end && blank(text[begin])) ++begin;
  while (end > begin && blank(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

// Starts the program of a command line with its words, `file` and `extra` (when not empty) after
// them, in the folder of the program when the line names one, else in `programFolder`; a start
// that fails shows the whole line under "Error".
void StartCommand(Platform& platform, const std::string& programFolder, const std::string& command,
                  const std::string& file, const std::string& extra = {}) {
  std::vector<std::string> words = CommandWords(command);
  if (words.empty()) return;
  const std::string program = words.front();
  words.erase(words.begin());
  words.push_back(file);
  if (!extra.empty()) words.push_back(extra);
  const std::size_t slash = program.rfind('/');
  const std::string folder =
      slash == std::string::npos ? programFolder : program.substr(0, slash + 1);
  if (!platform.StartProcess(program, words, folder)) {
    const std::string line = command + " " + file + (extra.empty() ? "" : " " + extra);
    platform.ShowMessage("Error", Trimmed(line) + "\n\n" + kCannotExecute, MessageIcon::Error);
  }
}

void CannotExport(Platform& platform, const std::string& path) {
  platform.ShowMessage("Error", "Unable to export file. ''" + path + "''", MessageIcon::Error);
}

// A board file written under the busy cursor; a failure says so.
bool ExportBoardFile(Platform& platform, const std::string& path,
                     const std::function<bool()>& write) {
  platform.SetBusyCursor(true);
  const bool written = write();
  platform.SetBusyCursor(false);
  if (!written) CannotExport(platform, path);
  return written;
}

OutputContext MakeContext(Application& app, Platform& platform) {
  OutputContext context(app.board, app.settings, app.tools, app.drillList, platform,
                        app.exportChoices);
  context.programFolder = OwnFilesFolder(app);
  context.productVariant = app.ProductVariant;
  // The user's format as it stands now: the words keep their own copy for the command.
  app.userFormatWords =
      std::make_unique<PostProcessorWords>(app.postProcessor, app.settings.SpeedUnit);
  context.userFormat = app.userFormatWords.get();
  context.userFormatTitle = app.postProcessor.Title;
  context.userFormatExtension = app.postProcessor.FileExt;
  context.saveSettings = [&app] { SaveSettings(app); };
  context.openTextViewer = [&app, &platform](const std::string& path) {
    StartCommand(platform, app.ProgramFolder, kTextViewer, path);
  };
  // The machining module's job file of the active layer, its bored holes as 5-degree chords as
  // an exported file has them.
  context.writeJobFile = [&app, &platform](const std::string& path) {
    return ExportBoardFile(platform, path, [&] {
      OutputContext job = MakeContext(app, platform);
      const Settings& s = app.settings;
      return WriteJobFile(job, path, app.board.ActiveLayer, s.SingleSequence, s.MillingOptim,
                          s.DrillingOptim, 5);
    });
  };
  const Board& board = app.board;
  context.writeExcellon = [&board, &platform](const std::string& path) {
    return ExportBoardFile(platform, path, [&] { return WriteExcellon(board, path); });
  };
  context.writeGerber = [&board, &platform](const std::string& path) {
    return ExportBoardFile(platform, path,
                           [&] { return WriteGerber(board, path, board.ActiveLayer); });
  };
  return context;
}

// A path the output may replace: nothing there yet, or a plain file. Anything else (a device, a
// pipe) would be replaced by the finished file rather than written into.
bool PlainFileTarget(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return true;
  return S_ISREG(info.st_mode);
}

// The first drilling tool must be chosen whether or not there are drills: "Active tools" opens
// once when it is not, and false means it still is not.
bool FirstDrillToolChosen(Application& app, Platform& platform) {
  const Settings& s = app.settings;
  const auto first = [&s] { return s.DrillingMode < 2 ? s.DrillingTool : s.DrillingLib[0]; };
  if (first() >= 0) return true;
  if (RunActiveToolsDialog(platform, app.tools, app.settings)) SaveSettings(app);
  return first() >= 0;
}

// The checks before any output of the Mill command: something to write, the tools of what is
// there, the first drilling tool. Every contour is then turned to a positive turning sum.
enum class MillCheck { Ready, Nothing, ToolMissing, NoDrillTool };
MillCheck CheckMill(Application& app, Platform& platform) {
  OutputContext context = MakeContext(app, platform);
  if (!HasOutput(app.board)) return MillCheck::Nothing;
  if (!CheckOutputTools(context)) return MillCheck::ToolMissing;
  if (!FirstDrillToolChosen(app, platform)) return MillCheck::NoDrillTool;
  TurnContoursPositive(app.board);
  return MillCheck::Ready;
}

// The job to `path` in `MachineFormat`, refused with the failure message when the path names
// something that is not a plain file.
bool WriteJob(Application& app, Platform& platform, const std::string& path) {
  if (!path.empty() && !PlainFileTarget(path)) {
    CannotExport(platform, path);
    return false;
  }
  OutputContext context = MakeContext(app, platform);
  return WriteMachineJob(context, path);
}

void RunOutputDataFormat(Application& app, Platform& platform) {
  TDialogCopOutput form(
      app.settings, app.postProcessor, app.ConfigFolder, OwnFilesFolder(app) + kProgramName,
      [&app] { SaveSettings(app); }, app.DecimalSeparator, ShippedPostProcessors(app.ProgramFolder),
      app.transfer->Printers());
  if (platform.RunDialog(form)) SaveSettings(app);
}

void RunMill(Application& app, Platform& platform, bool simulate) {
  Board& b = app.board;
  Settings& s = app.settings;
  b.PendingCommand = 0;
  if (!HasOutput(b)) {
    Refuse(app);
    return;
  }
  RequestRepaint(app);
  const MillCheck check = CheckMill(app, platform);
  if (check != MillCheck::Ready) {
    // A missing tool has had its dialog; the other refusals beep.
    if (check != MillCheck::ToolMissing) Refuse(app);
    ResetHover(app);
    RequestRepaint(app);
    return;
  }

  if (app.ProductVariant == kSuiteModuleVariant) {
    // The job file for the suite's machining module, after the person chose where it goes.
    TDialogDrillProcess process(s);
    if (platform.RunDialog(process))
      RunJob(app, simulate ? kModuleSimulate : kModuleMill,
             OwnFilesFolder(app) + kProgramName + ".tvn");
    ResetHover(app);
    RequestRepaint(app);
    return;
  }

  std::string target = MillTarget(app);
  if (s.MachineOutput == 0) RunOutputDataFormat(app, platform);
  if (s.MachineOutput != 0) {
    if (s.MachineOutput == kMachineOutputFile && !s.MachineFile.empty()) target = s.MachineFile;
    if (WriteJob(app, platform, target)) {
      if (s.MachineOutput == kMachineOutputFile) {
        // The program that takes the file hears that it is to simulate the job, not mill it.
        StartCommand(platform, app.ProgramFolder, s.MachineRun, target,
                     simulate ? "SIMULATION" : "");
      } else {
        // A failed transfer keeps the finished file; the status line says what became of it.
        const SendStatus sent = SendMachineFile(app, target);
        if (sent != SendStatus::Sent)
          platform.SetStatus(SendStatusText(sent) + " ''" + target + "''");
      }
    }
  }
  ResetHover(app);
  RequestRepaint(app);
}

CentringContext MakeCentringContext(Application& app) {
  CentringSteps steps;
  steps.resetHover = [&app] { ResetHover(app); };
  steps.reframe = [&app] { ReframeBoard(app.board); };
  steps.repaint = [&app](RepaintLevel level) { RequestRepaint(app, level); };
  return CentringContext{app.board, app.platform, app.settings, steps};
}

void RunOutputCommand(Application& app, int id) {
  Board& b = app.board;
  switch (id) {
    case cmd::Save: {
      b.PendingCommand = 0;
      OutputContext context = MakeContext(app, app.platform);
      CmdSave(context);
      RequestRepaint(app);
      break;
    }
    case cmd::Mill:
    case cmd::Simulate:
      MillCommand(app, id == cmd::Simulate);
      break;
    case cmd::CenteringHoles: {
      CentringContext c = MakeCentringContext(app);
      if (AddCenteringHoles(c) == CentringResult::Placing) {
        // A pick: the view leaves the final rendering while the hole is placed.
        b.FinalRendering = false;
        RequestRepaint(app);
      }
      break;
    }
    case cmd::OutputDataFormat:
      b.PendingCommand = 0;
      RunOutputDataFormat(app, app.platform);
      RequestRepaint(app);
      break;
    default:
      break;
  }
}

constexpr CommandHandler kOutputHandlers[] = {
    {cmd::Save, cmd::Save, RunOutputCommand},
    {cmd::Mill, cmd::Mill, RunOutputCommand},
    {cmd::Simulate, cmd::Simulate, RunOutputCommand},
    {cmd::CenteringHoles, cmd::CenteringHoles, RunOutputCommand},
    {cmd::OutputDataFormat, cmd::OutputDataFormat, RunOutputCommand},
};

}  // namespace

std::span<const CommandHandler> OutputCommandHandlers() {
  return kOutputHandlers;
}

OutputContext MakeOutputContext(Application& app) {
  return MakeContext(app, app.platform);
}

std::string OwnFilesFolder(const Application& app) {
  return app.ConfigFolder.empty() ? app.ProgramFolder : app.ConfigFolder;
}

std::string MillTarget(const Application& app) {
  return OwnFilesFolder(app) + kProgramName + ".out";
}

void MillCommand(Application& app, bool simulate) {
  if (app.AutoMill) {
    ConfirmingPlatform confirming(app.platform);
    RunMill(app, confirming, simulate);
  } else {
    RunMill(app, app.platform, simulate);
  }
}

bool MillJob(Application& app, const std::string& path, std::string* reason) {
  Board& b = app.board;
  b.PendingCommand = 0;
  ConfirmingPlatform confirming(app.platform);
  // A card contour taken at load already has its cut path; any other gets it now, on the side
  // the contour keeps.
  CutContext cut{b, confirming, app.settings, app.tools, false};
  for (TCutout* c = b.Cutouts; c; c = c->next)
    if (!c->paths) CalculateCutPath(cut, *c, false);

  const char* why = nullptr;
  switch (CheckMill(app, confirming)) {
    case MillCheck::Ready:
      break;
    case MillCheck::Nothing:
      why = "nothing to write: the layer has no contours, and there are no drills or cut paths";
      break;
    case MillCheck::ToolMissing:
      why = "a tool the job needs is not chosen or cannot cut (see the selected tools)";
      break;
    case MillCheck::NoDrillTool:
      why = "no drilling tool is chosen (DrillingTool)";
      break;
  }
  if (why) {
    if (reason) *reason = why;
    return false;
  }
  if (path.empty()) {
    if (reason) *reason = "no output file named";
    return false;
  }
  if (!WriteJob(app, confirming, path)) {
    if (reason)
      *reason = confirming.refusal.empty()
                    ? "the machine file was not written"
                    : "the machine file was not written: " + confirming.refusal;
    return false;
  }
  const int output = app.settings.MachineOutput;
  if (output != kMachineOutputPrinter && output != kMachineOutputPort) return true;
  const SendStatus sent = SendMachineFile(app, path);
  if (sent == SendStatus::Sent) return true;
  if (reason) *reason = SendStatusText(sent) + " The machine file stays as '" + path + "'.";
  return false;
}

SendStatus SendMachineFile(Application& app, const std::string& path) {
  const Settings& s = app.settings;
  if (s.MachineOutput == kMachineOutputPrinter)
    return app.transfer->SendToPrinter(path, s.MachinePrn);
  return app.transfer->SendToPort(path, s.MachinePort, PortSettingsOf(s));
}

bool ExportLayerFile(Application& app, int format, const std::string& path) {
  if (!PlainFileTarget(path)) {
    CannotExport(app.platform, path);
    return false;
  }
  OutputContext context = MakeContext(app, app.platform);
  if (format == kFormatExcellon) return context.writeExcellon(path);
  if (format == kFormatGerberOut) return context.writeGerber(path);
  if (format == kFormatJobFile) return context.writeJobFile(path);
  return false;
}

bool OutputClickAction(Application& app, int pendingId, float x, float y, float gridStep) {
  if (pendingId != cmd::CenteringHoles) return false;
  CentringContext c = MakeCentringContext(app);
  PlaceCenteringHole(c, x, y, gridStep);
  return true;
}

}  // namespace isolith
