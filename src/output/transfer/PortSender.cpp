// Sending a file to a port.

#include "output/transfer/MachineTransfer.h"
#include "output/transfer/PortNames.h"
#include "output/transfer/TransferLines.h"

namespace isolith {

namespace {

// COM ports past the twelfth are opened as they stand, with no parameters.
constexpr int kParameterComPorts = 12;

}  // namespace

SendStatus SendFileToPort(const std::string& path, const std::string& port,
                          const PortSettings& settings,
                          const std::vector<std::string>& serialDevices) {
  std::string text;
  if (!ReadTransferFile(path, text)) return SendStatus::NoFile;
  const std::string device = PortDevice(port, serialDevices);
  if (device.empty()) return SendStatus::NoPort;
  SerialPort out;
  switch (out.Open(device, false)) {
    case PortStatus::Ok:
      break;
    case PortStatus::Missing:
      return SendStatus::NoPort;
    case PortStatus::Busy:
      return SendStatus::PortBusy;
    case PortStatus::Refused:
      return SendStatus::PortRefused;
  }
  const int com = ComNumber(port);
  const bool byPath = !port.empty() && port[0] == '/';
  if ((com >= 1 && com <= kParameterComPorts) || byPath) out.Configure(settings);
  for (const std::string& line : TransferLines(text, kPortLineLimit))
    if (!out.Write(line)) return SendStatus::Stopped;
  return out.Drain() ? SendStatus::Sent : SendStatus::Stopped;
}

PortSettings PortSettingsOf(const Settings& s) {
  PortSettings p;
  p.baud = s.MachineBaudrate;
  p.parity = s.MachineParity;
  p.wordLength = s.MachineWordLength;
  p.stopBits = s.MachineStopBits;
  p.cts = s.MachineCTS;
  p.rts = s.MachineRTS;
  p.dsr = s.MachineDSR;
  p.dtr = s.MachineDTR;
  p.xoff = s.MachineXoff;
  return p;
}

std::string SendStatusText(SendStatus status) {
  switch (status) {
    case SendStatus::Sent:
      return "The file was sent.";
    case SendStatus::NoFile:
      return "The file to send cannot be read.";
    case SendStatus::NoPort:
      return "The port is not available on this PC.";
    case SendStatus::PortBusy:
      return "The port is in use by another programme.";
    case SendStatus::PortRefused:
      return "The port cannot be opened.";
    case SendStatus::Stopped:
      return "The machine stopped taking data: the file was not sent completely.";
    case SendStatus::NoPrinter:
      return "The printer is not available.";
    case SendStatus::PrintFailed:
      return "The printer refused the job.";
  }
  return {};
}

SendStatus SystemTransfer::SendToPort(const std::string& path, const std::string& port,
                                      const PortSettings& settings) {
  return SendFileToPort(path, port, settings, SerialDevices());
}

std::vector<std::string> SystemTransfer::SerialDevices() {
  return isolith::SerialDevices();
}

}  // namespace isolith
