#include "params/TDialogItemColor.h"

#include "params/ColourSets.h"

namespace isolith {

TDialogItemColor::TDialogItemColor(Settings& settings) : settings_(settings) {
  for (const CustomColour& c : CustomColours()) rows.push_back({c.label, settings.*c.value});
}

bool TDialogItemColor::Accept(Platform&) {
  const auto colours = CustomColours();
  for (size_t i = 0; i < rows.size() && i < colours.size(); ++i)
    settings_.*colours[i].value = rows[i].colour & 0xFFFFFF;
  return true;
}

}  // namespace isolith
