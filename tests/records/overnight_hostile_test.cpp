// The power log as an enemy would write it, and as chance would.
#include <algorithm>
#include <map>
#include <random>
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

// The rules once more, step by step over a list of all rows, without a thought for speed.
std::optional<Overnight> byTheBook(const std::string& text) {
  std::vector<OvernightLog::Line> lines;
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    if (const auto line = OvernightLog::line(std::string_view(text).substr(start, end - start))) {
      lines.push_back(*line);
    }
    start = end + 1;
  }
  std::vector<std::size_t> wakes;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].kind == "Wake") wakes.push_back(i);
  }
  if (wakes.empty()) return std::nullopt;
  const auto& wake = lines[wakes.back()];
  const std::size_t first = wakes.size() > 1 ? wakes[wakes.size() - 2] + 1 : 0;
  std::optional<double> sleptAt;
  for (std::size_t i = first; i < wakes.back(); ++i) {
    if (lines[i].kind == "Sleep" && !sleptAt) sleptAt = lines[i].date;
  }
  if (!sleptAt || wake.date - *sleptAt < 1800) return std::nullopt;
  Overnight night{.sleptAt = *sleptAt, .wokeAt = wake.date};
  std::map<std::string, int> causes;
  for (std::size_t i = first; i < wakes.back(); ++i) {
    if (lines[i].date < *sleptAt) continue;
    if (lines[i].detail.find("Using AC") != std::string_view::npos) night.onPower = true;
    if (lines[i].kind != "DarkWake") continue;
    night.darkWakes += 1;
    causes[std::string(OvernightLog::cause(lines[i].detail))] += 1;
  }
  night.onPower |= wake.detail.find("Using AC") != std::string_view::npos;
  for (const auto& [name, count] : causes) night.causes.push_back({name, count});
  return night;
}

TEST(OvernightHostileTest, RandomLogsAreReadAsByTheBook) {
  std::mt19937 random(20260302);
  const auto pick = [&](const auto& list) {
    return list[std::uniform_int_distribution<std::size_t>(0, list.size() - 1)(random)];
  };
  const std::vector<std::string> kinds = {"Wake",     "Sleep",         "Sleep",      "DarkWake",
                                          "DarkWake", "Wake Requests", "Assertions", ""};
  const std::vector<std::string> details = {"due to usb Using BATT", "due to lid", "Using AC", "x"};
  int nights = 0;
  for (int round = 0; round < 6000; ++round) {
    std::string log;
    const int rows = std::uniform_int_distribution<int>(0, 12)(random);
    for (int i = 0; i < rows; ++i) {
      const int minute = std::uniform_int_distribution<int>(0, 239)(random);
      log +=
          at(fmt::format("{:02}:{:02}:00", minute / 60, minute % 60), pick(kinds), pick(details));
      if (minute % 10 == 0) log += "no row\n\n";
    }
    auto expected = byTheBook(log);
    auto parsed = OvernightLog::parse(log);
    ASSERT_EQ(parsed.has_value(), expected.has_value()) << log;
    if (!parsed) continue;
    nights += 1;
    std::sort(parsed->causes.begin(), parsed->causes.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    ASSERT_EQ(*parsed, *expected) << log;
  }
  EXPECT_GT(nights, 300);  // the rows are not so wild that no night comes of them
}

}  // namespace
}  // namespace embrix
