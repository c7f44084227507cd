// The application settings: every value that "Isolith.ini" keeps between runs, with its start
// value, and the functions that read, write and override them.
//
// One `Settings` record lives for the whole run, owned by the application object; any module
// reads its members directly. A module that changes a value calls `WriteSettings` at once, so
// the file mirrors memory. The aperture tables of the first circuit layer are written into the
// same file but live in the board model; they reach the reader and the writer through
// `SettingsApertures` (see `LayerZeroApertures`).
//
// Keys that the file gives per dialect or per output format live in rows or in fixed arrays:
//   "GrbScaleIn"         -> ImportFormat[kRowGerber].ScaleIn   (prefixes Grb Ars Eag Orc Osm Pds
//                                                              Wiz Ptl Wty Exl, in row order)
//   "MultiSequence3"     -> MultiSequence[2]                   (likewise MultiMirror, DrillingLib)
//   "RecentName2"        -> RecentName[1]                      (one key per filled slot)
// Every other key is a member of the same name.
//
// Overrides (`isolith-cli --set Key=Value`): `ApplySettingOverride` reads one pair exactly as the
// file reader reads it. To keep overrides out of the file, the caller holds them in a
// `SettingsOverrides` object (SettingsOverrides.h): it re-applies them after every read and hands
// the writer the record with the overridden values put back to what the file held.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/board/Board.h"

namespace isolith {

inline constexpr const char* kSettingsBaseName = "Isolith";
inline constexpr const char* kSettingsExtension = "ini";
inline constexpr int kRecentFiles = 5;
inline constexpr int kSequenceSlots = 8;  // MultiSequence1..8, MultiMirror1..8, DrillingLib1..8

// Import format ids (the dialect of a layer or drill file); shared with the suite's names.
inline constexpr int kFormatExcellon1 = 17;  // "Excellon-1": no trailing zeros
inline constexpr int kFormatExcellon2 = 18;  // "Excellon-2": basic co-ordinates
inline constexpr int kFormatGerber = 19;
inline constexpr int kFormatAres = 29;
inline constexpr int kFormatEagle = 30;
inline constexpr int kFormatOrcad = 31;
inline constexpr int kFormatOsmond = 32;
inline constexpr int kFormatPads = 33;
inline constexpr int kFormatWizard = 34;
inline constexpr int kFormatProtel = 35;
inline constexpr int kFormatWinTypon = 36;

// Rows of the dialect table, in the order of the table and of the settings file.
enum ImportRow : int {
  kRowGerber = 0,  // "Grb"
  kRowAres,        // "Ars"
  kRowEagle,       // "Eag"
  kRowOrcad,       // "Orc"
  kRowOsmond,      // "Osm"
  kRowPads,        // "Pds"
  kRowWizard,      // "Wiz"
  kRowProtel,      // "Ptl"
  kRowWinTypon,    // "Wty"
  kRowExcellon,    // "Exl": no aperture scale key
  kImportRows
};

// Output format codes that the settings name (the whole table belongs to the output formats).
inline constexpr int kOutputJobFile = 0;         // written as "TVN"
inline constexpr int kOutputPostProcessor = 33;  // written as "POST-PROCESSOR"
inline constexpr int kOutputFormats = 35;        // codes 0..34

// Length and speed unit indices.
inline constexpr int kLengthMm = 0, kLengthInch = 1;
inline constexpr int kSpeedMPerMin = 0, kSpeedMmPerMin = 1, kSpeedMmPerS = 2, kSpeedInchPerMin = 3,
                     kSpeedInchPerS = 4;
// Their texts, by index: the file's values and the labels of the dialogs.
inline constexpr const char* kLengthUnitLabels[] = {"mm", "\""};
inline constexpr const char* kSpeedUnitLabels[] = {"m/min", "mm/min", "mm/s", "\"/min", "\"/s"};

// The colour value that means "automatic".
inline constexpr uint32_t kColourAuto = 1;

// One dialect: its id, three scales, mirror bits and the user's own two extensions.
struct TImportFormat {
  int32_t id = kFormatGerber;
  float ScaleIn = 1;                       // coordinates
  float AperScaleIn = 1;                   // aperture sizes
  float DrillScaleIn = 1;                  // hole sizes
  uint8_t FlipXY = 0;                      // 1 flip X, 2 flip Y, 4 swap X and Y
  std::array<std::string, 2> Extension{};  // at most 3 characters each; empty when unused
};

// The dialect table as it stands before any file is read.
inline std::array<TImportFormat, kImportRows> DefaultImportFormats() {
  std::array<TImportFormat, kImportRows> rows{};
  const int32_t ids[kImportRows] = {kFormatGerber,   kFormatAres,     kFormatEagle,  kFormatOrcad,
                                    kFormatOsmond,   kFormatPads,     kFormatWizard, kFormatProtel,
                                    kFormatWinTypon, kFormatExcellon1};
  for (int row = 0; row < kImportRows; ++row) rows[row].id = ids[row];
  rows[kRowOrcad].FlipXY = 6;
  rows[kRowWinTypon].FlipXY = 2;
  rows[kRowExcellon].ScaleIn = 0.1f;
  return rows;
}

// The longest port name the settings file keeps.
inline constexpr std::size_t kMachinePortLength = 10;

struct Settings {
  // [System] Written for information; only SysNumColors is read back. The host facts are
  // filled by `FillHostFacts` at start-up.
  std::string OpSystem = "Unknown 0.0";
  std::string Processor = "Unknown";
  std::string PhysMemory = "0 MB";
  int ScreenWidth = 0;   // 0: no screen known; the frame keys are then not limited above
  int ScreenHeight = 0;  // "Resolution" is written as "%dx%d" of these
  int32_t SysNumColors = 65536;

