#include "records/history_snapshot.h"

#include <utility>

#include "records/record_encoding.h"

namespace embrix {

namespace {

// So many points are formatted anew at every save, at most, and so many that are gone stay in
// memory.
constexpr std::size_t kBlock = 32;

std::string joined(std::span<const HistoryPoint> points) {
  std::string text;
  for (const HistoryPoint& point : points) {
    if (!text.empty()) text += ',';
    appendJson(text, point);
  }
  return text;
}

}  // namespace

class HistorySnapshot::Block {
 public:
  explicit Block(std::vector<HistoryPoint> points) : points_(std::move(points)) {}

  // The points from that one on, with commas between them.
  std::string_view textFrom(std::size_t first) const {
    const Text& text = text_.get([this] { return made(); });
    return std::string_view(text.bytes).substr(text.starts[first]);
  }

 private:
  struct Text {
    std::string bytes;
    std::vector<std::size_t> starts;  // of each point
  };

  Text made() const {
    Text text;
    for (const HistoryPoint& point : points_) {
      if (!text.bytes.empty()) text.bytes += ',';
      text.starts.push_back(text.bytes.size());
      appendJson(text.bytes, point);
    }
    text.bytes.shrink_to_fit();
    points_ = {};
    return text;
  }

  mutable std::vector<HistoryPoint> points_;  // until the text is made
  MadeOnce<Text> text_;
};

HistorySnapshot::HistorySnapshot(std::span<const HistoryPoint> points) {
  for (const HistoryPoint& point : points) append(point);
}

void HistorySnapshot::append(const HistoryPoint& point) {
  newest_.push_back(point);
  ++size_;
  if (newest_.size() == kBlock) {
    blocks_.push_back(std::make_shared<const Block>(std::exchange(newest_, {})));
  }
}

void HistorySnapshot::removeFirst() {
  --size_;
  if (blocks_.empty()) {
    newest_.erase(newest_.begin());
  } else if (++skipped_ == kBlock) {
    blocks_.erase(blocks_.begin());
    skipped_ = 0;
  }
}

HistorySnapshot::Text HistorySnapshot::text() const {
  Text text;
  text.newest_ = std::make_unique<std::string>(joined(newest_));
  text.pieces.reserve(2 * blocks_.size() + 3);
  text.pieces.emplace_back("[");
  std::size_t first = skipped_;
  for (const auto& block : blocks_) {
    if (text.pieces.size() > 1) text.pieces.emplace_back(",");
    text.pieces.push_back(block->textFrom(std::exchange(first, 0)));
  }
  if (!newest_.empty() && !blocks_.empty()) text.pieces.emplace_back(",");
  text.pieces.emplace_back(*text.newest_);
  text.pieces.emplace_back("]");
  return text;
}

}  // namespace embrix
