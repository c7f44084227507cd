#include "params/MachineForms.h"

#include "params/MachineKeys.h"

namespace isolith {

namespace {

bool OnPage(MachinePages pages, std::string_view section) {
  const bool driver = section == "External Driver";
  switch (pages) {
    case MachinePages::Basic:
      return section == "Machine" || section == "Controller" || section == "Spindle" ||
             section == "Speeds";
    case MachinePages::Full:
      return !driver;
    case MachinePages::ExternalDriver:
      return driver;
  }
  return false;
}

}  // namespace

TDialogMachine::TDialogMachine(MachineParameters& machine, MachinePages pages) : machine_(machine) {
  title = pages == MachinePages::Basic  ? "Basic data"
          : pages == MachinePages::Full ? "Mill parameters"
                                        : "External driver";
  const auto keys = MachineKeys();
  for (size_t i = 0; i < keys.size(); ++i)
    if (OnPage(pages, keys[i].section))
      fields.push_back({keys[i].section, keys[i].name, keys[i].type, machine.Values()[i]});
}

TDialogMachine::Field* TDialogMachine::FindField(std::string_view key) {
  for (Field& f : fields)
    if (f.key == key) return &f;
  return nullptr;
}

bool TDialogMachine::Accept(Platform&) {
  // The machine first: naming it resets the spindle, whose fields then take their own values.
  const auto isMachine = [](const Field& f) { return f.key == "MachineId"; };
  for (const Field& f : fields)
    if (isMachine(f) && f.value != machine_.Text(f.key)) machine_.Set(f.key, f.value);
  for (const Field& f : fields)
    if (!isMachine(f)) machine_.Set(f.key, f.value);
  for (Field& f : fields) f.value = machine_.Text(f.key);
  return true;
}

}  // namespace isolith
