#include "output/postprocessor/PostProcessorForm.h"

#include <algorithm>
#include <vector>

#include "params/FieldChecks.h"

namespace isolith {

namespace {

// The template text with, for each of its characters, where it came from in the edit field.
struct MappedTemplate {
  std::string text;
  std::vector<size_t> origin;
};

MappedTemplate MapTemplate(std::string_view edit, size_t maxLength) {
  MappedTemplate m;
  for (size_t i = 0; i < edit.size(); ++i) {
    const char ch = edit[i];
    if (ch == '\r' || ch == '\n') {
      m.text.append(kTemplateBreak);
      m.origin.insert(m.origin.end(), kTemplateBreak.size(), i);
      if (ch == '\r' && i + 1 < edit.size() && edit[i + 1] == '\n') ++i;
    } else {
      m.text.push_back(ch);
      m.origin.push_back(i);
    }
  }
  if (m.text.size() > maxLength) {
    m.text.resize(maxLength);
    m.origin.resize(maxLength);
  }
  return m;
}

}  // namespace

std::string TemplateFromEdit(std::string_view edit, size_t maxLength) {
  return MapTemplate(edit, maxLength).text;
}

TemplateFault CheckTemplateBrackets(std::string_view edit, size_t maxLength) {
  const MappedTemplate m = MapTemplate(edit, maxLength);
  const std::string_view text = m.text;
  bool inGroup = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char ch = text[i];
    if (inGroup && ch == '[') return {kUnexpectedOpening, m.origin[i]};
    if (inGroup && text.substr(i).starts_with(kTemplateBreak))
      return {kExpectedClosing, m.origin[i]};
    if (!inGroup && ch == ']') return {kUnexpectedClosing, m.origin[i]};
    if (ch == '[') inGroup = true;
    if (ch == ']') inGroup = false;
  }
  if (inGroup) return {kExpectedClosing, edit.size()};
  return {};
}

bool ValidateTemplate(Platform& platform, std::string_view edit, size_t maxLength,
                      std::string& text, bool strict, size_t* faultPosition) {
  if (strict) {
    const TemplateFault fault = CheckTemplateBrackets(edit, maxLength);
    if (!fault.message.empty()) {
      platform.ShowMessage("Error", fault.message, MessageIcon::Error);
      if (faultPosition) *faultPosition = fault.position;
      return false;
    }
  }
  text = TemplateFromEdit(edit, maxLength);
  return true;
}

