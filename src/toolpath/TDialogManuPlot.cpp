#include "toolpath/TDialogManuPlot.h"

#include <utility>

#include "params/FieldChecks.h"

namespace isolith {

TDialogManuPlot::TDialogManuPlot(std::string_view title_, float x_, float y_, double minX_,
                                 double maxX_, double minY_, double maxY_, std::string unit_,
                                 char separator)
    : title(title_),
      xText(FormatFieldFloat(x_, kDecimals, separator)),
      yText(FormatFieldFloat(y_, kDecimals, separator)),
      unit(std::move(unit_)),
      minX(minX_),
      maxX(maxX_),
      minY(minY_),
      maxY(maxY_),
      x(x_),
      y(y_) {}

bool TDialogManuPlot::Accept(Platform& platform) {
  float vx = x, vy = y;
  if (!CheckFloatField(platform, kLabel, xText, unit, vx, minX, maxX)) {
    focus = kX;
    return false;
  }
  if (!CheckFloatField(platform, kLabel, yText, unit, vy, minY, maxY)) {
    focus = kY;
    return false;
  }
  focus = kNoField;
  x = vx;
  y = vy;
  return true;
}

}  // namespace isolith
