#include "toolpath/CopperPlanes.h"

#include <gtest/gtest.h>

#include "OutlineTestBoards.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddPad;
using test::AddTrack;
using test::CountMarkedTracks;
using test::FakePlatform;

bool IsPlane(const TTrack* t) {
  return TestFlags(*t, kTrackCopperPlane);
}

TEST(CopperPlanes, DetectionKeepsOnlyWhatPadsFeed) {
  FakePlatform platform;
  {
    Board b;  // no pads: every track is a plane
    TTrack* t = AddTrack(b, 0, 0, 0, 10, 0);
    EXPECT_TRUE(DetectCopperPlanes(b, platform, 0, false));
    EXPECT_TRUE(IsPlane(t));
  }
  Board b;
  TPad* pad = AddPad(b, 0, 0, 0);
  TTrack* fed = AddTrack(b, 0, 0.5f, 0, 10, 0);     // ends in the pad's copper
  TTrack* crossing = AddTrack(b, 0, 5, -3, 5, 3);   // merely crosses it
  TTrack* island = AddTrack(b, 0, 20, 20, 30, 20);  // reaches nothing
  TTrack* other = AddTrack(b, 1, 0, 0, 10, 0);      // pads of layer 0 do not feed layer 1
  EXPECT_TRUE(DetectCopperPlanes(b, platform, 0, true));
  EXPECT_FALSE(IsPlane(fed));
  EXPECT_FALSE(IsPlane(crossing));
  EXPECT_TRUE(IsPlane(island));
  EXPECT_EQ(CountMarkedTracks(b, 0), 0);
  EXPECT_EQ(platform.repaints, 1);
  EXPECT_TRUE(DetectCopperPlanes(b, platform, 1, false));
  EXPECT_TRUE(IsPlane(other));

  // A disabled pad saves nothing; a disabled track does not conduct.
  ClearFlags(*island, kTrackCopperPlane);
  SetFlags(*pad, kPadDisabled);
  DetectCopperPlanes(b, platform, 0, false);
  EXPECT_TRUE(IsPlane(fed));
  EXPECT_TRUE(IsPlane(crossing));
  ClearFlags(*pad, kPadDisabled);
  ClearFlags(*fed, kTrackCopperPlane);
  ClearFlags(*crossing, kTrackCopperPlane);
  TTrack* beyond = AddTrack(b, 0, 10, 0, 15, 0);
  SetFlags(*crossing, kTrackDisabled);
  TTrack* behindDisabled = AddTrack(b, 0, 5, 3, 8, 3);
  DetectCopperPlanes(b, platform, 0, false);
  EXPECT_FALSE(IsPlane(beyond));
  EXPECT_TRUE(IsPlane(behindDisabled));
}

TEST(CopperPlanes, DetectionAddsAndNeverRemovesPlanes) {
  FakePlatform platform;
  Board b;
  AddPad(b, 0, 0, 0);
  TTrack* fed = AddTrack(b, 0, 0, 0, 10, 0);
  SetFlags(*fed, kTrackCopperPlane);  // made a plane by the user
  TTrack* island = AddTrack(b, 0, 20, 20, 30, 20);
  EXPECT_TRUE(DetectCopperPlanes(b, platform, 0, false));
  EXPECT_TRUE(DetectCopperPlanes(b, platform, 0, false));
  EXPECT_TRUE(IsPlane(fed));
  EXPECT_TRUE(IsPlane(island));

  b.Contours[0] = new TPolygon;
  DisableAllCopperPlanes(b, platform);
  EXPECT_FALSE(IsPlane(fed));
  EXPECT_FALSE(IsPlane(island));
  EXPECT_EQ(b.Contours[0], nullptr);

  b.Contours[0] = new TPolygon;
  DetectAllCopperPlanes(b, platform);
  EXPECT_FALSE(IsPlane(fed));
  EXPECT_TRUE(IsPlane(island));
  EXPECT_EQ(b.Contours[0], nullptr);
}

TEST(CopperPlanes, FromNetTakesOnlyTracksThatReallyMeet) {
  FakePlatform platform;
  Board b;
  b.TrackWidth[0][0] = 0.5f;
  AddPad(b, 0, -5, 0);
  TTrack* feeder = AddTrack(b, 0, -5, 0, 0, 0);
  TTrack* first = AddTrack(b, 0, 0, 0, 10, 0);
  TTrack* side = AddTrack(b, 0, 0, 0.3f, 10, 0.3f);  // joined to `first` by the widths only
  b.HoverTrack = side;
  b.Contours[0] = new TPolygon;

  platform.answers = {Answer::No};
  EXPECT_FALSE(CopperPlaneFromNet(b, platform, 6, true));
  EXPECT_FALSE(IsPlane(side));
  ASSERT_EQ(platform.questions.size(), 1u);
  EXPECT_EQ(platform.questions[0].title, "Tracks");
  EXPECT_EQ(platform.questions[0].text, "Define this track zone as copper plane?");
  EXPECT_EQ(b.HoverTrack, nullptr);
  EXPECT_NE(b.Contours[0], nullptr);

  b.HoverTrack = side;
  EXPECT_TRUE(CopperPlaneFromNet(b, platform, 6, true));
  EXPECT_TRUE(IsPlane(side));
  EXPECT_FALSE(IsPlane(first));
  EXPECT_EQ(b.Contours[0], nullptr);
  EXPECT_EQ(CountMarkedTracks(b, 0), 0);

  // Detection with true widths joins them: `side` is fed, yet keeps the user's mark.
  DetectCopperPlanes(b, platform, 0, false);
  EXPECT_FALSE(IsPlane(feeder));
  EXPECT_TRUE(IsPlane(side));

  b.HoverTrack = side;
  EXPECT_TRUE(CopperPlaneFromNet(b, platform, 6, false));
  EXPECT_EQ(platform.questions.back().text,
            "Define this zone as active tracks (i.e. not copper plane) ?");
  EXPECT_FALSE(IsPlane(side));

  // Refusals: the beep on a layer that is not a circuit layer, silence without a track.
  b.ActiveLayer = kCutoutLayer;
  b.HoverTrack = side;
  EXPECT_FALSE(CopperPlaneFromNet(b, platform, 6, true));
  EXPECT_EQ(platform.beeps, 1);
  b.ActiveLayer = 1;
  EXPECT_FALSE(CopperPlaneFromNet(b, platform, 6, true));
  EXPECT_EQ(platform.beeps, 1);
  EXPECT_EQ(platform.questions.size(), 3u);
}

}  // namespace
}  // namespace isolith