namespace {

using Form = TDialogPostPro;

// A text field of the dialog and the record's text it stands for.
struct TextField {
  Form::Field field;
  std::string Form::*text;
  std::string TPostProcessor::*value;
  size_t width;
};

const std::vector<TextField>& TextFields() {
  using P = TPostProcessor;
  static const std::vector<TextField> fields = {
      {Form::kTitleField, &Form::title, &P::Title, kTitleWidth},
      {Form::kFileExt, &Form::fileExt, &P::FileExt, kFileExtWidth},
      {Form::kLineNb, &Form::lineNb, &P::LineNb, kLineNbWidth},
      {Form::kFileTop, &Form::fileTop, &P::FileTop, kFileTopWidth},
      {Form::kFileBottom, &Form::fileBottom, &P::FileBottom, kFileBottomWidth},
      {Form::kToolChg, &Form::toolChg, &P::ToolChg, kTemplateWidth},
      {Form::kSpindleOn, &Form::spindleOn, &P::SpindleOn, kTemplateWidth},
      {Form::kSpindleOff, &Form::spindleOff, &P::SpindleOff, kTemplateWidth},
      {Form::kHome, &Form::home, &P::Home, kTemplateWidth},
      {Form::kDelay, &Form::delay, &P::Delay, kTemplateWidth},
      {Form::kOutputOn, &Form::outputOn, &P::OutputOn, kTemplateWidth},
      {Form::kOutputOff, &Form::outputOff, &P::OutputOff, kTemplateWidth},
      {Form::kOpenBuffer, &Form::openBuffer, &P::OpenBuffer, kTemplateWidth},
      {Form::kCloseBuffer, &Form::closeBuffer, &P::CloseBuffer, kTemplateWidth},
      {Form::kClearV, &Form::clearV, &P::ClearV, kTemplateWidth},
      {Form::kClearXYZ, &Form::clearXYZ, &P::ClearXYZ, kTemplateWidth},
      {Form::kActiveV, &Form::activeV, &P::ActiveV, kTemplateWidth},
      {Form::kPlungeZ, &Form::plungeZ, &P::PlungeZ, kTemplateWidth},
      {Form::kFeedXYZ, &Form::feedXYZ, &P::FeedXYZ, kTemplateWidth},
      {Form::kLiftUpZ, &Form::liftUpZ, &P::LiftUpZ, kTemplateWidth},
      {Form::kFeedArc2, &Form::feedArc2, &P::FeedArc2, kTemplateWidth},
      {Form::kFeedArc3, &Form::feedArc3, &P::FeedArc3, kTemplateWidth},
  };
  return fields;
}

// A whole-number field.
struct IntField {
  Form::Field field;
  std::string Form::*text;
  const char* label;
  uint8_t TPostProcessor::*byte;   // either this
  int32_t TPostProcessor::*value;  // or this
  int minimum, maximum;
};

const std::vector<IntField>& IntFields() {
  using P = TPostProcessor;
  static const std::vector<IntField> fields = {
      {Form::kHeader1, &Form::header1, "Line header", &P::Header1, nullptr, 0, 255},
      {Form::kHeader2, &Form::header2, "Line header", &P::Header2, nullptr, 0, 255},
      {Form::kHeader3, &Form::header3, "Line header", &P::Header3, nullptr, 0, 255},
      {Form::kTrailer1, &Form::trailer1, "Line trailer", &P::Trailer1, nullptr, 0, 255},
      {Form::kTrailer2, &Form::trailer2, "Line trailer", &P::Trailer2, nullptr, 0, 255},
      {Form::kTrailer3, &Form::trailer3, "Line trailer", &P::Trailer3, nullptr, 0, 255},
      {Form::kBeginNb, &Form::beginNb, "Number from", nullptr, &P::BeginNb, 0, kLineNumberMax},
      {Form::kEndNb, &Form::endNb, "to", nullptr, &P::EndNb, 0, kEndNbMax},
      {Form::kIncNb, &Form::incNb, "Increment", nullptr, &P::IncNb, 0, kLineNumberMax},
  };
  return fields;
}

// A float field; limits of 0 and 0 test nothing.
struct FloatField {
  Form::Field field;
  std::string Form::*text;
  const char* label;
  float TPostProcessor::*value;
  double limit;
};

const std::vector<FloatField>& FloatFields() {
  using P = TPostProcessor;
  static const std::vector<FloatField> fields = {
      {Form::kScaleRPM, &Form::scaleRPM, "Scales", &P::ScaleRPM, 0},
      {Form::kScaleS, &Form::scaleS, "Scales", &P::ScaleS, 0},
      {Form::kScaleX, &Form::scaleX, "Scales", &P::ScaleX, kScaleLimit},
      {Form::kScaleY, &Form::scaleY, "Scales", &P::ScaleY, kScaleLimit},
      {Form::kScaleZ, &Form::scaleZ, "Scales", &P::ScaleZ, kScaleLimit},
      {Form::kScaleV, &Form::scaleV, "Scales", &P::ScaleV, kScaleLimit},
      {Form::kScaleR, &Form::scaleR, "Scales", &P::ScaleR, kScaleLimit},
      {Form::kScaleA, &Form::scaleA, "Scales", &P::ScaleA, kScaleLimit},
      {Form::kOffsetX, &Form::offsetX, "Offsets", &P::OffsetX, kScaleLimit},
      {Form::kOffsetY, &Form::offsetY, "Offsets", &P::OffsetY, kScaleLimit},
      {Form::kOffsetZ, &Form::offsetZ, "Offsets", &P::OffsetZ, kScaleLimit},
      {Form::kOffsetA, &Form::offsetA, "Offsets", &P::OffsetA, kAngleOffsetLimit},
  };
  return fields;
}

// A number format field.
struct FormatField {
  Form::Field field;
  std::string Form::*text;
  TNumberFormat TPostProcessor::*value;
};

const std::vector<FormatField>& FormatFields() {
  using P = TPostProcessor;
  static const std::vector<FormatField> fields = {
      {Form::kFormatRPM, &Form::formatRPM, &P::FormatRPM},
      {Form::kFormatS, &Form::formatS, &P::FormatS},
      {Form::kFormatXY, &Form::formatXY, &P::FormatXY},
      {Form::kFormatZ, &Form::formatZ, &P::FormatZ},
      {Form::kFormatV, &Form::formatV, &P::FormatV},
      {Form::kFormatR, &Form::formatR, &P::FormatR},
      {Form::kFormatA, &Form::formatA, &P::FormatA},
  };
  return fields;
}

}  // namespace

TDialogPostPro::TDialogPostPro(TPostProcessor& pp, Settings& settings, std::string folder,
                               char separator)
    : pp_(pp), settings_(settings), folder_(std::move(folder)), separator_(separator) {
  Load();
}

std::string* TDialogPostPro::FieldText(Field field) {
  for (const TextField& f : TextFields())
    if (f.field == field) return &(this->*f.text);
  for (const IntField& f : IntFields())
    if (f.field == field) return &(this->*f.text);
  for (const FloatField& f : FloatFields())
    if (f.field == field) return &(this->*f.text);
  for (const FormatField& f : FormatFields())
    if (f.field == field) return &(this->*f.text);
  return nullptr;
}

bool TDialogPostPro::StrictField(Field field) {
  switch (field) {
    case kClearXYZ:
    case kPlungeZ:
    case kFeedXYZ:
    case kLiftUpZ:
    case kFeedArc2:
    case kFeedArc3:
      return true;
    default:
      return false;
  }
}

