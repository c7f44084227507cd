// "Auto-detect" of the machine configuration: which serial port the machine is on, found by
// sending each port the question its controller answers.
#pragma once

#include <string>
#include <vector>

namespace isolith {

// The question family of a machine's controller, by its catalogue number; 0 asks nothing.
int ProbeClassOf(int machineId);

enum DetectResult {
  kNoPort = 0,        // "No communication ports are available on this PC."
  kOnePort = 1,       // "Only COM%d port is available on this PC."
  kNoneAnswered = 2,  // several ports, the machine on none of them
  kMachineFound = 3,  // "The machine has been detected on COM%d."
};

struct Detection {
  int result = kNoPort;
  int port = 0;          // the COM number found (or the only one, or the first)
  std::string portList;  // "COM1 / COM2 / ..."
};

// Looks for the machine `machineId` on the serial devices `devices` (in COM order: COM1 is the
// first). With fewer than two ports nothing is sent. Each port is opened and set up for the
// controller, its pending input dropped, the question sent and the answer read within the
// question's time-out.
Detection DetectMachine(int machineId, const std::vector<std::string>& devices);

// The text of the result, as the dialog shows it.
std::string DetectionText(const Detection& detection);

}  // namespace isolith
