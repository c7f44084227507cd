#include "ui/dialogs/TDialogPostProView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextCursor>
#include <map>

#include "output/postprocessor/PostProcessorForm.h"
#include "ui/dialogs/ViewKit.h"

namespace isolith {

using namespace viewkit;

namespace {

using Form = TDialogPostPro;

// A block of lines (top and bottom of file) is edited one line to a row: the template's breaks
// become line ends there, and the form turns them back.
QString BlockText(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (std::string_view(text).substr(i).starts_with(kTemplateBreak)) {
      out += '\n';
      i += kTemplateBreak.size() - 1;
    } else {
      out += text[i];
    }
  }
  return ToQ(out);
}

// The widgets of the dialog by the form's field ids.
class PostProWidgets {
 public:
  explicit PostProWidgets(Form& form) : form_(form) {}

  QLineEdit* Line(Form::Field field, int maxLength, bool number = false) {
    auto* edit = new QLineEdit;
    edit->setObjectName(QStringLiteral("field%1").arg(int(field)));
    if (maxLength > 0) edit->setMaxLength(maxLength);
    if (number)
      edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("00000000000")));
    fields_[field] = edit;
    return edit;
  }

  QPlainTextEdit* Block(Form::Field field) {
    auto* edit = new QPlainTextEdit;
    edit->setObjectName(QStringLiteral("field%1").arg(int(field)));
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setTabChangesFocus(true);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    fields_[field] = edit;
    return edit;
  }

  QWidget* Of(Form::Field field) const {
    const auto found = fields_.find(field);
    return found == fields_.end() ? nullptr : found->second;
  }

  // The form's texts into the widgets.
  void Show() {
    for (const auto& [field, widget] : fields_) {
      const std::string* text = form_.FieldText(field);
      if (!text) continue;
      if (auto* line = qobject_cast<QLineEdit*>(widget)) line->setText(ToQ(*text));
      if (auto* block = qobject_cast<QPlainTextEdit*>(widget))
        block->setPlainText(BlockText(*text));
    }
    arcs->setChecked(form_.arcs);
    noZeros->setChecked(form_.noZeros);
    relCoords->setChecked(form_.relCoords);
    hexa->setChecked(form_.hexa);
    originXY->setCurrentIndex(form_.originXY);
    originZ->setCurrentIndex(form_.originZ);
  }

  // The widgets into the form.
  void Take() {
    for (const auto& [field, widget] : fields_) {
      std::string* text = form_.FieldText(field);
      if (!text) continue;
      if (auto* line = qobject_cast<QLineEdit*>(widget)) *text = FromQ(line->text());
      if (auto* block = qobject_cast<QPlainTextEdit*>(widget)) *text = FromQ(block->toPlainText());
    }
    form_.arcs = arcs->isChecked();
    form_.noZeros = noZeros->isChecked();
    form_.relCoords = relCoords->isChecked();
    form_.hexa = hexa->isChecked();
    form_.originXY = originXY->currentIndex();
    form_.originZ = originZ->currentIndex();
  }

  // After a refusal: the focus on the field the form names; a bracket fault is selected.
  void FocusRefused() {
    QWidget* widget = Of(form_.focus);
    if (!widget) return;
    FocusField(widget);
    if (!Form::StrictField(form_.focus)) return;
    const std::string* text = form_.FieldText(form_.focus);
    if (!text) return;
    // The form counts bytes; the widget counts characters.
    const size_t bytes = std::min(form_.selection, text->size());
    const int at = static_cast<int>(ToQ(std::string_view(*text).substr(0, bytes)).size());
    if (auto* line = qobject_cast<QLineEdit*>(widget)) {
      if (at < line->text().size())
        line->setSelection(at, 1);
      else
        line->setCursorPosition(at);
    }
  }

  QCheckBox* arcs = nullptr;
  QCheckBox* noZeros = nullptr;
  QCheckBox* relCoords = nullptr;
  QCheckBox* hexa = nullptr;
  QComboBox* originXY = nullptr;
  QComboBox* originZ = nullptr;

 private:
  Form& form_;
  std::map<Form::Field, QWidget*> fields_;
};

void AddRow(QGridLayout* grid, int row, std::string_view label, QWidget* field) {
  grid->addWidget(FieldLabel(label, field), row, 0);
  grid->addWidget(field, row, 1);
}

