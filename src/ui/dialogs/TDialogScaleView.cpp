#include "ui/dialogs/TDialogScaleView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "edit/TransformForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogScaleView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogScale*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogScale::kTitle);
  QGridLayout* grid = FieldGrid(dialog);

  QLineEdit* scale = NumberField(form->scale, "scale");
  AddFieldRow(grid, 0, TDialogScale::kScaleText, scale);

  // The board's new size: width and height side by side, the unit after them.
  QLineEdit* width = NumberField(form->width, "width");
  QLineEdit* height = NumberField(form->height, "height");
  auto* size = new QHBoxLayout;
  size->addWidget(width);
  size->addWidget(new QLabel(QStringLiteral("x"), &dialog));
  size->addWidget(height);
  if (!form->unit.empty()) size->addWidget(new QLabel(ToQ(form->unit), &dialog));
  auto* sizeLabel = new QLabel(ToQ(TDialogScale::kDimensionsText), &dialog);
  sizeLabel->setBuddy(width);
  grid->addWidget(sizeLabel, 1, 0);
  grid->addLayout(size, 1, 1, 1, 2);

  QCheckBox* coordinates =
      CheckBox(TDialogScale::kCoordinatesText, form->choice.coordinates, "coordinates");
  QCheckBox* apertures =
      CheckBox(TDialogScale::kApertureSizesText, form->choice.apertureSizes, "apertureSizes");
  QCheckBox* drills =
      CheckBox(TDialogScale::kDrillDiametersText, form->choice.drillDiameters, "drillDiameters");
  QCheckBox* tracks = CheckBox(TDialogScale::kTrackThicknessesText, form->choice.trackThicknesses,
                               "trackThicknesses");
  drills->setEnabled(form->drillDiametersEnabled);
  for (QCheckBox* box : {coordinates, apertures, drills, tracks}) dialog.Body()->addWidget(box);

  auto showEnabled = [&] {
    width->setEnabled(form->SizeEnabled());
    height->setEnabled(form->SizeEnabled());
  };
  showEnabled();
  QObject::connect(coordinates, &QCheckBox::toggled, &dialog, [&](bool on) {
    form->choice.coordinates = on;
    showEnabled();
  });

  // The three numbers are one value: what the person edits, the others follow.
  auto showTied = [&] {
    ShowText(scale, form->scale);
    ShowText(width, form->width);
    ShowText(height, form->height);
  };
  QObject::connect(scale, &QLineEdit::textEdited, &dialog, [&](const QString& text) {
    form->scale = FromQ(text);
    form->ScaleEdited();
    showTied();
  });
  QObject::connect(width, &QLineEdit::textEdited, &dialog, [&](const QString& text) {
    form->width = FromQ(text);
    form->WidthEdited();
    showTied();
  });
  QObject::connect(height, &QLineEdit::textEdited, &dialog, [&](const QString& text) {
    form->height = FromQ(text);
    form->HeightEdited();
    showTied();
  });

  dialog.acceptRule = [&] {
    form->scale = FromQ(scale->text());
    form->width = FromQ(width->text());
    form->height = FromQ(height->text());
    form->choice.coordinates = coordinates->isChecked();
    form->choice.apertureSizes = apertures->isChecked();
    form->choice.drillDiameters = drills->isChecked();
    form->choice.trackThicknesses = tracks->isChecked();
    if (form->Accept(platform)) return true;
    if (form->focus == TDialogScale::kScale) FocusField(scale);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
