// The editing commands of the "&Edit" menu, of the board's context menu and of the contour
// modes of the "&Toolpaths" menu.
#include "commands/EditCommands.h"

#include <algorithm>
#include <type_traits>

#include "commands/CommandHandlers.h"
#include "core/board/BoardOps.h"
#include "edit/ApertureForms.h"
#include "edit/IdenticalItems.h"
#include "edit/ItemActions.h"
#include "edit/SingleItemForms.h"
#include "params/ToolLibrary.h"
#include "toolpath/ContourEdits.h"
#include "toolpath/DrillList.h"

namespace isolith {

namespace {

// Context-menu rows of a hovered pad or track that belong to the editing.
constexpr int kChangeThatPad = 12603;
constexpr int kEditIdenticalPads = 12604;
constexpr int kDeleteIdenticalPads = 12605;
constexpr int kRotateIdenticalPads = 12606;
constexpr int kMakeThermal = 12607;
constexpr int kChangeThatTrack = 12608;
constexpr int kEditIdenticalTracks = 12609;
constexpr int kDeleteIdenticalTracks = 12610;
constexpr int kEngraveTracks = 12611;
constexpr int kFirstItemRow = 12615;  // "Disable pad" .. "Delete drill": 4 kinds by 3 actions
constexpr int kLastItemRow = 12626;
constexpr int kDeleteContourPath = 12628;

// How long a joined or extended contour path stays highlighted.
constexpr int kShowJoinMs = 3000;

constexpr const char* kPositionTitle = "Position";
constexpr const char* kPositionText =
    "Please use the left mouse button to catch the red point  \nand the right mouse button for "
    "an independant position.  ";

enum ItemKind { kPad, kTrack, kNet, kDrill };

// The kind and action of the pick ids 12210..12213, 12220..12223, 12230..12233.
bool PickItem(int id, ItemKind& kind, ItemAction& action) {
  const int row = id - cmd::DisablePad;
  if (row < 0 || row >= 24 || row % 10 > 3) return false;
  kind = static_cast<ItemKind>(row % 10);
  action = static_cast<ItemAction>(row / 10);
  return true;
}

// The action of one item, with the net's refusal beeped.
void RunItemAction(Application& app, ItemKind kind, ItemAction action) {
  Board& b = app.board;
  switch (kind) {
    case kPad:
      PadAction(b, action);
      break;
    case kTrack:
      TrackAction(b, action);
      break;
    case kNet:
      if (TrackNetAction(b, app.platform, action) == NetResult::Refused) Refuse(app);
      break;
    case kDrill:
      DrillAction(b, action);
      break;
  }
}

// A pick: the hover cleared, final rendering left, a repaint, then the wait for the click.
void BeginPick(Application& app, int id) {
  ResetHover(app);
  app.board.FinalRendering = false;
  RequestRepaint(app);
  app.board.PendingCommand = id;
}

// The single pad or track dialog. First the settings file is written (it holds the aperture
// tables), the layer's contours go, a repaint; after OK with `stay` the pick waits again.
template <typename Form, typename Item>
void EditOneItem(Application& app, Item* item, int pickId, bool stay) {
  Board& b = app.board;
  if (!item || !IsCircuitLayer(b.ActiveLayer)) return;
  b.PendingCommand = 0;
  SaveSettings(app);
  FreeContours(b, false);
  RequestRepaint(app);
  Form form(b, *item, app.DecimalSeparator);
  // A pad's dialog shows the pads of its code highlighted behind it.
  if constexpr (std::is_same_v<Item, TPad>) b.HighlightPadCode = item->code;
  RequestRepaint(app);
  const bool ok = app.platform.RunDialog(form);
  if (!ok) form.Cancel();
  b.HighlightPadCode = -1;
  ResetHover(app);
  RequestRepaint(app);
  if (ok && stay) b.PendingCommand = pickId;
}

void DeleteCardContourCommand(Application& app) {
  Board& b = app.board;
  ResetHover(app);
  if (!b.Cutouts) return;
  b.ActiveLayer = kCutoutLayer;
  if (b.Cutouts->next) {
    BeginPick(app, cmd::DeleteCardContour);
    return;
  }
  RequestRepaint(app);
  DeleteCutout(b, b.Cutouts);
  RequestRepaint(app);
}

void BeginAddSegments(Application& app) {
  ContourEditSession& session = app.toolpath.contourEdit;
  session.hasFreePoint = false;
  if (!session.positionHintShown) {
    session.positionHintShown = true;
    app.platform.ShowMessage(kPositionTitle, kPositionText, MessageIcon::Information);
  }
  BeginPick(app, cmd::AddContourSegments);
}

void RunEditCommand(Application& app, int id) {
  switch (id) {
    case cmd::ModifyPads:
      ModifyPadsCommand(app, false);
      break;
    case cmd::ModifyTracks:
      ModifyTracksCommand(app, false);
      break;
    case cmd::DeleteCardContour:
      DeleteCardContourCommand(app);
      break;
    case cmd::AddContourSegments:
      BeginAddSegments(app);
      break;
    default:
      // Every other row of the editing menus waits for its click or rectangle.
      BeginPick(app, id);
      break;
  }
}

// The rows of the context menu: they act on the hover item at once, so the hover names are
// cleared only afterwards.
void RunEditMenuCommand(Application& app, int id) {
  Board& b = app.board;
  b.PendingCommand = 0;
  switch (id) {
    case kChangeThatPad:
      EditOneItem<TDialogChgOnePad>(app, b.HoverPad, cmd::ModifySinglePad, false);
      return;
    case kChangeThatTrack:
      EditOneItem<TDialogChgOneTrack>(app, b.HoverTrack, cmd::ModifySingleTrack, false);
      return;
    case kEditIdenticalPads:
      ModifyPadsCommand(app, true);
      return;
    case kEditIdenticalTracks:
      ModifyTracksCommand(app, true);
      return;
    case kDeleteIdenticalPads:
      DeleteIdenticalPads(b, app.platform);
      break;
    case kDeleteIdenticalTracks:
      DeleteIdenticalTracks(b, app.platform);
      break;
    case kRotateIdenticalPads:
      RotateIdenticalPads(b);
      break;
    case kMakeThermal:
      MakeThermal(b);
      break;
    case kEngraveTracks:
      EngraveIdenticalTracks(b, app.platform);
      break;
    case kDeleteContourPath:
      DeleteCutout(b, b.HoverCutout);
      break;
    default:
      if (id >= kFirstItemRow && id <= kLastItemRow) {
        const int row = id - kFirstItemRow;
        RunItemAction(app, static_cast<ItemKind>(row % 4), static_cast<ItemAction>(row / 4));
      }
      break;
  }
  ResetHover(app);
  RequestRepaint(app);
}

constexpr CommandHandler kEditHandlers[] = {
    {cmd::DeleteSelectedContours, cmd::AddContourSegments, RunEditCommand},
    {cmd::DeleteContourSegments, cmd::DeleteContourSegments, RunEditCommand},
    {cmd::ModifyPads, cmd::ModifySingleTrack, RunEditCommand},
    {cmd::ThermalPad, cmd::ThermalPad, RunEditCommand},
    {cmd::DisablePad, cmd::DisableZone, RunEditCommand},
    {cmd::EnablePad, cmd::EnableZone, RunEditCommand},
    {cmd::DeletePad, cmd::DeleteZone, RunEditCommand},
    {kChangeThatPad, kEngraveTracks, RunEditMenuCommand},
    {kFirstItemRow, kLastItemRow, RunEditMenuCommand},
    {kDeleteContourPath, kDeleteContourPath, RunEditMenuCommand},
};

// The contour names of the hover, cleared after a path changed under them.
void ForgetContourHover(Board& b) {
  b.HoverContour = nullptr;
  b.HoverContourSegment = nullptr;
  b.HoverContourVertex = nullptr;
}

// A path shown highlighted for a moment, the rest of the program alive meanwhile.
void ShowPathAMoment(Application& app, const TPolygon* path) {
  app.board.HighlightPath = path;
  RequestRepaint(app);
  app.platform.PumpMessages(kShowJoinMs);
  app.board.HighlightPath = nullptr;
}

// The join after each edit: with a pause for the joined path to be seen.
void JoinAfterEdit(Application& app, TPolygon*& list) {
  const TPolygon* grown = nullptr;
  if (JoinContourEnds(list, ContourJoinTolerance(app), [&grown](TPolygon& p) { grown = &p; }))
    ShowPathAMoment(app, grown);
}

// The second click of "Add selected contour segments".
void SecondPoint(Application& app, TPolygon*& list, float x, float y, float pixelsPerMm) {
  Board& b = app.board;
  ContourEditSession& session = app.toolpath.contourEdit;
  TXY* caught = b.HoverContourVertex;
  const bool free = session.hasFreePoint;
  session.hasFreePoint = false;
  b.HoverContourVertex = nullptr;
  b.PendingCommand = cmd::AddContourSegments;
  if (!caught && !free) {
    Refuse(app);
    return;
  }
  if (const TXY* end = PickOpenEnd(list, x, y, PickRadius(kEndSnapPixels, pixelsPerMm))) {
    x = end->x;
    y = end->y;
  }
  if (caught) {
    if (!ExtendPathAtEnd(list, caught, x, y)) {
      Refuse(app);
      return;
    }
  } else {
    AddFreeSegment(list, session.freeX, session.freeY, x, y);
  }
  RequestRepaint(app);
  // Joined or not, the result stays in sight for a moment: the joined path, or the one that
  // ends where the segment ended.
  const TPolygon* shown = nullptr;
  JoinContourEnds(list, ContourJoinTolerance(app), [&shown](TPolygon& p) { shown = &p; });
  for (const TPolygon* p = list; p && !shown; p = p->next) {
    const TXY* last = p->first;
    while (last && last->next) last = last->next;
    if (p->first && ((p->first->x == x && p->first->y == y) || (last->x == x && last->y == y)))
      shown = p;
  }
  ShowPathAMoment(app, shown);
  RequestRepaint(app);
}

}  // namespace

std::span<const CommandHandler> EditCommandHandlers() {
  return kEditHandlers;
}

void ModifyPadsCommand(Application& app, bool onHoverPad) {
  Board& b = app.board;
  if (!IsCircuitLayer(b.ActiveLayer) || !b.Pads[b.ActiveLayer]) return;
  if (!onHoverPad) b.HoverPad = b.Pads[b.ActiveLayer];
  TDialogChgPads form(b, app.DecimalSeparator);
  if (!form.IsOpen()) return;
  if (app.platform.RunDialog(form)) {
    BuildDrillList(app.drillList, b, app.settings, app.tools);
  } else {
    form.Cancel();
  }
  b.HighlightPadCode = -1;
  ResetHover(app);
  RequestRepaint(app);
}

void ModifyTracksCommand(Application& app, bool onHoverTrack) {
  Board& b = app.board;
  if (!IsCircuitLayer(b.ActiveLayer) || !b.Tracks[b.ActiveLayer]) return;
  if (!onHoverTrack) b.HoverTrack = b.Tracks[b.ActiveLayer];
  TDialogChgTracks form(b, app.DecimalSeparator);
  if (!form.IsOpen()) return;
  if (!app.platform.RunDialog(form)) form.Cancel();
  ResetHover(app);
  RequestRepaint(app);
}

bool EditClickAction(Application& app, int pendingId) {
  Board& b = app.board;
  ItemKind kind;
  ItemAction action;
  switch (pendingId) {
    case cmd::ModifySinglePad:
      EditOneItem<TDialogChgOnePad>(app, b.HoverPad, pendingId, true);
      return true;
    case cmd::ModifySingleTrack:
      EditOneItem<TDialogChgOneTrack>(app, b.HoverTrack, pendingId, true);
      return true;
    case cmd::ThermalPad:
      if (!MakeThermal(b)) return true;
      break;
    case cmd::DeleteCardContour:
      if (!DeleteCutout(b, b.HoverCutout)) return true;
      break;
    default:
      if (!PickItem(pendingId, kind, action)) return false;
      {
        const bool hovered =
            kind == kPad ? b.HoverPad != nullptr
                         : (kind == kDrill ? b.HoverDrill != nullptr : b.HoverTrack != nullptr);
        if (!hovered) return true;
      }
      RunItemAction(app, kind, action);
      break;
  }
  ResetHover(app);
  RequestRepaint(app);
  return true;
}

bool EditRectangleAction(Application& app, int pendingId, float x1, float y1, float x2, float y2,
                         bool ctrl) {
  ItemAction action;
  switch (pendingId) {
    case cmd::DisableZone:
      action = ItemAction::Disable;
      break;
    case cmd::EnableZone:
      action = ItemAction::Enable;
      break;
    case cmd::DeleteZone:
      action = ItemAction::Delete;
      break;
    default:
      return false;
  }
  if (!ZoneCommand(app.board, SortedZone(x1, y1, x2, y2), action, ctrl)) Refuse(app);
  ResetHover(app);
  app.board.PendingCommand = pendingId;
  RequestRepaint(app);
  return true;
}

void ContourHover(Application& app, int pendingId, float x, float y, float pixelsPerMm) {
  Board& b = app.board;
  TPolygon* list = IsCircuitLayer(b.ActiveLayer) ? b.Contours[b.ActiveLayer] : nullptr;
  switch (pendingId) {
    case cmd::DeleteSelectedContours:
      b.HoverContour = PickContour(list, x, y, PickRadius(kContourPickPixels, pixelsPerMm));
      break;
    case cmd::DeleteContourSegments:
      b.HoverContourSegment =
          PickContourSegment(list, x, y, PickRadius(kContourPickPixels, pixelsPerMm));
      break;
    case cmd::AddContourSegments:
      b.HoverContourVertex = PickOpenEnd(list, x, y, PickRadius(kOpenEndPickPixels, pixelsPerMm));
      break;
    default:
      break;
  }
}

bool ContourClickAction(Application& app, int pendingId, float x, float y, float pixelsPerMm,
                        bool rightButton) {
  Board& b = app.board;
  if (pendingId != cmd::DeleteSelectedContours && pendingId != cmd::DeleteContourSegments &&
      pendingId != cmd::AddContourSegments && pendingId != cmd::AddContourSegmentsSecond)
    return false;
  if (!IsCircuitLayer(b.ActiveLayer)) {
    Refuse(app);
    return true;
  }
  TPolygon*& list = b.Contours[b.ActiveLayer];
  const float pick = PickRadius(kContourPickPixels, pixelsPerMm);
  switch (pendingId) {
    case cmd::DeleteSelectedContours:
      if (!DeleteContour(list, PickContour(list, x, y, pick))) {
        Refuse(app);
        return true;
      }
      ForgetContourHover(b);
      break;
    case cmd::DeleteContourSegments:
      if (!DeleteContourSegment(list, PickContourSegment(list, x, y, pick))) {
        Refuse(app);
        return true;
      }
      ForgetContourHover(b);
      JoinAfterEdit(app, list);
      break;
    case cmd::AddContourSegments: {
      TXY* caught = PickOpenEnd(list, x, y, PickRadius(kOpenEndPickPixels, pixelsPerMm));
      if (!rightButton && !caught) {
        Refuse(app);
        RequestRepaint(app);
        return true;
      }
      ContourEditSession& session = app.toolpath.contourEdit;
      session.hasFreePoint = rightButton;
      session.freeX = x;
      session.freeY = y;
      b.HoverContourVertex = caught;
      b.PendingCommand = cmd::AddContourSegmentsSecond;
      return true;
    }
    case cmd::AddContourSegmentsSecond:
      SecondPoint(app, list, x, y, pixelsPerMm);
      return true;
  }
  RequestRepaint(app);
  return true;
}

float ContourJoinTolerance(Application& app) {
  const Settings& s = app.settings;
  return std::max(0.1f, ToolCutWidthByIndex(app.tools, s.MillingTool, s.MillingDepth, 0.5f));
}

}  // namespace isolith
