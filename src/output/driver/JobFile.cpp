#include "output/driver/JobFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "output/driver/LayerWalk.h"
#include "output/driver/NearestPoints.h"
#include "output/driver/PathDirections.h"
#include "output/driver/PenMachine.h"
#include "output/driver/WalkSteps.h"
#include "output/formats/HeaderText.h"
#include "params/SettingsFile.h"
#include "toolpath/DrillList.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith {

namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();
constexpr float kNoBoring = 0.01f;

// The blocks of one file, and the last point written, from which the next path is the nearest.
class JobWriter {
 public:
  void Text17(const std::string& text) {
    char block[kJobBlockSize] = {};
    std::memcpy(block, text.data(), std::min(text.size(), sizeof block));
    out.append(block, sizeof block);
  }
  void Block(uint8_t type, int32_t a, int32_t b, int32_t c, int32_t d) {
    out.push_back(static_cast<char>(type));
    for (int32_t word : {a, b, c, d})
      for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<char>((static_cast<uint32_t>(word) >> shift) & 0xFF));
  }
  void TextBlock(const char* text, size_t size) {
    char block[kJobBlockSize - 1] = {};
    std::memcpy(block, text, std::min(size, sizeof block));
    out.push_back(static_cast<char>(kJobToolMore));
    out.append(block, sizeof block);
  }
  void Path(float speed, int tool, int32_t flags) {
    Block(kJobPath, static_cast<int32_t>(std::lround(speed)), 0, 0, (tool & 0xFF) | flags);
  }
  void Point(double x, double y, double z) {
    Block(kJobPoint, JobFixed(x), JobFixed(y), JobFixed(z), 0);
    lastX = x, lastY = y;
  }
  std::string out;
  double lastX = 0, lastY = 0;
};

void WriteSetup(JobWriter& job, const Board& b, const Settings& s) {
  job.Text17(std::string("Torvane ") + kOutputVersion + " " + kOutputTitle);
  job.Block(kJobSetup, JobFixed(b.CardWidth), JobFixed(b.CardHeight), JobFixed(b.CardThickness), 0);
  job.Block(kJobSetup, 0, 0, JobFixed(b.CardWidth), JobFixed(b.CardHeight));
  job.Block(kJobSetup, 1, 0, 0, 0);
  job.Block(kJobSetup, s.MillingTool, JobFixed(s.MillingDepth), s.MillingSpeed, 0);
  job.Block(kJobSetup, 4, 0, 0, 0);
  // The reference pad's Y goes as its whole millimetres, not fixed: the module reads it so.
  const int32_t refX = b.RefPad ? JobFixed(b.RefPad->x) : 0;
  const int32_t refY = b.RefPad ? static_cast<int32_t>(b.RefPad->y) : 0;
  job.Block(kJobSetup, JobFixed(b.OriginX), JobFixed(b.OriginY), refX, refY);
}

void WriteTools(JobWriter& job, OutputContext& context, int layer) {
  const Board& b = context.board;
  const Settings& s = context.settings;
  std::vector<bool> used(kToolSlots, false);
  const auto use = [&used](int tool) {
    if (tool >= 0 && tool < kToolSlots) used[tool] = true;
  };
  if (IsCircuitLayer(layer)) {
    use(s.MillingTool);
    if (b.Hatches[layer]) use(s.HatchingTool);
  }
  for (const TDrill* d = b.Drills; d; d = d->next) use(DrillToolOf(context.drillList, b, *d));
  if ((layer == 0 || layer == 5) && b.Cutouts) use(s.CuttingTool);
  for (int i = 0; i < kToolSlots; ++i) {
    const TToolData& t = context.tools[i];
    if (!used[i] || t.Diameter <= 0) continue;  // an empty slot is passed over
    job.Block(kJobTool, i, JobFixed(t.Diameter), t.Profile, JobFixed(t.ConicalAngle));
    job.Block(kJobToolMore, static_cast<int32_t>(t.Color), t.NumberOfTeeth, t.RotationSpeed,
              JobFixed(t.Zmax));
    job.Block(kJobToolMore, t.AbsDrillSpeed, t.RelDrillSpeed, JobFixed(t.ChipBreakDown),
              JobFixed(t.ChipBreakUp));
    job.Block(kJobToolMore, JobFixed(t.UnTamping), 0, 0, 0);
    const size_t length = strnlen(t.Name.data(), t.Name.size());
    for (size_t at = 0; at < length; at += kJobBlockSize - 1)
      job.TextBlock(t.Name.data() + at, length - at);
  }
}

