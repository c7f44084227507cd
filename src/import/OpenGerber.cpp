#include "import/OpenGerber.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include "core/board/BoardOps.h"
#include "import/Dialects.h"
#include "import/GerberApertures.h"
#include "import/GerberReader.h"
#include "import/RecentFiles.h"
#include "import/WinTyponReader.h"
#include "import/modern/ModernGerberReader.h"

namespace isolith {

namespace {

constexpr const char* kIncompleteTitle = "Gerber import";
constexpr const char* kIncompleteText =
    "One or several plotter aperture definitions are missing in the file.\n"
    "Please use Gerber Scientific RS274-X extended format when possible.";
constexpr size_t kLayerNameChars = 80;

// The aperture tables as they stood before a read, put back when the file is refused: a reader
// clears and fills them as it goes.
struct TablesBefore {
  uint8_t PadShape[5][kApertures];
  float PadSizeX[5][kApertures];
  float PadSizeY[5][kApertures];
  float TrackWidth[5][kApertures];
  float DrillDiameter[kApertures];

  explicit TablesBefore(const Board& b) {
    std::memcpy(PadShape, b.PadShape, sizeof PadShape);
    std::memcpy(PadSizeX, b.PadSizeX, sizeof PadSizeX);
    std::memcpy(PadSizeY, b.PadSizeY, sizeof PadSizeY);
    std::memcpy(TrackWidth, b.TrackWidth, sizeof TrackWidth);
    std::memcpy(DrillDiameter, b.DrillDiameter, sizeof DrillDiameter);
  }
  void Restore(Board& b) const {
    std::memcpy(b.PadShape, PadShape, sizeof PadShape);
    std::memcpy(b.PadSizeX, PadSizeX, sizeof PadSizeX);
    std::memcpy(b.PadSizeY, PadSizeY, sizeof PadSizeY);
    std::memcpy(b.TrackWidth, TrackWidth, sizeof TrackWidth);
    std::memcpy(b.DrillDiameter, DrillDiameter, sizeof DrillDiameter);
  }
};

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

void RunResetHover(ImportContext& c) {
  if (c.steps.resetHover)
    c.steps.resetHover();
  else
    ClearHover(c.board);
}

void EmptyImportLists(Board& b) {
  FreePads(b, std::exchange(b.ImportPads, nullptr));
  FreeTracks(b, std::exchange(b.ImportTracks, nullptr));
  FreeDrills(b, std::exchange(b.ImportDrills, nullptr));
}

void ImportBox(const Board& b, float& xmin, float& ymin, float& xmax, float& ymax) {
  BoundingBox(b.ImportPads, b.ImportTracks, b.ImportDrills, nullptr, xmin, ymin, xmax, ymax, false);
}

// A box every later step can work with: no coordinate overflowed on the way in.
bool FiniteImport(const Board& b) {
  float xmin, ymin, xmax, ymax;
  ImportBox(b, xmin, ymin, xmax, ymax);
  return std::isfinite(xmin) && std::isfinite(ymin) && std::isfinite(xmax) && std::isfinite(ymax) &&
         std::isfinite(double(xmax) - xmin) && std::isfinite(double(ymax) - ymin);
}

void SwapXY(float& x, float& y) {
  std::swap(x, y);
}

// The lists of the job make way for the layer read; on layer 0 the whole job goes.
void ReplaceLayer(Board& b, int layer) {
  for (TPolygon* p : {b.Contours[layer], b.Hatches[layer]})
    for (; p; p = p->next)
      if (b.HoverContour == p) {
        b.HoverContour = nullptr;
        b.HoverContourSegment = nullptr;
        b.HoverContourVertex = nullptr;
      }
  FreePolygons(std::exchange(b.Contours[layer], nullptr));
  FreePolygons(std::exchange(b.Hatches[layer], nullptr));
  FreeCutouts(b, std::exchange(b.Cutouts, nullptr));
  if (layer == 0) {
    FreeDrills(b, std::exchange(b.Drills, nullptr));
    for (int l = 0; l < kCircuitLayers; ++l) {
      FreePads(b, std::exchange(b.Pads[l], nullptr));
      FreeTracks(b, std::exchange(b.Tracks[l], nullptr));
    }
    b.OriginX = 0;
    b.OriginY = 0;
  } else {
    FreePads(b, std::exchange(b.Pads[layer], nullptr));
    FreeTracks(b, std::exchange(b.Tracks[layer], nullptr));
  }
  b.ActiveLayer = layer;
  b.Pads[layer] = std::exchange(b.ImportPads, nullptr);
  b.Tracks[layer] = std::exchange(b.ImportTracks, nullptr);
  if (layer == 0)
    b.Drills = std::exchange(b.ImportDrills, nullptr);
  else
    FreeDrills(b, std::exchange(b.ImportDrills, nullptr));
}

// A layer whose content starts left of or below 2.54 mm moves up to it, the shift becoming the
// origin on that axis.
void KeepOffEdge(Board& b, int layer) {
  float xmin, ymin, xmax, ymax;
  LayerBoundingBox(b, layer, xmin, ymin, xmax, ymax);
  if (xmin > xmax) return;
  if (xmin < 2.54) {
    const float shift = static_cast<float>(2.54 - xmin);
    ShiftLists(b, shift, 0, false, false);
    b.OriginX = shift;
  }
  if (ymin < 2.54) {
    const float shift = static_cast<float>(2.54 - ymin);
    ShiftLists(b, 0, shift, false, false);
    b.OriginY = shift;
  }
}

// The end of every load of a file that could be opened.
void FinishLoad(ImportContext& c) {
  c.platform.SetBusyCursor(false);
  ResetView(c.board);
  RunResetHover(c);
  c.platform.Repaint(RepaintLevel::Full);
}

}  // namespace

void GuessImportSize(Board& b, double small, double large) {
  float xmin, ymin, xmax, ymax;
  ImportBox(b, xmin, ymin, xmax, ymax);
  if (xmin > xmax) return;
  auto width = [&] { return double(xmax) - xmin; };
  auto height = [&] { return double(ymax) - ymin; };
  // An overflowed box would never shrink: such lists are left to the caller's check.
  if (!std::isfinite(width()) || !std::isfinite(height())) return;
  while (large > 0 && width() >= large && height() >= large) {
    ScaleLists(b, b.ImportPads, b.ImportTracks, b.ImportDrills, nullptr, 0.1f, true, false, false,
               false, false);
    ImportBox(b, xmin, ymin, xmax, ymax);
  }
  while (width() <= small && height() <= small && !(xmin == xmax && ymin == ymax) &&
         std::isfinite(xmin) && std::isfinite(xmax) && std::isfinite(ymin) && std::isfinite(ymax)) {
    ScaleLists(b, b.ImportPads, b.ImportTracks, b.ImportDrills, nullptr, 10.0f, true, false, false,
               false, false);
    ImportBox(b, xmin, ymin, xmax, ymax);
  }
}

void FlipImport(Board& b, uint8_t flipXY) {
  const bool swap = flipXY & 4, flipX = flipXY & 1, flipY = flipXY & 2;
  if (swap)
    for (int l = 0; l < kCircuitLayers; ++l)
      for (int i = 0; i < kApertures; ++i) std::swap(b.PadSizeX[l][i], b.PadSizeY[l][i]);
  auto point = [&](float& x, float& y) {
    if (swap) SwapXY(x, y);
    if (flipX) x = b.CardWidth - x;
    if (flipY) y = b.CardHeight - y;
  };
  for (TPad* p = b.ImportPads; p; p = p->next) point(p->x, p->y);
  for (TTrack* t = b.ImportTracks; t; t = t->next) {
    point(t->x1, t->y1);
    point(t->x2, t->y2);
  }
  for (TDrill* d = b.ImportDrills; d; d = d->next) point(d->x, d->y);
}

bool PadsComplete(const Board& b, int layer) {
  const uint8_t both = kApertureShapeGiven | kApertureSizeGiven;
  for (const TPad* p = b.Pads[layer]; p; p = p->next)
    if ((b.ApertureFlags[p->code % kApertures] & both) != both) return false;
  return true;
}

bool TracksComplete(const Board& b, int layer) {
  const uint8_t either = kApertureShapeGiven | kApertureSizeGiven;
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next)
    if ((b.ApertureFlags[t->code % kApertures] & either) == 0) return false;
  return true;
}