  // [Application]
  int32_t FrameWinX = 0, FrameWinY = 0, FrameWinW = 0, FrameWinH = 0;
  uint8_t ZapSound = 6;   // the refusal beep's sound
  uint8_t BeepSound = 2;  // kept, written and read; nothing else uses it
  bool ForceMouseWheel = true;
  bool ShowGrid = true;
  std::string InstallPath;       // written only: the program folder, with its final separator
  int LengthUnit = kLengthMm;    // index
  std::string LengthUnitLabel;   // "mm" or "\"": the key's text, empty until a unit is chosen
  int SpeedUnit = kSpeedMmPerS;  // index
  std::string SpeedUnitLabel;    // "m/min", "mm/min", "mm/s", "\"/min", "\"/s", or empty
  uint8_t TopBarStyle = 0;       // never loaded from the file: its key feeds ZapSound

  // [Colours] 0x00BBGGRR, 1 = automatic.
  uint32_t ClientBackground = kColourAuto;
  uint32_t ClientBorder = 0x000000;
  uint32_t BoardBackground = 0x008000;
  uint32_t BoardBorder = 0x000000;
  uint32_t BoardThinLines = 0x000000;
  uint32_t BoardGrid = 0xFFFFFF;
  uint32_t BoardTrace1 = 0x80FF80;
  uint32_t BoardTrace2 = 0x00A000;
  uint32_t BoardTrace3 = 0x008080;
  uint32_t ZoomSelect = 0xFFFF00;
  uint32_t DisableSelect = 0xFF0000;
  uint32_t BoardSelect = 0x0000FF;
  uint32_t BoardHilight = 0x00FFFF;
  uint32_t BoardDrill = 0x000000;
  uint32_t BoardContour = 0x00FFFF;
  uint32_t BoardHatch = 0xFF0000;
  uint32_t BoardOrigin = 0xFFFFFF;
  uint32_t BoardRefPad = 0xFF00FF;
  uint32_t BoardFinalFg = 0x008080;
  uint32_t BoardFinalBg = 0x80B0FF;
  uint32_t BoardFinalHole = 0x000000;
  uint32_t BoardConnect1 = 0x0000FF;
  uint32_t BoardConnect2 = 0x000080;

