#include "darwin/socket_record.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <string>

#include "kernel_bytes.h"

namespace embrix {
namespace {

constexpr std::int32_t kUdp = 1;  // SOCKINFO_IN
constexpr std::int32_t kTcp = 2;
constexpr std::int32_t kListen = 1;
constexpr std::int32_t kEstablished = 4;
constexpr std::uint8_t kIPv4 = 1;
constexpr std::uint8_t kIPv6 = 2;

// A socket bound to an address in the notation of people, of either family.
ByteVector socketOn(const std::string& address, int port, std::int32_t kind = kTcp,
                    std::int32_t state = kListen) {
  ByteVector record(792);
  put(record, 256, kind);
  put(record, 264 + 4, htons(static_cast<std::uint16_t>(port)));
  const bool isIPv6 = address.find(':') != std::string::npos;
  record[264 + 24] = isIPv6 ? kIPv6 : kIPv4;
  const std::size_t place = isIPv6 ? 264 + 48 : 264 + 60;
  EXPECT_EQ(inet_pton(isIPv6 ? AF_INET6 : AF_INET, address.c_str(), record.data() + place), 1);
  put(record, 344, state);
  return record;
}

struct ExposureCase {
  const char* address;
  bool exposed;
};

TEST(SocketRecordTest, ALoopbackAddressIsNotExposed) {
  const ExposureCase cases[] = {
      {"127.0.0.1", false},
      {"127.255.0.9", false},
      {"0.0.0.0", true},
      {"10.0.0.127", true},
      {"128.0.0.1", true},
      {"126.127.127.127", true},
      {"::1", false},
      {"::", true},
      {"::2", true},
      {"::ffff:127.0.0.1", false},
      {"::ffff:127.9.9.9", false},
      {"::ffff:0.0.0.0", true},
      {"::ffff:10.0.0.1", true},
      {"::127.0.0.1", true},  // IPv4-compatible is not IPv4-mapped
      {"::fffe:127.0.0.1", true},
      {"1::ffff:127.0.0.1", true},
      {"1::1", true},
      {"fe80::1", true},
  };
  for (const auto& [address, exposed] : cases) {
    EXPECT_EQ(decodeListeningSocket(socketOn(address, 8080)),
              (ListeningPort{.port = 8080, .exposed = exposed}))
        << address;
  }
}

// Bound to `::` and taking IPv4 as well: both bits are set, and the IPv4 word is zero.
TEST(SocketRecordTest, ADualSocketOnTheWildcardIsExposed) {
  ByteVector record = socketOn("::", 3000);
  record[264 + 24] = kIPv4 | kIPv6;
  EXPECT_EQ(decodeListeningSocket(record), (ListeningPort{.port = 3000, .exposed = true}));
}

TEST(SocketRecordTest, ThePortIsInNetworkOrder) {
  for (const int port : {1, 80, 255, 256, 8080, 65280, 65535}) {
    EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", port))->port, port);
  }
}

TEST(SocketRecordTest, OnlyListeningTcpSocketsCount) {
  EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", 5353, kUdp)), std::nullopt);
  EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", 80, kTcp, kEstablished)), std::nullopt);
  EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", 80, kTcp, 0)), std::nullopt);
  EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", 80, kTcp, -1)), std::nullopt);
}

TEST(SocketRecordTest, PortZeroIsNobodys) {
  EXPECT_EQ(decodeListeningSocket(socketOn("0.0.0.0", 0)), std::nullopt);
}

TEST(SocketRecordTest, ARecordOfAnotherSizeIsNone) {
  const ByteVector whole = socketOn("0.0.0.0", 80);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(decodeListeningSocket(Bytes(whole).first(size)), std::nullopt) << size;
  }
  ByteVector longer = whole;
  longer.push_back(0);
  EXPECT_EQ(decodeListeningSocket(longer), std::nullopt);
}

TEST(SocketRecordTest, TooFewBytesAreNoLoopback) {
  const ByteVector record = socketOn("127.0.0.1", 80);
  const Bytes internet = Bytes(record).subspan(264, 80);
  EXPECT_TRUE(isLoopback(internet));
  for (std::size_t size = 0; size < 80; ++size) EXPECT_FALSE(isLoopback(internet.first(size)));
}

TEST(SocketRecordTest, AnyBytesThatCountHaveAPort) {
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    ByteVector record = randomBytes(792, seed);
    put(record, 256, kTcp);
    put(record, 344, kListen);
    const auto listening = decodeListeningSocket(record);
    if (listening) {
      EXPECT_GE(listening->port, 1);
      EXPECT_LE(listening->port, 65535);
    }
  }
}

}  // namespace
}  // namespace embrix
