// A fresh board, settings, tool table and platform for output tests, a scratch folder for the
// files, and small builders of paths and holes.
#pragma once

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>

#include "core/board/Board.h"
#include "output/driver/OutputContext.h"
#include "params/Settings.h"
#include "params/ToolLibrary.h"
#include "support/FakePlatform.h"
#include "toolpath/DrillList.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith::test {

// 25/12/2023 14:05:00 UTC; the tests run in UTC.
inline constexpr int64_t kTestNow = 1703513100;

struct XYPoint {
  float x, y;
};

inline TPolygon* AddPath(TPolygon*& list, std::initializer_list<XYPoint> points) {
  TPolygon* p = new TPolygon;
  for (const XYPoint& v : points) AppendPoint(*p, v.x, v.y);
  TPolygon* tail = nullptr;
  AppendTo(list, tail, p);
  return p;
}

inline TDrill* AddDrill(Board& b, float x, float y, uint8_t code) {
  TDrill* d = new TDrill;
  d->x = x, d->y = y, d->code = code;
  TDrill* tail = nullptr;
  AppendTo(b.Drills, tail, d);
  return d;
}

inline TPad* AddPad(Board& b, int layer = 0, float x = 1, float y = 1) {
  TPad* p = new TPad;
  p->x = x, p->y = y;
  TPad* tail = nullptr;
  AppendTo(b.Pads[layer], tail, p);
  return p;
}

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void WriteFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

// Joins lines with CR LF after each.
inline std::string CrLf(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

struct OutputWorld {
  Board board;
  Settings settings;
  ToolTable tools{};
  TDrillList drills;
  FakePlatform platform;
  ExportChoices choices;
  std::filesystem::path folder;
  OutputContext context{board, settings, tools, drills, platform, choices};

  OutputWorld() {
    setenv("TZ", "UTC", 1);
    tzset();
    platform.now = kTestNow;
    char pattern[] = "/tmp/isolith-output-XXXXXX";
    folder = mkdtemp(pattern);
    context.programFolder = folder.string() + "/";
    // The job of the worked example: one tool, 120 mm/min, plunge at half the feed.
    ResetTool(tools[0]);
    tools[0].Diameter = 0.2f;
    tools[0].RotationSpeed = 20000;
    tools[0].RelDrillSpeed = 50;
    tools[0].AbsDrillSpeed = 0;
    settings.MillingTool = 0;
    settings.MillingDepth = 0.1f;
    settings.MillingSpeed = 120;
    settings.ExportClearHeight = 5;
    settings.ExportZeroHeight = 0.5f;
    settings.ExportClearSpeed = 1200;
  }
  ~OutputWorld() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string Path(const std::string& name) const { return (folder / name).string(); }

  // The one closed triangle of the worked example on layer 0.
  void AddTriangle() { AddPath(board.Contours[0], {{10, 10}, {20, 10}, {15, 20}, {10, 10}}); }
};

}  // namespace isolith::test
