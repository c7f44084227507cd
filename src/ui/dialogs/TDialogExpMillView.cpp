#include "ui/dialogs/TDialogExpMillView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "output/ExportDialogs.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogExpMillView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogExpMill*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogExpMill::kTitle);

  auto* sequence = new QComboBox;
  sequence->setObjectName("sequence");
  for (size_t i = 0; i < form->offered.size(); ++i) {
    const int value = form->offered[i];
    if (value < 0 || value > 3) continue;
    sequence->addItem(ToQ(TDialogExpMill::kSequenceTexts[value]), value);
    if (value == form->sequence) sequence->setCurrentIndex(sequence->count() - 1);
  }
  QCheckBox* card = CheckBox("card contour", form->cardContour, "cardContour");
  QLabel* then = TextLabel("then");
  then->setEnabled(form->cutoutEnabled);
  card->setEnabled(form->cutoutEnabled);
  auto* grid = new QGridLayout;
  grid->addWidget(sequence, 0, 0, 1, 2);
  grid->addWidget(then, 1, 0);
  grid->addWidget(card, 1, 1);
  grid->setColumnStretch(1, 1);
  dialog.Body()->addLayout(grid);
  QCheckBox* flip = CheckBox("Flip horizontally", form->flipHorizontally, "flipHorizontally");
  dialog.Body()->addWidget(flip);
  sequence->setFocus();

  dialog.acceptRule = [&] {
    if (sequence->currentIndex() >= 0) form->sequence = sequence->currentData().toInt();
    form->cardContour = card->isChecked();
    form->flipHorizontally = flip->isChecked();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
