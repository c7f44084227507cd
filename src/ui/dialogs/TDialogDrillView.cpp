#include "ui/dialogs/TDialogDrillView.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "params/ToolForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// A list of the 50 tools; -1 (or anything outside the table) shows no row.
QComboBox* ToolList(QWidget* parent, const QStringList& rows, int tool, const char* name) {
  auto* list = new QComboBox(parent);
  list->setObjectName(name);
  list->addItems(rows);
  list->setMaxVisibleItems(20);
  list->setCurrentIndex(tool >= 0 && tool < rows.size() ? tool : -1);
  return list;
}

// A row of the drilling set: a blank first row leaves the place free.
QComboBox* SetRowList(QWidget* parent, const QStringList& rows, int tool, int index) {
  auto* list = new QComboBox(parent);
  list->setObjectName(QStringLiteral("drillingLib%1").arg(index + 1));
  list->addItem(QString());
  list->addItems(rows);
  list->setMaxVisibleItems(20);
  list->setCurrentIndex(tool >= 0 && tool < rows.size() ? tool + 1 : 0);
  return list;
}

// What the numbers give: "Radius", "Distance" or "Recovery" and the form's text after it.
QLabel* AddResult(QGridLayout* grid, int row, const char* caption, const char* name) {
  QWidget* parent = grid->parentWidget();
  grid->addWidget(new QLabel(QString::fromUtf8(caption), parent), row, 3);
  auto* value = new QLabel(parent);
  value->setObjectName(name);
  value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("=> 000.000 mm")));
  grid->addWidget(value, row, 4);
  return value;
}

// Shows a result when the form has one; without, the label keeps what it shows.
void ShowResult(QLabel* label, const std::optional<std::string>& text, const std::string& unit) {
  if (text) label->setText(ToQ(*text + unit));
}

}  // namespace

