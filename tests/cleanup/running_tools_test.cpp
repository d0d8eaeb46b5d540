#include "cleanup/running_tools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "fakes/captures.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Row {
  std::string_view line;
  RunningTools expected;
};

void expectEach(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(RunningTools::from({row.line}), row.expected) << row.line;
  }
}

TEST(RunningToolsTest, NpmCountsOnlyWhileItInstalls) {
  expectEach({
      {"npm run dev", {}},
      {"npm ci", {.installers = {"npm"}}},
      {"npm i lodash", {.installers = {"npm"}}},
      {"npm", {}},
      {"/usr/local/bin/npm outdated", {.installers = {"npm"}}},
      {"npm exec chrome-devtools-mcp@latest", {}},
      {"npm  install", {.installers = {"npm"}}},
      {"npm Install", {}},
      {"npm run reinstall", {}},
  });
}

TEST(RunningToolsTest, EveryInstallingWordIsKnownExactly) {
  for (const std::string_view word :
       {"install", "i", "ci", "add", "update", "up", "upgrade", "fetch", "dlx", "outdated"}) {
    EXPECT_TRUE(RunningTools::installing("pnpm " + std::string(word) + " x")) << word;
    EXPECT_FALSE(RunningTools::installing("pnpm " + std::string(word) + "x")) << word;
  }
  EXPECT_FALSE(RunningTools::installing(""));
  EXPECT_FALSE(RunningTools::installing("   "));
  EXPECT_TRUE(RunningTools::installing(" i "));
}

TEST(RunningToolsTest, PackageManagersOfNodeAreToldByTheirScript) {
  expectEach({
      {"/opt/homebrew/bin/node /opt/homebrew/bin/npm install", {.installers = {"npm"}}},
      {"node server.js", {}},
      {"node /x/node_modules/.bin/pnpm add y", {.installers = {"pnpm"}}},
      {"node /x/npm-cli.js ci", {.installers = {"npm"}}},
      {"node /x/yarn/bin/yarn.js install", {.installers = {"yarn"}}},
      {"node /opt/homebrew/bin/npm run dev", {}},
      {"node tool.js install", {}},
      {"/x/install/node server.js", {}},
      {"yarn add left-pad", {.installers = {"yarn"}}},
      {"yarn dev", {}},
      {"pnpm dlx create-app", {.installers = {"pnpm"}}},
  });
}

TEST(RunningToolsTest, BrewPipAndPodCountWhateverTheyDo) {
  expectEach({
      {"brew list", {.installers = {"brew"}}},
      {"/opt/homebrew/bin/brew", {.installers = {"brew"}}},
      {"pip freeze", {.installers = {"pip"}}},
      {"/usr/bin/pip3 --version", {.installers = {"pip"}}},
      {"pip3.12 install x", {}},
      {"pod --help", {.installers = {"pod"}}},
      {"/usr/bin/swift-build", {.installers = {"swift"}}},
      {"swift-package resolve", {.installers = {"swift"}}},
      {"swift build", {}},
  });
}

TEST(RunningToolsTest, XcodeIsKnownByItsPathUpToTheFirstBlank) {
  expectEach({
      {"/Applications/Xcode.app/Contents/MacOS/Xcode", {.xcode = true}},
      {"/Applications/Xcode.app/Contents/MacOS/Xcode -psn_0_1", {.xcode = true}},
      {"/Applications/Xcode 15.app/Contents/MacOS/Xcode", {}},
      {"/Applications/Xcode.app/Contents/MacOS/XcodeHelper", {}},
      {"/usr/bin/xcodebuild -scheme App", {.xcode = true}},
      {"/Applications/Xcode.app/Contents/Developer/usr/bin/make all", {}},
      {"grep /Applications/Xcode.app/Contents/MacOS/Xcode", {}},
  });
}

TEST(RunningToolsTest, ASimulatorIsItsApplicationOrADevice) {
  expectEach({
      {"/Applications/Xcode.app/Contents/Developer/Applications/Simulator.app/Contents/MacOS/"
       "Simulator -x",
       {.simulator = true}},
      {"launchd_sim /Users/dev/Library/Developer/CoreSimulator/Devices/1/data",
       {.simulator = true}},
      {"/x/RuntimeRoot/sbin/launchd_sim", {.simulator = true}},
      {"/x/launchd_simulator", {}},
  });
}

TEST(RunningToolsTest, GradleIsKnownByItsMainClassAnywhereInTheLine) {
  expectEach({
      {"java -cp x org.gradle.launcher.daemon.bootstrap.GradleDaemon 8.7", {.gradle = true}},
      {"java -classpath w.jar org.gradle.wrapper.GradleWrapperMain build", {.gradle = true}},
      {"java -cp /Users/dev/.gradle/caches/gradle-daemon-main.jar com.example.Application", {}},
  });
}

TEST(RunningToolsTest, PipRunAsAModuleCounts) {
  expectEach({
      {"python3 -m pip install x", {.installers = {"pip"}}},
      {"python3 script.py", {}},
      {"/usr/bin/python3.12 -m pip list", {.installers = {"pip"}}},
      {"python3 -m piper", {.installers = {"pip"}}},
      {"ruby -m pip", {}},
  });
}

TEST(RunningToolsTest, AnEmptyListLeavesNothingInUse) {
  EXPECT_EQ(RunningTools::from({}), RunningTools());
  expectEach({{"", {}}, {"    ", {}}, {"/", {}}});
}

TEST(RunningToolsTest, EachLineIsJudgedAloneAndAllCount) {
  const RunningTools tools =
      RunningTools::from({"npm run dev", "install", "brew list", "pod", "xcodebuild"});
  EXPECT_TRUE(tools.xcode);
  EXPECT_THAT(tools.installers, ElementsAre("brew", "pod"));
}

TEST(RunningToolsTest, AnyBytesAreALine) {
  const std::string wild("np\xff\0m install \x80", 16);
  EXPECT_EQ(RunningTools::from({wild}), RunningTools());
}

TEST(RunningToolsTest, ADevelopersMachineHasOnlyGradleAndASimulatorAtWork) {
  // Servers, watchers and helpers that run under package managers without installing anything.
  const std::string lines = captureOr("08_ps/dev_command_lines_one_per_line.txt", R"(
next-server (v15.5.14)
node /Applications/moonverse /node_modules/.bin/next dev --webpack
npm exec chrome-devtools-mcp@latest
node /Users/dev/.npm/_npx/abc/node_modules/.bin/chrome-devtools-mcp
/opt/homebrew/Cellar/openjdk@21/bin/java org.gradle.launcher.daemon.bootstrap.GradleDaemon 8.10.2
launchd_sim /Users/dev/Library/Developer/CoreSimulator/Devices/171CB1CD/data/launchd_bootstrap.plist
/Applications/Xcode.app/Contents/Developer/usr/bin/make integration-test-backend
)");
  const RunningTools tools = RunningTools::from(Text::split(lines, '\n'));
  EXPECT_TRUE(tools.gradle);
  EXPECT_TRUE(tools.simulator);
  EXPECT_FALSE(tools.xcode);
  EXPECT_THAT(tools.installers, IsEmpty());
}

}  // namespace
}  // namespace embrix
