#include "ui/dialogs/TDialogHatchView.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "toolpath/HatchForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

std::string InfoLine(const TDialogHatch& form, char separator) {
  std::string line =
      std::string(TDialogHatch::kDepthLabel) + " " + InfoNumber(form.depth, separator);
  if (form.interval)
    line += "  /  " + std::string(TDialogHatch::kIntervalLabel) + " " +
            InfoNumber(*form.interval, separator);
  return line;
}

}  // namespace

bool TDialogHatchView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogHatch*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogHatch::kTitle);

  auto* zoneBox = new QGroupBox(QStringLiteral("Zone"));
  auto* zoneRows = new QVBoxLayout(zoneBox);
  auto* zones = new QButtonGroup(&dialog);
  const char* names[3] = {"wholeBoard", "cardContour", "selectedZone"};
  for (int mode = 0; mode < 3; ++mode) {
    QRadioButton* button =
        RadioButton(TDialogHatch::kZoneTexts[mode], form->zone == mode, names[mode]);
    zones->addButton(button, mode);
    zoneRows->addWidget(button);
  }
  // Without a card contour there is nothing to hatch inside of.
  zones->button(kHatchCardContour)->setEnabled(form->cardContour);
  QObject::connect(zones, &QButtonGroup::idClicked, &dialog, [form, zones](int mode) {
    if (!form->SelectZone(mode)) zones->button(form->zone)->setChecked(true);
  });
  dialog.Body()->addWidget(zoneBox);

  QCheckBox* allLayers = CheckBox(TDialogHatch::kAllLayersText, form->allLayers, "allLayers");
  QCheckBox* link = CheckBox(TDialogHatch::kLinkText, form->link, "link");
  dialog.Body()->addWidget(allLayers);
  dialog.Body()->addWidget(link);
  QLabel* info = TextLabel(InfoLine(*form, platform.DecimalSeparator()));
  info->setObjectName("info");
  dialog.Body()->addWidget(info);
  if (QAbstractButton* chosen = zones->checkedButton()) chosen->setFocus();

  dialog.acceptRule = [&] {
    form->SelectZone(zones->checkedId());
    form->allLayers = allLayers->isChecked();
    form->link = link->isChecked();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
