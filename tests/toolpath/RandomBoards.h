// Seeded random boards for the tests that hold an indexed calculation to its full scans.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>

#include "core/board/BoardOps.h"

namespace isolith::test {

inline void AddRandomPad(Board& b, float x, float y, uint8_t code, uint8_t flags = 0) {
  TPad* tail = LastPad(b.Pads[0]);
  AppendTo(b.Pads[0], tail, new TPad{code, flags, x, y, nullptr});
}

inline void AddRandomTrack(Board& b, float x1, float y1, float x2, float y2, uint8_t code,
                           uint8_t flags = 0) {
  TTrack* tail = LastTrack(b.Tracks[0]);
  AppendTo(b.Tracks[0], tail, new TTrack{code, flags, x1, y1, x2, y2, nullptr});
}

inline void SetAperture(Board& b, uint8_t code, uint8_t shape, float w, float h) {
  b.PadShape[0][code] = shape;
  b.PadSizeX[0][code] = w;
  b.PadSizeY[0][code] = h;
}

// A board of pads, single tracks and nets of joined tracks, from a seed. With `snap` every
// coordinate lies on a 0.25 grid, which gives many coincident ends and collinear sides.
inline void RandomBoard(Board& b, uint32_t seed, bool snap) {
  std::mt19937 rng(seed);
  auto u = [&](double lo, double hi) {
    const double v = lo + (hi - lo) * (rng() / 4294967296.0);
    return static_cast<float>(snap ? std::round(v * 4) / 4 : v);
  };
  auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<uint32_t>(n)); };
  for (uint8_t code = 10; code < 18; ++code)
    SetAperture(b, code, static_cast<uint8_t>(pick(5)), pick(9) == 0 ? 0 : u(0.5, 2.6),
                u(0.5, 2.6));
  for (uint8_t code = 20; code < 24; ++code) b.TrackWidth[0][code] = pick(8) == 0 ? 0 : u(0.1, 0.9);
  auto flags = [&](uint8_t special) {
    const int r = pick(12);
    return r == 0 ? uint8_t(1) : r == 1 ? uint8_t(2) : r < 4 ? special : uint8_t(0);
  };
  const int pads = 8 + pick(20);
  for (int i = 0; i < pads; ++i)
    AddRandomPad(b, pick(6) == 0 ? u(0, 2) : u(0, 20), pick(6) == 0 ? u(0, 2) : u(0, 20),
                 static_cast<uint8_t>(10 + pick(8)), flags(kPadThermal));
  const int nets = 3 + pick(8);
  for (int n = 0; n < nets; ++n) {
    float x = u(0, 20), y = u(0, 20);
    const int legs = 1 + pick(5);
    const uint8_t code = static_cast<uint8_t>(20 + pick(4));
    for (int k = 0; k < legs; ++k) {
      // Along an axis, at 45 degrees, or anywhere.
      const int kind = pick(3);
      const float len = pick(10) == 0 ? u(0, 0.05) : u(0.2, 8);
      const double a = kind == 0   ? pick(4) * 1.5707963
                       : kind == 1 ? (2 * pick(4) + 1) * 0.7853982
                                   : u(0, 6.2831853);
      const float nx = static_cast<float>(x + len * std::cos(a));
      const float ny = static_cast<float>(y + len * std::sin(a));
      AddRandomTrack(b, x, y, snap ? std::round(nx * 4) / 4 : nx,
                     snap ? std::round(ny * 4) / 4 : ny, code, flags(kTrackEngraved));
      x = b.Tracks[0] ? LastTrack(b.Tracks[0])->x2 : x;
      y = b.Tracks[0] ? LastTrack(b.Tracks[0])->y2 : y;
    }
  }
}

}  // namespace isolith::test
