#include "params/SettingsFormats.h"

#include <array>

#include "params/Settings.h"
#include "params/SettingsFile.h"

namespace isolith {

namespace {

struct ImportName {
  int32_t id;
  const char* upper;
  const char* written;
};

constexpr std::array<ImportName, 11> kImportNames{{
    {kFormatGerber, "GERBER", "Gerber"},
    {kFormatAres, "ARES", "Ares"},
    {kFormatEagle, "EAGLE", "Eagle"},
    {kFormatOrcad, "ORCAD", "Orcad"},
    {kFormatOsmond, "OSMOND", "Osmond"},
    {kFormatPads, "PADS", "Pads"},
    {kFormatWizard, "PCB-WIZARD", "PCB-Wizard"},
    {kFormatProtel, "PROTEL", "Protel"},
    {kFormatWinTypon, "WINTYPON", "WinTypon"},
    {kFormatExcellon1, "EXCELLON-1", "Excellon-1"},
    {kFormatExcellon2, "EXCELLON-2", "Excellon-2"},
}};

const char* WrittenImportName(int32_t id) {
  for (const ImportName& name : kImportNames) {
    if (name.id == id) return name.written;
  }
  return nullptr;
}

// The default extensions of the output format table, by code.
constexpr std::array<const char*, kOutputFormats> kOutputExtensions{
    "tvn", "oxb", "plt", "hpg", "dxf", "ncp", "wmf", "emf", "eps", "iso", "gxz", "iso",
    "nci", "amc", "pmc", "ncc", "alc", "wmc", "oxb", "cm3", "egx", "sml", "cbr", "exl",
    "grb", "txt", "xya", "stl", "cvx", "rmp", "oma", "oma", "c",   "ppr", "bmp"};

constexpr const char* kPostProcessorName = "POST-PROCESSOR";

}  // namespace

int32_t ReadImportFormatValue(std::string_view text, int32_t fallback) {
  const std::string upper = UpperAscii(text);
  for (const ImportName& name : kImportNames) {
    if (upper == name.upper) return name.id;
  }
  return fallback;
}

std::string ImportFormatName(int32_t id, int32_t fallback) {
  if (const char* name = WrittenImportName(id)) return name;
  if (const char* name = WrittenImportName(fallback)) return name;
  return "Gerber";
}

void WriteImportFormatLine(std::string& out, std::string_view key, int32_t id, int32_t fallback) {
  WriteTextLine(out, key, ImportFormatName(id, fallback));
}

std::string_view OutputFormatExtension(int32_t code) {
  if (code < 0 || code >= kOutputFormats) return {};
  return kOutputExtensions[code];
}

int32_t ReadOutputFormatValue(std::string_view text) {
  const std::string upper = UpperAscii(text);
  if (upper == "TVN") return kOutputJobFile;
  for (int32_t code = 1; code < kOutputFormats; ++code) {
    if (upper == UpperAscii(kOutputExtensions[code])) return code;
  }
  if (upper == kPostProcessorName) return kOutputPostProcessor;
  return 1;
}

std::string OutputFormatName(int32_t code) {
  if (code == kOutputJobFile) return "TVN";
  if (code == kOutputPostProcessor) return kPostProcessorName;
  if (code < 0 || code >= kOutputFormats) code = 1;
  return UpperAscii(kOutputExtensions[code]);
}

void WriteOutputFormatLine(std::string& out, std::string_view key, int32_t code) {
  WriteTextLine(out, key, OutputFormatName(code));
}

}  // namespace isolith
