// Naming the output file: the save dialog's filter of a format, the extension the user typed
// last for it, and the dialog itself when a walk starts without a name.
#pragma once

#include <string>

#include "core/platform/Platform.h"
#include "output/driver/OutputContext.h"
#include "output/driver/OutputState.h"

namespace isolith {

// The user's own extension of a format, as read for the filter and as written after a save.
// NUM reads the ISO one and writes its own; codes without one give null.
const std::string* RememberedExtension(const Settings& settings, int format);
std::string* RememberedExtensionToWrite(Settings& settings, int format);

// The default extension of a format; the user format's own for code 33.
std::string DefaultExtension(const OutputContext& context, int format);

// One filter row: the title (for code 33 "Post-processor" and the user format's title in double
// quotes), "  (*.EXT / *.EXT2)", and the patterns "*.ext;*.ext2"; the second extension is the
// remembered one, when there is one that differs from the default.
FileFilter FormatFilter(const OutputContext& context, int format);

// The extension the user typed in a chosen path: at most the last 3 characters after a point
// within the last 4 positions of the name, lower-cased; empty when there is none.
std::string TypedExtension(const std::string& path);

// The folder part of a path, with its final separator; empty for a bare name.
std::string FolderOf(const std::string& path);

// When `FileName` is empty, asks for one with the save dialog (the format's filter, the export
// folder or the program folder); the chosen folder becomes `ExportPath`. False on Cancel.
bool OpenOutputName(OutputContext& context, TOutputState& state);

}  // namespace isolith