void JobCentreSpots(JobWriter& job, const Board& b, const Settings& s) {
  for (const auto& [x, y] : CentreSpots(b)) {
    job.Path(s.BoringSpeed, s.PlottingTool, kJobPlunge);
    job.Point(x, y, s.PlottingDepth);
  }
}

// One hole: a plunge, or a circle bored as chords with the exact circle after them.
void Hole(JobWriter& job, OutputContext& context, const TDrill& d, int tool, float arcStep) {
  const Settings& s = context.settings;
  const double diameter = context.board.DrillDiameter[d.code];
  float r = static_cast<float>((diameter - ToolAt(context.tools, tool).Diameter) * 0.5);
  if (r <= kNoBoring || !s.BoringDrills || !(diameter > s.BoringThreshold - 0.01)) r = 0;
  const double depth = s.DrillingDepth;
  if (r <= kNoBoring) {
    job.Path(s.BoringSpeed, tool, kJobPlunge);
    job.Point(d.x, d.y, depth);
    return;
  }
  job.Path(s.BoringSpeed, tool, 0);
  job.Point(d.x, d.y, depth);
  job.Point(d.x + r, d.y, depth);
  job.Path(s.BoringSpeed, tool, kJobCircle);
  const double step = s.BoringDir > 0 ? arcStep : -arcStep;
  for (double angle = 0; std::fabs(angle) <= 361 && step != 0; angle += step) {
    const double a = angle * M_PI / 180;
    job.Point(d.x + r * std::cos(a), d.y + r * std::sin(a), depth);
  }
  job.Block(kJobArc, JobFixed(d.x), JobFixed(d.y), JobFixed(r), JobFixed(r));
  job.Block(kJobArc, JobFixed(0), JobFixed(360), JobFixed(arcStep), s.BoringDir);
  job.Path(s.BoringSpeed, tool, 0);
  job.Point(d.x + r, d.y, depth);
  job.Point(d.x, d.y, depth);
}

// A contour entered at `entry`: a closed one (its ends within a cutting width) goes round from
// there back to it, an open one is cut from its first vertex.
void ContourPath(JobWriter& job, const Settings& s, const TPolygon& p, const TXY* entry,
                 double closedWidth) {
  const TXY* first = p.first;
  const TXY* last = LastPoint(p);
  const bool closed = std::sqrt(Distance2(first->x, first->y, last->x, last->y)) <= closedWidth;
  if (!closed) entry = first;
  job.Path(s.MillingSpeed, s.MillingTool, 0);
  for (const TXY* v = entry; v; v = v->next) job.Point(v->x, v->y, s.MillingDepth);
  if (closed && entry != first) {
    for (const TXY* v = first->next; v; v = v->next) {
      job.Point(v->x, v->y, s.MillingDepth);
      if (v == entry) break;
    }
  }
}

double ClosedWidth(const OutputContext& context) {
  const Settings& s = context.settings;
  return ToolCutWidthByIndex(context.tools, s.MillingTool, s.MillingDepth, 0);
}

// A hatch, turned first when it is entered by its last point.
void HatchPath(JobWriter& job, const Settings& s, TPolygon& p, bool byLast) {
  if (byLast) ReversePolygon(p);
  job.Path(s.MillingSpeed, s.HatchingTool, kJobHatch);
  for (const TXY* v = p.first; v; v = v->next) job.Point(v->x, v->y, s.MillingDepth);
}

// The plain scans below are the reference of the orderings: each step looks at every item left.
void ReferenceDrills(JobWriter& job, OutputContext& context, bool optim, float arcStep) {
  Board& b = context.board;
  ClearDoneMarks(b.Drills);
  for (int tool = 0; tool < kToolSlots; ++tool) {
    // Each tool starts from the list's first hole, then goes on from the last point written.
    double fromX = b.Drills ? b.Drills->x : 0, fromY = b.Drills ? b.Drills->y : 0;
    for (;;) {
      TDrill* taken = nullptr;
      double best = kFar;
      for (TDrill* d = b.Drills; d; d = d->next) {
        if (TestFlags(*d, kVisited) || DrillToolOf(context.drillList, b, *d) != tool) continue;
        if (!optim) {
          taken = d;
          break;
        }
        const double dist = Distance2(fromX, fromY, d->x, d->y);
        if (dist < best) best = dist, taken = d;
      }
      if (!taken) break;
      SetFlags(*taken, kVisited);
      if (b.DrillDiameter[taken->code] >= 0.01f) Hole(job, context, *taken, tool, arcStep);
      fromX = job.lastX, fromY = job.lastY;
    }
  }
  ClearDoneMarks(b.Drills);
}

