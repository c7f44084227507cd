#include "commands/CommandTable.h"

#include <algorithm>
#include <array>

namespace isolith {

namespace {

// The table in menu order. Rows whose text is a run-time value (recent files) have none here.
constexpr CommandInfo kCommands[] = {
    // Card management ("&File").
    {cmd::NewCircuit, "&New circuit...", "Ctrl+O", false},
    {cmd::AdditionalLayer, "&Additional layer...", "", false},
    {cmd::Drills, "Drills...", "", false},
    {cmd::Save, "&Save...", "Ctrl+S", false},
    {cmd::CloseLayer, "&Close layer...", "", false},
    {cmd::Information, "&Information...", "", false},
    {cmd::Dimensions, "&Dimensions...", "Ctrl+D", false},
    {cmd::Origin, "O&rigin", "", false},
    {cmd::Scale, "S&cale...", "", false},
    {cmd::Offset, "O&ffset...", "", false},
    {cmd::ReferencePad, "R&eference pad", "", false},
    {cmd::AdjustOnReference, "&Adjust on reference", "", false},
    {cmd::FlipHorizontally, "Flip &horizontally", "", false},
    {cmd::FlipVertically, "Flip &vertically", "", false},
    {cmd::Rotate90, "Rotate &90°", "", false},
    {cmd::RotateMinus90, "Rotate -90°", "", false},
    {12021, "", "", false},
    {12022, "", "", false},
    {12023, "", "", false},
    {12024, "", "", false},
    {12025, "", "", false},
    {cmd::Exit, "E&xit", "", false},
    // Toolpaths.
    {cmd::Mill, "&Mill...", "", false},
    {cmd::Simulate, "&Simulate...", "", false},
    {cmd::Simulate, "M&anual control...", "", false},
    {cmd::CenteringHoles, "&Add centering holes...", "", true},
    {cmd::CalculateContours, "Calculate &contours", "", false},
    {cmd::DeleteSelectedContours, "Delete selected contours", "", false},
    {cmd::AddContourSegments, "Add selected contour segments", "", false},
    {cmd::DeleteContourSegments, "Delete selected contour segments", "", false},
    {cmd::CalculateHatches, "Calculate &hatches", "", false},
    {cmd::DeleteHatches, "&Delete hatches", "", false},
    {cmd::DefineCopperPlane, "&Define one", "", false},
    {cmd::DisableCopperPlane, "D&isable one", "", false},
    {cmd::DetectAllCopperPlanes, "Detect &all", "", false},
    {cmd::DisableAllCopperPlanes, "Disable a&ll", "", false},
    {cmd::DetectCopperPlanesOnOpen, "Detect when opening file", "", true},
    {cmd::AutoDetectCardContour, "&Auto-detect", "", false},
    {cmd::DefineCardContour, "&Define", "", false},
    {cmd::ChangeToolSide, "Change tool &side...", "", false},
    {cmd::AddCuttingTabs, "Add &cutting tabs...", "", false},
    {cmd::DetectCardContourOnOpen, "Detect when opening file", "", true},
    {cmd::ListOfDrills, "&List of drills...", "", false},
    // Editing ("&Edit").
    {cmd::ModifyPads, "Modify &pads...", "", false},
    {cmd::ModifyTracks, "Modify &tracks...", "", false},
    {cmd::ModifySinglePad, "Modify single pad...", "", false},
    {cmd::ModifySingleTrack, "Modify single track...", "", false},
    {cmd::RotatePads90, "Rotate pads of &90°", "", false},
    {cmd::DisablePad, "Pad", "", false},
    {cmd::DisableTrack, "Track", "", false},
    {cmd::DisableTrackNet, "Track &net", "", false},
    {cmd::DisableDrill, "Drill", "", false},
    {cmd::DisableZone, "Zone", "", false},
    {cmd::EnablePad, "Pad", "", false},
    {cmd::EnableTrack, "Track", "", false},
    {cmd::EnableTrackNet, "Track &net", "", false},
    {cmd::EnableDrill, "Drill", "", false},
    {cmd::EnableZone, "Zone", "", false},
    {cmd::DeletePad, "Pad", "", false},
    {cmd::DeleteTrack, "Track", "", false},
    {cmd::DeleteTrackNet, "Track &net", "", false},
    {cmd::DeleteDrill, "Drill", "", false},
    {cmd::DeleteCardContour, "&Card contour...", "", false},
    {cmd::DeleteZone, "Zone", "", false},
    // Display.
    {cmd::Layer1, "Layer #&1", "Tab", false, false},
    {12302, "Layer #&2", "", false},
    {12303, "Layer #&3", "", false},
    {12304, "Layer #&4", "", false},
    {12305, "Layer #&5 (drills)", "", false},
    {cmd::Layer6, "Layer #&6 (cutout)", "", false},
    {cmd::ZoomIn, "Zoom &in", "", false},
    {cmd::ZoomOut, "Zoom &out", "", false},
    {cmd::FinalRendering, "&Final rendering", "", true},
    {cmd::VisualGrid, "&Visual grid", "", true},
    // Parameters.
    {cmd::ToolLibrary, "&Tool library...", "", false},
    {cmd::SelectedTools, "&Selected tools...", "", false},
    {cmd::OutputDataFormat, "Output data format...", "", false},
    {cmd::BlackBackground, "Black background", "", true},
    {cmd::GreenBackground, "Green background", "", true},
    {cmd::OrangeBackground, "Orange background", "", true},
    {cmd::WhiteBackground, "White background", "", true},
    {cmd::CustomiseColours, "&Customise...", "", false},
    {cmd::MachineBasicData, "&Basic data...", "", false},
    {cmd::MachineFullData, "&Full data...", "", false},
    {cmd::MachineIoTest, "&I/O test...", "", false},
    {cmd::ExternalDriver, "&External driver...", "", true},
    {12421, "&Gerber...", "", false},
    {12422, "&Ares...", "", false},
    {12423, "&Eagle...", "", false},
    {12424, "&Orcad...", "", false},
    {12425, "O&smond...", "", false},
    {12426, "&Pads...", "", false},
    {12427, "PCB-&Wizard...", "", false},
    {12428, "P&rotel...", "", false},
    {12429, "Win&Typon...", "", false},
    {12430, "E&xcellon...", "", false},
    {cmd::Millimeters, "&millimeters...", "", true},
    {cmd::Inches, "&inches...", "", true},
    {11861, "m&eters per minute", "", true},
    {11862, "millimeters per mi&nute", "", true},
    {11863, "millimeters per &second", "", true},
    {11864, "inches per min&ute", "", true},
    {11865, "inches per sec&ond", "", true},
    {cmd::AutomaticReframing, "Automatic reframing", "", true},
    // Help.
    {cmd::UsersManual, "User's manual...", "", false},
    {cmd::GeneralHelp, "&General...", "F1", false},
    {cmd::About, "&About...", "", false},
};

constexpr CommandInfo kContextCommands[] = {
    {12600, "Set as origin point", "", false},
    {12601, "Set as reference pad", "", false},
    {12602, "Adjust to reference pad", "", false},
    {12603, "Change size of that pad", "", false},
    {12604, "Edit all identical pads", "", false},
    {12605, "Delete all identical pads", "", false},
    {12606, "Rotate all identical pads of 90°", "", false},
    {12607, "Transform to thermal pad", "", false},
    {12608, "Change width of that track", "", false},
    {12609, "Edit all identical tracks", "", false},
    {12610, "Delete all identical tracks", "", false},
    {12611, "Engrave tracks as centerlines", "", false},
    {12612, "Define as card contour", "", false},
    {12613, "Define as copper plane", "", false},
    {12614, "Disable this copper plane", "", false},
    {12615, "Disable pad", "", false},
    {12616, "Disable track", "", false},
    {12617, "Disable track net", "", false},
    {12618, "Disable drill", "", false},
    {12619, "Re-enable pad", "", false},
    {12620, "Re-enable track", "", false},
    {12621, "Re-enable track net", "", false},
    {12622, "Re-enable drill", "", false},
    {12623, "Delete pad", "", false},
    {12624, "Delete track", "", false},
    {12625, "Delete track net", "", false},
    {12626, "Delete drill", "", false},
    {12627, "Reset contour path", "", false},
    {12123, "Add cutting tabs", "", false},
    {12628, "Delete contour path", "", false},
};

MenuNode Row(int id) {
  const CommandInfo* c = FindCommand(id);
  return MenuNode{MenuNode::Command, id, c ? c->text : "", "", {}};
}
MenuNode Row(int id, const char* text) {
  return MenuNode{MenuNode::Command, id, text, "", {}};
}
MenuNode Sep() {
  return MenuNode{MenuNode::Separator, 0, "", "", {}};
}
MenuNode Sub(const char* title, std::vector<MenuNode> children, const char* hint = "") {
  return MenuNode{MenuNode::Submenu, 0, title, hint, std::move(children)};
}

std::vector<MenuNode> BuildMenuBar() {
  std::vector<MenuNode> bar;
  bar.push_back(Sub("&File",
                    {Row(cmd::NewCircuit),
                     Row(cmd::AdditionalLayer),
                     Row(cmd::Drills),
                     Sep(),
                     Row(cmd::Save),
                     Sep(),
                     Row(cmd::CloseLayer),
                     Row(cmd::Information),
                     Sep(),
                     Row(cmd::Dimensions),
                     Row(cmd::Origin),
                     Row(cmd::Scale),
                     Row(cmd::Offset),
                     Sep(),
                     Row(cmd::ReferencePad),
                     Row(cmd::AdjustOnReference),
                     Sep(),
                     Row(cmd::FlipHorizontally),
                     Row(cmd::FlipVertically),
                     Row(cmd::Rotate90),
                     Row(cmd::RotateMinus90),
                     Sep(),
                     MenuNode{MenuNode::RecentFiles, 0, "", "", {}},
                     Row(cmd::Exit)},
                    "Global management functions for the card"));
  bar.push_back(Sub(
      "&Toolpaths",
      {Row(cmd::CalculateContours), Row(cmd::DeleteSelectedContours), Row(cmd::AddContourSegments),
       Row(cmd::DeleteContourSegments), Sep(), Row(cmd::CalculateHatches), Row(cmd::DeleteHatches),
       Sep(),
       Sub("Copper &planes", {Row(cmd::DefineCopperPlane), Row(cmd::DisableCopperPlane),
                              Row(cmd::DetectAllCopperPlanes), Row(cmd::DisableAllCopperPlanes),
                              Sep(), Row(cmd::DetectCopperPlanesOnOpen)}),
       Sub("Card c&ontour",
           {Row(cmd::AutoDetectCardContour), Row(cmd::DefineCardContour), Row(cmd::ChangeToolSide),
            Row(cmd::AddCuttingTabs), Sep(), Row(cmd::DetectCardContourOnOpen)}),
       Row(cmd::CenteringHoles), Row(cmd::ListOfDrills), Sep(), Row(cmd::Mill),
       Row(cmd::Simulate, "&Simulate..."), Row(cmd::Simulate, "M&anual control...")}));
  bar.push_back(
      Sub("&Edit",
          {Row(cmd::ModifyPads), Row(cmd::ModifyTracks), Row(cmd::ModifySinglePad),
           Row(cmd::ModifySingleTrack), Row(cmd::RotatePads90), Sep(),
           Sub("&Disable", {Row(cmd::DisablePad), Row(cmd::DisableTrack), Row(cmd::DisableTrackNet),
                            Row(cmd::DisableDrill), Sep(), Row(cmd::DisableZone)}),
           Sub("&Re-enable", {Row(cmd::EnablePad), Row(cmd::EnableTrack), Row(cmd::EnableTrackNet),
                              Row(cmd::EnableDrill), Sep(), Row(cmd::EnableZone)}),
           Sub("D&elete",
               {Row(cmd::DeletePad), Row(cmd::DeleteTrack), Row(cmd::DeleteTrackNet),
                Row(cmd::DeleteDrill), Row(cmd::DeleteCardContour), Sep(), Row(cmd::DeleteZone)})},
          "Edit functions"));
  bar.push_back(Sub(
      "&Display",
      {Row(12301), Row(12302), Row(12303), Row(12304), Row(12305), Row(12306), Sep(),
       Row(cmd::ZoomIn), Row(cmd::ZoomOut), Sep(), Row(cmd::FinalRendering), Row(cmd::VisualGrid)},
      "Display functions"));
  bar.push_back(Sub(
      "&Parameters",
      {Row(cmd::ToolLibrary), Row(cmd::SelectedTools), Row(cmd::OutputDataFormat), Sep(),
       Sub("&Machine", {Row(cmd::MachineBasicData), Row(cmd::MachineFullData),
                        Row(cmd::MachineIoTest), Sep(), Row(cmd::ExternalDriver)}),
       Sub("&Import scales", {Row(12421), Row(12422), Row(12423), Row(12424), Row(12425),
                              Row(12426), Row(12427), Row(12428), Row(12429), Sep(), Row(12430)}),
       Sep(),
       Sub("&Colours",
           {Row(cmd::BlackBackground), Row(cmd::GreenBackground), Row(cmd::OrangeBackground),
            Row(cmd::WhiteBackground), Sep(), Row(cmd::CustomiseColours)}),
       Sub("&Length unit", {Row(cmd::Millimeters), Row(cmd::Inches)}),
       Sub("S&peed unit", {Row(11861), Row(11862), Row(11863), Row(11864), Row(11865)}), Sep(),
       Row(cmd::AutomaticReframing)},
      "Parameter functions"));
  bar.push_back(Sub("&Help", {Row(cmd::UsersManual), Row(cmd::GeneralHelp), Sep(), Row(cmd::About)},
                    "Help functions"));
  return bar;
}

// The board lists of the active layer, empty for the drill and cutout layers.
const TPad* ActivePads(const Board& b) {
  return IsCircuitLayer(b.ActiveLayer) ? b.Pads[b.ActiveLayer] : nullptr;
}
const TTrack* ActiveTracks(const Board& b) {
  return IsCircuitLayer(b.ActiveLayer) ? b.Tracks[b.ActiveLayer] : nullptr;
}
const TPolygon* ActiveContours(const Board& b) {
  return IsCircuitLayer(b.ActiveLayer) ? b.Contours[b.ActiveLayer] : nullptr;
}
const TPolygon* ActiveHatches(const Board& b) {
  return IsCircuitLayer(b.ActiveLayer) ? b.Hatches[b.ActiveLayer] : nullptr;
}

}  // namespace

std::span<const CommandInfo> CommandTable() {
  return kCommands;
}

const CommandInfo* FindCommand(int id) {
  for (const CommandInfo& c : kCommands)
    if (c.id == id) return &c;
  return nullptr;
}

std::span<const CommandInfo> ContextMenuCommands() {
  return kContextCommands;
}

std::string RecentFileText(int slot, const std::string& name) {
  return "&" + std::to_string(slot + 1) + " - " + name;
}

const std::vector<MenuNode>& MenuBar() {
  static const std::vector<MenuNode> bar = BuildMenuBar();
  return bar;
}

int ToolbarCommand(int toolbarId) {
  static constexpr std::array<int, 37> kBar = {
      cmd::NewCircuit,              // 100
      cmd::AdditionalLayer,         // 101
      cmd::Drills,                  // 102
      cmd::Reframe,                 // 103
      cmd::FlipHorizontally,        // 104
      cmd::Rotate90,                // 105
      cmd::ReferencePad,            // 106
      cmd::DisableZone,             // 107
      cmd::CalculateContours,       // 108
      cmd::AddContourSegments,      // 109
      cmd::CalculateHatches,        // 110
      cmd::CenteringHoles,          // 111
      cmd::ListOfDrills,            // 112
      cmd::Mill,                    // 113
      cmd::ZoomIn,                  // 114
      cmd::FinalRendering,          // 115
      cmd::ModifyPads,              // 116
      cmd::ModifyTracks,            // 117
      cmd::DefineCardContour,       // 118
      12301,                        // 119: the six layer buttons
      12302,                        // 120
      12303,                        // 121
      12304,                        // 122
      12305,                        // 123
      12306,                        // 124
      cmd::Save,                    // 125
      cmd::AdjustOnReference,       // 126
      cmd::FlipVertically,          // 127
      cmd::RotateMinus90,           // 128
      cmd::DeleteZone,              // 129
      cmd::DeleteSelectedContours,  // 130
      cmd::DeleteContourSegments,   // 131
      cmd::DeleteHatches,           // 132
      cmd::ZoomOut,                 // 133
      cmd::RotatePads90,            // 134
      cmd::ThermalPad,              // 135
      cmd::AddCuttingTabs,          // 136
  };
  if (toolbarId < 100 || toolbarId > 136) return 0;
  return kBar[toolbarId - 100];
}

bool CommandRuleAllows(int id, const Board& b, const DrawnMarks& drawn) {
  const bool anyLayer = b.LayerCount != 0;
  const bool pads = ActivePads(b) != nullptr;
  const bool tracks = ActiveTracks(b) != nullptr;
  const bool contours = ActiveContours(b) != nullptr;
  const bool drills = b.Drills != nullptr;
  const bool cutouts = b.Cutouts != nullptr;
  switch (id) {
    case cmd::Save:
    case cmd::CloseLayer:
    case cmd::Dimensions:
    case cmd::Origin:
    case cmd::Scale:
    case cmd::Offset:
    case cmd::ReferencePad:
    case cmd::FlipHorizontally:
    case cmd::FlipVertically:
    case cmd::Rotate90:
    case cmd::RotateMinus90:
    case cmd::Mill:
    case cmd::Simulate:
    case cmd::CenteringHoles:
    case cmd::DisableZone:
    case cmd::DeleteZone:
    case cmd::ZoomIn:
    case cmd::ZoomOut:
    case cmd::FinalRendering:
    case cmd::SetAsOrigin:
    case cmd::SetAsReferencePad:
      return anyLayer;
    case cmd::Information:
      return anyLayer && b.ActiveLayer < 4;
    case cmd::AdjustOnReference:
    case cmd::AdjustToReferencePad:
      return b.RefPad != nullptr && b.ActiveLayer != b.RefLayer;
    case cmd::CalculateContours:
      return pads || tracks;
    case cmd::DeleteSelectedContours:
    case cmd::AddContourSegments:
    case cmd::DeleteContourSegments:
    case cmd::CalculateHatches:
      return contours;
    case cmd::DeleteHatches:
      return ActiveHatches(b) != nullptr;
    case cmd::DefineCopperPlane:
    case cmd::DetectAllCopperPlanes:
      return tracks;
    case cmd::DisableCopperPlane:
    case cmd::DisableAllCopperPlanes:
      return drawn.copperPlane && tracks;
    case cmd::DefineCardContour:
      return (b.LayerCount > 1 || (b.LayerCount == 1 && !drills)) && b.ActiveLayer != 5;
    case cmd::ChangeToolSide:
    case cmd::AddCuttingTabs:
    case cmd::DeleteCardContour:
      return cutouts;
    case cmd::ListOfDrills:
    case cmd::DisableDrill:
    case cmd::DeleteDrill:
      return drills;
    case cmd::ModifyPads:
    case cmd::ModifySinglePad:
    case cmd::ThermalPad:
    case cmd::DisablePad:
    case cmd::DeletePad:
      return pads;
    case cmd::ModifyTracks:
    case cmd::ModifySingleTrack:
    case cmd::DisableTrack:
    case cmd::DisableTrackNet:
    case cmd::DeleteTrack:
    case cmd::DeleteTrackNet:
      return tracks;
    case cmd::EnablePad:
      return drawn.disabledPad && pads;
    case cmd::EnableTrack:
    case cmd::EnableTrackNet:
      return drawn.disabledTrack && tracks;
    case cmd::EnableDrill:
      return drawn.disabledDrill && drills;
    case cmd::EnableZone:
      return drawn.disabledPad || drawn.disabledTrack || drawn.disabledDrill || drawn.copperPlane;
    case 12302:
    case 12303:
    case 12304:
      return b.Pads[id - cmd::Layer1] != nullptr || b.Tracks[id - cmd::Layer1] != nullptr;
    case 12305:
      return drills;
    case 12306:
      return cutouts;
    case cmd::DefineAsCopperPlane:
      return b.HoverTrack != nullptr && !(b.HoverTrack->flags & kTrackCopperPlane);
    case cmd::DisableThisCopperPlane:
      return b.HoverTrack != nullptr && (b.HoverTrack->flags & kTrackCopperPlane);
    default:
      return true;  // "always", or an id outside the table
  }
}

bool CommandEnabled(int id, const Board& b, const DrawnMarks& drawn) {
  if (b.Busy) return false;
  // Every command this program knows is disabled until its handler exists; only a foreign id
  // falls through to the rule, which allows it.
  const bool known = FindCommand(id) != nullptr || id == cmd::ThermalPad || id == cmd::Reframe ||
                     std::any_of(std::begin(kContextCommands), std::end(kContextCommands),
                                 [id](const CommandInfo& c) { return c.id == id; });
  if (known && !CommandImplemented(id)) return false;
  return CommandRuleAllows(id, b, drawn);
}

}  // namespace isolith
