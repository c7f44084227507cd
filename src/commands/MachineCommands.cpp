// The "&Machine" menu: "&Basic data...", "&Full data..." and "&External driver...", which edit the
// machine parameter file "Torvane.cnc" beside the settings, for the machining module. Their
// course: PendingCommand cleared; the external-driver warning before "Basic data" (and, before
// "Full data", the warning and then the external driver's page); the file read (a message when it
// cannot be, the dialog then showing what memory holds); the dialog; on OK the file written, on
// Cancel read again. Their messages stand under the program's name.
#include "commands/CommandHandlers.h"
#include "commands/MachiningModule.h"
#include "output/transfer/DetectMachine.h"
#include "params/MachineForms.h"
#include "params/SettingsFile.h"

namespace isolith {

namespace {

constexpr const char* kCannotRead =
    "Unable to read machine parameter file.\nDefault parameters will be used instead.";
constexpr const char* kCannotWrite =
    "Unable to write machine parameter file.\nParameters may be reinitialised.";
constexpr const char* kUnderExternalDriver =
    "The machining process is under control of an external driver.";
constexpr const char* kAutoDetect = "Auto-detect";
constexpr const char* kPlugIn = "Please plug the machine on the computer and switch it on.";
constexpr const char* kModuleRunning =
    "The machining module is currently running as\na background task. No parameter changes\nwill "
    "take effect unless the machining module\nwindow is first closed.";

// The file lives beside the settings, in a folder the person may write to.
std::string MachineFolder(const Application& app) {
  return app.ConfigFolder.empty() ? app.ProgramFolder : app.ConfigFolder;
}

bool ReadMachineFile(Application& app) {
  if (ReadMachine(MachineFolder(app), kMachineBaseName, app.machine)) return true;
  app.platform.ShowMessage(kProgramName, kCannotRead, MessageIcon::Warning);
  return false;
}

// "Auto-detect" of the dialog: the machine named in the dialog looked for on the serial ports;
// the port found (or the only one there is) goes into the controller's port field.
void AutoDetect(Application& app, TDialogMachine& form, Platform& platform) {
  if (platform.Ask(kAutoDetect, kPlugIn, false, Answer::Yes) != Answer::Yes) return;
  MachineParameters named = app.machine;
  if (const TDialogMachine::Field* id = form.FindField("MachineId")) named.Set(id->key, id->value);
  platform.SetBusyCursor(true);
  const Detection found = DetectMachine(named.machineNumber, app.transfer->SerialDevices());
  platform.SetBusyCursor(false);
  platform.ShowMessage(kAutoDetect, DetectionText(found), MessageIcon::Information);
  TDialogMachine::Field* port = form.FindField("ComPort");
  if (port && (found.result == kOnePort || found.result == kMachineFound))
    port->value = "COM" + std::to_string(found.port);
}

void EditMachine(Application& app, MachinePages pages) {
  ReadMachineFile(app);
  // The module reads the file when it starts: a change now reaches it only after a restart.
  if (pages != MachinePages::ExternalDriver && MachiningModuleRunning(app))
    app.platform.ShowMessage("CNC", kModuleRunning, MessageIcon::Warning);
  TDialogMachine form(app.machine, pages);
  if (form.FindField("ComPort"))
    form.autoDetect = [&app, &form](Platform& platform) { AutoDetect(app, form, platform); };
  if (app.platform.RunDialog(form)) {
    if (!WriteMachine(MachineFolder(app), kMachineBaseName, app.machine))
      app.platform.ShowMessage(kProgramName, kCannotWrite, MessageIcon::Error);
  } else {
    // The dialog may have changed memory before it was cancelled: the file has the last word.
    ReadMachineFile(app);
  }
}

void RunMachine(Application& app, int id) {
  app.board.PendingCommand = 0;
  const bool external = app.machine.Flag("ExternalDriver");
  switch (id) {
    case cmd::MachineBasicData:
      if (external) app.platform.ShowMessage("Warning", kUnderExternalDriver, MessageIcon::Warning);
      EditMachine(app, MachinePages::Basic);
      break;
    case cmd::MachineFullData:
      if (external) {
        app.platform.ShowMessage("Warning", kUnderExternalDriver, MessageIcon::Warning);
        EditMachine(app, MachinePages::ExternalDriver);
      }
      // The digitiser's own file beside the machine's; its keys are those of the machine file.
      ReadSettingsFile(
          app.ConfigFolder + kMachineBaseName + ".xyz",
          [&app](std::string_view key, std::string_view value) { app.machine.Set(key, value); });
      EditMachine(app, MachinePages::Full);
      break;
    case cmd::ExternalDriver:
      EditMachine(app, MachinePages::ExternalDriver);
      break;
    default:
      break;
  }
  RequestRepaint(app);
}

constexpr CommandHandler kMachineHandlers[] = {
    {cmd::MachineBasicData, cmd::MachineFullData, RunMachine},
    {cmd::ExternalDriver, cmd::ExternalDriver, RunMachine},
};

}  // namespace

void RunMachineCommand(Application& app, int id) {
  RunMachine(app, id);
}

std::span<const CommandHandler> MachineCommandHandlers() {
  return kMachineHandlers;
}

}  // namespace isolith
