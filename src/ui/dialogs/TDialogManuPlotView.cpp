#include "ui/dialogs/TDialogManuPlotView.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "toolpath/TDialogManuPlot.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

bool TDialogManuPlotView(DialogForm& base, Platform& platform, QWidget* parent) {
  // The origin's dialog is the same form with its own accept rule.
  auto* form = dynamic_cast<TDialogManuPlot*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, form->title);
  QGridLayout* grid = FieldGrid(dialog);
  QLineEdit* x = NumberField(form->xText, "x");
  QLineEdit* y = NumberField(form->yText, "y");
  AddFieldRow(grid, 0, "&X :", x, form->unit);
  AddFieldRow(grid, 1, "&Y :", y, form->unit);

  // "Plot manually" closes the dialog as cancelled; the caller then waits for the click.
  QPushButton* manual = dialog.Buttons()->addButton(ToQ(TDialogManuPlot::kPlotManuallyText),
                                                    QDialogButtonBox::ActionRole);
  manual->setObjectName("plotManually");
  QObject::connect(manual, &QPushButton::clicked, &dialog, [&] {
    form->PlotManually();
    dialog.reject();
  });

  dialog.acceptRule = [&] {
    form->xText = FromQ(x->text());
    form->yText = FromQ(y->text());
    if (form->Accept(platform)) return true;
    if (form->focus == TDialogManuPlot::kX) FocusField(x);
    if (form->focus == TDialogManuPlot::kY) FocusField(y);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
