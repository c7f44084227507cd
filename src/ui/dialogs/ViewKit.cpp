#include "ui/dialogs/ViewKit.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>

#include "params/FieldChecks.h"

namespace isolith::viewkit {

FormDialog::FormDialog(QWidget* parent, std::string_view title, Sizing sizing) : QDialog(parent) {
  setWindowTitle(ToQ(title));
  auto* outer = new QVBoxLayout(this);
  body_ = new QVBoxLayout;
  outer->addLayout(body_);
  buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons_->setObjectName("buttons");
  outer->addWidget(buttons_);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  if (sizing == Sizing::Fixed) outer->setSizeConstraint(QLayout::SetFixedSize);
}

QPushButton* FormDialog::AddActionButton(std::string_view text) {
  QPushButton* button = buttons_->addButton(ToQ(text), QDialogButtonBox::ActionRole);
  // Enter stays with OK.
  button->setAutoDefault(false);
  return button;
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

QLabel* AddFieldRow(QGridLayout* grid, int row, std::string_view label, QWidget* field,
                    std::string_view unit, int span) {
  auto* caption = new QLabel(ToQ(label));
  caption->setBuddy(field);
  grid->addWidget(caption, row, 0);
  grid->addWidget(field, row, 1, 1, span);
  if (!unit.empty()) grid->addWidget(new QLabel(ToQ(unit)), row, 1 + span);
  return caption;
}

QLabel* TextLabel(std::string_view text, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setText(ToQ(text));
  return label;
}

QLabel* FieldLabel(std::string_view text, QWidget* field) {
  auto* label = new QLabel(ToQ(text));
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(field);
  return label;
}

QLineEdit* NumberField(const std::string& text, const char* name) {
  auto* field = new QLineEdit(ToQ(text));
  field->setObjectName(name);
  // Room for the longest value a field shows ("-1000.123456"); a longer expression scrolls.
  field->setFixedWidth(
      QFontMetrics(field->font()).horizontalAdvance(QStringLiteral("-00000.000000")) + 12);
  field->setAlignment(Qt::AlignRight);
  return field;
}

void ShowText(QLineEdit* field, const std::string& text) {
  const QString shown = ToQ(text);
  if (field->text() != shown) field->setText(shown);
}

QCheckBox* CheckBox(std::string_view text, bool checked, const char* name) {
  auto* box = new QCheckBox(ToQ(text));
  box->setObjectName(name);
  box->setChecked(checked);
  return box;
}

QRadioButton* RadioButton(std::string_view text, bool checked, const char* name) {
  auto* button = new QRadioButton(ToQ(text));
  button->setObjectName(name);
  button->setChecked(checked);
  return button;
}

void FocusField(QWidget* field) {
  if (!field) return;
  // A field on a page of a tab widget: bring that page forward first.
  for (QWidget* w = field; w && w->parentWidget(); w = w->parentWidget()) {
    auto* stack = qobject_cast<QStackedWidget*>(w->parentWidget());
    if (!stack) continue;
    if (auto* tabs = qobject_cast<QTabWidget*>(stack->parentWidget())) tabs->setCurrentWidget(w);
  }
  field->setFocus(Qt::OtherFocusReason);
  if (auto* edit = qobject_cast<QLineEdit*>(field)) edit->selectAll();
  if (auto* text = qobject_cast<QPlainTextEdit*>(field)) text->selectAll();
}

std::string InfoNumber(double value, char separator) {
  return FormatFieldFloat(value, 3, separator);
}

}  // namespace isolith::viewkit
