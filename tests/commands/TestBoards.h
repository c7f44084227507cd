// Small boards built by hand for the application tests.
#pragma once

#include "core/board/Board.h"

namespace isolith::test {

inline TPad* AddPad(Board& b, int layer, float x, float y, uint8_t code = 10) {
  TPad* p = new TPad{code, 0, x, y, nullptr};
  TPad* tail = nullptr;
  AppendTo(b.Pads[layer], tail, p);
  return p;
}

inline TTrack* AddTrack(Board& b, int layer, float x1, float y1, float x2, float y2,
                        uint8_t code = 11) {
  TTrack* t = new TTrack{code, 0, x1, y1, x2, y2, nullptr};
  TTrack* tail = nullptr;
  AppendTo(b.Tracks[layer], tail, t);
  return t;
}

inline TDrill* AddDrill(Board& b, float x, float y, uint8_t code = 3) {
  TDrill* d = new TDrill{code, 0, x, y, nullptr};
  TDrill* tail = nullptr;
  AppendTo(b.Drills, tail, d);
  return d;
}

inline TCutout* AddCutout(Board& b) {
  TCutout* c = new TCutout;
  c->outline = new TPolygon;
  c->outline->first = new TXY{5, 5, 0, new TXY{20, 5, 0, nullptr}};
  TCutout* tail = nullptr;
  AppendTo(b.Cutouts, tail, c);
  return c;
}

}  // namespace isolith::test
