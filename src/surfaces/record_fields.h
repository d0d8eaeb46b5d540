// The fields of a content record, named once, so that whoever shows it can read them by name. A
// record has a static function fields() that returns a tuple of these. Plain values; any thread.
#pragma once

#include <tuple>

namespace embrix {

template <typename Record, typename Value>
struct Field {
  const char* name;
  Value Record::*member;
};

template <typename Record, typename Value>
constexpr Field<Record, Value> field(const char* name, Value Record::*member) {
  return {name, member};
}

}  // namespace embrix
