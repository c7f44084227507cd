// The working list of the calculators: a loose bag of segments, each with its own direction,
// singly linked so that a piece can be put in directly behind its parent.
#pragma once

#include "core/board/Records.h"

namespace isolith {

// Appends segments at the tail of a list.
class SegmentBuilder {
 public:
  SegmentBuilder() = default;
  SegmentBuilder(const SegmentBuilder&) = delete;
  SegmentBuilder& operator=(const SegmentBuilder&) = delete;
  ~SegmentBuilder() { FreeChain(head_); }

  void Add(float x1, float y1, float x2, float y2) {
    AppendTo(head_, tail_, new TSeg{x1, y1, x2, y2, nullptr});
  }
  // Appends a whole list, which the builder then owns.
  void Take(TSeg* list) {
    if (!list) return;
    AppendTo(head_, tail_, list);
    tail_ = LastOf(list);
  }
  // Hands the list over to the caller.
  TSeg* Release() {
    TSeg* h = head_;
    head_ = tail_ = nullptr;
    return h;
  }

 private:
  TSeg* head_ = nullptr;
  TSeg* tail_ = nullptr;
};

// Inserts a new segment directly behind `parent` and returns it.
inline TSeg* InsertBehind(TSeg* parent, float x1, float y1, float x2, float y2) {
  TSeg* s = new TSeg{x1, y1, x2, y2, parent->next};
  parent->next = s;
  return s;
}

}  // namespace isolith
