#include "toolpath/geometry/SvgWriter.h"

#include <gtest/gtest.h>

#include <limits>

#include "toolpath/geometry/Polylines.h"

namespace isolith {
namespace {

TEST(SvgWriter, DocumentShape) {
  SvgWriter svg;
  svg.SetStyleSheet("");
  svg.BeginGroup("pads", 0);
  const SvgPoint pad[] = {{0, 0}, {10, 0}, {10, 5.5f}};
  svg.AddPolyline(pad);
  svg.BeginGroup("tracks");
  svg.AddSegment(1.25f, -2, 3, 0.1f);
  EXPECT_EQ(svg.ToString(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"12mm\" height=\"9.5mm\" "
            "viewBox=\"-1 -6.5 12 9.5\">\n"
            "<g transform=\"scale(1,-1)\">\n"
            "<g class=\"pads\" data-layer=\"0\">\n"
            "<polyline points=\"0,0 10,0 10,5.5\"/>\n"
            "</g>\n"
            "<g class=\"tracks\">\n"
            "<polyline points=\"1.25,-2 3,0.1\"/>\n"
            "</g>\n"
            "</g>\n"
            "</svg>\n");
}

TEST(SvgWriter, PathsFromRecordsAndOddInput) {
  SvgWriter svg;
  EXPECT_TRUE(svg.Empty());
  svg.SetMargin(0);
  // Paths before any group go into a group without class.
  TPolygon* a = new TPolygon;
  AppendPoint(*a, 0, 0);
  AppendPoint(*a, 2, 0);
  TPolygon* b = new TPolygon;
  AppendPoint(*b, 2, 2);
  a->next = b;
  svg.AddPolygonList(a);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const SvgPoint odd[] = {{nan, 1}, {1, std::numeric_limits<float>::infinity()}};
  svg.AddPolyline(odd);  // nothing finite: skipped
  svg.BeginGroup("a&\"b\"", 12);
  svg.AddCircle(0, 0, 1, 4);
  EXPECT_FALSE(svg.Empty());
  const std::string text = svg.ToString();
  EXPECT_NE(text.find("<g>\n<polyline points=\"0,0 2,0\"/>\n<polyline points=\"2,2\"/>\n</g>"),
            std::string::npos);
  EXPECT_NE(text.find("<g class=\"a&amp;&quot;b&quot;\" data-layer=\"12\">"), std::string::npos);
  EXPECT_NE(text.find("viewBox=\"-1 -2 3 3\""), std::string::npos);
  EXPECT_NE(text.find("<style>polyline{"), std::string::npos);
  EXPECT_EQ(text.find("nan"), std::string::npos);
  EXPECT_EQ(text.find("inf"), std::string::npos);
  // A circle of four sides, closed on its first point.
  const size_t circle = text.find("<polyline points=\"1,0 ");
  ASSERT_NE(circle, std::string::npos);
  EXPECT_NE(text.find(" 1,0\"/>", circle), std::string::npos);
  delete b;
  a->next = nullptr;
  delete a;
}

TEST(SvgWriter, EmptyDocumentIsStillValid) {
  SvgWriter svg;
  const std::string text = svg.ToString();
  EXPECT_NE(text.find("viewBox=\"-1 -1 2 2\""), std::string::npos);
  EXPECT_NE(text.find("</svg>\n"), std::string::npos);
}

}  // namespace
}  // namespace isolith
