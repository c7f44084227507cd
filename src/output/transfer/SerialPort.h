// One port device opened for a transfer: a serial port set up with termios, a parallel port, or
// any device path. Every write and read is bounded by its time-out, so a machine that stops
// answering costs at most the time-outs and never hangs the program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct termios;

namespace isolith {

// The port parameters of "RS-232 settings".
struct PortSettings {
  uint32_t baud = 9600;  // a rate the device cannot take leaves its own
  int parity = 0;        // 0 "None", 1 "Odd", 2 "Even", 3 "Mark"
  int wordLength = 8;    // 6, 7 or 8
  int stopBits = 1;      // 1, 15 (one and a half) or 2
  bool cts = false;      // output flow on CTS
  int rts = 0;           // 0 "Null" (left), 1 "Disable", 2 "Enable", 3 "Handsh."
  bool dsr = false;      // output flow on DSR
  int dtr = 0;           // as rts
  bool xoff = false;     // output flow by Xon/Xoff
  int readTimeoutMs = 50;
  int writeTimeoutMs = 5000;
};

enum class PortStatus {
  Ok,
  Missing,  // no such device
  Busy,     // another program holds it
  Refused,  // it exists but cannot be opened for this use (rights, not a port)
};

class SerialPort {
 public:
  SerialPort() = default;
  ~SerialPort();
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  // Opens `device` for writing (and reading with `read`), held exclusively while open: a port
  // another program holds (an exclusive lock, or a terminal set exclusive) is Busy.
  PortStatus Open(const std::string& device, bool read);
  // Sets the parameters on a terminal device: speed, parity, word length, stop bits, the flow
  // controls and the RTS and DTR lines, raw bytes both ways. Linux has no 1.5 stop bits: 15
  // gives two, which the port hardware sends as one and a half with five-bit words only. RTS
  // or DTR handshake ("Handsh.") raise the line and hand output flow to CTS (crtscts) and DSR
  // respectively. False when the device is not a terminal.
  bool Configure(const PortSettings& settings);

  // Writes all of `data` within the write time-out (waiting on DSR first when its flow control
  // is on); false when the time-out passed or the device failed.
  bool Write(std::string_view data);
  // Waits till the written bytes have left the port, the write time-out at most each time the
  // queue does not shrink; false when they did not.
  bool Drain();
  // Up to `count` bytes, waiting `timeoutMs` at most for them all.
  std::string Read(std::size_t count, int timeoutMs);
  // Drops pending input, reading 10 bytes at a time until a read brings nothing.
  void DropInput();

 private:
  int fd_ = -1;
  PortSettings settings_;
};

// The parameters as termios flags, on top of raw bytes both ways without time-outs; the speed
// when termios has a name for it (the others are set by SetCustomBaud).
void ApplyPortSettings(struct termios& t, const PortSettings& settings);

// Sets a rate that termios has no constant for (14400, 56000, 128000, 256000) by its number.
bool SetCustomBaud(int fd, uint32_t baud);

}  // namespace isolith
