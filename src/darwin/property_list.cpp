#include "darwin/property_list.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "darwin/property_list_limits.h"

namespace embrix {

namespace {

struct FreeTree {
  void operator()(plist_t tree) const { plist_free(tree); }
};
using OwnedTree = std::unique_ptr<std::remove_pointer_t<plist_t>, FreeTree>;

// For what the library allocates and asks its caller to free().
struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
using OwnedText = std::unique_ptr<char, FreeMemory>;
static_assert(std::is_same_v<plist_array_iter, plist_dict_iter>);
using OwnedIterator = std::unique_ptr<std::remove_pointer_t<plist_dict_iter>, FreeMemory>;

Property propertyOf(plist_t node, int depth);

// Seconds from 1970 to 2001, where the dates of property lists begin.
constexpr std::int64_t kReferenceDate = 978307200;

// Newer versions of the library have a call for whole seconds since 1970 and warn about the older
// one, which is all that earlier versions have. A template, so that each compiles where it exists.
template <typename Node>
Property dateOf(Node node) {
  if constexpr (requires(std::int64_t seconds) { plist_get_unix_date_val(node, &seconds); }) {
    std::int64_t seconds = 0;
    plist_get_unix_date_val(node, &seconds);
    return PropertyDate{static_cast<double>(seconds)};
  } else {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    // What a date beyond 32 bits becomes in there.
    if (seconds == std::numeric_limits<std::int32_t>::min()) return {};
    return PropertyDate{static_cast<double>(kReferenceDate + seconds) + microseconds / 1e6};
  }
}

Property textOf(plist_t node) {
  std::uint64_t size = 0;
  const char* text = plist_get_string_ptr(node, &size);
  if (text == nullptr) return {};
  return std::string(text, size);
}

// By iterator: asking for the nth item walks the whole list each time.
Property listOf(plist_t node, int depth) {
  PropertyList list;
  plist_array_iter begun = nullptr;
  plist_array_new_iter(node, &begun);
  const OwnedIterator iterator(begun);
  for (;;) {
    plist_t value = nullptr;
    plist_array_next_item(node, iterator.get(), &value);
    if (value == nullptr) return list;
    list.push_back(propertyOf(value, depth + 1));
  }
}

Property mapOf(plist_t node, int depth) {
  PropertyMap map;
  plist_dict_iter begun = nullptr;
  plist_dict_new_iter(node, &begun);
  const OwnedIterator iterator(begun);
  for (;;) {
    char* allocatedKey = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(node, iterator.get(), &allocatedKey, &value);
    const OwnedText key(allocatedKey);
    if (value == nullptr) return map;
    if (key != nullptr) map.insert_or_assign(key.get(), propertyOf(value, depth + 1));
  }
}

Property propertyOf(plist_t node, int depth) {
  if (node == nullptr || depth > kPropertyListDepthLimit) return {};
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t truth = 0;
      plist_get_bool_val(node, &truth);
      return truth != 0;
    }
    case PLIST_UINT: {
      std::uint64_t number = 0;
      plist_get_uint_val(node, &number);
      return static_cast<std::int64_t>(number);
    }
    case PLIST_REAL: {
      double number = 0;
      plist_get_real_val(node, &number);
      return number;
    }
    case PLIST_STRING:
      return textOf(node);
    case PLIST_DATE:
      return dateOf(node);
    case PLIST_ARRAY:
      return listOf(node, depth);
    case PLIST_DICT:
      return mapOf(node, depth);
    default:
      return {};
  }
}

}  // namespace

std::optional<Property> decodePropertyList(std::string_view bytes) {
  // The library takes 32-bit sizes, and looks at its input's first bytes without asking for them.
  if (bytes.size() < 8 || bytes.size() > kPropertyListSizeLimit) return std::nullopt;
  const auto size = static_cast<std::uint32_t>(bytes.size());
  plist_t parsed = nullptr;
  if (bytes.starts_with("bplist00")) {
    if (!isTameBinaryPropertyList(bytes)) return std::nullopt;
    plist_from_bin(bytes.data(), size, &parsed);
  } else {
    if (!isTameXmlPropertyList(bytes)) return std::nullopt;
    plist_from_xml(bytes.data(), size, &parsed);
  }
  const OwnedTree tree(parsed);
  if (tree == nullptr) return std::nullopt;
  return propertyOf(tree.get(), 0);
}

}  // namespace embrix
