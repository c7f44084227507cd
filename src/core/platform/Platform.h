// The only way the logic reaches a person or the operating system. The desktop program, the
// command-line program and the tests each bring their own implementation.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace isolith {

// What a message box shows beside its text.
enum class MessageIcon {
  Information,  // a plain notice
  Warning,      // something was not as expected, the work goes on
  Error,        // the action failed
};

// The answer to a question.
enum class Answer {
  Yes,
  No,
  Cancel,
};

// How much of the window a repaint redraws.
enum class RepaintLevel {
  Status,  // the status line and menu state only
  View,    // the board view
  Full,    // the view recalculated from the model (after a load)
};

// One entry of a file dialog's filter list, e.g. {"Gerber files", "*.GBR;*.GRB"}.
struct FileFilter {
  std::string description;
  std::string patterns;
};

// A file dialog's request; `filterIndex` is in and out (1-based, as the filter lists count).
struct FileRequest {
  std::string title;
  std::string folder;
  std::string fileName;
  std::vector<FileFilter> filters;
  int filterIndex = 1;
  std::string defaultExtension;
};

// A dialog's values and accept rule, kept apart from any window. `Accept` checks the values,
// tells the person what is wrong through the platform, and writes back when they are good.
class Platform;
class DialogForm {
 public:
  virtual ~DialogForm() = default;
  // A stable name by which a view or a test script finds the form.
  virtual std::string_view FormName() const = 0;
  // True when the values are good and were written back.
  virtual bool Accept(Platform& platform) = 0;
  // Why the last Accept refused, in words, for a run without a screen where the beep and the
  // focused field say nothing; empty when the form has no more to say.
  virtual std::string Refusal() const { return {}; }
};

class Platform {
 public:
  virtual ~Platform() = default;

  virtual void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) = 0;
  // A question with Yes and No (and Cancel when `withCancel`); `preferred` is the default button.
  virtual Answer Ask(std::string_view title, std::string_view text, bool withCancel,
                     Answer preferred) = 0;
  // The refusal beep; `sound` is the user's sound setting.
  virtual void Beep(int sound) = 0;
  virtual void SetStatus(std::string_view text) = 0;
  virtual void Repaint(RepaintLevel level) = 0;
  // Gives the message loop a turn, for at most `milliseconds`.
  virtual void PumpMessages(int milliseconds) = 0;
  // The wait cursor on or off.
  virtual void SetBusyCursor(bool busy) = 0;
  // A long calculation begins: the person sees its progress (the status texts that follow)
  // and may ask it to stop. Ended by EndProgress.
  virtual void BeginProgress(std::string_view title) = 0;
  virtual void EndProgress() = 0;
  // True once the person asked the running calculation to stop; the calculation asks at each
  // of its phases, after giving the message loop a turn.
  virtual bool StopRequested() = 0;

  virtual std::optional<std::string> OpenFileDialog(FileRequest& request) = 0;
  virtual std::optional<std::string> SaveFileDialog(FileRequest& request) = 0;
  // Runs a dialog over its form: true when the person confirmed it and `Accept` succeeded.
  virtual bool RunDialog(DialogForm& form) = 0;

  // Milliseconds since some fixed moment, and seconds since the epoch.
  virtual uint64_t TickCount() = 0;
  virtual int64_t Now() = 0;
  // The decimal separator of the person's locale (dialogs only; files always use ".").
  virtual char DecimalSeparator() = 0;
  // Starts a program with its arguments in `workingFolder` (the program's own when empty); it
  // runs beside this one. False when it could not be started; else `pid`, when given, receives
  // the process id.
  virtual bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                            const std::string& workingFolder, int64_t* pid = nullptr) = 0;
};

// A phase of a long calculation: its text in the status line and a turn for the message loop.
// False when the person asked to stop. Nothing with no platform.
inline bool AnnouncePhase(Platform* platform, std::string_view text) {
  if (!platform) return true;
  platform->SetStatus(text);
  platform->PumpMessages(0);
  return !platform->StopRequested();
}

}  // namespace isolith
