#include "ui/dialogs/TDialogImportView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "import/TDialogImport.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogImportView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogImport*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, form->title);
  QGridLayout* grid = FieldGrid(dialog);
  QLineEdit* scaleIn = NumberField(form->scaleIn, "scaleIn");
  QLineEdit* aperScaleIn = NumberField(form->aperScaleIn, "aperScaleIn");
  QLineEdit* drillScaleIn = NumberField(form->drillScaleIn, "drillScaleIn");
  int row = 0;
  AddFieldRow(grid, row++, "XY &co-ordinates :", scaleIn);
  // Drill files have no apertures: their row has no such field.
  if (form->hasApertures) {
    AddFieldRow(grid, row++, "&Apertures :", aperScaleIn);
  } else {
    aperScaleIn->setParent(&dialog);
    aperScaleIn->hide();
  }
  AddFieldRow(grid, row++, "&Drills :", drillScaleIn);

  QCheckBox* flipX = CheckBox("X", form->flipX, "flipX");
  QCheckBox* flipY = CheckBox("Y", form->flipY, "flipY");
  QCheckBox* swapXY = CheckBox("X/Y", form->swapXY, "swapXY");
  auto* flips = new QHBoxLayout;
  for (QCheckBox* box : {flipX, flipY, swapXY}) flips->addWidget(box);
  flips->addStretch();
  grid->addWidget(new QLabel(QStringLiteral("Flip :"), &dialog), row, 0);
  grid->addLayout(flips, row++, 1, 1, 2);
  QCheckBox* modern = CheckBox("&Modern reading (regions, arcs, macros, drill headers)",
                               form->modernImport, "modernImport");
  grid->addWidget(modern, row++, 0, 1, 3);
  QLineEdit* arcTolerance = NumberField(form->arcTolerance, "arcTolerance");
  AddFieldRow(grid, row++, "Arc &tolerance (mm) :", arcTolerance);

  dialog.acceptRule = [&] {
    form->scaleIn = FromQ(scaleIn->text());
    if (form->hasApertures) form->aperScaleIn = FromQ(aperScaleIn->text());
    form->drillScaleIn = FromQ(drillScaleIn->text());
    form->flipX = flipX->isChecked();
    form->flipY = flipY->isChecked();
    form->swapXY = swapXY->isChecked();
    form->modernImport = modern->isChecked();
    form->arcTolerance = FromQ(arcTolerance->text());
    if (form->Accept(platform)) return true;
    switch (form->focus) {
      case TDialogImport::kScaleIn:
        FocusField(scaleIn);
        break;
      case TDialogImport::kAperScaleIn:
        FocusField(aperScaleIn);
        break;
      case TDialogImport::kDrillScaleIn:
        FocusField(drillScaleIn);
        break;
      case TDialogImport::kArcTolerance:
        FocusField(arcTolerance);
        break;
      case TDialogImport::kNoField:
        break;
    }
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
