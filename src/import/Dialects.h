// The import dialects: what each layout program's files are called and how they are read, the
// filter lists of the open dialogs built from them, and the history of the user's own
// extensions. The scales, mirror bits and user extensions of each row live in the settings
// (Settings::ImportFormat); this table holds what never changes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

// The fixed part of one row of the dialect table.
struct DialectInfo {
  int id;                     // format id; Excellon's row carries its first kind
  const char* prefix;         // settings key prefix, e.g. "Grb"
  const char* filterText;     // the text of its row in the open dialog
  const char* upperName;      // its name in capitals, in the title of the import scales dialog
  const char* filterExt[2];   // default extensions shown in the filter ("" for none)
  const char* historyExt[2];  // the fixed pair an extension must differ from to be remembered
};

// The row of the table (kRowGerber .. kRowExcellon).
const DialectInfo& Dialect(int row);

// The row that reads a layer file of format `formatId`: the format's own row, and the Gerber
// row for 0 ("All files") and for any id the table does not know.
int ReaderRow(int formatId);

// One row of an open dialog's filter list, made as the program always made it: the text, two
// blanks, the extensions in capitals as "(*.A / *.B)", and the patterns as given, "*.a;*.b".
// Empty extensions are left out.
FileFilter MakeFilter(std::string_view text, std::string_view ext1, std::string_view ext2,
                      std::string_view ext3, std::string_view ext4);

// The same row appended to a filter text in the classic "description|patterns|" form.
void AddFilter(std::string& buffer, std::string_view text, std::string_view ext1,
               std::string_view ext2, std::string_view ext3, std::string_view ext4);

// The filter list of the open dialog for a layer: "All files" first, then for the drill layer
// the two Excellon kinds, for any other layer the Gerber dialects and WinTypon, in table order,
// each with its two default extensions and the row's two user extensions.
std::vector<FileFilter> LayerFilters(const Settings& settings, bool drillLayer);

// The 1-based filter row that the dialog preselects for a format: Gerber 2, Ares 3 and so on to
// WinTypon 10 (for the drill layer 17 is 2 and 18 is 3); 1, "All files", for any other value.
int FilterRowOfFormat(int formatId, bool drillLayer);

// The format a chosen filter row stands for: 0 for "All files" on a circuit layer; for the drill
// layer 18 for row 3 and 17 for any other row.
int FormatOfFilterRow(int filterRow, bool drillLayer);

// The parts of a path as the readers keep them: the folder with its final separator, the file
// name, and the extension, which is the last three characters after the final ".".
struct ImportPathParts {
  std::string folder;
  std::string name;
  std::string extension;
};
ImportPathParts SplitImportPath(std::string_view path);

// After a read: an extension that is not empty and is neither of the row's fixed pair (compared
// without case) goes first in the row's history, in capitals and at most 3 characters. The
// history shifts over three places, so the row's second entry lands in the first entry of the
// next row: that overwrite of the neighbour is how the history has always behaved. For the last
// row the third place does not exist and the entry is dropped.
void RememberExtension(Settings& settings, int row, std::string_view extension);

}  // namespace isolith
