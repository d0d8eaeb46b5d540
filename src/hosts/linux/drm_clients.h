// Which processes hold handles on a graphics processor, and what they have used of it.
//
// Finding them means looking at every open file of every process, far too much for a tick. So the
// first call looks at all processes, each later one at a sixteenth of them in turn, and the handles
// found are remembered and read directly: at a call every two seconds a new user of the processor
// is found within a minute, for the processes are listed once a round. Processes of other users
// cannot be looked into. Sampling thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/gpu_source.h"
#include "hosts/linux/drm_fdinfo.h"
#include "hosts/linux/system_file.h"

namespace embrix {

class DrmClients {
 public:
  explicit DrmClients(const std::string& root);

  // A record for each client, by ascending pid. A client that several processes hold is the one's
  // with the highest pid: a handle is opened by a login service or a display server, and handed to
  // whoever draws through it.
  std::vector<GpuClient> read();

 private:
  struct Handle {
    std::int32_t pid = 0;
    std::string client;   // DrmClientUsage::id
    std::string creator;  // "pid 123, name"
    HeldFile fdinfo;
  };
  struct Reading {
    std::size_t handle = 0;  // place in handles_
    std::vector<std::optional<std::uint64_t>> engines;
  };

  void lookAtSome();
  void lookAt(std::int32_t pid);
  std::optional<DrmClientUsage> read(Handle& handle);

  std::string proc_;
  std::vector<Handle> handles_;     // by pid, then client; one for each client of a process
  std::vector<std::int32_t> pids_;  // all processes at the start of this round
  std::size_t nextPID_ = 0;         // place in pids_
  bool hasLookedAtAll_ = false;
  std::vector<char> buffer_;
};

}  // namespace embrix
