// The built program where the system has hardly a file descriptor to give.

#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

#include "fakes/sanitized.h"

#ifndef EMBRIX_SANITIZED

namespace embrix {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class FewDescriptorsTest : public ProgramTest {
 protected:
  Outcome withDescriptors(int most, const std::string& arguments) const {
    // Whatever this program was started with open, it is not handed on.
    const std::string command = fmt::format(
        "exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-; ulimit -n {}; exec \"$0\" {}", most, arguments);
    return outcomeOf({"/bin/sh", "-c", command, EMBRIX_PROGRAM}, world());
  }
};

TEST_F(FewDescriptorsTest, AReportTellsWhatItCouldLearn) {
  for (int most = 4; most < 20; most += 5) {
    const Outcome outcome = withDescriptors(most, "--json");
    EXPECT_EQ(outcome.exitStatus, 0) << most;
    EXPECT_THAT(outcome.output, StartsWith("{\n  \"apps\" : [")) << most;
    EXPECT_EQ(outcome.complaints, "") << most;
  }
}

TEST_F(FewDescriptorsTest, ARunThatCouldNotBeEndedDoesNotBegin) {
  for (int most = 4; most < 9; ++most) {
    const Outcome outcome = withDescriptors(most, "--watch");
    EXPECT_EQ(outcome.exitStatus, 2) << most;
    EXPECT_EQ(outcome.output, "") << most;
    EXPECT_THAT(outcome.complaints, StartsWith("embrix: ")) << most;
    EXPECT_THAT(outcome.complaints, EndsWith(": Too many open files.\n")) << most;
  }
}

}  // namespace
}  // namespace embrix

#endif
