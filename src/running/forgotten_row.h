#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "frame/forgotten_item.h"
#include "frame/process_row.h"

namespace embrix {

// A thing that was left running, with what it costs at present.
struct ForgottenRow {
  ForgottenItem item;
  std::vector<ProcessRow> processes;  // the present rows of the item's members
  double watts = 0;                   // sum over processes
  std::optional<double> minutes;      // battery time that a stop would win back

  const SharedText& id() const { return item.root.id; }

  // Of all its processes together. Footprints come from outside and may be anything: a sum that
  // does not fit stays the largest.
  std::uint64_t memoryBytes() const;
  static std::uint64_t memoryBytes(std::span<const ForgottenRow> rows);

  bool operator==(const ForgottenRow&) const = default;
};

}  // namespace embrix
