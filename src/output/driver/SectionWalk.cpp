#include "output/driver/SectionWalk.h"

#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

#include "output/driver/NearestPoints.h"
#include "output/driver/OutputFile.h"
#include "output/driver/PathDirections.h"
#include "output/driver/WalkSteps.h"
#include "output/formats/FormatScales.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {

namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();

struct Section {
  PenMachine& pen;
  OutputContext& context;
  int row;
  bool mirror;

  float X(float x) const { return mirror ? static_cast<float>(2.0 * pen.state.ZeroX - x) : x; }
  void Show(float x, float y) const {
    if (context.showProgress) context.showProgress(x, y);
  }
};

// Drilling: the holes of one tool, each followed by the nearest one left.
void DrillSection(const Section& section, int code) {
  Board& board = section.context.board;
  const Settings& settings = section.context.settings;
  const TDrillList& list = section.context.drillList;
  ClearDoneMarks(board.Drills);
  const bool single = settings.DrillingMode <= 1;
  const int tool = single ? settings.DrillingTool : list.outputTools[code - kSectionDrillFirst];
  // A hole that no row of the drill list takes is never drilled; with one single tool every
  // other hole belongs to it.
  auto belongs = [&](const TDrill& d) {
    const int of = DrillToolOf(list, board, d);
    return single ? of >= 0 : (tool >= 0 && of == tool);
  };
  TDrill* drill = nullptr;
  if (single && board.Drills && belongs(*board.Drills)) drill = board.Drills;
  for (TDrill* d = board.Drills; d && !drill; d = d->next)
    if (belongs(*d)) drill = d;
  if (drill) {
    SelectTool(section.pen, section.row, tool);
    SetToolSpeeds(section.pen, settings.BoringSpeed);
  }
  const double toolDiameter = ToolAt(section.context.tools, tool).Diameter;
  // The holes of this tool, ranked in list order, for the search of the nearest one left.
  std::vector<TDrill*> drills;
  std::unordered_map<const TDrill*, int> rankOf;
  std::optional<NearestPoints> nearest;
  if (!section.context.referenceOrdering) {
    for (TDrill* d = board.Drills; d; d = d->next) {
      rankOf.emplace(d, static_cast<int>(drills.size()));
      drills.push_back(d);
    }
    nearest.emplace(static_cast<int>(drills.size()));
    for (size_t i = 0; i < drills.size(); ++i)
      if (belongs(*drills[i])) nearest->Add(static_cast<int>(i), drills[i]->x, drills[i]->y);
  }
  while (drill) {
    section.Show(drill->x, drill->y);
    SetFlags(*drill, kVisited);
    const double diameter = board.DrillDiameter[drill->code];
    float r = static_cast<float>((diameter - toolDiameter) * 0.5);
    if (!settings.BoringDrills || !(diameter > settings.BoringThreshold - 0.01)) r = 0.001f;
    RapidTo(section.pen, section.X(drill->x), drill->y, settings.DrillingDepth);
    CircleAt(section.pen, r);
    TDrill* next = nullptr;
    if (nearest) {
      nearest->Remove(rankOf.at(drill));
      const int rank = nearest->Nearest(drill->x, drill->y);
      next = rank < 0 ? nullptr : drills[rank];
    } else {
      double best = kFar;
      for (TDrill* d = board.Drills; d; d = d->next) {
        if (TestFlags(*d, kVisited) || !belongs(*d)) continue;
        const double dist = Distance2(drill->x, drill->y, d->x, d->y);
        if (dist < best) {
          best = dist;
          next = d;
        }
      }
    }
    drill = next;
  }
  ClearDoneMarks(board.Drills);
}

