#include "toolpath/geometry/SvgWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

constexpr int kMaxCircleSides = 4096;

// A number with "." as decimal separator, the shortest that reads back to the same float, never
// in exponent form, and without a minus on zero.
void AppendNumber(std::string& out, float v) {
  if (v == 0) v = 0;
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, v, std::chars_format::fixed);
  out.append(buffer, result.ec == std::errc() ? result.ptr : buffer);
}

// Text for an attribute value or element content.
void AppendEscaped(std::string& out, std::string_view text) {
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
}

}  // namespace

void SvgWriter::BeginGroup(std::string_view className, int layer) {
  Group group;
  group.className = std::string(className);
  group.layer = layer;
  groups_.push_back(std::move(group));
}

SvgWriter::Group& SvgWriter::Current() {
  if (groups_.empty()) groups_.emplace_back();
  return groups_.back();
}

void SvgWriter::AddPolyline(std::span<const SvgPoint> points) {
  std::vector<SvgPoint> path;
  path.reserve(points.size());
  for (const SvgPoint& p : points) {
    if (std::isfinite(p.x) && std::isfinite(p.y)) path.push_back(p);
  }
  if (path.empty()) return;
  Current().paths.push_back(std::move(path));
}

void SvgWriter::AddPolygon(const TPolygon& polygon) {
  std::vector<SvgPoint> points;
  for (const TXY* p = polygon.first; p; p = p->next) points.push_back({p->x, p->y});
  AddPolyline(points);
}

void SvgWriter::AddPolygonList(const TPolygon* head) {
  for (; head; head = head->next) AddPolygon(*head);
}

void SvgWriter::AddSegmentList(const TSeg* head) {
  for (; head; head = head->next) AddSegment(head->x1, head->y1, head->x2, head->y2);
}

void SvgWriter::AddSegment(float x1, float y1, float x2, float y2) {
  const SvgPoint points[2] = {{x1, y1}, {x2, y2}};
  AddPolyline(points);
}

void SvgWriter::AddCircle(float cx, float cy, float radius, int sides) {
  sides = std::clamp(sides, 3, kMaxCircleSides);
  std::vector<SvgPoint> points(static_cast<size_t>(sides) + 1);
  for (int i = 0; i < sides; ++i) {
    const float a = static_cast<float>(static_cast<double>(TwoPi) * i / sides);
    PolarPoint(cx, cy, radius, a, points[i].x, points[i].y);
  }
  points[sides] = points[0];
  AddPolyline(points);
}

bool SvgWriter::Empty() const {
  return std::all_of(groups_.begin(), groups_.end(),
                     [](const Group& g) { return g.paths.empty(); });
}

std::string SvgWriter::ToString() const {
  float xmin = 0, ymin = 0, xmax = 0, ymax = 0;
  bool any = false;
  for (const Group& g : groups_) {
    for (const auto& path : g.paths) {
      for (const SvgPoint& p : path) {
        if (!any) {
          xmin = xmax = p.x;
          ymin = ymax = p.y;
          any = true;
        }
        xmin = MinF(xmin, p.x);
        xmax = MaxF(xmax, p.x);
        ymin = MinF(ymin, p.y);
        ymax = MaxF(ymax, p.y);
      }
    }
  }
  const float margin = std::isfinite(margin_) && margin_ > 0 ? margin_ : 0;
  const float left = static_cast<float>(static_cast<double>(xmin) - margin);
  // The outer group mirrors Y, so the top of the content is the smallest screen Y.
  const float top = static_cast<float>(-(static_cast<double>(ymax) + margin));
  const float width = static_cast<float>(static_cast<double>(xmax) - xmin + 2.0 * margin);
  const float height = static_cast<float>(static_cast<double>(ymax) - ymin + 2.0 * margin);

  std::string out;
  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
  AppendNumber(out, width);
  out += "mm\" height=\"";
  AppendNumber(out, height);
  out += "mm\" viewBox=\"";
  AppendNumber(out, left);
  out += ' ';
  AppendNumber(out, top);
  out += ' ';
  AppendNumber(out, width);
  out += ' ';
  AppendNumber(out, height);
  out += "\">\n";
  if (!styleSheet_.empty()) {
    out += "<style>";
    AppendEscaped(out, styleSheet_);
    out += "</style>\n";
  }
  out += "<g transform=\"scale(1,-1)\">\n";
  for (const Group& g : groups_) {
    out += "<g";
    if (!g.className.empty()) {
      out += " class=\"";
      AppendEscaped(out, g.className);
      out += '"';
    }
    if (g.layer >= 0) {
      out += " data-layer=\"";
      out += std::to_string(g.layer);
      out += '"';
    }
    out += ">\n";
    for (const auto& path : g.paths) {
      out += "<polyline points=\"";
      for (size_t i = 0; i < path.size(); ++i) {
        if (i > 0) out += ' ';
        AppendNumber(out, path[i].x);
        out += ',';
        AppendNumber(out, path[i].y);
      }
      out += "\"/>\n";
    }
    out += "</g>\n";
  }
  out += "</g>\n</svg>\n";
  return out;
}

}  // namespace isolith
