#include "output/driver/OutputName.h"

#include <algorithm>
#include <cctype>

#include "output/formats/FileTypes.h"

namespace isolith {

namespace {

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace

const std::string* RememberedExtension(const Settings& settings, int format) {
  switch (format) {
    case kFormatHpgl:
      return &settings.PltExtension;
    case kFormatDxf:
      return &settings.DxfExtension;
    case kFormatNcp:
      return &settings.NcpExtension;
    case kFormatIso:
    case kFormatNum:
      return &settings.IsoExtension;  // NUM reads ISO's, as it always has
    case kFormatCamm3:
      return &settings.Cm3Extension;
    case kFormatEgx:
      return &settings.EgxExtension;
    case kFormatSml:
      return &settings.SmlExtension;
    case kFormatCbr:
      return &settings.CbrExtension;
    case kFormatUser:
      return &settings.PprExtension;
    default:
      return nullptr;
  }
}

std::string* RememberedExtensionToWrite(Settings& settings, int format) {
  if (format == kFormatNum) return &settings.NumExtension;
  return const_cast<std::string*>(RememberedExtension(settings, format));
}

std::string DefaultExtension(const OutputContext& context, int format) {
  if (format == kFormatUser && !context.userFormatExtension.empty())
    return context.userFormatExtension;
  return FileTypeOf(format).extension;
}

FileFilter FormatFilter(const OutputContext& context, int format) {
  std::string title = FileTypeOf(format).title;
  if (format == kFormatUser) title += " \"" + context.userFormatTitle + "\"";
  const std::string first = DefaultExtension(context, format);
  std::string second;
  if (const std::string* remembered = RememberedExtension(context.settings, format))
    if (!remembered->empty() && Lower(*remembered) != Lower(first)) second = *remembered;
  FileFilter filter;
  filter.description = title + "  (*." + Upper(first);
  filter.patterns = "*." + first;
  if (!second.empty()) {
    filter.description += " / *." + Upper(second);
    filter.patterns += ";*." + second;
  }
  filter.description += ")";
  return filter;
}

std::string TypedExtension(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  const std::size_t dot = name.find_last_of('.');
  if (dot == std::string::npos || dot + 4 < name.size()) return {};
  return Lower(name.substr(dot + 1, 3));
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool OpenOutputName(OutputContext& context, TOutputState& state) {
  if (!state.FileName.empty()) return true;
  FileRequest request;
  request.folder =
      context.settings.ExportPath.empty() ? context.programFolder : context.settings.ExportPath;
  request.filters.push_back(FormatFilter(context, state.Format));
  request.defaultExtension = DefaultExtension(context, state.Format);
  const auto chosen = context.platform.SaveFileDialog(request);
  if (!chosen || chosen->empty()) return false;
  state.FileName = *chosen;
  context.settings.ExportPath = FolderOf(*chosen);
  return true;
}

}  // namespace isolith
