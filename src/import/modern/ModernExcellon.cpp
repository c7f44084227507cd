#include "import/modern/ModernExcellon.h"

#include "import/modern/FixedNumbers.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <map>
#include <sstream>

namespace isolith {

namespace {

// The file's lines, upper case, without blanks; empty lines dropped.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (char c : text) {
    if (c == '\n' || c == '\r') {
      if (!lines.back().empty()) lines.emplace_back();
    } else if (static_cast<unsigned char>(c) > ' ') {
      lines.back() += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
  }
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

// The line that ends the header: the first "%" or M95 after M48; without M48, the first line
// that places a hole or selects a tool after a "%".
size_t HeaderEnd(const std::vector<std::string>& lines) {
  bool started = false;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] == "M48") started = true;
    if (started && (lines[i] == "%" || lines[i] == "M95")) return i;
    if (!started && (lines[i][0] == 'X' || lines[i][0] == 'Y')) return i;
  }
  return lines.size();
}

bool StartsWith(const std::string& s, const char* prefix) {
  return s.rfind(prefix, 0) == 0;
}

double Number(const std::string& text, const DrillNumbers& f) {
  const int fromLeft = f.leadingKept ? f.integers + f.decimals : 0;
  return FixedNumber(text, f.decimals, fromLeft) * (f.metric ? 1.0 : 25.4);
}

// The number text after position `i` of `line`.
std::string NumberAfter(const std::string& line, size_t i) {
  size_t n = i + 1;
  while (n < line.size() && (std::isdigit(static_cast<unsigned char>(line[n])) || line[n] == '.' ||
                             line[n] == '-' || line[n] == '+'))
    ++n;
  return line.substr(i + 1, n - i - 1);
}

// A tool definition or selection: "T1C0.8", "T01F00S00C0.0280", "T02".
void Tool(const std::string& line, const DrillNumbers& f, DrillContent& content, int& tool) {
  tool = std::atoi(NumberAfter(line, 0).c_str()) % kApertures;
  const size_t c = line.find('C');
  if (c == std::string::npos) return;
  const double d = std::strtod(NumberAfter(line, c).c_str(), nullptr);
  if (std::isfinite(d) && d > 0) content.diameter[tool] = d * (f.metric ? 1.0 : 25.4);
}

// Pad centres of a layer by cells of a millimetre, for finding the pad at a point.
class PadCentres {
 public:
  PadCentres(const Board& b, int layer) {
    for (const TPad* p = b.Pads[size_t(layer)]; p; p = p->next)
      cells_[Key(p->x, p->y)].push_back({p->x, p->y});
  }
  bool Near(double x, double y, double within) const {
    for (int i = -1; i <= 1; ++i)
      for (int j = -1; j <= 1; ++j) {
        const auto found = cells_.find(Key(x + i, y + j));
        if (found == cells_.end()) continue;
        for (const auto& [px, py] : found->second)
          if (std::fabs(px - x) <= within && std::fabs(py - y) <= within) return true;
      }
    return false;
  }
  std::vector<std::pair<double, double>> All() const {
    std::vector<std::pair<double, double>> all;
    for (const auto& [key, list] : cells_) all.insert(all.end(), list.begin(), list.end());
    return all;
  }

 private:
  static std::pair<long, long> Key(double x, double y) {
    return {long(std::floor(x)), long(std::floor(y))};
  }
  std::map<std::pair<long, long>, std::vector<std::pair<double, double>>> cells_;
};

constexpr int kShiftProbes = 6;       // holes whose pad is searched for
constexpr int kShiftSamples = 48;     // holes that vote on each candidate shift
constexpr double kSameCentre = 0.02;  // mm between a hole and its pad's centre

