// Arguments, working directories and listening ports of Linux processes.
//
// Ports are asked of the kernel for all processes at once; whose they are stands only in the
// descriptors of each process. Those are walked for processes that a scan asks about, when they are
// new, or when a listener stands in the answer that is new and they have run since: what has not
// run has opened nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/hash_map.h"
#include "host/process_details_source.h"
#include "hosts/linux/proc_files.h"
#include "hosts/linux/socket_diagnosis.h"

namespace embrix {

class LinuxProcessDetailsSource final : public ProcessDetailsSource {
 public:
  // Answers with all listening sockets, or absent to have the tables below the proc root read.
  using Diagnosis = std::function<std::optional<std::vector<ListeningSocket>>()>;
  // How long the threads of a process have run, in nanoseconds; absent when nobody can tell.
  using RunTime = std::function<std::optional<std::uint64_t>(std::int32_t pid)>;

  explicit LinuxProcessDetailsSource(const std::string& procRoot = "/proc");
  LinuxProcessDetailsSource(const std::string& procRoot, Diagnosis diagnosis, RunTime runTime);

  void beginScan() override;
  std::vector<std::string> arguments(std::int32_t pid) override;
  std::optional<std::string> directory(std::int32_t pid) override;
  std::vector<ListeningPort> listening(std::int32_t pid) override;

 private:
  struct Walk {
    std::uint64_t scan = 0;              // when its descriptors were last walked
    std::uint64_t asked = 0;             // when it was last asked about
    std::uint64_t startTicks = 0;        // of the process that was walked
    std::optional<std::uint64_t> ranNS;  // how long it had run when the walk began
    std::vector<std::uint64_t> inodes;   // of all its sockets
  };

  std::vector<ListeningSocket> readListeners();
  bool walkIfStale(std::int32_t pid, Walk& walk);
  std::optional<std::uint64_t> startTicks(std::int32_t pid);

  ProcFiles files_;
  Diagnosis diagnosis_;
  RunTime runTime_;
  std::uint64_t scan_ = 0;
  std::uint64_t newestListener_ = 0;                   // the scan in which a listener was last new
  HashMap<std::uint64_t, ListeningSocket> listeners_;  // by inode
  HashMap<std::int32_t, Walk> walks_;
};

}  // namespace embrix
