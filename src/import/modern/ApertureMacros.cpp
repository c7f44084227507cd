#include "import/modern/ApertureMacros.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace isolith {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

// A recursive descent over "+ -", "x X /", unary signs, brackets, numbers and $n.
struct ExpressionReader {
  const std::string& text;
  const std::vector<double>& vars;
  size_t pos = 0;

  double Sum() {
    double v = Product();
    while (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) {
      const char op = text[pos++];
      const double w = Product();
      v = op == '+' ? v + w : v - w;
    }
    return v;
  }
  double Product() {
    double v = Factor();
    while (pos < text.size() && (text[pos] == 'x' || text[pos] == 'X' || text[pos] == '/')) {
      const char op = text[pos++];
      const double w = Factor();
      v = op == '/' ? (w != 0 ? v / w : 0) : v * w;
    }
    return v;
  }
  double Factor() {
    if (pos >= text.size()) return 0;
    const char c = text[pos];
    if (c == '-' || c == '+') {
      ++pos;
      const double v = Factor();
      return c == '-' ? -v : v;
    }
    if (c == '(') {
      ++pos;
      const double v = Sum();
      if (pos < text.size() && text[pos] == ')') ++pos;
      return v;
    }
    if (c == '$') {
      ++pos;
      size_t n = 0;
      while (pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos])))
        n = n * 10 + size_t(text[pos++] - '0');
      return n < vars.size() ? vars[n] : 0;
    }
    const size_t start = pos;
    while (pos < text.size() &&
           (std::isdigit(static_cast<unsigned char>(text[pos])) || text[pos] == '.'))
      ++pos;
    if (pos == start) {
      ++pos;  // a character that means nothing here
      return 0;
    }
    const double v = std::strtod(text.substr(start, pos - start).c_str(), nullptr);
    return std::isfinite(v) ? v : 0;
  }
};

