// What the parameter, import and board dialog views share: a dialog that asks its form before it
// closes on OK, and the small builders of their rows (a label with its mnemonic, a number field,
// the unit after it).
#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <string>
#include <string_view>

class QCheckBox;
class QDialogButtonBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;
class QWidget;

namespace isolith::viewkit {

inline QString ToQ(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string FromQ(const QString& text) {
  return text.toStdString();
}

// A dialog with OK and Cancel under its own content. OK runs `acceptRule`, which copies the
// widgets into the form and asks the form's accept rule; while it says no, the dialog stays
// open. Cancel and Esc close it without asking anything.
class FormDialog : public QDialog {
 public:
  FormDialog(QWidget* parent, std::string_view title);

  // The content goes here, above the buttons.
  QVBoxLayout* Body() const { return body_; }
  QDialogButtonBox* Buttons() const { return buttons_; }

  std::function<bool()> acceptRule;

  // Runs the dialog: true when it closed through OK with the rule's consent.
  bool Run();

  void done(int result) override;

 private:
  QVBoxLayout* body_;
  QDialogButtonBox* buttons_;
};

// A grid of field rows in the dialog's body: label, field, unit; room to spare goes to the
// right of the units, so the fields stay beside their labels.
QGridLayout* FieldGrid(FormDialog& dialog);

// Puts the focus on a field the form refused, its text selected so that typing replaces it.
void FocusField(QWidget* field);

// Sets a field's text, leaving it alone (cursor and selection) when it already shows it.
void ShowText(QLineEdit* field, const std::string& text);

// A number field: wide enough for the usual values, the form's text in it.
QLineEdit* NumberField(QWidget* parent, const std::string& text, const char* name);

// One row of a grid: the label (its "&" a mnemonic that reaches the field), the field over
// `span` columns, the unit after it. Returns the label.
QLabel* AddFieldRow(QGridLayout* grid, int row, std::string_view label, QWidget* field,
                    std::string_view unit = {}, int span = 1);

// A check box with the form's text and state.
QCheckBox* CheckBox(QWidget* parent, std::string_view text, bool checked, const char* name);

}  // namespace isolith::viewkit
