#include "toolpath/CuttingTabs.h"

#include "core/board/BoardOps.h"
#include "params/FieldChecks.h"
#include "toolpath/geometry/Polylines.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

inline double W(float v) {
  return static_cast<double>(v);
}
inline float F(double v) {
  return static_cast<float>(v);
}

float ChainLength(const TPolygon& polygon) {
  float length = 0;
  for (const TXY* p = polygon.first; p && p->next; p = p->next) {
    length = F(W(length) + Distance(p->x, p->y, p->next->x, p->next->y));
  }
  return length;
}

void RemovePath(TCutout& cutout, TPolygon* path) {
  if (cutout.paths == path) {
    cutout.paths = path->next;
  } else {
    for (TPolygon* q = cutout.paths; q; q = q->next) {
      if (q->next == path) {
        q->next = path->next;
        break;
      }
    }
  }
  path->next = nullptr;
  delete path;
}

TXY* NewPoint(float x, float y) {
  TXY* p = new TXY;
  p->x = x;
  p->y = y;
  return p;
}

// The first part ends `gap` before its end: the chain is walked from its start over its length
// less the gap, and the vertex reached there is moved onto that point.
void ShortenEnd(TCutout& cutout, TPolygon* part, float gap) {
  const float length = ChainLength(*part);
  const float keep = F(W(length) - gap);
  if (!(W(length) - gap > 0)) {
    RemovePath(cutout, part);
    return;
  }
  float walked = 0;
  for (TXY* a = part->first; a && a->next; a = a->next) {
    TXY* b = a->next;
    const float step = Distance(a->x, a->y, b->x, b->y);
    if (W(walked) + step >= keep) {
      PolarPoint(a->x, a->y, F(W(keep) - walked), SegmentAngle(a->x, a->y, b->x, b->y, 1), b->x,
                 b->y);
      FreeChain(b->next);
      b->next = nullptr;
      return;
    }
    walked = F(W(walked) + step);
  }
}

// The second part starts `gap` after its start: leading segments not longer than the gap go,
// and the next one has its start moved by the gap along it.
void ShortenStart(TCutout& cutout, TPolygon* part, float gap) {
  if (!(ChainLength(*part) > gap)) {
    RemovePath(cutout, part);
    return;
  }
  while (part->first && part->first->next) {
    TXY* a = part->first;
    TXY* b = a->next;
    if (Distance(a->x, a->y, b->x, b->y) <= gap) {
      part->first = b;
      delete a;
      continue;
    }
    PolarPoint(a->x, a->y, gap, SegmentAngle(a->x, a->y, b->x, b->y, 1), a->x, a->y);
    return;
  }
  RemovePath(cutout, part);
}

}  // namespace

TDialogTabs::TDialogTabs(Settings& settings, char separator)
    : width(FormatFieldFloat(settings.CuttingTabs, 3, separator)), settings_(settings) {}

bool TDialogTabs::Accept(Platform& platform) {
  float value = settings_.CuttingTabs;
  if (!CheckFloatField(platform, kWidthLabel, width, settings_.LengthUnitLabel, value, kMinimum,
                       kMaximum)) {
    return false;
  }
  settings_.CuttingTabs = value;
  return true;
}

bool FindTabFoot(const Board& board, float x, float y, float reach, TabFoot& foot) {
  bool found = false;
  float best = reach;
  for (TCutout* c = board.Cutouts; c; c = c->next) {
    for (TPolygon* path = c->paths; path; path = path->next) {
      for (TXY* a = path->first; a && a->next; a = a->next) {
        float fx = 0, fy = 0;
        if (!ProjectOnSegment(x, y, a->x, a->y, a->next->x, a->next->y, fx, fy)) continue;
        const float d = Distance(x, y, fx, fy);
        if (d < best) {
          best = d;
          foot = {c, path, a, fx, fy};
          found = true;
        }
      }
    }
  }
  return found;
}

void TabMarker(const Board& board, float x, float y, float reach, float& mx, float& my) {
  TabFoot foot;
  if (FindTabFoot(board, x, y, reach, foot)) {
    mx = foot.x;
    my = foot.y;
  } else {
    mx = -board.CardWidth;
    my = -board.CardHeight;
  }
}

float TabHalfGap(const Settings& settings, ToolTable& tools) {
  double g = W(settings.CuttingTabs) * 0.5;
  if (CuttingToolDefined(settings)) {
    g += W(ToolCutWidth(tools[settings.CuttingTool], settings.CuttingDepth)) * 0.5;
  }
  return F(g);
}

void CutTab(TCutout& cutout, const TabFoot& foot, float halfGap) {
  TPolygon* first = foot.path;
  TXY* at = foot.segment;
  TPolygon* second = new TPolygon;
  second->first = NewPoint(foot.x, foot.y);
  second->first->next = at->next;
  at->next = NewPoint(foot.x, foot.y);
  second->next = first->next;
  first->next = second;
  ShortenEnd(cutout, first, halfGap);
  ShortenStart(cutout, second, halfGap);
}

bool BeginCuttingTabs(CutContext& context) {
  Board& board = context.board;
  if (!board.Cutouts) {
    context.platform.Beep(context.settings.ZapSound);
    return false;
  }
  board.ActiveLayer = kCutoutLayer;
  context.platform.Repaint(RepaintLevel::View);
  TDialogTabs form(context.settings, context.platform.DecimalSeparator());
  return context.platform.RunDialog(form);
}

bool AddCuttingTab(CutContext& context, float x, float y) {
  Board& board = context.board;
  const float reach = context.settings.CuttingTabs;
  float mx = 0, my = 0;
  TabMarker(board, x, y, reach, mx, my);
  TabFoot foot;
  if ((mx < 0 && my < 0) || !FindTabFoot(board, mx, my, reach, foot)) {
    context.platform.Beep(context.settings.ZapSound);
    return false;
  }
  CutTab(*foot.cutout, foot, TabHalfGap(context.settings, context.tools));
  context.platform.Repaint(RepaintLevel::View);
  return true;
}

}  // namespace isolith
