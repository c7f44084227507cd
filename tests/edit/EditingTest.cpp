#include <gtest/gtest.h>

#include "commands/TestBoards.h"
#include "core/board/BoardOps.h"
#include "edit/ApertureForms.h"
#include "edit/BoardDump.h"
#include "edit/IdenticalItems.h"
#include "edit/ItemActions.h"
#include "edit/SingleItemForms.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddDrill;
using test::AddPad;
using test::AddTrack;
using test::DumpBoard;

// Two through-hole pads of code 10 on layer 0 over pads of code 20 on layer 1, an SMD pad of
// code 12, tracks of codes 11 and 13, a drill under the first pad.
struct EditBoard {
  Board b;
  EditBoard() {
    ResetApertureTables(b);
    AddPad(b, 0, 10, 10, 10);
    AddPad(b, 0, 30, 10, 10);
    AddPad(b, 0, 50, 50, 12);
    AddPad(b, 1, 10, 10, 20);
    AddPad(b, 1, 70, 70, 20);
    AddTrack(b, 0, 10, 10, 30, 10, 11);
    AddTrack(b, 0, 30, 10, 30, 40, 11);
    AddTrack(b, 0, 50, 50, 60, 50, 13);
    AddDrill(b, 10, 10, 3);
    b.PadSizeX[0][10] = 2;
    b.PadSizeY[0][10] = 0;
    b.DrillDiameter[10] = 0.8f;
    b.DrillDiameter[12] = 0;
  }
  void WithContours() {
    for (int layer = 0; layer < kCircuitLayers; ++layer) {
      b.Contours[layer] = new TPolygon;
      b.Hatches[layer] = new TPolygon;
    }
  }
  int ContourLayers() const {
    int n = 0;
    for (TPolygon* p : b.Contours) n += p != nullptr;
    return n;
  }
};

TEST(PadApertures, LiveEditsAndCancelRestoresByteForByte) {
  EditBoard w;
  w.b.RefPad = w.b.Pads[0]->next;
  const std::string before = DumpBoard(w.b);
  TDialogChgPads form(w.b, ',');
  ASSERT_TRUE(form.IsOpen());
  EXPECT_EQ(form.codes.listed, (std::vector<int>{10, 12}));
  EXPECT_EQ(form.codes.current, 10);  // the first pad's code
  EXPECT_EQ(form.sizeX, "2,00");
  EXPECT_EQ(form.sizeY, "2,00");  // a Y of 0 takes the X size
  EXPECT_EQ(form.drill, "0,80");
  form.Step(5);
  EXPECT_EQ(form.codes.current, 12);  // past the end stays at the end
  EXPECT_EQ(form.drill, "");          // no hole shows an empty field
  form.Step(-1);

  // Size typed as 0 or still unparsed is passed over; a real one is written and mirrored to
  // the pad of layer 1 standing on the same point, in layer 1's table.
  form.SizeXEdited("0");
  form.SizeXEdited("2*");
  EXPECT_EQ(w.b.PadSizeX[0][10], 2);
  form.ShapeChosen(kShapeRectangle);
  form.SizeXEdited("3,5");
  EXPECT_FLOAT_EQ(w.b.PadSizeX[0][10], 3.5f);
  EXPECT_EQ(w.b.PadShape[1][20], kShapeRectangle);
  EXPECT_FLOAT_EQ(w.b.PadSizeX[1][20], 3.5f);
  EXPECT_TRUE(form.SizeYEnabled());

  // The drill: the pad without a hole gets one of its code.
  form.DrillEdited("1");
  EXPECT_FLOAT_EQ(w.b.DrillDiameter[10], 1);
  ASSERT_EQ(CountOf(w.b.Drills), 2);
  EXPECT_EQ(w.b.Drills->code, 10);
  EXPECT_EQ(w.b.Drills->next->x, 30);

  form.ApplySizeToAll();
  EXPECT_FLOAT_EQ(w.b.PadSizeX[0][12], 3.5f);
  form.DeleteAllOfType();
  EXPECT_EQ(CountOf(w.b.Pads[0]), 1);
  EXPECT_EQ(w.b.RefPad, nullptr);
  EXPECT_FLOAT_EQ(w.b.PadSizeX[0][10], 3.5f);  // the table entry stays

  form.Cancel();
  EXPECT_EQ(DumpBoard(w.b), before);
  EXPECT_EQ(w.b.RefPad, w.b.Pads[0]->next);  // the reference comes back with its pad
}

