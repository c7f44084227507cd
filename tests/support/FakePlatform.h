// A scripted platform: records everything the logic says and answers from a script, so that a
// command flow can be tested without a screen.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/platform/Platform.h"

namespace isolith::test {

struct RecordedMessage {
  std::string title;
  std::string text;
  MessageIcon icon;
};

struct RecordedQuestion {
  std::string title;
  std::string text;
  Answer answer;
};

class FakePlatform : public Platform {
 public:
  // Answers given to questions in turn; when empty, the preferred answer.
  std::deque<Answer> answers;
  // File names returned by the open and save dialogs in turn; an empty string is a Cancel.
  std::deque<std::string> files;
  // How a dialog runs, by form name: edit the form and return whether OK was pressed (the
  // form's Accept still runs after OK). Without an entry the dialog is confirmed as it stands.
  std::map<std::string, std::function<bool(DialogForm&)>> dialogs;
  char decimalSeparator = '.';
  uint64_t tick = 0;
  int64_t now = 0;
  // StopRequested answers true from this many questions on (-1: never).
  int stopAfter = -1;

  std::vector<RecordedMessage> messages;
  std::vector<RecordedQuestion> questions;
  std::vector<std::string> statusTexts;
  std::vector<std::string> dialogsRun;
  std::vector<FileRequest> fileRequests;
  std::vector<std::vector<std::string>> processes;
  std::vector<std::string> workingFolders;  // of each process started
  std::vector<std::string> progressTitles;
  int progressOpen = 0;  // BeginProgress less EndProgress
  int stopQuestions = 0;
  int beeps = 0;
  int repaints = 0;

  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  Answer Ask(std::string_view title, std::string_view text, bool withCancel,
             Answer preferred) override;
  void Beep(int) override { ++beeps; }
  void SetStatus(std::string_view text) override { statusTexts.emplace_back(text); }
  void Repaint(RepaintLevel) override { ++repaints; }
  void PumpMessages(int) override {}
  void SetBusyCursor(bool) override {}
  void BeginProgress(std::string_view title) override {
    progressTitles.emplace_back(title);
    ++progressOpen;
  }
  void EndProgress() override { --progressOpen; }
  bool StopRequested() override { return stopAfter >= 0 && stopQuestions++ >= stopAfter; }
  std::optional<std::string> OpenFileDialog(FileRequest& request) override;
  std::optional<std::string> SaveFileDialog(FileRequest& request) override;
  bool RunDialog(DialogForm& form) override;
  uint64_t TickCount() override { return tick; }
  int64_t Now() override { return now; }
  char DecimalSeparator() override { return decimalSeparator; }
  bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                    const std::string& workingFolder, int64_t* pid) override;

  // The text of the last message, empty when none.
  std::string LastMessage() const { return messages.empty() ? "" : messages.back().text; }
};

}  // namespace isolith::test
