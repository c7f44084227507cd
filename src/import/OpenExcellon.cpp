#include "import/OpenExcellon.h"

#include <cmath>
#include <cstdio>
#include <fstream>

#include "core/board/BoardOps.h"
#include "edit/Transforms.h"
#include "import/Dialects.h"
#include "import/DrillOrientation.h"
#include "import/ExcellonReader.h"
#include "import/JobSnapshot.h"
#include "import/modern/ModernExcellon.h"

namespace isolith {

namespace {

constexpr const char* kReadingStatus = "Reading the drill file...";
constexpr size_t kLayerNameChars = 80;
// The size guess moves by factors of ten; a float's whole range is crossed in fewer steps.
constexpr int kMaxSizeSteps = 64;

std::string Upper(std::string_view text) {
  std::string s(text);
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

void DrillBox(const Board& b, float& xmin, float& ymin, float& xmax, float& ymax) {
  BoundingBox(nullptr, nullptr, b.ImportDrills, nullptr, xmin, ymin, xmax, ymax, false);
}

// Drill files often leave the unit or a digit out: a layer twice the card or more is ten times
// too big, one within a fifth of the card ten times too small. False when the holes end up
// where no float can describe them.
bool GuessSize(Board& b) {
  float xmin, ymin, xmax, ymax;
  DrillBox(b, xmin, ymin, xmax, ymax);
  auto width = [&] { return double(xmax) - xmin; };
  auto height = [&] { return double(ymax) - ymin; };
  for (int step = 0;
       step < kMaxSizeSteps && (width() >= 2.0 * b.CardWidth || height() >= 2.0 * b.CardHeight);
       ++step) {
    ScaleLists(b, nullptr, nullptr, b.ImportDrills, nullptr, 0.1f, true, false, false, false,
               false);
    DrillBox(b, xmin, ymin, xmax, ymax);
  }
  for (int step = 0; step < kMaxSizeSteps && width() <= 0.2 * b.CardWidth &&
                     height() <= 0.2 * b.CardHeight && !(xmin == xmax && ymin == ymax);
       ++step) {
    ScaleLists(b, nullptr, nullptr, b.ImportDrills, nullptr, 10.0f, true, false, false, false,
               false);
    DrillBox(b, xmin, ymin, xmax, ymax);
  }
  return std::isfinite(xmin) && std::isfinite(ymin) && std::isfinite(xmax) && std::isfinite(ymax);
}

// A layer's lower-left corner no nearer the card's edges than 2.54: the shift goes to the origin.
void KeepOffEdges(Board& b) {
  float xmin, ymin, xmax, ymax;
  BoundingBox(nullptr, nullptr, b.Drills, nullptr, xmin, ymin, xmax, ymax, false);
  if (xmin < 2.54) {
    float shift = static_cast<float>(2.54 - xmin);
    ShiftLists(b, shift, 0, false, false);
    b.OriginX = shift;
  }
  if (ymin < 2.54) {
    float shift = static_cast<float>(2.54 - ymin);
    ShiftLists(b, 0, shift, false, false);
    b.OriginY = shift;
  }
}

// The program's reframing when the caller gives one (it also repaints), else the board's own.
void Reframe(ImportContext& context) {
  if (context.steps.reframe)
    context.steps.reframe();
  else
    ReframeBoard(context.board);
}

std::string DigitsText(float digits, char separator) {
  char text[64];
  std::snprintf(text, sizeof text, "%.1f", double(digits));
  std::string s = text;
  for (char& c : s)
    if (c == '.') c = separator;
  return s;
}

}  // namespace

TDialogExcellon::TDialogExcellon(ExcellonChoices& choices, Settings& settings, char separator)
    : coordinates(choices.relative ? 1 : 0),
      units(choices.metric ? 1 : 0),
      zeros(choices.format == kExcellonBasicCoordinates ? 1 : 0),
      decimalFormat(choices.digitSet ? 1 : 0),
      digits(DigitsText(choices.digits, separator)),
      choices_(choices),
      settings_(settings) {}

bool TDialogExcellon::Accept(Platform& platform) {
  float value = choices_.digits;
  if (decimalFormat == 1) {
    const std::string& t = digits;
    bool good = t.size() == 3 && t[0] >= '1' && t[0] <= '9' && (t[1] == '.' || t[1] == ',') &&
                t[2] >= '0' && t[2] <= '5';
    if (!good) {
      platform.ShowMessage("Error", "Invalid value.\n" + t, MessageIcon::Error);
      return false;
    }
    value = static_cast<float>((t[0] - '0') + 0.1 * (t[2] - '0'));
  }
  choices_.relative = coordinates == 1;
  choices_.metric = units == 1;
  choices_.format = zeros == 1 ? kExcellonBasicCoordinates : kExcellonNoTrailingZeros;
  choices_.digitSet = decimalFormat == 1;
  choices_.digits = value;
  if (keepAsDefault) {
    settings_.ExlRelative = choices_.relative;
    settings_.ExlMetric = choices_.metric;
    settings_.DrillImportFormat = choices_.format;
    settings_.ExlDigitSet = choices_.digitSet;
    settings_.ExlDigits = choices_.digits;
  }
  return true;
}

ExcellonResult OpenExcellonFile(ImportContext& context, ExcellonChoices& choices,
                                const std::string& path) {
  Board& b = context.board;
  Platform& ui = context.platform;
  Settings& settings = context.settings;
  const GerberLoadSteps& steps = context.steps;
  auto resetHover = [&] {
    if (steps.resetHover)
      steps.resetHover();
    else
      ClearHover(b);
  };
  auto save = [&] {
    if (steps.saveSettings) steps.saveSettings();
  };

  const JobSnapshot before(b);
  resetHover();
  const ImportPathParts parts = SplitImportPath(path);
  settings.ImportPath = parts.folder;
  RememberExtension(settings, kRowExcellon, parts.extension);
  if (!choices.ready) {
    choices.ready = true;
    choices.relative = settings.ExlRelative;
    choices.metric = settings.ExlMetric;
    choices.digitSet = settings.ExlDigitSet;
    choices.digits = settings.ExlDigits;
  }
  choices.format = settings.DrillImportFormat == kExcellonBasicCoordinates
                       ? kExcellonBasicCoordinates
                       : kExcellonNoTrailingZeros;

  // The modern reading goes by the file's own header; when the person finds it wrong and
  // answers the dialog, the next try reads with those answers the classic way.
  bool modern = settings.ModernImport;
  for (;;) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return ExcellonResult::NotOpened;
    b.Busy = true;
    b.StopImport = false;
    FreeDrills(b, b.ImportDrills);
    b.ImportDrills = nullptr;
    ui.SetStatus(kReadingStatus);
    ui.PumpMessages(250);
    ui.SetBusyCursor(true);
    const TImportFormat& row = settings.ImportFormat[kRowExcellon];
    const ExcellonFormat format{choices.format, choices.relative,
                                choices.metric, choices.digitSet ? choices.digits : 0.0f,
                                row.ScaleIn,    row.DrillScaleIn};
    // The modern reading takes the file's own header and, beside a first layer, its frame.
    const bool framed = modern && b.Pads[0];
    if (modern)
      ReadModernExcellon(file, row.DrillScaleIn, b);
    else
      ReadExcellon(file, format, b);
    file.close();
    b.Busy = false;
    b.FinalRendering = false;

    if (!b.ImportDrills || (!framed && !GuessSize(b))) {
      FreeDrills(b, b.ImportDrills);
      b.ImportDrills = nullptr;
      before.Restore(b);
      ui.SetBusyCursor(false);
      ui.ShowMessage("Error", kLoadError, MessageIcon::Error);
      ResetView(b);
      resetHover();
      ui.Repaint(RepaintLevel::Full);
      save();
      return ExcellonResult::Refused;
    }
    b.LayerName[kDrillLayer] = Upper(parts.name).substr(0, kLayerNameChars);

    // The drills that stood are set aside until the person accepts the new ones.
    TDrill* oldDrills = b.Drills;
    b.Drills = b.ImportDrills;
    b.ImportDrills = nullptr;
    resetHover();
    b.ActiveLayer = kDrillLayer;
    if (!framed) KeepOffEdges(b);
    if (b.Pads[0] && !framed) AlignLayer(b, kDrillLayer);
    const float thickness = steps.cardThickness ? steps.cardThickness() : b.CardThickness;
    if (framed || !b.Pads[0] || PadOverlap(b, kDrillLayer) >= 50) {
      // Holes in the first layer's frame move with it, should the card need to grow.
      if (framed) b.ActiveLayer = 0;
      SetCardFromContent(b, thickness);
      b.ActiveLayer = kDrillLayer;
      ResetView(b);
      if (settings.AutoReframe) Reframe(context);
    } else {
      SearchDrillOrientation(b);
      SetCardFromContent(b, thickness);
      ResetView(b);
      Reframe(context);
    }
    ui.SetBusyCursor(false);
    ui.Repaint(RepaintLevel::Full);

    const Answer answer = ui.Ask("Excellon", "Is this file import valid?", true, Answer::Yes);
    if (answer == Answer::Yes) {
      FreeDrills(b, oldDrills);
      b.ActiveLayer = 0;
      if (steps.rebuildDrillTable) steps.rebuildDrillTable();
      b.CentreHole1X = b.CentreHole1Y = -1;
      b.CentreHole2X = b.CentreHole2Y = -1;
      ui.SetStatus("");
      ui.Repaint(RepaintLevel::Full);
      save();
      return ExcellonResult::Accepted;
    }
    // Another try, as well as a Cancel, starts from the job as it stood before the load.
    FreeDrills(b, b.Drills);
    b.Drills = oldDrills;
    before.Restore(b);
    resetHover();
    if (answer == Answer::No) {
      TDialogExcellon dialog(choices, settings, ui.DecimalSeparator());
      if (ui.RunDialog(dialog)) {
        modern = false;
        continue;
      }
    }
    // The drill list was not rebuilt during the load: it still matches the drills that stand.
    ui.SetStatus("");
    ui.Repaint(RepaintLevel::Full);
    save();
    return ExcellonResult::Cancelled;
  }
}

}  // namespace isolith
