// What every dialog view shares: a dialog that asks its form before it closes on OK, and the
// small builders of its rows (labels, number fields with their units, ticks and radio buttons).
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
class QPushButton;
class QRadioButton;
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
// widgets into the form, asks the form's accept rule and, on a refusal, puts the focus where the
// form says; while it says no, the dialog stays open. Cancel and Esc close it without asking.
class FormDialog : public QDialog {
 public:
  // How the dialog's size behaves.
  enum class Sizing {
    Fixed,      // follows the content; nothing in the dialog needs to grow
    Resizable,  // the person may enlarge it (lists and text areas)
  };

  FormDialog(QWidget* parent, std::string_view title, Sizing sizing = Sizing::Fixed);

  // The content goes here, above the buttons.
  QVBoxLayout* Body() const { return body_; }
  QDialogButtonBox* Buttons() const { return buttons_; }
  // Adds a button beside OK and Cancel that does not close the dialog ("Open...", "Save...").
  QPushButton* AddActionButton(std::string_view text);

  std::function<bool()> acceptRule;

  // Runs the dialog modally: true when it closed through OK with the rule's consent.
  bool Run();

  void done(int result) override;

 private:
  QVBoxLayout* body_;
  QDialogButtonBox* buttons_;
};

// A grid of field rows in the dialog's body: label, field, unit; room to spare goes to the
// right of the units, so the fields stay beside their labels.
QGridLayout* FieldGrid(FormDialog& dialog);

// One row of a grid: the label (its "&" a mnemonic that reaches the field), the field over
// `span` columns, the unit after it. Returns the label.
QLabel* AddFieldRow(QGridLayout* grid, int row, std::string_view label, QWidget* field,
                    std::string_view unit = {}, int span = 1);

// A label that shows `text` as it stands: no mnemonic, no rich text.
QLabel* TextLabel(std::string_view text, QWidget* parent = nullptr);

// A label whose "&" is the mnemonic of `field`.
QLabel* FieldLabel(std::string_view text, QWidget* field);

// A number field: wide enough for the usual values, the form's text in it.
QLineEdit* NumberField(const std::string& text, const char* name);

// Sets a field's text, leaving it alone (cursor and selection) when it already shows it.
void ShowText(QLineEdit* field, const std::string& text);

// A tick and a radio button with the form's text ("&" a mnemonic) and state.
QCheckBox* CheckBox(std::string_view text, bool checked, const char* name);
QRadioButton* RadioButton(std::string_view text, bool checked, const char* name);

// Puts the focus on a field the form refused: the tab page that holds it comes forward, and a
// text field has its text selected so that typing replaces it.
void FocusField(QWidget* field);

// A length shown for information, with the locale's decimal mark: three decimals at most.
std::string InfoNumber(double value, char separator);

}  // namespace isolith::viewkit
