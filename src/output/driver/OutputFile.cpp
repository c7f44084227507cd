#include "output/driver/OutputFile.h"

#include "output/driver/OutputName.h"
#include "output/formats/BuiltinFormats.h"
#include "output/formats/FileTypes.h"

namespace isolith {

OutputFile::OutputFile(OutputContext& context, int format, const std::string& path)
    : context_(context) {
  state.Format = format;
  state.FileName = path;
}

bool OutputFile::Open() {
  if (!OpenOutputName(context_, state)) return false;
  FormatWords* words = nullptr;
  if (state.Format == kFormatUser) {
    words = context_.userFormat;
  } else {
    FormatContext formatContext;
    formatContext.board = &context_.board;
    formatContext.programFolder = context_.programFolder;
    formatContext.now = context_.platform.Now();
    ownedWords_ = MakeFormatWords(state.Format, formatContext);
    words = ownedWords_.get();
  }
  if (!words) return false;
  if (!stream_.OpenFile(state.FileName)) return false;
  state.Stream = &stream_;
  const Settings& s = context_.settings;
  state.ClearHeight = s.ExportClearHeight;
  state.ZeroHeight = s.ExportZeroHeight;
  state.ClearSpeed = static_cast<float>(double(s.ExportClearSpeed) / 60);
  pen_ = std::make_unique<PenMachine>(PenMachine{state, *words, context_.tools, s.BoringDir});
  return true;
}

bool OutputFile::Close() {
  stream_.Write("\n");
  const bool ok = stream_.Commit();
  state.Stream = nullptr;
  return ok;
}

}  // namespace isolith