// Engraving or hatching of one circuit layer: each path from its first vertex, the next one the
// nearest by either end, turned for this pass when its far end is nearer.
void PathSection(const Section& section, int layer, bool hatching) {
  Board& board = section.context.board;
  const Settings& settings = section.context.settings;
  TPolygon* list = hatching ? board.Hatches[layer] : board.Contours[layer];
  const int tool = hatching ? settings.HatchingTool : settings.MillingTool;
  float depth = hatching ? settings.HatchingDepth : settings.MillingDepth;
  const float speed = hatching ? settings.HatchingSpeed : settings.MillingSpeed;
  if (section.context.productVariant == 2) depth = kPlotterVariantDepth;
  ClearDoneMarks(list);
  if (list) {
    SelectTool(section.pen, section.row, tool);
    SetToolSpeeds(section.pen, speed);
  }
  // Both ends of every path, ranked as the plain scan meets them (first end before last end,
  // path by path), for the search of the nearest one left.
  std::vector<TPolygon*> paths;
  std::unordered_map<const TPolygon*, int> rankOf;
  std::optional<NearestPoints> nearest;
  if (!section.context.referenceOrdering) {
    for (TPolygon* p = list; p; p = p->next) {
      rankOf.emplace(p, static_cast<int>(paths.size()));
      paths.push_back(p);
    }
    nearest.emplace(static_cast<int>(2 * paths.size()));
    for (size_t i = 0; i < paths.size(); ++i) {
      const TPolygon* p = paths[i];
      if (!p->first) continue;
      const TXY* end = LastPoint(*p);
      nearest->Add(static_cast<int>(2 * i), p->first->x, p->first->y);
      nearest->Add(static_cast<int>(2 * i + 1), end->x, end->y);
    }
  }
  TPolygon* path = list;
  bool turned = false;
  while (path) {
    if (path->first) {
      section.Show(path->first->x, path->first->y);
      RapidTo(section.pen, section.X(path->first->x), path->first->y, depth);
      for (const TXY* v = path->first; v; v = v->next) FeedTo(section.pen, section.X(v->x), v->y);
    }
    SetFlags(*path, kVisited);
    const TXY* last = LastPoint(*path);
    const double fromX = last ? last->x : 0, fromY = last ? last->y : 0;
    if (turned) ReversePolygon(*path);
    TPolygon* next = nullptr;
    bool nextTurned = false;
    if (nearest) {
      nearest->Remove(2 * rankOf.at(path));
      nearest->Remove(2 * rankOf.at(path) + 1);
      const int rank = nearest->Nearest(fromX, fromY);
      if (rank >= 0) next = paths[rank / 2], nextTurned = rank % 2 == 1;
    } else {
      double best = kFar;
      for (TPolygon* p = list; p; p = p->next) {
        if (TestFlags(*p, kVisited) || !p->first) continue;
        const TXY* end = LastPoint(*p);
        const double d0 = Distance2(fromX, fromY, p->first->x, p->first->y);
        if (d0 < best) {
          best = d0;
          next = p;
          nextTurned = false;
        }
        const double d1 = Distance2(fromX, fromY, end->x, end->y);
        if (d1 < best) {
          best = d1;
          next = p;
          nextTurned = true;
        }
      }
    }
    if (next && nextTurned) ReversePolygon(*next);
    path = next;
    turned = nextTurned;
  }
  // Only the contours' marks are cleared, after hatching too: the way it has always been.
  ClearDoneMarks(board.Contours[layer]);
}

void CuttingSection(const Section& section) {
  Board& board = section.context.board;
  const Settings& settings = section.context.settings;
  if (!board.Cutouts) return;
  SelectTool(section.pen, section.row, settings.CuttingTool);
  SetToolSpeeds(section.pen, settings.CuttingSpeed);
  for (int side : {1, 0}) {
    for (TCutout* c = board.Cutouts; c; c = c->next) {
      if (c->side != side) continue;
      for (TPolygon* p = c->paths; p; p = p->next) {
        if (!p->first) continue;
        section.Show(p->first->x, p->first->y);
        RapidTo(section.pen, section.X(p->first->x), p->first->y, settings.CuttingDepth);
        for (const TXY* v = p->first; v; v = v->next) FeedTo(section.pen, section.X(v->x), v->y);
      }
    }
  }
}

}  // namespace

bool SectionWalk(OutputContext& context, const std::string& path, int format) {
  OutputFile file(context, format, path);
  if (!file.Open()) return false;
  Board& board = context.board;
  const Settings& settings = context.settings;
  TOutputState& s = file.state;
  PenMachine& pen = file.pen();
  SetSectionWalkScales(s, format, settings);
  s.UseArcs = settings.MachineArcs;
  pen.words.AdjustSectionWalk(s, board);
  bool centreSection = false;
  for (int code : settings.MultiSequence)
    centreSection = centreSection || code == kSectionCentreHoles;
  if (IsSet(board.CentreHole1X) && centreSection) {
    s.ZeroX = board.CentreHole1X;
    s.ZeroY = board.CentreHole1Y;
  }

  WriteHeader(pen);
  TurnContoursPositive(board);
  for (int row = 0; row < kSequenceSlots; ++row) {
    const int code = settings.MultiSequence[row];
    const Section section{pen, context, row, settings.MultiMirror[row] != 0};
    if (code == kSectionCentreHoles) {
      WalkCentreHoles(pen, board, settings, row);
    } else if (code >= kSectionDrillFirst && code <= kSectionDrillLast) {
      DrillSection(section, code);
    } else if (code >= kSectionEngraveFirst && code < kSectionEngraveFirst + kCircuitLayers) {
      PathSection(section, code - kSectionEngraveFirst, false);
    } else if (code >= kSectionHatchFirst && code < kSectionHatchFirst + kCircuitLayers) {
      PathSection(section, code - kSectionHatchFirst, true);
    } else if (code == kSectionCutting) {
      CuttingSection(section);
    }
  }
  StopTool(pen);
  WriteFooter(pen);
  const bool written = file.Close();
  context.platform.Repaint(RepaintLevel::View);
  return written;
}

}  // namespace isolith
