#include "commands/LayerInformation.h"

#include <gtest/gtest.h>

#include "TestBoards.h"
#include "commands/Commands.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

using test::AddDrill;
using test::AddPad;
using test::AddTrack;

TEST(Information, ListsTheAperturesInUse) {
  test::FakePlatform fake;
  Application app(fake);
  Board& b = app.board;
  b.PadShape[0][10] = kShapeCircle;
  b.PadSizeX[0][10] = 1.27f;
  b.PadShape[0][12] = kShapeRectangle;
  b.PadSizeX[0][12] = 1.5f;
  b.PadSizeY[0][12] = 2;
  b.TrackWidth[0][11] = 0.254f;
  b.DrillDiameter[3] = 0.8f;
  // Out of index order in the list, and one aperture used twice.
  AddPad(b, 0, 1, 1, 12);
  AddPad(b, 0, 2, 2, 10);
  AddPad(b, 0, 3, 3, 12);
  AddTrack(b, 0, 0, 0, 1, 1, 11);
  AddDrill(b, 1, 1, 3);
  b.LayerCount = 2;

  const std::string expected =
      "PADS :\n"
      "-  Aperture 10   ---->   Circle   Ø 0.050 '' (1.270 mm)    \n"
      "-  Aperture 12   ---->   Rectangle   0.059 × 0.079 '' (1.500 × 2.000 mm)    \n"
      "\nTRACKS :\n"
      "-  Aperture 11   ---->   0.010 '' (0.254 mm)    \n"
      "\nDRILLS :\n"
      "-  Aperture 03   ---->   Ø 0.031 '' (0.800 mm)    \n";
  EXPECT_EQ(InformationText(b), expected);

  ASSERT_TRUE(RunCommand(app, cmd::Information));
  ASSERT_EQ(fake.messages.size(), 1u);
  EXPECT_EQ(fake.messages[0].title, "Layer 0");
  EXPECT_EQ(fake.messages[0].text, expected);

  // A layer with tracks only has no pad heading; the octagon shows its diameter.
  b.ActiveLayer = 1;
  AddTrack(b, 1, 0, 0, 1, 1, 11);
  b.TrackWidth[1][11] = 0.5f;
  EXPECT_EQ(InformationTitle(b), "Layer 1");
  EXPECT_EQ(InformationText(b),
            "\nTRACKS :\n-  Aperture 11   ---->   0.020 '' (0.500 mm)    \n"
            "\nDRILLS :\n-  Aperture 03   ---->   Ø 0.031 '' (0.800 mm)    \n");
  b.PadShape[1][7] = kShapeOctagon;
  b.PadSizeX[1][7] = 2.54f;
  AddPad(b, 1, 5, 5, 7);
  EXPECT_TRUE(InformationText(b).starts_with(
      "PADS :\n-  Aperture 07   ---->   Octagon   Ø 0.100 '' (2.540 mm)    \n\nTRACKS :\n"));
}

TEST(Information, HeadingsAreCapitalsWithoutAccents) {
  EXPECT_EQ(HeadingText("Pads"), "PADS");
  EXPECT_EQ(HeadingText("Perçages"), "PERCAGES");
  EXPECT_EQ(HeadingText("Pistes éàü"), "PISTES EAU");
}

}  // namespace
}  // namespace isolith
