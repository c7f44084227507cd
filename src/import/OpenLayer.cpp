#include "import/OpenLayer.h"

#include "core/board/BoardOps.h"
#include "import/Dialects.h"

namespace isolith {

bool OpenLayerDialog(ImportContext& c, ExcellonChoices& choices, bool isAdditional, int layer) {
  Settings& s = c.settings;
  const bool drills = layer == kDrillLayer;
  FileRequest request;
  request.folder = s.ImportPath.empty() ? c.programFolder : s.ImportPath;
  request.filters = LayerFilters(s, drills);
  request.filterIndex =
      FilterRowOfFormat(drills ? s.DrillImportFormat : s.LayerImportFormat, drills);
  const std::optional<std::string> path = c.platform.OpenFileDialog(request);
  if (!path) return false;

  const int format = FormatOfFilterRow(request.filterIndex, drills);
  if (drills) {
    s.DrillImportFormat = format;
    OpenExcellonFile(c, choices, *path);
    return true;
  }
  s.LayerImportFormat = format;
  if (!isAdditional && layer == 0) ResetJob(c.board);
  OpenGerberFile(c, *path, layer);
  return true;
}

}  // namespace isolith