bool TDialogDrillView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogDrill*>(&base);
  if (!form) return false;
  using F = TDialogDrill;

  FormDialog dialog(parent, F::kTitle);
  QStringList rows;
  for (const std::string& row : form->ToolRows()) rows << ToQ(row);
  const std::string& length = form->lengthUnitLabel();
  const std::string& speedUnit = form->speedUnitLabel();
  std::map<F::Field, QWidget*> fields;

  auto* columns = new QHBoxLayout;
  dialog.Body()->addLayout(columns);
  auto* left = new QVBoxLayout;
  auto* right = new QVBoxLayout;
  columns->addLayout(left);
  columns->addLayout(right);

  // Engraving.
  auto* engraving = new QGroupBox(QStringLiteral("Engraving"), &dialog);
  auto* eg = new QGridLayout(engraving);
  QComboBox* millingTool = ToolList(engraving, rows, form->millingTool, "millingTool");
  QLineEdit* millingDepth = NumberField(form->millingDepth, "millingDepth");
  QLineEdit* millingMargin = NumberField(form->millingMargin, "millingMargin");
  QLineEdit* millingSpeed = NumberField(form->millingSpeed, "millingSpeed");
  AddFieldRow(eg, 0, "&Engraving tool :", millingTool, {}, 4);
  AddFieldRow(eg, 1, "Depth :", millingDepth, length);
  AddFieldRow(eg, 2, "Margin :", millingMargin, length);
  AddFieldRow(eg, 3, "Engraving speed :", millingSpeed, speedUnit);
  QLabel* engravingRadius = AddResult(eg, 1, "Radius", "engravingRadius");
  QLabel* engravingDistance = AddResult(eg, 2, "Distance", "engravingDistance");
  left->addWidget(engraving);
  fields[F::kMillingTool] = millingTool;
  fields[F::kMillingDepth] = millingDepth;
  fields[F::kMillingMargin] = millingMargin;
  fields[F::kMillingSpeed] = millingSpeed;

  // Hatching.
  auto* hatching = new QGroupBox(QStringLiteral("Hatching"), &dialog);
  auto* hg = new QGridLayout(hatching);
  QComboBox* hatchingTool = ToolList(hatching, rows, form->hatchingTool, "hatchingTool");
  QLineEdit* hatchingDepth = NumberField(form->hatchingDepth, "hatchingDepth");
  QLineEdit* hatchingMargin = NumberField(form->hatchingMargin, "hatchingMargin");
  QLineEdit* hatchingSpeed = NumberField(form->hatchingSpeed, "hatchingSpeed");
  AddFieldRow(hg, 0, "&Hatching tool :", hatchingTool, {}, 4);
  AddFieldRow(hg, 1, "Depth :", hatchingDepth, length);
  AddFieldRow(hg, 2, "Margin :", hatchingMargin, length);
  AddFieldRow(hg, 3, "Hatching speed :", hatchingSpeed, speedUnit);
  QLabel* hatchingRadius = AddResult(hg, 1, "Radius", "hatchingRadius");
  QLabel* hatchingRecovery = AddResult(hg, 2, "Recovery", "hatchingRecovery");
  left->addWidget(hatching);
  fields[F::kHatchingTool] = hatchingTool;
  fields[F::kHatchingDepth] = hatchingDepth;
  fields[F::kHatchingMargin] = hatchingMargin;
  fields[F::kHatchingSpeed] = hatchingSpeed;

  // Cutting out and centering.
  auto* cutting = new QGroupBox(QStringLiteral("Cutting"), &dialog);
  auto* cg = new QGridLayout(cutting);
  QComboBox* cuttingTool = ToolList(cutting, rows, form->cuttingTool, "cuttingTool");
  QComboBox* plottingTool = ToolList(cutting, rows, form->plottingTool, "plottingTool");
  QLineEdit* cuttingDepth = NumberField(form->cuttingDepth, "cuttingDepth");
  QLineEdit* cuttingSpeed = NumberField(form->cuttingSpeed, "cuttingSpeed");
  AddFieldRow(cg, 0, "C&utting tool :", cuttingTool, {}, 3);
  AddFieldRow(cg, 1, "Ce&ntering tool :", plottingTool, {}, 3);
  AddFieldRow(cg, 2, "Cutting depth :", cuttingDepth, length);
  AddFieldRow(cg, 3, "Cutting speed :", cuttingSpeed, speedUnit);
  cg->setColumnStretch(3, 1);
  left->addWidget(cutting);
  left->addStretch();
  fields[F::kCuttingTool] = cuttingTool;
  fields[F::kPlottingTool] = plottingTool;
  fields[F::kCuttingDepth] = cuttingDepth;
  fields[F::kCuttingSpeed] = cuttingSpeed;

  // Drilling.
  auto* drilling = new QGroupBox(QStringLiteral("Drilling"), &dialog);
  auto* dg = new QVBoxLayout(drilling);
  auto* numbers = new QGridLayout;
  QLineEdit* drillingDepth = NumberField(form->drillingDepth, "drillingDepth");
  QLineEdit* boringSpeed = NumberField(form->boringSpeed, "boringSpeed");
  AddFieldRow(numbers, 0, "Drilling &depth :", drillingDepth, length);
  AddFieldRow(numbers, 1, "&Boring speed :", boringSpeed, speedUnit);
  numbers->setColumnStretch(3, 1);
  dg->addLayout(numbers);
  fields[F::kDrillingDepth] = drillingDepth;
  fields[F::kBoringSpeed] = boringSpeed;

  auto* mode = new QButtonGroup(&dialog);
  std::array<QRadioButton*, 3> modeButtons{};
  for (int i = 0; i < 3; ++i) {
    modeButtons[i] = new QRadioButton(ToQ(F::kModeTexts[i]), drilling);
    modeButtons[i]->setObjectName(QStringLiteral("drillingMode%1").arg(i + 1));
    mode->addButton(modeButtons[i], i + 1);
  }
  QComboBox* drillingTool = ToolList(drilling, rows, form->drillingTool, "drillingTool");
  dg->addWidget(modeButtons[0]);
  auto* single = new QHBoxLayout;
  single->addSpacing(24);
  single->addWidget(drillingTool, 1);
  dg->addLayout(single);
  dg->addWidget(modeButtons[1]);
  dg->addWidget(modeButtons[2]);
  fields[F::kDrillingTool] = drillingTool;

  auto* set = new QGridLayout;
  std::array<QComboBox*, kSequenceSlots> lib{};
  for (int i = 0; i < kSequenceSlots; ++i) {
    lib[i] = SetRowList(drilling, rows, form->drillingLib[i], i);
    set->addWidget(new QLabel(QStringLiteral("%1").arg(i + 1), drilling), i, 0);
    set->addWidget(lib[i], i, 1);
  }
  set->setContentsMargins(24, 0, 0, 0);
  dg->addLayout(set);
  QCheckBox* boringDrills =
      CheckBox("Allow circular boring for all drills over", form->boringDrills, "boringDrills");
  QLineEdit* boringThreshold = NumberField(form->boringThreshold, "boringThreshold");
  auto* boring = new QHBoxLayout;
  boring->addSpacing(24);
  boring->addWidget(boringDrills);
  boring->addWidget(boringThreshold);
  if (!length.empty()) boring->addWidget(new QLabel(ToQ(length), drilling));
  boring->addStretch();
  dg->addLayout(boring);
  dg->addStretch();
  right->addWidget(drilling);
  fields[F::kBoringThreshold] = boringThreshold;

  // One tool for all drills, or a set of them with the boring choice.
  auto showMode = [&] {
    const bool single = form->drillingMode <= 1;
    drillingTool->setEnabled(single);
    for (QComboBox* row : lib) row->setEnabled(!single);
    boringDrills->setEnabled(!single);
    boringThreshold->setEnabled(!single);
  };
  modeButtons[std::clamp(form->drillingMode, 1, 3) - 1]->setChecked(true);
  showMode();
  QObject::connect(mode, &QButtonGroup::idClicked, &dialog, [&](int id) {
    form->drillingMode = id;
    showMode();
  });

  // The results follow the tool, the depth and the margin as they are typed.
  auto showEngraving = [&] {
    form->millingTool = millingTool->currentIndex();
    form->millingDepth = FromQ(millingDepth->text());
    form->millingMargin = FromQ(millingMargin->text());
    ShowResult(engravingRadius, form->EngravingRadius(), length);
    ShowResult(engravingDistance, form->EngravingDistance(), length);
  };
  auto showHatching = [&] {
    form->hatchingTool = hatchingTool->currentIndex();
    form->hatchingDepth = FromQ(hatchingDepth->text());
    form->hatchingMargin = FromQ(hatchingMargin->text());
    ShowResult(hatchingRadius, form->HatchingRadius(), length);
    ShowResult(hatchingRecovery, form->HatchingRecovery(), {});
  };
  showEngraving();
  showHatching();
  QObject::connect(millingTool, &QComboBox::currentIndexChanged, &dialog, showEngraving);
  QObject::connect(millingDepth, &QLineEdit::textEdited, &dialog, showEngraving);
  QObject::connect(millingMargin, &QLineEdit::textEdited, &dialog, showEngraving);
  QObject::connect(hatchingTool, &QComboBox::currentIndexChanged, &dialog, showHatching);
  QObject::connect(hatchingDepth, &QLineEdit::textEdited, &dialog, showHatching);
  QObject::connect(hatchingMargin, &QLineEdit::textEdited, &dialog, showHatching);
  QObject::connect(boringThreshold, &QLineEdit::textEdited, &dialog, [&](const QString& text) {
    form->boringThreshold = FromQ(text);
    form->boringDrills = boringDrills->isChecked();
    form->BoringThresholdChanged(platform);
    boringDrills->setChecked(form->boringDrills);
  });

  dialog.acceptRule = [&] {
    form->millingTool = millingTool->currentIndex();
    form->millingDepth = FromQ(millingDepth->text());
    form->millingMargin = FromQ(millingMargin->text());
    form->millingSpeed = FromQ(millingSpeed->text());
    form->hatchingTool = hatchingTool->currentIndex();
    form->hatchingDepth = FromQ(hatchingDepth->text());
    form->hatchingMargin = FromQ(hatchingMargin->text());
    form->hatchingSpeed = FromQ(hatchingSpeed->text());
    form->cuttingTool = cuttingTool->currentIndex();
    form->plottingTool = plottingTool->currentIndex();
    form->cuttingDepth = FromQ(cuttingDepth->text());
    form->cuttingSpeed = FromQ(cuttingSpeed->text());
    form->drillingDepth = FromQ(drillingDepth->text());
    form->boringSpeed = FromQ(boringSpeed->text());
    form->drillingMode = mode->checkedId();
    form->drillingTool = drillingTool->currentIndex();
    for (int i = 0; i < kSequenceSlots; ++i) form->drillingLib[i] = lib[i]->currentIndex() - 1;
    form->boringDrills = boringDrills->isChecked();
    form->boringThreshold = FromQ(boringThreshold->text());
    if (form->Accept(platform)) return true;
    if (form->focus == F::kDrillingLib && form->focusRow >= 0 && form->focusRow < kSequenceSlots) {
      lib[form->focusRow]->setFocus();
    } else if (form->focus == F::kDialog) {
      // No single field: the set as a whole was refused; its first row is where to begin.
      lib[0]->setFocus();
    } else if (const auto found = fields.find(form->focus); found != fields.end()) {
      FocusField(found->second);
    }
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
