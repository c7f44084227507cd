#include "output/export/BoardExport.h"

#include "output/driver/OutputStream.h"

namespace isolith {

bool WriteExportFile(const std::string& path, const std::string& text) {
  TOutputStream stream;
  if (!stream.OpenFile(path)) return false;
  stream.Write(text);
  return stream.Commit();
}

bool WriteExcellon(const Board& board, const std::string& path) {
  return WriteExportFile(path, ExcellonText(board));
}

bool WriteGerber(const Board& board, const std::string& path, int layer) {
  return WriteExportFile(path, GerberText(board, layer));
}

}  // namespace isolith
