// A small SVG picture of geometry, so that a job or a calculator's result can be looked at in
// any browser. Paths are polylines in card millimetres, X right and Y up; the flip to screen
// coordinates is one transform on an outer group, so the numbers in the file are the card's own.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/board/Records.h"

namespace isolith {

struct SvgPoint {
  float x = 0, y = 0;
};

class SvgWriter {
 public:
  // Starts a group; the paths added next belong to it. The class names what the group holds
  // ("pads", "tracks", "contours"...), and a layer of 0 or more is written as data-layer.
  void BeginGroup(std::string_view className, int layer = -1);

  // One polyline of the current group (a group without class is started when there is none).
  // Points with a coordinate that is not a finite number are left out; an empty path is skipped.
  void AddPolyline(std::span<const SvgPoint> points);
  // The vertex chain of one path, as it stands (closed only if its last vertex repeats its first).
  void AddPolygon(const TPolygon& polygon);
  // Every path of a list.
  void AddPolygonList(const TPolygon* head);
  // Every segment of a working list, each as a polyline of two points.
  void AddSegmentList(const TSeg* head);
  void AddSegment(float x1, float y1, float x2, float y2);
  // A circle as a closed polyline of `sides` sides (at least 3).
  void AddCircle(float cx, float cy, float radius, int sides = 24);

  // The style sheet written in the document; a plain default draws every path as a thin line.
  void SetStyleSheet(std::string css) { styleSheet_ = std::move(css); }
  // Free space round the content in the view box, in millimetres.
  void SetMargin(float margin) { margin_ = margin; }

  bool Empty() const;
  // The whole document. Numbers always use "." whatever the locale.
  std::string ToString() const;

 private:
  struct Group {
    std::string className;
    int layer = -1;
    std::vector<std::vector<SvgPoint>> paths;
  };

  Group& Current();

  std::vector<Group> groups_;
  std::string styleSheet_ =
      "polyline{fill:none;stroke:#000;stroke-width:0.05;stroke-linejoin:round;"
      "stroke-linecap:round}";
  float margin_ = 1.0f;
};

}  // namespace isolith