void ReferenceHatches(JobWriter& job, OutputContext& context, int layer, bool optim) {
  const Settings& s = context.settings;
  TPolygon* list = context.board.Hatches[layer];
  ClearDoneMarks(list);
  for (;;) {
    TPolygon* taken = nullptr;
    bool byLast = false;
    double best = kFar;
    for (TPolygon* p = list; p; p = p->next) {
      if (TestFlags(*p, kVisited) || !p->first) continue;
      if (!optim) {
        taken = p;
        break;
      }
      const TXY* last = LastPoint(*p);
      const double d0 = Distance2(job.lastX, job.lastY, p->first->x, p->first->y);
      if (d0 < best) best = d0, taken = p, byLast = false;
      const double d1 = Distance2(job.lastX, job.lastY, last->x, last->y);
      if (d1 < best) best = d1, taken = p, byLast = true;
    }
    if (!taken) break;
    SetFlags(*taken, kVisited);
    HatchPath(job, s, *taken, byLast);
  }
  ClearDoneMarks(list);
}

void ReferenceContours(JobWriter& job, OutputContext& context, int layer, bool optim) {
  const Settings& s = context.settings;
  TPolygon* list = context.board.Contours[layer];
  ClearDoneMarks(list);
  const double closedWidth = ClosedWidth(context);
  for (;;) {
    TPolygon* taken = nullptr;
    const TXY* entry = nullptr;
    double best = kFar;
    for (TPolygon* p = list; p; p = p->next) {
      if (TestFlags(*p, kVisited) || !p->first) continue;
      if (!optim) {
        taken = p, entry = p->first;
        break;
      }
      for (const TXY* v = p->first; v && v->next; v = v->next) {
        const double d = Distance2(job.lastX, job.lastY, v->x, v->y);
        if (d < best) best = d, taken = p, entry = v;
      }
    }
    if (!taken) break;
    SetFlags(*taken, kVisited);
    ContourPath(job, s, *taken, entry, closedWidth);
  }
  ClearDoneMarks(list);
}

// The same orderings in n log n: the next item is the nearest of a grid of the candidates' points,
// ranked in the order in which the scan meets them, so that a tie goes the scan's way; without
// optimisation the items simply follow the list.

void Drills(JobWriter& job, OutputContext& context, bool optim, float arcStep) {
  Board& b = context.board;
  JobCentreSpots(job, b, context.settings);
  if (context.referenceOrdering) {
    ReferenceDrills(job, context, optim, arcStep);
    return;
  }
  std::vector<TDrill*> drills;
  std::vector<int> toolOf;
  for (TDrill* d = b.Drills; d; d = d->next) {
    drills.push_back(d);
    toolOf.push_back(DrillToolOf(context.drillList, b, *d));
  }
  const int count = static_cast<int>(drills.size());
  for (int tool = 0; tool < kToolSlots; ++tool) {
    if (std::find(toolOf.begin(), toolOf.end(), tool) == toolOf.end()) continue;
    // Each tool starts from the list's first hole, then goes on from the last point written.
    double fromX = drills[0]->x, fromY = drills[0]->y;
    std::optional<NearestPoints> nearest;
    if (optim) {
      nearest.emplace(count);
      for (int i = 0; i < count; ++i)
        if (toolOf[i] == tool) nearest->Add(i, drills[i]->x, drills[i]->y);
    }
    for (int next = 0;;) {
      int rank = -1;
      if (nearest) {
        rank = nearest->Nearest(fromX, fromY);
        if (rank >= 0) nearest->Remove(rank);
      } else {
        while (next < count && toolOf[next] != tool) ++next;
        if (next < count) rank = next++;
      }
      if (rank < 0) break;
      TDrill& d = *drills[rank];
      if (b.DrillDiameter[d.code] >= 0.01f) Hole(job, context, d, tool, arcStep);
      fromX = job.lastX, fromY = job.lastY;
    }
  }
}

