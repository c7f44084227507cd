// The keys of the machine parameter file "Torvane.cnc", which the machining module of the suite
// reads: their sections in writing order, their types, their values on a fresh machine and the
// clamps the reader applies. This program carries the values for the module and acts on one of
// them only ("ExternalDriver").
#pragma once

#include <span>
#include <string_view>

namespace isolith {

enum class MachineKeyType {
  Text,      // as it stands, up to 255 characters
  Int,       // a signed whole number
  Unsigned,  // an unsigned whole number
  Float,     // a number with decimals
  YesNo,     // "Yes" or "No"
  Hex,       // "0x" and eight hexadecimal digits: bit masks of inputs and outputs
};

struct MachineKey {
  const char* section;  // written as "[section]" before its first key
  const char* name;     // written as it stands; compared upper-cased when read
  MachineKeyType type;
  const char* initial;  // the value of a fresh machine, in the file's own form
  double minimum = -2147483648.0;
  double maximum = 2147483647.0;
};

// Every key of the file, section by section, in writing order.
std::span<const MachineKey> MachineKeys();

// The index of a key by its name in any case; -1 when the file has no such key.
int FindMachineKey(std::string_view name);

}  // namespace isolith
