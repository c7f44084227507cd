#include "output/formats/BuiltinFormats.h"

#include "output/formats/FileTypes.h"
#include "output/formats/FormatFamilies.h"
#include "output/formats/UserTextFiles.h"

namespace isolith {

BuiltinWords::BuiltinWords(FormatContext context) : context_(std::move(context)) {}

const Board& BuiltinWords::board() const {
  static const Board kEmpty;
  return context_.board ? *context_.board : kEmpty;
}

std::optional<std::vector<std::string>> BuiltinWords::UserLines(std::string_view name) const {
  return ReadUserLines(context_.programFolder, name);
}

std::optional<std::string> BuiltinWords::UserText(std::string_view name) const {
  auto lines = UserLines(name);
  if (!lines) return std::nullopt;
  std::string text;
  for (const std::string& line : *lines) text += line;
  return text;
}

std::unique_ptr<FormatWords> MakeFormatWords(int format, const FormatContext& context) {
  switch (format) {
    case kFormatOxbel:
      return std::make_unique<OxbelWords>(context);
    case kFormatHpgl:
      return std::make_unique<HpglWords>(context);
    case kFormatDxf:
      return std::make_unique<DxfWords>(context);
    case kFormatNcp:
      return std::make_unique<NcpWords>(context);
    case kFormatIso:
      return std::make_unique<IsoWords>(context, false);
    case kFormatNum:
      return std::make_unique<IsoWords>(context, true);
    case kFormatCamm3:
      return std::make_unique<RolandWords>(context, false);
    case kFormatEgx:
      return std::make_unique<RolandWords>(context, true);
    case kFormatSml:
      return std::make_unique<SmlWords>(context);
    case kFormatCbr:
      return std::make_unique<CbrWords>(context);
    default:
      return nullptr;
  }
}

}  // namespace isolith
