// Booted simulators that were left running, each as one row under its device's name. A simulator is
// found by its root process; what runs in it looks like anything but a simulator. Rules over plain
// facts; what a device is called is asked of a function, so that nothing here reads a file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "frame/forgotten_item.h"
#include "frame/process_facts.h"

namespace embrix {

struct SimulatorFinder {
  struct Device {
    std::string name;                    // "iPhone 15 Pro"
    std::optional<std::string> runtime;  // "com.apple.CoreSimulator.SimRuntime.iOS-17-4"

    bool operator==(const Device&) const = default;
  };

  // What a device's file tells, by udid; absent when it cannot be read.
  using DeviceReader = std::function<std::optional<Device>(const std::string& udid)>;

  // Processes by their parent's pid, each list in the order of the facts.
  using ChildrenByParent = HashMap<std::int32_t, std::vector<const ProcessFacts*>>;

  static constexpr std::string_view kRootName = "launchd_sim";
  static constexpr double kLeastUptime = 3600;  // seconds; a younger simulator is not forgotten

  // Rows by descending uptime; those of equal uptime in the order of `facts`, which are all
  // processes of the user: no process stands in two rows.
  static std::vector<ForgottenItem> find(const std::vector<ProcessFacts>& facts,
                                         std::uint32_t currentUser, const DeviceReader& device);

  // The device's identifier as the arguments of its root process write it; absent when none does.
  static std::optional<std::string> udid(const std::vector<std::string>& arguments);

  // "iOS 17.4" of "com.apple.CoreSimulator.SimRuntime.iOS-17-4"; absent when it has no version.
  static std::optional<std::string> runtimeName(std::string_view identifier);

  // Every process below `pid`, each once and never `pid` itself, in the order of the walk: the last
  // child first, and what is below it before the child ahead of it.
  static std::vector<const ProcessFacts*> descendants(std::int32_t pid,
                                                      const ChildrenByParent& childrenByParent);
};

}  // namespace embrix
