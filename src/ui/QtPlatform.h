// The platform of the desktop program: message boxes, questions, file dialogs and dialog views
// on the screen, the status line and repaints through the main window.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>
#include <string>

#include "core/platform/Platform.h"

class QProgressDialog;
class QWidget;

namespace isolith {

// What the platform needs of the main window. Until a window is attached, messages have no
// parent, the status text waits for the window and repaints do nothing.
class PlatformWindow {
 public:
  virtual ~PlatformWindow() = default;
  virtual QWidget* DialogParent() = 0;
  virtual void ShowStatus(const QString& text) = 0;
  virtual void RepaintBoard(RepaintLevel level) = 0;
};

// A dialog view: shows the widgets bound to `form`, and on OK calls `form.Accept(platform)`,
// staying open while it refuses. True when the person confirmed and the form accepted.
using DialogView = std::function<bool(DialogForm& form, Platform& platform, QWidget* parent)>;

// The filter list of a file dialog in Qt's notation, one entry per filter:
// {"Gerber files", "*.GBR;*.GRB"} becomes "Gerber files (*.GBR *.GRB *.gbr *.grb)". Names on
// this system keep their case, so each pattern is also offered in lower case.
QStringList NameFilters(const std::vector<FileFilter>& filters);

// The default suffix of a file dialog: the extension without its leading dot.
QString DefaultSuffix(const std::string& extension);

// The decimal separator of a locale, "." when the locale's is not a single ASCII character.
char DecimalSeparatorOf(const QString& localeDecimalPoint);

class QtPlatform : public Platform {
 public:
  QtPlatform();

  void AttachWindow(PlatformWindow* window);
  // Makes a dialog view known by the name of the form it shows.
  void RegisterView(std::string formName, DialogView view);
  bool HasView(std::string_view formName) const;

  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  Answer Ask(std::string_view title, std::string_view text, bool withCancel,
             Answer preferred) override;
  void Beep(int sound) override;
  void SetStatus(std::string_view text) override;
  void Repaint(RepaintLevel level) override;
  void PumpMessages(int milliseconds) override;
  void SetBusyCursor(bool busy) override;
  void BeginProgress(std::string_view title) override;
  void EndProgress() override;
  bool StopRequested() override;
  std::optional<std::string> OpenFileDialog(FileRequest& request) override;
  std::optional<std::string> SaveFileDialog(FileRequest& request) override;
  bool RunDialog(DialogForm& form) override;
  uint64_t TickCount() override;
  int64_t Now() override;
  char DecimalSeparator() override;
  bool StartProcess(const std::string& program, const std::vector<std::string>& args,
                    const std::string& workingFolder, int64_t* pid) override;

  // The status text last set, kept for a window attached later.
  const QString& StatusText() const { return status_; }

 private:
  std::optional<std::string> RunFileDialog(FileRequest& request, bool save);
  QWidget* Parent() const;

  PlatformWindow* window_ = nullptr;
  std::map<std::string, DialogView, std::less<>> views_;
  QElapsedTimer clock_;
  QString status_;
  bool busyCursor_ = false;
  QProgressDialog* progress_ = nullptr;  // while a long calculation runs
};

}  // namespace isolith
