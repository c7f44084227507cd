#include "output/transfer/DetectMachine.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>

#include "output/transfer/SerialPort.h"

namespace isolith {

namespace {

// The question of a class, what it reads back, and how long it waits before and while reading.
struct Probe {
  std::string question;
  std::size_t answerBytes = 2;
  int waitMs = 0;
  int timeoutMs = 100;
};

Probe ProbeOf(int probeClass) {
  using namespace std::string_literals;
  switch (probeClass) {
    case 1:
    case 2:
      return {"@01\r"};
    case 3: {
      char text[32];
      std::snprintf(text, sizeof text, "%c%04X%c?STATUS%c%04X%c", 1, 7, 2, 3, 0x7F70, 4);
      return {text, 38, 0, 760};
    }
    case 4:
      return {"\x02PBCC7\x04", 2, 250};
    case 5:
      return {":0,o0\r"};
    case 6:
      return {"f=0\r"};
    case 7:
      return {"SH 1\r"};
    case 8:
      return {"\x4C\x0A\x00\x53"s};
    case 9:
      return {"\x03\xF1\x00\xF2"s, 7};
    case 10:
      return {"SS0;PM3;ZD0;PA;ZL0;PG;\r", 2, 500};
    case 11:
      return {"\r", 2, 500};
    case 12:
      return {"\x11", 1, 500};
    case 13:
      return {"@", 1, 500};
    default:
      return {};
  }
}

bool Answered(int probeClass, const std::string& a) {
  const auto has = [&a](char c) { return a.find(c) != std::string::npos; };
  switch (probeClass) {
    case 1:
    case 2:
      return !a.empty() && (a[0] == '0' || a[0] == '2');
    case 3: {
      if (a.size() < 13 || a[0] != 1 || a.compare(1, 4, "001A") != 0 || a[5] != 2 ||
          a.compare(6, 7, "STATUS ") != 0)
        return false;
      for (std::size_t i = 13; i + 5 < a.size(); ++i)
        if (a[i] == 3 && a[i + 5] == 4) return true;
      return false;
    }
    case 4:
      return !a.empty() && (a[0] == 6 || a[0] == 17);
    case 5:
      return a == ":0";
    case 6:
    case 7:
    case 8:
    case 11:
      return has('>');
    case 9:
      for (std::size_t i = 0; i + 1 < a.size() && i < 6; ++i)
        if (a[i] == 'U' && static_cast<unsigned char>(a[i + 1]) == 0xF1) return true;
      return false;
    case 10:
      return has('\x06');
    case 12:
      return !a.empty() && (a[0] == 0x1B || a[0] == 6);
    case 13:
      return !a.empty() && (a[0] == 0x1B || a[0] == '#');
    default:
      return false;
  }
}

// The line settings of a class: 9600 bauds, 8 bits, 1 stop bit unless the controller differs.
PortSettings SettingsOf(int probeClass, int timeoutMs) {
  PortSettings s;
  if (probeClass == 2 || probeClass == 11 || probeClass == 12 || probeClass == 3) s.baud = 19200;
  if (probeClass == 3) s.wordLength = 7;
  if (probeClass == 4) s.stopBits = 2;
  if (probeClass == 13) s.baud = 256000;
  s.readTimeoutMs = timeoutMs;
  return s;
}

}  // namespace

int ProbeClassOf(int id) {
  const auto in = [id](int from, int to) { return id >= from && id <= to; };
  if (id == 100) return 13;
  if (id == 300 || id == 600 || in(1801, 1803)) return 7;
  if (id == 500 || id == 1800) return 6;
  if (in(700, 703) || id == 708 || id == 709 || id == 714 || id == 715) return 1;
  if (in(705, 707) || id == 710 || id == 712 || in(900, 903)) return 2;
  if (id == 713) return 3;
  if (id == 800) return 12;
  if (id == 1000) return 8;
  if (id == 1100) return 9;
  if (in(1300, 1303)) return 4;
  if (id == 1400) return 5;
  if (id == 1500 || id == 1501) return 11;
  if (id == 1700) return 10;
  return 0;
}

Detection DetectMachine(int machineId, const std::vector<std::string>& devices) {
  Detection d;
  const int count = static_cast<int>(std::min<std::size_t>(devices.size(), 32));
  for (int i = 0; i < count; ++i) d.portList += (i ? " / COM" : "COM") + std::to_string(i + 1);
  if (count > 0) d.port = 1;
  if (count < 2) {
    d.result = count;
    return d;
  }
  d.result = kNoneAnswered;
  const int probeClass = ProbeClassOf(machineId);
  if (probeClass == 0) return d;
  const Probe probe = ProbeOf(probeClass);
  for (int i = 0; i < count; ++i) {
    SerialPort port;
    if (port.Open(devices[i], true) != PortStatus::Ok) continue;
    if (!port.Configure(SettingsOf(probeClass, probe.timeoutMs))) continue;
    port.DropInput();
    if (!port.Write(probe.question)) continue;
    if (probe.waitMs > 0) poll(nullptr, 0, probe.waitMs);
    if (Answered(probeClass, port.Read(probe.answerBytes, probe.timeoutMs))) {
      d.result = kMachineFound;
      d.port = i + 1;
      return d;
    }
  }
  return d;
}

std::string DetectionText(const Detection& d) {
  switch (d.result) {
    case kNoPort:
      return "No communication ports are available on this PC.";
    case kOnePort:
      return "Only COM" + std::to_string(d.port) + " port is available on this PC.";
    case kNoneAnswered:
      return "Several communication ports are available on this PC:\n" + d.portList +
             "\nThe machine has been detected on none of them.";
    default:
      return "The machine has been detected on COM" + std::to_string(d.port) + ".\n" + d.portList;
  }
}

}  // namespace isolith
