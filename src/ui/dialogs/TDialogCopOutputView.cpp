#include "ui/dialogs/TDialogCopOutputView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "output/OutputFormatForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogCopOutputView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogCopOutput*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogCopOutput::kTitle);

  auto* formatRow = new QHBoxLayout;
  auto* format = new QComboBox;
  format->setObjectName("format");
  auto* edit = new QPushButton(QStringLiteral(">"));
  edit->setObjectName("editPostProcessor");
  formatRow->addWidget(FieldLabel("&Format :", format));
  formatRow->addWidget(format, 1);
  formatRow->addWidget(edit);
  dialog.Body()->addLayout(formatRow);

  QRadioButton* sections = RadioButton(TDialogCopOutput::kSectionsText, form->sections, "sections");
  QRadioButton* layer = RadioButton(TDialogCopOutput::kLayerText, !form->sections, "layer");
  QCheckBox* arcs = CheckBox(TDialogCopOutput::kArcsText, form->arcs, "arcs");
  dialog.Body()->addWidget(sections);
  dialog.Body()->addWidget(layer);
  dialog.Body()->addWidget(arcs);

  QLineEdit* scaleXY = NumberField(form->scaleXY, "scaleXY");
  QLineEdit* scaleZ = NumberField(form->scaleZ, "scaleZ");
  QLineEdit* scaleVxy = NumberField(form->scaleVxy, "scaleVxy");
  QLineEdit* scaleVz = NumberField(form->scaleVz, "scaleVz");
  auto* scales = new QGroupBox(QStringLiteral("Machine scales"));
  auto* scaleGrid = new QGridLayout(scales);
  scaleGrid->addWidget(FieldLabel("&XY scale :", scaleXY), 0, 0);
  scaleGrid->addWidget(scaleXY, 0, 1);
  scaleGrid->addWidget(FieldLabel("&Z scale :", scaleZ), 0, 2);
  scaleGrid->addWidget(scaleZ, 0, 3);
  scaleGrid->addWidget(FieldLabel("XY &speed scale :", scaleVxy), 1, 0);
  scaleGrid->addWidget(scaleVxy, 1, 1);
  scaleGrid->addWidget(FieldLabel("Z s&peed scale :", scaleVz), 1, 2);
  scaleGrid->addWidget(scaleVz, 1, 3);
  dialog.Body()->addWidget(scales);

  QLineEdit* clearHeight = NumberField(form->clearHeight, "clearHeight");
  QLineEdit* zeroHeight = NumberField(form->zeroHeight, "zeroHeight");
  QLineEdit* clearSpeed = NumberField(form->clearSpeed, "clearSpeed");
  auto* clearance = new QGridLayout;
  clearance->addWidget(FieldLabel("Tool clearance &height :", clearHeight), 0, 0);
  clearance->addWidget(clearHeight, 0, 1);
  clearance->addWidget(FieldLabel("Surface contact &margin :", zeroHeight), 1, 0);
  clearance->addWidget(zeroHeight, 1, 1);
  clearance->addWidget(FieldLabel("Cleared tool &rapid speed :", clearSpeed), 2, 0);
  clearance->addWidget(clearSpeed, 2, 1);
  dialog.Body()->addLayout(clearance);

  // Where the file goes: each radio button gates its own fields.
  QRadioButton* outputs[3];
  for (int i = 0; i < 3; ++i) {
    static const char* names[3] = {"createFile", "callPrinter", "sendToMachine"};
    outputs[i] = RadioButton(TDialogCopOutput::kOutputTexts[i], form->output == i + 1, names[i]);
  }
  auto* file = new QLineEdit;
  file->setObjectName("file");
  auto* run = new QLineEdit;
  run->setObjectName("run");
  auto* printer = new QComboBox;
  printer->setObjectName("printer");
  for (const std::string& name : form->printers) printer->addItem(ToQ(name));
  auto* port = new QComboBox;
  port->setObjectName("port");
  port->setEditable(true);  // a device path may be typed
  for (const std::string& name : form->ports) port->addItem(ToQ(name));
  auto* parameters = new QPushButton(QStringLiteral("&Parameters..."));
  parameters->setObjectName("portParameters");
  auto* lineEnd = new QComboBox;
  lineEnd->setObjectName("lineEnd");
  for (std::string_view text : TDialogCopOutput::kLineEnds) lineEnd->addItem(ToQ(text));
  auto* destination = new QGroupBox(QStringLiteral("Output"));
  auto* output = new QGridLayout(destination);
  output->addWidget(outputs[0], 0, 0, 1, 3);
  output->addWidget(FieldLabel("File &name :", file), 1, 0);
  output->addWidget(file, 1, 1, 1, 2);
  output->addWidget(FieldLabel("then &execute", run), 2, 0);
  output->addWidget(run, 2, 1, 1, 2);
  output->addWidget(outputs[1], 3, 0, 1, 3);
  output->addWidget(FieldLabel("Pr&inter :", printer), 4, 0);
  output->addWidget(printer, 4, 1, 1, 2);
  output->addWidget(outputs[2], 5, 0, 1, 3);
  output->addWidget(FieldLabel("P&ort :", port), 6, 0);
  output->addWidget(port, 6, 1);
  output->addWidget(parameters, 6, 2);
  output->addWidget(FieldLabel("&Line end :", lineEnd), 7, 0);
  output->addWidget(lineEnd, 7, 1);
  dialog.Body()->addWidget(destination);
  const auto gate = [&] {
    file->setEnabled(outputs[0]->isChecked());
    run->setEnabled(outputs[0]->isChecked());
    printer->setEnabled(outputs[1]->isChecked());
    for (QWidget* w : std::initializer_list<QWidget*>{port, parameters, lineEnd})
      w->setEnabled(outputs[2]->isChecked());
  };
  for (QRadioButton* radio : outputs)
    QObject::connect(radio, &QRadioButton::toggled, &dialog, gate);

  // The form's values into the widgets, and back.
  auto show = [&] {
    const QSignalBlocker quiet(format);
    format->clear();
    for (const TOutputFormatChoice& choice : form->formats) format->addItem(ToQ(choice.label));
    format->setCurrentIndex(static_cast<int>(form->SelectedRow()));
    edit->setEnabled(form->PostProcessorEnabled());
    (form->sections ? sections : layer)->setChecked(true);
    arcs->setChecked(form->arcs);
    scaleXY->setText(ToQ(form->scaleXY));
    scaleZ->setText(ToQ(form->scaleZ));
    scaleVxy->setText(ToQ(form->scaleVxy));
    scaleVz->setText(ToQ(form->scaleVz));
    clearHeight->setText(ToQ(form->clearHeight));
    zeroHeight->setText(ToQ(form->zeroHeight));
    clearSpeed->setText(ToQ(form->clearSpeed));
    file->setText(ToQ(form->file));
    run->setText(ToQ(form->run));
    outputs[form->output - 1]->setChecked(true);
    printer->setCurrentText(ToQ(form->printer));
    port->setCurrentText(ToQ(form->port));
    lineEnd->setCurrentIndex(form->lineEnd);
    gate();
  };
  auto take = [&] {
    form->sections = sections->isChecked();
    form->arcs = arcs->isChecked();
    form->scaleXY = FromQ(scaleXY->text());
    form->scaleZ = FromQ(scaleZ->text());
    form->scaleVxy = FromQ(scaleVxy->text());
    form->scaleVz = FromQ(scaleVz->text());
    form->clearHeight = FromQ(clearHeight->text());
    form->zeroHeight = FromQ(zeroHeight->text());
    form->clearSpeed = FromQ(clearSpeed->text());
    form->file = FromQ(file->text());
    form->run = FromQ(run->text());
    for (int i = 0; i < 3; ++i)
      if (outputs[i]->isChecked()) form->output = i + 1;
    form->printer = FromQ(printer->currentText());
    form->port = FromQ(port->currentText());
    form->lineEnd = lineEnd->currentIndex();
  };
  show();

  QObject::connect(format, &QComboBox::currentIndexChanged, &dialog, [&](int row) {
    take();
    form->ChooseRow(static_cast<size_t>(row));
    show();
  });
  QObject::connect(edit, &QPushButton::clicked, &dialog, [&] {
    take();
    if (form->EditPostProcessor(platform)) show();
  });
  QObject::connect(parameters, &QPushButton::clicked, &dialog, [&] {
    take();
    if (form->EditPortParameters(platform)) show();
  });
  format->setFocus();

  dialog.acceptRule = [&] {
    take();
    if (form->Accept(platform)) return true;
    switch (form->focus) {
      case TDialogCopOutput::kScaleXY:
        FocusField(scaleXY);
        break;
      case TDialogCopOutput::kScaleZ:
        FocusField(scaleZ);
        break;
      case TDialogCopOutput::kScaleVxy:
        FocusField(scaleVxy);
        break;
      case TDialogCopOutput::kScaleVz:
        FocusField(scaleVz);
        break;
      case TDialogCopOutput::kClearHeight:
        FocusField(clearHeight);
        break;
      case TDialogCopOutput::kZeroHeight:
        FocusField(zeroHeight);
        break;
      case TDialogCopOutput::kClearSpeed:
        FocusField(clearSpeed);
        break;
      case TDialogCopOutput::kPort:
        port->setFocus();
        break;
      default:
        break;
    }
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
