#include "output/BoardSvg.h"

#include <vector>

#include "toolpath/ContourDraft.h"
#include "toolpath/geometry/SvgWriter.h"

namespace isolith {

namespace {

constexpr const char* kStyle =
    "polyline{fill:none;stroke-width:0.05;stroke-linejoin:round;stroke-linecap:round}"
    ".card polyline{stroke:#888}.pads polyline,.tracks polyline{stroke:#c60;fill:#fc8;"
    "fill-opacity:0.5}.drills polyline{stroke:#000}.contours polyline{stroke:#00c}"
    ".hatches polyline{stroke:#0a0}.outlines polyline{stroke:#a0a}"
    ".cutouts polyline{stroke:#c00;stroke-width:0.1}";

// Adds a draft (a run of segments, each mostly starting where the one before ended) as the
// fewest polylines, then frees it.
void AddOutline(SvgWriter& svg, TSeg* draft) {
  std::vector<SvgPoint> line;
  for (const TSeg* s = draft; s; s = s->next) {
    if (line.empty() || line.back().x != s->x1 || line.back().y != s->y1) {
      if (line.size() > 1) svg.AddPolyline(line);
      line.assign(1, SvgPoint{s->x1, s->y1});
    }
    line.push_back({s->x2, s->y2});
  }
  if (line.size() > 1) svg.AddPolyline(line);
  FreeChain(draft);
}

}  // namespace

std::string BoardToSvg(const Board& b) {
  SvgWriter svg;
  svg.SetStyleSheet(kStyle);
  svg.BeginGroup("card");
  const SvgPoint card[] = {
      {0, 0}, {b.CardWidth, 0}, {b.CardWidth, b.CardHeight}, {0, b.CardHeight}, {0, 0}};
  svg.AddPolyline(card);

  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    if (!b.Pads[layer] && !b.Tracks[layer] && !b.Contours[layer] && !b.Hatches[layer]) continue;
    // The copper as it is, whatever the marks that keep an item out of the calculations.
    svg.BeginGroup("pads", layer);
    for (const TPad* p = b.Pads[layer]; p; p = p->next) {
      TPad whole = *p;
      whole.flags = 0;
      AddOutline(svg, BuildPadDraft(b, layer, whole, 0));
    }
    svg.BeginGroup("tracks", layer);
    for (const TTrack* t = b.Tracks[layer]; t; t = t->next) {
      TTrack whole = *t;
      whole.flags = 0;
      if (TSeg* draft = BuildTrackDraft(b, layer, whole, 0, false))
        AddOutline(svg, draft);
      else
        svg.AddSegment(t->x1, t->y1, t->x2, t->y2);
    }
    svg.BeginGroup("contours", layer);
    svg.AddPolygonList(b.Contours[layer]);
    svg.BeginGroup("hatches", layer);
    svg.AddPolygonList(b.Hatches[layer]);
  }

  svg.BeginGroup("drills", kDrillLayer);
  for (const TDrill* d = b.Drills; d; d = d->next)
    svg.AddCircle(d->x, d->y, static_cast<float>(b.DrillDiameter[d->code] * 0.5), 16);
  svg.BeginGroup("outlines", kCutoutLayer);
  for (const TCutout* c = b.Cutouts; c; c = c->next)
    if (c->outline) svg.AddPolygon(*c->outline);
  svg.BeginGroup("cutouts", kCutoutLayer);
  for (const TCutout* c = b.Cutouts; c; c = c->next) svg.AddPolygonList(c->paths);
  return svg.ToString();
}

}  // namespace isolith
