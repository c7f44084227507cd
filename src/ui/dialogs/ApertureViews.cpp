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

// A field whose edits reach the form at once; the board behind is repainted after each.
template <typename Edit>
void OnEdit(FormDialog& dialog, QLineEdit* field, Platform& platform, Edit edit) {
  QObject::connect(field, &QLineEdit::textEdited, &dialog, [edit, &platform](const QString& t) {
    edit(FromQ(t));
    platform.Repaint(RepaintLevel::View);
  });
}

// A button that acts on the form at once, the board repainted.
template <typename Act>
void OnPress(FormDialog& dialog, QPushButton* button, Platform& platform, Act act) {
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, &dialog, [act, &platform] {
    act();
    platform.Repaint(RepaintLevel::View);
  });
}

// The shape, the two sizes and the drill of a pad form (the aperture's or the single pad's).
template <typename Form>
void ConnectPadFields(FormDialog& dialog, Platform& platform, Form* form, QComboBox* shape,
                      QLineEdit* x, QLineEdit* y, QLineEdit* drill) {
  QObject::connect(shape, &QComboBox::activated, &dialog, [=, &platform](int index) {
    form->ShapeChosen(index);
    y->setEnabled(form->SizeYEnabled());
    platform.Repaint(RepaintLevel::View);
  });
  OnEdit(dialog, x, platform, [form](const std::string& t) { form->SizeXEdited(t); });
  OnEdit(dialog, y, platform, [form](const std::string& t) { form->SizeYEdited(t); });
  OnEdit(dialog, drill, platform, [form](const std::string& t) { form->DrillEdited(t); });
  y->setEnabled(form->SizeYEnabled());
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
  for (QPushButton* b : {applyShape, applySize, applyDrill}) apply->addWidget(b);
  dialog.Body()->addLayout(apply);
  auto* remove = new QPushButton(ToQ(TDialogChgPads::kDeleteText), &dialog);
  dialog.Body()->addWidget(remove);

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
  ConnectPadFields(dialog, platform, form, shape, x, y, drill);
  OnPress(dialog, applyShape, platform, [form] { form->ApplyShapeToAll(); });
  OnPress(dialog, applySize, platform, [form] { form->ApplySizeToAll(); });
  OnPress(dialog, applyDrill, platform, [form] { form->ApplyDrillToAll(); });
  OnPress(dialog, remove, platform, [form] { form->DeleteAllOfType(); });
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
  for (QPushButton* b : {apply, remove, centreline}) dialog.Body()->addWidget(b);
  auto show = [=, &platform] {
    ShowText(width, form->width);
    platform.Repaint(RepaintLevel::View);
  };
  ConnectNumberRow(dialog, row, form, show);
  OnEdit(dialog, width, platform, [form](const std::string& t) { form->WidthEdited(t); });
  OnPress(dialog, apply, platform, [form] { form->ApplyWidthToAll(); });
  OnPress(dialog, remove, platform, [form] { form->DeleteAllOfType(); });
  OnPress(dialog, centreline, platform, [form] { form->ToggleCentreline(); });
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
  ConnectPadFields(dialog, platform, form, shape, x, y, drill);
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
  OnEdit(dialog, width, platform, [form](const std::string& t) { form->WidthEdited(t); });
  dialog.acceptRule = [&] { return form->Accept(platform); };
  return dialog.Run();
}

}  // namespace isolith
