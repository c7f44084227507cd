#include "toolpath/TrackNets.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "toolpath/ItemGrid.h"
#include "toolpath/geometry/Scalars.h"
#include "toolpath/geometry/Segments.h"

namespace isolith {

namespace {

inline double W(float v) {
  return static_cast<double>(v);
}
inline float F(double v) {
  return static_cast<float>(v);
}

// Both ends of a walk's contact tests are tolerances of at most 0.001 beyond the reach itself;
// the search boxes are widened by this much more, and by a little for large coordinates.
float SearchMargin(float x, float y) {
  return F(0.01 + 1e-5 * std::max(std::fabs(W(x)), std::fabs(W(y))));
}

ItemBox TrackBox(const TTrack& t) {
  return {std::min(t.x1, t.x2), std::min(t.y1, t.y2), std::max(t.x1, t.x2), std::max(t.y1, t.y2)};
}

ItemBox Widen(ItemBox b, float reach) {
  const float r = std::max(0.0f, reach);
  const float m = std::max(SearchMargin(b.xmin, b.ymin), SearchMargin(b.xmax, b.ymax));
  const double w = W(r) + m;
  return {F(b.xmin - w), F(b.ymin - w), F(b.xmax + w), F(b.ymax + w)};
}

// Larger of the finite values seen; 0 when none.
void KeepMax(float& max, float v) {
  if (v > max) max = v;
}

// The items of one circuit layer in list order, with their sizes, and the grids over them
// built on first use.
struct LayerItems {
  bool loaded = false;
  std::vector<TTrack*> tracks;
  std::vector<float> halfWidth;
  float maxHalfWidth = 0;
  std::vector<TPad*> pads;
  std::vector<float> padSize;
  float maxPadSize = 0;
  std::unique_ptr<ItemGrid> trackGrid;
  std::unique_ptr<ItemGrid> padGrid;
};

// One call of the walk: a pad or a track being followed, and where its scan stands.
struct Frame {
  enum Kind { kPad, kTrack, kCopperTrack } kind = kTrack;
  int layer = 0;
  TPad* pad = nullptr;
  TTrack* track = nullptr;
  float reach = 0;  // pad: its size; track: h
  bool throughPads = false;
  // Pad: phases 0..3 scan the tracks of layers 0..3. Track: phases 0..3 scan the pads of
  // layers 0..3 (through pads only), phase 4 the tracks of its own layer.
  int phase = 0;
  bool loaded = false;
  std::vector<int> candidates;
  size_t next = 0;
};

constexpr int kTrackPhase = kCircuitLayers;

class NetWalk {
 public:
  NetWalk(Board& board, NetSearch search) : board_(board), search_(search) {}

  void FromPad(int layer, TPad* pad) {
    if (!IsCircuitLayer(layer) || !pad) return;
    Push(PadFrame(layer, pad));
    Run();
  }

  void FromTrack(int layer, bool throughPads, TTrack* track) {
    if (!IsCircuitLayer(layer) || !track) return;
    Push(TrackFrame(layer, throughPads, track));
    Run();
  }

  void FromCopperTrack(int layer, TTrack* track) {
    if (!IsCircuitLayer(layer) || !track) return;
    Push(CopperFrame(layer, track));
    Run();
  }

  // The first pad of the layer, in list order, not disabled and reached by the track; null
  // when none.
  TPad* FeedingPad(int layer, const TTrack& track, float halfWidth) {
    LayerItems& items = Items(layer);
    Candidates(layer, false, Widen(TrackBox(track), W(halfWidth) + items.maxPadSize), scratch_);
    for (int i : scratch_) {
      TPad* p = items.pads[i];
      if (TestFlags(*p, kPadDisabled)) continue;
      if (TrackReachesPad(track, halfWidth, *p, items.padSize[i])) return p;
    }
    return nullptr;
  }

  LayerItems& Items(int layer) {
    LayerItems& items = layers_[layer];
    if (items.loaded) return items;
    items.loaded = true;
    for (TTrack* t = board_.Tracks[layer]; t; t = t->next) {
      items.tracks.push_back(t);
      items.halfWidth.push_back(TrackHalfWidth(board_, layer, *t));
      KeepMax(items.maxHalfWidth, items.halfWidth.back());
    }
    for (TPad* p = board_.Pads[layer]; p; p = p->next) {
      items.pads.push_back(p);
      items.padSize.push_back(PadTraceSize(board_, layer, *p));
      KeepMax(items.maxPadSize, items.padSize.back());
    }
    return items;
  }

