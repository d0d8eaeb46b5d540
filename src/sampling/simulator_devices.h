// What the files of the simulator know about its devices, and how one is shut down.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/command_runner.h"
#include "running/simulator_finder.h"

namespace embrix {

struct SimulatorDevices {
  // The bytes of a file; absent when it cannot be read.
  using FileReader = std::function<std::optional<std::string>(const std::string& path)>;

  // From the device's file below `home`, which has no slash at its end; text and binary property
  // lists alike. Absent when the file cannot be read or names no device. Any thread.
  static std::optional<SimulatorFinder::Device> device(const std::string& udid,
                                                       const std::string& home,
                                                       const FileReader& readFile);

  // Asks the simulator to shut the device down and does not wait. Nothing is told of a failure: the
  // next scan shows whether the device went away. On whichever thread the runner may start from.
  static void shutDown(const std::string& udid, CommandRunner& commands);
};

}  // namespace embrix
