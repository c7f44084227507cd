// A transfer that reaches no system: the printers and serial devices a test names, and a record
// of what was sent where.
#pragma once

#include <string>
#include <vector>

#include "output/transfer/MachineTransfer.h"

namespace isolith::test {

class FakeTransfer : public MachineTransfer {
 public:
  SendStatus SendToPrinter(const std::string& path, const std::string& printer) override {
    sent.push_back(printer + ":" + path);
    return SendStatus::Sent;
  }
  SendStatus SendToPort(const std::string& path, const std::string& port,
                        const PortSettings&) override {
    sent.push_back(port + ":" + path);
    return SendStatus::Sent;
  }
  std::vector<std::string> Printers() override { return printers; }
  std::vector<std::string> SerialDevices() override { return devices; }

  std::vector<std::string> printers, devices, sent;
};

}  // namespace isolith::test
