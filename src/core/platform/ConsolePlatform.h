// The platform of the command-line program: no one to ask, so questions take their preferred
// answer, dialogs are accepted as they stand and messages go to the error stream.
#pragma once

#include <cstdio>

#include "core/platform/Platform.h"

namespace isolith {

class ConsolePlatform : public Platform {
 public:
  explicit ConsolePlatform(std::FILE* messages = stderr) : out_(messages) {}

  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  Answer Ask(std::string_view title, std::string_view text, bool withCancel,
             Answer preferred) override;
  void Beep(int) override {}
  void SetStatus(std::string_view) override {}
  void Repaint(RepaintLevel) override {}
  void PumpMessages(int) override {}
  void BeginProgress(std::string_view) override {}
  void EndProgress() override {}
  bool StopRequested() override { return false; }
  void SetBusyCursor(bool) override {}
  std::optional<std::string> OpenFileDialog(FileRequest&) override { return std::nullopt; }
  std::optional<std::string> SaveFileDialog(FileRequest&) override { return std::nullopt; }
  bool RunDialog(DialogForm& form) override { return form.Accept(*this); }
  uint64_t TickCount() override;
  int64_t Now() override;
  char DecimalSeparator() override { return '.'; }
  bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                    const std::string& workingFolder, int64_t* pid) override;

 private:
  std::FILE* out_;
};

}  // namespace isolith
