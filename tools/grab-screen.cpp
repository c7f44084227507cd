// Saves the whole screen of the display it runs on as a PNG: the README's picture of the window
// is taken with it under Xvfb (scripts/screenshot.sh).
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>

int main(int argc, char* argv[]) {
  QGuiApplication app(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: grab-screen OUT.png\n");
    return 2;
  }
  QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) {
    std::fprintf(stderr, "grab-screen: no screen\n");
    return 1;
  }
  if (!screen->grabWindow(0).save(QString::fromLocal8Bit(argv[1]), "PNG")) {
    std::fprintf(stderr, "grab-screen: cannot write %s\n", argv[1]);
    return 1;
  }
  return 0;
}
