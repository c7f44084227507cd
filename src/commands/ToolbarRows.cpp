#include "commands/ToolbarRows.h"

namespace isolith {

namespace {

// The buttons without a picture of their own in the set (Mill, Zoom in, Save job) show ours.
constexpr ToolbarRow kRows[] = {
    {100, "PCBOPEN1", "Open project"},
    {101, "PCBOPEN2", "Additional circuit layer"},
    {102, "PCBOPEND", "Open drill layer"},
    {103, "PCBFRAME", "Reframe"},
    {104, "PCBFLIPH", "Flip X"},
    {105, "PCBROT90T", "Rotation 90\xC2\xB0"},
    {106, "PCBREFPAD", "Reference pad"},
    {107, "PCBNEUTZ", "Disable zone"},
    {108, "PCBCONTOUR", "Calculate contours"},
    {109, "PCBADDCSEG", "Add contour segments"},
    {110, "PCBHATCH", "Calculate hatches"},
    {111, "PCBPLOTS", "Centering holes"},
    {112, "PCBDRILL", "Drill list"},
    {113, "MILL", "Mill"},
    {114, "ZOOMIN", "Zoom in"},
    {115, "PCBFINAL", "Final rendering"},
    {116, "PCBPADS", "Pads"},
    {117, "PCBTRACKS", "Tracks"},
    {118, "PCBCROP", "Card contour"},
    {119, "PCBLAYER1", "Layer #1"},
    {120, "PCBLAYER2", "Layer #2"},
    {121, "PCBLAYER3", "Layer #3"},
    {122, "PCBLAYER4", "Layer #4"},
    {123, "PCBLAYERD", "Layer #5 (drills)"},
    {124, "PCBLAYERC", "Layer #6 (cutout)"},
    {125, "SAVEJOB", "Save job"},
    {126, "PCBADJREF", "Adjust on reference"},
    {127, "PCBFLIPV", "Flip Y"},
    {128, "PCBROT90C", "Rotation -90\xC2\xB0"},
    {129, "PCBDELZ", "Rubout zone"},
    {130, "PCBDELCONT", "Delete selected contour"},
    {131, "PCBDELCSEG", "Delete selected segments"},
    {132, "PCBDELHAT", "Delete hatches"},
    {133, "ZOOMBACK", "Zoom out"},
    {134, "PCBROTPAD", "Rotation 90\xC2\xB0"},
    {135, "PCBTHERMAL", "Thermal pads"},
    {136, "PCBTABS", "Cutting tabs"},
};

}  // namespace

std::span<const ToolbarRow> ToolbarRows() {
  return kRows;
}

bool ClassicToolBox(int topBarStyle, int screenColours) {
  if (topBarStyle == 2 || topBarStyle == 3) return true;
  return topBarStyle == 0 && screenColours <= 256;
}

}  // namespace isolith
