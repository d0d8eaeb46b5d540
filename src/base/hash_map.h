// The hash tables of the hot path: flat, and their storage survives clear(), so that a table which
// is filled anew at every tick allocates only when it outgrows its largest size so far.
// Keys of text are looked up by SharedText or std::string_view alike.
#pragma once

#include <string>
#include <string_view>

#include <tsl/robin_map.h>
#include <tsl/robin_set.h>

#include "base/shared_text.h"

namespace embrix {

template <typename Key>
struct HashOf {
  std::size_t operator()(const Key& key) const noexcept { return std::hash<Key>{}(key); }
};

template <typename Key>
struct EqualOf {
  bool operator()(const Key& a, const Key& b) const noexcept { return a == b; }
};

template <>
struct HashOf<SharedText> {
  using is_transparent = void;
  std::size_t operator()(const SharedText& text) const noexcept { return text.hash(); }
  std::size_t operator()(std::string_view text) const noexcept { return SharedText::hashOf(text); }
};

template <>
struct EqualOf<SharedText> {
  using is_transparent = void;
  bool operator()(const SharedText& a, const SharedText& b) const noexcept { return a == b; }
  bool operator()(const SharedText& a, std::string_view b) const noexcept { return a.view() == b; }
  bool operator()(std::string_view a, const SharedText& b) const noexcept { return a == b.view(); }
};

template <typename Key, typename Value>
using HashMap = tsl::robin_map<Key, Value, HashOf<Key>, EqualOf<Key>>;

template <typename Key>
using HashSet = tsl::robin_set<Key, HashOf<Key>, EqualOf<Key>>;

}  // namespace embrix