 private:
  Frame PadFrame(int layer, TPad* pad) {
    Frame f;
    f.kind = Frame::kPad;
    f.layer = layer;
    f.pad = pad;
    f.reach = PadTraceSize(board_, layer, *pad);
    SetFlags(*pad, kVisited);
    return f;
  }

  Frame TrackFrame(int layer, bool throughPads, TTrack* track) {
    Frame f;
    f.kind = Frame::kTrack;
    f.layer = layer;
    f.track = track;
    f.throughPads = throughPads;
    f.reach = TrackHalfWidth(board_, layer, *track);
    if (!throughPads) f.reach = MinF(0.01f, f.reach);
    f.phase = throughPads ? 0 : kTrackPhase;
    SetFlags(*track, kVisited);
    return f;
  }

  Frame CopperFrame(int layer, TTrack* track) {
    Frame f;
    f.kind = Frame::kCopperTrack;
    f.layer = layer;
    f.track = track;
    f.reach = TrackHalfWidth(board_, layer, *track);
    f.phase = kTrackPhase;
    SetFlags(*track, kVisited);
    return f;
  }

  void Push(Frame f) { stack_.push_back(std::move(f)); }

  // Positions of the items of a layer that may touch something within `box`.
  void Candidates(int layer, bool tracks, const ItemBox& box, std::vector<int>& out) {
    LayerItems& items = Items(layer);
    const size_t n = tracks ? items.tracks.size() : items.pads.size();
    if (search_ == NetSearch::Scan) {
      out.resize(n);
      for (size_t i = 0; i < n; ++i) out[i] = static_cast<int>(i);
      return;
    }
    std::unique_ptr<ItemGrid>& grid = tracks ? items.trackGrid : items.padGrid;
    if (!grid) {
      std::vector<ItemBox> boxes;
      boxes.reserve(n);
      if (tracks) {
        for (const TTrack* t : items.tracks) boxes.push_back(TrackBox(*t));
      } else {
        for (const TPad* p : items.pads) boxes.push_back({p->x, p->y, p->x, p->y});
      }
      grid = std::make_unique<ItemGrid>(boxes);
    }
    grid->Query(box, out);
  }

  void Load(Frame& f) {
    f.loaded = true;
    f.next = 0;
    if (f.kind == Frame::kPad) {
      const ItemBox at{f.pad->x, f.pad->y, f.pad->x, f.pad->y};
      Candidates(f.phase, true, Widen(at, W(f.reach) + Items(f.phase).maxHalfWidth), f.candidates);
    } else if (f.phase < kTrackPhase) {
      Candidates(f.phase, false, Widen(TrackBox(*f.track), W(f.reach) + Items(f.phase).maxPadSize),
                 f.candidates);
    } else {
      const float other =
          f.kind == Frame::kTrack && !f.throughPads ? f.reach : Items(f.layer).maxHalfWidth;
      Candidates(f.layer, true, Widen(TrackBox(*f.track), W(f.reach) + other), f.candidates);
    }
  }

  // The next phase of a frame; false when its scan is over.
  static bool NextPhase(Frame& f) {
    f.loaded = false;
    f.candidates.clear();
    if (f.kind == Frame::kPad) return ++f.phase < kCircuitLayers;
    return ++f.phase <= kTrackPhase;
  }

  // Tests the candidate at position i of the frame's phase; a frame to push when it touches.
  bool Test(const Frame& f, int i, Frame& child) {
    if (f.kind == Frame::kPad) {
      LayerItems& items = Items(f.phase);
      TTrack* t = items.tracks[i];
      if (TestFlags(*t, kVisited)) return false;
      if (!PadReachesTrack(*f.pad, f.reach, *t, items.halfWidth[i])) return false;
      child = TrackFrame(f.phase, true, t);
      return true;
    }
    if (f.phase < kTrackPhase) {
      LayerItems& items = Items(f.phase);
      TPad* p = items.pads[i];
      if (TestFlags(*p, kVisited)) return false;
      if (!TrackReachesPad(*f.track, f.reach, *p, items.padSize[i])) return false;
      child = PadFrame(f.phase, p);
      return true;
    }
    LayerItems& items = Items(f.layer);
    TTrack* u = items.tracks[i];
    if (TestFlags(*u, kVisited)) return false;
    if (f.kind == Frame::kCopperTrack) {
      if (TestFlags(*u, kTrackDisabled)) return false;
      if (!TracksMeet(*f.track, f.reach, *u, items.halfWidth[i])) return false;
      child = CopperFrame(f.layer, u);
      return true;
    }
    const float h2 = f.throughPads ? items.halfWidth[i] : f.reach;
    if (!TracksMeet(*f.track, f.reach, *u, h2)) return false;
    child = TrackFrame(f.layer, f.throughPads, u);
    return true;
  }