TEST(PadApertures, EmptiedDrillFieldAndEmptyLayer) {
  EditBoard w;
  TDialogChgPads form(w.b, '.');
  form.DrillEdited("");
  EXPECT_EQ(w.b.DrillDiameter[10], 0);
  ASSERT_EQ(CountOf(w.b.Drills), 1);  // no new holes for a hole-free aperture
  EXPECT_EQ(w.b.Drills->code, 10);    // the existing one keeps the aperture's code
  test::FakePlatform fake;
  ASSERT_TRUE(form.Accept(fake));

  w.b.ActiveLayer = 2;
  const std::string before = DumpBoard(w.b);
  TDialogChgPads none(w.b, '.');
  EXPECT_FALSE(none.IsOpen());
  none.SizeXEdited("5");
  none.DeleteAllOfType();
  none.Cancel();
  EXPECT_EQ(DumpBoard(w.b), before);
}

TEST(TrackApertures, WidthCentrelineAndCancel) {
  EditBoard w;
  w.b.HoverTrack = w.b.Tracks[0]->next->next;  // code 13
  const std::string before = DumpBoard(w.b);
  TDialogChgTracks form(w.b, '.');
  EXPECT_EQ(form.codes.current, 13);
  form.Step(-1);
  EXPECT_EQ(form.codes.current, 11);
  form.WidthEdited("0.4");
  EXPECT_FLOAT_EQ(w.b.TrackWidth[0][11], 0.4f);
  // Majority toggle: none engraved -> all engraved, with their disabled and plane bits gone.
  w.b.Tracks[0]->flags = kTrackDisabled;
  form.ToggleCentreline();
  EXPECT_EQ(w.b.Tracks[0]->flags, kTrackEngraved);
  EXPECT_EQ(w.b.Tracks[0]->next->flags, kTrackEngraved);
  form.ToggleCentreline();
  EXPECT_EQ(w.b.Tracks[0]->flags, 0);
  form.DeleteAllOfType();
  EXPECT_EQ(CountOf(w.b.Tracks[0]), 1);
  form.Cancel();
  EXPECT_EQ(DumpBoard(w.b), before);
  EXPECT_EQ(w.b.HoverTrack, w.b.Tracks[0]->next->next);
}

