// "Drill & engraving process" as a form: where the machining module's job goes next, the
// "Process" list of `RunChain`. The Mill command of the suite's module variant shows it before
// the job is written.
#pragma once

#include <string_view>

#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

class TDialogDrillProcess : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Drill & engraving process";
  static constexpr std::string_view kProcessLabel = "Process";
  // The list, by `RunChain`.
  static constexpr std::string_view kProcesses[2] = {
      "Chain automatically to milling module", "Chain automatically to 2\u00bdD design module"};

  explicit TDialogDrillProcess(Settings& settings)
      : settings_(settings), process(settings.RunChain == 1 ? 1 : 0) {}

  std::string_view FormName() const override { return "TDialogDrillProcess"; }

  // Stores the choice in `RunChain`.
  bool Accept(Platform&) override {
    settings_.RunChain = process == 1 ? 1 : 0;
    return true;
  }

 private:
  Settings& settings_;

 public:
  int process;  // the row chosen
};

}  // namespace isolith
