#include "ui/dialogs/TDialogSizeView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "edit/TransformForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogSizeView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogSize*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogSize::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  QLineEdit* width = NumberField(form->width, "width");
  QLineEdit* height = NumberField(form->height, "height");
  QCheckBox* reframe = CheckBox(TDialogSize::kReframeText, form->reframe, "reframe");
  QLineEdit* margin = NumberField(form->margin, "margin");
  QLineEdit* thickness = NumberField(form->thickness, "thickness");
  AddFieldRow(grid, 0, TDialogSize::kWidthText, width, form->unit);
  AddFieldRow(grid, 1, TDialogSize::kHeightText, height, form->unit);
  grid->addWidget(reframe, 2, 0, 1, 3);
  AddFieldRow(grid, 3, TDialogSize::kMarginText, margin, form->unit);
  AddFieldRow(grid, 4, TDialogSize::kThicknessText, thickness, form->unit);

  auto showEnabled = [&] {
    margin->setEnabled(form->MarginEnabled());
    width->setEnabled(form->SizeEnabled());
    height->setEnabled(form->SizeEnabled());
  };
  showEnabled();
  QObject::connect(reframe, &QCheckBox::toggled, &dialog, [&](bool on) {
    form->reframe = on;
    showEnabled();
  });

  dialog.acceptRule = [&] {
    form->width = FromQ(width->text());
    form->height = FromQ(height->text());
    form->reframe = reframe->isChecked();
    form->margin = FromQ(margin->text());
    form->thickness = FromQ(thickness->text());
    if (form->Accept(platform)) return true;
    switch (form->focus) {
      case TDialogSize::kWidth:
        FocusField(width);
        break;
      case TDialogSize::kHeight:
        FocusField(height);
        break;
      case TDialogSize::kMargin:
        FocusField(margin);
        break;
      case TDialogSize::kThickness:
        FocusField(thickness);
        break;
      case TDialogSize::kNoField:
        break;
    }
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
