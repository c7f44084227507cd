// "Output data format" as a form: the format the Mill command writes, whether it writes the
// sections of "Final output" or the active layer, the machine scales, the clearance of the tool,
// and the file it creates with the program run after it. The user's own format is edited from
// here ("Post-processor format").
// Where the finished file goes: kept (and a program run over it), printed raw on a printer
// queue, or sent to a port with the parameters of "RS-232 settings".
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/Platform.h"
#include "output/postprocessor/PostProcessor.h"
#include "output/postprocessor/ShippedPostProcessors.h"
#include "params/Settings.h"

namespace isolith {

// One row of the format list: the format code and the text the list shows; a shipped
// post-processor (code 33) carries its name.
struct TOutputFormatChoice {
  int code = 0;
  std::string label;
  std::string shipped;
};

// The `MachineOutput` values: "Create file", "Call printer driver", "Send directly to the
// machine".
inline constexpr int kMachineOutputFile = 1;
inline constexpr int kMachineOutputPrinter = 2;
inline constexpr int kMachineOutputPort = 3;

class TDialogCopOutput : public DialogForm {
 public:
  static constexpr std::string_view kTitle = "Output data format";
  static constexpr std::string_view kSectionsText = "Manual selection of layers and tools";
  static constexpr std::string_view kLayerText = "Classical export of current layer";
  static constexpr std::string_view kArcsText = "Use circular interpolation commands";
  // The command proposed to run after the file is written: the desktop's own text viewer.
  static constexpr std::string_view kProposedRun = "xdg-open";
  static constexpr std::string_view kShippedMark = " (shipped)";
  static constexpr std::string_view kShippedNeedsSections =
      "The shipped post-processors write the sections of \"Manual selection of layers and "
      "tools\" only.";
  // The formats of the list, in list order; the last is the user's own.
  static constexpr int kFormats[] = {2, 4, 9, 11, 5, 19, 20, 21, 22, 33};

  enum Field {
    kNoField,
    kPort,
    kScaleXY,
    kScaleZ,
    kScaleVxy,
    kScaleVz,
    kClearHeight,
    kZeroHeight,
    kClearSpeed,
  };

  // Fills the fields from the settings and builds the format list (BuildFormatList). `folder`
  // holds "Isolith.ppf"; `proposedName` is the file proposed, without its extension, while no
  // output was ever chosen and no file is named. `saveSettings`
  // writes the settings file after "Post-processor format" changed the remembered extension
  // (may be empty). `separator` is the locale's decimal mark. `shipped` are the post-processors
  // that come with the program, listed after the user's own.
  // `printers` is the printer list (the system's default first): the choice is `MachinePrn`,
  // else the first whose name holds "ROLAND", else the default.
  TDialogCopOutput(Settings& settings, TPostProcessor& pp, std::string folder,
                   const std::string& proposedName, std::function<void()> saveSettings,
                   char separator, std::vector<TShippedPostProcessor> shipped = {},
                   std::vector<std::string> printers = {});

  std::string_view FormName() const override { return "TDialogCopOutput"; }

  std::vector<TOutputFormatChoice> formats;  // the list, in list order
  int format = 9;                            // the code chosen
  std::string shippedChoice;  // the shipped post-processor chosen, empty for the others
  bool sections = true;       // kSectionsText (true) or kLayerText
  bool arcs = true;           // kArcsText
  std::string scaleXY, scaleZ, scaleVxy, scaleVz;  // "XY scale", "Z scale", ...
  std::string clearHeight;                         // "Tool clearance &height :", mm
  std::string zeroHeight;                          // "Surface contact &margin :", mm
  std::string clearSpeed;  // "Cleared tool &rapid speed :", in the speed unit
  std::string file;        // "Create file"
  std::string run;         // "then execute"
  Field focus = kNoField;

  // Where the file goes, the radio buttons "Create file", "Call printer driver" and "Send
  // directly to the machine" (kMachineOutputFile ..).
  int output = kMachineOutputFile;
  std::vector<std::string> printers;  // the printer list, the system's default first
  std::string printer;                // the printer chosen
  std::vector<std::string> ports;     // "LPT1".."LPT3", then "COM1".."COM32"
  std::string port;                   // the port chosen, or a device path typed
  int lineEnd = 1;                    // "Line end": kLineEnds
  static constexpr std::string_view kLineEnds[4] = {"None", "CR", "LF", "CR/LF"};
  static constexpr std::string_view kOutputTexts[3] = {"Create file", "Call printer driver",
                                                       "Send directly to the machine"};
  static constexpr std::string_view kPortTooLong =
      "A port is named by at most 10 characters (\"COM1\", \"LPT2\" or a device path such as "
      "\"/dev/ttyS0\").";

  // Reads "Isolith.ppf" (what memory holds stays when it cannot be read) and builds the list:
  // each format's title, the user's own as "Post-processor" and its title in double quotes,
  // then each shipped post-processor the same way, marked kShippedMark.
  void BuildFormatList();
  // A row of the list chosen: its format as ChooseFormat chooses it; a shipped post-processor
  // also takes the sections (the only walk that writes it as it is meant) and gives the file
  // its extension.
  void ChooseRow(size_t row);
  // The row of the present choice.
  size_t SelectedRow() const;
  // A format chosen in the list: the four scales back to 1 and arcs on; the Roland formats take
  // their rapid speed (900 and 3000 mm/min) and the sections; the file name takes the format's
  // extension.
  void ChooseFormat(int code);
  // The ">" button beside the format: only for the user's own format.
  bool PostProcessorEnabled() const;
  // ">": "Post-processor format" over the user's format; on OK the file is written, the
  // remembered extension saved, the list rebuilt and, for the user's format, the file name
  // given its extension. True when confirmed.
  bool EditPostProcessor(Platform& platform);

  // "Parameters...": "RS-232 settings" over the port parameters; its OK stores them with the port
  // it names, which becomes the choice here. True when confirmed.
  bool EditPortParameters(Platform& platform);

  // Checks the scales (-1000 to 1000), the clearance height and margin (-10 to 1000 mm), the
  // rapid speed and, for the port, its name (10 characters at most), then stores everything:
  // `MachineOutput` by the radio buttons, the file and command only for "Create file", the
  // printer only for "Call printer driver", the port and line end only for "Send directly to the
  // machine". A shipped
  // post-processor needs the sections, and is copied into "Isolith.ppf" (after asking, when
  // the user's own file stands there) to become the user's format.
  bool Accept(Platform& platform) override;

 private:
  std::string FormatExtension(int code) const;
  // The shipped post-processor chosen, read and copied into "Isolith.ppf"; false when the
  // person keeps their own or the copy fails.
  bool ImportShipped(Platform& platform);

  Settings& settings_;
  TPostProcessor& pp_;
  std::string folder_;
  std::function<void()> saveSettings_;
  char separator_;
  std::vector<TShippedPostProcessor> shipped_;
};

// `path` with its extension replaced by `extension` (or given one when it has none).
std::string WithExtension(const std::string& path, const std::string& extension);

}  // namespace isolith
