// Boards that push the indexes to their worst: many copies of one flash, one pad covering the
// card, a card of 10 km, tracks of zero length, coordinates of 1e9, and a fill drawn the old way
// as overlapping tracks joined to a pad. Each runs in a process of its own, so that its peak
// memory is its own; the table gives the time of the plane detection, the contours and the
// hatches, and that peak.
//
//   bench_degenerate [--quick]   (--quick: a tenth of the fill, for a smoke run)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "core/board/BoardOps.h"
#include "core/platform/ConsolePlatform.h"
#include "toolpath/Contours.h"
#include "toolpath/CopperPlanes.h"
#include "toolpath/Hatches.h"

namespace {

using namespace isolith;
using Clock = std::chrono::steady_clock;

double Ms(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

void AddPad(Board& b, float x, float y, uint8_t code) {
  auto* p = new TPad{code, 0, x, y, nullptr};
  p->next = b.Pads[0], b.Pads[0] = p;
}

void AddTrack(Board& b, float x1, float y1, float x2, float y2, uint8_t code) {
  auto* t = new TTrack{code, 0, x1, y1, x2, y2, nullptr};
  t->next = b.Tracks[0], b.Tracks[0] = t;
}

// Round pads of 1.6 mm (code 10), a pad of 100 x 80 mm (11), tracks of 0.25 and 0.4 mm.
void Apertures(Board& b, float cardWidth, float cardHeight) {
  b.CardWidth = cardWidth, b.CardHeight = cardHeight;
  b.PadShape[0][10] = kShapeCircle, b.PadSizeX[0][10] = b.PadSizeY[0][10] = 1.6f;
  b.PadShape[0][11] = kShapeRectangle, b.PadSizeX[0][11] = 100, b.PadSizeY[0][11] = 80;
  b.TrackWidth[0][20] = 0.25f, b.TrackWidth[0][21] = 0.4f;
}

struct Case {
  const char* name;
  std::function<void(Board&)> build;
  HatchRect zone{};  // the hatch zone when not the whole card
};

std::vector<Case> Cases(bool quick) {
  return {
      {"1600 copies of one pad",
       [](Board& b) {
         Apertures(b, 20, 20);
         for (int i = 0; i < 1600; ++i) AddPad(b, 10, 10, 10);
         AddPad(b, 5, 5, 10);
       }},
      {"one pad covering the card, 200 on it",
       [](Board& b) {
         Apertures(b, 110, 90);
         AddPad(b, 55, 45, 11);
         for (int i = 0; i < 200; ++i) AddPad(b, 10 + 0.45f * i, 20 + (i % 7) * 8, 10);
       }},
      // Hatched over the whole card, such a card makes 5e7 scan lines by the rule: the zone is
      // a corner of it here, so that the index over a nearly empty card is what is measured.
      {"a card of 10 km with two pads, a zone",
       [](Board& b) {
         Apertures(b, 1.0e7f, 1.0e7f);
         AddPad(b, 1, 1, 10);
         AddPad(b, 1.0e7f - 1, 1.0e7f - 1, 10);
       },
       {0, 0, 20, 20}},
      {"1000 tracks of zero length among pads",
       [](Board& b) {
         Apertures(b, 100, 100);
         for (int i = 0; i < 1000; ++i) {
           const float x = 2 + (i % 40) * 2.4f, y = 2 + (i / 40) * 3.8f;
           AddTrack(b, x, y, x, y, 21);
           AddPad(b, x + 1.2f, y + 1.9f, 10);
         }
       }},
      {"coordinates of 1e9",
       [](Board& b) {
         Apertures(b, 50, 50);
         for (int i = 0; i < 50; ++i) AddPad(b, 5 + i * 0.8f, 25, 10);
         AddPad(b, 1.0e9f, 1.0e9f, 10);
         AddTrack(b, 1.0e9f, 1.0e9f, 1.0e9f + 10, 1.0e9f, 21);
         AddTrack(b, 5, 25, 1.0e9f, 1.0e9f, 20);
       }},
      {quick ? "a fill of 10000 tracks joined to a pad" : "a fill of 100000 tracks joined to a pad",
       [quick](Board& b) {
         // Rows 0.05 mm apart of 0.25 mm tracks, a serpentine, so none of it is a plane.
         const int rows = quick ? 100 : 1000, legs = 100;
         Apertures(b, 60, 10 + rows * 0.05f);
         float x = 5, y = 5;
         AddPad(b, x, y, 10);
         for (int r = 0; r < rows; ++r) {
           const float step = (r % 2 ? -50.0f : 50.0f) / legs;
           for (int k = 0; k < legs - 1; ++k, x += step) AddTrack(b, x, y, x + step, y, 20);
           AddTrack(b, x, y, x, y + 0.05f, 20);
           y += 0.05f;
         }
       }},
  };
}

struct Result {
  long long items = 0;
  double planes = 0, contours = 0, hatches = 0;
};

Result Run(const Case& c) {
  std::FILE* quiet = std::fopen("/dev/null", "w");
  ConsolePlatform platform(quiet ? quiet : stderr);
  Board b;
  c.build(b);
  Result r;
  r.items = CountOf(b.Pads[0]) + CountOf(b.Tracks[0]);
  auto start = Clock::now();
  DetectCopperPlanes(b, platform, 0, false);
  r.planes = Ms(start);
  start = Clock::now();
  ContourSettings cs;
  CalculateContours(b, 0, cs, nullptr);
  r.contours = Ms(start);
  if (!b.Contours[0]) b.Contours[0] = new TPolygon;  // hatches want contours
  HatchSettings hs;
  hs.pitch = 0.2f;
  HatchSession session;
  session.rectangle = c.zone.xmax > 0 ? c.zone : HatchRect{0, 0, b.CardWidth, b.CardHeight};
  start = Clock::now();
  CalculateHatches(b, 0, hs, session, nullptr);
  r.hatches = Ms(start);
  if (quiet) std::fclose(quiet);
  return r;
}

}  // namespace

int main(int argc, char** argv) {
  const bool quick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
  std::printf("%-42s%10s%10s%10s%10s%8s\n", "board", "items", "planes", "contours", "hatches",
              "MB");
  for (const Case& c : Cases(quick)) {
    std::fflush(stdout);  // the child must not write the parent's buffer again
    int pipe_[2];
    if (pipe(pipe_) != 0) return 1;
    const pid_t child = fork();
    if (child < 0) return 1;
    if (child == 0) {
      close(pipe_[0]);
      const Result r = Run(c);
      const bool written = write(pipe_[1], &r, sizeof r) == static_cast<ssize_t>(sizeof r);
      _exit(written ? 0 : 1);
    }
    close(pipe_[1]);
    Result r;
    const bool got = read(pipe_[0], &r, sizeof r) == static_cast<ssize_t>(sizeof r);
    close(pipe_[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!got || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      std::printf("%-42s failed\n", c.name);
      continue;
    }
    std::printf("%-42s%10lld%10.0f%10.0f%10.0f%8ld\n", c.name, r.items, r.planes, r.contours,
                r.hatches, usage.ru_maxrss / 1024);
  }
  return 0;
}
