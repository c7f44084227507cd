#include "ui/dialogs/ApertureViews.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "edit/ApertureFields.h"
#include "edit/ApertureForms.h"
#include "edit/SingleItemForms.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

QComboBox* ShapeBox(int shape, const char* name) {
  auto* box = new QComboBox;
  box->setObjectName(QString::fromLatin1(name));
  for (std::string_view text : kShapeNames) box->addItem(ToQ(text));
  box->setCurrentIndex(shape);
  return box;
}

// The number row: the used codes as code + 1, with "<" and ">" beside them.
struct NumberRow {
  QComboBox* number;
  QPushButton* previous;
  QPushButton* next;
};

NumberRow AddNumberRow(FormDialog& dialog, QGridLayout* grid, std::string_view label,
                       const UsedCodes& codes) {
  NumberRow row{new QComboBox(&dialog), new QPushButton(QStringLiteral("<"), &dialog),
                new QPushButton(QStringLiteral(">"), &dialog)};
  row.number->setObjectName(QStringLiteral("number"));
  for (int code : codes.listed) row.number->addItem(ToQ(CodeNumberText(code)), code);
  row.number->setCurrentIndex(codes.Row());
  auto* layout = new QHBoxLayout;
  layout->addWidget(row.previous);
  layout->addWidget(row.number);
  layout->addWidget(row.next);
  auto* text = new QLabel(ToQ(label), &dialog);
  grid->addWidget(text, 0, 0);
  grid->addLayout(layout, 0, 1, 1, 2);
  for (QPushButton* b : {row.previous, row.next}) b->setAutoDefault(false);
  return row;
}

// Wires the number row to a form with ChooseCode and Step; `show` refreshes the fields.
template <typename Form, typename Show>
void ConnectNumberRow(FormDialog& dialog, const NumberRow& row, Form* form, Show show) {
  QObject::connect(row.number, &QComboBox::activated, &dialog, [=](int index) {
    form->ChooseCode(row.number->itemData(index).toInt());
    show();
  });
  QObject::connect(row.previous, &QPushButton::clicked, &dialog, [=] {
    form->Step(-1);
    row.number->setCurrentIndex(form->codes.Row());
    show();
  });
  QObject::connect(row.next, &QPushButton::clicked, &dialog, [=] {
    form->Step(1);
    row.number->setCurrentIndex(form->codes.Row());
    show();
  });
}

}  // namespace

bool TDialogChgPadsView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogChgPads*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogChgPads::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  const NumberRow row = AddNumberRow(dialog, grid, TDialogChgPads::kNumberText, form->codes);
  QComboBox* shape = ShapeBox(form->shape, "shape");
  AddFieldRow(grid, 1, TDialogChgPads::kShapeText, shape);
  QLineEdit* x = NumberField(form->sizeX, "sizeX");
  QLineEdit* y = NumberField(form->sizeY, "sizeY");
  auto* sizes = new QHBoxLayout;
  sizes->addWidget(x);
  sizes->addWidget(y);
  grid->addWidget(TextLabel(TDialogChgPads::kSizeText, &dialog), 2, 0);
  grid->addLayout(sizes, 2, 1, 1, 2);
  QLineEdit* drill = NumberField(form->drill, "drill");
  AddFieldRow(grid, 3, TDialogChgPads::kDrillText, drill);

  dialog.Body()->addWidget(TextLabel(TDialogChgPads::kApplyText, &dialog));
  auto* apply = new QHBoxLayout;
  auto* applyShape = new QPushButton(ToQ(TDialogChgPads::kShapeText), &dialog);
  auto* applySize = new QPushButton(ToQ(TDialogChgPads::kSizeText), &dialog);
  auto* applyDrill = new QPushButton(ToQ(TDialogChgPads::kDrillText), &dialog);
  for (QPushButton* b : {applyShape, applySize, applyDrill}) {
    b->setAutoDefault(false);
    apply->addWidget(b);
  }
  dialog.Body()->addLayout(apply);
  auto* remove = new QPushButton(ToQ(TDialogChgPads::kDeleteText), &dialog);
  remove->setAutoDefault(false);
  dialog.Body()->addWidget(remove);

  auto changed = [&platform] { platform.Repaint(RepaintLevel::View); };
  auto show = [=, &platform] {
    shape->setCurrentIndex(form->shape);
    ShowText(x, form->sizeX);
    ShowText(y, form->sizeY);
    ShowText(drill, form->drill);
    y->setEnabled(form->SizeYEnabled());
    platform.Repaint(RepaintLevel::View);
  };
  show();
  ConnectNumberRow(dialog, row, form, show);
  QObject::connect(shape, &QComboBox::activated, &dialog, [=](int index) {
    form->ShapeChosen(index);
    y->setEnabled(form->SizeYEnabled());
    changed();
  });
  QObject::connect(x, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->SizeXEdited(FromQ(t));
    changed();
  });
  QObject::connect(y, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->SizeYEdited(FromQ(t));
    changed();
  });
  QObject::connect(drill, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->DrillEdited(FromQ(t));
    changed();
  });
  QObject::connect(applyShape, &QPushButton::clicked, &dialog, [=] {
    form->ApplyShapeToAll();
    changed();
  });
  QObject::connect(applySize, &QPushButton::clicked, &dialog, [=] {
    form->ApplySizeToAll();
    changed();
  });
  QObject::connect(applyDrill, &QPushButton::clicked, &dialog, [=] {
    form->ApplyDrillToAll();
    changed();
  });
  QObject::connect(remove, &QPushButton::clicked, &dialog, [=] {
    form->DeleteAllOfType();
    changed();
  });
  dialog.acceptRule = [&] { return form->Accept(platform); };
  return dialog.Run();
}