// The move from the file's frame to the board's that puts the most holes on pad centres: a
// through-hole pad is flashed where its hole is drilled, so the shift is that of one hole to one
// pad. The first layer's own load shifted its copper (off the card's edge, then round the card),
// and this finds that shift again whatever it was.
std::pair<double, double> BestShift(const PadCentres& pads, const std::vector<DrillHole>& holes,
                                    std::pair<double, double> fallback) {
  if (holes.empty()) return fallback;
  const std::vector<std::pair<double, double>> all = pads.All();
  auto votes = [&](double dx, double dy) {
    int n = 0;
    const size_t step = std::max<size_t>(1, holes.size() / kShiftSamples);
    for (size_t i = 0; i < holes.size(); i += step)
      n += pads.Near(holes[i].x + dx, holes[i].y + dy, kSameCentre);
    return n;
  };
  std::pair<double, double> best = fallback;
  int bestVotes = votes(fallback.first, fallback.second);
  const size_t step = std::max<size_t>(1, holes.size() / kShiftProbes);
  for (size_t i = 0; i < holes.size(); i += step)
    for (const auto& [px, py] : all) {
      const double dx = px - holes[i].x, dy = py - holes[i].y;
      const int v = votes(dx, dy);
      if (v > bestVotes) {
        bestVotes = v;
        best = {dx, dy};
      }
    }
  return best;
}

}  // namespace

DrillHeaderWords ReadDrillHeaderWords(const std::string& text) {
  DrillHeaderWords h;
  const std::vector<std::string> lines = Lines(text);
  const size_t end = HeaderEnd(lines);
  for (size_t i = 0; i < end; ++i) {
    const std::string& l = lines[i];
    if (StartsWith(l, "INCH") || l == "M72") h.metric = false;
    if (StartsWith(l, "METRIC") || l == "M71") h.metric = true;
    if (StartsWith(l, "INCH") || StartsWith(l, "METRIC")) {
      if (l.find(",LZ") != std::string::npos) h.leadingKept = true;
      if (l.find(",TZ") != std::string::npos) h.leadingKept = false;
      // "METRIC,TZ,000.000": the digits of each side of the point.
      const size_t dot = l.find('.');
      if (dot != std::string::npos) {
        size_t a = dot, b = dot + 1;
        while (a > 0 && l[a - 1] == '0') --a;
        while (b < l.size() && l[b] == '0') ++b;
        if (dot - a > 0 && b - dot - 1 > 0) h.digits = {int(dot - a), int(b - dot - 1)};
      }
    }
    // ";FILE_FORMAT=2:4", ";FORMAT={2:4/ ...}".
    const size_t colon = l.find(':');
    if (l[0] == ';' && l.find("FORMAT") != std::string::npos && colon != std::string::npos &&
        colon > 0 && colon + 1 < l.size() &&
        std::isdigit(static_cast<unsigned char>(l[colon - 1])) &&
        std::isdigit(static_cast<unsigned char>(l[colon + 1])))
      h.digits = {l[colon - 1] - '0', l[colon + 1] - '0'};
  }
  return h;
}

std::vector<DrillNumbers> DrillReadings(const DrillHeaderWords& header) {
  std::vector<DrillNumbers> readings;
  const std::vector<bool> units =
      header.metric ? std::vector<bool>{*header.metric} : std::vector<bool>{false, true};
  const std::vector<bool> zeros =
      header.leadingKept ? std::vector<bool>{*header.leadingKept} : std::vector<bool>{false, true};
  for (bool metric : units)
    for (bool leading : zeros) {
      std::vector<std::pair<int, int>> digits;
      if (header.digits)
        digits = {*header.digits};
      else if (metric)
        digits = {{3, 3}, {3, 2}, {4, 2}, {2, 4}};
      else
        digits = {{2, 4}, {2, 3}, {3, 3}, {3, 4}};
      for (const auto& [integers, decimals] : digits)
        readings.push_back({metric, leading, integers, decimals});
    }
  return readings;
}