  void Run() {
    Frame child;
    while (!stack_.empty()) {
      Frame& f = stack_.back();
      if (!f.loaded) Load(f);
      if (f.next >= f.candidates.size()) {
        if (!NextPhase(f)) stack_.pop_back();
        continue;
      }
      const int i = f.candidates[f.next++];
      if (Test(f, i, child)) Push(std::move(child));
    }
  }

  Board& board_;
  NetSearch search_;
  LayerItems layers_[kCircuitLayers];
  std::vector<Frame> stack_;
  std::vector<int> scratch_;
};

}  // namespace

float TrackHalfWidth(const Board& board, int layer, const TTrack& track) {
  return F(W(board.TrackWidth[layer][track.code % kApertures]) * 0.5);
}

float PadTraceSize(const Board& board, int layer, const TPad& pad) {
  const int code = pad.code % kApertures;
  return F(W(MinF(board.PadSizeX[layer][code], board.PadSizeY[layer][code])) * 0.5);
}

bool PadReachesTrack(const TPad& pad, float padSize, const TTrack& track, float halfWidth) {
  const float r = F(W(halfWidth) + padSize);
  if (Distance(pad.x, pad.y, track.x1, track.y1) <= r) return true;
  if (Distance(pad.x, pad.y, track.x2, track.y2) < r) return true;
  return PointSegmentDistance(pad.x, pad.y, track.x1, track.y1, track.x2, track.y2) <= r;
}

bool TrackReachesPad(const TTrack& track, float halfWidth, const TPad& pad, float padSize) {
  const float r = F(W(padSize) + halfWidth);
  if (Distance(track.x1, track.y1, pad.x, pad.y) <= r) return true;
  if (Distance(track.x2, track.y2, pad.x, pad.y) <= r) return true;
  return PointSegmentDistance(pad.x, pad.y, track.x1, track.y1, track.x2, track.y2) <= r;
}

bool TracksMeet(const TTrack& t, float h, const TTrack& u, float h2) {
  const float s = F(W(h) + h2);
  if (Distance(t.x1, t.y1, u.x1, u.y1) <= s || Distance(t.x1, t.y1, u.x2, u.y2) <= s ||
      Distance(t.x2, t.y2, u.x1, u.y1) <= s || Distance(t.x2, t.y2, u.x2, u.y2) <= s) {
    return true;
  }
  float x = 0, y = 0;
  if (IntersectSegments(t.x1, t.y1, t.x2, t.y2, u.x1, u.y1, u.x2, u.y2, x, y, MinF(h, h2)) !=
      kOnBoth) {
    return false;
  }
  return PointSegmentDistance(x, y, u.x1, u.y1, u.x2, u.y2) <= h2;
}

void ClearTrackMarks(Board& board, int layer) {
  if (!IsCircuitLayer(layer)) return;
  for (TTrack* t = board.Tracks[layer]; t; t = t->next) ClearFlags(*t, kVisited);
}

void ClearPadMarks(Board& board, int layer) {
  if (!IsCircuitLayer(layer)) return;
  for (TPad* p = board.Pads[layer]; p; p = p->next) ClearFlags(*p, kVisited);
}

void ClearNetMarks(Board& board) {
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    ClearTrackMarks(board, layer);
    ClearPadMarks(board, layer);
  }
}

void TracePad(Board& board, int layer, TPad* pad, NetSearch search) {
  NetWalk(board, search).FromPad(layer, pad);
}

void TraceTrack(Board& board, int layer, bool throughPads, TTrack* track, NetSearch search) {
  NetWalk(board, search).FromTrack(layer, throughPads, track);
}

void TraceCopperTrack(Board& board, int layer, TTrack* track, NetSearch search) {
  NetWalk(board, search).FromCopperTrack(layer, track);
}

void TraceTracksFedByPads(Board& board, int layer, NetSearch search) {
  if (!IsCircuitLayer(layer)) return;
  NetWalk walk(board, search);
  LayerItems& items = walk.Items(layer);
  for (size_t i = 0; i < items.tracks.size(); ++i) {
    TTrack* t = items.tracks[i];
    if (TestFlags(*t, kVisited)) continue;
    if (walk.FeedingPad(layer, *t, items.halfWidth[i])) walk.FromCopperTrack(layer, t);
  }
}

}  // namespace isolith
