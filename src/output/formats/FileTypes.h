// The program's file-type table: codes 0 to 34 with their titles and default extensions. The
// same codes choose the output format; only some of them are written by this program.
#pragma once

#include <string>

namespace isolith {

inline constexpr int kFileTypeCount = 35;

// Format codes that have words of their own here.
enum FormatCode : int {
  kFormatJobFile = 0,
  kFormatOxbel = 1,
  kFormatHpgl = 2,
  kFormatDxf = 4,
  kFormatNcp = 5,
  kFormatIso = 9,
  kFormatNum = 11,
  kFormatCamm3 = 19,
  kFormatEgx = 20,
  kFormatSml = 21,
  kFormatCbr = 22,
  kFormatExcellon = 23,
  kFormatGerberOut = 24,
  kFormatUser = 33,
};

struct TFileType {
  const char* title;
  const char* extension;
};

// The row of a code; codes outside 0..34 give the row of code 0.
const TFileType& FileTypeOf(int code);

// True for the codes whose machine words the pen machine speaks (1, 2, 4, 5, 9, 11, 19 to 22);
// code 33 is spoken by the user's format.
bool HasBuiltinWords(int code);

}  // namespace isolith
