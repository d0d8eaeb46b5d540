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

  ScratchFolder folder_;
  ScratchFolder homeFolder_;
  ScratchFolder configFolder_;
};

}  // namespace embrix
