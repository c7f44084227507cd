// The parameter, import and board dialog views, driven as a person would: a script runs once
// the dialog is on the screen, types into its fields, presses its buttons and looks at what the
// dialog shows; the form's result is checked after the dialog has closed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "QtTestApp.h"
#include "core/board/BoardOps.h"
#include "core/board/Records.h"
#include "edit/ApertureForms.h"
#include "edit/TransformForms.h"
#include "import/ExcellonReader.h"
#include "import/OpenExcellon.h"
#include "import/TDialogImport.h"
#include "params/MachineForms.h"
#include "params/Settings.h"
#include "params/ToolFile.h"
#include "params/ToolForms.h"
#include "support/FakePlatform.h"
#include "ui/dialogs/ApertureViews.h"
#include "ui/dialogs/DialogViews.h"
#include "ui/dialogs/TDialogDrillView.h"
#include "ui/dialogs/TDialogExcellonView.h"
#include "ui/dialogs/TDialogImportView.h"
#include "ui/dialogs/TDialogMachineView.h"
#include "ui/dialogs/TDialogManuPlotView.h"
#include "ui/dialogs/TDialogPcbToolDataView.h"
#include "ui/dialogs/TDialogScaleView.h"
#include "ui/dialogs/TDialogSizeView.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

// Runs `script` on the dialog as soon as it shows. A script that leaves the dialog open fails
// the test and the dialog is closed as cancelled, so that a broken view cannot hang the suite.
void WhenShown(std::function<void(QDialog&)> script) {
  QTimer::singleShot(0, [script] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    script(*dialog);
    if (dialog->isVisible()) {
      ADD_FAILURE() << "the dialog stayed open";
      dialog->reject();
    }
  });
}

template <typename W>
W* Find(QDialog& dialog, const char* name) {
  W* widget = dialog.findChild<W*>(name);
  EXPECT_NE(widget, nullptr) << name;
  return widget;
}

// Replaces a field's text by typing, as the keyboard does (so the view hears an edit).
void Type(QLineEdit* field, const QString& text) {
  field->selectAll();
  QKeyEvent erase(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
  QApplication::sendEvent(field, &erase);
  for (QChar c : text) {
    QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
    QApplication::sendEvent(field, &key);
  }
}

void Press(QDialog& dialog, QDialogButtonBox::StandardButton which) {
  Find<QDialogButtonBox>(dialog, "buttons")->button(which)->click();
}

TEST(ParameterViews, EveryFormOfTheGroupHasItsView) {
  test::QtTestApp();
  QtPlatform platform;
  RegisterParameterViews(platform);
  for (const char* name :
       {"TDialogPcbToolData", "TDialogDrill", "TDialogSize", "TDialogScale", "TDialogShift",
        "TDialogManuPlot", "TDialogImport", "TDialogExcellon", "TDialogChgPads", "TDialogChgTracks",
        "TDialogChgOnePad", "TDialogChgOneTrack", "TDialogMachine"})
    EXPECT_TRUE(platform.HasView(name)) << name;
}

void Pad(Board& b, float x, float y) {
  TPad* tail = LastOf(b.Pads[0]);
  AppendTo(b.Pads[0], tail, new TPad{1, 0, x, y, nullptr});
}

TEST(ParameterViews, SizeStaysOpenOnARefusalWithTheFocusThereAndWritesBackOnOk) {
  test::QtTestApp();
  test::FakePlatform fake;
  Board b;  // a 100 by 70 card
  Pad(b, 10, 10);
  Pad(b, 40.5f, 30.25f);
  TDialogSize form(b, "mm", '.');

  bool stayedOpen = false;
  QWidget* focusAfterRefusal = nullptr;
  QLineEdit* widthField = nullptr;
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Board dimensions");
    QLineEdit* width = widthField = Find<QLineEdit>(d, "width");
    QLineEdit* height = Find<QLineEdit>(d, "height");
    QLineEdit* margin = Find<QLineEdit>(d, "margin");
    QCheckBox* reframe = Find<QCheckBox>(d, "reframe");
    EXPECT_EQ(width->text(), "100");
    // With the box the margin counts, without it the size.
    EXPECT_FALSE(width->isEnabled());
    EXPECT_TRUE(margin->isEnabled());
    reframe->click();
    EXPECT_TRUE(width->isEnabled());
    EXPECT_TRUE(height->isEnabled());
    EXPECT_FALSE(margin->isEnabled());

    Type(width, "40");  // under the content's maximum X
    Type(height, "50");
    Press(d, QDialogButtonBox::Ok);
    stayedOpen = d.isVisible();
    focusAfterRefusal = d.focusWidget();
    EXPECT_EQ(width->selectedText(), "40");

    Type(width, "60");
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogSizeView(form, fake, nullptr));
  EXPECT_TRUE(stayedOpen);
  EXPECT_EQ(focusAfterRefusal, widthField);
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].text.rfind("Width :  40 mm\n\nInvalid value.", 0), 0u);
  EXPECT_EQ(b.CardWidth, 60);
  EXPECT_EQ(b.CardHeight, 50);
}

