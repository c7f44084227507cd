// Sending a finished machine file to the machine: raw to a printer queue, or line by line to a
// port. The commands reach the system only through this interface, so that their tests can put
// a recording one in its place.
#pragma once

#include <string>
#include <vector>

#include "output/transfer/SerialPort.h"
#include "params/Settings.h"

namespace isolith {

enum class SendStatus {
  Sent,         // every line went out
  NoFile,       // the file to send cannot be read
  NoPort,       // the port name is none of ours, or its device is not there
  PortBusy,     // another program holds the port
  PortRefused,  // the device cannot be opened for writing
  Stopped,      // the machine stopped taking data (time-out or hang-up): the file was not all sent
  NoPrinter,    // no such printer queue (or none at all)
  PrintFailed,  // the print server refused or broke off the job
};

// A sentence that says what went wrong, for messages.
std::string SendStatusText(SendStatus status);

class MachineTransfer {
 public:
  virtual ~MachineTransfer() = default;
  // The file as one raw job named "Torvane" on `printer` (the default queue when empty).
  virtual SendStatus SendToPrinter(const std::string& path, const std::string& printer) = 0;
  // The file line by line to the port "COMn", "LPTn" or a device path; "COM1".."COM12" and a
  // terminal named by its path get `settings`, the others keep their own.
  virtual SendStatus SendToPort(const std::string& path, const std::string& port,
                                const PortSettings& settings) = 0;
  // The printer queues, the default first.
  virtual std::vector<std::string> Printers() = 0;
  // The serial devices present, in COM order.
  virtual std::vector<std::string> SerialDevices() = 0;
};

// The real one: CUPS for the queues, the devices of the system for the ports.
class SystemTransfer : public MachineTransfer {
 public:
  SendStatus SendToPrinter(const std::string& path, const std::string& printer) override;
  SendStatus SendToPort(const std::string& path, const std::string& port,
                        const PortSettings& settings) override;
  std::vector<std::string> Printers() override;
  std::vector<std::string> SerialDevices() override;
};

// The port parameters of the settings (`MachineBaudrate` .. `MachineXoff`), with the time-outs
// of every transfer: 50 ms to read, 5000 ms for each write.
PortSettings PortSettingsOf(const Settings& settings);

// The port part of SystemTransfer, given the serial devices (tests give a pty).
SendStatus SendFileToPort(const std::string& path, const std::string& port,
                          const PortSettings& settings,
                          const std::vector<std::string>& serialDevices);

}  // namespace isolith
