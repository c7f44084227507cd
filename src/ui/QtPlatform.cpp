#include "ui/QtPlatform.h"

#include <QProgressDialog>
#include <utility>

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QWidget>

namespace isolith {

namespace {

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QMessageBox::Icon ToQIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Warning:
      return QMessageBox::Warning;
    case MessageIcon::Error:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButton ToQButton(Answer answer) {
  switch (answer) {
    case Answer::Yes:
      return QMessageBox::Yes;
    case Answer::No:
      return QMessageBox::No;
    case Answer::Cancel:
      return QMessageBox::Cancel;
  }
  return QMessageBox::No;
}

}  // namespace

QStringList NameFilters(const std::vector<FileFilter>& filters) {
  QStringList result;
  for (const FileFilter& filter : filters) {
    QStringList patterns;
    const QStringList given =
        ToQString(filter.patterns).split(QRegularExpression("[;, ]+"), Qt::SkipEmptyParts);
    for (const QString& pattern : given) {
      if (!patterns.contains(pattern)) patterns << pattern;
    }
    for (const QString& pattern : given) {
      const QString lower = pattern.toLower();
      if (!patterns.contains(lower)) patterns << lower;
    }
    if (patterns.isEmpty()) patterns << QStringLiteral("*");
    result << QStringLiteral("%1 (%2)").arg(ToQString(filter.description),
                                            patterns.join(QLatin1Char(' ')));
  }
  return result;
}

QString DefaultSuffix(const std::string& extension) {
  QString suffix = ToQString(extension);
  while (suffix.startsWith(QLatin1Char('*')) || suffix.startsWith(QLatin1Char('.')))
    suffix.remove(0, 1);
  return suffix;
}

char DecimalSeparatorOf(const QString& localeDecimalPoint) {
  if (localeDecimalPoint.size() == 1) {
    const QChar c = localeDecimalPoint.front();
    if (c.unicode() > 32 && c.unicode() < 127) return static_cast<char>(c.unicode());
  }
  return '.';
}

QtPlatform::QtPlatform() {
  clock_.start();
}

void QtPlatform::AttachWindow(PlatformWindow* window) {
  window_ = window;
  if (window_ && !status_.isEmpty()) window_->ShowStatus(status_);
}

void QtPlatform::RegisterView(std::string formName, DialogView view) {
  views_[std::move(formName)] = std::move(view);
}

bool QtPlatform::HasView(std::string_view formName) const {
  return views_.find(formName) != views_.end();
}

QWidget* QtPlatform::Parent() const {
  return window_ ? window_->DialogParent() : nullptr;
}

void QtPlatform::ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) {
  QMessageBox box(ToQIcon(icon), ToQString(title), ToQString(text), QMessageBox::Ok, Parent());
  box.exec();
}

Answer QtPlatform::Ask(std::string_view title, std::string_view text, bool withCancel,
                       Answer preferred) {
  QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
  if (withCancel) buttons |= QMessageBox::Cancel;
  QMessageBox box(QMessageBox::Question, ToQString(title), ToQString(text), buttons, Parent());
  if (preferred == Answer::Cancel && !withCancel) preferred = Answer::No;
  box.setDefaultButton(ToQButton(preferred));
  // Esc is Cancel where there is one, otherwise No.
  box.setEscapeButton(withCancel ? QMessageBox::Cancel : QMessageBox::No);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::Cancel:
      return Answer::Cancel;
    default:
      return Answer::No;
  }
}

void QtPlatform::Beep(int sound) {
  // The settings' sound numbers 1 to 6 name the system sounds; the desktop has a single bell.
  // 0 and anything above 6 are silent.
  if (sound >= 1 && sound <= 6) QApplication::beep();
}

void QtPlatform::SetStatus(std::string_view text) {
  status_ = ToQString(text);
  if (window_) window_->ShowStatus(status_);
  if (progress_) progress_->setLabelText(status_);
}

void QtPlatform::Repaint(RepaintLevel level) {
  if (window_) window_->RepaintBoard(level);
}

