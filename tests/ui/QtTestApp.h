// The one QApplication of the window tests, made on first use on the off-screen platform so
// that the tests run without a display.
#pragma once

#include <QApplication>

namespace isolith::test {

inline QApplication& QtTestApp() {
  static int argc = 1;
  static char name[] = "test_ui";
  static char* argv[] = {name, nullptr};
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  static QApplication* app = new QApplication(argc, argv);
  return *app;
}

}  // namespace isolith::test
