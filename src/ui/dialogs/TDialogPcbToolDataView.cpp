#include "ui/dialogs/TDialogPcbToolDataView.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

#include "params/ToolForms.h"
#include "params/ToolLibrary.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// The slot number: a text field of three characters with arrows. Any typed text goes to the
// form, which decides whether it names another slot; the arrows step within 1 to 50.
class ToolNumberBox : public QAbstractSpinBox {
 public:
  ToolNumberBox(QWidget* parent, const TDialogPcbToolData& form)
      : QAbstractSpinBox(parent), form_(form) {
    lineEdit()->setMaxLength(3);
    setAlignment(Qt::AlignRight);
    setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 24);
  }

  QLineEdit* Edit() const { return lineEdit(); }

  // Called with the new text after typing or a step.
  std::function<void(const QString&)> changed;

  void stepBy(int steps) override {
    const int target = std::clamp(form_.number + steps, 1, kToolSlots);
    if (target == form_.number) return;
    lineEdit()->setText(QString::number(target));
    if (changed) changed(lineEdit()->text());
    selectAll();
  }

 protected:
  StepEnabled stepEnabled() const override {
    StepEnabled enabled = StepNone;
    if (form_.number < kToolSlots) enabled |= StepUpEnabled;
    if (form_.number > 1) enabled |= StepDownEnabled;
    return enabled;
  }

 private:
  const TDialogPcbToolData& form_;
};

}  // namespace

bool TDialogPcbToolDataView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogPcbToolData*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogPcbToolData::kTitle);
  QGridLayout* grid = FieldGrid(dialog);

  auto* number = new ToolNumberBox(&dialog, *form);
  number->setObjectName("number");
  auto* name = new QLineEdit(&dialog);
  name->setObjectName("name");
  name->setMaxLength(TDialogPcbToolData::kNameLength);
  name->setMinimumWidth(name->fontMetrics().averageCharWidth() * 36);
  QLineEdit* diameter = NumberField({}, "diameter");
  auto* profile = new QComboBox(&dialog);
  profile->setObjectName("profile");
  for (const std::string& row : TDialogPcbToolData::ProfileRows()) profile->addItem(ToQ(row));
  QLineEdit* angle = NumberField({}, "angle");
  QLineEdit* rotation = NumberField({}, "rotation");
  QLineEdit* speed = NumberField({}, "speed");

  int row = 0;
  AddFieldRow(grid, row++, "Tool &number :", number);
  AddFieldRow(grid, row++, "N&ame :", name, {}, 2);
  AddFieldRow(grid, row++, "&Diameter :", diameter, form->lengthUnitLabel());
  AddFieldRow(grid, row++, "&Profile :", profile);
  AddFieldRow(grid, row++, "An&gle :", angle, "\xC2\xB0");
  AddFieldRow(grid, row++, "&Rotate :", rotation, "rpm");
  AddFieldRow(grid, row++, "&Speed :", speed, form->speedUnitLabel());

  // The widgets show the form; `showing` keeps the list's own signal out while they do.
  bool showing = false;
  auto show = [&] {
    showing = true;
    ShowText(number->Edit(), form->numberText);
    ShowText(name, form->name);
    ShowText(diameter, form->diameter);
    profile->setCurrentIndex(form->profile);
    ShowText(angle, form->angle);
    ShowText(rotation, form->rotation);
    ShowText(speed, form->plungeSpeed);
    angle->setEnabled(form->AngleEnabled());
    number->update();  // the arrows follow the slot
    showing = false;
  };
  auto read = [&] {
    form->numberText = FromQ(number->Edit()->text());
    form->name = FromQ(name->text());
    form->diameter = FromQ(diameter->text());
    form->profile = profile->currentIndex();
    form->angle = FromQ(angle->text());
    form->rotation = FromQ(rotation->text());
    form->plungeSpeed = FromQ(speed->text());
  };
  auto focusRefused = [&] {
    switch (form->focus) {
      case TDialogPcbToolData::kNumber:
        number->setFocus(Qt::OtherFocusReason);
        number->selectAll();
        break;
      case TDialogPcbToolData::kName:
        FocusField(name);
        break;
      case TDialogPcbToolData::kDiameter:
        FocusField(diameter);
        break;
      case TDialogPcbToolData::kProfile:
        profile->setFocus();
        break;
      case TDialogPcbToolData::kAngle:
        FocusField(angle);
        break;
      case TDialogPcbToolData::kRotation:
        FocusField(rotation);
        break;
      case TDialogPcbToolData::kSpeed:
        FocusField(speed);
        break;
      case TDialogPcbToolData::kNoField:
        break;
    }
  };
  show();

  // Another slot: the form checks this one, stores it and shows the other, or refuses and
  // shows the working copy again.
  number->changed = [&](const QString&) {
    read();
    form->focus = TDialogPcbToolData::kNoField;
    const bool moved = form->NumberChanged(platform);
    show();
    if (!moved && form->focus != TDialogPcbToolData::kNoField) focusRefused();
  };
  QObject::connect(number->Edit(), &QLineEdit::textEdited, &dialog,
                   [&](const QString& text) { number->changed(text); });
  QObject::connect(profile, &QComboBox::currentIndexChanged, &dialog, [&](int index) {
    if (showing) return;
    form->profile = index;
    angle->setEnabled(form->AngleEnabled());
  });
  QObject::connect(angle, &QLineEdit::textEdited, &dialog, [&](const QString& text) {
    form->angle = FromQ(text);
    form->AngleChanged(platform);
    showing = true;
    profile->setCurrentIndex(form->profile);
    showing = false;
    angle->setEnabled(form->AngleEnabled());
  });

  dialog.acceptRule = [&] {
    read();
    if (form->Accept(platform)) return true;
    focusRefused();
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
