#include "host/program_environment.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

std::vector<std::string> programEnvironmentOf(std::vector<std::string> variables) {
  std::vector<char*> given;
  for (std::string& variable : variables) given.push_back(variable.data());
  given.push_back(nullptr);
  const std::vector<char*> kept = programEnvironment(given.data());
  EXPECT_EQ(kept.back(), nullptr);
  return {kept.begin(), kept.end() - 1};
}

TEST(ProgramEnvironmentTest, TellsOfNoTerminalsSize) {
  EXPECT_EQ(programEnvironmentOf({"PATH=/bin", "COLUMNS=80", "LINES=24", "HOME=/h"}),
            (std::vector<std::string>{"PATH=/bin", "HOME=/h"}));
}

TEST(ProgramEnvironmentTest, KeepsWhatOnlySoundsLikeIt) {
  const std::vector<std::string> variables = {"COLUMNS_OF_MINE=1", "XCOLUMNS=80", "LINES",
                                              "=C:", ""};
  EXPECT_EQ(programEnvironmentOf(variables), variables);
  EXPECT_EQ(programEnvironmentOf({}), std::vector<std::string>());
}

}  // namespace
}  // namespace embrix
