// Reads back the SVG pictures that `isolith-cli render` writes: the polylines of each group, by
// class and layer ("pads0", "contours1", "card").
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace isolith::test {

struct SvgPt {
  double x, y;
};
using SvgPath = std::vector<SvgPt>;

// A plain scan: the files hold hundreds of thousands of points.
inline std::map<std::string, std::vector<SvgPath>> ReadSvgGroups(const std::string& svg) {
  std::map<std::string, std::vector<SvgPath>> groups;
  std::string current;
  const std::string group = "<g class=\"", layer = "data-layer=\"", line = "<polyline points=\"";
  for (size_t at = svg.find('<'); at != std::string::npos; at = svg.find('<', at + 1)) {
    if (svg.compare(at, group.size(), group) == 0) {
      const size_t start = at + group.size();
      current = svg.substr(start, svg.find('"', start) - start);
      const size_t end = svg.find('>', at);
      const size_t l = svg.find(layer, at);
      if (l < end) current += svg.substr(l + layer.size(), 1);
    } else if (svg.compare(at, line.size(), line) == 0) {
      const size_t start = at + line.size();
      std::istringstream in(svg.substr(start, svg.find('"', start) - start));
      SvgPath path;
      double x, y;
      char comma;
      while (in >> x >> comma >> y) path.push_back({x, y});
      groups[current].push_back(std::move(path));
    }
  }
  return groups;
}

}  // namespace isolith::test
