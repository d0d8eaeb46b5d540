// A small map from texts to values that never changes once it is made, and that all copies share:
// the watts of all groups at one moment, the apps of one day. A copy costs one atomic increment;
// sixteen bytes an entry for a double. Safe to copy and to read on any thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/shared_text.h"

namespace embrix {

template <typename Value>
class SharedMap {
 public:
  struct Entry {
    SharedText key;
    Value value;

    bool operator==(const Entry&) const = default;
  };

  SharedMap() = default;

  // In any order; of equal keys the last one stands.
  explicit SharedMap(std::vector<Entry> entries) {
    if (entries.empty()) return;
    if (!isStrictlyAscending(entries)) sort(entries);
    entries_ = std::make_shared<const std::vector<Entry>>(std::move(entries));
  }

  // Ascending by the bytes of the key.
  const Entry* begin() const noexcept { return entries_ == nullptr ? nullptr : entries_->data(); }
  const Entry* end() const noexcept { return begin() + size(); }
  std::size_t size() const noexcept { return entries_ == nullptr ? 0 : entries_->size(); }
  bool empty() const noexcept { return entries_ == nullptr; }

  // Null when the key is not there.
  const Value* find(std::string_view key) const noexcept {
    const Entry* const entry = std::lower_bound(
        begin(), end(), key,
        [](const Entry& each, std::string_view wanted) { return each.key.view() < wanted; });
    return entry != end() && entry->key == key ? &entry->value : nullptr;
  }

  friend bool operator==(const SharedMap& a, const SharedMap& b) {
    return a.entries_ == b.entries_ || std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  static bool isStrictlyAscending(const std::vector<Entry>& entries) {
    const auto isOutOfOrder = [](const Entry& a, const Entry& b) { return !(a.key < b.key); };
    return std::adjacent_find(entries.begin(), entries.end(), isOutOfOrder) == entries.end();
  }

  static void sort(std::vector<Entry>& entries) {
    // Backwards, so that the last of equal keys comes first and is the one that stays.
    std::reverse(entries.begin(), entries.end());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.key < b.key; });
    const auto isSameKey = [](const Entry& a, const Entry& b) { return a.key == b.key; };
    entries.erase(std::unique(entries.begin(), entries.end(), isSameKey), entries.end());
  }

  std::shared_ptr<const std::vector<Entry>> entries_;  // null when empty
};

}  // namespace embrix
