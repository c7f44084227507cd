#include "ui/dialogs/TDialogRS232View.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>

#include "output/PortParametersForm.h"
#include "output/transfer/PortNames.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

template <typename List>
QComboBox* ListBox(const List& texts, int row, const char* name) {
  auto* box = new QComboBox;
  box->setObjectName(name);
  for (const auto& text : texts) {
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(text)>>)
      box->addItem(QString::number(text));
    else
      box->addItem(ToQ(text));
  }
  box->setCurrentIndex(row);
  return box;
}

}  // namespace

bool TDialogRS232View(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogRS232*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, TDialogRS232::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  std::vector<std::string> coms;
  for (int n = 1; n <= kComPorts; ++n) coms.push_back("COM" + std::to_string(n));
  QComboBox* port = ListBox(coms, form->com - 1, "port");
  QComboBox* baud = ListBox(TDialogRS232::kBaudRates, form->baudRow, "baud");
  QComboBox* parity = ListBox(TDialogRS232::kParities, form->parity, "parity");
  QComboBox* bits = ListBox(TDialogRS232::kWordLengths, form->wordLengthRow, "wordLength");
  QComboBox* stop = ListBox(TDialogRS232::kStopBitTexts, form->stopBitsRow, "stopBits");
  QComboBox* rts = ListBox(TDialogRS232::kLineControls, form->rts, "rts");
  QComboBox* dtr = ListBox(TDialogRS232::kLineControls, form->dtr, "dtr");
  AddFieldRow(grid, 0, "&Port :", port, {});
  AddFieldRow(grid, 1, "&Baud rate :", baud, {});
  AddFieldRow(grid, 2, "P&arity :", parity, {});
  AddFieldRow(grid, 3, "&Word length :", bits, {});
  AddFieldRow(grid, 4, "&Stop bits :", stop, {});
  AddFieldRow(grid, 5, "&RTS :", rts, {});
  AddFieldRow(grid, 6, "&DTR :", dtr, {});
  QCheckBox* cts = CheckBox("CTS", form->cts, "cts");
  QCheckBox* dsr = CheckBox("DSR", form->dsr, "dsr");
  QCheckBox* xoff = CheckBox("Xon/Xoff", form->xoff, "xoff");
  grid->addWidget(cts, 7, 1);
  grid->addWidget(dsr, 8, 1);
  grid->addWidget(xoff, 9, 1);

  dialog.acceptRule = [&] {
    form->com = port->currentIndex() + 1;
    form->baudRow = baud->currentIndex();
    form->parity = parity->currentIndex();
    form->wordLengthRow = bits->currentIndex();
    form->stopBitsRow = stop->currentIndex();
    form->rts = rts->currentIndex();
    form->dtr = dtr->currentIndex();
    form->cts = cts->isChecked();
    form->dsr = dsr->isChecked();
    form->xoff = xoff->isChecked();
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
