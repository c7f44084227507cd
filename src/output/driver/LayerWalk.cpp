#include "output/driver/LayerWalk.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "output/driver/OutputFile.h"
#include "output/driver/PathDirections.h"
#include "output/driver/WalkSteps.h"
#include "output/formats/FileTypes.h"
#include "output/formats/FormatScales.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {

namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();

// One hole: bored when it is wider than the tool by more than 0.01 and boring is on.
void DrillHole(PenMachine& pen, OutputContext& context, TDrill& drill, int tool) {
  const Settings& settings = context.settings;
  SelectTool(pen, tool, tool);
  SetToolSpeeds(pen, settings.BoringSpeed);
  SetFlags(drill, kVisited);
  const double diameter = context.board.DrillDiameter[drill.code];
  float r = static_cast<float>((diameter - ToolAt(context.tools, tool).Diameter) * 0.5);
  if (r <= 0.01f || !settings.BoringDrills || !(diameter > settings.BoringThreshold - 0.1))
    r = 0.01f;
  RapidTo(pen, drill.x, drill.y, settings.DrillingDepth);
  CircleAt(pen, r);
}

void FeedFrom(PenMachine& pen, const TXY* from) {
  for (; from; from = from->next) FeedTo(pen, from->x, from->y);
}

// One contour: a closed one (ends within `closedWidth`) entered at `entry`, round to the end,
// then from the second vertex back to the entry; an open one from its first vertex.
void MillContour(PenMachine& pen, const TPolygon& contour, const TXY* entry, double closedWidth,
                 float depth) {
  const TXY* first = contour.first;
  const TXY* last = LastPoint(contour);
  if (std::sqrt(Distance2(first->x, first->y, last->x, last->y)) > closedWidth) {
    RapidTo(pen, first->x, first->y, depth);
    FeedFrom(pen, first->next);
    return;
  }
  RapidTo(pen, entry->x, entry->y, depth);
  FeedFrom(pen, entry->next);
  if (entry == first) return;
  for (const TXY* v = first->next; v; v = v->next) {
    FeedTo(pen, v->x, v->y);
    if (v == entry) break;
  }
}

// Holes tool by tool; within a tool, by distance from the list's first drill, which stays the
// reference for every tool.
void WalkDrillsByScan(PenMachine& pen, OutputContext& context, bool drillOptim) {
  Board& board = context.board;
  const Settings& settings = context.settings;
  WalkCentreHoles(pen, board, settings, settings.PlottingTool);
  ClearDoneMarks(board.Drills);
  const TDrill* reference = board.Drills;
  for (int tool = 0; tool < kToolSlots; ++tool) {
    for (;;) {
      bool anyLeft = false;
      TDrill* taken = nullptr;
      double best = kFar;
      for (TDrill* d = board.Drills; d; d = d->next) {
        if (TestFlags(*d, kVisited)) continue;
        anyLeft = true;
        if (DrillToolOf(context.drillList, board, *d) != tool) continue;
        if (!drillOptim) {
          taken = d;
          break;
        }
        const double dist = Distance2(reference->x, reference->y, d->x, d->y);
        if (dist < best) {
          best = dist;
          taken = d;
        }
      }
      if (!anyLeft) return;
      if (!taken) break;
      DrillHole(pen, context, *taken, tool);
    }
  }
}

void WalkHatchesByScan(PenMachine& pen, OutputContext& context, int layer, bool optim) {
  const Settings& settings = context.settings;
  TPolygon* list = context.board.Hatches[layer];
  if (!list) return;
  SelectTool(pen, settings.HatchingTool, settings.HatchingTool);
  SetToolSpeeds(pen, settings.HatchingSpeed);
  ClearDoneMarks(list);
  // The reference is a fixed point: the first hatch may be turned under it.
  const bool haveReference = list->first != nullptr;
  const double refX = haveReference ? list->first->x : 0, refY = haveReference ? list->first->y : 0;
  for (;;) {
    TPolygon* taken = nullptr;
    bool byLast = false;
    double best = kFar;
    for (TPolygon* p = list; p; p = p->next) {
      if (TestFlags(*p, kVisited) || !p->first) continue;
      if (!optim || !haveReference) {
        taken = p;
        break;
      }
      const TXY* last = LastPoint(*p);
      const double d0 = Distance2(refX, refY, p->first->x, p->first->y);
      if (d0 < best) {
        best = d0;
        taken = p;
        byLast = false;
      }
      const double d1 = Distance2(refX, refY, last->x, last->y);
      if (d1 < best) {
        best = d1;
        taken = p;
        byLast = true;
      }
    }
    if (!taken) break;
    SetFlags(*taken, kVisited);
    // A hatch taken by its far end is turned for good.
    if (byLast) ReversePolygon(*taken);
    RapidTo(pen, taken->first->x, taken->first->y, settings.MillingDepth);
    FeedFrom(pen, taken->first->next);
  }
}

