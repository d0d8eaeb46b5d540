// An app or tool with the processes that work for it.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/group_identity.h"
#include "frame/process_row.h"

namespace embrix {

// The same-named processes of a group as one line.
struct ProcessBundle {
  SharedText name;
  int count = 0;
  double watts = 0;
  double cpuPercent = 0;
  ProcessRow heaviest;  // the one with the largest watts

  bool operator==(const ProcessBundle&) const = default;
};

struct AppGroup {
  GroupIdentity identity;
  double watts = 0;             // sum over processes
  double cpuPercent = 0;        // sum over processes; 100 is one core
  double wakeupsPerSecond = 0;  // sum over processes
  // Largest watts first; equal rows keep the order of the process table.
  std::vector<ProcessRow> processes;

  const SharedText& id() const { return identity.key; }

  // Largest watts first; equal bundles in the order in which their names first appear.
  std::vector<ProcessBundle> bundles() const;

  bool operator==(const AppGroup&) const = default;
};

}  // namespace embrix
