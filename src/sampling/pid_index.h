// Where each pid stands in a process table. Belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/hash_map.h"
#include "frame/process_sample.h"

namespace embrix {

class PIDIndex {
 public:
  // Learns the places of a table. Nothing is hashed when it has the pids of the table before in
  // the same order, which is the usual case.
  void rebuild(const std::vector<ProcessSample>& samples);

  // Place of the pid in that table, of its first row should it stand there twice; absent when it
  // does not.
  std::optional<std::size_t> find(std::int32_t pid) const {
    const auto entry = places_.find(pid);
    if (entry == places_.end()) return std::nullopt;
    return entry->second;
  }

  // Whether a pid stands there twice.
  bool hasRepeats() const { return places_.size() != pids_.size(); }

 private:
  std::vector<std::int32_t> pids_;
  HashMap<std::int32_t, std::uint32_t> places_;
};

}  // namespace embrix
