// Reports on a machine whose D-Bus is not there, refuses, or takes calls and never answers.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class SilentBusTest : public ProgramTest {
 protected:
  Outcome dumpOn(const std::string& busAddress) const {
    return outcomeOf(
        {EMBRIX_PROGRAM, "--dump"},
        {"DBUS_SYSTEM_BUS_ADDRESS=" + busAddress, "DBUS_SESSION_BUS_ADDRESS=" + busAddress,
         "XDG_CONFIG_HOME=" + configFolder_.path(), "HOME=" + homeFolder_.path()});
  }

  static void expectAReportWithoutHolds(const Outcome& outcome) {
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.complaints, "");
    EXPECT_THAT(outcome.output, StartsWith("system "));
    EXPECT_THAT(outcome.output, Not(HasSubstr("\nawake: ")));
  }
};

// A socket at a path, taking connections or not, and never a word.
class Socket {
 public:
  Socket(const std::string& path, bool takesConnections)
      : descriptor_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), std::min(path.size(), sizeof address.sun_path - 1));
    isThere_ =
        ::bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        (!takesConnections || ::listen(descriptor_, 16) == 0);
  }
  ~Socket() { ::close(descriptor_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  bool isThere() const { return isThere_; }

 private:
  int descriptor_;
  bool isThere_ = false;
};

TEST_F(SilentBusTest, ABusThatIsNotThere) {
  for (const std::string& address :
       {"unix:path=" + (folder_ / "missing"), std::string("nonsense"), std::string("unix:")}) {
    expectAReportWithoutHolds(dumpOn(address));
  }
}

TEST_F(SilentBusTest, ABusThatRefuses) {
  const Socket socket(folder_ / "bus", false);
  ASSERT_TRUE(socket.isThere());
  expectAReportWithoutHolds(dumpOn("unix:path=" + (folder_ / "bus")));
}

TEST_F(SilentBusTest, ABusThatTakesConnectionsAndNeverAnswers) {
  const Socket socket(folder_ / "bus", true);
  ASSERT_TRUE(socket.isThere());
  expectAReportWithoutHolds(dumpOn("unix:path=" + (folder_ / "bus")));
}

}  // namespace
}  // namespace embrix