TEST(SingleItems, CodesFoundFreeOrOverwrittenAndCancel) {
  EditBoard w;
  TPad& pad = *w.b.Pads[0]->next;  // code 10 at (30, 10), no drill
  const std::string before = DumpBoard(w.b);
  TDialogChgOnePad form(w.b, pad, '.');
  EXPECT_EQ(form.drill, "");
  // An existing aperture within 0.05, the first in index order: code 0, a circle of 1.27.
  form.SizeXEdited("1.3");
  EXPECT_EQ(pad.code, 0);
  // No match: the first code no pad of the layer uses (1, the pad itself now holding 0),
  // overwritten and kept for the run.
  form.SizeXEdited("4");
  EXPECT_EQ(pad.code, 1);
  EXPECT_EQ(w.b.PadSizeX[0][1], 4);
  form.ShapeChosen(kShapeRectangle);
  form.SizeYEdited("2");
  EXPECT_EQ(pad.code, 1);
  EXPECT_EQ(form.freeCode, 1);
  EXPECT_EQ(w.b.PadSizeY[0][1], 2);
  EXPECT_EQ(w.b.PadShape[0][1], kShapeRectangle);
  // A drill where there was none: appended at the pad with the code of 0.635.
  form.DrillEdited("0.6");
  ASSERT_EQ(CountOf(w.b.Drills), 2);
  EXPECT_EQ(LastOf(w.b.Drills)->code, 0);
  // No diameter near 2.5: the first hole-free entry (12) is overwritten.
  form.DrillEdited("2.5");
  EXPECT_EQ(LastOf(w.b.Drills)->code, 12);
  EXPECT_EQ(w.b.DrillDiameter[12], 2.5f);
  form.Cancel();
  EXPECT_EQ(DumpBoard(w.b), before);

  TTrack& track = *w.b.Tracks[0];
  TDialogChgOneTrack one(w.b, track, '.');
  one.WidthEdited("0.64");  // within 0.01 of 0.635: code 0
  EXPECT_EQ(track.code, 0);
  one.WidthEdited("0.9");  // the first code no track of the layer uses
  EXPECT_EQ(track.code, 1);
  EXPECT_FLOAT_EQ(w.b.TrackWidth[0][1], 0.9f);
  one.WidthEdited("1.2");  // the same free code again
  EXPECT_EQ(track.code, 1);
  one.Cancel();
  EXPECT_EQ(DumpBoard(w.b), before);
}

TEST(IdenticalItems, DeleteRotateThermalEngrave) {
  EditBoard w;
  w.WithContours();
  test::FakePlatform fake;
  w.b.HoverPad = w.b.Pads[0];  // code 10; layer 1's codes are 20: the number alone counts
  w.b.PadSizeY[0][10] = 1;
  ASSERT_TRUE(RotateIdenticalPads(w.b));
  EXPECT_EQ(w.b.PadSizeX[0][10], 1);
  EXPECT_EQ(w.b.PadSizeY[0][10], 2);
  ASSERT_TRUE(MakeThermal(w.b));
  EXPECT_EQ(w.b.Pads[0]->flags, kPadThermal);
  EXPECT_EQ(w.ContourLayers(), 3);  // the active layer's only

  // The pads in question show highlighted while it is asked, and no longer after.
  struct Watching : test::FakePlatform {
    Board* board = nullptr;
    int seen = -2;
    Answer Ask(std::string_view t, std::string_view q, bool c, Answer p) override {
      seen = board->HighlightPadCode;
      return FakePlatform::Ask(t, q, c, p);
    }
  } watching;
  watching.board = &w.b;
  watching.answers = {Answer::No};
  EXPECT_FALSE(DeleteIdenticalPads(w.b, watching));
  EXPECT_EQ(watching.seen, 10);
  EXPECT_EQ(w.b.HighlightPadCode, -1);
  fake.answers = {Answer::No, Answer::Yes};
  EXPECT_FALSE(DeleteIdenticalPads(w.b, fake));
  EXPECT_TRUE(DeleteIdenticalPads(w.b, fake));
  EXPECT_EQ(CountOf(w.b.Pads[0]), 1);
  EXPECT_EQ(CountOf(w.b.Pads[1]), 2);
  EXPECT_EQ(fake.questions.back().text, "Delete these pads?");
  EXPECT_EQ(fake.questions.back().title, "Pads");

  w.b.HoverTrack = w.b.Tracks[0];
  AddTrack(w.b, 2, 0, 0, 5, 5, 11)->flags = kTrackEngraved;
  ASSERT_TRUE(EngraveIdenticalTracks(w.b, fake));  // 1 of 3 engraved: all become engraved
  EXPECT_EQ(fake.questions.back().text, "Engrave these tracks at centre?");
  EXPECT_EQ(w.b.Tracks[0]->flags, kTrackEngraved);
  EXPECT_EQ(w.ContourLayers(), 0);
  ASSERT_TRUE(DeleteIdenticalTracks(w.b, fake));
  EXPECT_EQ(CountOf(w.b.Tracks[0]), 1);
  EXPECT_EQ(w.b.Tracks[2], nullptr);

  Board empty;
  EXPECT_FALSE(DeleteIdenticalPads(empty, fake));
  EXPECT_FALSE(RotateIdenticalPads(empty));
  EXPECT_FALSE(MakeThermal(empty));
  EXPECT_FALSE(EngraveIdenticalTracks(empty, fake));
}

