#include "import/modern/GerberImage.h"

#include "import/modern/FixedNumbers.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <string>

namespace isolith {

namespace {

constexpr double kInch = 25.4;

struct Interpreter {
  ImageScales scales;
  GerberImage image;
  std::map<std::string, MacroDefinition> macros;
  // Format and unit.
  double unit = kInch;
  int decimals = 3;
  int digits = 6;  // integer plus decimal digits, for files that leave out trailing zeros
  bool trailingKept = false;
  bool incremental = false;
  // Plotter state.
  OutlinePoint pen;
  int interpolation = 1;  // 1 straight, 2 clockwise, 3 counter-clockwise
  bool multiQuadrant = false;
  int operation = 2;
  int aperture = 0;
  bool clear = false;
  bool inRegion = false;
  std::vector<Outline> regionContours;
  Outline contour;
  // Step and repeat: the first object of the block and its repeats.
  size_t repeatFrom = 0;
  int repeatX = 1, repeatY = 1;
  double repeatI = 0, repeatJ = 0;

  double Coordinate(const std::string& text) const {
    return FixedNumber(text, decimals, trailingKept ? digits : 0) * unit * scales.coordinates;
  }

  void Format(const std::string& w) {
    for (size_t i = 2; i < w.size(); ++i) {
      const char c = w[i];
      if (c == 'T') trailingKept = true;
      if (c == 'L') trailingKept = false;
      if (c == 'I') incremental = true;
      if (c == 'A') incremental = false;
      if (c == 'X' && i + 2 < w.size() && std::isdigit(static_cast<unsigned char>(w[i + 1])) &&
          std::isdigit(static_cast<unsigned char>(w[i + 2]))) {
        decimals = w[i + 2] - '0';
        digits = (w[i + 1] - '0') + decimals;
      }
    }
  }

  void Define(const std::string& w) {
    size_t i = 3;
    int number = 0;
    while (i < w.size() && std::isdigit(static_cast<unsigned char>(w[i])))
      number = number * 10 + (w[i++] - '0');
    const size_t comma = w.find(',', i);
    const std::string name =
        w.substr(i, comma == std::string::npos ? std::string::npos : comma - i);
    std::vector<double> params;
    if (comma != std::string::npos) {
      std::string p;
      for (size_t k = comma + 1; k <= w.size(); ++k) {
        if (k == w.size() || w[k] == 'X') {
          params.push_back(std::strtod(p.c_str(), nullptr));
          p.clear();
        } else {
          p += w[k];
        }
      }
    }
    auto at = [&](size_t k) {
      return k < params.size() && std::isfinite(params[k]) ? params[k] : 0.0;
    };
    const double size = unit * scales.apertures;
    ImageAperture a;
    if (name == "C") {
      a.kind = ImageAperture::Kind::Circle;
      a.sizeX = a.sizeY = at(0) * size;
      a.hole = at(1) * unit * scales.holes;
    } else if (name == "R" || name == "O") {
      a.kind = name == "R" ? ImageAperture::Kind::Rectangle : ImageAperture::Kind::Obround;
      a.sizeX = at(0) * size;
      a.sizeY = at(1) * size;
      a.hole = at(2) * unit * scales.holes;
    } else if (name == "P") {
      a.kind = ImageAperture::Kind::Polygon;
      a.sizeX = a.sizeY = at(0) * size;
      a.vertices = int(at(1));
      a.rotation = at(2);
      a.hole = at(3) * unit * scales.holes;
    } else {
      const auto macro = macros.find(name);
      if (macro == macros.end()) return;
      a.kind = ImageAperture::Kind::Macro;
      a.shapes = EvaluateMacro(macro->second, params, size, scales.tolerance);
    }
    image.apertures[number] = std::move(a);
  }

