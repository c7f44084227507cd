#include "output/PortParametersForm.h"

#include <algorithm>
#include <iterator>

#include "output/transfer/PortNames.h"

namespace isolith {

namespace {

// The row of `value` in `list`, or `fallback` when the value is not listed.
template <typename T, std::size_t N, typename V>
int RowOf(const T (&list)[N], V value, int fallback) {
  const auto at = std::find(std::begin(list), std::end(list), static_cast<T>(value));
  return at == std::end(list) ? fallback : static_cast<int>(at - std::begin(list));
}

}  // namespace

TDialogRS232::TDialogRS232(Settings& settings)
    : com(std::max(1, ComNumber(settings.MachinePort))),
      baudRow(RowOf(kBaudRates, settings.MachineBaudrate, 6)),
      parity(std::min<int>(settings.MachineParity, 3)),
      wordLengthRow(RowOf(kWordLengths, settings.MachineWordLength, 2)),
      stopBitsRow(RowOf(kStopBits, settings.MachineStopBits, 0)),
      cts(settings.MachineCTS),
      dsr(settings.MachineDSR),
      xoff(settings.MachineXoff),
      rts(std::min<int>(settings.MachineRTS, 3)),
      dtr(std::min<int>(settings.MachineDTR, 3)),
      settings_(settings) {}

bool TDialogRS232::Accept(Platform&) {
  Settings& s = settings_;
  s.MachinePort = "COM" + std::to_string(std::clamp(com, 1, kComPorts));
  s.MachineBaudrate = kBaudRates[std::clamp(baudRow, 0, 14)];
  s.MachineParity = static_cast<uint8_t>(std::clamp(parity, 0, 3));
  s.MachineWordLength = static_cast<uint8_t>(kWordLengths[std::clamp(wordLengthRow, 0, 2)]);
  s.MachineStopBits = static_cast<uint8_t>(kStopBits[std::clamp(stopBitsRow, 0, 2)]);
  s.MachineCTS = cts;
  s.MachineDSR = dsr;
  s.MachineXoff = xoff;
  s.MachineRTS = static_cast<uint8_t>(std::clamp(rts, 0, 3));
  s.MachineDTR = static_cast<uint8_t>(std::clamp(dtr, 0, 3));
  return true;
}

}  // namespace isolith