bool TDialogChgTracksView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogChgTracks*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogChgTracks::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  const NumberRow row = AddNumberRow(dialog, grid, TDialogChgTracks::kNumberText, form->codes);
  QLineEdit* width = NumberField(form->width, "width");
  AddFieldRow(grid, 1, TDialogChgTracks::kWidthText, width);
  auto* apply = new QPushButton(ToQ(TDialogChgTracks::kApplyText), &dialog);
  auto* remove = new QPushButton(ToQ(TDialogChgTracks::kDeleteText), &dialog);
  auto* centreline = new QPushButton(ToQ(TDialogChgTracks::kCentrelineText), &dialog);
  for (QPushButton* b : {apply, remove, centreline}) {
    b->setAutoDefault(false);
    dialog.Body()->addWidget(b);
  }
  auto changed = [&platform] { platform.Repaint(RepaintLevel::View); };
  auto show = [=, &platform] {
    ShowText(width, form->width);
    platform.Repaint(RepaintLevel::View);
  };
  ConnectNumberRow(dialog, row, form, show);
  QObject::connect(width, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->WidthEdited(FromQ(t));
    changed();
  });
  QObject::connect(apply, &QPushButton::clicked, &dialog, [=] {
    form->ApplyWidthToAll();
    changed();
  });
  QObject::connect(remove, &QPushButton::clicked, &dialog, [=] {
    form->DeleteAllOfType();
    changed();
  });
  QObject::connect(centreline, &QPushButton::clicked, &dialog, [=] {
    form->ToggleCentreline();
    changed();
  });
  dialog.acceptRule = [&] { return form->Accept(platform); };
  return dialog.Run();
}

bool TDialogChgOnePadView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogChgOnePad*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogChgOnePad::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  QComboBox* shape = ShapeBox(form->shape, "shape");
  AddFieldRow(grid, 0, TDialogChgOnePad::kShapeText, shape);
  QLineEdit* x = NumberField(form->sizeX, "sizeX");
  QLineEdit* y = NumberField(form->sizeY, "sizeY");
  auto* sizes = new QHBoxLayout;
  sizes->addWidget(x);
  sizes->addWidget(y);
  grid->addWidget(FieldLabel(TDialogChgOnePad::kSizeText, x), 1, 0);
  grid->addLayout(sizes, 1, 1, 1, 2);
  QLineEdit* drill = NumberField(form->drill, "drill");
  AddFieldRow(grid, 2, TDialogChgOnePad::kDrillText, drill);
  y->setEnabled(form->SizeYEnabled());
  auto changed = [&platform] { platform.Repaint(RepaintLevel::View); };
  QObject::connect(shape, &QComboBox::activated, &dialog, [=](int index) {
    form->ShapeChosen(index);
    y->setEnabled(form->SizeYEnabled());
    changed();
  });
  QObject::connect(x, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->SizeXEdited(FromQ(t));
    changed();
  });
  QObject::connect(y, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->SizeYEdited(FromQ(t));
    changed();
  });
  QObject::connect(drill, &QLineEdit::textEdited, &dialog, [=](const QString& t) {
    form->DrillEdited(FromQ(t));
    changed();
  });
  dialog.acceptRule = [&] { return form->Accept(platform); };
  return dialog.Run();
}

bool TDialogChgOneTrackView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<TDialogChgOneTrack*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, TDialogChgOneTrack::kTitle);
  QGridLayout* grid = FieldGrid(dialog);
  QLineEdit* width = NumberField(form->width, "width");
  AddFieldRow(grid, 0, TDialogChgOneTrack::kWidthText, width);
  QObject::connect(width, &QLineEdit::textEdited, &dialog, [=, &platform](const QString& t) {
    form->WidthEdited(FromQ(t));
    platform.Repaint(RepaintLevel::View);
  });
  dialog.acceptRule = [&] { return form->Accept(platform); };
  return dialog.Run();
}

}  // namespace isolith