QWidget* FormatPage(PostProWidgets& w) {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  AddRow(grid, 0, "Format title", w.Line(Form::kTitleField, int(kTitleWidth)));
  AddRow(grid, 1, "Default extension", w.Line(Form::kFileExt, int(kFileExtWidth), true));

  auto bytes = [&](std::string_view label, int row, Form::Field first) {
    auto* line = new QHBoxLayout;
    QLineEdit* a = w.Line(first, 3, true);
    line->addWidget(a);
    line->addWidget(w.Line(static_cast<Form::Field>(first + 1), 3, true));
    line->addWidget(w.Line(static_cast<Form::Field>(first + 2), 3, true));
    line->addStretch();
    grid->addWidget(FieldLabel(label, a), row, 0);
    grid->addLayout(line, row, 1);
  };
  bytes("Line header", 2, Form::kHeader1);
  bytes("Line trailer", 3, Form::kTrailer1);

  AddRow(grid, 4, "Line numbering format", w.Line(Form::kLineNb, int(kLineNbWidth)));
  auto* numbers = new QHBoxLayout;
  QLineEdit* begin = w.Line(Form::kBeginNb, 0, true);
  QLineEdit* end = w.Line(Form::kEndNb, 0, true);
  QLineEdit* increment = w.Line(Form::kIncNb, 0, true);
  numbers->addWidget(begin);
  numbers->addWidget(FieldLabel("to", end));
  numbers->addWidget(end);
  numbers->addWidget(FieldLabel("Increment", increment));
  numbers->addWidget(increment);
  numbers->addStretch();
  grid->addWidget(FieldLabel("Number from", begin), 5, 0);
  grid->addLayout(numbers, 5, 1);
  grid->setRowStretch(6, 1);
  return page;
}

QWidget* FilePage(PostProWidgets& w) {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  QPlainTextEdit* top = w.Block(Form::kFileTop);
  QPlainTextEdit* bottom = w.Block(Form::kFileBottom);
  grid->addWidget(FieldLabel("Top of file", top), 0, 0, Qt::AlignTop);
  grid->addWidget(top, 0, 1);
  grid->addWidget(FieldLabel("Bottom of file", bottom), 1, 0, Qt::AlignTop);
  grid->addWidget(bottom, 1, 1);
  grid->setRowStretch(0, 2);
  grid->setRowStretch(1, 1);
  return page;
}

QWidget* CommandsPage(PostProWidgets& w) {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  const std::pair<std::string_view, Form::Field> rows[] = {
      {"Tool change", Form::kToolChg},       {"Spindle start", Form::kSpindleOn},
      {"Spindle stop", Form::kSpindleOff},   {"Reference run", Form::kHome},
      {"Pause delay", Form::kDelay},         {"Output enabling", Form::kOutputOn},
      {"Disabling", Form::kOutputOff},       {"Buffer opening", Form::kOpenBuffer},
      {"Buffer closing", Form::kCloseBuffer}};
  int row = 0;
  for (const auto& [label, field] : rows)
    AddRow(grid, row++, label, w.Line(field, int(kTemplateWidth)));

  // The numbers of the spindle's tags.
  auto* spindle = new QGridLayout;
  spindle->addWidget(TextLabel("RPM"), 0, 1);
  spindle->addWidget(TextLabel("S"), 0, 2);
  QLineEdit* scaleRPM = w.Line(Form::kScaleRPM, 0, true);
  QLineEdit* formatRPM = w.Line(Form::kFormatRPM, 2 * kNumberFormatDigits + 1, true);
  spindle->addWidget(FieldLabel("Scales", scaleRPM), 1, 0);
  spindle->addWidget(scaleRPM, 1, 1);
  spindle->addWidget(w.Line(Form::kScaleS, 0, true), 1, 2);
  spindle->addWidget(FieldLabel("Formats", formatRPM), 2, 0);
  spindle->addWidget(formatRPM, 2, 1);
  spindle->addWidget(w.Line(Form::kFormatS, 2 * kNumberFormatDigits + 1, true), 2, 2);
  spindle->setColumnStretch(3, 1);
  grid->addLayout(spindle, row++, 0, 1, 2);
  grid->setRowStretch(row, 1);
  return page;
}

QWidget* MotionPage(PostProWidgets& w, const Form& form) {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);
  const std::pair<std::string_view, Form::Field> rows[] = {
      {"Velocity change, tool cleared", Form::kClearV},
      {"Motion, tool cleared", Form::kClearXYZ},
      {"Velocity change, tool active", Form::kActiveV},
      {"Z plunge", Form::kPlungeZ},
      {"XYZ feeding", Form::kFeedXYZ},
      {"Z lift-up", Form::kLiftUpZ}};
  int row = 0;
  for (const auto& [label, field] : rows)
    AddRow(grid, row++, label, w.Line(field, int(kTemplateWidth)));
  w.arcs = CheckBox("Circular interpolation, clockwise", form.arcs, "arcs");
  grid->addWidget(w.arcs, row, 0);
  grid->addWidget(w.Line(Form::kFeedArc2, int(kTemplateWidth)), row++, 1);
  AddRow(grid, row++, "Trigo", w.Line(Form::kFeedArc3, int(kTemplateWidth)));
  w.noZeros = CheckBox("Suppress useless zeros after decimal point", form.noZeros, "noZeros");
  w.relCoords = CheckBox("Relative co-ordinates", form.relCoords, "relCoords");
  w.hexa = CheckBox("Hexa", form.hexa, "hexa");
  for (QCheckBox* box : {w.noZeros, w.relCoords, w.hexa}) grid->addWidget(box, row++, 0, 1, 2);
  grid->setRowStretch(row, 1);
  return page;
}

