#include "ui/dialogs/TDialogContourView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "toolpath/ContourForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// The tool's depth, and the distance between passes when a tool is chosen.
std::string DepthLine(const TDialogContour& form, char separator) {
  std::string line =
      std::string(TDialogContour::kDepthLabel) + " " + InfoNumber(form.depth, separator);
  if (form.distance) {
    line += std::string(TDialogContour::kDistanceSeparator) +
            std::string(TDialogContour::kDistanceLabel) + " " +
            InfoNumber(*form.distance, separator);
  }
  return line;
}

}  // namespace

bool TDialogContourView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogContour*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogContour::kTitle);

  auto* tool = new QGroupBox(QStringLiteral("Contour tool"));
  auto* toolRows = new QVBoxLayout(tool);
  QLabel* toolLabel = TextLabel(form->toolLabel);
  toolLabel->setObjectName("tool");
  toolRows->addWidget(toolLabel);
  QLabel* depthLine = TextLabel(DepthLine(*form, platform.DecimalSeparator()));
  depthLine->setObjectName("depth");
  toolRows->addWidget(depthLine);
  dialog.Body()->addWidget(tool);

  QLineEdit* passes = NumberField(form->passes, "passes");
  QLineEdit* padPasses = NumberField(form->padPasses, "padPasses");
  auto* counts = new QGroupBox(QStringLiteral("Passes"));
  auto* grid = new QGridLayout(counts);
  grid->addWidget(TextLabel("Successive contours"), 0, 0);
  grid->addWidget(FieldLabel("&Number", passes), 0, 1);
  grid->addWidget(passes, 0, 2);
  grid->addWidget(TextLabel("Extra contours round the pads"), 1, 0);
  grid->addWidget(FieldLabel("N&umber", padPasses), 1, 1);
  grid->addWidget(padPasses, 1, 2);
  dialog.Body()->addWidget(counts);

  QCheckBox* allLayers = CheckBox(TDialogContour::kAllLayersText, form->allLayers, "allLayers");
  QCheckBox* fast = CheckBox(TDialogContour::kFastText, form->fast, "fast");
  dialog.Body()->addWidget(allLayers);
  dialog.Body()->addWidget(fast);
  passes->setFocus();

  dialog.acceptRule = [&] {
    form->passes = FromQ(passes->text());
    form->padPasses = FromQ(padPasses->text());
    form->allLayers = allLayers->isChecked();
    form->fast = fast->isChecked();
    if (form->Accept(platform)) return true;
    FocusField(form->focus == TDialogContour::kPadPasses ? padPasses : passes);
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
