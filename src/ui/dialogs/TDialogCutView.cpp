#include "ui/dialogs/TDialogCutView.h"

#include <QButtonGroup>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "toolpath/CutPath.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogCutView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogCut*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogCut::kTitle);

  if (!form->toolLabel.empty()) {
    QLabel* tool = TextLabel(form->toolLabel);
    tool->setObjectName("tool");
    dialog.Body()->addWidget(tool);
  }
  QLabel* depth = TextLabel(std::string(TDialogCut::kDepthLabel) + " " +
                            InfoNumber(form->depth, platform.DecimalSeparator()));
  depth->setObjectName("depth");
  dialog.Body()->addWidget(depth);

  auto* sides = new QButtonGroup(&dialog);
  QRadioButton* outside = RadioButton(TDialogCut::kOutside, form->side == 0, "outside");
  QRadioButton* inside = RadioButton(TDialogCut::kInside, form->side != 0, "inside");
  sides->addButton(outside, 0);
  sides->addButton(inside, 1);
  dialog.Body()->addWidget(outside);
  dialog.Body()->addWidget(inside);
  (form->side == 0 ? outside : inside)->setFocus();

  dialog.acceptRule = [&] {
    form->side = inside->isChecked() ? 1 : 0;
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
