// The points of a history on their way into a file. A point never changes, so its JSON is made once
// and kept, a block of points at a time, when a save first needs it; copies share the blocks. What
// that costs: the text stays in memory, as long as the file (some 1.5 kB for a point of 40 groups).
// What it saves: a save formats the newest points and writes the rest as it stands.
//
// Filled on the main thread; a copy may be turned into text on any other.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/made_once.h"
#include "records/history_point.h"

namespace embrix {

class HistorySnapshot {
 public:
  HistorySnapshot() = default;
  explicit HistorySnapshot(std::span<const HistoryPoint> points);

  // How many points it has.
  std::size_t size() const { return size_; }

  void append(const HistoryPoint& point);
  void removeFirst();  // of at least one

  // One JSON array of all points, in pieces.
  struct Text {
    std::vector<std::string_view> pieces;  // valid as long as this text and its snapshot

   private:
    friend class HistorySnapshot;
    std::unique_ptr<std::string> newest_;
  };
  Text text() const;

 private:
  class Block;

  std::vector<std::shared_ptr<const Block>> blocks_;
  std::vector<HistoryPoint> newest_;  // fewer than a block
  std::size_t skipped_ = 0;           // points at the front of the first block that are gone
  std::size_t size_ = 0;
};

}  // namespace embrix