void WalkContoursByScan(PenMachine& pen, OutputContext& context, int layer, bool optim) {
  const Settings& settings = context.settings;
  TPolygon* list = context.board.Contours[layer];
  SelectTool(pen, settings.MillingTool, settings.MillingTool);
  SetToolSpeeds(pen, settings.MillingSpeed);
  ClearDoneMarks(list);
  const TXY* reference = list ? list->first : nullptr;
  const double closedWidth =
      ToolCutWidthByIndex(context.tools, settings.MillingTool, settings.MillingDepth, 0);
  for (;;) {
    TPolygon* taken = nullptr;
    const TXY* entry = nullptr;
    double best = kFar;
    for (TPolygon* p = list; p; p = p->next) {
      if (TestFlags(*p, kVisited) || !p->first) continue;
      if (!optim || !reference) {
        taken = p;
        entry = p->first;
        break;
      }
      for (const TXY* v = p->first; v && v->next; v = v->next) {
        const double d = Distance2(reference->x, reference->y, v->x, v->y);
        if (d < best) {
          best = d;
          taken = p;
          entry = v;
        }
      }
    }
    if (!taken) break;
    SetFlags(*taken, kVisited);
    MillContour(pen, *taken, entry, closedWidth, settings.MillingDepth);
  }
}

// The orderings above measure every candidate from a point that stays fixed for the whole walk,
// so the order they find is the candidates sorted by that distance, the list order breaking
// ties (a strictly smaller distance wins), and a candidate whose distance cannot be measured
// never taken. The functions below sort once instead of scanning the list for each step.
struct Ranked {
  double key;
  size_t order;
  bool operator<(const Ranked& o) const { return key < o.key || (key == o.key && order < o.order); }
};

void WalkDrills(PenMachine& pen, OutputContext& context, bool drillOptim) {
  if (context.referenceOrdering) return WalkDrillsByScan(pen, context, drillOptim);
  Board& board = context.board;
  const Settings& settings = context.settings;
  WalkCentreHoles(pen, board, settings, settings.PlottingTool);
  ClearDoneMarks(board.Drills);
  const TDrill* reference = board.Drills;
  std::vector<TDrill*> drills;
  std::vector<std::vector<Ranked>> byTool(kToolSlots);
  for (TDrill* d = board.Drills; d; d = d->next) {
    const int tool = DrillToolOf(context.drillList, board, *d);
    const double dist = drillOptim ? Distance2(reference->x, reference->y, d->x, d->y) : 0;
    if (tool >= 0 && tool < kToolSlots && !std::isnan(dist))
      byTool[tool].push_back({dist, drills.size()});
    drills.push_back(d);
  }
  for (int tool = 0; tool < kToolSlots; ++tool) {
    std::sort(byTool[tool].begin(), byTool[tool].end());
    for (const Ranked& r : byTool[tool]) {
      DrillHole(pen, context, *drills[r.order], tool);
    }
  }
}

void WalkHatches(PenMachine& pen, OutputContext& context, int layer, bool optim) {
  if (context.referenceOrdering) return WalkHatchesByScan(pen, context, layer, optim);
  const Settings& settings = context.settings;
  TPolygon* list = context.board.Hatches[layer];
  if (!list) return;
  SelectTool(pen, settings.HatchingTool, settings.HatchingTool);
  SetToolSpeeds(pen, settings.HatchingSpeed);
  ClearDoneMarks(list);
  const bool haveReference = list->first != nullptr;
  const double refX = haveReference ? list->first->x : 0, refY = haveReference ? list->first->y : 0;
  std::vector<TPolygon*> hatches;
  std::vector<Ranked> order;
  std::vector<char> byLast;
  for (TPolygon* p = list; p; p = p->next) {
    if (!p->first) continue;
    double key = 0;
    bool last = false;
    if (optim && haveReference) {
      const TXY* end = LastPoint(*p);
      key = Distance2(refX, refY, p->first->x, p->first->y);
      const double d1 = Distance2(refX, refY, end->x, end->y);
      if (d1 < key || (std::isnan(key) && !std::isnan(d1))) key = d1, last = true;
      if (std::isnan(key)) continue;
    }
    order.push_back({key, hatches.size()});
    hatches.push_back(p);
    byLast.push_back(last);
  }
  std::stable_sort(order.begin(), order.end());
  for (const Ranked& r : order) {
    TPolygon* taken = hatches[r.order];
    SetFlags(*taken, kVisited);
    if (byLast[r.order]) ReversePolygon(*taken);
    RapidTo(pen, taken->first->x, taken->first->y, settings.MillingDepth);
    FeedFrom(pen, taken->first->next);
  }
}

