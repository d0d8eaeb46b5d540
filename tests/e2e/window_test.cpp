// The built program with windows, on no screen.

#include <signal.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kPicture = "\x89PNG\r\n\x1a\n";

using WindowTest = ProgramTest;

TEST_F(WindowTest, PicturesOfEverySurfaceAreTakenWithoutAScreen) {
  const Outcome outcome = embrix({"--snapshot", folder_ / "pictures"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.complaints, "");
  const std::string light = folder_.read("pictures/popover-light.png");
  const std::string dark = folder_.read("pictures/popover-dark.png");
  EXPECT_THAT(light, StartsWith(kPicture));
  EXPECT_THAT(dark, StartsWith(kPicture));
  EXPECT_NE(light, dark);
}

TEST_F(WindowTest, TheIconIsAPicture) {
  const Outcome outcome = embrix({"--icon", folder_ / "icon.png"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_THAT(folder_.read("icon.png"), StartsWith(kPicture));
}

TEST_F(WindowTest, AnIconThatCannotBeWrittenIsNoMatter) {
  const Outcome outcome = embrix({"--icon", folder_ / "missing/icon.png"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.complaints, "");
}

TEST_F(WindowTest, WithoutAScreenItSaysSoAndEnds) {
  const Outcome outcome =
      outcomeOf({EMBRIX_PROGRAM}, worldWith({"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="}));
  EXPECT_EQ(outcome.exitStatus, 2);
  EXPECT_THAT(outcome.complaints, HasSubstr("there is no screen"));
}

TEST_F(WindowTest, OnADesktopWithoutATrayItSaysSoOnceAndRunsUntilItIsToldToEnd) {
  RunningProgram program(
      {"/bin/sh", "-c", "exec \"$0\" \"$@\" 2>&1", EMBRIX_PROGRAM, "--ui-testing"},
      worldWith({"QT_QPA_PLATFORM=offscreen"}));
  const auto line = program.readLine();
  ASSERT_TRUE(line.has_value());
  EXPECT_THAT(*line, StartsWith("Embrix: this desktop has no place for menu bar items"));
  program.signal(SIGTERM);
  const Outcome outcome = program.end();
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "");
}

}  // namespace
}  // namespace embrix
