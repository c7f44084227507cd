#include "params/SettingsKeys.h"

#include <climits>
#include <iterator>
#include <unordered_map>

#include "params/SettingsFile.h"
#include "params/SettingsFormats.h"

namespace isolith {

namespace {

// A member of the record, reachable from a const or a mutable record alike.
#define FIELD(member)    \
  [](auto& s) -> auto& { \
    return s.member;     \
  }

template <class Get>
SettingsKey Base(std::string name, const char* zeroText, Get get) {
  SettingsKey key;
  key.name = std::move(name);
  key.zeroText = zeroText;
  key.same = [get](const Settings& a, const Settings& b) { return get(a) == get(b); };
  key.copy = [get](Settings& to, const Settings& from) { get(to) = get(from); };
  return key;
}

template <class Get>
SettingsKey FloatKey(std::string name, Get get, float fallback, float minimum, float maximum,
                     const char* zeroText) {
  SettingsKey key = Base(name, zeroText, get);
  key.read = [=](Settings& s, std::string_view v) {
    get(s) = ReadFloatValue(v, fallback, minimum, maximum);
  };
  key.write = [=](std::string& out, const Settings& s) {
    WriteFloatLine(out, name, get(s), zeroText);
  };
  return key;
}

// A signed whole number of any width; the clamp keeps it within the member's type.
template <class Get>
SettingsKey IntKey(std::string name, Get get, int32_t fallback, int32_t minimum, int32_t maximum,
                   const char* zeroText) {
  SettingsKey key = Base(name, zeroText, get);
  key.read = [=](Settings& s, std::string_view v) {
    using T = std::remove_reference_t<decltype(get(s))>;
    get(s) = static_cast<T>(ReadIntValue(v, fallback, minimum, maximum));
  };
  key.write = [=](std::string& out, const Settings& s) {
    WriteIntLine(out, name, static_cast<int32_t>(get(s)), zeroText);
  };
  return key;
}

template <class Get>
SettingsKey UnsignedKey(std::string name, Get get, uint32_t fallback, uint32_t minimum,
                        uint32_t maximum, const char* zeroText) {
  SettingsKey key = Base(name, zeroText, get);
  key.read = [=](Settings& s, std::string_view v) {
    using T = std::remove_reference_t<decltype(get(s))>;
    get(s) = static_cast<T>(ReadUnsignedValue(v, fallback, minimum, maximum));
  };
  key.write = [=](std::string& out, const Settings& s) {
    WriteUnsignedLine(out, name, static_cast<uint32_t>(get(s)), zeroText);
  };
  return key;
}

// A tool: the file holds its number (index + 1, 0 for none), memory the index (-1 for none).
template <class Get>
SettingsKey ToolKey(std::string name, Get get, int32_t fallback, int32_t minimum) {
  SettingsKey key = Base(name, "0", get);
  key.read = [=](Settings& s, std::string_view v) {
    get(s) = ReadIntValue(v, fallback, minimum, 50) - 1;
  };
  key.write = [=](std::string& out, const Settings& s) {
    WriteIntLine(out, name, get(s) + 1, "0");
  };
  return key;
}

template <class Get>
SettingsKey YesNoKey(std::string name, Get get) {
  SettingsKey key = Base(name, nullptr, get);
  key.read = [=](Settings& s, std::string_view v) { ReadYesNoValue(v, get(s)); };
  key.write = [=](std::string& out, const Settings& s) { WriteYesNoLine(out, name, get(s)); };
  return key;
}

template <class Get>
SettingsKey ColourKey(std::string name, Get get) {
  SettingsKey key = Base(name, nullptr, get);
  key.read = [=](Settings& s, std::string_view v) { ReadColourValue(v, get(s)); };
  key.write = [=](std::string& out, const Settings& s) { WriteColourLine(out, name, get(s)); };
  return key;
}

// Text kept up to `limit` characters (the field's size).
template <class Get>
SettingsKey TextKey(std::string name, Get get, size_t limit = kMaxValueLength) {
  SettingsKey key = Base(name, nullptr, get);
  key.read = [=](Settings& s, std::string_view v) { get(s) = std::string(v.substr(0, limit)); };
  key.write = [=](std::string& out, const Settings& s) { WriteTextLine(out, name, get(s)); };
  return key;
}

template <class Get>
SettingsKey ImportFormatKey(std::string name, Get get, int32_t fallback) {
  SettingsKey key = Base(name, nullptr, get);
  key.read = [=](Settings& s, std::string_view v) { get(s) = ReadImportFormatValue(v, fallback); };
  key.write = [=](std::string& out, const Settings& s) {
    WriteImportFormatLine(out, name, get(s), fallback);
  };
  return key;
}

template <class Get>
SettingsKey OutputFormatKey(std::string name, Get get) {
  SettingsKey key = Base(name, nullptr, get);
  key.read = [=](Settings& s, std::string_view v) { get(s) = ReadOutputFormatValue(v); };
  key.write = [=](std::string& out, const Settings& s) {
    WriteOutputFormatLine(out, name, get(s));
  };
  return key;
}

// A key that is written for information and never read back.
SettingsKey WrittenOnly(std::string name, std::function<std::string(const Settings&)> text) {
  SettingsKey key;
  key.name = name;
  key.write = [name, text](std::string& out, const Settings& s) {
    WriteTextLine(out, name, text(s));
  };
  return key;
}

// The upper limit of a frame key: twice the screen's extent, or none without a screen.
int32_t FrameLimit(int screenExtent) {
  if (screenExtent <= 0 || screenExtent > INT32_MAX / 2) return INT32_MAX;
  return 2 * screenExtent;
}

template <class Get, class Extent>
SettingsKey FrameKey(std::string name, Get get, Extent extent) {
  SettingsKey key = Base(name, "0", get);
  key.read = [=](Settings& s, std::string_view v) {
    get(s) = ReadIntValue(v, 0, 0, FrameLimit(extent(s)));
  };
  key.write = [=](std::string& out, const Settings& s) { WriteIntLine(out, name, get(s), "0"); };
  return key;
}

// A unit: the text is the label, and picks the index; an unknown text changes nothing.
template <class Index, class Label>
SettingsKey UnitKey(std::string name, Index index, Label label, std::vector<std::string> texts) {
  SettingsKey key;
  key.name = name;
  key.read = [=](Settings& s, std::string_view v) {
    for (size_t i = 0; i < texts.size(); ++i) {
      if (v == texts[i]) {
        index(s) = static_cast<int>(i);
        label(s) = texts[i];
      }
    }
  };
  key.write = [=](std::string& out, const Settings& s) { WriteTextLine(out, name, label(s)); };
  key.same = [=](const Settings& a, const Settings& b) {
    return index(a) == index(b) && label(a) == label(b);
  };
  key.copy = [=](Settings& to, const Settings& from) {
    index(to) = index(from);
    label(to) = label(from);
  };
  return key;
}

// A dialect's extension history. A line goes to slot 1 unless that holds something, then to
// slot 2; `probeRow` is the row whose slot 1 is tested (its own, except for Pads, which tests
// the Protel row's on purpose). Only filled slots are written.
SettingsKey ExtensionKey(const std::string& prefix, int row, int probeRow) {
  const std::string name = prefix + "Extension";
  SettingsKey key;
  key.name = name;
  key.read = [=](Settings& s, std::string_view v) {
    const int slot = s.ImportFormat[probeRow].Extension[0].empty() ? 0 : 1;
    s.ImportFormat[row].Extension[slot] = std::string(v.substr(0, 3));
  };
  key.write = [=](std::string& out, const Settings& s) {
    for (const std::string& extension : s.ImportFormat[row].Extension) {
      if (!extension.empty()) WriteTextLine(out, name, extension);
    }
  };
  key.same = [=](const Settings& a, const Settings& b) {
    return a.ImportFormat[row].Extension == b.ImportFormat[row].Extension;
  };
  key.copy = [=](Settings& to, const Settings& from) {
    to.ImportFormat[row].Extension = from.ImportFormat[row].Extension;
  };
  return key;
}

void AddImportRow(std::vector<SettingsKey>& keys, const std::string& prefix, int row,
                  int probeRow) {
  auto get = [row](auto& s) -> auto& {
    return s.ImportFormat[row];
  };
  keys.push_back(ExtensionKey(prefix, row, probeRow));
  keys.push_back(FloatKey(
      prefix + "ScaleIn", [get](auto& s) -> auto& { return get(s).ScaleIn; }, 1, 0.0001f, 10000,
      "1"));
  if (row != kRowExcellon) {
    keys.push_back(FloatKey(
        prefix + "AperScaleIn", [get](auto& s) -> auto& { return get(s).AperScaleIn; }, 1, 0.001f,
        1000, "0.01"));
  }
  keys.push_back(FloatKey(
      prefix + "DrillScaleIn", [get](auto& s) -> auto& { return get(s).DrillScaleIn; }, 1, 0.001f,
      1000, "0.01"));
  keys.push_back(IntKey(
      prefix + "FlipXY", [get](auto& s) -> auto& { return get(s).FlipXY; }, 0, 0, 255, "0"));
}

// The recent files: each list fills its first free slot; a sixth entry is dropped. The three
// lines of every filled slot (a name that is not empty) are written by the RecentPath key.
std::vector<SettingsKey> RecentKeys() {
  SettingsKey path = Base("RecentPath", nullptr, FIELD(RecentPath));
  path.read = [](Settings& s, std::string_view v) {
    for (std::string& slot : s.RecentPath) {
      if (slot.empty()) {
        slot = std::string(v);
        return;
      }
    }
  };
  path.write = [](std::string& out, const Settings& s) {
    for (int slot = 0; slot < kRecentFiles; ++slot) {
      if (s.RecentName[slot].empty()) continue;
      WriteTextLine(out, "RecentPath", s.RecentPath[slot]);
      WriteTextLine(out, "RecentName", s.RecentName[slot]);
      WriteImportFormatLine(out, "RecentFormat", s.RecentFormat[slot], kFormatGerber);
    }
  };
  SettingsKey name = Base("RecentName", nullptr, FIELD(RecentName));
  name.read = [](Settings& s, std::string_view v) {
    for (std::string& slot : s.RecentName) {
      if (slot.empty()) {
        slot = std::string(v);
        return;
      }
    }
  };
  SettingsKey format = Base("RecentFormat", nullptr, FIELD(RecentFormat));
  format.read = [](Settings& s, std::string_view v) {
    for (int32_t& slot : s.RecentFormat) {
      if (slot == 0) {
        slot = ReadImportFormatValue(v, kFormatGerber);
        return;
      }
    }
  };
  return {path, name, format};
}

void AddExportFormat(std::vector<SettingsKey>& keys, const std::string& prefix,
                     std::string Settings::*extension, float Settings::*scale,
                     bool Settings::*flip) {
  keys.push_back(TextKey(
      prefix + "Extension", [extension](auto& s) -> auto& { return s.*extension; }));
  keys.push_back(FloatKey(
      prefix + "ScaleOut", [scale](auto& s) -> auto& { return s.*scale; }, 1, 0.001f, 1000,
      "0.01"));
  keys.push_back(YesNoKey(
      prefix + "FlipZOut", [flip](auto& s) -> auto& { return s.*flip; }));
}

std::vector<SettingsSection> BuildTable() {
  std::vector<SettingsSection> table;

  table.push_back(
      {"General",
       {WrittenOnly("Version", [](const Settings&) { return std::string("3"); }),
        WrittenOnly("Release", [](const Settings&) { return std::string("25/09/2008"); }),
        WrittenOnly("Language", [](const Settings&) { return std::string("ENGLISH"); })}});

  table.push_back({"System",
                   {WrittenOnly("OpSystem", [](const Settings& s) { return s.OpSystem; }),
                    WrittenOnly("Processor", [](const Settings& s) { return s.Processor; }),
                    WrittenOnly("PhysMemory", [](const Settings& s) { return s.PhysMemory; }),
                    WrittenOnly("Resolution",
                                [](const Settings& s) {
                                  return std::to_string(s.ScreenWidth) + "x" +
                                         std::to_string(s.ScreenHeight);
                                }),
                    IntKey("SysNumColors", FIELD(SysNumColors), 0, 0, 16777215, "0")}});

  {
    auto width = [](const Settings& s) { return s.ScreenWidth; };
    auto height = [](const Settings& s) { return s.ScreenHeight; };
    // The TopBarStyle line lands in ZapSound: the style itself keeps its start value for the
    // whole run and is written back from memory.
    SettingsKey topBar = IntKey("TopBarStyle", FIELD(ZapSound), 0, 0, 3, "0");
    topBar.write = [](std::string& out, const Settings& s) {
      WriteIntLine(out, "TopBarStyle", s.TopBarStyle, "0");
    };
    table.push_back({"Application",
                     {FrameKey("FrameWinX", FIELD(FrameWinX), width),
                      FrameKey("FrameWinY", FIELD(FrameWinY), height),
                      FrameKey("FrameWinW", FIELD(FrameWinW), width),
                      FrameKey("FrameWinH", FIELD(FrameWinH), height),
                      IntKey("ZapSound", FIELD(ZapSound), 0, 0, 255, "0"),
                      IntKey("BeepSound", FIELD(BeepSound), 0, 0, 255, "0"),
                      YesNoKey("ForceMouseWheel", FIELD(ForceMouseWheel)),
                      YesNoKey("ShowGrid", FIELD(ShowGrid)),
                      WrittenOnly("InstallPath", [](const Settings& s) { return s.InstallPath; }),
                      UnitKey("LengthUnit", FIELD(LengthUnit), FIELD(LengthUnitLabel),
                              {std::begin(kLengthUnitLabels), std::end(kLengthUnitLabels)}),
                      UnitKey("SpeedUnit", FIELD(SpeedUnit), FIELD(SpeedUnitLabel),
                              {std::begin(kSpeedUnitLabels), std::end(kSpeedUnitLabels)}),
                      topBar}});
  }

  table.push_back({"Colours",
                   {ColourKey("ClientBackground", FIELD(ClientBackground)),
                    ColourKey("ClientBorder", FIELD(ClientBorder)),
                    ColourKey("BoardBackground", FIELD(BoardBackground)),
                    ColourKey("BoardBorder", FIELD(BoardBorder)),
                    ColourKey("BoardThinLines", FIELD(BoardThinLines)),
                    ColourKey("BoardGrid", FIELD(BoardGrid)),
                    ColourKey("BoardTrace1", FIELD(BoardTrace1)),
                    ColourKey("BoardTrace2", FIELD(BoardTrace2)),
                    ColourKey("BoardTrace3", FIELD(BoardTrace3)),
                    ColourKey("ZoomSelect", FIELD(ZoomSelect)),
                    ColourKey("DisableSelect", FIELD(DisableSelect)),
                    ColourKey("BoardSelect", FIELD(BoardSelect)),
                    ColourKey("BoardHilight", FIELD(BoardHilight)),
                    ColourKey("BoardDrill", FIELD(BoardDrill)),
                    ColourKey("BoardContour", FIELD(BoardContour)),
                    ColourKey("BoardHatch", FIELD(BoardHatch)),
                    ColourKey("BoardOrigin", FIELD(BoardOrigin)),
                    ColourKey("BoardRefPad", FIELD(BoardRefPad)),
                    ColourKey("BoardFinalFg", FIELD(BoardFinalFg)),
                    ColourKey("BoardFinalBg", FIELD(BoardFinalBg)),
                    ColourKey("BoardFinalHole", FIELD(BoardFinalHole)),
                    ColourKey("BoardConnect1", FIELD(BoardConnect1)),
                    ColourKey("BoardConnect2", FIELD(BoardConnect2))}});

  {
    std::vector<SettingsKey> keys{
        TextKey("ImportPath", FIELD(ImportPath)),
        ImportFormatKey("LayerImportFormat", FIELD(LayerImportFormat), kFormatGerber),
        ImportFormatKey("DrillImportFormat", FIELD(DrillImportFormat), kFormatExcellon1)};
    const char* prefixes[kImportRows] = {"Grb", "Ars", "Eag", "Orc", "Osm",
                                         "Pds", "Wiz", "Ptl", "Wty", "Exl"};
    for (int row = 0; row < kImportRows; ++row) {
      AddImportRow(keys, prefixes[row], row, row == kRowPads ? kRowProtel : row);
    }
    keys.push_back(YesNoKey("ExlRelative", FIELD(ExlRelative)));
    keys.push_back(YesNoKey("ExlMetric", FIELD(ExlMetric)));
    keys.push_back(YesNoKey("ExlDigitSet", FIELD(ExlDigitSet)));
    keys.push_back(FloatKey("ExlDigits", FIELD(ExlDigits), 3.2f, -9.9f, 9.9f, "3.2"));
    for (SettingsKey& key : RecentKeys()) keys.push_back(std::move(key));
    keys.push_back(YesNoKey("AutoReframe", FIELD(AutoReframe)));
    keys.push_back(YesNoKey("DetectGndPlanes", FIELD(DetectGndPlanes)));
    keys.push_back(YesNoKey("DetectCutOut", FIELD(DetectCutOut)));
    keys.push_back(YesNoKey("ModernImport", FIELD(ModernImport)));
    keys.push_back(FloatKey("ArcTolerance", FIELD(ArcTolerance), 0.01f, 0.0001f, 1.0f, "0.01"));
    table.push_back({"Imports", std::move(keys)});
  }

  {
    std::vector<SettingsKey> keys{
        TextKey("ExportPath", FIELD(ExportPath)),
        OutputFormatKey("ExportFormat", FIELD(ExportFormat)),
        YesNoKey("ExportArcs", FIELD(ExportArcs)),
        YesNoKey("ExportInit", FIELD(ExportInit)),
        YesNoKey("ExportZCoords", FIELD(ExportZCoords)),
        YesNoKey("ExportSpeeds", FIELD(ExportSpeeds)),
        FloatKey("ExportClearHeight", FIELD(ExportClearHeight), 1, 0.001f, 1000, "1"),
        FloatKey("ExportZeroHeight", FIELD(ExportZeroHeight), 0, -10, 1000, "0"),
        IntKey("ExportClearSpeed", FIELD(ExportClearSpeed), 0, 0, 60000, "0"),
        TextKey("PltExtension", FIELD(PltExtension))};
    // Read, never written.
    SettingsKey pltScale = FloatKey("PltScaleOut", FIELD(PltScaleOut), 1, 0.001f, 1000, nullptr);
    pltScale.write = nullptr;
    keys.push_back(std::move(pltScale));
    AddExportFormat(keys, "Dxf", &Settings::DxfExtension, &Settings::DxfScaleOut,
                    &Settings::DxfFlipZOut);
    AddExportFormat(keys, "Ncp", &Settings::NcpExtension, &Settings::NcpScaleOut,
                    &Settings::NcpFlipZOut);
    AddExportFormat(keys, "Iso", &Settings::IsoExtension, &Settings::IsoScaleOut,
                    &Settings::IsoFlipZOut);
    AddExportFormat(keys, "Num", &Settings::NumExtension, &Settings::NumScaleOut,
                    &Settings::NumFlipZOut);
    AddExportFormat(keys, "Cm3", &Settings::Cm3Extension, &Settings::Cm3ScaleOut,
                    &Settings::Cm3FlipZOut);
    AddExportFormat(keys, "Egx", &Settings::EgxExtension, &Settings::EgxScaleOut,
                    &Settings::EgxFlipZOut);
    AddExportFormat(keys, "Sml", &Settings::SmlExtension, &Settings::SmlScaleOut,
                    &Settings::SmlFlipZOut);
    AddExportFormat(keys, "Cbr", &Settings::CbrExtension, &Settings::CbrScaleOut,
                    &Settings::CbrFlipZOut);
    AddExportFormat(keys, "Ppr", &Settings::PprExtension, &Settings::PprScaleOut,
                    &Settings::PprFlipZOut);
    table.push_back({"Exports", std::move(keys)});
  }

  {
    std::vector<SettingsKey> keys{IntKey("SingleSequence", FIELD(SingleSequence), 0, 0, 3, "0"),
                                  IntKey("RunChain", FIELD(RunChain), 0, 0, 1, "0")};
    for (int i = 0; i < kSequenceSlots; ++i) {
      keys.push_back(IntKey(
          "MultiSequence" + std::to_string(i + 1),
          [i](auto& s) -> auto& { return s.MultiSequence[i]; }, 0, 0, 18, "0"));
    }
    for (int i = 0; i < kSequenceSlots; ++i) {
      keys.push_back(IntKey(
          "MultiMirror" + std::to_string(i + 1), [i](auto& s) -> auto& { return s.MultiMirror[i]; },
          0, 0, 10, "0"));
    }
    std::vector<SettingsKey> more{
        YesNoKey("FastCalcul", FIELD(FastCalcul)),
        ToolKey("MillingTool", FIELD(MillingTool), 0, 0),
        FloatKey("MillingDepth", FIELD(MillingDepth), 0.01f, 0.01f, 100, "0.01"),
        FloatKey("MillingMargin", FIELD(MillingMargin), 0, -100, 100, "0"),
        UnsignedKey("MillingSpeed", FIELD(MillingSpeed), 600, 6, 6000, "6"),
        IntKey("MillingDir", FIELD(MillingDir), 1, -1, 1, "1"),
        IntKey("MillingNb1", FIELD(MillingNb1), 1, 1, 10, "1"),
        IntKey("MillingNb2", FIELD(MillingNb2), 0, 0, 10, "0"),
        YesNoKey("MillingOptim", FIELD(MillingOptim)),
        ToolKey("HatchingTool", FIELD(HatchingTool), 0, 0),
        FloatKey("HatchingDepth", FIELD(HatchingDepth), 0.01f, 0.01f, 100, "0.01"),
        FloatKey("HatchingMargin", FIELD(HatchingMargin), 0, -100, 100, "0"),
        UnsignedKey("HatchingSpeed", FIELD(HatchingSpeed), 600, 6, 6000, "6"),
        YesNoKey("HatchingLink", FIELD(HatchingLink)),
        ToolKey("CuttingTool", FIELD(CuttingTool), 0, 0),
        FloatKey("CuttingDepth", FIELD(CuttingDepth), 0.01f, 0.01f, 100, "0.01"),
        IntKey("CuttingDir", FIELD(CuttingDir), 1, -1, 1, "1"),
        UnsignedKey("CuttingSpeed", FIELD(CuttingSpeed), 300, 6, 6000, "6"),
        FloatKey("CuttingTabs", FIELD(CuttingTabs), 2, 1, 10, "1"),
        ToolKey("PlottingTool", FIELD(PlottingTool), 0, 0),
        FloatKey("PlottingDepth", FIELD(PlottingDepth), 0.01f, 0.01f, 100, "0.01"),
        IntKey("DrillingMode", FIELD(DrillingMode), 0, 0, 3, "0"),
        ToolKey("DrillingTool", FIELD(DrillingTool), 1, 1)};
    for (SettingsKey& key : more) keys.push_back(std::move(key));
    for (int i = 0; i < kSequenceSlots; ++i) {
      keys.push_back(ToolKey(
          "DrillingLib" + std::to_string(i + 1), [i](auto& s) -> auto& { return s.DrillingLib[i]; },
          0, 0));
    }
    SettingsKey boringDir = WrittenOnly("BoringDir", [](const Settings&) { return std::string(); });
    boringDir.write = [](std::string& out, const Settings& s) {
      WriteIntLine(out, "BoringDir", s.BoringDir, "-1");
    };
    std::vector<SettingsKey> last{
        FloatKey("DrillingDepth", FIELD(DrillingDepth), 0.01f, 0.01f, 100, "0.01"),
        YesNoKey("DrillingOptim", FIELD(DrillingOptim)),
        YesNoKey("BoringDrills", FIELD(BoringDrills)),
        FloatKey("BoringThreshold", FIELD(BoringThreshold), 0, 0, 10, "0"),
        boringDir,
        UnsignedKey("BoringSpeed", FIELD(BoringSpeed), 300, 6, 6000, "6"),
        IntKey("CalculationThreads", FIELD(CalculationThreads), 2, 1, 2, "2")};
    for (SettingsKey& key : last) keys.push_back(std::move(key));
    table.push_back({"Toolset", std::move(keys)});
  }

  table.push_back(
      {"Machine",
       {OutputFormatKey("MachineFormat", FIELD(MachineFormat)),
        IntKey("MachineOutput", FIELD(MachineOutput), 0, 0, 3, "0"),
        YesNoKey("MachineSetSeq", FIELD(MachineSetSeq)),
        YesNoKey("MachineArcs", FIELD(MachineArcs)),
        YesNoKey("MachineOutZ", FIELD(MachineOutZ)),
        YesNoKey("MachineOutV", FIELD(MachineOutV)),
        FloatKey("MachineScaleXY", FIELD(MachineScaleXY), 1, -1000, 1000, "1"),
        FloatKey("MachineScaleZ", FIELD(MachineScaleZ), 0, -1000, 1000, "0"),
        FloatKey("MachineScaleVxy", FIELD(MachineScaleVxy), 0, -1000, 1000, "0"),
        FloatKey("MachineScaleVz", FIELD(MachineScaleVz), 0, -1000, 1000, "0"),
        TextKey("MachinePrn", FIELD(MachinePrn), 100),
        TextKey("MachineRun", FIELD(MachineRun), 255),
        TextKey("MachineFile", FIELD(MachineFile), 255),
        TextKey("MachinePort", FIELD(MachinePort), kMachinePortLength),
        UnsignedKey("MachineBaudrate", FIELD(MachineBaudrate), 110, 9600, 256000, "9600"),
        IntKey("MachineParity", FIELD(MachineParity), 0, 0, 2, "0"),
        IntKey("MachineWordLength", FIELD(MachineWordLength), 8, 7, 8, "8"),
        IntKey("MachineStopBits", FIELD(MachineStopBits), 1, 1, 2, "1"),
        YesNoKey("MachineCTS", FIELD(MachineCTS)),
        YesNoKey("MachineDSR", FIELD(MachineDSR)),
        YesNoKey("MachineXoff", FIELD(MachineXoff)),
        IntKey("MachineRTS", FIELD(MachineRTS), 0, 0, 3, "0"),
        IntKey("MachineDTR", FIELD(MachineDTR), 0, 0, 3, "0"),
        IntKey("MachineEol", FIELD(MachineEol), 0, 0, 3, "0")}});

  return table;
}

#undef FIELD

}  // namespace

const std::vector<SettingsSection>& SettingsTable() {
  static const std::vector<SettingsSection> table = BuildTable();
  return table;
}

const SettingsKey* FindSettingsKey(std::string_view upperKey) {
  static const std::unordered_map<std::string, const SettingsKey*> index = [] {
    std::unordered_map<std::string, const SettingsKey*> byName;
    for (const SettingsSection& section : SettingsTable()) {
      for (const SettingsKey& key : section.keys) byName.emplace(UpperAscii(key.name), &key);
    }
    return byName;
  }();
  const auto found = index.find(std::string(upperKey));
  return found == index.end() ? nullptr : found->second;
}

bool SplitApertureKey(std::string_view upperKey, int& field, int& code) {
  static constexpr std::string_view kPrefixes[] = {"PADSHAPE", "PADSIZEX", "PADSIZEY", "PADDRILL",
                                                   "TRACKWIDTH"};
  for (int i = 0; i < 5; ++i) {
    if (upperKey.substr(0, kPrefixes[i].size()) == kPrefixes[i]) {
      field = i;
      code = ReadIntValue(upperKey.substr(kPrefixes[i].size()), 0, INT32_MIN, INT32_MAX);
      return true;
    }
  }
  return false;
}

namespace {

std::string Clean(std::string_view text, size_t limit) {
  std::string clean;
  for (char ch : text) {
    if (static_cast<unsigned char>(ch) < 32) continue;
    if (clean.size() >= limit) break;
    clean.push_back(ch);
  }
  return clean;
}

}  // namespace

std::string ReaderKey(std::string_view key) {
  return UpperAscii(Clean(key, kMaxKeyLength));
}

std::string ReaderValue(std::string_view value) {
  return Clean(value, kMaxValueLength);
}

}  // namespace isolith