void WalkContours(PenMachine& pen, OutputContext& context, int layer, bool optim) {
  if (context.referenceOrdering) return WalkContoursByScan(pen, context, layer, optim);
  const Settings& settings = context.settings;
  TPolygon* list = context.board.Contours[layer];
  SelectTool(pen, settings.MillingTool, settings.MillingTool);
  SetToolSpeeds(pen, settings.MillingSpeed);
  ClearDoneMarks(list);
  const TXY* reference = list ? list->first : nullptr;
  const double closedWidth =
      ToolCutWidthByIndex(context.tools, settings.MillingTool, settings.MillingDepth, 0);
  std::vector<TPolygon*> contours;
  std::vector<const TXY*> entries;
  std::vector<Ranked> order;
  for (TPolygon* p = list; p; p = p->next) {
    if (!p->first) continue;
    double key = 0;
    const TXY* entry = p->first;
    if (optim && reference) {
      entry = nullptr;
      for (const TXY* v = p->first; v && v->next; v = v->next) {
        const double d = Distance2(reference->x, reference->y, v->x, v->y);
        if (!entry ? !std::isnan(d) : d < key) key = d, entry = v;
      }
      if (!entry) continue;
    }
    order.push_back({key, contours.size()});
    contours.push_back(p);
    entries.push_back(entry);
  }
  std::stable_sort(order.begin(), order.end());
  for (const Ranked& r : order) {
    TPolygon* taken = contours[r.order];
    SetFlags(*taken, kVisited);
    MillContour(pen, *taken, entries[r.order], closedWidth, settings.MillingDepth);
  }
}

void WalkCutPaths(PenMachine& pen, OutputContext& context) {
  const Settings& settings = context.settings;
  SelectTool(pen, settings.CuttingTool, settings.CuttingTool);
  SetToolSpeeds(pen, settings.CuttingSpeed);
  for (TCutout* c = context.board.Cutouts; c; c = c->next) {
    for (TPolygon* p = c->paths; p; p = p->next) {
      if (!p->first) continue;
      RapidTo(pen, p->first->x, p->first->y, settings.CuttingDepth);
      FeedFrom(pen, p->first->next);
    }
  }
}

}  // namespace

bool DrillsInPass(int sequence, int pass) {
  return sequence == kDrillOnly || sequence == kAllDrillsFirst ||
         (sequence == kDrillThenMill && pass == 0) || (sequence == kMillThenDrill && pass == 1);
}

bool ContoursInPass(int sequence, int pass) {
  return sequence == kMillOnly || sequence == kAllDrillsFirst ||
         (sequence == kMillThenDrill && pass == 0) || (sequence == kDrillThenMill && pass == 1);
}

bool ExportLayerWalk(OutputContext& context, int format, const std::string& path, int layer,
                     bool withContours, bool withDrills, bool withCutouts, float zeroX, float zeroY,
                     int sequence, bool contourOptim, bool drillOptim) {
  OutputFile file(context, format, path);
  if (!file.Open()) return false;
  Board& board = context.board;
  const Settings& settings = context.settings;
  TOutputState& s = file.state;
  PenMachine& pen = file.pen();
  SetLayerWalkScales(s, format, settings);
  // This machine has no circle command.
  s.UseArcs = settings.ExportArcs && format != kFormatCbr;
  s.ZeroX = zeroX;
  s.ZeroY = zeroY;

  WriteHeader(pen);
  TurnContoursPositive(board);
  s.CurZ = -s.ClearHeight;
  s.FeedSpeed = static_cast<float>(double(settings.MillingSpeed) / 60);

  bool drills = withDrills && board.Drills;
  bool contours = withContours && IsCircuitLayer(layer) && board.Contours[layer];
  for (int pass = 0; pass < 2; ++pass) {
    if (drills && DrillsInPass(sequence, pass)) {
      WalkDrills(pen, context, drillOptim);
      drills = false;
    }
    if (contours && ContoursInPass(sequence, pass)) {
      WalkHatches(pen, context, layer, contourOptim);
      WalkContours(pen, context, layer, contourOptim);
      contours = false;
    }
  }
  if (withCutouts && context.choices.cardContour && board.Cutouts) WalkCutPaths(pen, context);

  StopTool(pen);
  WriteFooter(pen);
  ClearDoneMarks(board.Drills);
  for (int l = 0; l < kCircuitLayers; ++l) {
    ClearDoneMarks(board.Contours[l]);
    ClearDoneMarks(board.Hatches[l]);
  }
  const bool written = file.Close();
  context.platform.Repaint(RepaintLevel::View);
  return written;
}

}  // namespace isolith
