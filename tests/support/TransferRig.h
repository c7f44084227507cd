// Real components for the transfer tests, started and stopped by the test itself on this machine
// only: a pty pair made by socat with a small simulated machine on its far end, and a private
// print server (cupsd on a loopback port, every folder of its own under a temporary folder) with
// one raw queue whose device writes a file.
#pragma once

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/TempFolder.h"

namespace isolith::test {

// Starts `args` as a child process; -1 when it could not.
inline pid_t StartChild(const std::vector<std::string>& args) {
  std::vector<char*> argv;
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    dup2(null, 2);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  return pid;
}

inline void StopChild(pid_t& pid) {
  if (pid <= 0) return;
  kill(pid, SIGTERM);
  waitpid(pid, nullptr, 0);
  pid = -1;
}

// Waits up to `ms` for `ready`.
inline bool WaitFor(const std::function<bool()>& ready, int ms) {
  for (int waited = 0; waited < ms; waited += 20) {
    if (ready()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return ready();
}

// Two linked ptys: the program opens `near`, the machine sits on `far`.
class PtyPair {
 public:
  explicit PtyPair(const std::string& folder, const std::string& name = "port") {
    near = folder + name + "-near";
    far = folder + name + "-far";
    pid_ = StartChild({"socat", "pty,raw,echo=0,link=" + near, "pty,raw,echo=0,link=" + far});
    ok_ = pid_ > 0 &&
          WaitFor([this] { return std::filesystem::exists(near) && std::filesystem::exists(far); },
                  5000);
  }
  ~PtyPair() { StopChild(pid_); }
  bool ok() const { return ok_; }
  std::string near, far;

 private:
  pid_t pid_ = -1;
  bool ok_ = false;
};

// The machine on the far end of a pty pair: collects every byte it receives and answers as told.
class SimulatedMachine {
 public:
  // Sends XOFF once `xoffAfter` bytes came (0: never) and XON `resumeMs` later (-1: never).
  size_t xoffAfter = 0;
  int resumeMs = -1;
  // Answers: a question received (the whole of the input so far ending with it) gets its reply.
  std::vector<std::pair<std::string, std::string>> answers;

  explicit SimulatedMachine(const std::string& device) {
    fd_ = open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    termios t{};
    tcgetattr(fd_, &t);
    cfmakeraw(&t);
    tcsetattr(fd_, TCSANOW, &t);
  }
  ~SimulatedMachine() {
    Stop();
    if (fd_ >= 0) close(fd_);
  }
  void Start() {
    thread_ = std::thread([this] { Run(); });
  }
  void Stop() {
    running_ = false;
    if (thread_.joinable()) thread_.join();
  }
  std::string Received() {
    std::lock_guard<std::mutex> lock(mutex_);
    return received_;
  }
  bool ok() const { return fd_ >= 0; }

 private:
  void Run() {
    bool held = false;
    auto heldSince = std::chrono::steady_clock::now();
    while (running_) {
      pollfd p{fd_, POLLIN, 0};
      if (poll(&p, 1, 10) > 0) {
        char buffer[256];
        const ssize_t n = read(fd_, buffer, sizeof buffer);
        if (n > 0) {
          std::lock_guard<std::mutex> lock(mutex_);
          received_.append(buffer, static_cast<size_t>(n));
          for (const auto& [question, reply] : answers)
            if (received_.size() >= question.size() &&
                received_.compare(received_.size() - question.size(), question.size(), question) ==
                    0) [[maybe_unused]]
              ssize_t w = write(fd_, reply.data(), reply.size());
        }
      }
      if (xoffAfter && !held && !xoffSent_ && Received().size() >= xoffAfter) {
        [[maybe_unused]] ssize_t w = write(fd_, "\x13", 1);
        held = xoffSent_ = true;
        heldSince = std::chrono::steady_clock::now();
      }
      if (held && resumeMs >= 0 &&
          std::chrono::steady_clock::now() - heldSince > std::chrono::milliseconds(resumeMs)) {
        [[maybe_unused]] ssize_t w = write(fd_, "\x11", 1);
        held = false;
      }
    }
  }

  int fd_ = -1;
  std::atomic<bool> running_{true};
  bool xoffSent_ = false;
  std::thread thread_;
  std::mutex mutex_;
  std::string received_;
};

// A print server of the test's own, on a free loopback port, with the raw queue "machine" whose
// device appends every job to `output`. CUPS_SERVER points at it while it runs.
class PrivateCups {
 public:
  PrivateCups() {
    const std::string d = folder_.path();
    output = d + "machine.out";
    namespace fs = std::filesystem;
    for (const char* sub : {"root", "spool", "tmp", "cache", "state", "bin/backend", "bin/filter"})
      fs::create_directories(d + sub);
    fs::create_directory_symlink("/usr/lib/cups/daemon", d + "bin/daemon");
    fs::create_directory_symlink("/usr/lib/cups/notifier", d + "bin/notifier");
    // The queue's device: a file. Without arguments a backend lists its devices: none.
    const std::string backend = d + "bin/backend/tofile";
    std::ofstream(backend)
        << "#!/bin/sh\n[ $# -eq 0 ] && exit 0\nf=\"${DEVICE_URI#*:}\"\n"
           "if [ -n \"$6\" ]; then cat \"$6\" >> \"$f\"; else cat >> \"$f\"; fi\n";
    fs::permissions(backend, fs::perms::owner_all, fs::perm_options::replace);
    port_ = FreePort();
    std::ofstream(d + "root/cupsd.conf")
        << "Listen 127.0.0.1:" << port_ << "\nLogLevel warn\nWebInterface No\nBrowsing No\n"
        << "DefaultAuthType None\n<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
        << "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n";
    std::ofstream(d + "root/cups-files.conf")
        << "ServerRoot " << d << "root\nServerBin " << d << "bin\nRequestRoot " << d
        << "spool\nTempDir " << d << "tmp\nCacheDir " << d << "cache\nStateDir " << d
        << "state\nErrorLog " << d << "error_log\nAccessLog " << d << "access_log\nPageLog " << d
        << "page_log\nPrintcap " << d << "printcap\nFileDevice Yes\n";
    std::ofstream(d + "root/printers.conf")
        << "<Printer machine>\nState Idle\nAccepting Yes\nDeviceURI tofile:" << output
        << "\nInfo machine\nShared No\n</Printer>\n";
    if (access("/usr/sbin/cupsd", X_OK) != 0) {
      why = "cupsd is not installed (Debian package cups-daemon)";
      return;
    }
    pid_ = StartChild(
        {"/usr/sbin/cupsd", "-f", "-c", d + "root/cupsd.conf", "-s", d + "root/cups-files.conf"});
    if (!WaitFor([this] { return Listening(); }, 10000)) {
      why = "cupsd did not start: see " + d + "error_log";
      StopChild(pid_);
      return;
    }
    setenv("CUPS_SERVER", ("127.0.0.1:" + std::to_string(port_)).c_str(), 1);
  }
  ~PrivateCups() {
    StopChild(pid_);
    unsetenv("CUPS_SERVER");
  }
  bool ok() const { return why.empty(); }
  std::string why;
  std::string output;

 private:
  static int FreePort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    close(s);
    return ntohs(a.sin_port);
  }
  bool Listening() const {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = htons(static_cast<uint16_t>(port_));
    const bool up = connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
    close(s);
    return up;
  }

  TempFolder folder_;
  pid_t pid_ = -1;
  int port_ = 0;
};

}  // namespace isolith::test
