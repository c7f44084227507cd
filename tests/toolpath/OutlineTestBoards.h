// Small boards for the net, copper-plane, card-contour and tab tests.
#pragma once

#include <vector>

#include "core/board/Board.h"
#include "core/board/BoardOps.h"
#include "toolpath/geometry/Polylines.h"

namespace isolith::test {

inline TTrack* AddTrack(Board& b, int layer, float x1, float y1, float x2, float y2,
                        uint8_t code = 0) {
  TTrack* t = new TTrack;
  t->code = code;
  t->x1 = x1, t->y1 = y1, t->x2 = x2, t->y2 = y2;
  TTrack* tail = nullptr;
  AppendTo(b.Tracks[layer], tail, t);
  return t;
}

inline TPad* AddPad(Board& b, int layer, float x, float y, uint8_t code = 0) {
  TPad* p = new TPad;
  p->code = code;
  p->x = x, p->y = y;
  TPad* tail = nullptr;
  AppendTo(b.Pads[layer], tail, p);
  return p;
}

// Four tracks drawing the rectangle (x0, y0)-(x1, y1), counter-clockwise from the top right.
inline void AddRectangle(Board& b, int layer, float x0, float y0, float x1, float y1) {
  AddTrack(b, layer, x1, y1, x0, y1);
  AddTrack(b, layer, x0, y1, x0, y0);
  AddTrack(b, layer, x0, y0, x1, y0);
  AddTrack(b, layer, x1, y0, x1, y1);
}

struct XY {
  float x, y;
};

inline std::vector<XY> Points(const TPolygon& p) {
  std::vector<XY> out;
  for (const TXY* v = p.first; v; v = v->next) out.push_back({v->x, v->y});
  return out;
}

inline TPolygon* MakePolygon(const std::vector<XY>& points) {
  TPolygon* p = new TPolygon;
  TXY* tail = nullptr;
  for (const XY& v : points) AppendPoint(*p, tail, v.x, v.y);
  return p;
}

inline int CountMarkedTracks(const Board& b, int layer) {
  int n = 0;
  for (const TTrack* t = b.Tracks[layer]; t; t = t->next) n += TestFlags(*t, kVisited) ? 1 : 0;
  return n;
}

}  // namespace isolith::test
