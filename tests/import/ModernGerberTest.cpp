// The modern reading of photoplot files: the interpretation of the codes, arcs as chords,
// macro arithmetic and primitives, and filled regions as strokes that stay inside their area
// and cover it.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "import/GerberTestSupport.h"
#include "import/modern/ApertureMacros.h"
#include "import/modern/GerberImage.h"
#include "import/modern/ModernGerberReader.h"
#include "import/modern/RegionFill.h"

namespace isolith {
namespace {

using test::Items;

GerberImage Image(const std::string& text) {
  std::istringstream in(text);
  return ReadGerberImage(in, ImageScales{});
}

int Count(const GerberImage& image, ImageObject::Kind kind, bool clear = false) {
  int n = 0;
  for (const ImageObject& o : image.objects) n += o.kind == kind && o.clear == clear;
  return n;
}

constexpr const char* kMetric = "%FSLAX34Y34*%%MOMM*%%ADD10C,0.5*%D10*";

TEST(ModernGerber, CodesGiveTheImageAPlotterWouldExpose) {
  using K = ImageObject::Kind;
  struct Case {
    std::string text;
    int flashes, strokes, regions, cleared;
    double lastX, lastY;  // the last object's first point
  };
  const Case cases[] = {
      {std::string(kMetric) + "X10000Y20000D03*", 1, 0, 0, 0, 1, 2},
      // Inch, trailing zeros kept: "1" is 1.00000 of a 2.4 format... of six digits.
      {"%FSTAX24Y24*%%MOIN*%%ADD10C,0.01*%D10*X1Y2D03*", 1, 0, 0, 0, 254, 508},
      {"%FSLIX34Y34*%%MOMM*%%ADD10C,0.5*%D10*X10000Y0D03*X10000D03*", 2, 0, 0, 0, 2, 0},
      {std::string(kMetric) + "X0Y0D02*X10000Y0D01*Y10000*", 0, 2, 0, 0, 1, 0},
      // Comments and attributes are not scanned as codes.
      {std::string(kMetric) + "G04 X99Y99D03*%TO.N,GND*%G04 #@! TA.AperFunction,X1D03*", 0, 0, 0, 0,
       0, 0},
      {std::string(kMetric) + "G36*X0Y0D02*X10000Y0D01*Y10000D01*X0D01*Y0D01*G37*", 0, 0, 1, 0, 0,
       0},
      {std::string(kMetric) + "%LPC*%X0Y0D03*%LPD*%X10000Y0D03*", 1, 0, 0, 1, 1, 0},
      // Step and repeat: two by three copies of one flash.
      {std::string(kMetric) + "%SRX2Y3I1.0J2.0*%X0Y0D03*%SR*%", 6, 0, 0, 0, 1, 4},
      {std::string(kMetric) + "X10000Y0D03*M02*X20000D03*", 1, 0, 0, 0, 1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const GerberImage image = Image(c.text);
    EXPECT_EQ(Count(image, K::Flash), c.flashes);
    EXPECT_EQ(Count(image, K::Stroke), c.strokes);
    EXPECT_EQ(Count(image, K::Region), c.regions);
    EXPECT_EQ(Count(image, K::Flash, true), c.cleared);
    if (image.objects.empty()) continue;
    EXPECT_NEAR(image.objects.back().a.x, c.lastX, 1e-9);
    EXPECT_NEAR(image.objects.back().a.y, c.lastY, 1e-9);
  }
}

// Every chord of an arc stays within the tolerance of the circle and ends where the file says.
TEST(ModernGerber, ArcsBecomeChordsWithinTheTolerance) {
  struct Case {
    std::string codes;
    double radius, sweep;  // the arc's, from (r, 0) round the origin
  };
  const Case cases[] = {
      {"G75*X50000Y0D02*G03X50000Y0I-50000J0D01*", 5, 2 * std::numbers::pi},  // full circle
      {"G75*X50000Y0D02*G02X-50000Y0I-50000J0D01*", 5, std::numbers::pi},     // half, clockwise
      {"G74*X20000Y0D02*G03X0Y20000I20000J0D01*", 2, std::numbers::pi / 2},   // one quadrant
      {"G75*X2000Y0D02*G03X0Y2000I-2000J0D01*", 0.2, std::numbers::pi / 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.codes);
    const GerberImage image = Image(std::string(kMetric) + c.codes);
    ASSERT_GE(image.objects.size(), 2u);
    double turned = 0;
    for (const ImageObject& o : image.objects) {
      EXPECT_NEAR(std::hypot(o.b.x, o.b.y), c.radius, 1e-9);
      const OutlinePoint mid{(o.a.x + o.b.x) / 2, (o.a.y + o.b.y) / 2};
      EXPECT_LE(c.radius - std::hypot(mid.x, mid.y), 0.01 + 1e-9);
      turned += std::fabs(std::atan2(o.a.x * o.b.y - o.a.y * o.b.x, o.a.x * o.b.x + o.a.y * o.b.y));
    }
    EXPECT_NEAR(turned, c.sweep, 1e-6);
  }
}

TEST(ModernGerber, MacroArithmetic) {
  const std::vector<double> vars = {0, 1.5, 4, 1};
  const std::pair<const char*, double> cases[] = {
      {"$1x2+0.5", 3.5}, {"-($2-$3)/2", -1.5}, {"1+2X3", 7}, {"$9", 0}, {"2/0", 0}, {"abc", 0},
  };
  for (const auto& [text, value] : cases)
    EXPECT_DOUBLE_EQ(MacroExpression(text, vars), value) << text;
}

// Macro flashes become the pad shape that fits them, or the strokes of their figure.
TEST(ModernGerber, MacroFlashesBecomeTheNearestPad) {
  struct Case {
    const char* macro;
    const char* params;
    uint8_t shape;
    float sizeX, sizeY;
    int pads, tracks;
  };
  const Case cases[] = {
      {"5,1,8,0,0,1.08239X$1,22.5*", "1.0", kShapeOctagon, 1.08239f, 1.08239f, 1, 0},
      {"1,1,$1,0,0*", "0.8", kShapeCircle, 0.8f, 0.8f, 1, 0},
      {"21,1,$1,$2,0,0,0*", "2X1", kShapeRectangle, 2, 1, 1, 0},
      // A rounded rectangle: two bars and four corner circles, nearly its box.
      {"21,1,1.8,0.98,0,0,0*21,1,1.48,1.3,0,0,0*1,1,0.32,-0.74,-0.49*1,1,0.32,0.74,-0.49*"
       "1,1,0.32,0.74,0.49*1,1,0.32,-0.74,0.49*",
       "", kShapeRectangle, 1.8f, 1.3f, 1, 0},
      // A triangle fits no shape: its area is filled with strokes.
      {"4,1,3,0,0,2,0,1,1.5,0,0,0*", "", 0, 0, 0, 0, -1},
      // Thermals and moirés neither: their rings are filled, a moiré's cross hairs are bars.
      {"7,0,0,2,1,0.3,0*", "", 0, 0, 0, 0, -1},
      {"6,0,0,2,0.2,0.2,2,0.1,2.4,0*", "", kShapeRectangle, 2.4f, 0.1f, 2, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.macro);
    Board b;
    std::istringstream in(std::string(kMetric) + "%AMM*" + c.macro + "%%ADD11M" +
                          (*c.params ? std::string(",") + c.params : "") + "*%D11*X0Y0D03*");
    ReadModernGerber(in, test::GerberFormat(), 0, 0.01, b);
    const auto pads = Items(b.ImportPads);
    const auto tracks = Items(b.ImportTracks);
    ASSERT_EQ(int(pads.size()), c.pads);
    if (c.tracks < 0)
      EXPECT_GT(tracks.size(), 3u);
    else
      EXPECT_EQ(int(tracks.size()), c.tracks);
    if (pads.empty()) continue;
    EXPECT_EQ(b.PadShape[0][pads[0]->code], c.shape);
    EXPECT_NEAR(b.PadSizeX[0][pads[0]->code], c.sizeX, 1e-4);
    EXPECT_NEAR(b.PadSizeY[0][pads[0]->code], c.sizeY, 1e-4);
    EXPECT_EQ(b.ApertureFlags[pads[0]->code] & 3, 3);
  }
}

// Each distinct pad and stroke gets a table entry, a round pad and a stroke of one size sharing
// theirs; past the hundredth the nearest entry serves.
TEST(ModernGerber, TheApertureTableFillsThenServesTheNearest) {
  std::string text = kMetric;
  for (int i = 0; i < 120; ++i)
    text += "%ADD" + std::to_string(20 + i) + "C," + std::to_string(0.1 + 0.01 * i) + "*%D" +
            std::to_string(20 + i) + "*X" + std::to_string(i * 10000) + "Y0D03*";
  text += "D20*X0Y0D02*X0Y10000D01*";  // a stroke as wide as the first pad
  Board b;
  std::istringstream in(text);
  ReadModernGerber(in, test::GerberFormat(), 1, 0.01, b);
  const auto pads = Items(b.ImportPads);
  ASSERT_EQ(pads.size(), 120u);
  EXPECT_EQ(pads[99]->code, 99);
  EXPECT_NEAR(b.PadSizeX[1][pads[119]->code], 1.09f, 1e-5);  // 1.29 wants the largest there is
  ASSERT_NE(b.ImportTracks, nullptr);
  EXPECT_EQ(b.ImportTracks->code, pads[0]->code);
  EXPECT_NEAR(b.TrackWidth[1][pads[0]->code], 0.1f, 1e-6);
}

// A region with a hole, and one partly cleared afterwards: the strokes keep inside what stays
// copper and leave no sample point of it uncovered.
TEST(ModernGerber, RegionsFillTheirAreaAndNoMore) {
  const Outline square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const Outline hole = {{3, 3}, {7, 3}, {7, 7}, {3, 7}};
  const std::vector<Outline> cleared = {CircleOutline({10, 10}, 4, 0.001)};
  struct Case {
    std::vector<Outline> region;
    std::vector<const std::vector<Outline>*> clears;
  };
  const Case cases[] = {{{square}, {}}, {{square, hole}, {}}, {{square}, {&cleared}}};
  for (const Case& c : cases) {
    const std::vector<FillStroke> strokes = FillRegion(c.region, c.clears);
    auto copper = [&](OutlinePoint p) {
      if (!InsideOutlines(c.region, p)) return false;
      for (const auto* area : c.clears)
        if (InsideOutlines(*area, p)) return false;
      return true;
    };
    auto covered = [&](OutlinePoint p, double slack) {
      for (const FillStroke& s : strokes) {
        const double dx = s.b.x - s.a.x, dy = s.b.y - s.a.y, len2 = dx * dx + dy * dy;
        const double u =
            len2 > 0 ? std::clamp(((p.x - s.a.x) * dx + (p.y - s.a.y) * dy) / len2, 0.0, 1.0) : 0;
        if (std::hypot(p.x - s.a.x - u * dx, p.y - s.a.y - u * dy) <= s.width / 2 + slack)
          return true;
      }
      return false;
    };
    int inside = 0;
    for (double x = 0.013; x < 10; x += 0.0731)
      for (double y = 0.017; y < 10; y += 0.0693) {
        const OutlinePoint p{x, y};
        // Copper: covered. Away from copper by more than the outline pen: bare.
        bool nearEdge = false;
        for (double a = 0; a < 6.3 && !nearEdge; a += 0.3)
          nearEdge = copper(p) != copper({x + 0.04 * std::cos(a), y + 0.04 * std::sin(a)});
        if (nearEdge) continue;
        if (copper(p)) {
          ++inside;
          EXPECT_TRUE(covered(p, 0)) << x << " " << y;
        } else {
          EXPECT_FALSE(covered(p, -1e-6)) << x << " " << y;
        }
      }
    EXPECT_GT(inside, 5000);
  }
}

}  // namespace
}  // namespace isolith
