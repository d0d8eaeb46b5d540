#include "hosts/linux/tree_measure.h"

#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/linux/tree_walker.h"

namespace embrix {

namespace {

void goThroughShared(TreeMeasurement& measurement, TreeWalker& walker) {
  while (auto folder = measurement.folders.take()) walker.walk(std::move(*folder));
}

void addHelper(TreeMeasurement& measurement, std::vector<std::thread>& helpers) {
  measurement.folders.addThread();
  try {
    helpers.emplace_back([&measurement] {
      TreeWalker walker(measurement, nullptr);
      goThroughShared(measurement, walker);
    });
  } catch (const std::system_error&) {
    // No thread to be had: the others do the work.
    measurement.folders.removeThread();
  }
}

}  // namespace

std::optional<std::int64_t> measureTree(Descriptor folder, MeasureWatch& watch,
                                        const TreeMeasureOptions& options) {
  if (!folder.isOpen()) return 0;
  TreeMeasurement measurement{.watch = watch, .options = options, .volume = volumeOf(folder)};
  measurement.folders.addThread();
  std::vector<std::thread> helpers;
  TreeWalker walker(measurement, [&] {
    for (int i = 1; i < options.threads; ++i) addHelper(measurement, helpers);
  });
  walker.walk(std::move(folder));
  goThroughShared(measurement, walker);
  for (std::thread& helper : helpers) helper.join();
  if (watch.abandoned()) return std::nullopt;
  return measurement.bytes.load();
}

}  // namespace embrix
