// What the toolpath and output dialog views share: a dialog whose OK asks the form before it
// closes, and the few builders of their rows (labels that show text as it is, labels whose "&"
// reaches a field, number fields, ticks).
#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <string>
#include <string_view>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;
class QWidget;

namespace isolith::pathviews {

inline QString ToQ(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string FromQ(const QString& text) {
  return text.toStdString();
}

// A dialog with OK and Cancel below its content. OK runs `acceptRule`, which copies the widgets
// into the form, asks the form's accept rule and, on a refusal, puts the focus where the form
// says; the dialog closes only when it agrees. Cancel and Esc close it without asking.
class FormDialog : public QDialog {
 public:
  FormDialog(QWidget* parent, std::string_view title);

  // The content goes here, above the buttons.
  QVBoxLayout* Body() const { return body_; }
  // Adds a button beside OK and Cancel that does not close the dialog ("Open...", "Save...").
  QPushButton* AddActionButton(std::string_view text);

  std::function<bool()> acceptRule;

  // Shows the dialog modally: true when it closed through OK with the rule's consent.
  bool Run();

  void accept() override;

 private:
  QVBoxLayout* body_;
  QDialogButtonBox* buttons_;
};

// A label that shows `text` as it stands: no mnemonic, no rich text.
QLabel* TextLabel(std::string_view text, QWidget* parent = nullptr);

// A label whose "&" is the mnemonic of `field`.
QLabel* FieldLabel(std::string_view text, QWidget* field);

// A number field holding the form's text.
QLineEdit* NumberField(const std::string& text, const char* name);

// A tick and a radio button with the form's text ("&" a mnemonic) and state.
QCheckBox* CheckBox(std::string_view text, bool checked, const char* name);
QRadioButton* RadioButton(std::string_view text, bool checked, const char* name);

// Puts the focus on a field the form refused: the tab page that holds it comes forward, and a
// text field has its text selected so that typing replaces it.
void FocusField(QWidget* field);

// A length shown for information, with the locale's decimal mark: three decimals at most.
std::string InfoNumber(double value, char separator);

}  // namespace isolith::pathviews
