// The machine parameter file "Torvane.cnc" in memory: every value of MachineKeys.h in the file's
// own form, read and written with the engine of the settings files. The machining module of the
// suite is what uses them; this program keeps them, edits them and acts on "ExternalDriver".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace isolith {

inline constexpr const char* kMachineBaseName = "Torvane";

class MachineParameters {
 public:
  // A fresh machine: every key at its initial value.
  MachineParameters();

  // The value of a key in the file's form ("Yes", "0x000000FF", "12.5", ...); empty for a key the
  // file does not have.
  const std::string& Text(std::string_view key) const;
  bool Flag(std::string_view key) const { return Text(key) == "Yes"; }
  double Number(std::string_view key) const;

  // Sets a key from a text, as the reader takes it: read by the key's type and clamps (an
  // unreadable number gives the key's initial value, an unreadable yes/no or hexadecimal value
  // leaves the value), then kept in the file's form. False for a key the file does not have.
  bool Set(std::string_view key, std::string_view text);

  // The keys of one section at their initial values.
  void ResetSection(std::string_view section);

  // The machine's and controller's catalogue numbers, set when their names are read or set.
  int machineNumber = -1;
  int controllerNumber = -1;
  // The X and Y axes move the same length per step (to 2 %), as the read found.
  bool equalAxes = true;

  const std::vector<std::string>& Values() const { return values_; }

 private:
  std::vector<std::string> values_;
};

// Every key at its initial value, the machine number kept; then the spindle part (ResetSpindle).
void ResetMachineDefaults(MachineParameters& machine, int machineNumber);
// The keys of the "Spindle" section at their initial values.
void ResetSpindleDefaults(MachineParameters& machine);

// Reads the pairs of a file's text into `machine`: known keys take their values, unknown keys
// and damaged lines are passed over. A machine name sets the machine number and the spindle
// defaults (the spindle keys that follow in the file then take their own values).
void ReadMachineText(std::string_view text, MachineParameters& machine);
// The whole file, section by section, with CR LF line ends.
std::string FormatMachine(const MachineParameters& machine);

// `folder` + `baseName` + ".cnc", then the sibling ".udc" file when there is one; the X and Y
// step lengths are then compared (`equalAxes`). False when the main file cannot be opened: the
// values then stay as they were.
bool ReadMachine(const std::string& folder, const std::string& baseName,
                 MachineParameters& machine);
// Writes the file beside and renames it over the old one, so that a failure leaves the old file
// whole. False when it could not be written.
bool WriteMachine(const std::string& folder, const std::string& baseName,
                  const MachineParameters& machine);

}  // namespace isolith