TEST(ItemActions, EachRowFreesExactlyItsContours) {
  struct Row {
    ItemAction action;
    int kind;  // 0 pad, 1 track, 2 drill
    int contoursLeft;
    uint8_t flags;
    int left;  // items of that kind left on layer 0 (drills: the job)
  };
  const Row rows[] = {
      {ItemAction::Disable, 0, 0, kPadDisabled, 3},
      {ItemAction::Enable, 0, 0, 0, 3},
      {ItemAction::Delete, 0, 0, 0, 2},
      {ItemAction::Disable, 1, 3, kTrackDisabled, 3},
      {ItemAction::Enable, 1, 3, 0, 3},
      {ItemAction::Delete, 1, 3, 0, 2},
      {ItemAction::Disable, 2, 4, kDrillDisabled, 1},
      {ItemAction::Enable, 2, 4, 0, 1},
      {ItemAction::Delete, 2, 4, 0, 0},
  };
  for (const Row& r : rows) {
    EditBoard w;
    w.WithContours();
    w.b.Pads[0]->flags = w.b.Tracks[0]->flags = w.b.Drills->flags = 0x01;
    if (r.action == ItemAction::Disable) w.b.Pads[0]->flags = w.b.Tracks[0]->flags = 0;
    if (r.action == ItemAction::Disable) w.b.Drills->flags = 0;
    w.b.HoverPad = w.b.Pads[0];
    w.b.HoverTrack = w.b.Tracks[0];
    w.b.HoverDrill = w.b.Drills;
    const bool done = r.kind == 0   ? PadAction(w.b, r.action)
                      : r.kind == 1 ? TrackAction(w.b, r.action)
                                    : DrillAction(w.b, r.action);
    ASSERT_TRUE(done);
    EXPECT_EQ(w.ContourLayers(), r.contoursLeft) << r.kind;
    const int left = r.kind == 0   ? CountOf(w.b.Pads[0])
                     : r.kind == 1 ? CountOf(w.b.Tracks[0])
                                   : CountOf(w.b.Drills);
    EXPECT_EQ(left, r.left) << r.kind;
    if (r.action != ItemAction::Delete) {
      const uint8_t flags = r.kind == 0   ? w.b.Pads[0]->flags
                            : r.kind == 1 ? w.b.Tracks[0]->flags
                                          : w.b.Drills->flags;
      EXPECT_EQ(flags, r.flags) << r.kind;
    }
  }
  Board empty;
  EXPECT_FALSE(PadAction(empty, ItemAction::Delete));
  EXPECT_FALSE(TrackAction(empty, ItemAction::Disable));
  EXPECT_FALSE(DrillAction(empty, ItemAction::Enable));
}

