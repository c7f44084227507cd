#include "output/postprocessor/PostProcessor.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

#include "params/Expression.h"
#include "params/SettingsFile.h"

namespace isolith {

std::string NumberFormatText(const TNumberFormat& format) {
  const int left = std::clamp(format.leftDigits, 1, kNumberFormatDigits);
  const int right = std::clamp(format.rightDigits, 0, kNumberFormatDigits);
  std::string text(static_cast<size_t>(left - 1), format.pad);
  text.push_back('0');
  if (right > 0) {
    text.push_back(format.decimalChar);
    text.append(static_cast<size_t>(right), '0');
  }
  return text;
}

TNumberFormat ParseNumberFormat(std::string_view text) {
  TNumberFormat format;
  size_t pos = 0;
  format.pad = text.empty() ? ' ' : text[0];
  if (format.pad == '0' && (text.size() < 2 || text[1] != '0')) format.pad = ' ';
  int left = 0;
  while (pos < text.size() && (text[pos] == '0' || text[pos] == format.pad)) {
    ++left;
    ++pos;
  }
  format.leftDigits = std::clamp(left, 1, kNumberFormatDigits);
  format.decimalChar = pos < text.size() ? text[pos++] : '.';
  int right = 0;
  while (pos < text.size() && text[pos] == '0') {
    ++right;
    ++pos;
  }
  format.rightDigits = std::min(right, kNumberFormatDigits);
  return format;
}

std::string PostProcessorPath(const std::string& folder, const std::string& name) {
  if (name.empty()) return folder;
  return folder + name + "." + kPostProcessorExtension;
}

namespace {

enum class Kind { Text, Byte, Integer, Real, YesNo, Format };

// One key of the file and the field it stands for.
struct FieldKey {
  const char* key;
  Kind kind;
  std::string TPostProcessor::*text = nullptr;
  uint8_t TPostProcessor::*byte = nullptr;
  int32_t TPostProcessor::*integer = nullptr;
  float TPostProcessor::*real = nullptr;
  bool TPostProcessor::*flag = nullptr;
  TNumberFormat TPostProcessor::*format = nullptr;
  size_t width = 0;
  double minimum = 0, maximum = 0;
};

FieldKey Text(const char* key, std::string TPostProcessor::*member, size_t width) {
  FieldKey k{key, Kind::Text};
  k.text = member;
  k.width = width;
  return k;
}
FieldKey Byte(const char* key, uint8_t TPostProcessor::*member) {
  FieldKey k{key, Kind::Byte};
  k.byte = member;
  k.maximum = 255;
  return k;
}
FieldKey Integer(const char* key, int32_t TPostProcessor::*member, int32_t minimum,
                 int32_t maximum) {
  FieldKey k{key, Kind::Integer};
  k.integer = member;
  k.minimum = minimum;
  k.maximum = maximum;
  return k;
}
FieldKey Real(const char* key, float TPostProcessor::*member, double limit) {
  FieldKey k{key, Kind::Real};
  k.real = member;
  k.minimum = -limit;
  k.maximum = limit;
  return k;
}
FieldKey YesNo(const char* key, bool TPostProcessor::*member) {
  FieldKey k{key, Kind::YesNo};
  k.flag = member;
  return k;
}
FieldKey Format(const char* key, TNumberFormat TPostProcessor::*member) {
  FieldKey k{key, Kind::Format};
  k.format = member;
  return k;
}

// Scales without limits of their own are still held to what a float can carry.
constexpr double kFloatLimit = std::numeric_limits<float>::max();

// The keys in the order of the file.
const std::vector<FieldKey>& Keys() {
  using P = TPostProcessor;
  static const std::vector<FieldKey> keys = {
      Text("Title", &P::Title, kTitleWidth),
      Text("FileExt", &P::FileExt, kFileExtWidth),
      Byte("Header1", &P::Header1),
      Byte("Header2", &P::Header2),
      Byte("Header3", &P::Header3),
      Byte("Trailer1", &P::Trailer1),
      Byte("Trailer2", &P::Trailer2),
      Byte("Trailer3", &P::Trailer3),
      Text("LineNb", &P::LineNb, kLineNbWidth),
      Integer("BeginNb", &P::BeginNb, 0, kLineNumberMax),
      Integer("EndNb", &P::EndNb, 0, kEndNbMax),
      Integer("IncNb", &P::IncNb, 0, kLineNumberMax),
      Text("FileTop", &P::FileTop, kFileTopWidth),
      Text("FileBottom", &P::FileBottom, kFileBottomWidth),
      Text("ToolChg", &P::ToolChg, kTemplateWidth),
      Text("SpindleOn", &P::SpindleOn, kTemplateWidth),
      Text("SpindleOff", &P::SpindleOff, kTemplateWidth),
      Text("Home", &P::Home, kTemplateWidth),
      Text("Delay", &P::Delay, kTemplateWidth),
      Text("OutputOn", &P::OutputOn, kTemplateWidth),
      Text("OutputOff", &P::OutputOff, kTemplateWidth),
      Text("OpenBuffer", &P::OpenBuffer, kTemplateWidth),
      Text("CloseBuffer", &P::CloseBuffer, kTemplateWidth),
      Real("ScaleRPM", &P::ScaleRPM, kFloatLimit),
      Real("ScaleS", &P::ScaleS, kFloatLimit),
      Format("FormatRPM", &P::FormatRPM),
      Format("FormatS", &P::FormatS),
      Text("ClearV", &P::ClearV, kTemplateWidth),
      Text("ClearXYZ", &P::ClearXYZ, kTemplateWidth),
      Text("ActiveV", &P::ActiveV, kTemplateWidth),
      Text("PlungeZ", &P::PlungeZ, kTemplateWidth),
      Text("FeedXYZ", &P::FeedXYZ, kTemplateWidth),
      Text("LiftUpZ", &P::LiftUpZ, kTemplateWidth),
      YesNo("Arcs", &P::Arcs),
      YesNo("NoZeros", &P::NoZeros),
      YesNo("RelCoords", &P::RelCoords),
      YesNo("Hexa", &P::Hexa),
      Text("FeedArc2", &P::FeedArc2, kTemplateWidth),
      Text("FeedArc3", &P::FeedArc3, kTemplateWidth),
      Real("ScaleX", &P::ScaleX, kScaleLimit),
      Real("ScaleY", &P::ScaleY, kScaleLimit),
      Real("ScaleZ", &P::ScaleZ, kScaleLimit),
      Real("ScaleV", &P::ScaleV, kScaleLimit),
      Real("ScaleR", &P::ScaleR, kScaleLimit),
      Real("ScaleA", &P::ScaleA, kScaleLimit),
      Format("FormatXY", &P::FormatXY),
      Format("FormatZ", &P::FormatZ),
      Format("FormatV", &P::FormatV),
      Format("FormatR", &P::FormatR),
      Format("FormatA", &P::FormatA),
      Integer("OriginXY", &P::OriginXY, 0, kOriginXYChoices - 1),
      Integer("OriginZ", &P::OriginZ, 0, kOriginZChoices - 1),
      Real("OffsetX", &P::OffsetX, kScaleLimit),
      Real("OffsetY", &P::OffsetY, kScaleLimit),
      Real("OffsetZ", &P::OffsetZ, kScaleLimit),
      Real("OffsetA", &P::OffsetA, kAngleOffsetLimit),
  };
  return keys;
}

// A text value as the file can hold it: on one line.
std::string OneLine(std::string_view text) {
  std::string line;
  for (char ch : text) {
    if (static_cast<unsigned char>(ch) >= 32) line.push_back(ch);
  }
  return line;
}

// The number at the start of a value, blanks first and a sign allowed; false when there is
// none. Unlike the settings file, an explicit 0 is a 0 here: a trailer byte or an increment of 0
// is a choice of the user.
bool LeadingNumber(std::string_view text, double& value) {
  text = TrimBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || !std::isfinite(number)) return false;
  value = negative ? -number : number;
  return true;
}

void ReadValue(TPostProcessor& pp, const FieldKey& k, std::string_view value) {
  double number = 0;
  switch (k.kind) {
    case Kind::Text:
      pp.*k.text = std::string(value.substr(0, k.width));
      break;
    case Kind::Byte:
      if (LeadingNumber(value, number))
        pp.*k.byte = static_cast<uint8_t>(std::clamp(std::trunc(number), 0.0, 255.0));
      break;
    case Kind::Integer:
      if (LeadingNumber(value, number))
        pp.*k.integer = static_cast<int32_t>(std::clamp(std::trunc(number), k.minimum, k.maximum));
      break;
    case Kind::Real:
      if (LeadingNumber(value, number))
        pp.*k.real = static_cast<float>(std::clamp(number, k.minimum, k.maximum));
      break;
    case Kind::YesNo:
      ReadYesNoValue(value, pp.*k.flag);
      break;
    case Kind::Format:
      pp.*k.format = ParseNumberFormat(value);
      break;
  }
}

}  // namespace

