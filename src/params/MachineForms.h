// The machine configuration dialogs: a plain editor of the values of "Torvane.cnc", one page per
// section. "Basic data..." shows the machine, its controller, spindle and speeds; "Full data..."
// every section but the external driver's ("Mill parameters"); "External driver..." that one.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/Platform.h"
#include "params/MachineKeys.h"
#include "params/MachineParameters.h"

namespace isolith {

enum class MachinePages {
  Basic,           // "Machine", "Controller", "Spindle", "Speeds"
  Full,            // every section but "External Driver"
  ExternalDriver,  // "External Driver"
};

class TDialogMachine : public DialogForm {
 public:
  TDialogMachine(MachineParameters& machine, MachinePages pages);
  std::string_view FormName() const override { return "TDialogMachine"; }

  std::string title;  // "Basic data", "Mill parameters" or "External driver"
  struct Field {
    std::string section;
    std::string key;
    MachineKeyType type;
    std::string value;  // as the file writes it
  };
  std::vector<Field> fields;  // section by section, in the file's order

  // The field of `key`, or null when the dialog does not show it.
  Field* FindField(std::string_view key);

  // "Auto-detect": looks for the machine on the serial ports and puts the port found into the
  // controller's "ComPort" field. Offered when set (the command sets it for the pages that show
  // the controller).
  std::function<void(Platform&)> autoDetect;

  // Takes every field as the file's reader would (numbers clamped, unreadable ones at their
  // initial value), so that no value can be refused.
  bool Accept(Platform& platform) override;

 private:
  MachineParameters& machine_;
};

}  // namespace isolith