TEST(ParameterViews, ScaleTiesItsFieldsAndCancelChangesNothing) {
  test::QtTestApp();
  test::FakePlatform fake;
  Board b;
  Pad(b, 10, 10);
  TDialogScale form(b, "mm", ',');
  WhenShown([&](QDialog& d) {
    QLineEdit* scale = Find<QLineEdit>(d, "scale");
    QLineEdit* width = Find<QLineEdit>(d, "width");
    QLineEdit* height = Find<QLineEdit>(d, "height");
    EXPECT_EQ(scale->text(), "1");
    // No drills: that box cannot be changed.
    EXPECT_FALSE(Find<QCheckBox>(d, "drillDiameters")->isEnabled());
    Type(width, "150");
    EXPECT_EQ(scale->text(), "1,5");
    EXPECT_EQ(height->text(), "105");
    Type(scale, "0,5");
    EXPECT_EQ(width->text(), "50");
    EXPECT_EQ(height->text(), "35");
    Find<QCheckBox>(d, "coordinates")->click();
    EXPECT_FALSE(width->isEnabled());
    Press(d, QDialogButtonBox::Cancel);
  });
  EXPECT_FALSE(TDialogScaleView(form, fake, nullptr));
  EXPECT_EQ(b.CardWidth, 100);
  EXPECT_EQ(b.Pads[0]->x, 10);
  EXPECT_TRUE(fake.messages.empty());
}

TEST(ParameterViews, MachineDataShowEachSectionAsATabAndTakeValuesAsTheFileWould) {
  test::QtTestApp();
  test::FakePlatform fake;
  MachineParameters machine;
  TDialogMachine form(machine, MachinePages::Basic);
  WhenShown([&](QDialog& d) {
    Type(Find<QLineEdit>(d, "NumberOfAxes"), "9");  // the reader's clamp makes it 6
    Type(Find<QLineEdit>(d, "ComPort"), "COM4");
    Find<QCheckBox>(d, "LaserSpindle")->click();
    EXPECT_EQ(d.findChild<QCheckBox*>("ExternalDriver"), nullptr);  // not a page of this one
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogMachineView(form, fake, nullptr));
  EXPECT_EQ(machine.Text("NumberOfAxes"), "6");
  EXPECT_EQ(machine.Text("ComPort"), "COM4");
  EXPECT_TRUE(machine.Flag("LaserSpindle"));
}

TEST(ParameterViews, PositionRefusesOutsideItsLimitsAndPlotManuallyCloses) {
  test::QtTestApp();
  test::FakePlatform fake;
  TDialogManuPlot form(TDialogManuPlot::kCentringTitle, 5, 6, -10, 90, -10, 60, "mm", '.');
  QWidget* focused = nullptr;
  QLineEdit* yField = nullptr;
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Centering holes");
    yField = Find<QLineEdit>(d, "y");
    Type(yField, "61");
    Press(d, QDialogButtonBox::Ok);
    EXPECT_TRUE(d.isVisible());
    focused = d.focusWidget();
    Find<QPushButton>(d, "plotManually")->click();
  });
  EXPECT_FALSE(TDialogManuPlotView(form, fake, nullptr));
  EXPECT_EQ(focused, yField);
  EXPECT_TRUE(form.plotManually);
  EXPECT_EQ(form.y, 6);  // the refused value was not taken
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].text.rfind("Position :  61 mm", 0), 0u);

  // Enter in a field is OK.
  TDialogManuPlot again(TDialogManuPlot::kOriginTitle, 5, 6, 0, 90, 0, 60, "mm", '.');
  WhenShown([&](QDialog& d) {
    QLineEdit* x = Find<QLineEdit>(d, "x");
    Type(x, "12.5");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(x, &enter);
  });
  EXPECT_TRUE(TDialogManuPlotView(again, fake, nullptr));
  EXPECT_FLOAT_EQ(again.x, 12.5f);
  EXPECT_FALSE(again.plotManually);
}

