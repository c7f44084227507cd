// "RS-232 settings" as a form: the serial port "COM1".."COM32" and its parameters, the rate from
// the list of standard rates, parity, word length, stop bits and the flow controls. Its OK
// stores them in the settings, the port as "COMn" whatever name stood before.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/platform/Platform.h"
#include "params/Settings.h"

namespace isolith {

class TDialogRS232 : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "RS-232 settings";
  static constexpr uint32_t kBaudRates[15] = {110,   300,   600,    1200,   2400,
                                              4800,  9600,  14400,  19200,  38400,
                                              56000, 57600, 115200, 128000, 256000};
  static constexpr std::string_view kParities[4] = {"None", "Odd", "Even", "Mark"};
  static constexpr int kWordLengths[3] = {6, 7, 8};
  // The stop-bit list and the values it stores: 15 is one and a half.
  static constexpr std::string_view kStopBitTexts[3] = {"1", "1.5", "2"};
  static constexpr int kStopBits[3] = {1, 15, 2};
  static constexpr std::string_view kLineControls[4] = {"Null", "Disable", "Enable", "Handsh."};

  explicit TDialogRS232(Settings& settings);
  std::string_view FormName() const override { return "TDialogRS232"; }

  // Stores every value; the rows of the lists are taken as they stand (the view offers no other).
  bool Accept(Platform& platform) override;

  int com = 1;      // 1..32
  int baudRow = 6;  // row of kBaudRates (9600)
  int parity = 0;   // row of kParities
  int wordLengthRow = 2;
  int stopBitsRow = 0;
  bool cts = false, dsr = false, xoff = true;
  int rts = 0, dtr = 0;  // rows of kLineControls

 private:
  Settings& settings_;
};

}  // namespace isolith
