// The board model: six layers of one printed circuit, their aperture tables, the card, and the
// small state of which layer is shown and which item is under the mouse. One per program.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/board/Records.h"

namespace isolith {

inline constexpr int kLayers = 6;         // 0..3 circuit, 4 drills, 5 cutouts
inline constexpr int kCircuitLayers = 4;  // layers that hold pads and tracks
inline constexpr int kImportSlot = 4;     // fifth slot of pads, tracks and tables: imports only
inline constexpr int kDrillLayer = 4;
inline constexpr int kCutoutLayer = 5;
inline constexpr int kApertures = 100;

// Aperture shapes of `PadShape`.
enum PadShapeCode : uint8_t {
  kShapeCircle = 0,     // "Circle": X size is the diameter
  kShapeRectangle = 1,  // "Rectangle"
  kShapeObround = 2,    // "Obround"
  kShapeOctagon = 3,    // "Octagon": X size is the diameter
};

// A box on the card, in millimetres.
struct ViewBox {
  float left = 0, bottom = 0, right = 0, top = 0;
};

struct Board {
  Board();
  ~Board();
  Board(const Board&) = delete;
  Board& operator=(const Board&) = delete;

  // Per circuit layer, with a fifth slot of pads and tracks used only during an import.
  std::array<TPad*, 5> Pads{};
  std::array<TTrack*, 5> Tracks{};
  std::array<TPolygon*, kCircuitLayers> Contours{};
  std::array<TPolygon*, kCircuitLayers> Hatches{};
  std::array<std::string, kLayers> LayerName{};  // upper-case file name, at most 80 characters

  TDrill* Drills = nullptr;
  TCutout* Cutouts = nullptr;
  TPad* ImportPads = nullptr;  // filled by a reader, moved to its layer once accepted
  TTrack* ImportTracks = nullptr;
  TDrill* ImportDrills = nullptr;

  // Aperture tables: one per circuit layer (and the import slot), one drill table for the job.
  uint8_t PadShape[5][kApertures];
  float PadSizeX[5][kApertures];
  float PadSizeY[5][kApertures];
  float TrackWidth[5][kApertures];
  float DrillDiameter[kApertures];
  uint8_t ApertureFlags[kApertures];  // during an import: 0x01 shape, 0x02 size, 0x04 hole given

  // Job-wide values.
  float CardWidth = 100, CardHeight = 70, CardThickness = 1;
  float OriginX = 0, OriginY = 0;
  float CentreHole1X = -1, CentreHole1Y = -1, CentreHole2X = -1, CentreHole2Y = -1;
  int ActiveLayer = 0;
  int LayerCount = 0;
  int PendingCommand = 0;

  TPad* HoverPad = nullptr;
  TTrack* HoverTrack = nullptr;
  TDrill* HoverDrill = nullptr;
  TPolygon* HoverContour = nullptr;
  TXY* HoverContourSegment = nullptr;
  TXY* HoverContourVertex = nullptr;
  TCutout* HoverCutout = nullptr;
  int HoverCentreHole = 0;
  // Shown in the selection colour while a question or dialog is about them: the pads and the
  // tracks of one code on the active layer (-1: none), and one contour path.
  int HighlightPadCode = -1;
  int HighlightTrackCode = -1;
  const TPolygon* HighlightPath =
      nullptr;  // 0 none, 1 lower left, 3 lower right, 7 upper left, 9 upper right

  TPad* RefPad = nullptr;
  int RefLayer = 0;

  float ViewLeft = 0, ViewBottom = 0, ViewRight = 100, ViewTop = 70;
  std::array<ViewBox, 5> ZoomHistory{};
  int ZoomDepth = 0;
  bool Dragging = false;
  ViewBox Drag{};

  bool FinalRendering = false;
  bool Busy = false;
  bool StopImport = false;
};

// A centering-hole coordinate counts as set when it is at least -0.1.
inline bool IsSet(float coordinate) {
  return coordinate >= -0.1;
}

// True for layers 0..3.
inline bool IsCircuitLayer(int layer) {
  return layer >= 0 && layer < kCircuitLayers;
}

}  // namespace isolith
