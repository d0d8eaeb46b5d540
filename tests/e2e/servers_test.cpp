// Real servers of real project folders, as the report names them.

#include <filesystem>
#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::ContainsRegex;
using testing::Not;

class ServersTest : public ProgramTest {
 protected:
  // A project folder outside the scratch home, whose name has no dot in it.
  std::string project(const std::string& name) const {
    const std::string path = folder_.path() + "/" + name;
    std::filesystem::create_directories(path);
    return path;
  }
  // Python's own server, started in the folder; port 0 takes a free one.
  static std::vector<std::string> server(const std::string& folder, const std::string& address) {
    return {"/usr/bin/env", "-C", folder, "python3", "-m", "http.server", "--bind", address, "0"};
  }
  // The report of a run by which both servers have come up, or of the last try.
  std::string reportOnceListed(const std::string& one, const std::string& other) const {
    std::string report;
    for (int tries = 0; tries < 10; ++tries) {
      report = embrix({"--dump"}).output;
      if (report.find(" · " + one + " · ports [") != std::string::npos &&
          report.find(" · " + other + " · ports [") != std::string::npos) {
        break;
      }
    }
    return report;
  }
};

TEST_F(ServersTest, EachIsListedByItsProjectAndOnlyTheExposedOneAsOnTheNetwork) {
  const ChildProcess shy(server(project("lemonade"), "127.0.0.1"));
  const ChildProcess open(server(project("recipes"), "0.0.0.0"));
  const std::string report = reportOnceListed("lemonade", "recipes");
  EXPECT_TRUE(std::regex_search(
      report, std::regex("server: python http\\.server · lemonade · ports \\[[0-9]+\\] · pid " +
                         std::to_string(shy.pid()) + "\n")))
      << report;
  EXPECT_TRUE(std::regex_search(
      report, std::regex("server: python http\\.server · recipes · ports \\[([0-9]+)\\] · on "
                         "network \\[\\1\\] · pid " +
                         std::to_string(open.pid()) + "\n")))
      << report;
  EXPECT_EQ(report.find("forgotten: python http.server"), std::string::npos)
      << "neither is an hour old";
}

}  // namespace
}  // namespace embrix
