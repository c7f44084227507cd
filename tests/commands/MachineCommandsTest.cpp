// The "&Machine" menu: the machine parameter file read, edited and written, with its warnings.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "commands/Application.h"
#include "commands/CommandTable.h"
#include "commands/Commands.h"
#include "params/MachineForms.h"
#include "support/FakePlatform.h"
#include "support/FakeTransfer.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

constexpr const char* kCannotRead =
    "Unable to read machine parameter file.\nDefault parameters will be used instead.";
constexpr const char* kWarning = "The machining process is under control of an external driver.";

// Sets one field of the dialog, by key.
std::function<bool(DialogForm&)> SetField(const char* key, const char* value, bool ok = true) {
  return [=](DialogForm& form) {
    for (auto& f : static_cast<TDialogMachine&>(form).fields)
      if (f.key == key) f.value = value;
    return ok;
  };
}

TEST(MachineCommands, TheFileIsReadEditedAndWrittenWithTheDriversWarnings) {
  TempFolder folder;
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  const std::string file = folder.path() + "Torvane.cnc";

  // No file yet: the defaults are shown and OK writes them.
  fake.dialogs["TDialogMachine"] = SetField("NumberOfAxes", "4");
  EXPECT_TRUE(RunCommand(app, cmd::MachineBasicData));
  EXPECT_EQ(fake.LastMessage(), kCannotRead);
  EXPECT_NE(ReadAll(file).find("\r\nNumberOfAxes=4\r\n"), std::string::npos);
  EXPECT_FALSE(CommandChecked(cmd::ExternalDriver, app));

  // The external driver's page turns it on: the menu row shows a tick, and the other two
  // commands warn first; "Full data" shows the driver's page before its own.
  fake.messages.clear();
  fake.dialogs["TDialogMachine"] = SetField("ExternalDriver", "Yes");
  EXPECT_TRUE(RunCommand(app, cmd::ExternalDriver));
  EXPECT_TRUE(fake.messages.empty());
  EXPECT_TRUE(CommandChecked(cmd::ExternalDriver, app));
  std::vector<std::string> titles;
  fake.dialogs["TDialogMachine"] = [&titles](DialogForm& form) {
    titles.push_back(static_cast<TDialogMachine&>(form).title);
    return true;
  };
  RunCommand(app, cmd::MachineBasicData);
  RunCommand(app, cmd::MachineFullData);
  ASSERT_EQ(fake.messages.size(), 2u);
  for (const auto& m : fake.messages)
    EXPECT_EQ(m.title + ": " + m.text, "Warning: " + std::string(kWarning));
  EXPECT_EQ(titles, (std::vector<std::string>{"Basic data", "External driver", "Mill parameters"}));

  // Cancel keeps the file as it was, and memory follows the file.
  const std::string before = ReadAll(file);
  fake.dialogs["TDialogMachine"] = SetField("NumberOfAxes", "2", false);
  RunCommand(app, cmd::MachineBasicData);
  EXPECT_EQ(ReadAll(file), before);
  EXPECT_EQ(app.machine.Text("NumberOfAxes"), "4");

  // A file that cannot be written says so, and loses nothing of the old one.
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);  // a folder where the file should be
  fake.messages.clear();
  fake.dialogs.erase("TDialogMachine");
  RunCommand(app, cmd::ExternalDriver);
  EXPECT_EQ(fake.LastMessage(),
            "Unable to write machine parameter file.\nParameters may be reinitialised.");
}

TEST(MachineCommands, AutoDetectPutsThePortFoundIntoTheControllersField) {
  TempFolder folder;
  test::FakePlatform fake;
  Application app(fake, folder.path(), folder.path());
  InitSettings(app);
  auto transfer = std::make_unique<test::FakeTransfer>();
  test::FakeTransfer& ports = *transfer;
  app.transfer = std::move(transfer);

  // By the answer to "plug in" and the serial devices there are: the message and the port field.
  struct Case {
    Answer plugged;
    std::vector<std::string> devices;
    std::string message, port;
  } cases[] = {
      {Answer::No, {"/dev/ttyUSB0"}, "", "COM7"},
      {Answer::Yes, {}, "No communication ports are available on this PC.", "COM7"},
      {Answer::Yes, {"/dev/ttyUSB0"}, "Only COM1 port is available on this PC.", "COM1"},
  };
  for (const Case& c : cases) {
    ports.devices = c.devices;
    fake.answers = {c.plugged};
    fake.messages.clear();
    std::string port;
    fake.dialogs["TDialogMachine"] = [&](DialogForm& form) {
      auto& f = static_cast<TDialogMachine&>(form);
      f.FindField("ComPort")->value = "COM7";
      EXPECT_TRUE(f.autoDetect);
      f.autoDetect(fake);
      port = f.FindField("ComPort")->value;
      return false;
    };
    RunCommand(app, cmd::MachineBasicData);
    EXPECT_EQ(port, c.port);
    const bool shown = std::any_of(fake.messages.begin(), fake.messages.end(), [&](const auto& m) {
      return m.title == "Auto-detect" && m.text == c.message;
    });
    EXPECT_EQ(shown, !c.message.empty()) << c.message;
  }
}

}  // namespace
}  // namespace isolith
