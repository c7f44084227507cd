// "&Customise...": the twelve colours the person may choose, each on a button that opens the
// colour chooser.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

class TDialogItemColor : public DialogForm {
 public:
  explicit TDialogItemColor(Settings& settings);

  struct Row {
    std::string label;  // the button's text, "Board background" and the others
    uint32_t colour;    // 0x00BBGGRR
  };
  std::string title = "Application colours";
  std::vector<Row> rows;  // in the dialog's order (CustomColours)

  std::string_view FormName() const override { return "TDialogItemColor"; }
  // Any colour is good: the rows go to the settings.
  bool Accept(Platform& platform) override;

 private:
  Settings& settings_;
};

}  // namespace isolith