DrillContent ReadDrillContent(const std::string& text, const DrillNumbers& numbers) {
  DrillContent content;
  DrillNumbers f = numbers;
  const std::vector<std::string> lines = Lines(text);
  const size_t headerEnd = HeaderEnd(lines);
  bool relative = false, routing = false;
  int tool = 0;
  double x = 0, y = 0;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string& l = lines[i];
    const bool header = i < headerEnd;
    if (l[0] == ';' || l[0] == '(') continue;
    if (l == "M30" || l == "M00") break;
    if (l == "M71" || StartsWith(l, "METRIC")) f.metric = true;
    if (l == "M72" || StartsWith(l, "INCH")) f.metric = false;
    if (l == "G90") relative = false;
    if (l == "G91") relative = true;
    if (l[0] == 'T') {
      Tool(l, f, content, tool);
      continue;
    }
    if (StartsWith(l, "G00") || StartsWith(l, "G01") || StartsWith(l, "G02") ||
        StartsWith(l, "G03") || l == "M15")
      routing = true;
    if (l == "M16" || l == "M17" || l == "G05") routing = false;
    if (header || (l[0] != 'X' && l[0] != 'Y')) continue;
    if (routing) continue;
    // The first point of the line: a slot's second point (after G85) is not a hole of its own.
    const size_t end = l.find("G85");
    const std::string point = l.substr(0, end);
    const size_t xi = point.find('X'), yi = point.find('Y');
    double nx = x, ny = y;
    if (xi != std::string::npos) nx = Number(NumberAfter(point, xi), f) + (relative ? x : 0);
    if (yi != std::string::npos) ny = Number(NumberAfter(point, yi), f) + (relative ? y : 0);
    x = nx;
    y = ny;
    content.holes.push_back({x, y, tool});
  }
  return content;
}

double HolesOnCopper(const Board& b, int layer, const std::vector<DrillHole>& holes, double dx,
                     double dy) {
  if (holes.empty()) return 0;
  int on = 0;
  for (const DrillHole& h : holes) {
    const double x = h.x + dx, y = h.y + dy;
    bool inside = false;
    for (const TPad* p = b.Pads[size_t(layer)]; p && !inside; p = p->next) {
      const double hx = b.PadSizeX[layer][p->code] / 2, hy = b.PadSizeY[layer][p->code] / 2;
      const double ex = std::fabs(x - p->x), ey = std::fabs(y - p->y);
      inside = b.PadShape[layer][p->code] == kShapeCircle ? std::hypot(ex, ey) <= hx
                                                          : ex <= hx && ey <= hy;
    }
    for (const TTrack* t = b.Tracks[size_t(layer)]; t && !inside; t = t->next) {
      const double ax = t->x1, ay = t->y1, vx = t->x2 - ax, vy = t->y2 - ay;
      const double len2 = vx * vx + vy * vy;
      const double u = len2 > 0 ? std::clamp(((x - ax) * vx + (y - ay) * vy) / len2, 0.0, 1.0) : 0;
      inside = std::hypot(x - ax - u * vx, y - ay - u * vy) <= b.TrackWidth[layer][t->code] / 2;
    }
    on += inside;
  }
  return double(on) / double(holes.size());
}

int ReadModernExcellon(std::istream& file, float drillScale, Board& b) {
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const std::vector<DrillNumbers> readings = DrillReadings(ReadDrillHeaderWords(text));
  DrillContent best = ReadDrillContent(text, readings.front());
  std::pair<double, double> shift = {b.OriginX, b.OriginY};
  if (b.Pads[0]) {
    const PadCentres pads(b, 0);
    double bestShare = -1;
    for (size_t i = 0; i < readings.size() && bestShare < 1; ++i) {
      DrillContent c = i == 0 ? best : ReadDrillContent(text, readings[i]);
      const std::pair<double, double> s = BestShift(pads, c.holes, {b.OriginX, b.OriginY});
      const double share = HolesOnCopper(b, 0, c.holes, s.first, s.second);
      if (share > bestShare) {
        bestShare = share;
        best = std::move(c);
        shift = s;
      }
    }
  }
  for (int t = 0; t < kApertures; ++t)
    if (best.diameter[t] > 0) {
      b.DrillDiameter[t] = float(best.diameter[t] * drillScale);
      b.ApertureFlags[t] = 4;
    }
  TDrill* tail = LastOf(b.ImportDrills);
  for (const DrillHole& h : best.holes) {
    TDrill* d = new TDrill;
    d->code = uint8_t(h.tool);
    d->x = float(h.x + shift.first);
    d->y = float(h.y + shift.second);
    AppendTo(b.ImportDrills, tail, d);
    if (b.DrillDiameter[d->code] < 0.01f) b.DrillDiameter[d->code] = 0.8f;
  }
  return int(best.holes.size());
}

}  // namespace isolith
