#include "commands/PopupMenu.h"

#include "commands/CommandHandlers.h"
#include "commands/CommandTable.h"
#include "commands/TransformCommands.h"

namespace isolith {

namespace {

constexpr int kLine = 0;

// "Set as origin point", "Set as reference pad" and "Adjust to reference pad" act on the hover
// item as the picks of "Origin", "Reference pad" and "Adjust on reference" act on a clicked one,
// the right click's place standing for the click.
void RunPopupTransform(Application& app, int id) {
  const int pick = id == cmd::SetAsOrigin         ? cmd::Origin
                   : id == cmd::SetAsReferencePad ? cmd::ReferencePad
                                                  : cmd::AdjustOnReference;
  if (!TransformClickAction(app, pick, app.PopupX, app.PopupY)) Refuse(app);
}

constexpr CommandHandler kPopupHandlers[] = {
    {cmd::SetAsOrigin, cmd::AdjustToReferencePad, RunPopupTransform},
};

}  // namespace

std::span<const CommandHandler> PopupCommandHandlers() {
  return kPopupHandlers;
}

std::vector<PopupRow> PopupRows(const Application& app) {
  const Board& b = app.board;
  std::vector<int> ids;
  const auto add = [&ids](std::initializer_list<int> more) { ids.insert(ids.end(), more); };
  if (b.HoverPad)
    add({12600, 12601, 12602, kLine, 12603, 12604, 12605, kLine, 12606, 12607, kLine, 12615, 12619,
         12623});
  if (b.HoverTrack) {
    if (!ids.empty()) ids.push_back(kLine);
    add({12612, kLine, 12613, 12614, kLine, 12608, 12609, 12610, 12611, kLine, 12616, 12620, 12624,
         kLine, 12617, 12621, 12625, kLine, 12600});
  }
  if (b.HoverDrill) {
    if (!ids.empty()) ids.push_back(kLine);
    add({12600, 12602, kLine, 12618, 12622, 12626});
  }
  if (b.HoverCutout) {
    if (!ids.empty()) ids.push_back(kLine);
    add({12627, cmd::AddCuttingTabs, 12628});
  }
  std::vector<PopupRow> rows;
  const bool plane = b.HoverTrack && (b.HoverTrack->flags & kTrackCopperPlane);
  for (int id : ids) {
    if (id == kLine) {
      rows.push_back({});
      continue;
    }
    bool enabled = CommandEnabled(id, app);
    if (id == cmd::SetAsOrigin || id == cmd::SetAsReferencePad) enabled = enabled && b.LayerCount;
    if (id == cmd::AdjustToReferencePad)
      enabled = enabled && CommandEnabled(cmd::AdjustOnReference, app);
    if (id == cmd::DefineAsCopperPlane) enabled = enabled && !plane;
    if (id == cmd::DisableThisCopperPlane) enabled = enabled && plane;
    std::string text;
    for (const CommandInfo& c : ContextMenuCommands())
      if (c.id == id) text = c.text;
    rows.push_back({id, text, enabled});
  }
  return rows;
}

}  // namespace isolith
