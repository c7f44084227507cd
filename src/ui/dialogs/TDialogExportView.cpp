#include "ui/dialogs/TDialogExportView.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "output/ExportDialogs.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogExportView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogExport*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogExport::kTitle);

  QLabel* file = TextLabel(form->fileName);
  file->setObjectName("fileName");
  file->setTextInteractionFlags(Qt::TextSelectableByMouse);
  dialog.Body()->addWidget(file);

  QLineEdit* scale = NumberField(form->scale, "scale");
  QLineEdit* height = NumberField(form->clearHeight, "clearHeight");
  QLineEdit* speed = NumberField(form->clearSpeed, "clearSpeed");
  auto* grid = new QGridLayout;
  grid->addWidget(FieldLabel("Scale", scale), 0, 0);
  grid->addWidget(scale, 0, 1);
  QLabel* heightLabel = FieldLabel("Tool clearance &height :", height);
  QLabel* heightUnit = TextLabel(form->lengthUnitLabel());
  QLabel* speedLabel = FieldLabel("Tool clearance sp&eed :", speed);
  QLabel* speedUnit = TextLabel(form->speedUnitLabel());
  grid->addWidget(heightLabel, 1, 0);
  grid->addWidget(height, 1, 1);
  grid->addWidget(heightUnit, 1, 2);
  grid->addWidget(speedLabel, 2, 0);
  grid->addWidget(speed, 2, 1);
  grid->addWidget(speedUnit, 2, 2);
  for (QWidget* w : {static_cast<QWidget*>(heightLabel), static_cast<QWidget*>(height),
                     static_cast<QWidget*>(heightUnit), static_cast<QWidget*>(speedLabel),
                     static_cast<QWidget*>(speed), static_cast<QWidget*>(speedUnit)})
    w->setEnabled(form->clearanceEnabled);
  dialog.Body()->addLayout(grid);

  auto* arcsBox = new QGroupBox(QStringLiteral("Export arcs"));
  auto* arcRows = new QVBoxLayout(arcsBox);
  QRadioButton* arcs = RadioButton("as &arcs", form->arcs, "arcs");
  QRadioButton* polygons = RadioButton("as &polygons", !form->arcs, "polygons");
  auto* arcGroup = new QButtonGroup(&dialog);
  arcGroup->addButton(arcs);
  arcGroup->addButton(polygons);
  arcRows->addWidget(arcs);
  arcRows->addWidget(polygons);
  dialog.Body()->addWidget(arcsBox);

  QCheckBox* header = CheckBox("Include header", form->includeHeader, "includeHeader");
  QCheckBox* z = CheckBox("Z co-ordinates", form->zCoordinates, "zCoordinates");
  QCheckBox* flipZ = CheckBox("Flip Z co-ordinates", form->flipZ, "flipZ");
  QCheckBox* speeds = CheckBox("Speeds", form->speeds, "speeds");
  QCheckBox* viewer =
      CheckBox("Edit file with NotePad for checking", form->editInViewer, "editInViewer");
  for (QCheckBox* box : {header, z, flipZ, speeds, viewer}) dialog.Body()->addWidget(box);
  scale->setFocus();

  dialog.acceptRule = [&] {
    form->scale = FromQ(scale->text());
    form->clearHeight = FromQ(height->text());
    form->clearSpeed = FromQ(speed->text());
    form->arcs = arcs->isChecked();
    form->includeHeader = header->isChecked();
    form->zCoordinates = z->isChecked();
    form->flipZ = flipZ->isChecked();
    form->speeds = speeds->isChecked();
    form->editInViewer = viewer->isChecked();
    if (form->Accept(platform)) return true;
    switch (form->focus) {
      case TDialogExport::kClearHeight:
        FocusField(height);
        break;
      case TDialogExport::kClearSpeed:
        FocusField(speed);
        break;
      default:
        FocusField(scale);
        break;
    }
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
