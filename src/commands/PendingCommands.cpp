#include "commands/PendingCommands.h"

namespace isolith {

namespace {

using enum PickTarget;
constexpr PendingInfo kPending[] = {
    {12010, Item, AfterClick::Ends},          {12013, Pad, AfterClick::Ends},
    {12014, PadOrDrill, AfterClick::Ends},    {12104, Point, AfterClick::Ends},
    {12107, Contour, AfterClick::Ends},       {12108, ContourPoints, AfterClick::Ends},
    {12109, ContourPoints, AfterClick::Ends}, {12110, ContourSegment, AfterClick::Ends},
    {12111, Rectangle, AfterClick::Stays},    {12113, TrackNet, AfterClick::Ends},
    {12114, TrackNet, AfterClick::Ends},      {12121, TrackNet, AfterClick::Ends},
    {12122, Cutout, AfterClick::Ends},        {12123, PointOnCutout, AfterClick::Stays},
    {12203, Pad, AfterClick::WithStay},       {12204, Track, AfterClick::WithStay},
    {12206, Pad, AfterClick::Ends},           {12210, Pad, AfterClick::Ends},
    {12211, Track, AfterClick::Ends},         {12212, TrackNet, AfterClick::Ends},
    {12213, Drill, AfterClick::Ends},         {12214, Rectangle, AfterClick::Stays},
    {12220, Pad, AfterClick::Ends},           {12221, Track, AfterClick::Ends},
    {12222, TrackNet, AfterClick::Ends},      {12223, Drill, AfterClick::Ends},
    {12224, Rectangle, AfterClick::Stays},    {12230, Pad, AfterClick::Ends},
    {12231, Track, AfterClick::Ends},         {12232, TrackNet, AfterClick::Ends},
    {12233, Drill, AfterClick::Ends},         {12234, Cutout, AfterClick::Ends},
    {12235, Rectangle, AfterClick::Stays},    {12307, Rectangle, AfterClick::Ends},
};

}  // namespace

std::span<const PendingInfo> PendingCommandTable() {
  return kPending;
}

const PendingInfo* FindPending(int id) {
  for (const PendingInfo& p : kPending)
    if (p.id == id) return &p;
  return nullptr;
}

bool IsRectanglePick(int id) {
  const PendingInfo* p = FindPending(id);
  return p != nullptr && p->target == PickTarget::Rectangle;
}

bool IsItemPick(int id) {
  const PendingInfo* p = FindPending(id);
  return p != nullptr && p->target != PickTarget::Rectangle;
}

}  // namespace isolith
