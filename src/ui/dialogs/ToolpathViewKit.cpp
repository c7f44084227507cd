#include "ui/dialogs/ToolpathViewKit.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>

#include "params/FieldChecks.h"

namespace isolith::pathviews {

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
}

QPushButton* FormDialog::AddActionButton(std::string_view text) {
  QPushButton* button = buttons_->addButton(ToQ(text), QDialogButtonBox::ActionRole);
  // Enter stays with OK.
  button->setAutoDefault(false);
  return button;
}

bool FormDialog::Run() {
  return exec() == QDialog::Accepted;
}

void FormDialog::accept() {
  if (acceptRule && !acceptRule()) return;
  QDialog::accept();
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
  field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));
  return field;
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

}  // namespace isolith::pathviews
