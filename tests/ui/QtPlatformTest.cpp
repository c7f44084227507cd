#include "ui/QtPlatform.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "QtTestApp.h"
#include "ui/SingleInstance.h"

namespace isolith {
namespace {

TEST(QtPlatform, FilterListInQtNotation) {
  const std::vector<FileFilter> filters = {
      {"Gerber files", "*.GBR;*.GRB"}, {"Drill files", "*.drl, *.DRL"}, {"All files", ""}};
  const QStringList list = NameFilters(filters);
  ASSERT_EQ(list.size(), 3);
  // Upper-case patterns are offered in lower case too, since names here keep their case;
  // a pattern given in both cases is not repeated.
  EXPECT_EQ(list[0], "Gerber files (*.GBR *.GRB *.gbr *.grb)");
  EXPECT_EQ(list[1], "Drill files (*.drl *.DRL)");
  EXPECT_EQ(list[2], "All files (*)");

  EXPECT_EQ(DefaultSuffix(".gbr"), "gbr");
  EXPECT_EQ(DefaultSuffix("*.NC"), "NC");
  EXPECT_EQ(DefaultSuffix("iso"), "iso");
  EXPECT_EQ(DefaultSuffix(""), "");
}

TEST(QtPlatform, DecimalSeparatorFromLocale) {
  EXPECT_EQ(DecimalSeparatorOf(QStringLiteral(",")), ',');
  EXPECT_EQ(DecimalSeparatorOf(QStringLiteral(".")), '.');
  // A separator that is not one plain character falls back to the point.
  EXPECT_EQ(DecimalSeparatorOf(QString(QChar(0x066B))), '.');
  EXPECT_EQ(DecimalSeparatorOf(QString()), '.');
}

TEST(QtPlatform, DialogWithoutViewIsRefusedNotFaked) {
  test::QtTestApp();
  struct Form : DialogForm {
    bool accepted = false;
    std::string_view FormName() const override { return "TDialogNoSuchView"; }
    bool Accept(Platform&) override { return accepted = true; }
  } form;
  QtPlatform platform;
  platform.RegisterView("TDialogOther",
                        [](DialogForm& f, Platform& p, QWidget*) { return f.Accept(p); });
  EXPECT_TRUE(platform.HasView("TDialogOther"));
  EXPECT_FALSE(platform.HasView("TDialogNoSuchView"));
  // The refusal message is modal; answer it as soon as it shows.
  QTimer::singleShot(0, [] {
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
  });
  EXPECT_FALSE(platform.RunDialog(form));
  EXPECT_FALSE(form.accepted);

  struct Other : DialogForm {
    bool accepted = false;
    std::string_view FormName() const override { return "TDialogOther"; }
    bool Accept(Platform&) override { return accepted = true; }
  } other;
  EXPECT_TRUE(platform.RunDialog(other));
  EXPECT_TRUE(other.accepted);
}

TEST(SingleInstance, SecondStartReachesTheFirst) {
  test::QtTestApp();
  const QString path = QCoreApplication::applicationFilePath();
  const QString name = SingleInstance::ServerName(path);
  EXPECT_EQ(name, SingleInstance::ServerName(path));
  EXPECT_NE(name, SingleInstance::ServerName(path + "-other"));
  EXPECT_FALSE(name.contains('/'));

  SingleInstance first(name);
  SingleInstance absent(name + "-absent");
  EXPECT_FALSE(absent.NotifyRunningInstance(200));
  ASSERT_TRUE(first.Listen());
  int activations = 0;
  QObject::connect(&first, &SingleInstance::activationRequested, [&] { ++activations; });

  SingleInstance second(name);
  EXPECT_TRUE(second.NotifyRunningInstance());
  QElapsedTimer waited;
  waited.start();
  while (activations == 0 && waited.elapsed() < 5000) QCoreApplication::processEvents();
  EXPECT_EQ(activations, 1);
}

}  // namespace
}  // namespace isolith
