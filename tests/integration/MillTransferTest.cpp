// The Mill command's transfer of a finished file, as `isolith-cli mill` and `send` run it: a
// simulated machine on a pty pair and a private print server get exactly the lines of the file,
// and a transfer that fails keeps the file and says so.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliMain.h"
#include "output/transfer/TransferLines.h"
#include "support/TempFolder.h"
#include "support/TransferRig.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

const std::string kBoard = std::string(ISOLITH_SOURCE_DIR) + "/examples/blinky/blinky.gtl";

struct CliRun {
  int status;
  std::string err;
};

CliRun Cli(const TempFolder& config, std::vector<std::string> args) {
  args.insert(args.begin(), {"--config", config.path()});
  std::ostringstream out, err;
  const int status = CliMain(args, config.path(), out, err);
  return {status, err.str()};
}

std::string Sent(const std::string& file, std::size_t limit) {
  std::string all;
  for (const std::string& line : TransferLines(test::ReadAll(file), limit)) all += line;
  return all;
}

TEST(MillTransfer, APortAndAPrintQueueGetTheMilledFileLineByLine) {
  TempFolder config;
  fs::copy_file(fs::path(ISOLITH_SOURCE_DIR) / "data/Isolith.too", config.path() + "Isolith.too");
  test::PtyPair pty(config.path());
  ASSERT_TRUE(pty.ok()) << "socat could not make a pty pair (Debian package socat)";
  test::SimulatedMachine machine(pty.far);
  ASSERT_TRUE(machine.ok());
  machine.Start();

  // Port output: the file is written, then sent; `send` sends it again. The settings keep a port
  // name of 10 characters at most, so the pty gets a short name of its own.
  char shortName[16];
  std::snprintf(shortName, sizeof shortName, "/tmp/m%04x",
                static_cast<unsigned>(getpid()) & 0xffffu);
  fs::remove(shortName);
  fs::create_symlink(pty.near, shortName);
  const std::string iso = config.path() + "board.iso";
  CliRun run = Cli(config, {"--set", "MachineOutput=3", "--set",
                            std::string("MachinePort=") + shortName, "mill", kBoard, "-o", iso});
  fs::remove(shortName);
  ASSERT_EQ(run.status, kCliOk) << run.err;
  const std::string lines = Sent(iso, kPortLineLimit);
  ASSERT_GT(lines.size(), 1000u);
  run = Cli(config, {"send", iso, "--port", pty.near});
  ASSERT_EQ(run.status, kCliOk) << run.err;
  ASSERT_TRUE(test::WaitFor([&] { return machine.Received().size() >= 2 * lines.size(); }, 5000));
  machine.Stop();
  EXPECT_EQ(machine.Received(), lines + lines);

  // A port that is not there: the file stands complete, the exit status and the message say the
  // machine did not get it.
  fs::remove(iso);
  run = Cli(config, {"--set", "MachineOutput=3", "--set", "MachinePort=/dev/no-such-port", "mill",
                     kBoard, "-o", iso});
  EXPECT_EQ(run.status, kCliFailed);
  EXPECT_NE(run.err.find("stays as '" + iso + "'"), std::string::npos) << run.err;
  EXPECT_NE(test::ReadAll(iso).find("M02"), std::string::npos);
  EXPECT_EQ(Cli(config, {"send", iso, "--port", "/dev/no-such-port"}).status, kCliFailed);

  // Printer output through a raw queue.
  test::PrivateCups cups;
  if (!cups.ok()) GTEST_SKIP() << "no private print server: " << cups.why;
  run = Cli(config,
            {"--set", "MachineOutput=2", "--set", "MachinePrn=machine", "mill", kBoard, "-o", iso});
  ASSERT_EQ(run.status, kCliOk) << run.err;
  const std::string printed = Sent(iso, kPrinterLineLimit);
  EXPECT_TRUE(
      test::WaitFor([&] { return test::ReadAll(cups.output).size() >= printed.size(); }, 10000));
  EXPECT_EQ(test::ReadAll(cups.output), printed);
  EXPECT_EQ(Cli(config, {"send", iso, "--printer", "no-such-queue"}).status, kCliFailed);
}

}  // namespace
}  // namespace isolith
