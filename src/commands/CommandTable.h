// The program's command vocabulary as data: every command id with its menu text, shortcut and
// check mark; the menu bar of the desktop program; the toolbar ids that issue the same
// commands; and the one rule that says whether a command may run now.
//
// Plain data, no window framework: the desktop program builds its menus from it, the
// command-line program and the tests read the same table.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/board/Board.h"

namespace isolith {

// Command ids. A toolbar button issues the same command under its own id (ToolbarCommand).
namespace cmd {
inline constexpr int NewCircuit = 12002;
inline constexpr int AdditionalLayer = 12003;
inline constexpr int Drills = 12004;
inline constexpr int Save = 12006;
inline constexpr int CloseLayer = 12007;
inline constexpr int Information = 12008;
inline constexpr int Dimensions = 12009;
inline constexpr int Origin = 12010;
inline constexpr int Scale = 12011;
inline constexpr int Offset = 12012;
inline constexpr int ReferencePad = 12013;
inline constexpr int AdjustOnReference = 12014;
inline constexpr int FlipHorizontally = 12015;
inline constexpr int FlipVertically = 12016;
inline constexpr int Rotate90 = 12017;
inline constexpr int RotateMinus90 = 12018;
inline constexpr int Exit = 12019;
inline constexpr int Recent1 = 12021;  // to Recent5 = 12025
inline constexpr int Recent5 = 12025;

inline constexpr int Mill = 12101;
inline constexpr int Simulate = 12102;  // "M&anual control..." shares this id on purpose
inline constexpr int CenteringHoles = 12104;
inline constexpr int CalculateContours = 12105;
inline constexpr int DeleteSelectedContours = 12107;
inline constexpr int AddContourSegments = 12108;
inline constexpr int AddContourSegmentsSecond = 12109;  // second point of 12108, no menu row
inline constexpr int DeleteContourSegments = 12110;
inline constexpr int CalculateHatches = 12111;
inline constexpr int DeleteHatches = 12112;
inline constexpr int DefineCopperPlane = 12113;
inline constexpr int DisableCopperPlane = 12114;
inline constexpr int DetectAllCopperPlanes = 12115;
inline constexpr int DisableAllCopperPlanes = 12116;
inline constexpr int DetectCopperPlanesOnOpen = 12117;
inline constexpr int AutoDetectCardContour = 12120;
inline constexpr int DefineCardContour = 12121;
inline constexpr int ChangeToolSide = 12122;
inline constexpr int AddCuttingTabs = 12123;
inline constexpr int DetectCardContourOnOpen = 12124;
inline constexpr int ListOfDrills = 12125;

inline constexpr int ModifyPads = 12201;
inline constexpr int ModifyTracks = 12202;
inline constexpr int ModifySinglePad = 12203;
inline constexpr int ModifySingleTrack = 12204;
inline constexpr int RotatePads90 = 12205;
inline constexpr int ThermalPad = 12206;  // toolbar only (button 135)
inline constexpr int DisablePad = 12210;
inline constexpr int DisableTrack = 12211;
inline constexpr int DisableTrackNet = 12212;
inline constexpr int DisableDrill = 12213;
inline constexpr int DisableZone = 12214;
inline constexpr int EnablePad = 12220;
inline constexpr int EnableTrack = 12221;
inline constexpr int EnableTrackNet = 12222;
inline constexpr int EnableDrill = 12223;
inline constexpr int EnableZone = 12224;
inline constexpr int DeletePad = 12230;
inline constexpr int DeleteTrack = 12231;
inline constexpr int DeleteTrackNet = 12232;
inline constexpr int DeleteDrill = 12233;
inline constexpr int DeleteCardContour = 12234;
inline constexpr int DeleteZone = 12235;

inline constexpr int Layer1 = 12301;  // to Layer6 = 12306: show layer 0..5
inline constexpr int Layer6 = 12306;
inline constexpr int ZoomIn = 12307;
inline constexpr int ZoomOut = 12308;
inline constexpr int FinalRendering = 12309;
inline constexpr int VisualGrid = 12310;

inline constexpr int ToolLibrary = 12401;
inline constexpr int SelectedTools = 12402;
inline constexpr int BlackBackground = 12404;
inline constexpr int GreenBackground = 12405;
inline constexpr int OrangeBackground = 12406;
inline constexpr int WhiteBackground = 12407;
inline constexpr int CustomiseColours = 12408;
inline constexpr int MachineBasicData = 12411;
inline constexpr int MachineFullData = 12412;
inline constexpr int MachineIoTest = 12413;
inline constexpr int ExternalDriver = 12414;
inline constexpr int OutputDataFormat = 12415;
inline constexpr int ImportScaleFirst = 12421;  // Gerber, Ares, Eagle, Orcad, Osmond, Pads,
inline constexpr int ImportScaleLast = 12430;   // PCB-Wizard, Protel, WinTypon, Excellon
inline constexpr int AutomaticReframing = 12440;
inline constexpr int Millimeters = 11857;
inline constexpr int Inches = 11858;
inline constexpr int SpeedUnitFirst = 11861;  // m/min, mm/min, mm/s, inch/min, inch/s
inline constexpr int SpeedUnitLast = 11865;

inline constexpr int UsersManual = 11401;
inline constexpr int GeneralHelp = 12501;
inline constexpr int About = 12503;

// Commands of the board's context menu (rows in ContextMenuCommands).
inline constexpr int SetAsOrigin = 12600;
inline constexpr int SetAsReferencePad = 12601;
inline constexpr int AdjustToReferencePad = 12602;
inline constexpr int DefineAsCopperPlane = 12613;
inline constexpr int DisableThisCopperPlane = 12614;

// Toolbar-only command: fits the card round the content.
inline constexpr int Reframe = 103;
}  // namespace cmd

// One row of the command table.
struct CommandInfo {
  int id;
  const char* text;      // menu text with its "&" accelerator; empty for rows built at run time
  const char* shortcut;  // e.g. "Ctrl+O"; empty when none
  bool checkable;        // the menu row shows a check mark, refreshed from the state it shows
  // False when the key shown beside the row is handled by the key handler rather than bound to
  // this id: Tab beside "Layer #&1" cycles the layers (NextLayer), it does not show layer 1.
  bool bindShortcut = true;
};

// Every command of the menus, in menu order. Ids may repeat: "M&anual control..." deliberately
// carries the id of "&Simulate..." and so runs the simulation.
std::span<const CommandInfo> CommandTable();
// The first row of that id, or nullptr for an id outside the table (such ids are always
// enabled, apart from Busy).
const CommandInfo* FindCommand(int id);

// The popup menu rows of a hovered item (pad, track, drill, cutout), as id and text.
std::span<const CommandInfo> ContextMenuCommands();

// Text of a recent-file row: "&1 - NAME" for slot 0.
std::string RecentFileText(int slot, const std::string& name);

// The menu bar, as a tree. A submenu has a title and children; a separator has neither; a
// command row names its id and its own text (two rows may share an id, each with its text).
// The recent files are one RecentFiles node: the window puts the filled slots there, each as
// RecentFileText under Recent1 + slot, with a separator after them when there is one.
struct MenuNode {
  enum Kind { Command, Separator, Submenu, RecentFiles };
  Kind kind = Command;
  int id = 0;                      // Command only
  const char* text = "";           // Command: row text; Submenu: title
  const char* hintGroup = "";      // top-level menus: the group hint of that menu
  std::vector<MenuNode> children;  // Submenu only
};
const std::vector<MenuNode>& MenuBar();

// The command a toolbar button (ids 100 to 136) issues; the id itself for 103 (Reframe, no menu
// row); 0 for an id outside the bar.
int ToolbarCommand(int toolbarId);

// Marks the last repaint left for the enabling rules: what it drew on the active layer.
struct DrawnMarks {
  bool disabledPad = false;
  bool disabledTrack = false;
  bool copperPlane = false;
  bool disabledDrill = false;
  bool engravedTrack = false;
};

// Commands whose behaviour is built: those that a subject's handler table lists
// (CommandHandlers.h). Every other command of the table stays disabled until its handler exists.
bool CommandImplemented(int id);

// The enabling rule of the command table alone: what the model must hold for the command to
// make sense. Ids outside the table are always allowed. Busy is not looked at here.
bool CommandRuleAllows(int id, const Board& b, const DrawnMarks& drawn);

// Whether a menu row or toolbar button is enabled now: nothing while a reader runs (Busy);
// otherwise the command must be built and its rule must allow it. Ids outside the table are
// enabled.
bool CommandEnabled(int id, const Board& b, const DrawnMarks& drawn);

}  // namespace isolith
