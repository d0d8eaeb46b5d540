// Runs that take no sample, and the files that a run touches.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using CommandLineTest = ProgramTest;

TEST_F(CommandLineTest, HelpTellsTheOptions) {
  const Outcome outcome = embrix({"--help"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_THAT(outcome.output, HasSubstr("--json"));
  EXPECT_EQ(outcome.complaints, "");
}

TEST_F(CommandLineTest, VersionIsTheProjects) {
  const Outcome outcome = embrix({"--version"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "embrix " EMBRIX_VERSION "\n");
}

TEST_F(CommandLineTest, ACleanupReportWinsAndTouchesNothing) {
  const Outcome outcome = embrix({"--json", "--cleanup"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "");  // an empty home holds nothing to clear
  EXPECT_THAT(homeFolder_.names(), IsEmpty());
  EXPECT_THAT(configFolder_.names(), IsEmpty());
}

TEST_F(CommandLineTest, ACleanupReportTellsWhatFillsTheHome) {
  std::filesystem::create_directories(homeFolder_ / ".gradle/caches/8.7");
  homeFolder_.write(".gradle/caches/8.7/x", std::string(3'000'000, 'x'));
  const Outcome outcome = embrix({"--dump", "--cleanup"});
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_THAT(outcome.output,
              StartsWith("Gradle caches · 3 MB\n"
                         "    3 MB     Gradle 8.7 · ~/.gradle/caches/8.7 · used today"));
  EXPECT_EQ(outcome.complaints, "");
}

TEST_F(CommandLineTest, ATestRunKeepsToItsOwnSettings) {
  const auto live = [&](std::vector<std::string> settings) {
    settings.insert(settings.begin(), {EMBRIX_PROGRAM, "--ui-testing", "--live"});
    // Ends for want of a screen, once the settings are made.
    outcomeOf(settings, worldWith({"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="}));
  };
  live({"--set", "alertWatts=5"});
  EXPECT_THAT(configFolder_.read("embrix/app.embrix.uitesting.json"), HasSubstr("alertWatts"));
  EXPECT_FALSE(configFolder_.has("embrix/settings.json"));
  live({});
  EXPECT_EQ(configFolder_.read("embrix/app.embrix.uitesting.json"), "{}\n");
}

TEST_F(CommandLineTest, ARecordingThatIsNoneIsOneSentenceAndStatusTwo) {
  folder_.write("damaged", "{\"not\": \"a recording\"}\n");
  folder_.write("empty", "");
  std::filesystem::create_directory(folder_ / "folder");
  for (const char* name : {"damaged", "empty", "folder", "missing", ""}) {
    for (const std::string report : {"--json", "--dump", "--ui-testing"}) {
      const std::string path = *name == '\0' ? "" : folder_ / name;
      const Outcome outcome = embrix({report, "--replay", path});
      EXPECT_EQ(outcome.exitStatus, 2) << name;
      EXPECT_EQ(outcome.output, "") << name;
      EXPECT_THAT(outcome.complaints, StartsWith("embrix: ")) << name;
      EXPECT_THAT(outcome.complaints, EndsWith(".\n")) << name;
      EXPECT_EQ(std::count(outcome.complaints.begin(), outcome.complaints.end(), '\n'), 1) << name;
    }
  }
  EXPECT_THAT(configFolder_.names(), IsEmpty());
}

TEST_F(CommandLineTest, ARecordingThatCannotBeMadeStopsTheRunBeforeIt) {
  folder_.write("file", "theirs");
  for (const char* name : {"missing/recording", "file/recording"}) {
    const Outcome outcome = embrix({"--json", "--record", folder_ / name});
    EXPECT_EQ(outcome.exitStatus, 2) << name;
    EXPECT_EQ(outcome.output, "") << name;
    EXPECT_THAT(outcome.complaints, EndsWith(".\n")) << name;
  }
  EXPECT_EQ(folder_.read("file"), "theirs");
}

TEST_F(CommandLineTest, AReaderWhoLeavesIsNoFailure) {
  for (const char* output : {"/dev/full", "&-"}) {
    const Outcome outcome =
        outcomeOf({"/bin/sh", "-c", "\"$0\" --help >" + std::string(output), EMBRIX_PROGRAM});
    EXPECT_EQ(outcome.exitStatus, 0) << output;
  }
  EXPECT_EQ(outcomeOf({"/bin/sh", "-c", "{ \"$0\" --dump; echo $? >&2; } | head -c 1 >/dev/null",
                       EMBRIX_PROGRAM})
                .complaints,
            "0\n");
}

}  // namespace
}  // namespace embrix