  // [Imports]
  std::string ImportPath;  // folder of the last file read; the program folder when empty
  int32_t LayerImportFormat = kFormatGerber;
  int32_t DrillImportFormat = kFormatExcellon1;
  std::array<TImportFormat, kImportRows> ImportFormat = DefaultImportFormats();
  bool ExlRelative = false;
  bool ExlMetric = false;
  bool ExlDigitSet = false;
  float ExlDigits = 3.2f;
  // Recent files, newest first; a slot is filled when its name is not empty.
  std::array<std::string, kRecentFiles> RecentPath{};
  std::array<std::string, kRecentFiles> RecentName{};
  std::array<int32_t, kRecentFiles> RecentFormat{};  // 0 in a cleared slot
  bool AutoReframe = true;
  bool DetectGndPlanes = true;
  bool DetectCutOut = true;
  // Reading of today's files: filled regions, arcs, aperture macros, polarity, step and repeat,
  // self-describing drill files. Off, the readers keep to the classic rules.
  bool ModernImport = false;
  float ArcTolerance = 0.01f;  // mm between an arc and the chords that stand for it

  // [Exports]
  std::string ExportPath;
  int32_t ExportFormat = kOutputJobFile;
  bool ExportArcs = true, ExportInit = true, ExportZCoords = true, ExportSpeeds = true;
  float ExportClearHeight = 2;
  float ExportZeroHeight = 0;
  uint16_t ExportClearSpeed = 3000;
  std::string PltExtension = "hpg";
  float PltScaleOut = 1;  // read, never written
  std::string DxfExtension, NcpExtension, IsoExtension,
      NumExtension = "num", Cm3Extension, EgxExtension, SmlExtension, CbrExtension, PprExtension;
  float DxfScaleOut = 1, NcpScaleOut = 1, IsoScaleOut = 1, NumScaleOut = 1, Cm3ScaleOut = 1,
        EgxScaleOut = 1, SmlScaleOut = 1, CbrScaleOut = 1, PprScaleOut = 1;
  bool DxfFlipZOut = false, NcpFlipZOut = false, IsoFlipZOut = false, NumFlipZOut = false,
       Cm3FlipZOut = false, EgxFlipZOut = false, SmlFlipZOut = false, CbrFlipZOut = false,
       PprFlipZOut = false;

  // [Toolset] Tools are held as an index 0..49, -1 for none (the file holds index + 1).
  int32_t SingleSequence = 2;
  int32_t RunChain = 0;
  std::array<int32_t, kSequenceSlots> MultiSequence{1, 2, 3, 4, 5, 10, 14, 18};
  std::array<int32_t, kSequenceSlots> MultiMirror{};
  bool FastCalcul = false;
  // Threads of the contour calculation where the order of the work cannot change its result:
  // 2 shares the removal tests between two cores, 1 keeps them on one.
  int32_t CalculationThreads = 2;
  int32_t MillingTool = -1;
  float MillingDepth = 0.25f;
  float MillingMargin = 0;
  uint16_t MillingSpeed = 600;  // mm/min
  int32_t MillingDir = 1;
  int32_t MillingNb1 = 1;
  int32_t MillingNb2 = 0;
  bool MillingOptim = true;
  int32_t HatchingTool = -1;
  float HatchingDepth = 0.25f;
  float HatchingMargin = 0;
  uint16_t HatchingSpeed = 600;
  bool HatchingLink = true;
  int32_t CuttingTool = -1;
  float CuttingDepth = 1;
  int32_t CuttingDir = -1;
  uint16_t CuttingSpeed = 300;
  float CuttingTabs = 2;
  int32_t PlottingTool = -1;
  float PlottingDepth = 1;
  int32_t DrillingMode = 0;
  int32_t DrillingTool = -1;
  std::array<int32_t, kSequenceSlots> DrillingLib{-1, -1, -1, -1, -1, -1, -1, -1};
  float DrillingDepth = 1;
  bool DrillingOptim = true;
  bool BoringDrills = true;
  float BoringThreshold = 1;
  int32_t BoringDir = -1;  // written, never read
  uint16_t BoringSpeed = 300;