  void Repeat(const std::string& w) {
    // Close the block that runs: its objects are copied at every other place of the grid.
    const size_t end = image.objects.size();
    for (int i = 0; i < repeatX; ++i)
      for (int j = 0; j < repeatY; ++j) {
        if (i == 0 && j == 0) continue;
        const double dx = i * repeatI, dy = j * repeatJ;
        for (size_t k = repeatFrom; k < end; ++k) {
          ImageObject o = image.objects[k];
          o.a = {o.a.x + dx, o.a.y + dy};
          o.b = {o.b.x + dx, o.b.y + dy};
          for (Outline& c : o.outlines)
            for (OutlinePoint& p : c) p = {p.x + dx, p.y + dy};
          image.objects.push_back(std::move(o));
        }
      }
    repeatFrom = image.objects.size();
    repeatX = repeatY = 1;
    repeatI = repeatJ = 0;
    for (size_t i = 2; i < w.size(); ++i) {
      const char c = w[i];
      size_t n = i + 1;
      while (n < w.size() &&
             (std::isdigit(static_cast<unsigned char>(w[n])) || w[n] == '.' || w[n] == '-'))
        ++n;
      const double v = std::strtod(w.substr(i + 1, n - i - 1).c_str(), nullptr);
      if (c == 'X') repeatX = std::max(1, std::min(int(v), 1000));
      if (c == 'Y') repeatY = std::max(1, std::min(int(v), 1000));
      if (c == 'I') repeatI = v * unit * scales.coordinates;
      if (c == 'J') repeatJ = v * unit * scales.coordinates;
      i = n - 1;
    }
  }

  void Extended(const std::vector<std::string>& words) {
    for (size_t n = 0; n < words.size(); ++n) {
      const std::string& w = words[n];
      if (w.rfind("FS", 0) == 0) {
        Format(w);
      } else if (w == "MOIN") {
        unit = kInch;
      } else if (w == "MOMM") {
        unit = 1;
      } else if (w.rfind("AD", 0) == 0) {
        Define(w);
      } else if (w.rfind("AM", 0) == 0) {
        // The rest of the block is the macro's body.
        MacroDefinition& m = macros[w.substr(2)];
        m.words.assign(words.begin() + long(n) + 1, words.end());
        return;
      } else if (w.rfind("LP", 0) == 0) {
        clear = w.size() > 2 && w[2] == 'C';
      } else if (w.rfind("SR", 0) == 0) {
        Repeat(w);
      }
    }
  }

  void Add(ImageObject o) {
    o.clear = clear;
    image.objects.push_back(std::move(o));
  }

  void CloseContour() {
    if (contour.size() >= 3) regionContours.push_back(contour);
    contour.clear();
  }

  // The centre of a single-quadrant arc: the one of the four sign choices whose arc turns the
  // given way by at most a quarter turn with the most equal radii.
  OutlinePoint QuadrantCentre(OutlinePoint from, OutlinePoint to, double i, double j,
                              bool clockwise) const {
    OutlinePoint best{from.x + i, from.y + j};
    double bestError = 1e300;
    for (int sx : {-1, 1})
      for (int sy : {-1, 1}) {
        const OutlinePoint c{from.x + sx * std::fabs(i), from.y + sy * std::fabs(j)};
        double sweep = std::atan2(to.y - c.y, to.x - c.x) - std::atan2(from.y - c.y, from.x - c.x);
        if (clockwise) sweep = -sweep;
        while (sweep < 0) sweep += 2 * std::numbers::pi;
        if (sweep > std::numbers::pi / 2 + 1e-3) continue;
        const double error =
            std::fabs(std::hypot(from.x - c.x, from.y - c.y) - std::hypot(to.x - c.x, to.y - c.y));
        if (error < bestError) {
          bestError = error;
          best = c;
        }
      }
    return best;
  }

