#include "output/ExportDialogs.h"

#include <cmath>

#include "output/driver/DrillTools.h"
#include "output/driver/PenMachine.h"
#include "output/driver/SectionWalk.h"
#include "output/formats/FileTypes.h"
#include "output/formats/FormatScales.h"
#include "output/formats/Writers.h"
#include "params/FieldChecks.h"
#include "params/ToolForms.h"

namespace isolith {

namespace {

// Limits of the clearance fields.
constexpr double kMinScale = 0.001, kMaxScale = 1000;
constexpr double kMaxClearHeight = 100;                       // mm
constexpr double kMinClearSpeed = 6, kMaxClearSpeed = 65535;  // mm/min

bool* FlipZSetting(Settings& s, int format) {
  switch (format) {
    case kFormatDxf:
      return &s.DxfFlipZOut;
    case kFormatNcp:
      return &s.NcpFlipZOut;
    case kFormatIso:
      return &s.IsoFlipZOut;
    case kFormatNum:
      return &s.NumFlipZOut;
    case kFormatCamm3:
      return &s.Cm3FlipZOut;
    case kFormatEgx:
      return &s.EgxFlipZOut;
    case kFormatSml:
      return &s.SmlFlipZOut;
    case kFormatCbr:
      return &s.CbrFlipZOut;
    case kFormatUser:
      return &s.PprFlipZOut;
    default:
      return nullptr;
  }
}

bool HasPaths(const TPolygon* list) {
  return list != nullptr;
}

}  // namespace

// ---- Export ----

TDialogExport::TDialogExport(Settings& settings, ExportChoices& choices, int format,
                             std::string name, char separator)
    : fileName(std::move(name)),
      clearanceEnabled(format != kFormatHpgl),
      arcs(settings.ExportArcs),
      includeHeader(settings.ExportInit),
      zCoordinates(settings.ExportZCoords),
      flipZ(false),
      speeds(settings.ExportSpeeds),
      editInViewer(choices.editInViewer),
      settings_(settings),
      choices_(choices),
      format_(format) {
  scale = FormatFieldFloat(ScaleOutOf(settings, format), 3, separator);
  clearHeight = FormatFieldFloat(settings.ExportClearHeight, 3, separator);
  clearSpeed = FormatSpeedField(settings.ExportClearSpeed, settings.SpeedUnit, separator);
  if (const bool* flip = FlipZSetting(settings, format)) flipZ = *flip;
}

bool TDialogExport::Accept(Platform& platform) {
  float scaleValue = ScaleOutOf(settings_, format_);
  if (!CheckFloatField(platform, "Scale", scale, "", scaleValue, kMinScale, kMaxScale)) {
    focus = kScale;
    return false;
  }
  float height = settings_.ExportClearHeight;
  float speed = static_cast<float>(SpeedToUnit(settings_.ExportClearSpeed, settings_.SpeedUnit));
  if (clearanceEnabled) {
    if (!CheckFloatField(platform, "Tool clearance height", clearHeight, settings_.LengthUnitLabel,
                         height, 0, kMaxClearHeight)) {
      focus = kClearHeight;
      return false;
    }
    if (!CheckFloatField(platform, "Tool clearance speed", clearSpeed, settings_.SpeedUnitLabel,
                         speed, SpeedToUnit(kMinClearSpeed, settings_.SpeedUnit),
                         SpeedToUnit(kMaxClearSpeed, settings_.SpeedUnit))) {
      focus = kClearSpeed;
      return false;
    }
  }
  if (float* s = ScaleOutSetting(settings_, format_)) *s = scaleValue;
  if (clearanceEnabled) {
    settings_.ExportClearHeight = height;
    double mmPerMin = std::round(SpeedFromUnit(speed, settings_.SpeedUnit));
    if (mmPerMin < kMinClearSpeed) mmPerMin = kMinClearSpeed;
    if (mmPerMin > kMaxClearSpeed) mmPerMin = kMaxClearSpeed;
    settings_.ExportClearSpeed = static_cast<uint16_t>(mmPerMin);
  }
  settings_.ExportArcs = arcs;
  settings_.ExportInit = includeHeader;
  settings_.ExportZCoords = zCoordinates;
  if (bool* flip = FlipZSetting(settings_, format_)) *flip = flipZ;
  settings_.ExportSpeeds = speeds;
  choices_.editInViewer = editInViewer;
  return true;
}

// ---- File export ----

TDialogExpMill::TDialogExpMill(const Board& board, Settings& settings, ExportChoices& choices)
    : hasContours_(IsCircuitLayer(board.ActiveLayer) && board.Contours[board.ActiveLayer]),
      settings_(settings),
      choices_(choices) {
  const bool hasDrills = board.Drills != nullptr;
  if (hasContours_) offered.push_back(0);
  if (hasDrills) offered.push_back(1);
  if (hasContours_ && hasDrills) {
    offered.push_back(2);
    offered.push_back(3);
  } else {
    settings_.SingleSequence = 0;
  }
  sequence = settings_.SingleSequence;
  cutoutEnabled = board.Cutouts != nullptr;
  cardContour = cutoutEnabled;
  flipHorizontally = choices.flipHorizontally;
}

bool TDialogExpMill::Accept(Platform&) {
  int chosen = sequence;
  bool known = false;
  for (int v : offered) known = known || v == chosen;
  if (!known) chosen = offered.empty() ? 0 : offered.front();
  settings_.SingleSequence = hasContours_ ? chosen : 1;
  choices_.cardContour = cutoutEnabled && cardContour;
  choices_.flipHorizontally = flipHorizontally;
  return true;
}

// ---- Final output ----

std::vector<TSectionChoice> TDialogMillLayers::Choices(const OutputContext& context) {
  const Board& board = context.board;
  const Settings& settings = context.settings;
  std::vector<TSectionChoice> choices;
  if (IsSet(board.CentreHole1X)) choices.push_back({"Centering holes", kSectionCentreHoles});
  if (board.Drills) {
    if (settings.DrillingMode < 2) {
      choices.push_back({"Drilling (single tool)", kSectionDrillFirst});
    } else {
      for (int i = 0; i < kOutputDrillTools; ++i) {
        const int tool = context.drillList.outputTools[i];
        if (tool < 0) continue;
        choices.push_back({"Drilling (Tool #" + std::to_string(tool + 1) + " \xC3\xB8 " +
                               Trimmed(ToolAt(context.tools, tool).Diameter, 4),
                           kSectionDrillFirst + i});
      }
    }
  }
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    if (HasPaths(board.Contours[layer]))
      choices.push_back(
          {"Engraving layer #" + std::to_string(layer + 1), kSectionEngraveFirst + layer});
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    if (HasPaths(board.Hatches[layer]))
      choices.push_back(
          {"Hatching layer #" + std::to_string(layer + 1), kSectionHatchFirst + layer});
  if (board.Cutouts) choices.push_back({"Cutting out", kSectionCutting});
  return choices;
}

TDialogMillLayers::TDialogMillLayers(OutputContext& context) : context_(context) {
  const Settings& settings = context.settings;
  const Board& board = context.board;
  title = context.productVariant == 2   ? "Transfer to NC-CAD"
          : context.productVariant == 3 ? "Output"
                                        : "Final output";
  const bool rebuilt =
      RefreshOutputDrillTools(context.drillList, context.tools, settings.DrillingMode);
  for (int i = 0; i < kSequenceSlots; ++i) {
    Row& row = rows[i];
    row.label = (context.productVariant == kStandAloneVariant ? "Section #" : "Layer #") +
                std::to_string(i + 1);
    row.code = settings.MultiSequence[i];
    row.ticked = row.code != kSectionNone;
    row.mirror = settings.MultiMirror[i] != 0;
    row.choices = Choices(context);
  }
  const bool layerZeroEmpty = !board.Pads[0] && !board.Tracks[0];
  if (layerZeroEmpty) {
    for (Row& row : rows) row.mirror = false;
  } else if (rebuilt) {
    // The back of a two-sided board is milled mirrored, and so is the card cut from it.
    for (int i = 0; i + 1 < kSequenceSlots; ++i) {
      if (rows[i].code == kSectionEngraveFirst && rows[i + 1].code == kSectionNone) {
        rows[i + 1].code = kSectionEngraveFirst + 1;
        rows[i + 1].ticked = true;
        rows[i + 1].mirror = !rows[i].mirror;
      }
    }
    for (Row& row : rows)
      if (row.code == kSectionCutting) row.mirror = true;
  }
  // A ticked row whose section is not among the choices still goes to the walk: with a single
  // drilling tool every drilling section drills all the holes again, and any other such section
  // has nothing to write. The row says which, rather than showing an empty choice.
  for (Row& row : rows) {
    if (!row.ticked || row.code == kSectionNone) continue;
    bool offered = false;
    for (const TSectionChoice& c : row.choices) offered = offered || c.code == row.code;
    if (offered) continue;
    const bool drillsAgain = row.code >= kSectionDrillFirst && row.code <= kSectionDrillLast &&
                             board.Drills && settings.DrillingMode < 2;
    row.choices.push_back(
        {drillsAgain ? "Drilling (single tool), all holes again" : "(nothing to output)",
         row.code});
  }
}

bool TDialogMillLayers::Accept(Platform& platform) {
  for (int i = 0; i < kSequenceSlots; ++i) {
    if (!rows[i].ticked) continue;
    for (int j = 0; j < i; ++j) {
      if (rows[j].ticked && rows[j].code == rows[i].code) {
        platform.Beep(context_.settings.ZapSound);
        focusRow = i;
        clashRow = j;
        return false;
      }
    }
  }
  for (int i = 0; i < kSequenceSlots; ++i) {
    context_.settings.MultiSequence[i] = rows[i].ticked ? rows[i].code : kSectionNone;
    context_.settings.MultiMirror[i] = rows[i].mirror ? 1 : 0;
  }
  return true;
}

std::string TDialogMillLayers::Refusal() const {
  if (focusRow < 0 || clashRow < 0) return {};
  const Row& row = rows[focusRow];
  std::string choice = std::to_string(row.code);
  for (const TSectionChoice& c : row.choices)
    if (c.code == row.code) choice = c.label;
  return "\"" + title + "\": " + rows[clashRow].label + " and " + row.label + " both choose \"" +
         choice + "\"";
}

}  // namespace isolith
