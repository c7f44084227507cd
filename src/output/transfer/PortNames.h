// The port names of the program ("COM1".."COM32", "LPT1".."LPT3") and the Linux devices behind
// them.
//
// The rule: "LPTn" is the parallel port /dev/lp(n-1). "COMn" is the n-th serial port present,
// counted in this order: USB serial adapters (/dev/ttyUSB0, 1, ...), then USB modems and
// controller boards (/dev/ttyACM0, 1, ...), then the serial ports of the computer itself
// (/dev/ttyS0, 1, ..., only those with hardware behind them). So a machine on the only USB
// adapter is COM1 on any computer. Anything that starts with "/" is a device path and is taken
// as it stands (a pty, /dev/serial/by-id/..., a port not in the count).
#pragma once

#include <string>
#include <vector>

namespace isolith {

inline constexpr int kComPorts = 32;
inline constexpr int kLptPorts = 3;

// The serial devices present, in COM order, at most 32, read from `sysClassTty` (normally
// "/sys/class/tty"): an entry counts when it has a "device" link.
std::vector<std::string> SerialDevices(const std::string& sysClassTty = "/sys/class/tty");

// The device of a port name (upper or lower case), by the rule above; `serialDevices` is the
// list of SerialDevices. Empty when the name is none of ours or its COM number is not present.
std::string PortDevice(const std::string& port, const std::vector<std::string>& serialDevices);

// The number of "COMn" (1..32), 0 for any other name.
int ComNumber(const std::string& port);

}  // namespace isolith
