// One closed contour, written in ISO and HPGL, byte for byte as the formats define it.
#include <gtest/gtest.h>

#include "OutputWorld.h"
#include "output/driver/LayerWalk.h"

namespace isolith::test {
namespace {

bool WriteTriangle(OutputWorld& w, int format, const std::string& path) {
  w.AddTriangle();
  return ExportLayerWalk(w.context, format, path, 0, true, true, true, 0, 0, 0, true, true);
}

TEST(WorkedExample, IsoLineByLine) {
  OutputWorld w;
  const std::string path = w.Path("job.iso");
  ASSERT_TRUE(WriteTriangle(w, 9, path));
  EXPECT_EQ(
      ReadFile(path),
      CrLf({"( Isolith 3 - 25/09/2008 / ISO-Mill Output )",
            "( " + path + " created 25/12/2023 at 14:05 )",
            "( Workpiece dimensions: 100 x 70 x 1 mm )", "G00 G90 G94 G71 G40 G54 G80", "T1 M06",
            "M03 S20000", "G00 F1200", "G00 Z5", "G00 X10 Y10", "G00 Z0.5", "G01 F60 Z-0.1",
            "G01 F120 X20", "G01 X15 Y20", "G01 X10 Y10", "G00 Z5", "M05", "M02", "%"}));
}

TEST(WorkedExample, HpglOneLine) {
  OutputWorld w;
  const std::string path = w.Path("job.plt");
  ASSERT_TRUE(WriteTriangle(w, 2, path));
  EXPECT_EQ(ReadFile(path),
            "IN;PA;PU;SP1;VS20;PU400,400;VS1;!PZ10;!VZ1;VS2;PD800,400;PD600,800;PD400,400;VS20;"
            "PU;SP;\r\n");
}

}  // namespace
}  // namespace isolith::test
