#include "hosts/linux/socket_diagnosis.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace embrix {
namespace {

TEST(SocketTableTest, ListenersOfBothFamiliesWithTheirExposure) {
  struct Case {
    const char* label;
    const char* line;
    ListeningSocket expected;
  };
  const Case cases[] = {
      {"loopback",
       "   0: 0100007F:0BB8 00000000:0000 0A 00000000:00000000 00:00000000 00000000 1000 0 4242 1",
       {4242, 3000, false}},
      {"every address",
       "   1: 00000000:0016 00000000:0000 0A 00000000:00000000 00:00000000 00000000 0 0 77 1",
       {77, 22, true}},
      {"another loopback address",
       "   2: 0A00007F:FFFF 00000000:0000 0A 00000000:00000000 00:00000000 00000000 0 0 78 1",
       {78, 65535, false}},
      {"::",
       "   0: 00000000000000000000000000000000:1F90 00000000000000000000000000000000:0000 0A "
       "00000000:00000000 00:00000000 00000000 1000 0 91 1",
       {91, 8080, true}},
      {"::1",
       "   1: 00000000000000000000000001000000:1F91 00000000000000000000000000000000:0000 0A "
       "00000000:00000000 00:00000000 00000000 1000 0 92 1",
       {92, 8081, false}},
      {"::ffff:127.0.0.1",
       "   2: 0000000000000000FFFF00000100007F:1F92 00000000000000000000000000000000:0000 0A "
       "00000000:00000000 00:00000000 00000000 1000 0 93 1",
       {93, 8082, false}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(parseSocketTable(std::string("  sl  local_address rem_address st\n") + c.line + "\n"),
              std::vector<ListeningSocket>{c.expected});
  }
}

TEST(SocketTableTest, OtherStatesAndBrokenLinesArePassedOver) {
  const std::string good =
      "0: 0100007F:0BB8 00000000:0000 0A 00000000:00000000 00:00000000 00000000 1000 0 4242 1";
  std::string connected = good;
  connected.replace(connected.find(" 0A "), 4, " 01 ");
  EXPECT_TRUE(parseSocketTable(connected).empty());
  EXPECT_EQ(parseSocketTable(good).size(), 1u);
  for (std::size_t size = 0; size <= good.find("4242"); ++size) {
    EXPECT_TRUE(parseSocketTable(good.substr(0, size)).empty()) << size;
  }
  EXPECT_TRUE(parseSocketTable("0: ZZ00007F:0BB8 0:0 0A 0 0 0 1000 0 4242").empty());
  EXPECT_TRUE(parseSocketTable("0: 0100007F:BB8000 0:0 0A 0 0 0 1000 0 4242").empty());
  EXPECT_TRUE(parseSocketTable("0: 0100007F:0000 0:0 0A 0 0 0 1000 0 4242").empty());
  EXPECT_TRUE(parseSocketTable("0: 0100007F:-1 0:0 0A 0 0 0 1000 0 4242").empty());
}

std::vector<std::uint8_t> messageWith(const inet_diag_msg& diagnosis) {
  std::vector<std::uint8_t> message(NLMSG_HDRLEN + sizeof diagnosis);
  std::memcpy(message.data() + NLMSG_HDRLEN, &diagnosis, sizeof diagnosis);
  return message;
}

TEST(SocketDiagnosisTest, ListenersOfBothFamiliesWithTheirExposure) {
  struct Case {
    std::uint8_t family;
    const char* address;
    bool exposed;
  };
  const Case cases[] = {
      {AF_INET, "127.0.0.1", false}, {AF_INET, "127.9.8.7", false},
      {AF_INET, "0.0.0.0", true},    {AF_INET, "192.168.1.2", true},
      {AF_INET6, "::1", false},      {AF_INET6, "::ffff:127.0.0.1", false},
      {AF_INET6, "::", true},        {AF_INET6, "::ffff:10.0.0.1", true},
      {AF_INET6, "::2", true},       {AF_INET6, "7f00::1", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.address);
    inet_diag_msg diagnosis{};
    diagnosis.idiag_family = c.family;
    diagnosis.idiag_state = 10;
    diagnosis.idiag_inode = 7;
    diagnosis.id.idiag_sport = htons(8080);
    ASSERT_EQ(inet_pton(c.family, c.address, diagnosis.id.idiag_src), 1);
    EXPECT_EQ(parseDiagnosis(messageWith(diagnosis)), (ListeningSocket{7, 8080, c.exposed}));
  }
}

TEST(SocketDiagnosisTest, OtherStatesAndSocketsWithoutAPortAreNone) {
  inet_diag_msg diagnosis{};
  diagnosis.idiag_family = AF_INET;
  diagnosis.id.idiag_sport = htons(8080);
  for (const int state : {1, 2, 7, 9, 11}) {
    diagnosis.idiag_state = static_cast<std::uint8_t>(state);
    EXPECT_EQ(parseDiagnosis(messageWith(diagnosis)), std::nullopt) << state;
  }
  diagnosis.idiag_state = 10;
  diagnosis.id.idiag_sport = 0;
  EXPECT_EQ(parseDiagnosis(messageWith(diagnosis)), std::nullopt);
}

TEST(SocketDiagnosisTest, MessageThatIsCutShortIsAbsent) {
  inet_diag_msg diagnosis{};
  diagnosis.idiag_family = AF_INET6;
  diagnosis.idiag_state = 10;
  diagnosis.idiag_inode = 4242;
  diagnosis.id.idiag_sport = htons(3000);
  const std::vector<std::uint8_t> message = messageWith(diagnosis);
  EXPECT_EQ(parseDiagnosis(message), (ListeningSocket{4242, 3000, true}));
  for (std::size_t size = 0; size < message.size(); ++size) {
    EXPECT_FALSE(parseDiagnosis({message.data(), size})) << size;
  }
}

TEST(LoopbackTest, AddressesOfOtherLengthsAreNone) {
  const std::vector<std::uint8_t> bytes = {127, 0, 0, 1, 0};
  EXPECT_TRUE(isLoopbackAddress({bytes.data(), 4}));
  EXPECT_FALSE(isLoopbackAddress({bytes.data(), 5}));
  EXPECT_FALSE(isLoopbackAddress({bytes.data(), 0}));
}

TEST(SocketDiagnosisTest, LiveListenerIsFound) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  socklen_t length = sizeof address;
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  const auto listeners = diagnoseListeners();
  ASSERT_TRUE(listeners);
  const auto found = std::find_if(
      listeners->begin(), listeners->end(),
      [&](const ListeningSocket& socket) { return socket.port == ntohs(address.sin_port); });
  ASSERT_NE(found, listeners->end());
  EXPECT_FALSE(found->exposed);
  EXPECT_GT(found->inode, 0u);
  close(listener);
}

}  // namespace
}  // namespace embrix