std::vector<std::string> SplitCommas(const std::string& word) {
  std::vector<std::string> parts(1);
  for (char c : word) {
    if (c == ',')
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

OutlinePoint Turned(OutlinePoint p, double degrees) {
  const double a = degrees * kDegree, c = std::cos(a), s = std::sin(a);
  return {p.x * c - p.y * s, p.x * s + p.y * c};
}

Outline TurnedOutline(Outline o, double degrees) {
  for (OutlinePoint& p : o) p = Turned(p, degrees);
  return o;
}

MacroShape Figure(bool on, std::vector<Outline> outlines) {
  MacroShape s;
  s.on = on;
  s.outlines = std::move(outlines);
  return s;
}

}  // namespace

double MacroExpression(const std::string& text, const std::vector<double>& vars) {
  ExpressionReader reader{text, vars};
  const double v = reader.Sum();
  return std::isfinite(v) ? v : 0;
}

std::vector<MacroShape> EvaluateMacro(const MacroDefinition& macro,
                                      const std::vector<double>& params, double unit,
                                      double tolerance) {
  std::vector<double> vars(1, 0.0);
  vars.insert(vars.end(), params.begin(), params.end());
  std::vector<MacroShape> shapes;
  for (const std::string& word : macro.words) {
    if (word.empty()) continue;
    if (word[0] == '$') {
      const size_t eq = word.find('=');
      if (eq == std::string::npos) continue;
      const size_t n = size_t(std::atoi(word.c_str() + 1));
      if (n > 9999) continue;
      if (vars.size() <= n) vars.resize(n + 1, 0.0);
      vars[n] = MacroExpression(word.substr(eq + 1), vars);
      continue;
    }
    const std::vector<std::string> parts = SplitCommas(word);
    if (parts[0] == "0" || parts[0].empty()) continue;  // a comment
    std::vector<double> m;
    for (size_t i = 1; i < parts.size(); ++i) m.push_back(MacroExpression(parts[i], vars));
    auto at = [&](size_t i) { return i < m.size() ? m[i] : 0.0; };
    const bool on = at(0) != 0;
    const int code = std::atoi(parts[0].c_str());
    switch (code) {
      case 1: {  // circle: exposure, diameter, centre x, y, rotation
        MacroShape s;
        s.on = on;
        s.circle = true;
        s.centre = Turned({at(2) * unit, at(3) * unit}, at(4));
        s.diameter = at(1) * unit;
        s.outlines = {CircleOutline(s.centre, s.diameter, tolerance)};
        shapes.push_back(std::move(s));
        break;
      }
      case 2:
      case 20: {  // vector line: exposure, width, start x, y, end x, y, rotation
        const OutlinePoint a{at(2) * unit, at(3) * unit}, b{at(4) * unit, at(5) * unit};
        const double len = std::hypot(b.x - a.x, b.y - a.y);
        if (len <= 0) break;
        const double nx = -(b.y - a.y) / len * at(1) * unit / 2;
        const double ny = (b.x - a.x) / len * at(1) * unit / 2;
        const Outline o = {
            {a.x + nx, a.y + ny}, {b.x + nx, b.y + ny}, {b.x - nx, b.y - ny}, {a.x - nx, a.y - ny}};
        shapes.push_back(Figure(on, {TurnedOutline(o, at(6))}));
        break;
      }
      case 21:    // centre line: exposure, width, height, centre x, y, rotation
      case 22: {  // lower-left line: exposure, width, height, corner x, y, rotation
        const double w = at(1) * unit, h = at(2) * unit;
        OutlinePoint c{at(3) * unit, at(4) * unit};
        if (code == 22) c = {c.x + w / 2, c.y + h / 2};
        shapes.push_back(Figure(on, {TurnedOutline(RectangleOutline(c, w, h), at(5))}));
        break;
      }
      case 4: {  // outline: exposure, vertices, x0, y0, ..., rotation
        const int n = int(at(1));
        if (n < 2 || size_t(2 * n + 5) > m.size() + 1) break;
        Outline o;
        for (int i = 0; i <= n; ++i)
          o.push_back({at(size_t(2 + 2 * i)) * unit, at(size_t(3 + 2 * i)) * unit});
        o.pop_back();  // the last vertex repeats the first
        shapes.push_back(Figure(on, {TurnedOutline(o, at(size_t(4 + 2 * n)))}));
        break;
      }
      case 5: {  // polygon: exposure, vertices, centre x, y, diameter, rotation
        const int n = std::max(3, std::min(int(at(1)), 64));
        const OutlinePoint c{at(2) * unit, at(3) * unit};
        const double r = at(4) * unit / 2;
        Outline o;
        for (int i = 0; i < n; ++i) {
          const double a = 2 * std::numbers::pi * i / n;
          o.push_back({c.x + r * std::cos(a), c.y + r * std::sin(a)});
        }
        shapes.push_back(Figure(on, {TurnedOutline(o, at(5))}));
        break;
      }
      case 6: {  // moiré: centre x, y, outer diameter, ring thickness, gap, rings, cross...
        const OutlinePoint c = Turned({at(0) * unit, at(1) * unit}, at(8));
        double d = at(2) * unit;
        const double ring = at(3) * unit, gap = at(4) * unit;
        for (int i = 0; i < int(at(5)) && d > 0; ++i) {
          std::vector<Outline> rings = {CircleOutline(c, d, tolerance)};
          if (d - 2 * ring > 0) rings.push_back(CircleOutline(c, d - 2 * ring, tolerance));
          shapes.push_back(Figure(true, std::move(rings)));
          d -= 2 * (ring + gap);
        }
        const double t = at(6) * unit, l = at(7) * unit;
        shapes.push_back(Figure(
            true, {TurnedOutline(RectangleOutline({at(0) * unit, at(1) * unit}, l, t), at(8))}));
        shapes.push_back(Figure(
            true, {TurnedOutline(RectangleOutline({at(0) * unit, at(1) * unit}, t, l), at(8))}));
        break;
      }
      case 7: {  // thermal: centre x, y, outer diameter, inner diameter, gap, rotation
        const OutlinePoint c0{at(0) * unit, at(1) * unit};
        const double outer = at(2) * unit, inner = at(3) * unit, gap = at(4) * unit;
        // Four quarters of the ring between the gaps, each as a polygon of its arcs.
        const double ro = outer / 2, ri = inner / 2;
        for (int q = 0; q < 4; ++q) {
          const double base = q * std::numbers::pi / 2;
          const double ao = std::asin(std::min(1.0, gap / 2 / std::max(ro, 1e-9)));
          const double ai = std::asin(std::min(1.0, gap / 2 / std::max(ri, 1e-9)));
          if (base + ao >= base + std::numbers::pi / 2 - ao) continue;
          Outline o;
          const int n = 16;
          for (int i = 0; i <= n; ++i) {
            const double a = base + ao + (std::numbers::pi / 2 - 2 * ao) * i / n;
            o.push_back({c0.x + ro * std::cos(a), c0.y + ro * std::sin(a)});
          }
          if (ri > gap / 2) {
            for (int i = n; i >= 0; --i) {
              const double a = base + ai + (std::numbers::pi / 2 - 2 * ai) * i / n;
              o.push_back({c0.x + ri * std::cos(a), c0.y + ri * std::sin(a)});
            }
          } else {
            o.push_back({c0.x + gap / 2 * std::cos(base) - gap / 2 * std::sin(base),
                         c0.y + gap / 2 * std::sin(base) + gap / 2 * std::cos(base)});
          }
          shapes.push_back(Figure(true, {TurnedOutline(o, at(5))}));
        }
        break;
      }
      default:
        break;
    }
  }
  return shapes;
}

}  // namespace isolith
