#include "params/MachineParameters.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "params/MachineCatalogue.h"
#include "params/MachineKeys.h"
#include "params/SettingsFile.h"

namespace isolith {

namespace {

// A read text in the file's form, by the key's type; `current` is the value it replaces.
std::string Canonical(const MachineKey& key, std::string_view text, const std::string& current) {
  const float lo = static_cast<float>(key.minimum), hi = static_cast<float>(key.maximum);
  switch (key.type) {
    case MachineKeyType::Text:
      return std::string(text.substr(0, kMaxValueLength));
    case MachineKeyType::Int:
      return std::to_string(ReadIntValue(text, std::atoi(key.initial),
                                         static_cast<int32_t>(key.minimum),
                                         static_cast<int32_t>(key.maximum)));
    case MachineKeyType::Unsigned:
      return std::to_string(ReadUnsignedValue(
          text, static_cast<uint32_t>(std::strtoul(key.initial, nullptr, 10)), 0, 0xFFFFFFFFu));
    case MachineKeyType::Float:
      return FormatFloat(ReadFloatValue(text, std::strtof(key.initial, nullptr), lo, hi));
    case MachineKeyType::YesNo: {
      bool value = current == "Yes";
      ReadYesNoValue(text, value);
      return value ? "Yes" : "No";
    }
    case MachineKeyType::Hex: {
      uint32_t value = static_cast<uint32_t>(std::strtoul(current.c_str() + 2, nullptr, 16));
      ReadHexValue(text, value);
      char buffer[16];
      std::snprintf(buffer, sizeof buffer, "0x%08X", static_cast<unsigned>(value));
      return buffer;
    }
  }
  return current;
}

double StepLength(const MachineParameters& m, const char* screw, const char* pulses) {
  const double n = m.Number(pulses);
  return n > 0 ? m.Number(screw) / n : 0;
}

}  // namespace

MachineParameters::MachineParameters() {
  for (const MachineKey& key : MachineKeys()) values_.emplace_back(key.initial);
}

const std::string& MachineParameters::Text(std::string_view key) const {
  static const std::string none;
  const int index = FindMachineKey(key);
  return index < 0 ? none : values_[index];
}

double MachineParameters::Number(std::string_view key) const {
  const std::string& text = Text(key);
  if (text.rfind("0x", 0) == 0)
    return static_cast<double>(std::strtoul(text.c_str() + 2, nullptr, 16));
  return std::strtod(text.c_str(), nullptr);
}

void MachineParameters::ResetSection(std::string_view section) {
  const auto keys = MachineKeys();
  for (size_t i = 0; i < keys.size(); ++i)
    if (section == keys[i].section) values_[i] = keys[i].initial;
}

bool MachineParameters::Set(std::string_view key, std::string_view text) {
  const int index = FindMachineKey(key);
  if (index < 0) return false;
  const MachineKey& k = MachineKeys()[index];
  values_[index] = Canonical(k, text, values_[index]);
  if (index == FindMachineKey("MachineId")) {
    machineNumber = MachineNumberOf(values_[index]);
    ResetSpindleDefaults(*this);
  } else if (index == FindMachineKey("ControllerId")) {
    controllerNumber = ControllerNumberOf(values_[index]);
  }
  return true;
}

void ResetMachineDefaults(MachineParameters& machine, int machineNumber) {
  machine = MachineParameters();
  machine.machineNumber = machineNumber;
  if (machineNumber >= 0) machine.Set("MachineId", MachineName(machineNumber));
  ResetSpindleDefaults(machine);
}

void ResetSpindleDefaults(MachineParameters& machine) {
  machine.ResetSection("Spindle");
}

void ReadMachineText(std::string_view text, MachineParameters& machine) {
  SettingsLineReader reader(
      [&machine](std::string_view key, std::string_view value) { machine.Set(key, value); });
  reader.Feed(text);
}

std::string FormatMachine(const MachineParameters& machine) {
  std::string out;
  const char* section = nullptr;
  const auto keys = MachineKeys();
  for (size_t i = 0; i < keys.size(); ++i) {
    if (!section || std::strcmp(section, keys[i].section) != 0) {
      WriteSectionLine(out, keys[i].section, section != nullptr);
      section = keys[i].section;
    }
    WriteTextLine(out, keys[i].name, machine.Values()[i]);
  }
  return out;
}

bool ReadMachine(const std::string& folder, const std::string& baseName,
                 MachineParameters& machine) {
  const auto handler = [&machine](std::string_view key, std::string_view value) {
    machine.Set(key, value);
  };
  if (!ReadSettingsFile(folder + baseName + ".cnc", handler)) return false;
  ReadSettingsFile(folder + baseName + ".udc", handler);
  const double x = StepLength(machine, "XAxisScrew", "XAxisPulses");
  const double y = StepLength(machine, "YAxisScrew", "YAxisPulses");
  machine.equalAxes = machine.equalAxes && y > 0 && std::fabs(x / y - 1) <= 0.02;
  return true;
}

bool WriteMachine(const std::string& folder, const std::string& baseName,
                  const MachineParameters& machine) {
  return WriteFileAtomically(folder + baseName + ".cnc", FormatMachine(machine));
}

}  // namespace isolith
