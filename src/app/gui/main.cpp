// The desktop program: one window over one application object.
#include <QApplication>
#include <QFileInfo>
#include <QPixmap>
#include <QScreen>
#include <QSplashScreen>
#include <QTimer>
#include <clocale>
#include <string>
#include <vector>

#include "commands/Application.h"
#include "commands/ConfigFolder.h"
#include "commands/Startup.h"
#include "ui/MainWindow.h"
#include "ui/QtPlatform.h"
#include "ui/SingleInstance.h"
#include "ui/dialogs/DialogViews.h"

namespace {

constexpr int kSplashMilliseconds = 3000;
constexpr int kSplashMinimumSize = 50;

// The splash bitmap beside the program, shown for three seconds unless the command line asks
// otherwise; one under 50 pixels either way is not shown.
QSplashScreen* ShowSplash(const isolith::Application& app) {
  if (app.NoSplash || app.DebugMode) return nullptr;
  const QString file = QString::fromStdString(app.ProgramFolder) + QStringLiteral("Isolith.sys");
  if (!QFileInfo::exists(file)) return nullptr;
  QPixmap picture;
  if (!picture.load(file)) return nullptr;
  if (picture.width() < kSplashMinimumSize || picture.height() < kSplashMinimumSize) return nullptr;
  auto* splash = new QSplashScreen(picture, Qt::WindowStaysOnTopHint);
  splash->setAttribute(Qt::WA_DeleteOnClose);
  splash->show();
  QTimer::singleShot(kSplashMilliseconds, splash, &QWidget::close);
  return splash;
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication qapp(argc, argv);
  // Qt takes the user's locale for the C library too; the logic formats its files with the
  // C library's number conversion in places, so numbers there keep the point. Dialogs take
  // the user's separator from QLocale.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(isolith::kProgramName);
  QApplication::setApplicationVersion(isolith::kProgramVersion);

  // The platform's clock starts here: the start tick of the run.
  isolith::QtPlatform platform;
  isolith::RegisterDialogViews(platform);

  // A second start hands over to the first window and ends.
  isolith::SingleInstance instance(
      isolith::SingleInstance::ServerName(QCoreApplication::applicationFilePath()));
  if (instance.NotifyRunningInstance()) return 0;
  instance.Listen();

  std::string programFolder = isolith::ExecutableFolder();
  if (programFolder.empty())
    programFolder = isolith::WithSeparator(QCoreApplication::applicationDirPath().toStdString());
  std::string error;
  const std::string configFolder = isolith::PrepareConfigFolder(programFolder, "", error);
  if (configFolder.empty())
    platform.ShowMessage(isolith::kProgramName, error, isolith::MessageIcon::Warning);

  isolith::Application app(platform, programFolder, configFolder);
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QSize screenSize = screen ? screen->size() : QSize();
  isolith::InitSettings(app, screenSize.width(), screenSize.height());

  std::vector<std::string> words;
  const QStringList arguments = QCoreApplication::arguments();
  for (qsizetype i = 1; i < arguments.size(); ++i) words.push_back(arguments[i].toStdString());
  isolith::ApplyCommandLine(app, words);

  isolith::MainWindow window(app, platform);
  QObject::connect(&instance, &isolith::SingleInstance::activationRequested, &window,
                   &isolith::MainWindow::BringToFront);
  window.RestoreFramePosition();
  QSplashScreen* splash = ShowSplash(app);
  window.show();
  if (splash != nullptr) splash->raise();
  return QApplication::exec();
}
