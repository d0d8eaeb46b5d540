// One thread's way through a tree, adding up what its files take on the disk.
//
// A folder's entries are read in pieces of fixed size. The files of a piece are measured at once,
// in the order in which they lie on the disk; its folders are gone into before the next piece is
// read, unless another thread takes them. So what is kept at one time is one piece of names for
// each folder on the way down. Of these only the deepest are open; the way back up to a closed one
// leads through "..", and is taken only if that is the same folder still.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/descriptor.h"
#include "host/folder_source.h"
#include "hosts/linux/file_number.h"
#include "hosts/linux/many_named.h"
#include "hosts/linux/shared_folders.h"
#include "hosts/linux/tree_measure.h"

namespace embrix {

// What the threads of one measurement share.
struct TreeMeasurement {
  MeasureWatch& watch;
  TreeMeasureOptions options;
  std::uint64_t volume = 0;  // see volumeOf()
  ManyNamed manyNamed = {};
  SharedFolders folders = {};
  std::atomic<std::int64_t> bytes = 0;
};

// A number for the mount that an open folder is on; where the kernel does not number its mounts,
// for the device.
std::uint64_t volumeOf(const Descriptor& folder);

class TreeWalker {
 public:
  // `onManyFiles` is called once, when the walk has met more files than one thread is left alone
  // with.
  TreeWalker(TreeMeasurement& measurement, std::function<void()> onManyFiles);

  // Goes through the folder and everything below it, or less when the measurement was abandoned.
  void walk(Descriptor folder);

 private:
  struct Level {
    Descriptor folder;     // closed while too many deeper ones are open
    FileNumber number;     // of a closed one, to know it again
    off_t position = 0;    // where its next piece begins
    bool isRead = false;   // to the end
    std::string names;     // the folders of its newest piece, a NUL behind each
    std::size_t next = 0;  // where in `names` the next one to go into begins
  };
  struct Entry {
    std::uint64_t inode = 0;
    const char* name = nullptr;  // in piece_
  };

  void enter(Descriptor folder);
  void leave();
  void reopenParent(const Descriptor& child);
  void closeShallowest();
  void readPiece(Level& level);
  void sortPiece(std::size_t size, Level& level);
  void measureFiles(const Level& level);
  void goInto(const Level& level, const char* name);
  Descriptor open(const Descriptor& parent, const char* name);
  Descriptor openOnVolume(const Descriptor& parent, const char* name, int flags);

  TreeMeasurement& measurement_;
  std::function<void()> onManyFiles_;
  std::vector<char> piece_;
  std::vector<Level> levels_;  // the first depth_ are in use; the others keep their storage
  std::size_t depth_ = 0;
  std::size_t firstOpen_ = 0;   // levels before this one are closed
  std::vector<Entry> files_;    // of the newest piece; of folders, those whose kind is unknown too
  std::vector<Entry> folders_;  // of the newest piece
  std::vector<ManyNamed::File> manyNamed_;  // of the newest piece
  std::uint64_t filesSeen_ = 0;
  bool kernelKeepsToVolume_ = true;
};

}  // namespace embrix