void Hatches(JobWriter& job, OutputContext& context, int layer, bool optim) {
  if (context.referenceOrdering) {
    ReferenceHatches(job, context, layer, optim);
    return;
  }
  const Settings& s = context.settings;
  std::vector<TPolygon*> paths;
  for (TPolygon* p = context.board.Hatches[layer]; p; p = p->next)
    if (p->first) paths.push_back(p);
  if (!optim) {
    for (TPolygon* p : paths) HatchPath(job, s, *p, false);
    return;
  }
  // Both ends of every hatch: the first end ranked before the last.
  NearestPoints nearest(static_cast<int>(2 * paths.size()));
  for (size_t i = 0; i < paths.size(); ++i) {
    const TXY* last = LastPoint(*paths[i]);
    nearest.Add(static_cast<int>(2 * i), paths[i]->first->x, paths[i]->first->y);
    nearest.Add(static_cast<int>(2 * i + 1), last->x, last->y);
  }
  for (int rank; (rank = nearest.Nearest(job.lastX, job.lastY)) >= 0;) {
    nearest.Remove(rank - rank % 2);
    nearest.Remove(rank - rank % 2 + 1);
    HatchPath(job, s, *paths[rank / 2], rank % 2 == 1);
  }
}

void Contours(JobWriter& job, OutputContext& context, int layer, bool optim) {
  if (context.referenceOrdering) {
    ReferenceContours(job, context, layer, optim);
    return;
  }
  const Settings& s = context.settings;
  const double closedWidth = ClosedWidth(context);
  TPolygon* list = context.board.Contours[layer];
  if (!optim) {
    for (TPolygon* p = list; p; p = p->next)
      if (p->first) ContourPath(job, s, *p, p->first, closedWidth);
    return;
  }
  // Every vertex but the last of every contour is an entry, ranked contour by contour.
  struct Entry {
    TPolygon* path;
    const TXY* vertex;
    int firstRank;  // of the path's first entry
  };
  std::vector<Entry> entries;
  for (TPolygon* p = list; p; p = p->next) {
    const int firstRank = static_cast<int>(entries.size());
    for (const TXY* v = p->first; v && v->next; v = v->next) entries.push_back({p, v, firstRank});
  }
  NearestPoints nearest(static_cast<int>(entries.size()));
  for (size_t i = 0; i < entries.size(); ++i)
    nearest.Add(static_cast<int>(i), entries[i].vertex->x, entries[i].vertex->y);
  for (int rank; (rank = nearest.Nearest(job.lastX, job.lastY)) >= 0;) {
    const Entry taken = entries[rank];
    for (size_t i = taken.firstRank; i < entries.size() && entries[i].path == taken.path; ++i)
      nearest.Remove(static_cast<int>(i));
    ContourPath(job, s, *taken.path, taken.vertex, closedWidth);
  }
}

void CutPaths(JobWriter& job, OutputContext& context) {
  const Settings& s = context.settings;
  for (TCutout* c = context.board.Cutouts; c; c = c->next)
    for (TPolygon* p = c->paths; p; p = p->next) {
      if (!p->first) continue;
      job.Path(s.CuttingSpeed, s.CuttingTool, 0);
      for (const TXY* v = p->first; v; v = v->next) job.Point(v->x, v->y, s.CuttingDepth);
    }
}

}  // namespace

int32_t JobFixed(double value) {
  const double scaled = std::round(value * 100000.0);
  if (!(scaled > INT32_MIN)) return INT32_MIN;
  return scaled >= INT32_MAX ? INT32_MAX : static_cast<int32_t>(scaled);
}

bool WriteJobFile(OutputContext& context, const std::string& path, int layer, int sequence,
                  bool contourOptim, bool drillOptim, float arcStep) {
  Board& b = context.board;
  context.platform.SetBusyCursor(true);
  TurnContoursPositive(b);
  JobWriter job;
  WriteSetup(job, b, context.settings);
  WriteTools(job, context, layer);
  bool drills = b.Drills != nullptr;
  bool contours = IsCircuitLayer(layer) && b.Contours[layer];
  for (int pass = 0; pass < 2; ++pass) {
    if (drills && DrillsInPass(sequence, pass)) {
      Drills(job, context, drillOptim, arcStep);
      drills = false;
    }
    if (contours && ContoursInPass(sequence, pass)) {
      Hatches(job, context, layer, contourOptim);
      Contours(job, context, layer, contourOptim);
      contours = false;
    }
  }
  if ((layer == 0 || layer == 5) && context.choices.cardContour) CutPaths(job, context);
  const bool written = WriteFileAtomically(path, job.out);
  context.platform.SetBusyCursor(false);
  return written;
}

}  // namespace isolith