  // [Machine]
  int32_t MachineFormat = 9;
  int32_t MachineOutput = 0;
  bool MachineSetSeq = true, MachineArcs = true, MachineOutZ = true, MachineOutV = true;
  float MachineScaleXY = 1;
  float MachineScaleZ = 1, MachineScaleVxy = 1, MachineScaleVz = 1;
  std::string MachinePrn;            // at most 100 characters
  std::string MachineRun;            // at most 255 characters
  std::string MachineFile;           // at most 255 characters
  std::string MachinePort = "LPT1";  // at most kMachinePortLength characters
  uint32_t MachineBaudrate = 9600;
  uint8_t MachineParity = 0;
  uint8_t MachineWordLength = 8;
  uint8_t MachineStopBits = 1;
  bool MachineCTS = false, MachineDSR = false;
  bool MachineXoff = true;
  uint8_t MachineRTS = 0, MachineDTR = 0;
  uint8_t MachineEol = 1;
};

// The aperture tables kept in section "Apertures": those of the first circuit layer and the
// job's drill table, 100 entries each (key number n is entry n - 1).
struct SettingsApertures {
  std::span<uint8_t, kApertures> PadShape;
  std::span<float, kApertures> PadSizeX;
  std::span<float, kApertures> PadSizeY;
  std::span<float, kApertures> TrackWidth;
  std::span<float, kApertures> DrillDiameter;
};

inline SettingsApertures LayerZeroApertures(Board& board) {
  return {board.PadShape[0], board.PadSizeX[0], board.PadSizeY[0], board.TrackWidth[0],
          board.DrillDiameter};
}

// The row of a dialect id: 19 and 0 (no dialect chosen) give Gerber, 29..36 their rows, 17 and
// 18 Excellon; -1 for any other id.
int ImportRowOfFormat(int formatId);

// "directory" + "base" + ".ini"; a separator is put between when the directory lacks one.
std::string SettingsFilePath(const std::string& directory, const std::string& baseName);

// Fills the informational host facts (OpSystem, Processor, PhysMemory, screen size) and
// InstallPath. A screen size of 0 means none is known (headless).
void FillHostFacts(Settings& settings, const std::string& installPath, int screenWidth,
                   int screenHeight);

// Reads the file over the values in memory. False when it cannot be opened: nothing changes.
// A damaged file is read line by line with each key's fallback and clamp.
bool ReadSettings(const std::string& directory, const std::string& baseName, Settings& settings,
                  const SettingsApertures& apertures);

// The same reading over text already in memory (what ReadSettings does after opening).
void ReadSettingsText(std::string_view text, Settings& settings,
                      const SettingsApertures& apertures);

// The complete file text as WriteSettings writes it, byte for byte (CR LF line ends).
std::string FormatSettings(const Settings& settings, const SettingsApertures& apertures);

// Writes the whole file: a temporary file beside it, renamed over it once complete. False when
// it could not be written; the old file then stands as it was.
bool WriteSettings(const std::string& directory, const std::string& baseName,
                   const Settings& settings, const SettingsApertures& apertures);

// Start-up: reads the file, gives ImportPath the install folder when it is empty, and writes
// the file at once so that a first run creates it. Returns what ReadSettings returned.
bool StartSettings(const std::string& directory, const std::string& baseName, Settings& settings,
                   const SettingsApertures& apertures);

// Reads one Key=Value as the file reader reads that key (case of the key ignored, fallbacks,
// clamps and quirks kept), with one addition: a number that is exactly zero ("0", "0.0") stands
// for the value 0 in memory, which the file shows as the key's zero text, so the run takes what
// that text reads back as ("MillingSpeed=0" gives 6, "GrbAperScaleIn=0" gives 0.01). False with
// a one-line `error` for a key the reader does not know, a key that is only written, or an
// aperture key (those live in the board model).
bool ApplySettingOverride(Settings& settings, std::string_view key, std::string_view value,
                          std::string& error);

}  // namespace isolith
