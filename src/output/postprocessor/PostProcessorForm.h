// "Post-processor format": the dialog of the user's own output format, as a form. The fields
// hold the texts as the dialog shows them (numbers in the locale's decimal mark, any numeric
// field taking an expression); `Accept` checks them in the dialog's order and writes the record
// back only when all are good. The motion templates must have their square brackets in order.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/platform/Platform.h"
#include "output/postprocessor/PostProcessor.h"
#include "params/Settings.h"

namespace isolith {

// The bracket messages of a motion template.
inline constexpr std::string_view kUnexpectedOpening = "Unexpected ''['' opening square bracket.";
inline constexpr std::string_view kExpectedClosing = "Expected '']'' closing square bracket.";
inline constexpr std::string_view kUnexpectedClosing = "Unexpected '']'' closing square bracket.";

// A template as an edit field gives it: every line break of the field (CR LF, or a lone LF or
// CR) becomes the two-backslash break, and the text is held to `maxLength` characters.
std::string TemplateFromEdit(std::string_view edit, size_t maxLength);

// Where the brackets of a template go wrong, in the edit field's own positions.
struct TemplateFault {
  std::string_view message;  // empty when the brackets are in order
  size_t position = 0;       // the offending character, or the end of the text
};
// Checks the brackets, stopping at the first fault: a "[" inside a group, a break inside a
// group, a "]" outside a group, a group still open at the end.
TemplateFault CheckTemplateBrackets(std::string_view edit, size_t maxLength);

// Reads an edit field into `text` (TemplateFromEdit). With `strict` the brackets are checked
// first: a fault is shown under "Error", `text` is left alone, `faultPosition` (when given)
// receives where the selection goes, and the result is false.
bool ValidateTemplate(Platform& platform, std::string_view edit, size_t maxLength,
                      std::string& text, bool strict, size_t* faultPosition = nullptr);

class TDialogPostPro : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Post-processor format";
  static constexpr std::string_view kFileDialogTitle = "Post-processor";
  static constexpr std::string_view kFileFilter = "Post-processor (*.PPF)";
  static constexpr std::string_view kFilePattern = "*.ppf";
  static constexpr std::string_view kConfigSubfolder = "CONFIG/";
  static constexpr std::string_view kReadFailed = "Unable to read post-processor file.";
  static constexpr std::string_view kWriteFailed = "Unable to write post-processor file.";

  // The fields, in the dialog's order; `focus` names the one a refusal puts the focus on.
  enum Field {
    kNoField,
    kTitleField,
    kFileExt,
    kHeader1,
    kHeader2,
    kHeader3,
    kTrailer1,
    kTrailer2,
    kTrailer3,
    kLineNb,
    kBeginNb,
    kEndNb,
    kIncNb,
    kFileTop,
    kFileBottom,
    kToolChg,
    kSpindleOn,
    kSpindleOff,
    kHome,
    kDelay,
    kOutputOn,
    kOutputOff,
    kOpenBuffer,
    kCloseBuffer,
    kScaleRPM,
    kScaleS,
    kFormatRPM,
    kFormatS,
    kClearV,
    kClearXYZ,
    kActiveV,
    kPlungeZ,
    kFeedXYZ,
    kLiftUpZ,
    kFeedArc2,
    kFeedArc3,
    kScaleX,
    kScaleY,
    kScaleZ,
    kScaleV,
    kScaleR,
    kScaleA,
    kFormatXY,
    kFormatZ,
    kFormatV,
    kFormatR,
    kFormatA,
    kOffsetX,
    kOffsetY,
    kOffsetZ,
    kOffsetA
  };

  // Shows `pp`. `folder` is the folder of "Isolith.ppf" (with its final separator); "Open..."
  // and "Save..." start in its "CONFIG/" subfolder. `separator` is the locale's decimal mark.
  TDialogPostPro(TPostProcessor& pp, Settings& settings, std::string folder, char separator);

  std::string_view FormName() const override { return "TDialogPostPro"; }

  std::string title, fileExt;
  std::string header1, header2, header3, trailer1, trailer2, trailer3;
  std::string lineNb, beginNb, endNb, incNb;
  std::string fileTop, fileBottom, toolChg, spindleOn, spindleOff;
  std::string home, delay, outputOn, outputOff, openBuffer, closeBuffer;
  std::string scaleRPM, scaleS, formatRPM, formatS;
  std::string clearV, clearXYZ, activeV, plungeZ, feedXYZ, liftUpZ;
  bool arcs = true, noZeros = true, relCoords = false, hexa = false;
  std::string feedArc2, feedArc3;
  std::string scaleX, scaleY, scaleZ, scaleV, scaleR, scaleA;
  std::string formatXY, formatZ, formatV, formatR, formatA;
  int originXY = 0;  // row of kOriginXYTexts
  int originZ = 0;   // row of kOriginZTexts
  std::string offsetX, offsetY, offsetZ, offsetA;

  Field focus = kNoField;
  size_t selection = 0;  // in the focused field, where a bracket fault was found

  // The field's text by its id (null for kNoField).
  std::string* FieldText(Field field);
  // Whether the field is a motion template, whose brackets are checked.
  static bool StrictField(Field field);

  // Fills the fields from the record.
  void Load();
  // Checks every field in order into `out`; false at the first refusal, which was shown.
  bool Validate(Platform& platform, TPostProcessor& out);
  // "Open...": a post-processor file chosen from "CONFIG/" is read into the record and the
  // fields are filled again. False when cancelled or when the file could not be read (said).
  bool OpenFile(Platform& platform);
  // "Save...": the fields, once checked, are written to a file chosen in "CONFIG/". False when
  // cancelled, refused, or the file could not be written (said).
  bool SaveFile(Platform& platform);
  // OK: checks, writes the record back and copies its extension into `PprExtension`.
  bool Accept(Platform& platform) override;

 private:
  FileRequest Request() const;

  TPostProcessor& pp_;
  Settings& settings_;
  std::string folder_;
  char separator_;
};

// The whole dialog: "Isolith.ppf" is read from `folder` first; OK writes it (a failure is said)
// and Cancel reads it back, so that an "Open..." that was not confirmed leaves nothing behind.
// True when the dialog was confirmed. Writing the settings file for `PprExtension` is the
// caller's part.
bool EditPostProcessor(Platform& platform, TPostProcessor& pp, Settings& settings,
                       const std::string& folder);

}  // namespace isolith
