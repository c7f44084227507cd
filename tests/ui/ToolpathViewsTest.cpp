// The toolpath and output dialog views, driven as a person would: a timer fills the widgets of
// the open dialog and presses OK or Cancel, and the form's result is checked.
#include <gtest/gtest.h>

#include <cstdlib>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <functional>

#include "QtTestApp.h"
#include "core/board/Board.h"
#include "output/ExportDialogs.h"
#include "output/OutputFormatForm.h"
#include "output/postprocessor/PostProcessorForm.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "support/FakePlatform.h"
#include "toolpath/ContourForm.h"
#include "toolpath/CuttingTabs.h"
#include "toolpath/HatchForm.h"
#include "ui/dialogs/DialogViews.h"
#include "ui/dialogs/TDialogContourView.h"
#include "ui/dialogs/TDialogCopOutputView.h"
#include "ui/dialogs/TDialogHatchView.h"
#include "ui/dialogs/TDialogMillLayersView.h"
#include "ui/dialogs/TDialogPostProView.h"
#include "ui/dialogs/TDialogTabsView.h"

namespace isolith {
namespace {

using View = bool (*)(DialogForm&, Platform&, QWidget*);
using Script = std::function<void(QDialog&)>;

// Runs `view` over `form`; `script` acts on the dialog once it is open. A dialog the script left
// open is closed with Cancel, so that a failed expectation cannot hang the suite.
bool RunView(View view, DialogForm& form, Platform& platform, const Script& script) {
  test::QtTestApp();
  QTimer::singleShot(0, [&script] {
    QPointer<QDialog> dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) {
      ADD_FAILURE() << "no dialog open";
      return;
    }
    script(*dialog);
    if (dialog && dialog->isVisible()) dialog->reject();
  });
  return view(form, platform, nullptr);
}

template <typename W>
W* Find(QDialog& dialog, const QString& name) {
  W* widget = dialog.findChild<W*>(name);
  EXPECT_NE(widget, nullptr) << name.toStdString();
  return widget;
}

// The post-processor's fields are named by their ids.
QString Field(TDialogPostPro::Field field) {
  return QStringLiteral("field%1").arg(int(field));
}

void Press(QDialog& dialog, QDialogButtonBox::StandardButton which) {
  dialog.findChild<QDialogButtonBox*>()->button(which)->click();
}

void Type(QDialog& dialog, const QString& name, const QString& text) {
  if (QLineEdit* field = Find<QLineEdit>(dialog, name)) field->setText(text);
}

TEST(ToolpathViews, EveryFormOfTheGroupHasItsView) {
  test::QtTestApp();
  QtPlatform platform;
  RegisterDialogViews(platform);
  for (const char* name :
       {"TDialogContour", "TDialogHatch", "TDialogCut", "TDialogTabs", "TDialogDrillList",
        "TDialogExport", "TDialogExpMill", "TDialogMillLayers", "TDialogPostPro",
        "TDialogCopOutput", "TDialogRS232", "TDialogDrillProcess"})
    EXPECT_TRUE(platform.HasView(name)) << name;
}

TEST(ToolpathViews, OutputDataFormatChoosesAFormatRefusesABadScaleThenWritesBack) {
  test::FakePlatform platform;
  Settings settings;
  TPostProcessor pp;
  TDialogCopOutput form(settings, pp, "", "board", nullptr, '.',
                        ShippedPostProcessors(std::string(ISOLITH_SOURCE_DIR) + "/data/"),
                        {"office", "plotter"});
  const bool ok = RunView(TDialogCopOutputView, form, platform, [&](QDialog& dialog) {
    // Each output choice opens its own fields: the port and its line end here.
    EXPECT_FALSE(Find<QComboBox>(dialog, "printer")->isEnabled());
    EXPECT_FALSE(Find<QComboBox>(dialog, "port")->isEnabled());
    Find<QRadioButton>(dialog, "sendToMachine")->setChecked(true);
    EXPECT_FALSE(Find<QLineEdit>(dialog, "file")->isEnabled());
    EXPECT_TRUE(Find<QComboBox>(dialog, "port")->isEnabled());
    Find<QComboBox>(dialog, "port")->setCurrentText("COM3");
    Find<QComboBox>(dialog, "lineEnd")->setCurrentIndex(2);
    // With ISOLITH_SHOTS set to a folder, the dialog is kept there for a person to look at.
    if (const char* folder = std::getenv("ISOLITH_SHOTS"))
      dialog.grab().save(QString::fromUtf8(folder) + "/output-data-format.png");
    // A shipped post-processor (after the user's own) is not edited before it is taken.
    QComboBox* format = Find<QComboBox>(dialog, "format");
    format->setCurrentIndex(11);
    EXPECT_TRUE(Find<QLineEdit>(dialog, "file")->text().endsWith(".ngc"));
    EXPECT_FALSE(Find<QPushButton>(dialog, "editPostProcessor")->isEnabled());
    EXPECT_EQ(form.shippedChoice, "linuxcnc");
    // Choosing HPGL (the list's first entry) gives the file its extension.
    format->setCurrentIndex(0);
    EXPECT_TRUE(Find<QLineEdit>(dialog, "file")->text().endsWith(".plt"));
    EXPECT_FALSE(Find<QPushButton>(dialog, "editPostProcessor")->isEnabled());
    Type(dialog, "scaleZ", "5000");
    Press(dialog, QDialogButtonBox::Ok);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(platform.messages.size(), 1u);
    EXPECT_EQ(Find<QLineEdit>(dialog, "scaleZ")->selectedText(), QStringLiteral("5000"));
    Type(dialog, "scaleZ", "2");
    Press(dialog, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(ok);
  EXPECT_EQ(settings.MachineFormat, 2);
  EXPECT_FLOAT_EQ(settings.MachineScaleZ, 2);
  EXPECT_EQ(settings.MachineOutput, 3);
  EXPECT_EQ(settings.MachinePort, "COM3");
  EXPECT_EQ(settings.MachineEol, 2);
}

TEST(ToolpathViews, SetContoursRefusesKeepsOpenThenWritesBack) {
  test::FakePlatform platform;
  platform.decimalSeparator = ',';
  Settings settings;
  settings.MillingTool = -1;
  settings.MillingDepth = 0.25f;
  settings.MillingNb1 = 2;
  settings.MillingNb2 = 0;
  ToolTable tools{};
  bool allLayers = false;

  TDialogContour form(settings, tools, allLayers, ',');
  bool stayedOpen = false;
  const bool ok = RunView(TDialogContourView, form, platform, [&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Set contours");
    EXPECT_EQ(Find<QLabel>(d, "tool")->text(), "Undefined");
    // Without a tool there is no distance to show; the depth takes the locale's mark.
    EXPECT_EQ(Find<QLabel>(d, "depth")->text(), "Depth 0,25");
    EXPECT_EQ(Find<QLineEdit>(d, "passes")->text(), "2");
    Type(d, "padPasses", "11");
    Find<QCheckBox>(d, "allLayers")->setChecked(true);
    Press(d, QDialogButtonBox::Ok);
    stayedOpen = d.isVisible();
    EXPECT_EQ(d.focusWidget(), Find<QLineEdit>(d, "padPasses"));
    EXPECT_EQ(Find<QLineEdit>(d, "padPasses")->selectedText(), "11");
    Type(d, "padPasses", "1+2");
    Type(d, "passes", "4");
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(stayedOpen);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].title, "Error");
  EXPECT_TRUE(ok);
  EXPECT_EQ(settings.MillingNb1, 4);
  EXPECT_EQ(settings.MillingNb2, 3);
  EXPECT_TRUE(allLayers);

  // Cancel leaves everything as it was, whatever the widgets held.
  TDialogContour again(settings, tools, allLayers, ',');
  EXPECT_FALSE(RunView(TDialogContourView, again, platform, [&](QDialog& d) {
    Type(d, "passes", "7");
    Find<QCheckBox>(d, "fast")->setChecked(true);
    Press(d, QDialogButtonBox::Cancel);
  }));
  EXPECT_EQ(settings.MillingNb1, 4);
  EXPECT_FALSE(settings.FastCalcul);
  EXPECT_EQ(platform.messages.size(), 1u);
}

TEST(ToolpathViews, SetHatchesOffersTheCardContourOnlyWhenThereIsOne) {
  test::FakePlatform platform;
  Settings settings;
  settings.HatchingLink = true;
  ToolTable tools{};
  Board board;
  HatchSession session;
  session.zone = kHatchCardContour;  // falls back: the board has no card contour

  TDialogHatch form(session, settings, tools, board);
  EXPECT_TRUE(RunView(TDialogHatchView, form, platform, [&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Set hatches");
    EXPECT_TRUE(Find<QRadioButton>(d, "wholeBoard")->isChecked());
    EXPECT_FALSE(Find<QRadioButton>(d, "cardContour")->isEnabled());
    Find<QRadioButton>(d, "selectedZone")->click();
    Find<QCheckBox>(d, "link")->setChecked(false);
    Press(d, QDialogButtonBox::Ok);
  }));
  EXPECT_EQ(session.zone, kHatchSelectedZone);
  EXPECT_FALSE(settings.HatchingLink);
}

TEST(ToolpathViews, TabWidthInTheLocalesNumbers) {
  test::FakePlatform platform;
  platform.decimalSeparator = ',';
  Settings settings;
  settings.CuttingTabs = 2.5f;
  settings.LengthUnitLabel = "mm";

  TDialogTabs form(settings, ',');
  bool stayedOpen = false;
  EXPECT_TRUE(RunView(TDialogTabsView, form, platform, [&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Set cutting tabs");
    EXPECT_EQ(Find<QLineEdit>(d, "width")->text(), "2,5");
    Type(d, "width", "12");
    Press(d, QDialogButtonBox::Ok);
    stayedOpen = d.isVisible();
    EXPECT_EQ(settings.CuttingTabs, 2.5f);
    Type(d, "width", "3,5");
    Press(d, QDialogButtonBox::Ok);
  }));
  EXPECT_TRUE(stayedOpen);
  EXPECT_EQ(platform.messages.size(), 1u);
  EXPECT_FLOAT_EQ(settings.CuttingTabs, 3.5f);
}

TEST(ToolpathViews, FinalOutputRefusesASectionTwiceWithTheFocusOnTheLaterRow) {
  test::FakePlatform platform;
  Settings settings;
  settings.MultiSequence = {10, 0, 0, 0, 0, 0, 0, 0};
  settings.MultiMirror = {0, 0, 0, 0, 0, 0, 0, 0};
  ToolTable tools{};
  TDrillList drills;
  ExportChoices choices;
  Board board;
  board.Pads[0] = new TPad;  // something on the front, so that the back is milled mirrored
  board.Contours[0] = new TPolygon;
  board.Contours[1] = new TPolygon;
  OutputContext context(board, settings, tools, drills, platform, choices);

  TDialogMillLayers form(context);
  bool stayedOpen = false;
  EXPECT_TRUE(RunView(TDialogMillLayersView, form, platform, [&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Final output");
    EXPECT_EQ(Find<QCheckBox>(d, "tick0")->text(), "Section #1");
    auto* first = Find<QComboBox>(d, "section0");
    ASSERT_EQ(first->count(), 2);
    EXPECT_EQ(first->currentText(), "Engraving layer #1");
    // The back of the board was added on opening.
    EXPECT_TRUE(Find<QCheckBox>(d, "tick1")->isChecked());
    EXPECT_EQ(Find<QComboBox>(d, "section1")->currentText(), "Engraving layer #2");
    // A third row ticked takes the first section offered: the same as row 1's.
    EXPECT_EQ(Find<QComboBox>(d, "section2")->currentIndex(), -1);
    Find<QCheckBox>(d, "tick2")->setChecked(true);
    EXPECT_EQ(Find<QComboBox>(d, "section2")->currentText(), "Engraving layer #1");
    Find<QCheckBox>(d, "mirror2")->setChecked(true);
    Press(d, QDialogButtonBox::Ok);
    stayedOpen = d.isVisible();
    EXPECT_EQ(d.focusWidget(), Find<QComboBox>(d, "section2"));
    Find<QCheckBox>(d, "tick2")->setChecked(false);
    Press(d, QDialogButtonBox::Ok);
  }));
  EXPECT_TRUE(stayedOpen);
  EXPECT_EQ(platform.beeps, 1);
  EXPECT_EQ(settings.MultiSequence, (std::array<int32_t, 8>{10, 11, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(settings.MultiMirror, (std::array<int32_t, 8>{0, 1, 1, 0, 0, 0, 0, 0}));
}

TEST(ToolpathViews, PostProcessorBracketFaultIsSelectedOnItsPage) {
  test::FakePlatform platform;
  Settings settings;
  TPostProcessor pp;
  const TPostProcessor before = pp;

  TDialogPostPro form(pp, settings, "/nonexistent/", '.');
  bool stayedOpen = false;
  EXPECT_TRUE(RunView(TDialogPostProView, form, platform, [&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Post-processor format");
    auto* pages = Find<QTabWidget>(d, "pages");
    EXPECT_EQ(pages->currentIndex(), 0);
    // The top of the file is edited one line to a row.
    auto* top = Find<QPlainTextEdit>(d, Field(TDialogPostPro::kFileTop));
    EXPECT_EQ(top->toPlainText(),
              "( Torvane / ISO Post-Processor )\n%1\nN1 G00 G90 G94 G71 G40 G54 G80");
    top->setPlainText("%\nG90");
    auto* feed = Find<QLineEdit>(d, Field(TDialogPostPro::kFeedXYZ));
    feed->setText("G01[ X<X>[ Y<Y>]");
    Type(d, Field(TDialogPostPro::kFileExt), "tap");
    Press(d, QDialogButtonBox::Ok);
    stayedOpen = d.isVisible();
    // The page of the field comes forward with the offending bracket selected.
    EXPECT_EQ(pages->currentWidget(), feed->parentWidget());
    EXPECT_EQ(d.focusWidget(), feed);
    EXPECT_EQ(feed->selectionStart(), 9);
    EXPECT_EQ(feed->selectedText(), "[");
    feed->setText("G01[ X<X>][ Y<Y>]");
    Press(d, QDialogButtonBox::Ok);
  }));
  EXPECT_TRUE(stayedOpen);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, kUnexpectedOpening);
  EXPECT_EQ(pp.FileTop, "%\\\\G90");
  EXPECT_EQ(pp.FeedXYZ, "G01[ X<X>][ Y<Y>]");
  EXPECT_EQ(settings.PprExtension, "tap");
  EXPECT_EQ(pp.ClearXYZ, before.ClearXYZ);

  // Cancel writes nothing into the record.
  TPostProcessor untouched;
  TDialogPostPro other(untouched, settings, "/nonexistent/", '.');
  EXPECT_FALSE(RunView(TDialogPostProView, other, platform, [&](QDialog& d) {
    Type(d, Field(TDialogPostPro::kTitleField), "Mine");
    Find<QCheckBox>(d, "hexa")->setChecked(true);
    Press(d, QDialogButtonBox::Cancel);
  }));
  EXPECT_EQ(untouched.Title, "ISO standard");
  EXPECT_FALSE(untouched.Hexa);
}

}  // namespace
}  // namespace isolith