  void Operate(OutlinePoint to, bool hasI, double i, double j) {
    if (operation == 3) {
      ImageObject o;
      o.kind = ImageObject::Kind::Flash;
      o.aperture = aperture;
      o.a = to;
      if (!inRegion) Add(std::move(o));
    } else if (operation == 1) {
      std::vector<OutlinePoint> points;
      if (interpolation == 1 || !hasI) {
        points.push_back(to);
      } else {
        const bool clockwise = interpolation == 2;
        const OutlinePoint c = multiQuadrant ? OutlinePoint{pen.x + i, pen.y + j}
                                             : QuadrantCentre(pen, to, i, j, clockwise);
        points = ArcChords(pen, to, c, clockwise, multiQuadrant, scales.tolerance);
      }
      if (inRegion) {
        if (contour.empty()) contour.push_back(pen);
        contour.insert(contour.end(), points.begin(), points.end());
      } else {
        OutlinePoint from = pen;
        for (const OutlinePoint& p : points) {
          ImageObject o;
          o.kind = ImageObject::Kind::Stroke;
          o.aperture = aperture;
          o.a = from;
          o.b = p;
          Add(std::move(o));
          from = p;
        }
      }
    } else if (inRegion) {
      CloseContour();
    }
    pen = to;
  }

  void Codes(const std::string& w) {
    const bool comment = w.rfind("G04", 0) == 0 ||
                         (w.rfind("G4", 0) == 0 &&
                          (w.size() == 2 || !std::isdigit(static_cast<unsigned char>(w[2]))));
    if (comment) return;  // X2 attributes among them
    OutlinePoint to = pen;
    bool moved = false, hasI = false;
    double i = 0, j = 0;
    bool operated = false;
    for (size_t k = 0; k < w.size();) {
      const char letter = w[k];
      size_t n = k + 1;
      while (n < w.size() && (std::isdigit(static_cast<unsigned char>(w[n])) || w[n] == '.' ||
                              w[n] == '-' || w[n] == '+'))
        ++n;
      const std::string number = w.substr(k + 1, n - k - 1);
      const int code = std::atoi(number.c_str());
      switch (letter) {
        case 'G':
          if (code >= 1 && code <= 3) interpolation = code;
          if (code == 74) multiQuadrant = false;
          if (code == 75) multiQuadrant = true;
          if (code == 70) unit = kInch;
          if (code == 71) unit = 1;
          if (code == 90) incremental = false;
          if (code == 91) incremental = true;
          if (code == 36) {
            inRegion = true;
            regionContours.clear();
            contour.clear();
          }
          if (code == 37 && inRegion) {
            CloseContour();
            inRegion = false;
            ImageObject o;
            o.kind = ImageObject::Kind::Region;
            o.outlines = std::move(regionContours);
            regionContours.clear();
            if (!o.outlines.empty()) Add(std::move(o));
          }
          break;
        case 'D':
          if (code >= 1 && code <= 3) {
            operation = code;
            operated = true;
          } else if (code >= 10) {
            aperture = code;
          }
          break;
        case 'X':
          to.x = incremental ? to.x + Coordinate(number) : Coordinate(number);
          moved = true;
          break;
        case 'Y':
          to.y = incremental ? to.y + Coordinate(number) : Coordinate(number);
          moved = true;
          break;
        case 'I':
          i = Coordinate(number);
          hasI = true;
          break;
        case 'J':
          j = Coordinate(number);
          hasI = true;
          break;
        default:
          break;
      }
      k = n;
    }
    if (moved || operated) Operate(to, hasI, i, j);
  }

  void Finish() {
    if (inRegion) {
      CloseContour();
      ImageObject o;
      o.kind = ImageObject::Kind::Region;
      o.outlines = std::move(regionContours);
      if (!o.outlines.empty()) Add(std::move(o));
    }
    Repeat("SR");
  }
};

}  // namespace

GerberImage ReadGerberImage(std::istream& file, const ImageScales& scales) {
  Interpreter in;
  in.scales = scales;
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::string word;
  std::vector<std::string> block;
  bool extended = false;
  for (char c : text) {
    if (c == '%') {
      if (extended) {
        if (!word.empty()) block.push_back(word);
        in.Extended(block);
        block.clear();
      } else if (!word.empty()) {
        in.Codes(word);
      }
      word.clear();
      extended = !extended;
    } else if (c == '*') {
      if (extended) {
        block.push_back(word);
      } else if (word == "M02" || word == "M00") {
        break;
      } else {
        in.Codes(word);
      }
      word.clear();
    } else if (static_cast<unsigned char>(c) > ' ') {
      word += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
  }
  in.Finish();
  return std::move(in.image);
}

}  // namespace isolith