std::string PostProcessorFileText(const TPostProcessor& pp) {
  std::string out;
  WriteSectionLine(out, kPostProcessorSection, false);
  for (const FieldKey& k : Keys()) {
    switch (k.kind) {
      case Kind::Text:
        WriteTextLine(out, k.key, OneLine(pp.*k.text));
        break;
      case Kind::Byte:
        WriteIntLine(out, k.key, pp.*k.byte, "0");
        break;
      case Kind::Integer:
        WriteIntLine(out, k.key, pp.*k.integer, "0");
        break;
      case Kind::Real:
        WriteFloatLine(out, k.key, pp.*k.real, "0");
        break;
      case Kind::YesNo:
        WriteYesNoLine(out, k.key, pp.*k.flag);
        break;
      case Kind::Format:
        WriteTextLine(out, k.key, OneLine(NumberFormatText(pp.*k.format)));
        break;
    }
  }
  return out;
}

namespace {

SettingsPairHandler PairHandler(TPostProcessor& pp) {
  return [&pp](std::string_view key, std::string_view value) {
    for (const FieldKey& k : Keys()) {
      if (key == UpperAscii(k.key)) {
        ReadValue(pp, k, value);
        return;
      }
    }
  };
}

}  // namespace

void ReadPostProcessorText(TPostProcessor& pp, std::string_view text) {
  SettingsLineReader reader(PairHandler(pp));
  reader.Feed(text);
}

bool ReadPostProcessor(TPostProcessor& pp, const std::string& folder, const std::string& name) {
  // Read into a copy, so that a file that vanishes half-way leaves memory as it was.
  TPostProcessor read = pp;
  if (!ReadSettingsFile(PostProcessorPath(folder, name), PairHandler(read))) return false;
  pp = std::move(read);
  return true;
}

bool WritePostProcessor(const TPostProcessor& pp, const std::string& folder,
                        const std::string& name) {
  return WriteFileAtomically(PostProcessorPath(folder, name), PostProcessorFileText(pp));
}

}  // namespace isolith