TEST(ItemActions, ZonesOnOneOrAllLayers) {
  EditBoard w;
  w.WithContours();
  AddTrack(w.b, 1, 9, 9, 11, 11, 11)->flags = kTrackCopperPlane | kTrackDisabled;
  const ZoneBox box = SortedZone(35, 35, 5, 5);  // holds (10,10), (30,10), the first track only
  EXPECT_EQ(box.xmin, 5);
  // Without Ctrl: layer 0 only; the track reaching (30,40) has one end out and stays.
  ASSERT_TRUE(ZoneCommand(w.b, box, ItemAction::Disable, false));
  EXPECT_EQ(w.b.Pads[0]->flags, kPadDisabled);
  EXPECT_EQ(w.b.Tracks[0]->flags, kTrackDisabled);
  EXPECT_EQ(w.b.Tracks[0]->next->flags, 0);
  EXPECT_EQ(w.b.Drills->flags, kDrillDisabled);
  EXPECT_EQ(w.b.Pads[1]->flags, 0);
  EXPECT_EQ(w.ContourLayers(), 3);
  // Re-enable with Ctrl ends the copper plane of layer 1 too.
  ASSERT_TRUE(ZoneCommand(w.b, box, ItemAction::Enable, true));
  EXPECT_EQ(w.b.Tracks[1]->flags, 0);
  EXPECT_EQ(w.b.Pads[0]->flags, 0);
  // Delete: pads, the track and the drill go; an empty zone wants the beep without Ctrl only.
  ASSERT_TRUE(ZoneCommand(w.b, box, ItemAction::Delete, false));
  EXPECT_EQ(CountOf(w.b.Pads[0]), 1);
  EXPECT_EQ(CountOf(w.b.Tracks[0]), 2);
  EXPECT_EQ(w.b.Drills, nullptr);
  const ZoneBox nothing = SortedZone(90, 90, 95, 95);
  EXPECT_FALSE(ZoneCommand(w.b, nothing, ItemAction::Delete, false));
  EXPECT_TRUE(ZoneCommand(w.b, nothing, ItemAction::Delete, true));
  w.b.ActiveLayer = kDrillLayer;
  EXPECT_TRUE(ZoneCommand(w.b, box, ItemAction::Delete, false));  // nothing runs, no beep
  EXPECT_EQ(CountOf(w.b.Pads[1]), 2);
}

TEST(ItemActions, NetOfAHundredThousandTracksAndCutouts) {
  Board b;
  ResetApertureTables(b);
  constexpr int kTracks = 100000;
  TTrack* tail = nullptr;
  for (int i = 0; i < kTracks; ++i)
    AppendTo(b.Tracks[0], tail, new TTrack{0, 0, i * 0.5f, 0, (i + 1) * 0.5f, 0, nullptr});
  AppendTo(b.Tracks[0], tail, new TTrack{0, 0, 0, 80, 10, 80, nullptr});  // apart
  test::FakePlatform fake;
  b.HoverTrack = b.Tracks[0];
  fake.answers = {Answer::Yes, Answer::No, Answer::Yes};
  ASSERT_EQ(TrackNetAction(b, fake, ItemAction::Disable), NetResult::Done);
  EXPECT_EQ(fake.questions.back().text, "Disable this track net?");
  EXPECT_EQ(LastOf(b.Tracks[0])->flags, 0);
  EXPECT_EQ(b.Tracks[0]->next->flags, kTrackDisabled);
  b.HoverTrack = b.Tracks[0];
  EXPECT_EQ(TrackNetAction(b, fake, ItemAction::Enable), NetResult::Nothing);
  EXPECT_EQ(b.Tracks[0]->flags, kTrackDisabled);  // No: nothing, marks cleared
  EXPECT_EQ(b.Tracks[0]->next->flags & kVisited, 0);
  b.HoverTrack = b.Tracks[0];
  ASSERT_EQ(TrackNetAction(b, fake, ItemAction::Delete), NetResult::Done);
  EXPECT_EQ(fake.questions.back().text, "Delete this track net?");
  EXPECT_EQ(CountOf(b.Tracks[0]), 1);
  EXPECT_EQ(b.HoverTrack, nullptr);
  b.ActiveLayer = kDrillLayer;
  EXPECT_EQ(TrackNetAction(b, fake, ItemAction::Delete), NetResult::Refused);

  // Cut-outs: the last one deleted on the cutout layer brings layer 0 back.
  test::AddCutout(b);
  TCutout* second = test::AddCutout(b);
  b.ActiveLayer = kCutoutLayer;
  EXPECT_TRUE(DeleteCutout(b, b.Cutouts));
  EXPECT_EQ(b.ActiveLayer, kCutoutLayer);
  EXPECT_TRUE(DeleteCutout(b, second));
  EXPECT_EQ(b.ActiveLayer, 0);
  EXPECT_FALSE(DeleteCutout(b, nullptr));
}

}  // namespace
}  // namespace isolith
