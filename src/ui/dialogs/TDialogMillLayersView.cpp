#include "ui/dialogs/TDialogMillLayersView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <array>

#include "output/ExportDialogs.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

struct RowWidgets {
  QCheckBox* tick = nullptr;
  QComboBox* section = nullptr;
  QCheckBox* mirror = nullptr;
};

}  // namespace

bool TDialogMillLayersView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogMillLayers*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, form->title);

  auto* grid = new QGridLayout;
  std::array<RowWidgets, kSequenceSlots> widgets;
  for (int i = 0; i < kSequenceSlots; ++i) {
    const TDialogMillLayers::Row& row = form->rows[i];
    RowWidgets& w = widgets[i];
    const std::string n = std::to_string(i);
    w.tick = CheckBox(row.label, row.ticked, ("tick" + n).c_str());
    w.section = new QComboBox;
    w.section->setObjectName(ToQ("section" + n));
    for (const TSectionChoice& choice : row.choices) {
      w.section->addItem(ToQ(choice.label), choice.code);
      if (choice.code == row.code) w.section->setCurrentIndex(w.section->count() - 1);
    }
    if (row.code == 0 || w.section->currentIndex() < 0) w.section->setCurrentIndex(-1);
    w.mirror = CheckBox("Flip X", row.mirror, ("mirror" + n).c_str());
    grid->addWidget(w.tick, i, 0);
    grid->addWidget(w.section, i, 1);
    grid->addWidget(w.mirror, i, 2);
    // A row ticked without a section takes the first one offered.
    QComboBox* section = w.section;
    QObject::connect(w.tick, &QCheckBox::toggled, &dialog, [section](bool on) {
      if (on && section->currentIndex() < 0 && section->count() > 0) section->setCurrentIndex(0);
    });
  }
  grid->setColumnStretch(1, 1);
  dialog.Body()->addLayout(grid);
  widgets[0].tick->setFocus();

  dialog.acceptRule = [&] {
    for (int i = 0; i < kSequenceSlots; ++i) {
      TDialogMillLayers::Row& row = form->rows[i];
      const RowWidgets& w = widgets[i];
      row.ticked = w.tick->isChecked();
      if (w.section->currentIndex() >= 0) row.code = w.section->currentData().toInt();
      row.mirror = w.mirror->isChecked();
    }
    if (form->Accept(platform)) return true;
    if (form->focusRow >= 0 && form->focusRow < kSequenceSlots)
      widgets[form->focusRow].section->setFocus(Qt::OtherFocusReason);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