QWidget* CoordinatesPage(PostProWidgets& w) {
  auto* page = new QWidget;
  auto* outer = new QVBoxLayout(page);
  auto* grid = new QGridLayout;
  const char* axes[] = {"X", "Y", "Z", "V", "R", "A"};
  for (int i = 0; i < 6; ++i) grid->addWidget(TextLabel(axes[i]), 0, i + 1, Qt::AlignHCenter);
  const int formatWidth = 2 * kNumberFormatDigits + 1;

  QLineEdit* scaleX = w.Line(Form::kScaleX, 0, true);
  grid->addWidget(FieldLabel("Scales", scaleX), 1, 0);
  grid->addWidget(scaleX, 1, 1);
  grid->addWidget(w.Line(Form::kScaleY, 0, true), 1, 2);
  grid->addWidget(w.Line(Form::kScaleZ, 0, true), 1, 3);
  grid->addWidget(w.Line(Form::kScaleV, 0, true), 1, 4);
  grid->addWidget(w.Line(Form::kScaleR, 0, true), 1, 5);
  grid->addWidget(w.Line(Form::kScaleA, 0, true), 1, 6);

  // X and Y share one number format.
  QLineEdit* formatXY = w.Line(Form::kFormatXY, formatWidth);
  grid->addWidget(FieldLabel("Formats", formatXY), 2, 0);
  grid->addWidget(formatXY, 2, 1, 1, 2);
  grid->addWidget(w.Line(Form::kFormatZ, formatWidth, true), 2, 3);
  grid->addWidget(w.Line(Form::kFormatV, formatWidth, true), 2, 4);
  grid->addWidget(w.Line(Form::kFormatR, formatWidth, true), 2, 5);
  grid->addWidget(w.Line(Form::kFormatA, formatWidth, true), 2, 6);

  QLineEdit* offsetX = w.Line(Form::kOffsetX, 0, true);
  grid->addWidget(FieldLabel("Offsets", offsetX), 3, 0);
  grid->addWidget(offsetX, 3, 1);
  grid->addWidget(w.Line(Form::kOffsetY, 0, true), 3, 2);
  grid->addWidget(w.Line(Form::kOffsetZ, 0, true), 3, 3);
  grid->addWidget(w.Line(Form::kOffsetA, 0, true), 3, 6);
  outer->addLayout(grid);

  auto* origins = new QGridLayout;
  w.originXY = new QComboBox;
  w.originXY->setObjectName("originXY");
  for (const char* text : kOriginXYTexts) w.originXY->addItem(ToQ(text));
  w.originZ = new QComboBox;
  w.originZ->setObjectName("originZ");
  for (const char* text : kOriginZTexts) w.originZ->addItem(ToQ(text));
  origins->addWidget(FieldLabel("Origin XY", w.originXY), 0, 0);
  origins->addWidget(w.originXY, 0, 1);
  origins->addWidget(FieldLabel("Origin Z", w.originZ), 1, 0);
  origins->addWidget(w.originZ, 1, 1);
  origins->setColumnStretch(2, 1);
  outer->addLayout(origins);
  outer->addStretch();
  return page;
}

}  // namespace

bool TDialogPostProView(DialogForm& base, Platform& platform, QWidget* parent) {
  auto* form = dynamic_cast<Form*>(&base);
  if (!form) return false;
  FormDialog dialog(parent, Form::kTitle, FormDialog::Sizing::Resizable);

  PostProWidgets w(*form);
  auto* tabs = new QTabWidget;
  tabs->setObjectName("pages");
  tabs->addTab(FormatPage(w), QStringLiteral("&Format"));
  tabs->addTab(FilePage(w), QStringLiteral("F&ile"));
  tabs->addTab(CommandsPage(w), QStringLiteral("&Commands"));
  tabs->addTab(MotionPage(w, *form), QStringLiteral("&Motion"));
  tabs->addTab(CoordinatesPage(w), QStringLiteral("Co-o&rdinates"));
  dialog.Body()->addWidget(tabs);
  w.Show();
  w.Of(Form::kTitleField)->setFocus();

  QPushButton* open = dialog.AddActionButton("Open...");
  open->setObjectName("open");
  QPushButton* save = dialog.AddActionButton("Save...");
  save->setObjectName("save");
  QObject::connect(open, &QPushButton::clicked, &dialog, [&] {
    if (form->OpenFile(platform)) w.Show();
  });
  QObject::connect(save, &QPushButton::clicked, &dialog, [&] {
    w.Take();
    if (!form->SaveFile(platform) && form->focus != Form::kNoField) w.FocusRefused();
  });

  dialog.acceptRule = [&] {
    w.Take();
    if (form->Accept(platform)) return true;
    w.FocusRefused();
    return false;
  };
  return dialog.Run();
}

}  // namespace isolith
