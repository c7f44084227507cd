#include "ui/dialogs/ParameterViewKit.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace isolith::viewkit {

FormDialog::FormDialog(QWidget* parent, std::string_view title) : QDialog(parent) {
  setWindowTitle(ToQ(title));
  auto* outer = new QVBoxLayout(this);
  body_ = new QVBoxLayout;
  outer->addLayout(body_);
  buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons_->setObjectName("buttons");
  outer->addWidget(buttons_);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  // The size follows the content; nothing in these dialogs needs to grow.
  outer->setSizeConstraint(QLayout::SetFixedSize);
}

void FormDialog::done(int result) {
  if (result == QDialog::Accepted && acceptRule && !acceptRule()) return;
  QDialog::done(result);
}

bool FormDialog::Run() {
  // The buttons were made first; Tab reaches them after the fields, and the dialog opens on
  // its first field.
  QWidget* first = nullptr;
  QWidget* last = nullptr;
  for (QWidget* w = nextInFocusChain(); w && w != this; w = w->nextInFocusChain()) {
    if (w == buttons_ || buttons_->isAncestorOf(w) || !(w->focusPolicy() & Qt::TabFocus)) continue;
    if (!first && w->isEnabled() && !w->isHidden()) first = w;
    last = w;
  }
  if (first) first->setFocus(Qt::TabFocusReason);
  if (last) {
    for (QAbstractButton* button : buttons_->buttons()) {
      QWidget::setTabOrder(last, button);
      last = button;
    }
  }
  return exec() == QDialog::Accepted;
}

QGridLayout* FieldGrid(FormDialog& dialog) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(3, 1);
  dialog.Body()->addLayout(grid);
  return grid;
}

void FocusField(QWidget* field) {
  if (!field) return;
  field->setFocus(Qt::OtherFocusReason);
  if (auto* edit = qobject_cast<QLineEdit*>(field)) edit->selectAll();
}

void ShowText(QLineEdit* field, const std::string& text) {
  const QString shown = ToQ(text);
  if (field->text() != shown) field->setText(shown);
}

QLineEdit* NumberField(QWidget* parent, const std::string& text, const char* name) {
  auto* field = new QLineEdit(ToQ(text), parent);
  field->setObjectName(name);
  // Room for the longest value a field shows ("-1000.123456"); a longer expression scrolls.
  field->setFixedWidth(
      QFontMetrics(field->font()).horizontalAdvance(QStringLiteral("-00000.000000")) + 12);
  field->setAlignment(Qt::AlignRight);
  return field;
}

QLabel* AddFieldRow(QGridLayout* grid, int row, std::string_view label, QWidget* field,
                    std::string_view unit, int span) {
  auto* caption = new QLabel(ToQ(label), field->parentWidget());
  caption->setBuddy(field);
  grid->addWidget(caption, row, 0);
  grid->addWidget(field, row, 1, 1, span);
  if (!unit.empty()) grid->addWidget(new QLabel(ToQ(unit), field->parentWidget()), row, 1 + span);
  return caption;
}

QCheckBox* CheckBox(QWidget* parent, std::string_view text, bool checked, const char* name) {
  auto* box = new QCheckBox(ToQ(text), parent);
  box->setObjectName(name);
  box->setChecked(checked);
  return box;
}

}  // namespace isolith::viewkit
