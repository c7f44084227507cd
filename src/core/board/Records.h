// The records of the board model: small, singly linked, owned by the list that links them.
// Insertion order is file order and every walk follows it.
#pragma once

#include <cstdint>

namespace isolith {

// A vertex of a path.
struct TXY {
  float x = 0, y = 0;
  uint8_t flags = 0;  // card-contour path and cutting tabs only: 0x01 tab, 0x80 working mark
  TXY* next = nullptr;
};

// One path: a contour, a hatch line or part of a card contour. Closed only when its last vertex
// repeats its first.
struct TPolygon {
  uint8_t flags = 0;  // 0x01 working mark of the contour calculator, 0x80 done (output walks)
  TXY* first = nullptr;
  TPolygon* next = nullptr;

  TPolygon() = default;
  TPolygon(const TPolygon&) = delete;
  TPolygon& operator=(const TPolygon&) = delete;
  ~TPolygon();
};

// A flash on a circuit layer.
struct TPad {
  uint8_t code = 0;   // aperture index 0..99 into the pad tables of the owning layer
  uint8_t flags = 0;  // 0x01 disabled, 0x02 (tested with 0x01), 0x08 thermal, 0x80 visited
  float x = 0, y = 0;
  TPad* next = nullptr;
};

// A straight draw on a circuit layer.
struct TTrack {
  uint8_t code = 0;   // aperture index 0..99 into the track width table of the owning layer
  uint8_t flags = 0;  // 0x01 disabled, 0x02 copper plane, 0x04 engraved at centre, 0x80 visited
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  TTrack* next = nullptr;
};

// A hole of the drill layer.
struct TDrill {
  uint8_t code = 0;   // index 0..99 into the drill diameter table
  uint8_t flags = 0;  // 0x01 disabled (still drilled), 0x80 done (output and ordering walks)
  float x = 0, y = 0;
  TDrill* next = nullptr;
};

// One card outline of the cutout layer, with the tool paths calculated from it.
struct TCutout {
  uint8_t side = 0;             // side of the cutting tool, 0 or 1
  TPolygon* outline = nullptr;  // the user's card contour
  TPolygon* paths = nullptr;    // tool paths from the outline (tabs leave it in pieces)
  TCutout* next = nullptr;

  TCutout() = default;
  TCutout(const TCutout&) = delete;
  TCutout& operator=(const TCutout&) = delete;
  ~TCutout();
};

// A working segment of the calculators; never kept in the model between commands.
struct TSeg {
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  TSeg* next = nullptr;
};

// Flag bits by meaning.
inline constexpr uint8_t kPadDisabled = 0x01;
inline constexpr uint8_t kPadExcluded = 0x02;
inline constexpr uint8_t kPadThermal = 0x08;
inline constexpr uint8_t kTrackDisabled = 0x01;
inline constexpr uint8_t kTrackCopperPlane = 0x02;
inline constexpr uint8_t kTrackEngraved = 0x04;
inline constexpr uint8_t kDrillDisabled = 0x01;
inline constexpr uint8_t kVisited = 0x80;  // working mark of net walks and output walks
inline constexpr uint8_t kPolygonMark = 0x01;

// The three flag operations every record with flags has.
template <typename R>
inline void SetFlags(R& r, uint8_t bits) {
  r.flags = static_cast<uint8_t>(r.flags | bits);
}
template <typename R>
inline void ClearFlags(R& r, uint8_t bits) {
  r.flags = static_cast<uint8_t>(r.flags & ~bits);
}
template <typename R>
inline bool TestFlags(const R& r, uint8_t bits) {
  return (r.flags & bits) != 0;
}

// Frees a whole chain of records linked by `next`.
template <typename R>
void FreeChain(R* head) {
  while (head) {
    R* next = head->next;
    delete head;
    head = next;
  }
}

// The tail of a list, null for an empty list.
template <typename R>
R* LastOf(R* head) {
  if (!head) return nullptr;
  while (head->next) head = head->next;
  return head;
}

// Number of records in a list.
template <typename R>
int CountOf(const R* head) {
  int n = 0;
  for (; head; head = head->next) ++n;
  return n;
}

// Appends at the tail, keeping file order; `tail` may be null when not tracked.
template <typename R>
void AppendTo(R*& head, R*& tail, R* record) {
  if (!head) {
    head = record;
  } else {
    if (!tail) tail = LastOf(head);
    tail->next = record;
  }
  tail = record;
}

}  // namespace isolith
