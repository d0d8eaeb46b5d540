// The rules of the overnight log once more, step by step over a list of all rows and without a
// thought for speed: logs of chance and of real machines come out the same.
#include <algorithm>
#include <charconv>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "log_rows.h"
#include "records/overnight_log.h"

namespace embrix {
namespace {

std::vector<std::string> piecesOf(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  std::istringstream stream{std::string(text)};
  for (std::string piece; std::getline(stream, piece, separator);) {
    if (!piece.empty()) pieces.push_back(piece);
  }
  return pieces;
}

double secondsAwake(std::string_view detail) {
  while (!detail.empty() && (detail.back() == ' ' || detail.back() == '\t')) {
    detail.remove_suffix(1);
  }
  while (!detail.empty() && (detail.front() == ' ' || detail.front() == '\t')) {
    detail.remove_prefix(1);
  }
  const auto pieces = piecesOf(detail, ' ');
  if (pieces.size() < 2 || !pieces.back().starts_with("sec")) return 0;
  const std::string& number = pieces[pieces.size() - 2];
  double seconds = 0;
  const auto end = number.data() + number.size();
  const auto read = std::from_chars(number.data(), end, seconds, std::chars_format::fixed);
  return read.ec == std::errc() && read.ptr == end ? seconds : 0;
}

std::optional<int> charge(std::string_view detail) {
  const auto place = detail.find("Charge:");
  if (place == std::string_view::npos) return std::nullopt;
  detail.remove_prefix(place + 7);
  int percent = 0;
  const auto read = std::from_chars(detail.data(), detail.data() + detail.size(), percent);
  return read.ec == std::errc() && percent >= 0 ? std::optional(percent) : std::nullopt;
}

std::vector<Overnight::Tally> counted(const std::vector<std::string>& names) {
  std::vector<Overnight::Tally> tallies;
  for (const std::string& name : names) {
    const auto known = std::find_if(tallies.begin(), tallies.end(),
                                    [&](const auto& tally) { return tally.name == name; });
    if (known == tallies.end()) {
      tallies.push_back({name, 1});
    } else {
      known->count += 1;
    }
  }
  std::stable_sort(tallies.begin(), tallies.end(),
                   [](const auto& a, const auto& b) { return a.count > b.count; });
  return tallies;
}

std::optional<Overnight> byTheBook(const std::string& text) {
  std::vector<std::string> rows = piecesOf(text, '\n');
  std::vector<OvernightLog::Line> lines;
  for (std::string& row : rows) {
    if (row.ends_with('\r')) row.pop_back();
    if (const auto line = OvernightLog::line(row)) lines.push_back(*line);
  }
  std::vector<std::size_t> wakes;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].kind == "Wake") wakes.push_back(i);
  }
  if (wakes.empty()) return std::nullopt;
  const auto& wake = lines[wakes.back()];
  const std::size_t first = wakes.size() > 1 ? wakes[wakes.size() - 2] + 1 : 0;
  const OvernightLog::Line* sleep = nullptr;
  for (std::size_t i = first; i < wakes.back(); ++i) {
    if (lines[i].kind == "Sleep" && sleep == nullptr) sleep = &lines[i];
  }
  if (sleep == nullptr || wake.date - sleep->date < 1800) return std::nullopt;

  Overnight night{.sleptAt = sleep->date, .wokeAt = wake.date};
  std::vector<std::string> causes;
  std::vector<std::string> requesters;
  for (std::size_t i = first; i < wakes.back(); ++i) {
    const auto& line = lines[i];
    if (line.date < sleep->date) continue;
    if (line.detail.find("Using AC") != std::string_view::npos) night.onPower = true;
    if (line.kind == "Wake Requests") {
      if (const auto name = OvernightLog::starredRequester(line.detail)) {
        requesters.push_back(*name);
      }
    }
    if (line.kind != "DarkWake") continue;
    night.darkWakes += 1;
    night.awakeSeconds += secondsAwake(line.detail);
    causes.emplace_back(OvernightLog::cause(line.detail));
  }
  night.onPower |= wake.detail.find("Using AC") != std::string_view::npos;
  night.chargeAtSleep = charge(sleep->detail);
  night.chargeAtWake = charge(wake.detail);
  night.causes = counted(causes);
  night.requesters = counted(requesters);
  return night;
}

TEST(OvernightBookTest, RandomLogsAreReadAsByTheBook) {
  std::mt19937 random(20260302);
  const auto pick = [&](const auto& list) {
    return list[std::uniform_int_distribution<std::size_t>(0, list.size() - 1)(random)];
  };
  const std::vector<std::string> kinds = {"Wake",     "Sleep",         "Sleep",      "DarkWake",
                                          "DarkWake", "Wake Requests", "Assertions", ""};
  const std::vector<std::string> details = {
      "due to usb Using BATT 45 secs", "due to lid (Charge:84%) 1.5 sec",
      "Using AC (Charge: 7%) 9",       "[*process=dasd ] [*process=powerd ] secs",
      "[process=dasd ] \t30 secs",     "x"};
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
    ASSERT_EQ(*parsed, *expected) << log;
  }
  EXPECT_GT(nights, 300);  // the rows are not so wild that no night comes of them
}

// Every log as it stood after each of its rows, so that each wake was the last one once.
TEST(OvernightBookTest, LogsOfRealMachinesAreReadAsByTheBook) {
  const auto captures = capturesIn(
      "01_pmset_log",
      {{"a night on battery",
        at("22:00:00", "Wake") + at("23:00:00", "Sleep", "Using Batt (Charge:90%)") +
            at("23:00:01", "Wake Requests", "[*process=dasd request=SleepService info=\"x\"]") +
            at("03:00:00", "DarkWake", "due to RTC/Maintenance Using BATT (Charge:88%) 45 secs  ") +
            at("03:00:46", "Sleep", "Using Batt (Charge:88%)") +
            at("07:00:00", "Wake", "due to lid Using AC (Charge:84%)") + at("07:30:00", "Sleep") +
            at("08:10:00", "Wake")},
       {"no log at all", "PM ASL data store\n\xED\n"}});
  for (const auto& [name, bytes] : captures) {
    for (std::size_t end = bytes.find('\n'); end != std::string::npos;
         end = bytes.find('\n', end + 1)) {
      const std::string_view row = std::string_view(bytes).substr(0, end);
      // Only a wake ends a night.
      if (row.substr(row.rfind('\n') + 1).find("Wake") == std::string_view::npos) continue;
      const std::string log = bytes.substr(0, end + 1);
      ASSERT_EQ(OvernightLog::parse(log), byTheBook(log)) << name << " up to " << end;
    }
    EXPECT_EQ(OvernightLog::parse(bytes), byTheBook(bytes)) << name;
  }
}

}  // namespace
}  // namespace embrix
