#include "ui/dialogs/TDialogMachineView.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <vector>

#include "params/MachineForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogMachineView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogMachine*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, form->title, FormDialog::Sizing::Resizable);
  auto* tabs = new QTabWidget;
  dialog.Body()->addWidget(tabs);

  // One widget per field: a tick or a text field.
  std::vector<QWidget*> widgets;
  QFormLayout* page = nullptr;
  std::string section;
  for (const TDialogMachine::Field& f : form->fields) {
    if (!page || f.section != section) {
      section = f.section;
      auto* inner = new QWidget;
      page = new QFormLayout(inner);
      auto* scroll = new QScrollArea;
      scroll->setWidget(inner);
      scroll->setWidgetResizable(true);
      tabs->addTab(scroll, ToQ(section));
    }
    QWidget* widget;
    if (f.type == MachineKeyType::YesNo) {
      widget = CheckBox("", f.value == "Yes", f.key.c_str());
    } else {
      auto* field = new QLineEdit(ToQ(f.value));
      field->setObjectName(ToQ(f.key));
      widget = field;
    }
    page->addRow(TextLabel(f.key), widget);
    widgets.push_back(widget);
  }
  dialog.resize(560, 480);

  const auto take = [&] {
    for (size_t i = 0; i < widgets.size(); ++i) {
      TDialogMachine::Field& f = form->fields[i];
      if (auto* tick = qobject_cast<QCheckBox*>(widgets[i]))
        f.value = tick->isChecked() ? "Yes" : "No";
      else
        f.value = FromQ(static_cast<QLineEdit*>(widgets[i])->text());
    }
  };
  if (form->autoDetect) {
    QPushButton* detect = dialog.AddActionButton("&Auto-detect");
    detect->setObjectName("autoDetect");
    QObject::connect(detect, &QPushButton::clicked, &dialog, [&] {
      take();
      form->autoDetect(platform);
      for (size_t i = 0; i < widgets.size(); ++i)
        if (auto* field = qobject_cast<QLineEdit*>(widgets[i]))
          field->setText(ToQ(form->fields[i].value));
    });
  }

  dialog.acceptRule = [&] {
    take();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