TEST(ParameterViews, ImportScalesHideTheAperturesOfDrillFilesAndWriteTheRow) {
  test::QtTestApp();
  test::FakePlatform fake;
  Settings settings;
  TDialogImport excellon(settings, kRowExcellon, "Isolith", '.');
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Isolith EXCELLON");
    EXPECT_FALSE(Find<QLineEdit>(d, "aperScaleIn")->isVisible());
    Press(d, QDialogButtonBox::Cancel);
  });
  EXPECT_FALSE(TDialogImportView(excellon, fake, nullptr));

  const TImportFormat before = settings.ImportFormat[kRowGerber];
  TDialogImport gerber(settings, kRowGerber, "Isolith", '.');
  QWidget* focused = nullptr;
  QLineEdit* drills = nullptr;
  WhenShown([&](QDialog& d) {
    drills = Find<QLineEdit>(d, "drillScaleIn");
    EXPECT_TRUE(Find<QLineEdit>(d, "aperScaleIn")->isVisible());
    Find<QCheckBox>(d, "flipY")->click();
    Find<QCheckBox>(d, "modernImport")->click();
    Type(Find<QLineEdit>(d, "scaleIn"), "2");
    Type(drills, "-1");  // below 0.001
    Press(d, QDialogButtonBox::Ok);
    focused = d.focusWidget();
    EXPECT_EQ(settings.ImportFormat[kRowGerber].ScaleIn, before.ScaleIn);
    Type(drills, "1.5");
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogImportView(gerber, fake, nullptr));
  EXPECT_EQ(focused, drills);
  EXPECT_EQ(fake.messages.size(), 1u);
  const TImportFormat& row = settings.ImportFormat[kRowGerber];
  EXPECT_EQ(row.ScaleIn, 2);
  EXPECT_EQ(row.DrillScaleIn, 1.5f);
  EXPECT_EQ(row.FlipXY & 7, 2);
  EXPECT_TRUE(settings.ModernImport);
}

TEST(ParameterViews, ExcellonDigitsGoWithPredefinedAndABadFormatKeepsTheDialog) {
  test::QtTestApp();
  test::FakePlatform fake;
  Settings settings;
  ExcellonChoices choices;
  TDialogExcellon form(choices, settings, '.');
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Excellon import");
    QLineEdit* digits = Find<QLineEdit>(d, "digits");
    EXPECT_FALSE(digits->isEnabled());
    Find<QRadioButton>(d, "decimalFormat1")->click();
    EXPECT_TRUE(digits->isEnabled());
    Find<QRadioButton>(d, "units1")->click();
    Find<QRadioButton>(d, "zeros1")->click();
    Find<QCheckBox>(d, "keep")->click();
    Type(digits, "3.7");
    Press(d, QDialogButtonBox::Ok);
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(d.focusWidget(), digits);
    EXPECT_FALSE(choices.metric);  // nothing written yet
    Type(digits, "2,4");
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogExcellonView(form, fake, nullptr));
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].text, "Invalid value.\n3.7");
  EXPECT_TRUE(choices.metric);
  EXPECT_TRUE(choices.digitSet);
  EXPECT_FLOAT_EQ(choices.digits, 2.4f);
  EXPECT_EQ(choices.format, kExcellonBasicCoordinates);
  EXPECT_TRUE(settings.ExlMetric);
  EXPECT_EQ(settings.DrillImportFormat, kExcellonBasicCoordinates);
}