void TDialogPostPro::Load() {
  for (const TextField& f : TextFields()) this->*f.text = pp_.*f.value;
  for (const IntField& f : IntFields())
    this->*f.text = std::to_string(f.byte ? int(pp_.*f.byte) : int(pp_.*f.value));
  for (const FloatField& f : FloatFields())
    this->*f.text = FormatFieldFloat(pp_.*f.value, 6, separator_);
  for (const FormatField& f : FormatFields()) this->*f.text = NumberFormatText(pp_.*f.value);
  arcs = pp_.Arcs;
  noZeros = pp_.NoZeros;
  relCoords = pp_.RelCoords;
  hexa = pp_.Hexa;
  originXY = pp_.OriginXY;
  originZ = pp_.OriginZ;
}

bool TDialogPostPro::Validate(Platform& platform, TPostProcessor& out) {
  focus = kNoField;
  selection = 0;
  out = pp_;
  // Every field in the dialog's order, whatever its kind.
  for (int id = kTitleField; id <= kOffsetA; ++id) {
    const Field field = static_cast<Field>(id);
    bool good = true;
    for (const TextField& f : TextFields()) {
      if (f.field != field) continue;
      good = ValidateTemplate(platform, this->*f.text, f.width, out.*f.value, StrictField(field),
                              &selection);
    }
    for (const IntField& f : IntFields()) {
      if (f.field != field) continue;
      int value = f.byte ? out.*f.byte : out.*f.value;
      good = CheckIntField(platform, f.label, this->*f.text, "", value, f.minimum, f.maximum);
      if (good && f.byte) out.*f.byte = static_cast<uint8_t>(value);
      if (good && !f.byte) out.*f.value = value;
    }
    for (const FloatField& f : FloatFields()) {
      if (f.field != field) continue;
      float value = out.*f.value;
      good = CheckFloatField(platform, f.label, this->*f.text, "", value, -f.limit, f.limit);
      // The slack of the check may not carry a value past the field's limits.
      if (good && f.limit > 0) value = std::clamp(value, float(-f.limit), float(f.limit));
      if (good) out.*f.value = value;
    }
    for (const FormatField& f : FormatFields()) {
      if (f.field == field) out.*f.value = ParseNumberFormat(this->*f.text);
    }
    if (!good) {
      focus = field;
      return false;
    }
  }
  out.Arcs = arcs;
  out.NoZeros = noZeros;
  out.RelCoords = relCoords;
  out.Hexa = hexa;
  out.OriginXY = std::clamp(originXY, 0, kOriginXYChoices - 1);
  out.OriginZ = std::clamp(originZ, 0, kOriginZChoices - 1);
  return true;
}

FileRequest TDialogPostPro::Request() const {
  FileRequest request;
  request.title = std::string(kFileDialogTitle);
  request.folder = folder_ + std::string(kConfigSubfolder);
  request.filters = {{std::string(kFileFilter), std::string(kFilePattern)}};
  request.defaultExtension = kPostProcessorExtension;
  return request;
}

bool TDialogPostPro::OpenFile(Platform& platform) {
  FileRequest request = Request();
  const std::optional<std::string> path = platform.OpenFileDialog(request);
  if (!path || path->empty()) return false;
  if (!ReadPostProcessor(pp_, *path, "")) {
    platform.ShowMessage("Error", std::string(kReadFailed) + " ''" + *path + "''",
                         MessageIcon::Error);
    return false;
  }
  Load();
  return true;
}

bool TDialogPostPro::SaveFile(Platform& platform) {
  TPostProcessor checked;
  if (!Validate(platform, checked)) return false;
  FileRequest request = Request();
  const std::optional<std::string> path = platform.SaveFileDialog(request);
  if (!path || path->empty()) return false;
  if (!WritePostProcessor(checked, *path, "")) {
    platform.ShowMessage("Error", std::string(kWriteFailed) + " ''" + *path + "''",
                         MessageIcon::Error);
    return false;
  }
  return true;
}

bool TDialogPostPro::Accept(Platform& platform) {
  TPostProcessor checked;
  if (!Validate(platform, checked)) return false;
  pp_ = std::move(checked);
  settings_.PprExtension = pp_.FileExt;
  return true;
}

bool EditPostProcessor(Platform& platform, TPostProcessor& pp, Settings& settings,
                       const std::string& folder) {
  ReadPostProcessor(pp, folder, kPostProcessorBaseName);
  TDialogPostPro form(pp, settings, folder, platform.DecimalSeparator());
  if (!platform.RunDialog(form)) {
    ReadPostProcessor(pp, folder, kPostProcessorBaseName);
    return false;
  }
  if (!WritePostProcessor(pp, folder, kPostProcessorBaseName)) {
    platform.ShowMessage("Error",
                         std::string(TDialogPostPro::kWriteFailed) + " ''" +
                             PostProcessorPath(folder, kPostProcessorBaseName) + "''",
                         MessageIcon::Error);
  }
  return true;
}

}  // namespace isolith
