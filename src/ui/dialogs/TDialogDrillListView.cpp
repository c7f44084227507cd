#include "ui/dialogs/TDialogDrillListView.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>
#include <QTimer>
#include <array>

#include "toolpath/DrillListForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// The first tool choice takes the focus a moment after the dialog has appeared.
constexpr int kFocusDelayMs = 250;

}  // namespace

bool TDialogDrillListView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogDrillList*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, form->title);

  auto* grid = new QGridLayout;
  grid->addWidget(TextLabel("Diameter"), 0, 0);
  grid->addWidget(TextLabel("Nb."), 0, 1);
  grid->addWidget(TextLabel("Tool"), 0, 2);
  auto* checked = new QButtonGroup(&dialog);
  std::array<QComboBox*, kDrillRows> choices{};
  QComboBox* firstChoice = nullptr;
  for (int i = 0; i < kDrillRows; ++i) {
    const TDialogDrillList::Row& row = form->rows[i];
    if (!row.visible) continue;
    const std::string name = "row" + std::to_string(i);
    QRadioButton* select = RadioButton(row.diameter, i == form->selectedRow, name.c_str());
    checked->addButton(select, i);
    QLabel* holes = TextLabel(row.holes);
    holes->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* tools = new QComboBox;
    tools->setObjectName(QStringLiteral("tool%1").arg(i));
    for (const std::string& label : row.labels) tools->addItem(ToQ(label));
    tools->setCurrentIndex(row.chosen);
    grid->addWidget(select, i + 1, 0);
    grid->addWidget(holes, i + 1, 1);
    grid->addWidget(tools, i + 1, 2);
    choices[i] = tools;
    if (!firstChoice) firstChoice = tools;
  }
  grid->setColumnStretch(2, 1);
  dialog.Body()->addLayout(grid);

  // Checking a row shows its holes highlighted on the drill layer.
  QObject::connect(checked, &QButtonGroup::idClicked, &dialog, [form, &platform](int row) {
    form->SelectRow(row);
    platform.Repaint(RepaintLevel::View);
  });
  if (firstChoice) {
    QPointer<QComboBox> target = firstChoice;
    QTimer::singleShot(kFocusDelayMs, &dialog, [target] {
      if (target) target->setFocus(Qt::OtherFocusReason);
    });
  }

  dialog.acceptRule = [&] {
    for (int i = 0; i < kDrillRows; ++i)
      if (choices[i]) form->rows[i].chosen = choices[i]->currentIndex();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
