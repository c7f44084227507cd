// Loading a drill file as the job's drill layer. Drill files say little about their units and
// number format, so the load is a loop: read with the present assumptions, fit the holes to the
// board (turning the board until the holes meet the pads), show the result and ask whether it
// is right; on "No" the "Excellon import" dialog changes the assumptions and the file is read
// again. Whatever happens, the job that stood before is kept until the person accepts the new
// drills, and comes back exactly as it was when a read fails or the load is cancelled.
#pragma once

#include <string>
#include <string_view>

#include "core/board/Board.h"
#include "core/platform/Platform.h"
#include "import/OpenGerber.h"
#include "params/Settings.h"

namespace isolith {

// The choices of the "Excellon import" dialog, kept for the run from one load to the next. They
// start from the stored defaults at the first load; the kind of file (zero suppression) is
// taken afresh at every load from `DrillImportFormat`, which the open dialog has just set.
struct ExcellonChoices {
  bool ready = false;  // false until the stored defaults were taken
  bool relative = false;
  bool metric = false;
  int format = 17;  // 17 "&leading", 18 "&trailing"
  bool digitSet = false;
  float digits = 3.2f;
};

// "Excellon import".
class TDialogExcellon : public DialogForm {
 public:
  // The dialog opens on `choices`; `separator` is the locale's decimal mark.
  TDialogExcellon(ExcellonChoices& choices, Settings& settings, char separator);

  static constexpr std::string_view kTitle = "Excellon import";

  int coordinates = 0;         // "Co-ordinates :" 0 "&absolute", 1 "&incremental"
  int units = 0;               // "Units :" 0 "i&mperial", 1 "&metric"
  int zeros = 0;               // "Zero suppression :" 0 "&leading", 1 "&trailing"
  int decimalFormat = 0;       // "Decimal format :" 0 "a&utomatic", 1 "pre&defined"
  std::string digits;          // enabled only with "pre&defined": a digit, "." or ",", a digit
  bool keepAsDefault = false;  // "Keep as default settings"

  std::string_view FormName() const override { return "TDialogExcellon"; }
  // A predefined format must be a digit from 1, a point or comma, and a digit up to 5, else
  // "Invalid value." and the dialog stays. The choices are written back, and with "Keep as
  // default settings" also into the stored defaults.
  bool Accept(Platform& platform) override;

 private:
  ExcellonChoices& choices_;
  Settings& settings_;
};

// How a drill load ended.
enum class ExcellonResult {
  NotOpened,  // the file could not be opened: nothing happened, no message
  Refused,    // no usable hole: the error box, the job as it was
  Accepted,   // the person accepted the new drills
  Cancelled,  // the person cancelled: the job as it was
};

// The whole load of `path` as the drill layer (layer 4), with the present choices. The steps
// of the context that it uses: resetHover, cardThickness, reframe (the board's own reframing
// when empty, since fitting turned drills needs one), saveSettings, and rebuildDrillTable after
// an accepted load. Any bytes at all give either drills to accept or the error box "An error
// occurred while loading the file."; a refused or cancelled load puts the job back exactly as it
// was: drills, drill table, board positions, card, origin, centering holes, view, layer. With
// ModernImport the first try reads by the file's own header, in the frame of the first layer
// when it has pads (no alignment, no turning); a try after the dialog reads the classic way with
// the dialog's answers.
ExcellonResult OpenExcellonFile(ImportContext& context, ExcellonChoices& choices,
                                const std::string& path);

}  // namespace isolith
