// What a cleanup does to learn the size of one item, by itself: prints the bytes and the number of
// files below a folder. bench/disk_usage runs it beside other programs that can do so.
#include <cstdio>
#include <filesystem>

#include "hosts/linux/folder_source.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: measure_tree FOLDER\n");
    return 2;
  }
  embrix::LinuxFolderSource folders({});
  embrix::MeasureWatch watch;
  const auto bytes = folders.measure(std::filesystem::canonical(argv[1]).string(), watch);
  std::printf("%lld bytes in %llu files\n", static_cast<long long>(bytes.value_or(0)),
              static_cast<unsigned long long>(watch.files()));
  return 0;
}
