// The room that the files of a tree take on the disk.
//
// Made for trees of any size: folders are read in pieces and gone into one by one, so memory grows
// with the depth of the tree, not with the number of files, and a bounded number of folders is open
// at once. Only files with several names are remembered, a few bytes each. Several threads share a
// large tree; a small one is measured on the calling thread alone. Follows no link, leaves the
// volume nowhere, and changes nothing, not even a date of last access where that can be avoided.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/descriptor.h"
#include "host/folder_source.h"

namespace embrix {

struct TreeMeasureOptions {
  // Most of the time of a first look is spent waiting for the disk, which serves several at once:
  // more threads than processors pay there, and cost nothing where the disk is not asked.
  int threads = 8;
  std::size_t openFolders = 16;  // at most, for each thread; at least 2
  // A tree of no more files than this is measured before a second thread has even begun.
  std::uint64_t filesAlone = 1000;
  // Whether the kernel is asked to stay on the volume. Where it does not know how (before
  // Linux 5.6, or in a sandbox), every folder's volume is looked at, as it is when this is false.
  bool kernelKeepsToVolume = true;
};

// `folder` is open for reading its entries. Absent when the watch was abandoned.
std::optional<std::int64_t> measureTree(Descriptor folder, MeasureWatch& watch,
                                        const TreeMeasureOptions& options = {});

}  // namespace embrix
