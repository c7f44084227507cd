#include "ui/dialogs/TDialogExcellonView.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "import/OpenExcellon.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// One row of two radio buttons, the first meaning 0 and the second 1.
QButtonGroup* AddChoiceRow(QDialog& dialog, QGridLayout* grid, int row, const char* label,
                           const char* first, const char* second, int chosen, const char* name) {
  auto* group = new QButtonGroup(&dialog);
  group->setObjectName(name);
  auto* buttons = new QHBoxLayout;
  int id = 0;
  for (const char* text : {first, second}) {
    auto* button = new QRadioButton(QString::fromUtf8(text), &dialog);
    button->setObjectName(QStringLiteral("%1%2").arg(QLatin1String(name)).arg(id));
    button->setChecked(id == chosen);
    group->addButton(button, id++);
    buttons->addWidget(button);
  }
  grid->addWidget(new QLabel(QString::fromUtf8(label), &dialog), row, 0);
  grid->addLayout(buttons, row, 1);
  return group;
}

}  // namespace

bool TDialogExcellonView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogExcellon*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogExcellon::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  QButtonGroup* coordinates = AddChoiceRow(dialog, grid, 0, "Co-ordinates :", "&absolute",
                                           "&incremental", form->coordinates, "coordinates");
  QButtonGroup* units =
      AddChoiceRow(dialog, grid, 1, "Units :", "i&mperial", "&metric", form->units, "units");
  QButtonGroup* zeros = AddChoiceRow(dialog, grid, 2, "Zero suppression :", "&leading", "&trailing",
                                     form->zeros, "zeros");
  QButtonGroup* decimalFormat = AddChoiceRow(dialog, grid, 3, "Decimal format :", "a&utomatic",
                                             "pre&defined", form->decimalFormat, "decimalFormat");
  // The digits field stands after "predefined", which it belongs to.
  QLineEdit* digits = NumberField(form->digits, "digits");
  auto* formatRow = qobject_cast<QHBoxLayout*>(grid->itemAtPosition(3, 1)->layout());
  formatRow->addWidget(digits);
  QCheckBox* keep = CheckBox("Keep as default settings", form->keepAsDefault, "keep");
  grid->addWidget(keep, 4, 0, 1, 2);

  auto showEnabled = [&] { digits->setEnabled(decimalFormat->checkedId() == 1); };
  showEnabled();
  QObject::connect(decimalFormat, &QButtonGroup::idToggled, &dialog, [&] { showEnabled(); });

  dialog.acceptRule = [&] {
    form->coordinates = coordinates->checkedId();
    form->units = units->checkedId();
    form->zeros = zeros->checkedId();
    form->decimalFormat = decimalFormat->checkedId();
    form->digits = FromQ(digits->text());
    form->keepAsDefault = keep->isChecked();
    if (form->Accept(platform)) return true;
    // The predefined format is the only value the dialog can refuse.
    FocusField(digits);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
