#include "ui/dialogs/TDialogShiftView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "edit/TransformForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogShiftView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogShift*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogShift::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  QLineEdit* dx = NumberField(form->dx, "dx");
  QLineEdit* dy = NumberField(form->dy, "dy");
  QCheckBox* allLayers = CheckBox(TDialogShift::kAllLayersText, form->allLayers, "allLayers");
  AddFieldRow(grid, 0, TDialogShift::kDxText, dx, form->unit);
  AddFieldRow(grid, 1, TDialogShift::kDyText, dy, form->unit);
  grid->addWidget(allLayers, 2, 0, 1, 3);

  dialog.acceptRule = [&] {
    form->dx = FromQ(dx->text());
    form->dy = FromQ(dy->text());
    form->allLayers = allLayers->isChecked();
    if (form->Accept(platform)) return true;
    if (form->focus == TDialogShift::kDx) FocusField(dx);
    if (form->focus == TDialogShift::kDy) FocusField(dy);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
