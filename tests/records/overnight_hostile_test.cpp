// The power log as an enemy would write it, and as chance would.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log_rows.h"
#include "records/overnight_log.h"
#include "records/power_log.h"

namespace embrix {
namespace {

std::string night() {
  return at("23:00:00", "Sleep", "Using Batt (Charge:90%)") +
         at("23:00:01", "Wake Requests", "[*process=dasd info=\"x\"]") +
         at("03:00:00", "DarkWake", "due to RTC Using BATT (Charge:88%) 45 secs") +
         at("07:00:00", "Wake", "due to lid Using BATT (Charge:84%)");
}

// Rows that say nothing of a night, of this many bytes or a little more.
std::string idleRows(std::size_t bytes) {
  const std::string rows =
      at("22:00:00", "Assertions", "PID 103(mDNSResponder) Created MaintenanceWake 00:00:00") +
      at("22:00:01", "Kernel Client Acks", "Delays to Sleep notifications: [powerd is slow]");
  std::string log;
  log.reserve(bytes + rows.size());
  while (log.size() < bytes) log += rows;
  return log;
}

struct Log final : PowerLogSource {
  explicit Log(std::string bytes) : text(std::move(bytes)) {}
  std::string read() override { return text; }
  std::string text;
};

TEST(OvernightHostileTest, ALogOf50MegabytesTellsOfItsEnd) {
  const auto expected = OvernightLog::parse(night());
  ASSERT_TRUE(expected);
  Log source(idleRows(50'000'000) + night());
  EXPECT_EQ(OvernightLog::parse(source.text), expected);
  const std::string read = PowerLog::read(source);
  EXPECT_EQ(read.size(), PowerLog::kLongestLog);
  EXPECT_EQ(OvernightLog::parse(read), expected);
}

TEST(OvernightHostileTest, ALogThatIsOneLongLineIsNoLog) {
  EXPECT_EQ(OvernightLog::parse(std::string(10'000'000, 'x')), std::nullopt);
  EXPECT_EQ(OvernightLog::parse(std::string(10'000'000, '\n')), std::nullopt);
  EXPECT_EQ(OvernightLog::parse(std::string(10'000'000, '\0')), std::nullopt);
}

TEST(OvernightHostileTest, ALongRowIsARow) {
  const auto log = at("23:00:00", "Sleep") +
                   at("03:00:00", "DarkWake", std::string(5'000'000, ' ') + "usb 45 secs") +
                   at("07:00:00", "Wake");
  const auto parsed = OvernightLog::parse(log).value();
  EXPECT_EQ(parsed.awakeSeconds, 45);
  EXPECT_EQ(parsed.causes, (std::vector<Overnight::Tally>{{"A USB accessory", 1}}));
}

TEST(OvernightHostileTest, ALogWhoseLinesLostTheirTabsTellsOfNoNight) {
  std::string log = night();
  std::replace(log.begin(), log.end(), '\t', ' ');
  EXPECT_EQ(OvernightLog::parse(log), std::nullopt);
}

TEST(OvernightHostileTest, ALogInSixteenBitsTellsOfNoNight) {
  std::string log = "\xFF\xFE";
  for (const char c : night()) log += {c, '\0'};
  EXPECT_EQ(OvernightLog::parse(log), std::nullopt);
}

TEST(OvernightHostileTest, TensOfThousandsOfRequestersAreCounted) {
  std::string log = at("23:00:00", "Sleep");
  for (int i = 0; i < 50'000; ++i) {
    log += at("01:00:00", "Wake Requests", fmt::format("[*process=p{} ]", i % 49'999));
  }
  const auto parsed = OvernightLog::parse(log + at("07:00:00", "Wake")).value();
  EXPECT_EQ(parsed.requesters.size(), 49'999u);
  EXPECT_EQ(parsed.requesters[0], (Overnight::Tally{"p0", 2}));
  EXPECT_EQ(parsed.requesters[1], (Overnight::Tally{"p1", 1}));
}

TEST(OvernightHostileTest, EveryCutOfALogIsALog) {
  const std::string log = at("12:00:00", "Wake") + night();
  const auto whole = OvernightLog::parse(log);
  for (std::size_t i = 0; i <= log.size(); ++i) {
    OvernightLog::parse(std::string_view(log).substr(0, i));
    // A cut within the first row leaves the night as it is.
    const auto rest = OvernightLog::parse(std::string_view(log).substr(i));
    if (i <= at("12:00:00", "Wake").size()) {
      EXPECT_EQ(rest, whole) << i;
    }
  }
}

}  // namespace
}  // namespace embrix