void QtPlatform::PumpMessages(int milliseconds) {
  QCoreApplication::processEvents(QEventLoop::AllEvents, milliseconds < 0 ? 0 : milliseconds);
}

void QtPlatform::SetBusyCursor(bool busy) {
  if (busy == busyCursor_) return;
  busyCursor_ = busy;
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

void QtPlatform::BeginProgress(std::string_view title) {
  if (progress_) return;
  // Modal, so that nothing but "Stop" reaches the model while it is half-calculated; shown at
  // once, since the calculation gives the loop a turn only between its phases.
  progress_ = new QProgressDialog(status_, QStringLiteral("Stop"), 0, 0, Parent());
  progress_->setObjectName("Progress");
  progress_->setWindowTitle(ToQString(title));
  progress_->setWindowModality(Qt::ApplicationModal);
  progress_->setMinimumDuration(0);
  progress_->setAutoClose(false);
  progress_->setAutoReset(false);
  progress_->show();
  QCoreApplication::processEvents();
}

void QtPlatform::EndProgress() {
  delete std::exchange(progress_, nullptr);
  // The phases of a calculation say nothing once it is over.
  SetStatus({});
}

bool QtPlatform::StopRequested() {
  return progress_ && progress_->wasCanceled();
}

std::optional<std::string> QtPlatform::RunFileDialog(FileRequest& request, bool save) {
  QFileDialog dialog(Parent(), ToQString(request.title));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  const QString folder = ToQString(request.folder);
  if (!folder.isEmpty() && QFileInfo(folder).isDir()) dialog.setDirectory(folder);
  if (!request.fileName.empty()) dialog.selectFile(ToQString(request.fileName));
  const QStringList filters = NameFilters(request.filters);
  if (!filters.isEmpty()) {
    dialog.setNameFilters(filters);
    if (request.filterIndex >= 1 && request.filterIndex <= filters.size())
      dialog.selectNameFilter(filters[request.filterIndex - 1]);
  }
  const QString suffix = DefaultSuffix(request.defaultExtension);
  if (!suffix.isEmpty()) dialog.setDefaultSuffix(suffix);

  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QStringList chosen = dialog.selectedFiles();
  if (chosen.isEmpty()) return std::nullopt;
  const int index = static_cast<int>(filters.indexOf(dialog.selectedNameFilter()));
  if (index >= 0) request.filterIndex = index + 1;
  return QDir::toNativeSeparators(chosen.front()).toStdString();
}

std::optional<std::string> QtPlatform::OpenFileDialog(FileRequest& request) {
  return RunFileDialog(request, false);
}

std::optional<std::string> QtPlatform::SaveFileDialog(FileRequest& request) {
  return RunFileDialog(request, true);
}

bool QtPlatform::RunDialog(DialogForm& form) {
  const auto found = views_.find(form.FormName());
  if (found == views_.end()) {
    // A form whose window is not part of this build: say so rather than pretend it ran.
    ShowMessage("Error",
                "The dialog \"" + std::string(form.FormName()) +
                    "\" is not available in this version of the program.",
                MessageIcon::Error);
    return false;
  }
  return found->second(form, *this, Parent());
}

uint64_t QtPlatform::TickCount() {
  return static_cast<uint64_t>(clock_.elapsed());
}

int64_t QtPlatform::Now() {
  return QDateTime::currentSecsSinceEpoch();
}

char QtPlatform::DecimalSeparator() {
  return DecimalSeparatorOf(QLocale::system().decimalPoint());
}

bool QtPlatform::StartProcess(const std::string& program, const std::vector<std::string>& args,
                              const std::string& workingFolder, int64_t* pid) {
  QStringList arguments;
  for (const std::string& arg : args) arguments << QString::fromStdString(arg);
  qint64 started = 0;
  if (!QProcess::startDetached(QString::fromStdString(program), arguments,
                               QString::fromStdString(workingFolder), &started))
    return false;
  if (pid) *pid = started;
  return true;
}

}  // namespace isolith
