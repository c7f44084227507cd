#include "ui/dialogs/TDialogItemColorView.h"

#include <QColorDialog>
#include <QGridLayout>
#include <QPushButton>
#include <vector>

#include "params/TDialogItemColor.h"
#include "ui/BoardView.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

// The button shows its colour as a swatch beside its text.
void ShowSwatch(QPushButton* button, uint32_t colour) {
  QPixmap swatch(24, 14);
  swatch.fill(ToQColor(colour, Qt::white));
  button->setIcon(QIcon(swatch));
}

uint32_t FromQColor(const QColor& c) {
  return static_cast<uint32_t>(c.red()) | static_cast<uint32_t>(c.green()) << 8 |
         static_cast<uint32_t>(c.blue()) << 16;
}

}  // namespace

bool TDialogItemColorView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogItemColor*>(&base);
  if (!form) return false;

  FormDialog dialog(parent, form->title);
  auto* grid = new QGridLayout;
  dialog.Body()->addLayout(grid);
  std::vector<uint32_t> colours;
  for (const TDialogItemColor::Row& row : form->rows) colours.push_back(row.colour);
  const int perColumn = static_cast<int>((form->rows.size() + 1) / 2);
  for (int i = 0; i < static_cast<int>(form->rows.size()); ++i) {
    auto* button = new QPushButton(ToQ(form->rows[i].label), &dialog);
    button->setObjectName(QStringLiteral("colour%1").arg(i));
    button->setAutoDefault(false);
    ShowSwatch(button, colours[i]);
    QObject::connect(button, &QPushButton::clicked, &dialog, [&, button, i] {
      const QColor chosen = QColorDialog::getColor(ToQColor(colours[i], Qt::white), &dialog,
                                                   ToQ(form->rows[i].label));
      if (!chosen.isValid()) return;
      colours[i] = FromQColor(chosen);
      ShowSwatch(button, colours[i]);
    });
    grid->addWidget(button, i % perColumn, i / perColumn);
  }
  dialog.acceptRule = [&] {
    for (size_t i = 0; i < colours.size(); ++i) form->rows[i].colour = colours[i];
    return form->Accept(platform);
  };
  return dialog.Run();
}

}  // namespace isolith