// A small tool table: a V-bit, two drills and a cutter.
struct Tools {
  ToolTable table{};
  Settings settings;
  Tools() {
    for (TToolData& t : table) ResetTool(t);
    Put(0, "V-bit", 3.175f, kProfileConical, 60);
    Put(2, "Drill 1", 1.0f);
    Put(3, "Drill 0.6", 0.6f);
    Put(4, "Cutter", 2.5f);
    settings.LengthUnitLabel = "mm";
    settings.SpeedUnit = kSpeedMmPerMin;
    settings.SpeedUnitLabel = "mm/min";
  }
  void Put(int index, const char* name, float diameter, int profile = kProfileCylindrical,
           float degrees = 0) {
    SetToolName(table[index], name);
    table[index].Diameter = diameter;
    table[index].Profile = profile;
    table[index].ConicalAngle = static_cast<float>(degrees * kDegreesToRadians);
  }
};

TEST(ParameterViews, ToolLibraryMovesBetweenSlotsAsTheNumberIsTyped) {
  test::QtTestApp();
  test::FakePlatform fake;
  Tools tools;
  const fs::path dir = fs::temp_directory_path() / ("isolith-views-" + std::to_string(getpid()));
  fs::create_directories(dir);
  TDialogPcbToolData form(tools.table, tools.settings, dir.string() + "/", '.');

  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Tool library");
    auto* number = Find<QAbstractSpinBox>(d, "number");
    QLineEdit* numberText = number->findChild<QLineEdit*>();
    QLineEdit* name = Find<QLineEdit>(d, "name");
    QLineEdit* diameter = Find<QLineEdit>(d, "diameter");
    QLineEdit* angle = Find<QLineEdit>(d, "angle");
    QComboBox* profile = Find<QComboBox>(d, "profile");
    EXPECT_EQ(d.focusWidget(), number);  // the dialog opens on its first field
    EXPECT_EQ(name->text(), "V-bit");
    EXPECT_EQ(profile->currentText(), "conical");
    EXPECT_TRUE(angle->isEnabled());

    // A refused field keeps the slot: the message, the number back, the focus on the field.
    Type(diameter, "200");
    Type(numberText, "3");
    EXPECT_EQ(numberText->text(), "1");
    EXPECT_EQ(d.focusWidget(), diameter);
    EXPECT_EQ(fake.messages.size(), 1u);
    EXPECT_EQ(diameter->text(), "3.175");

    profile->setCurrentIndex(0);
    EXPECT_FALSE(angle->isEnabled());
    Type(name, "Flat");
    Type(numberText, "3");
    EXPECT_EQ(name->text(), "Drill 1");
    EXPECT_EQ(profile->currentText(), "cylindrical");
    // The arrows step from the slot shown.
    number->stepUp();
    EXPECT_EQ(name->text(), "Drill 0.6");
    EXPECT_EQ(numberText->text(), "4");
    // Beyond the table: a beep and the shown number stays.
    Type(numberText, "60");
    EXPECT_EQ(numberText->text(), "6");  // "6" moved to the empty slot 6 first
    EXPECT_EQ(fake.beeps, 1);
    EXPECT_EQ(name->text(), "");
    Type(name, "New");
    Type(diameter, "0.8");
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogPcbToolDataView(form, fake, nullptr));
  EXPECT_EQ(ToolName(tools.table[0]), "Flat");
  EXPECT_EQ(tools.table[0].Profile, kProfileCylindrical);
  EXPECT_FLOAT_EQ(tools.table[5].Diameter, 0.8f);
  ToolTable written{};
  ASSERT_TRUE(ReadTools(written, dir.string() + "/", kToolBaseName));
  EXPECT_EQ(ToolName(written[5]), "New");
  fs::remove_all(dir);
}

