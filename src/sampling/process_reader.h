// The raw process table of a tick as samples: names and paths are looked up once in a process's
// life. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/hash_map.h"
#include "base/shared_text.h"
#include "frame/process_sample.h"
#include "host/process_source.h"

namespace embrix {

class ProcessReader {
 public:
  explicit ProcessReader(ProcessSource& source);

  // One sample for each process, in the order of the host's table; nothing is left out. The list is
  // the reader's own and valid until the next call.
  const std::vector<ProcessSample>& read();

  std::size_t cachedPaths() const { return pathCache_.size(); }

 private:
  // A pid alone is no identity: pids are given again.
  struct Identity {
    std::int32_t pid = 0;
    std::uint64_t startTime = 0;
    bool operator==(const Identity&) const = default;
  };
  struct IdentityHash {
    std::size_t operator()(const Identity& identity) const noexcept {
      return std::hash<std::uint64_t>{}(identity.startTime * 0x9e3779b97f4a7c15ULL +
                                        static_cast<std::uint32_t>(identity.pid));
    }
  };
  struct CachedPath {
    std::optional<SharedText> path;
    SharedText name;
    SharedText id;
    std::uint64_t pass = 0;  // the newest read() that saw the process
  };

  std::uint64_t nanoseconds(const RawUsage& usage) const;
  const CachedPath& cached(const RawProcess& process);
  CachedPath lookUp(const RawProcess& process);
  void prune();

  ProcessSource& source_;
  double ticksToNS_;
  std::uint64_t pass_ = 0;
  std::size_t seen_ = 0;  // processes of this pass
  std::vector<RawProcess> table_;
  std::vector<ProcessSample> samples_;
  tsl::robin_map<Identity, CachedPath, IdentityHash> pathCache_;
};

}  // namespace embrix
