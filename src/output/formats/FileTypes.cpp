#include "output/formats/FileTypes.h"

namespace isolith {

namespace {

constexpr TFileType kFileTypes[kFileTypeCount] = {
    {"Torvane file format", "tvn"},
    {"Oxbel Motion Programming Language", "oxb"},
    {"HPGL-Plotter 2D/2\xC2\xBD"
     "D",
     "plt"},
    {"HPGL 3D code with Z co-ordinates", "hpg"},
    {"AutoCad-DXF in text format", "dxf"},
    {"Isel-Remote NCP Command Language", "ncp"},
    {"Windows Meta-File", "wmf"},
    {"Enhanced Meta-File", "emf"},
    {"Adobe-Illustrator PostScript", "eps"},
    {"ISO G-Code for CNC-Mill Process", "iso"},
    {"2-axis XZ-Lathe G-Code", "gxz"},
    {"ISO G-Code for NUM CNC-Mill (I/J absolute)", "iso"},
    {"MasterCam NC-Intermediate", "nci"},
    {"NEE-AMC CNC G-Code", "amc"},
    {"ProMac CNC G-Code", "pmc"},
    {"Mecasoft Industries DMT", "ncc"},
    {"Alecop CNC G-code", "alc"},
    {"WelSoft-Mill CNC G-code", "wmc"},
    {"Oxbel-Code for XY/YZ-Theta rotary path", "oxb"},
    {"Roland CAMM-3 & MDX-15/20 - 0.025 mm", "cm3"},
    {"Roland EGX & MDX-40/500/540/650 - 0.01 mm", "egx"},
    {"Suregrave-SML Code", "sml"},
    {"Colinbus-CBR Code", "cbr"},
    {"Excellon-Automation, basic co-ordinates", "exl"},
    // The misspelling is the title as users know it.
    {"Gerber Scientific Intruments Flasher", "grb"},
    {"XYZ-MNT Topographic Resection Points", "txt"},
    {"ISO G-Code for cylindrical revolution", "xya"},
    {"Cartesian 3D wiremesh facettes", "stl"},
    {"Corvex-CAD", "cvx"},
    {"HPGL code for RM-Punch XYC", "rmp"},
    {"Essilor OMA-400 optical glass code", "oma"},
    {"Essilor OMA-800 optical glass code", "oma"},
    {"Graphical C Language / LineTo-MoveTo", "c"},
    {"Post-processor", "ppr"},
    {"Bitmap Image", "bmp"},
};

}  // namespace

const TFileType& FileTypeOf(int code) {
  if (code < 0 || code >= kFileTypeCount) code = 0;
  return kFileTypes[code];
}

bool HasBuiltinWords(int code) {
  switch (code) {
    case kFormatOxbel:
    case kFormatHpgl:
    case kFormatDxf:
    case kFormatNcp:
    case kFormatIso:
    case kFormatNum:
    case kFormatCamm3:
    case kFormatEgx:
    case kFormatSml:
    case kFormatCbr:
      return true;
    default:
      return false;
  }
}

}  // namespace isolith
