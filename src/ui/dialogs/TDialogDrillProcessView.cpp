#include "ui/dialogs/TDialogDrillProcessView.h"

#include <QComboBox>
#include <QGridLayout>

#include "output/DrillProcessForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogDrillProcessView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogDrillProcess*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogDrillProcess::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  auto* process = new QComboBox;
  process->setObjectName("process");
  for (std::string_view text : TDialogDrillProcess::kProcesses) process->addItem(ToQ(text));
  process->setCurrentIndex(form->process);
  AddFieldRow(grid, 0, TDialogDrillProcess::kProcessLabel, process, {});

  dialog.acceptRule = [&] {
    form->process = process->currentIndex();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
