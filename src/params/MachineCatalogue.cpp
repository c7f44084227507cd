#include "params/MachineCatalogue.h"

#include <iterator>

#include "params/SettingsFile.h"

namespace isolith {

namespace {

constexpr const char* kMakers[] = {
    "(Not listed)",
    "AeroFun",
    "AxeMotion",
    "BLS",
    "Charlyrobot",
    "CIF",
    "Colinbus",
    "FWD",
    "GravoGraph",
    "Isel-Automation",
    "ProMa-SysTro",
    "Max-Computer",
    "R&D LAB",
    "Roland DG",
    "Sigea / Art'Tech",
    "Solectro",
    "Soprolec",
    "Suregrave",
    "Techno-Isel",
    "Technologie Services",
    "Unimatic Engineers",
    "Vectis",
};

constexpr const char* kMachines[] = {
    "No machine",
    "Unlisted model",
    "Pegasus 1000",
    "Pegasus 1500",
    "Pegasus 2500",
    "Medium",
    "SM-300 Stepper",
    "SM-300 Servo",
    "SM-400 Stepper",
    "SM-400 Servo",
    "Visio F",
    "SML-3",
    "SML-4",
    "InterpCNC",
    "4 axis rack",
    "Excalibur",
    "Gryphon",
    "Wizzard",
    "DaVinci",
    "RoboTech 2",
    "RoboTech 3",
    "RoboTech 4",
    "RoboTech 5",
    "CNC 4",
    "eduCAM 10",
    "eduCAM 20",
    "eduCAM 20 Pro",
    "eduCAM 30",
    "eduCAM 30 Pro",
    "eduCAM 40",
    "eduCAM 40 Pro",
    "eduCAM 44",
    "eduCAM 50",
    "eduCAM 55",
    "Flatbed Table 2040",
    "Flatbed Table 2054",
    "Flatbed Table 2067",
    "Flatbed Table 2179",
    "Flatbed Table 2104",
    "Flatbed Table 2130",
    "Multi-K",
    "CR-A2",
    "CR-A3",
    "CR-A4",
    "Table 246201-2179",
    "Table 246201-2104",
    "Table 246201-2130",
    "C-10",
    "C-116",
    "C-142",
    "C-142 IV",
    "IMC4",
    "IMC4-M",
    "IML4",
    "CSD-315",
    "CSD-315 / AxeMotion",
    "CSD 405-IMC",
    "CSI 464-IML",
    "IMS6",
    "ICP-2015",
    "ICP-3020",
    "ICP-4030",
    "IT-108",
    "IT-116",
    "CNC API",
    "Kosy2 / A5",
    "Kosy2 / A4",
    "Kosy2 / A3",
    "Kosy2 / A1",
    "Kosy2 / Massive-A4",
    "Kosy2 / Massive-A3",
    "Kosy2 / Massive-A3/L",
    "Kosy2 / Not listed",
    "CAMM-2",
    "CAMM-3",
    "EGX-20",
    "EGX-30",
    "EGX-300",
    "EGX-400",
    "EGX-600",
    "MDX-15",
    "MDX-20",
    "MDX-40",
    "MDX-540",
    "CNC",
    "MiniMill/TW",
    "MiniMill/AW",
    "MiniMill/AW1",
    "MiniMill/AW2",
    "CNCfun",
    "PulseMaker",
    "PulseBox",
    "FlatBox",
    "PowerStep",
    "Mini-Isel",
    "A2-97 / Vectis",
    "A4-97 / Vectis",
    "A2-98 / Art'Tech",
    "A4-98 / Art'Tech",
    "Abaqueplast Special",
    "PSI Special",
    "TechnoDrill",
    "Profiler",
    "Art-Kad",
    "LogicDrill",
    "ColorClip",
    "Flatbed",
    "IS Series",
    "CNC-Pure 1 / AxeMotion",
    "CNC-Pure 2 / AxeMotion",
    "Compact IMS6",
    "CPM-2018",
    "CPM-3020",
    "CPM-4030",
    "GFM-4433",
    "GFM-4473",
    "GFS-4433",
    "GFS-4473",
    "CPV-4030",
    "GPV-4830",
    "GFV-4433",
    "GFV-4473",
    "GFV-6852",
    "GFV-10262",
    "GFV-142102",
    "GFV-142232",
    "EP-1090",
    "EP-1090 IV",
    "FlatCom 10",
    "FlatCom 20",
    "FlatCom 30",
    "FlatCom 40",
    "Table 246201-2040",
    "Table 246201-2054",
    "Table 246201-2067",
};

constexpr const char* kControllerMakers[] = {
    "No CNC",        "AeroFun",         "AxeMotion",
    "CIF",           "Colinbus",        "Electronique Diffusion",
    "FWD",           "Isel-Automation", "Max-Computer",
    "ProMa-SysTro",  "Roland DG",       "R&D LAB",
    "SM-Motion",     "Solectro",        "Soprolec",
    "Stelec-Export", "Suregrave",       "TechLF",
    "Generic",       "(Beta-test)",
};

constexpr const char* kControllers[] = {
    "No CNC",
    "CNCfun",
    "PulseMaker",
    "PulseBox",
    "FlatBox",
    "PowerStep",
    "IMC-PlugIn",
    "CSD-PlugIn",
    "(AxMo-Pulsar)",
    "TechnoDrill",
    "CBR",
    "KIER-502",
    "LogicDrill",
    "C-10",
    "C-116",
    "C-142",
    "C-142 IV",
    "EP-1090",
    "EP-1090 IV",
    "IMC4",
    "IMC4-M",
    "CSD-315",
    "CSD 405-IMC",
    "CSI 464-IML",
    "IML4",
    "IMS6",
    "IT-108",
    "IT-116",
    "CNC API",
    "Kosy2",
    "RDGL (1/40 mm)",
    "RDGL (1/100 mm)",
    "CNC",
    "RM-CNTRL",
    "SM-300 Stepper",
    "SM-300 Servo",
    "SM-400 Stepper",
    "SM-400 Servo",
    "SML-3",
    "SML-4",
    "InterpCNC",
    "4 axis rack",
    "CTL-PER",
    "SML",
    "CNC-8AM",
    "CNC-4AX",
    "CNC-4BX",
    "CPU-4BX",
    "Customised",
    "HPGL-2D",
    "HPGL-2\xC2\xBD"
    "D",
    "ISO",
    "NUM",
    "NCP",
    "Post-Pro",
    "ISO standard",
};

constexpr const char* kSpindles[] = {
    "No spindle",
    "On/Off output spindle",
    "Flip/Flop pulse spindle",
    "PWM output spindle",
    "Analog output spindle",
    "Multi-outputs spindle",
    "Machine standard spindle",
    "Isel / On-Off pulse 4-3",
    "Isel / EP h1-h0",
    "Isel / FC-1200 via API",
    "Isel / FC-1200 via serial port",
    "Isel / KEB analog",
    "Laser head cutter",
    "High pressure water jet",
    "Liquid dispensing nose",
    "Hot wire cutter for polystyrene ",
    "Programmed sequence of commands",
    "Direct commands on port",
    "External control programme",
};

constexpr const char* kSeparator = " / ";

int Index(CatalogueList list, int number) {
  switch (list) {
    case CatalogueList::MachineMakers:
    case CatalogueList::ControllerMakers:
      return number / 100;
    case CatalogueList::Machines:
    case CatalogueList::Controllers:
      return number % 100;
    case CatalogueList::Spindles:
      break;
  }
  return number;
}

std::string PairName(CatalogueList makers, CatalogueList models, int number) {
  std::string text;
  CatalogueName(makers, number, text);
  text += kSeparator;
  CatalogueName(models, number, text, true);
  return text;
}

// Makers may hold the separator themselves ("Sigea / Art'Tech"), and so may models: every maker
// that the text begins with is tried against the rest.
int PairNumber(CatalogueList makers, CatalogueList models, std::string_view name) {
  const std::string wanted = UpperAscii(name);
  const auto makerNames = CatalogueNames(makers);
  const auto modelNames = CatalogueNames(models);
  for (size_t m = 0; m < makerNames.size(); ++m) {
    const std::string prefix = UpperAscii(makerNames[m]) + kSeparator;
    if (wanted.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string_view rest = std::string_view(wanted).substr(prefix.size());
    for (size_t k = 0; k < modelNames.size(); ++k)
      if (UpperAscii(modelNames[k]) == rest)
        return static_cast<int>(m) * 100 + (k < 100 ? static_cast<int>(k) : 0);
  }
  return -1;
}

}  // namespace

std::span<const char* const> CatalogueNames(CatalogueList list) {
  switch (list) {
    case CatalogueList::MachineMakers:
      return kMakers;
    case CatalogueList::Machines:
      return kMachines;
    case CatalogueList::ControllerMakers:
      return kControllerMakers;
    case CatalogueList::Controllers:
      return kControllers;
    case CatalogueList::Spindles:
      break;
  }
  return kSpindles;
}

void CatalogueName(CatalogueList list, int number, std::string& text, bool append) {
  if (!append) text.clear();
  const auto names = CatalogueNames(list);
  const int index = number < 0 ? -1 : Index(list, number);
  if (index >= 0 && index < static_cast<int>(names.size())) text += names[index];
}

std::string MachineName(int number) {
  return PairName(CatalogueList::MachineMakers, CatalogueList::Machines, number);
}

std::string ControllerName(int number) {
  return PairName(CatalogueList::ControllerMakers, CatalogueList::Controllers, number);
}

int MachineNumberOf(std::string_view name) {
  return PairNumber(CatalogueList::MachineMakers, CatalogueList::Machines, name);
}

int ControllerNumberOf(std::string_view name) {
  return PairNumber(CatalogueList::ControllerMakers, CatalogueList::Controllers, name);
}

}  // namespace isolith
