// The slow facts of a process: arguments and working directory, read once in its life, and its
// listening ports, read at every call. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/hash_map.h"
#include "frame/process_facts.h"
#include "frame/process_sample.h"
#include "host/process_details_source.h"

namespace embrix {

class ProcessDetailsReader {
 public:
  explicit ProcessDetailsReader(ProcessDetailsSource& source) : source_(source) {}

  // Told before the processes of one scan are asked about.
  void beginScan() { source_.beginScan(); }

  // `now` is in seconds since 1970.
  ProcessFacts facts(const ProcessSample& sample, const SharedText& id, double now);

  // The argument vector, the program first, bad UTF-8 repaired; empty when unreadable. Not cached.
  std::vector<std::string> arguments(std::int32_t pid);

  // Forgets every process whose id is not among these.
  void prune(const HashSet<SharedText>& keep);

  std::size_t cachedCount() const { return cache_.size(); }

 private:
  struct Cached {
    SharedTexts arguments;
    std::optional<SharedText> directory;
  };
  const Cached& cached(const SharedText& id, std::int32_t pid);

  ProcessDetailsSource& source_;
  HashMap<SharedText, Cached> cache_;
};

}  // namespace embrix