LoadResult OpenGerberFile(ImportContext& c, const std::string& path, int layer) {
  Board& b = c.board;
  Settings& s = c.settings;
  Platform& platform = c.platform;
  if (layer < 0 || layer >= kCircuitLayers) return LoadResult::NotOpened;

  RunResetHover(c);
  b.PendingCommand = 0;
  const ImportPathParts parts = SplitImportPath(path);
  s.ImportPath = parts.folder;

  // Files are read where they stand.
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return LoadResult::NotOpened;
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return LoadResult::NotOpened;

  const int previousLayer = b.ActiveLayer;
  b.Busy = true;
  b.StopImport = false;
  EmptyImportLists(b);
  std::fill(std::begin(b.ApertureFlags), std::end(b.ApertureFlags), uint8_t{0});
  platform.SetBusyCursor(true);
  platform.PumpMessages(250);
  const TablesBefore tables(b);

  const int formatId = s.LayerImportFormat;
  const int row = ReaderRow(formatId);
  const TImportFormat format = s.ImportFormat[row];
  const bool winTypon = row == kRowWinTypon;
  if (winTypon) {
    layer = 0;
    ReadWinTypon(file, format.ScaleIn, b);
  } else if (s.ModernImport) {
    ReadModernGerber(file, format, layer, s.ArcTolerance, b);
  } else {
    ReadGerber(file, format, layer, b);
  }
  file.close();
  RememberExtension(s, row, parts.extension);

  const double small = 10.0 * format.ScaleIn;
  const double large = (winTypon ? 1000.0 : 500.0) * format.ScaleIn;
  FlipImport(b, format.FlipXY);
  b.Busy = false;
  b.FinalRendering = false;

  if ((!b.ImportPads && !b.ImportTracks) || !FiniteImport(b)) {
    EmptyImportLists(b);
    tables.Restore(b);
    platform.ShowMessage("Error", kLoadError, MessageIcon::Error);
    FinishLoad(c);
    return LoadResult::Refused;
  }

  const std::string name = Upper(parts.name).substr(0, kLayerNameChars);
  b.LayerName[layer] = name;
  if (layer == 0 && b.ImportDrills) b.LayerName[kDrillLayer] = name;

  GuessImportSize(b, small, large);
  ReplaceLayer(b, layer);
  KeepOffEdge(b, layer);
  if (winTypon) SplitWinTyponSides(b);
  if (PadOverlap(b, layer) < 50) AlignLayer(b, layer);

  SetCardFromContent(b, c.steps.cardThickness ? c.steps.cardThickness() : b.CardThickness);
  ResetView(b);
  if (s.AutoReframe && c.steps.reframe)
    c.steps.reframe();
  else
    platform.Repaint(RepaintLevel::View);

  const bool padsComplete = PadsComplete(b, layer);
  const bool tracksComplete = TracksComplete(b, layer);
  if (!padsComplete || !tracksComplete) {
    platform.ShowMessage(kIncompleteTitle, kIncompleteText, MessageIcon::Warning);
    if (!padsComplete && c.steps.modifyPads) c.steps.modifyPads();
    if (!tracksComplete && c.steps.modifyTracks) c.steps.modifyTracks();
  } else if (layer == 0) {
    float xmin, ymin, xmax, ymax;
    LayerBoundingBox(b, layer, xmin, ymin, xmax, ymax);
    const bool small =
        double(xmax) - xmin <= b.CardWidth / 2.0 || double(ymax) - ymin <= b.CardHeight / 2.0;
    if (small && c.steps.dimensions) c.steps.dimensions();
  }

  CompactLayers(b);
  if (layer == 0) AddRecentFile(s, parts.folder, parts.name, formatId);
  if (c.steps.saveSettings) c.steps.saveSettings();
  platform.PumpMessages(100);
  RunResetHover(c);
  platform.Repaint(RepaintLevel::Full);

  if (b.Tracks[layer]) {
    if (s.DetectGndPlanes && c.steps.detectCopperPlanes) c.steps.detectCopperPlanes(layer);
    if (s.DetectCutOut && c.steps.detectCardContour && c.steps.detectCardContour(layer))
      b.ActiveLayer = previousLayer;
  }

  if (c.steps.rebuildDrillTable) c.steps.rebuildDrillTable();
  b.CentreHole1X = b.CentreHole1Y = b.CentreHole2X = b.CentreHole2Y = -1;

  FinishLoad(c);
  return LoadResult::Loaded;
}

LoadResult OpenRecent(ImportContext& c, int index) {
  Settings& s = c.settings;
  if (index < 0 || index >= kRecentFiles || s.RecentName[index].empty())
    return LoadResult::NotOpened;
  s.LayerImportFormat = s.RecentFormat[index];
  return OpenGerberFile(c, s.RecentPath[index] + s.RecentName[index], 0);
}

}  // namespace isolith
