// "Torvane.cnc": every key written and read back byte for byte, the reader's clamps and rules,
// the catalogue names, and files that are missing, damaged or cannot be written.
#include "params/MachineParameters.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "params/MachineCatalogue.h"
#include "params/MachineKeys.h"
#include "support/TempFolder.h"

namespace isolith {
namespace {

using test::ReadAll;
using test::TempFolder;

// A value other than the initial one, in the form the key's type reads.
std::string ChangedValue(const MachineKey& key, int i) {
  switch (key.type) {
    case MachineKeyType::Text:
      return "T" + std::to_string(i) + " x";
    case MachineKeyType::Int:
    case MachineKeyType::Unsigned:
      return std::to_string(5 + i % 2);
    case MachineKeyType::Float:
      return i % 2 ? "6.25" : "5.5";
    case MachineKeyType::YesNo:
      return std::string(key.initial) == "Yes" ? "No" : "Yes";
    case MachineKeyType::Hex:
      return "0x0000A" + std::to_string(100 + i);
  }
  return {};
}

TEST(MachineParameters, EveryKeyIsWrittenAndReadBackByteForByte) {
  TempFolder folder;
  MachineParameters changed;
  const auto keys = MachineKeys();
  for (size_t i = 0; i < keys.size(); ++i) {
    if (std::string(keys[i].name) == "MachineId") continue;  // its read resets the spindle
    ASSERT_TRUE(changed.Set(keys[i].name, ChangedValue(keys[i], static_cast<int>(i))));
  }
  changed.Set("MachineId", "Isel-Automation / IT-108");
  for (const MachineParameters& machine : {MachineParameters(), changed}) {
    ASSERT_TRUE(WriteMachine(folder.path(), kMachineBaseName, machine));
    const std::string file = ReadAll(folder.path() + "Torvane.cnc");
    EXPECT_EQ(file, FormatMachine(machine));
    MachineParameters back;
    ASSERT_TRUE(ReadMachine(folder.path(), kMachineBaseName, back));
    EXPECT_EQ(back.Values(), machine.Values());
    EXPECT_EQ(FormatMachine(back), file);
  }
  // Every key stands in the file once, under its section, the first section at the top.
  const std::string file = FormatMachine(changed);
  EXPECT_EQ(file.rfind("[External Driver]\r\nExternalDriver=Yes\r\n", 0), 0u);
  EXPECT_NE(file.find("\r\n\r\n[Solectro]\r\n"), std::string::npos);
  size_t lines = 0;
  for (char c : file) lines += c == '\n';
  EXPECT_EQ(lines, keys.size() + 24 * 2 - 1);  // keys, section lines, blank lines between
}

TEST(MachineParameters, TheReaderClampsNamesAndComparesTheAxes) {
  struct Case {
    const char* text;
    const char* key;
    const char* value;
  } cases[] = {
      {"NUMBEROFAXES=9\n", "NumberOfAxes", "6"},
      {"numberofaxes=0\n", "NumberOfAxes", "3"},  // no number: the initial value
      {"XAxisLength=1\n", "XAxisLength", "5"},
      {"XAxisLength=12.75mm\n", "XAxisLength", "12.75"},
      {"ExternalDriver=yes\n", "ExternalDriver", "Yes"},
      {"ExternalDriver=maybe\n", "ExternalDriver", "No"},
      {"HomeOutputs=0x1F\n", "HomeOutputs", "0x0000001F"},
      {"HomeOutputs=0xZZ\n", "HomeOutputs", "0x00000000"},
      {"ComSpeed=115200\n", "ComSpeed", "115200"},
      {"ComPort=COM3\nLast=1", "ComPort", "COM3"},
      {"ComPort=COM3", "ComPort", "COM1"},  // a last line without its line end does not count
      {"NoSuchKey=1\n\x01\x02\xff=\n", "ComPort", "COM1"},
  };
  for (const Case& c : cases) {
    MachineParameters m;
    ReadMachineText(c.text, m);
    EXPECT_EQ(m.Text(c.key), c.value) << c.text;
  }

  // Names to numbers and back, separators inside the names included.
  struct Name {
    const char* stored;
    int number;
    const char* shown;
  } names[] = {
      {"ISEL-AUTOMATION / it-108", 962, "Isel-Automation / IT-108"},
      {"Sigea / Art'Tech / A2-98 / Art'Tech", 1497, "Sigea / Art'Tech / A2-98 / Art'Tech"},
      {"(Not listed) / No machine", 0, "(Not listed) / No machine"},
      {"Nobody / Nothing", -1, ""},
  };
  for (const Name& n : names) {
    MachineParameters m;
    m.Set("SpindleCycle", "7");
    m.Set("MachineId", n.stored);
    EXPECT_EQ(m.machineNumber, n.number) << n.stored;
    EXPECT_EQ(m.Text("SpindleCycle"), "0") << "the spindle starts from the machine's defaults";
    if (n.number >= 0) {
      EXPECT_EQ(MachineName(n.number), n.shown);
    }
  }
  std::string text;
  CatalogueName(CatalogueList::ControllerMakers, 700, text);
  CatalogueName(CatalogueList::Controllers, 726, text, true);
  EXPECT_EQ(text, "Isel-AutomationIT-108");
  EXPECT_EQ(ControllerNumberOf("isel-automation / it-108"), 726);

  // Steps of 0.01 mm on X and 0.0095 on Y: more than 2 % apart.
  TempFolder folder;
  std::ofstream(folder.path() + "Torvane.cnc")
      << "XAxisScrew=4\r\nXAxisPulses=400\r\nYAxisScrew=3.8\r\nYAxisPulses=400\r\n";
  MachineParameters m;
  ASSERT_TRUE(ReadMachine(folder.path(), kMachineBaseName, m));
  EXPECT_FALSE(m.equalAxes);
}

TEST(MachineParameters, AMissingDamagedOrUnwritableFileLosesNothing) {
  TempFolder folder;
  MachineParameters m;
  m.Set("ExternalDriver", "Yes");
  EXPECT_FALSE(ReadMachine(folder.path(), kMachineBaseName, m));
  EXPECT_TRUE(m.Flag("ExternalDriver"));

  // Random bytes: whatever they hold, each value stays in its key's form.
  std::mt19937 random(7);
  std::string noise(20000, '\0');
  for (char& c : noise) c = static_cast<char>(random() % 96 < 4 ? '\n' : random());
  std::ofstream(folder.path() + "Torvane.cnc", std::ios::binary) << noise;
  ASSERT_TRUE(ReadMachine(folder.path(), kMachineBaseName, m));
  MachineParameters again;
  ReadMachineText(FormatMachine(m), again);
  EXPECT_EQ(again.Values(), m.Values());

  // A folder that cannot take the file: false, and the old file stands.
  ASSERT_TRUE(WriteMachine(folder.path(), kMachineBaseName, m));
  const std::string before = ReadAll(folder.path() + "Torvane.cnc");
  std::filesystem::permissions(
      folder.path(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  const bool written = WriteMachine(folder.path(), kMachineBaseName, MachineParameters());
  std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
  if (::geteuid() != 0) {
    EXPECT_FALSE(written);  // the superuser writes anywhere
  }
  if (!written) {
    EXPECT_EQ(ReadAll(folder.path() + "Torvane.cnc"), before);
  }
  EXPECT_FALSE(WriteMachine(folder.path() + "missing/", kMachineBaseName, m));
}

}  // namespace
}  // namespace isolith
