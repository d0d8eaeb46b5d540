// The built program, run in a world of its own: its home and settings are scratch folders.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "child_process.h"
#include "fakes/scratch_folder.h"

namespace embrix {

class ProgramTest : public testing::Test {
 protected:
  Outcome embrix(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), EMBRIX_PROGRAM);
    return outcomeOf(arguments,
                     {"XDG_CONFIG_HOME=" + configFolder_.path(), "HOME=" + homeFolder_.path()});
  }

  // It runs until the test has it end.
  RunningProgram running(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), EMBRIX_PROGRAM);
    return RunningProgram(arguments, world());
  }

  // Where the program looks for what is the user's, and for the buses, of which there are none.
  std::vector<std::string> world() const {
    return {"XDG_CONFIG_HOME=" + configFolder_.path(), "XDG_DATA_HOME=" + dataFolder_.path(),
            "HOME=" + homeFolder_.path(),
            "DBUS_SESSION_BUS_ADDRESS=unix:path=" + homeFolder_.path() + "/no-bus",
            "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + homeFolder_.path() + "/no-bus"};
  }

  std::vector<std::string> worldWith(std::vector<std::string> more) const {
    std::vector<std::string> all = world();
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  ScratchFolder folder_;
  ScratchFolder dataFolder_;
  ScratchFolder homeFolder_;
  ScratchFolder configFolder_;
};

}  // namespace embrix
