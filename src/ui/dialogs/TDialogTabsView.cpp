#include "ui/dialogs/TDialogTabsView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "toolpath/CuttingTabs.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogTabsView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogTabs*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogTabs::kTitle);

  QLineEdit* width = NumberField(form->width, "width");
  auto* row = new QHBoxLayout;
  row->addWidget(FieldLabel(TDialogTabs::kWidthLabel, width));
  row->addWidget(width);
  row->addWidget(TextLabel(form->unitLabel()));
  dialog.Body()->addLayout(row);
  width->setFocus();

  dialog.acceptRule = [&] {
    form->width = FromQ(width->text());
    if (form->Accept(platform)) return true;
    FocusField(width);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
