#include "output/transfer/SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace isolith {

namespace {

using Clock = std::chrono::steady_clock;

int MillisecondsLeft(Clock::time_point deadline) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

// The termios constant of a rate, 0 when termios has none.
speed_t SpeedOf(uint32_t baud) {
  switch (baud) {
    case 110:
      return B110;
    case 300:
      return B300;
    case 600:
      return B600;
    case 1200:
      return B1200;
    case 2400:
      return B2400;
    case 4800:
      return B4800;
    case 9600:
      return B9600;
    case 19200:
      return B19200;
    case 38400:
      return B38400;
    case 57600:
      return B57600;
    case 115200:
      return B115200;
    default:
      return 0;
  }
}

// The rates of the list that termios has no constant for.
bool CustomRate(uint32_t baud) {
  return baud == 14400 || baud == 56000 || baud == 128000 || baud == 256000;
}

// Sets (on) or clears a modem line; a device without modem lines (a pty) has nothing to set.
void SetLine(int fd, int line, bool on) {
  ioctl(fd, on ? TIOCMBIS : TIOCMBIC, &line);
}

}  // namespace

SerialPort::~SerialPort() {
  if (fd_ < 0) return;
  ioctl(fd_, TIOCNXCL);
  close(fd_);
}

PortStatus SerialPort::Open(const std::string& device, bool read) {
  fd_ = open(device.c_str(), (read ? O_RDWR : O_WRONLY) | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd_ < 0) {
    switch (errno) {
      case ENOENT:
      case ENODEV:
      case ENXIO:
        return PortStatus::Missing;
      case EBUSY:
        return PortStatus::Busy;
      default:
        return PortStatus::Refused;
    }
  }
  if (flock(fd_, LOCK_EX | LOCK_NB) != 0) {
    const bool busy = errno == EWOULDBLOCK;
    close(fd_);
    fd_ = -1;
    return busy ? PortStatus::Busy : PortStatus::Refused;
  }
  if (isatty(fd_)) ioctl(fd_, TIOCEXCL);
  return PortStatus::Ok;
}

void ApplyPortSettings(termios& t, const PortSettings& s) {
  cfmakeraw(&t);
  if (const speed_t speed = SpeedOf(s.baud)) cfsetspeed(&t, speed);
  t.c_cflag &= ~(CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
  t.c_cflag |= CLOCAL | CREAD;
  t.c_cflag |= s.wordLength == 6 ? CS6 : s.wordLength == 7 ? CS7 : CS8;
  if (s.parity == 1) t.c_cflag |= PARENB | PARODD;
  if (s.parity == 2) t.c_cflag |= PARENB;
  if (s.parity == 3) t.c_cflag |= PARENB | PARODD | CMSPAR;
  if (s.stopBits == 2 || s.stopBits == 15) t.c_cflag |= CSTOPB;
  if (s.cts || s.rts == 3) t.c_cflag |= CRTSCTS;
  t.c_iflag &= ~(IXON | IXOFF | IXANY);
  if (s.xoff) t.c_iflag |= IXON;
  t.c_cc[VMIN] = 0;
  t.c_cc[VTIME] = 0;
}

bool SerialPort::Configure(const PortSettings& s) {
  settings_ = s;
  termios t{};
  if (tcgetattr(fd_, &t) != 0) return false;
  ApplyPortSettings(t, s);
  if (tcsetattr(fd_, TCSANOW, &t) != 0) return false;
  if (CustomRate(s.baud)) SetCustomBaud(fd_, s.baud);
  if (s.rts != 0) SetLine(fd_, TIOCM_RTS, s.rts != 1);
  if (s.dtr != 0) SetLine(fd_, TIOCM_DTR, s.dtr != 1);
  return true;
}

bool SerialPort::Write(std::string_view data) {
  const Clock::time_point deadline =
      Clock::now() + std::chrono::milliseconds(settings_.writeTimeoutMs);
  if (settings_.dsr || settings_.dtr == 3) {
    // Output waits for the machine's DSR; a device without modem lines has no DSR to wait for.
    int lines = 0;
    while (ioctl(fd_, TIOCMGET, &lines) == 0 && !(lines & TIOCM_DSR)) {
      if (MillisecondsLeft(deadline) == 0) return false;
      poll(nullptr, 0, 10);
    }
  }
  while (!data.empty()) {
    const ssize_t n = write(fd_, data.data(), data.size());
    if (n > 0) {
      data.remove_prefix(static_cast<std::size_t>(n));
      continue;
    }
    if (n < 0 && errno != EAGAIN && errno != EINTR) return false;
    pollfd p{fd_, POLLOUT, 0};
    const int left = MillisecondsLeft(deadline);
    if (left == 0 || poll(&p, 1, left) < 0) return false;
    if (p.revents & (POLLERR | POLLHUP | POLLNVAL)) return false;
  }
  return true;
}

bool SerialPort::Drain() {
  int queued = 0;
  Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(settings_.writeTimeoutMs);
  int last = -1;
  while (ioctl(fd_, TIOCOUTQ, &queued) == 0 && queued > 0) {
    if (queued != last) {
      last = queued;
      deadline = Clock::now() + std::chrono::milliseconds(settings_.writeTimeoutMs);
    }
    if (MillisecondsLeft(deadline) == 0) return false;
    poll(nullptr, 0, 10);
  }
  return true;
}

std::string SerialPort::Read(std::size_t count, int timeoutMs) {
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
  std::string bytes;
  char buffer[64];
  while (bytes.size() < count) {
    const ssize_t n = read(fd_, buffer, std::min(sizeof buffer, count - bytes.size()));
    if (n > 0) {
      bytes.append(buffer, static_cast<std::size_t>(n));
      continue;
    }
    if (n < 0 && errno != EAGAIN && errno != EINTR) break;
    pollfd p{fd_, POLLIN, 0};
    const int left = MillisecondsLeft(deadline);
    if (left == 0 || poll(&p, 1, left) <= 0) break;
  }
  return bytes;
}

void SerialPort::DropInput() {
  while (!Read(10, settings_.readTimeoutMs).empty()) {
  }
}

}  // namespace isolith
