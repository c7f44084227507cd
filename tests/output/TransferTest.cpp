// Sending machine files: the lines as they go out, the port names, and real transfers through a
// pty pair to a simulated machine and through a private print server to a raw queue.
#include <gtest/gtest.h>
#include <sys/file.h>

#include <filesystem>
#include <fstream>

#include "output/transfer/DetectMachine.h"
#include "output/transfer/MachineTransfer.h"
#include "output/transfer/PortNames.h"
#include "output/transfer/TransferLines.h"
#include "support/TransferRig.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

std::string Joined(const std::vector<std::string>& lines) {
  std::string all;
  for (const std::string& l : lines) all += l;
  return all;
}

TEST(Transfer, LinesKeepPrintableBytesEndAtCrOrLfAndAreCutAtTheLimit) {
  const struct {
    std::string text;
    std::size_t limit;
    std::string sent;
  } cases[] = {
      {"G00 X1\r\nG01 Y2\r\n", 100, "G00 X1\nG01 Y2\n"},  // CR LF: one line, not two
      {"A\r\n\r\n\nB", 100, "A\nB\n"},                    // empty lines are not sent
      {"A\tB\x01"
       "C\xC3\xA9\n",
       100, "ABC\xC3\xA9\n"},              // controls dropped, bytes from 32 up
      {"ABCDEFG\nHI\n", 4, "ABCD\nHI\n"},  // a long line is cut
      {"", 100, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Joined(TransferLines(c.text, c.limit)), c.sent) << c.text;
}

TEST(Transfer, PortNamesCountUsbThenAcmThenBuiltInSerialPorts) {
  TempFolder sys;
  // Built-in ports without hardware have no "device" and are not counted.
  for (const char* tty : {"ttyS1", "ttyS0", "ttyUSB1", "ttyACM0", "ttyUSB0", "tty0"})
    fs::create_directories(sys.path() + tty + "/device");
  fs::create_directories(sys.path() + "ttyS2");
  const std::vector<std::string> devices = SerialDevices(sys.path());
  EXPECT_EQ(devices, (std::vector<std::string>{"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyACM0",
                                               "/dev/ttyS0", "/dev/ttyS1"}));
  const std::pair<const char*, const char*> names[] = {
      {"COM1", "/dev/ttyUSB0"},
      {"com3", "/dev/ttyACM0"},
      {"COM5", "/dev/ttyS1"},
      {"COM6", ""},
      {"COM33", ""},
      {"LPT1", "/dev/lp0"},
      {"LPT3", "/dev/lp2"},
      {"LPT4", ""},
      {"/dev/pts/7", "/dev/pts/7"},
      {"PRN", ""},
  };
  for (const auto& [port, device] : names) EXPECT_EQ(PortDevice(port, devices), device) << port;
  EXPECT_TRUE(SerialDevices(sys.path() + "none").empty());
}

TEST(Transfer, PortParametersBecomeTermiosFlags) {
  const tcflag_t kLine = CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS;
  const struct {
    int parity, wordLength, stopBits;
    bool cts;
    int rts;
    tcflag_t cflag;
  } cases[] = {
      {0, 8, 1, false, 0, CS8},
      {1, 7, 2, false, 0, CS7 | PARENB | PARODD | CSTOPB},
      {2, 6, 15, true, 1, CS6 | PARENB | CSTOPB | CRTSCTS},  // 1.5 stop bits: two
      {3, 8, 1, false, 3, CS8 | PARENB | PARODD | CMSPAR | CRTSCTS},
  };
  for (const auto& c : cases) {
    termios t{};
    t.c_cflag = kLine;
    PortSettings s;
    s.parity = c.parity, s.wordLength = c.wordLength, s.stopBits = c.stopBits, s.cts = c.cts;
    s.rts = c.rts;
    ApplyPortSettings(t, s);
    EXPECT_EQ(t.c_cflag & kLine, c.cflag) << c.parity << " " << c.wordLength;
  }
}

// What the pty of the program's end keeps of the parameters (a pty has no parity or word
// length: it always carries eight bits), read through a second handle.
struct LineSettings {
  speed_t speed;
  tcflag_t cflag, iflag;
};
LineSettings SettingsOf(int fd) {
  termios t{};
  tcgetattr(fd, &t);
  return {cfgetospeed(&t), t.c_cflag, t.c_iflag};
}

// A file long enough to fill the buffers between the program and the machine.
std::string LongFile(int lines) {
  std::string text;
  for (int i = 0; i < lines; ++i)
    text += "G01 X" + std::to_string(i) + " Y" + std::to_string(i) + "\r\n";
  return text;
}

TEST(Transfer, APtyPeerReceivesEveryLineThroughXonXoffWithThePortsParameters) {
  TempFolder folder;
  test::PtyPair pty(folder.path());
  ASSERT_TRUE(pty.ok()) << "socat could not make a pty pair (Debian package socat)";
  const std::string text = LongFile(400);
  const std::string file = folder.path() + "job.iso";
  std::ofstream(file, std::ios::binary) << text;

  test::SimulatedMachine machine(pty.far);
  ASSERT_TRUE(machine.ok());
  machine.xoffAfter = 1000;  // holds the program for a moment mid-file
  machine.resumeMs = 300;
  machine.Start();
  const int watch = open(pty.near.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
  PortSettings s;
  s.baud = 19200, s.parity = 2, s.wordLength = 7, s.stopBits = 2, s.xoff = true, s.cts = true;
  // The machine's XOFF mid-file holds the program until its XON; every byte still arrives.
  EXPECT_EQ(SendFileToPort(file, pty.near, s, {}), SendStatus::Sent);
  const LineSettings line = SettingsOf(watch);
  EXPECT_EQ(line.speed, B19200);
  EXPECT_EQ(line.cflag & (CSTOPB | CRTSCTS), static_cast<tcflag_t>(CSTOPB | CRTSCTS));
  EXPECT_TRUE(line.iflag & IXON);
  // A rate that termios has no name for is set by number.
  s = PortSettings{};
  s.baud = 56000;
  EXPECT_EQ(SendFileToPort(file, pty.near, s, {}), SendStatus::Sent);
  EXPECT_EQ(SettingsOf(watch).cflag & CBAUD,
            static_cast<tcflag_t>(CBAUDEX));  // the kernel's BOTHER
  close(watch);
  const std::string lines = Joined(TransferLines(text, kPortLineLimit));
  ASSERT_TRUE(test::WaitFor([&] { return machine.Received().size() >= 2 * lines.size(); }, 5000));
  machine.Stop();
  EXPECT_EQ(machine.Received(), lines + lines);
}

TEST(Transfer, AMissingBusyOrStoppedPortIsNeverReportedAsSent) {
  TempFolder folder;
  test::PtyPair pty(folder.path());
  ASSERT_TRUE(pty.ok()) << "socat could not make a pty pair (Debian package socat)";
  const std::string file = folder.path() + "job.iso";
  const std::string text = LongFile(20000);
  std::ofstream(file, std::ios::binary) << text;
  PortSettings s;
  s.xoff = true;
  s.writeTimeoutMs = 300;
  EXPECT_EQ(SendFileToPort(folder.path() + "none.iso", pty.near, s, {}), SendStatus::NoFile);
  EXPECT_EQ(SendFileToPort(file, folder.path() + "no-such-port", s, {}), SendStatus::NoPort);
  EXPECT_EQ(SendFileToPort(file, "COM2", s, {pty.near}), SendStatus::NoPort);
  EXPECT_EQ(SendFileToPort(file, folder.path(), s, {}), SendStatus::PortRefused);
  {
    const int holder = open(pty.near.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_EQ(flock(holder, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(SendFileToPort(file, "COM1", s, {pty.near}), SendStatus::PortBusy);
    close(holder);
  }
  // The machine holds the data with XOFF and never lets go: the write time-out ends the send.
  test::SimulatedMachine machine(pty.far);
  machine.xoffAfter = 100;
  machine.Start();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(SendFileToPort(file, "COM1", s, {pty.near}), SendStatus::Stopped);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  machine.Stop();
  EXPECT_LT(machine.Received().size(), text.size() / 2);
}

TEST(Transfer, DetectMachineAsksEachPortTheQuestionOfItsController) {
  const std::pair<int, int> classes[] = {{100, 13}, {300, 7},  {1802, 7}, {500, 6},   {715, 1},
                                         {706, 2},  {902, 2},  {713, 3},  {800, 12},  {1000, 8},
                                         {1100, 9}, {1303, 4}, {1400, 5}, {1501, 11}, {1700, 10},
                                         {704, 0},  {0, 0}};
  for (const auto& [id, probeClass] : classes) EXPECT_EQ(ProbeClassOf(id), probeClass) << id;

  TempFolder folder;
  test::PtyPair first(folder.path(), "a"), second(folder.path(), "b");
  ASSERT_TRUE(first.ok() && second.ok()) << "socat could not make pty pairs (Debian socat)";
  test::SimulatedMachine silent(first.far), machine(second.far);
  machine.answers = {{":0,o0\r", ":0"}};
  silent.Start();
  machine.Start();
  const std::vector<std::string> both = {first.near, second.near};

  Detection d = DetectMachine(1400, both);
  EXPECT_EQ(d.result, kMachineFound);
  EXPECT_EQ(DetectionText(d), "The machine has been detected on COM2.\nCOM1 / COM2");
  // The silent port heard the question and cost one time-out.
  EXPECT_EQ(silent.Received(), ":0,o0\r");
  d = DetectMachine(500, both);  // asks "f=0\r", which nobody answers
  EXPECT_EQ(DetectionText(d),
            "Several communication ports are available on this PC:\nCOM1 / COM2\n"
            "The machine has been detected on none of them.");
  d = DetectMachine(704, both);  // no question at all
  EXPECT_EQ(d.result, kNoneAnswered);
  d = DetectMachine(1400, {first.near});  // one port: proposed, nothing sent
  EXPECT_EQ(DetectionText(d), "Only COM1 port is available on this PC.");
  EXPECT_EQ(DetectionText(DetectMachine(1400, {})),
            "No communication ports are available on this PC.");
  silent.Stop();
  machine.Stop();
  EXPECT_EQ(silent.Received(), ":0,o0\rf=0\r");
}

TEST(Transfer, ARawQueueOfAPrivatePrintServerGetsTheLinesAsSent) {
  test::PrivateCups cups;
  if (!cups.ok()) GTEST_SKIP() << "no private print server: " << cups.why;
  TempFolder folder;
  const std::string file = folder.path() + "job.iso";
  std::string text = "%\r\nG90\r\n\r\n" + std::string(150, 'X') + "\r\nM02\r\n";
  std::ofstream(file, std::ios::binary) << text;
  SystemTransfer transfer;
  EXPECT_EQ(transfer.Printers(), std::vector<std::string>{"machine"});
  EXPECT_EQ(transfer.SendToPrinter(file, "machine"), SendStatus::Sent);
  const std::string expected = "%\nG90\n" + std::string(100, 'X') + "\nM02\n";
  EXPECT_TRUE(
      test::WaitFor([&] { return test::ReadAll(cups.output).size() >= expected.size(); }, 10000));
  EXPECT_EQ(test::ReadAll(cups.output), expected);
  EXPECT_EQ(transfer.SendToPrinter(file, "no-such-queue"), SendStatus::NoPrinter);
  EXPECT_EQ(transfer.SendToPrinter(folder.path() + "none", "machine"), SendStatus::NoFile);
}

}  // namespace
}  // namespace isolith
