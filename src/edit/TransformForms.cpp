#include "edit/TransformForms.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/board/BoardOps.h"
#include "params/Expression.h"
#include "params/FieldChecks.h"

namespace isolith {

namespace {

// A length as the fields show it.
std::string Length(double value, char separator) {
  return FormatFieldFloat(value, kLengthDecimals, separator);
}

// A depth as the warning names it: the number and the length unit's label.
std::string DepthText(double value, const std::string& unit, char separator) {
  std::string text = Length(value, separator);
  if (!unit.empty()) text.append(" ").append(unit);
  return text;
}

// The value of an edited field, when it is a number.
bool FieldValue(const std::string& text, char separator, double& value) {
  ExprResult r = EvaluateExpression(text, separator);
  if (r.errorPosition != 0 || !std::isfinite(r.value)) return false;
  value = r.value;
  return true;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Board dimensions

TDialogSize::TDialogSize(Board& board, std::string unit_, char separator)
    : width(Length(board.CardWidth, separator)),
      height(Length(board.CardHeight, separator)),
      margin(Length(kReframeMargin, separator)),
      thickness(Length(board.CardThickness, separator)),
      unit(std::move(unit_)),
      board_(board) {
  float xmin, ymin, xmax, ymax;
  FullBoundingBox(board, xmin, ymin, xmax, ymax);
  // An empty job has no maximum: the card may then take any size down to nothing.
  minWidth_ = std::max(0.0, double(xmax));
  minHeight_ = std::max(0.0, double(ymax));
}

bool TDialogSize::Accept(Platform& platform) {
  auto refuse = [&](Field field) {
    focus = field;
    return false;
  };
  float t = board_.CardThickness;
  if (!CheckFloatField(platform, "Thickness", thickness, unit, t, kMinThickness, kMaxThickness))
    return refuse(kThickness);
  float m = kReframeMargin, w = board_.CardWidth, h = board_.CardHeight;
  if (reframe) {
    if (!CheckFloatField(platform, "Margin", margin, unit, m, kMinMargin, kMaxMargin))
      return refuse(kMargin);
  } else {
    if (!CheckFloatField(platform, "Width", width, unit, w, minWidth_, kMaxSize))
      return refuse(kWidth);
    if (!CheckFloatField(platform, "Height", height, unit, h, minHeight_, kMaxSize))
      return refuse(kHeight);
  }
  focus = kNoField;
  if (reframe) {
    ReframeBoard(board_, m);
  } else {
    board_.CardWidth = w;
    board_.CardHeight = h;
  }
  board_.CardThickness = t;
  ResetView(board_);
  return true;
}

bool OfferThicknessAsDepths(Platform& platform, Settings& settings, float thickness,
                            char separator) {
  const double t = thickness;
  if (std::fabs(t - settings.DrillingDepth) <= 0.001 &&
      std::fabs(t - settings.CuttingDepth) <= 0.001)
    return false;
  const std::string& unit = settings.LengthUnitLabel;
  std::string text = "Your selected tools use a depth of\n";
  text.append(DepthText(settings.DrillingDepth, unit, separator));
  text.append(" for drilling and ");
  text.append(DepthText(settings.CuttingDepth, unit, separator));
  text.append(" for cutting.\n\nDo you wish to change these values to ");
  text.append(DepthText(t, unit, separator));
  text.append("?");
  if (platform.Ask("Warning", text, false, Answer::Yes) != Answer::Yes) return false;
  settings.DrillingDepth = thickness;
  settings.CuttingDepth = thickness;
  return true;
}

// ---------------------------------------------------------------------------------------------
// Origin point

TDialogOriginPoint::TDialogOriginPoint(Board& board, std::string unit_, char separator)
    : TDialogManuPlot(kOriginTitle, board.OriginX, board.OriginY, 0, board.CardWidth, 0,
                      board.CardHeight, std::move(unit_), separator),
      board_(board) {}

bool TDialogOriginPoint::Accept(Platform& platform) {
  if (!TDialogManuPlot::Accept(platform)) return false;
  board_.OriginX = x;
  board_.OriginY = y;
  ResetView(board_);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Scale

TDialogScale::TDialogScale(Board& board, std::string unit_, char separator)
    : unit(std::move(unit_)), board_(board), separator_(separator) {
  drillDiametersEnabled = board.Drills != nullptr;
  ShowScale(1);
  ShowSize(1);
}

void TDialogScale::ShowScale(double factor) {
  scale = FormatFieldFloat(factor, kScaleDecimals, separator_);
}

void TDialogScale::ShowSize(double factor) {
  width = Length(board_.CardWidth * factor, separator_);
  height = Length(board_.CardHeight * factor, separator_);
}

void TDialogScale::ScaleEdited() {
  double factor;
  if (FieldValue(scale, separator_, factor)) ShowSize(factor);
}

void TDialogScale::WidthEdited() {
  double w;
  if (board_.CardWidth == 0 || !FieldValue(width, separator_, w)) return;
  const double factor = w / board_.CardWidth;
  ShowScale(factor);
  height = Length(board_.CardHeight * factor, separator_);
}

void TDialogScale::HeightEdited() {
  double h;
  if (board_.CardHeight == 0 || !FieldValue(height, separator_, h)) return;
  const double factor = h / board_.CardHeight;
  ShowScale(factor);
  width = Length(board_.CardWidth * factor, separator_);
}

bool TDialogScale::Accept(Platform& platform) {
  focus = kNoField;
  if (!choice.coordinates && !choice.apertureSizes && !choice.drillDiameters &&
      !choice.trackThicknesses)
    return true;
  float factor = 1;
  if (!CheckFloatField(platform, "Scale", scale, "", factor, kMinScale, kMaxScale)) {
    focus = kScale;
    return false;
  }
  ScaleBoard(board_, factor, choice);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Co-ordinate shift

TDialogShift::TDialogShift(Board& board, float thickness, std::string unit_, char separator)
    : dx(Length(0, separator)),
      dy(Length(0, separator)),
      unit(std::move(unit_)),
      board_(board),
      thickness_(thickness) {}

bool TDialogShift::Accept(Platform& platform) {
  float vx = 0, vy = 0;
  // Equal limits: any value is taken.
  if (!CheckFloatField(platform, "Shift", dx, unit, vx, 0, 0)) {
    focus = kDx;
    return false;
  }
  if (!CheckFloatField(platform, "Shift", dy, unit, vy, 0, 0)) {
    focus = kDy;
    return false;
  }
  focus = kNoField;
  ShiftBoard(board_, vx, vy, allLayers, thickness_);
  return true;
}

}  // namespace isolith