TEST(ParameterViews, ActiveToolsShowWhatTheNumbersGiveAndNeedASetOfDrills) {
  test::QtTestApp();
  test::FakePlatform fake;
  Tools tools;
  tools.settings.MillingDepth = 0.1f;
  tools.settings.DrillingLib.fill(-1);
  TDialogDrill form(tools.table, tools.settings, '.');
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Active tools");
    QComboBox* milling = Find<QComboBox>(d, "millingTool");
    EXPECT_EQ(milling->count(), 50);
    EXPECT_EQ(milling->currentIndex(), 0);  // the first conical tool was chosen on opening
    EXPECT_EQ(Find<QComboBox>(d, "cuttingTool")->currentIndex(), 4);
    QLabel* radius = Find<QLabel>(d, "engravingRadius");
    EXPECT_TRUE(radius->text().startsWith("=> ")) << radius->text().toStdString();
    // A depth of 0 gives nothing new: the label keeps what it showed.
    const QString shown = radius->text();
    Type(Find<QLineEdit>(d, "millingDepth"), "0");
    EXPECT_EQ(radius->text(), shown);
    Type(Find<QLineEdit>(d, "millingDepth"), "0.2");
    EXPECT_NE(radius->text(), shown);

    // A set of drills with no row chosen is refused.
    Find<QRadioButton>(d, "drillingMode3")->click();
    EXPECT_FALSE(Find<QComboBox>(d, "drillingTool")->isEnabled());
    QCheckBox* boring = Find<QCheckBox>(d, "boringDrills");
    boring->setChecked(false);
    Type(Find<QLineEdit>(d, "boringThreshold"), "1.2");
    EXPECT_TRUE(boring->isChecked());
    Press(d, QDialogButtonBox::Ok);
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(fake.LastMessage(), "You must define a set of drilling tools.");
    Find<QComboBox>(d, "drillingLib2")->setCurrentIndex(3);  // tool 3, "Drill 1"
    Find<QComboBox>(d, "drillingLib5")->setCurrentIndex(4);  // tool 4, "Drill 0.6"
    Press(d, QDialogButtonBox::Ok);
  });
  EXPECT_TRUE(TDialogDrillView(form, fake, nullptr));
  const Settings& s = tools.settings;
  EXPECT_EQ(s.DrillingMode, 3);
  EXPECT_FLOAT_EQ(s.MillingDepth, 0.2f);
  EXPECT_EQ(s.MillingTool, 0);
  // The rows close up and sort by diameter.
  EXPECT_EQ(s.DrillingLib[0], 3);
  EXPECT_EQ(s.DrillingLib[1], 2);
  EXPECT_EQ(s.DrillingLib[2], -1);
  EXPECT_TRUE(s.BoringDrills);
  EXPECT_FLOAT_EQ(s.BoringThreshold, 1.2f);
}

TEST(ParameterViews, PadAperturesEditLiveAndCancelGivesTheTablesBack) {
  test::QtTestApp();
  test::FakePlatform fake;
  Board b;
  ResetApertureTables(b);
  TPad* tail = nullptr;
  AppendTo(b.Pads[0], tail, new TPad{4, 0, 10, 10, nullptr});
  AppendTo(b.Pads[0], tail, new TPad{7, 0, 20, 10, nullptr});
  b.PadSizeX[0][7] = 2.5f;
  TDialogChgPads form(b, '.');
  float liveX = 0;
  WhenShown([&](QDialog& d) {
    EXPECT_EQ(d.windowTitle(), "Pad apertures");
    auto* number = Find<QComboBox>(d, "number");
    EXPECT_EQ(number->currentText(), "5");  // code 4 shown as 5
    QPushButton* next = nullptr;
    for (QPushButton* b : d.findChildren<QPushButton*>())
      if (b->text() == ">") next = b;
    ASSERT_NE(next, nullptr);
    next->click();
    EXPECT_EQ(number->currentText(), "8");
    QLineEdit* x = Find<QLineEdit>(d, "sizeX");
    EXPECT_EQ(x->text(), "2.50");
    EXPECT_FALSE(Find<QLineEdit>(d, "sizeY")->isEnabled());  // a circle has one size
    Type(x, "3");
    liveX = b.PadSizeX[0][7];
    Press(d, QDialogButtonBox::Cancel);
  });
  EXPECT_FALSE(TDialogChgPadsView(form, fake, nullptr));
  EXPECT_FLOAT_EQ(liveX, 3);  // the board showed the change while the dialog was open
  form.Cancel();
  EXPECT_FLOAT_EQ(b.PadSizeX[0][7], 2.5f);
  EXPECT_GT(fake.repaints, 0);
}

}  // namespace
}  // namespace isolith
