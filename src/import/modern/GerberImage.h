// A photoplot file interpreted whole, as the plotter would expose it: flashes, strokes and filled
// regions with their polarity, in file order, in millimetres, with step and repeat unrolled.
#pragma once

#include <istream>
#include <map>
#include <vector>

#include "import/modern/ApertureMacros.h"
#include "import/modern/Outlines.h"

namespace isolith {

struct ImageAperture {
  enum class Kind { Circle, Rectangle, Obround, Polygon, Macro };
  Kind kind = Kind::Circle;
  double sizeX = 0, sizeY = 0;     // diameter for circles and polygons
  int vertices = 0;                // polygons
  double rotation = 0;             // polygons, degrees
  double hole = 0;                 // round hole of the standard apertures
  std::vector<MacroShape> shapes;  // macros, worked out for this definition
};

struct ImageObject {
  enum class Kind { Flash, Stroke, Region };
  Kind kind = Kind::Flash;
  bool clear = false;             // drawn with %LPC
  int aperture = 0;               // the file's D number (flashes and strokes)
  OutlinePoint a, b;              // flash position; stroke ends
  std::vector<Outline> outlines;  // region contours
};

struct GerberImage {
  std::map<int, ImageAperture> apertures;
  std::vector<ImageObject> objects;
};

// The scales of a read: coordinates, aperture sizes, holes, each multiplied in after the file's
// unit; and the chord tolerance of arcs and round figures.
struct ImageScales {
  double coordinates = 1, apertures = 1, holes = 1;
  double tolerance = 0.01;
};

// Interprets RS-274-X (and plain RS-274-D) text: FS and MO, standard apertures and macros,
// G01/G02/G03 with G74/G75, G36/G37 regions, LP polarity, SR step and repeat. Comments (G04,
// X2 attributes) are skipped. Anything not understood is passed over.
GerberImage ReadGerberImage(std::istream& file, const ImageScales& scales);

}  // namespace isolith
